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
constexpr int KeypadHeights[] = {112, 164}; // what keypad screens of 176 x 220 and 240 x 320 show at once
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

// The controls of each dialog; typed by hand from their descriptions.
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

bool IsButtonOfType(const Control& control, std::initializer_list<DWORD> types)
{
    return control.className == L"BUTTON" &&
           std::find(types.begin(), types.end(), control.style & ButtonType) != types.end();
}
bool IsPushButton(const Control& control)
{
    return IsButtonOfType(control, {0, DefaultPush});
}
bool IsBox(const Control& control)
{
    constexpr DWORD AutoCheckBox = 3, Auto3State = 6;
    return IsButtonOfType(control, {AutoCheckBox, Auto3State});
}
bool IsOption(const Control& control)
{
    return IsButtonOfType(control, {AutoRadio});
}

// Twice the middle of a control's height, which is a whole number.
int Middle(const Control& control)
{
    return 2 * control.y + SeenHeight(control);
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

TEST_F(Templates, KeysReachTheColoursOfTheChart)
{
    for (const uint32_t number : {2023u, 2123u}) {
        int fields = 0;
        for (const Control& control : FindTemplate(number).controls) {
            if (control.id < 1850 || control.id > 1859) continue;
            ++fields;
            EXPECT_EQ(control.className, L"BUTTON");
            EXPECT_EQ(control.style & ButtonType, OwnerDraw);
            EXPECT_TRUE(control.style & WS_TABSTOP);
        }
        EXPECT_EQ(fields, 10);
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

// Before a field is its label, or another field of the same row. The receiver's text has no label.
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

// The button that Enter presses: the one that sends the command, unless the command restarts the receiver or
// changes its protocol or rate, which must not happen by accident. On a keypad, Enter is OK, like the soft
// key.
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

// The button that closes a command dialog sends nothing, and its text is Close; the other dialogs have an OK.
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

// ---- What a dialog looks like -------------------------------------------------------------------------

TEST_F(Templates, RowsDoNotTouch)
{
    ForAll([](uint32_t, const Template& dialog) {
        for (const Control& upper : dialog.controls)
            for (const Control& lower : dialog.controls) {
                const bool frames =
                    (IsField(upper) || IsPushButton(upper)) && (IsField(lower) || IsPushButton(lower));
                const bool oneColumn = upper.x < lower.x + lower.width && lower.x < upper.x + upper.width;
                if (!frames || !oneColumn || lower.y <= upper.y) continue;
                EXPECT_GT(lower.y, upper.y + SeenHeight(upper)) << upper.id << " and " << lower.id;
            }
    });
}

// A caption beside a field or a box: their middles are in one line, for a box exactly.
TEST_F(Templates, CaptionsStandInTheLineOfTheirBoxes)
{
    ForAll([](uint32_t, const Template& dialog) {
        for (size_t i = 1; i < dialog.controls.size(); ++i) {
            const Control &caption = dialog.controls[i - 1], &control = dialog.controls[i];
            const bool beside = caption.y < control.y + SeenHeight(control) &&
                                control.y < caption.y + caption.height && caption.x < control.x;
            if (caption.className != L"STATIC" || caption.text.empty() || !beside) continue;
            if (IsField(control)) {
                EXPECT_LE(std::abs(Middle(caption) - Middle(control)), 3) << control.id;
            }
            if (IsBox(control)) {
                EXPECT_EQ(Middle(caption), Middle(control)) << control.id;
            }
        }
    });
}

// Going down a wide dialog, the first field of each row begins where the one above it begins. In some
// dialogs a second column begins somewhere: for lists with long entries, or beside the plot of the sky.
TEST_F(Templates, FieldsStandInColumns)
{
    const std::map<uint32_t, int> columns = {{2002, 2}, {2009, 2}, {2012, 2}, {2022, 2}, {2023, 2}};
    ForAll([&](uint32_t number, const Template& dialog) {
        if (IsKeypad(number)) return;
        std::map<int, int> firsts; // of a row, by its place from the top
        for (const Control& control : dialog.controls)
            if (IsField(control) && control.id != CONTROL_NMEA_GREY_BOX) {
                const auto [row, isFirst] = firsts.try_emplace(control.y, control.x);
                if (!isFirst) row->second = std::min(row->second, control.x);
            }
        int found = firsts.empty() ? 0 : 1, left = firsts.empty() ? 0 : firsts.begin()->second;
        for (const auto& [y, x] : firsts)
            if (x != left) {
                ++found;
                left = x;
            }
        EXPECT_LE(found, columns.contains(number) ? columns.at(number) : 1);
    });
}

TEST_F(Templates, LabelsKeepAwayFromTheirFields)
{
    ForAll([](uint32_t, const Template& dialog) {
        for (const Control& label : dialog.controls)
            for (const Control& field : dialog.controls)
                if (label.className == L"STATIC" && IsField(field) && field.y == label.y - 2 &&
                    label.x < field.x) {
                    EXPECT_GE(field.x, label.x + label.width + 1) << field.id;
                }
    });
}

// The values that are sent are before the button: no field, box or option is after Set, or below it. A
// keypad's DGPS Source has its buttons between its two reports.
TEST_F(Templates, SetComesLastAndStandsLowest)
{
    const std::set<int> sets = {1004, 1018, 1034, 1052, 1062, 5311, 12810, 12914, 1335, 1362,
                                1372, 1382, 1392, 1402, 1432, 1512, 16618, 1672,  1705};
    int found = 0;
    ForAll([&](uint32_t, const Template& dialog) {
        const auto set = std::find_if(dialog.controls.begin(), dialog.controls.end(),
                                      [&](const Control& control) { return sets.contains(control.id); });
        if (set == dialog.controls.end()) return;
        ++found;
        for (const Control& control : dialog.controls) {
            if (control.id == CONTROL_NMEA_GREY_BOX) continue;
            if (IsField(control) || IsBox(control) || IsOption(control)) {
                EXPECT_LT(&control, &*set) << control.id;
                EXPECT_LE(Middle(control), Middle(*set)) << control.id;
            }
        }
    });
    EXPECT_EQ(found, 2 * 19);
}

// In the row of Set the buttons are in the order of the Tab key: Get, Set and the one that closes.
TEST_F(Templates, ButtonsOfARowFollowEachOther)
{
    ForAll([](uint32_t, const Template& dialog) {
        for (const Control& left : dialog.controls)
            for (const Control& right : dialog.controls)
                if (IsPushButton(left) && IsPushButton(right) && left.y == right.y && left.x < right.x) {
                    EXPECT_LT(&left, &right) << left.id << " and " << right.id;
                }
        const Control* get = nullptr;
        for (const Control& control : dialog.controls) {
            if (control.text == L"Get" && IsPushButton(control)) get = &control;
            if (control.text == L"Set" && get) {
                EXPECT_EQ(get->y, control.y);
            }
        }
    });
}

TEST_F(Templates, PushButtonsHaveOneHeight)
{
    ForAll([](uint32_t, const Template& dialog) {
        for (const Control& control : dialog.controls)
            if (IsPushButton(control)) {
                EXPECT_EQ(control.height, 14) << control.id;
            }
    });
}

TEST_F(Templates, HeadingsSayWhatIsMeasuredAndWhatABoxSwitches)
{
    const std::map<uint32_t, std::vector<std::wstring>> headings = {
        {2009, {L"Measured"}},
        {2019, {L"Measured"}},
        {2109, {L"Measured"}},
        {2119, {L"Measured"}},
        {2022, {L"Visibles", L"Azimuth", L"Elevation"}},
        {2122, {L"Visibles", L"Azimuth", L"Elevation"}},
        {2023, {L"Visible"}},
    };
    const std::map<int, std::wstring> rows = {{1706, L"Visibles"}, {1707, L"Azimuth"}, {1708, L"Elevation"}};
    for (const auto& [number, texts] : headings) {
        SCOPED_TRACE(number);
        const Template dialog = FindTemplate(number);
        for (const std::wstring& text : texts)
            EXPECT_TRUE(std::any_of(dialog.controls.begin(), dialog.controls.end(),
                                    [&](const Control& control) {
                                        return control.className == L"STATIC" && control.text == text;
                                    }))
                << std::string(text.begin(), text.end());
        for (size_t i = 1; i < dialog.controls.size(); ++i)
            if (rows.contains(dialog.controls[i].id)) {
                EXPECT_EQ(dialog.controls[i - 1].text, rows.at(dialog.controls[i].id));
            }
    }
}

// Nothing is missing between two rows, and nothing after the last one. The plot of the sky has no control.
TEST_F(Templates, NoStretchIsEmpty)
{
    constexpr int Most = 8;
    ForAll([&](uint32_t number, const Template& dialog) {
        if (number % 100 == 22) return;
        std::vector<bool> filled(static_cast<size_t>(dialog.height));
        for (const Control& control : dialog.controls)
            for (int y = control.y; y < control.y + SeenHeight(control) && y < dialog.height; ++y)
                filled[static_cast<size_t>(y)] = true;
        int empty = 0;
        for (size_t y = 0; y < filled.size(); ++y) {
            empty = filled[y] ? 0 : empty + 1;
            EXPECT_LE(empty, Most) << "at " << y;
        }
    });
}

// A keypad's dialog fits its screen, or goes on for more than a row.
TEST_F(Templates, KeypadsDoNotScrollByAFewPixels)
{
    constexpr int Row = 12;
    ForAll([&](uint32_t number, const Template& dialog) {
        if (!IsKeypad(number)) return;
        for (const int seen : KeypadHeights)
            EXPECT_FALSE(dialog.height > seen && dialog.height < seen + Row) << dialog.height;
    });
}

// It recommends the menu, which begins at the window's upper edge.
TEST_F(Templates, AboutLeavesTheMenuFree)
{
    constexpr int MenuHeight = 20;
    EXPECT_GE(FindTemplate(2024).y, MenuHeight);
}

} // namespace
