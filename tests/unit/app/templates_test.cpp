// SPDX-License-Identifier: MIT
// The compiled dialog templates, all of them, in both layouts.
#include <algorithm>
#include <map>
#include <set>

#include "resources/resource_ids.h"
#include "tests/unit/support/product_test.h"
#include "ui/dialog_support.h"

namespace
{

using Control = HeadlessTemplateControl;
using Template = HeadlessTemplate;

constexpr int TouchWidth = 160, TouchHeight = 164; // what a screen of 240 x 320 shows between its bars
constexpr int KeypadWidth = 120; // squeezed to the screen where it is narrower; keypads scroll downwards
constexpr int ClosedListHeight = 12;
constexpr DWORD ButtonType = 0xF, AutoRadio = 9, OwnerDraw = 0xB, DefaultPush = 1, ListNotify = 1;

// The kind of control that a number has, by its class on touch screens; on keypads lists are list boxes.
enum class Kind : uint8_t { Text, Edit, List, Button };

struct Group {
    uint32_t dialog;
    Kind kind;
    std::vector<int> controls;
};

std::vector<int> Range(int first, int last)
{
    std::vector<int> numbers;
    for (int number = first; number <= last; ++number) numbers.push_back(number);
    return numbers;
}

// The controls that each dialog is known by; typed by hand from their descriptions.
const std::vector<Group> Groups = {
    {2002, Kind::List, {1651, 1652}},
    {2002, Kind::Text, {1653, 1658}},
    {2002, Kind::Button, {1654, 1655, 1656, 1657, 1659, 16510}},
    {2003, Kind::List, {1001, 1002}},
    {2003, Kind::Button, {1003, 1004, 1005}},
    {2003, Kind::Text, {901, 1518}},
    {2003, Kind::Edit, {902}},
    {2004, Kind::Edit, {1011, 1012, 1013, 1014, 1015, 1016, 1017, 902}},
    {2004, Kind::Button, {1018, 1019, 10110, 10111, 10112, 10113, 10114}},
    {2005, Kind::List, {1031, 1032}},
    {2005, Kind::Button, {1033, 1034}},
    {2005,
     Kind::Text,
     {1036, 1037, 1038, 1039, 10310, 10311, 10312, 10313, 10314, 10315, 10316, 10317, 10318, 10319}},
    {2005, Kind::Edit, {902}},
    {2007, Kind::Edit, {1051, 902}},
    {2007, Kind::Button, {1052}},
    {2008, Kind::List, {1061}},
    {2008, Kind::Button, {1062}},
    {2008, Kind::Edit, {902}},
    {2009, Kind::Button, {5301, 5310, 5311}},
    {2009, Kind::Edit, {5302, 5303, 5306, 5308}},
    {2009, Kind::List, {5304, 5305, 5307, 5309}},
    {2009, Kind::Text, {1516, 1517, 1518}},
    {2010, Kind::Edit, Range(1281, 1287)},
    {2010, Kind::Button, {1289, 12810, 12811, 12812, 12813, 12814, 12815, 12816, 12817, 12818, 12819, 12820}},
    {2011, Kind::List, {1290, 1291, 1292, 1293, 1294, 1295, 1296, 1297, 1298, 1299, 12912}},
    {2011, Kind::Button, {12911, 12913, 12914, 12915, 12916}},
    {2011, Kind::Text, {901, 1518}},
    {2012, Kind::List, {1331}},
    {2012, Kind::Edit, {1332, 1333}},
    {2012, Kind::Button, {1334, 1335}},
    {2012, Kind::Text, Range(1336, 1343)},
    {2013, Kind::Button, {1361, 1362, 1369}},
    {2013, Kind::List, {1363, 1365, 1366}},
    {2013, Kind::Edit, {1364, 1367, 1368}},
    {2014, Kind::Button, {1371, 1372}},
    {2014, Kind::List, {1373}},
    {2014, Kind::Edit, {1374, 1375, 1376}},
    {2015, Kind::Button, {1381, 1382}},
    {2015, Kind::List, {1383}},
    {2015, Kind::Edit, {1384}},
    {2016, Kind::Button, {1391, 1392}},
    {2016, Kind::Edit, {1393, 1394}},
    {2017, Kind::Button, {1401, 1402}},
    {2017, Kind::Edit, {1403, 1404}},
    {2018, Kind::Button, {1431, 1432, 1433}},
    {2019, Kind::Button, {1511, 1512, 1513}},
    {2019, Kind::Edit, {1514, 1515}},
    {2019, Kind::Text, {1516, 1517, 1518}},
    {2020, Kind::Text, Range(16602, 16614)},
    {2020, Kind::List, {16616, 16617}},
    {2020, Kind::Button, {16618}},
    {2021, Kind::Button, {1671, 1672, 1676}},
    {2021, Kind::Edit, {1673, 1674, 1675}},
    {2022, Kind::Text, {401, 402, 403, 404, 405, 1706, 1707, 1708}},
    {2022, Kind::List, {1701, 1702, 1703}},
    {2022, Kind::Button, {1704, 1705}},
    {2023, Kind::Text, Range(1800, 1809)},
    {2023, Kind::Edit, Range(1810, 1849)},
    {2023, Kind::Button, Range(1860, 1869)},
    {2023, Kind::Edit, Range(1870, 1879)},
    {2023, Kind::Button, {1887, 1888, 1889, 1890, 1891, 1893}},
    {2023, Kind::List, {1892}},
    {2024, Kind::Button, {IDOK}},
    {2025, Kind::Button, {1321}},
    {2025, Kind::Edit, {1322}},
};

std::set<uint32_t> Dialogs()
{
    std::set<uint32_t> numbers;
    for (const Group& group : Groups) numbers.insert(group.dialog);
    return numbers;
}

bool IsKeypad(uint32_t number)
{
    return number >= 2100;
}

std::wstring ClassOf(Kind kind, bool keypad)
{
    switch (kind) {
    case Kind::Text: return L"STATIC";
    case Kind::Edit: return L"EDIT";
    case Kind::Button: return L"BUTTON";
    default: return keypad ? L"LISTBOX" : L"COMBOBOX";
    }
}

// The visible part of a closed drop-down list.
int SeenHeight(const Control& control)
{
    return control.className == L"COMBOBOX" ? ClosedListHeight : control.height;
}

bool Overlap(const Control& a, const Control& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + SeenHeight(b) &&
           b.y < a.y + SeenHeight(a);
}

bool IsField(const Control& control)
{
    return control.className == L"EDIT" || control.className == L"LISTBOX" ||
           control.className == L"COMBOBOX";
}

class Templates : public ProductTest
{
protected:
    // Calls `check` for each template in each layout.
    template <typename Check> static void ForAll(const Check& check)
    {
        for (const uint32_t touch : Dialogs())
            for (const uint32_t number : {touch, touch + 100}) {
                SCOPED_TRACE(number);
                check(number, FindTemplate(number));
            }
    }
};

TEST_F(Templates, ThereAreTwentyThreeInTwoLayoutsAndNoOthers)
{
    EXPECT_EQ(Dialogs().size(), 23u);
    for (uint32_t number = 1990; number < 2200; ++number) {
        Template found;
        const bool expected = Dialogs().contains(number) || Dialogs().contains(number - 100);
        EXPECT_EQ(HeadlessFindTemplate(number, found), expected) << number;
    }
}

TEST_F(Templates, BothLayoutsHaveOneCaption)
{
    for (const uint32_t number : Dialogs()) {
        const std::wstring caption = FindTemplate(number).caption;
        EXPECT_FALSE(caption.empty()) << number;
        EXPECT_EQ(caption, FindTemplate(number + 100).caption) << number;
    }
}

TEST_F(Templates, EveryControlIsThereWithItsClass)
{
    for (const Group& group : Groups)
        for (const uint32_t number : {group.dialog, group.dialog + 100}) {
            const Template dialog = FindTemplate(number);
            for (const int id : group.controls) {
                SCOPED_TRACE(std::to_string(number) + ", control " + std::to_string(id));
                std::vector<std::wstring> classes;
                for (const Control& control : dialog.controls)
                    if (control.id == id) classes.push_back(control.className);
                EXPECT_EQ(classes, std::vector<std::wstring>{ClassOf(group.kind, IsKeypad(number))});
            }
        }
}

TEST_F(Templates, NothingElseHasANumber)
{
    ForAll([](uint32_t number, const Template& dialog) {
        std::set<int> known = {IDOK, -1};
        for (const Group& group : Groups)
            if (group.dialog == number % 100 + 2000)
                known.insert(group.controls.begin(), group.controls.end());
        if (number == 2102) known.insert({300, 301});
        if (number % 100 == 23)
            for (const int id : Range(1850, 1859)) known.insert(id);
        for (const Control& control : dialog.controls) EXPECT_TRUE(known.contains(control.id)) << control.id;
    });
}

// Keys reach a button, clicks are enough for a text.
TEST_F(Templates, ColourFieldsAreTextsOnTouchScreensAndButtonsOnKeypads)
{
    for (const uint32_t number : {2023u, 2123u})
        for (const Control& control : FindTemplate(number).controls) {
            if (control.id < 1850 || control.id > 1859) continue;
            EXPECT_EQ(control.className, IsKeypad(number) ? L"BUTTON" : L"STATIC");
            if (IsKeypad(number)) {
                EXPECT_EQ(control.style & ButtonType, OwnerDraw);
            }
        }
}

// A spinner belongs to the control before it.
TEST_F(Templates, SpinnersFollowTheirLists)
{
    const Template dialog = FindTemplate(2102);
    for (const auto& [list, spinner] : {std::pair{1651, 300}, std::pair{1652, 301}})
        for (size_t i = 0; i < dialog.controls.size(); ++i)
            if (dialog.controls[i].id == spinner) {
                EXPECT_EQ(dialog.controls[i].className, L"MSCTLS_UPDOWN32");
                EXPECT_EQ(dialog.controls[i - 1].id, list);
            }
}

TEST_F(Templates, TouchScreensShowThemWhole)
{
    ForAll([](uint32_t number, const Template& dialog) {
        EXPECT_LE(dialog.width, IsKeypad(number) ? KeypadWidth : TouchWidth);
        if (!IsKeypad(number)) {
            EXPECT_LE(dialog.height, TouchHeight);
        }
    });
}

TEST_F(Templates, EveryControlLiesWithinItsDialogAndOnNoOther)
{
    ForAll([](uint32_t, const Template& dialog) {
        for (const Control& control : dialog.controls) {
            EXPECT_GE(control.x, 0) << control.id;
            EXPECT_GE(control.y, 0) << control.id;
            EXPECT_LE(control.x + control.width, dialog.width) << control.id;
            EXPECT_LE(control.y + SeenHeight(control), dialog.height) << control.id;
            for (const Control& other : dialog.controls)
                EXPECT_FALSE(&control != &other && Overlap(control, other))
                    << control.id << " and " << other.id << " at " << control.y;
        }
    });
}

// Before a field comes its label, or another field of the same row. The receiver's text has none.
TEST_F(Templates, LabelsComeBeforeTheirFields)
{
    constexpr int GreyBox = CONTROL_NMEA_GREY_BOX;
    ForAll([](uint32_t, const Template& dialog) {
        for (size_t i = 0; i < dialog.controls.size(); ++i) {
            const Control& field = dialog.controls[i];
            if (!IsField(field) || field.id == GreyBox) continue;
            ASSERT_GT(i, 0u) << field.id;
            size_t before = i - 1;
            while (before > 0 && IsField(dialog.controls[before]) && dialog.controls[before].y == field.y)
                --before;
            const Control& label = dialog.controls[before];
            EXPECT_EQ(label.className, L"STATIC") << field.id;
            EXPECT_FALSE(label.text.empty()) << field.id;
            EXPECT_LE(label.y, field.y + 3) << field.id;
        }
    });
}

TEST_F(Templates, KeysReachEveryFieldAndButton)
{
    ForAll([](uint32_t number, const Template& dialog) {
        for (const Control& control : dialog.controls) {
            const bool isButton = control.className == L"BUTTON";
            if (isButton && (control.style & ButtonType) == AutoRadio) continue; // a group is one stop
            if (isButton || IsField(control)) {
                EXPECT_TRUE(control.style & WS_TABSTOP) << control.id;
            }
            if (control.className == L"LISTBOX") {
                EXPECT_TRUE(control.style & ListNotify) << control.id;
            }
        }
        if (number % 100 == 4 || number % 100 == 10) {
            const auto options =
                std::count_if(dialog.controls.begin(), dialog.controls.end(), [](const Control& c) {
                    return c.className == L"BUTTON" && (c.style & ButtonType) == AutoRadio &&
                           (c.style & WS_TABSTOP);
                });
            EXPECT_EQ(options, 1);
        }
    });
}

// What Enter presses. Where a command is sent it is that, unless it restarts the receiver or changes its
// protocol or rate; there nothing must happen by accident. A keypad's soft key is OK, and so is its Enter.
TEST_F(Templates, EnterSendsWhereThatIsHarmlessAndClosesElsewhere)
{
    constexpr int None = 0;
    const std::map<uint32_t, int> touch = {
        {2002, IDOK}, {2003, IDOK}, {2004, IDOK}, {2005, 1034}, {2007, 1052}, {2008, 1062},
        {2009, 5311}, {2010, IDOK}, {2011, IDOK}, {2012, 1335}, {2013, 1362}, {2014, 1372},
        {2015, 1382}, {2016, 1392}, {2017, 1402}, {2018, 1432}, {2019, 1512}, {2020, 16618},
        {2021, 1672}, {2022, 1705}, {2023, IDOK}, {2024, IDOK}, {2025, IDOK},
    };
    const std::set<uint32_t> keypadsWithout = {2102, 2103, 2104, 2105, 2107, 2108, 2122, 2123};
    ForAll([&](uint32_t number, const Template& dialog) {
        int defaultButton = None;
        for (const Control& control : dialog.controls)
            if (control.className == L"BUTTON" && (control.style & ButtonType) == DefaultPush) {
                EXPECT_EQ(defaultButton, None);
                defaultButton = control.id;
            }
        const int keypad = keypadsWithout.contains(number) ? None : IDOK;
        EXPECT_EQ(defaultButton, IsKeypad(number) ? keypad : touch.at(number)) << number;
    });
}

// The button that closes a dialog of commands sends nothing, and says so; the others have an OK.
TEST_F(Templates, EveryWideDialogHasAButtonThatClosesIt)
{
    const std::set<uint32_t> withOk = {2002, 2023, 2024};
    ForAll([&](uint32_t number, const Template& dialog) {
        const auto close = std::find_if(dialog.controls.begin(), dialog.controls.end(),
                                        [](const Control& control) { return control.id == IDOK; });
        if (close == dialog.controls.end()) {
            EXPECT_TRUE(IsKeypad(number)) << number;
            return;
        }
        EXPECT_EQ(close->text, IsKeypad(number) || withOk.contains(number) ? L"OK" : L"Close") << number;
        EXPECT_TRUE(close->style & WS_TABSTOP) << number;
    });
}

} // namespace
