// The dialog templates: both layouts hold the same controls, nothing lies outside or on top of anything else.
#include <algorithm>
#include <set>

#include "tests/unit/sirf/dialogs/dialog_test.h"

namespace
{

constexpr uint32_t Templates[] = {2009, 2010, 2011, 2012, 2013, 2014, 2015,
                                  2016, 2017, 2018, 2019, 2020, 2021, 2025};

std::vector<int> Numbers(const HeadlessTemplate& dialog)
{
    std::vector<int> ids;
    for (const HeadlessTemplateControl& control : dialog.controls)
        if (control.id > 0 && control.id != 0xFFFF) ids.push_back(control.id);
    std::sort(ids.begin(), ids.end());
    return ids;
}

// What is seen of a closed drop-down list.
int SeenHeight(const HeadlessTemplateControl& control)
{
    return control.className == L"COMBOBOX" ? 13 : control.height;
}

bool Overlap(const HeadlessTemplateControl& a, const HeadlessTemplateControl& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + SeenHeight(b) &&
           b.y < a.y + SeenHeight(a);
}

class SirfTemplates : public ProductTest
{
protected:
    static HeadlessTemplate Find(uint32_t number)
    {
        HeadlessTemplate found;
        EXPECT_TRUE(HeadlessFindTemplate(number, found)) << number;
        return found;
    }
};

TEST_F(SirfTemplates, LayoutsHoldTheSameControlsOnceEach)
{
    for (const uint32_t number : Templates) {
        const HeadlessTemplate touch = Find(number), keypad = Find(number + 100);
        const std::vector<int> ids = Numbers(touch);
        EXPECT_EQ(ids, Numbers(keypad)) << number;
        EXPECT_EQ(std::set<int>(ids.begin(), ids.end()).size(), ids.size()) << number;
        EXPECT_EQ(touch.caption, keypad.caption);
    }
}

TEST_F(SirfTemplates, EveryControlLiesWithinItsDialogAndOnNoOther)
{
    for (const uint32_t touch : Templates)
        for (const uint32_t number : {touch, touch + 100}) {
            const HeadlessTemplate dialog = Find(number);
            EXPECT_LE(dialog.width, number < 2100 ? 156 : 110) << number;
            EXPECT_LE(dialog.height, number < 2100 ? 190 : 400) << number;
            for (const HeadlessTemplateControl& control : dialog.controls) {
                EXPECT_GE(control.x, 0);
                EXPECT_GE(control.y, 0);
                EXPECT_LE(control.x + control.width, dialog.width) << number << ", control " << control.id;
                EXPECT_LE(control.y + SeenHeight(control), dialog.height)
                    << number << ", control " << control.id;
                for (const HeadlessTemplateControl& other : dialog.controls)
                    EXPECT_FALSE(&control != &other && Overlap(control, other))
                        << number << ", controls " << control.id << " and " << other.id << " at "
                        << control.y;
            }
        }
}

TEST_F(SirfTemplates, TouchHasDropDownListsAndKeypadListBoxes)
{
    for (const uint32_t touch : Templates)
        for (const uint32_t number : {touch, touch + 100})
            for (const HeadlessTemplateControl& control : Find(number).controls)
                EXPECT_NE(control.className, number < 2100 ? L"LISTBOX" : L"COMBOBOX") << number;
}

TEST_F(SirfTemplates, OneButtonIsTheDefaultAndItIsOk)
{
    constexpr DWORD DefaultPushButton = 1, TypeMask = 0xF;
    for (const uint32_t touch : Templates)
        for (const uint32_t number : {touch, touch + 100}) {
            std::vector<int> defaults;
            for (const HeadlessTemplateControl& control : Find(number).controls)
                if (control.className == L"BUTTON" && (control.style & TypeMask) == DefaultPushButton)
                    defaults.push_back(control.id);
            EXPECT_EQ(defaults, std::vector<int>{IDOK}) << number;
        }
}

} // namespace
