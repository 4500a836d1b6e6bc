// What the templates of these dialogs have beyond what all templates have: Enter is OK.
#include "tests/unit/sirf/dialogs/dialog_test.h"

namespace
{

constexpr uint32_t Templates[] = {2009, 2010, 2011, 2012, 2013, 2014, 2015,
                                  2016, 2017, 2018, 2019, 2020, 2021, 2025};

class SirfTemplates : public ProductTest
{
};

TEST_F(SirfTemplates, OneButtonIsTheDefaultAndItIsOk)
{
    constexpr DWORD DefaultPushButton = 1, TypeMask = 0xF;
    for (const uint32_t touch : Templates)
        for (const uint32_t number : {touch, touch + 100}) {
            std::vector<int> defaults;
            for (const HeadlessTemplateControl& control : FindTemplate(number).controls)
                if (control.className == L"BUTTON" && (control.style & TypeMask) == DefaultPushButton)
                    defaults.push_back(control.id);
            EXPECT_EQ(defaults, std::vector<int>{IDOK}) << number;
        }
}

} // namespace
