// SPDX-License-Identifier: MIT
// The system's controls, and the user's acts in them.
#include <gtest/gtest.h>

#include "tests/unit/platform/test_window.h"

namespace
{

constexpr DWORD AutoCheckBox = 3, AutoThreeState = 6, AutoRadioButton = 9, GroupBox = 7;
constexpr DWORD MultiLine = 4, ReadOnly = 0x800, DropDown = 2, DropDownList = 3, Sorted = 0x100,
                Notifies = 0x100, ListNotifies = 1;
constexpr UINT Change = 0x300, Update = 0x400, SelectionChange = 1, EditChange = 5, EditUpdate = 6;

struct Controls : Fresh<testing::Test> {
    HWND Parent = MakeTestWindow();

    HWND Make(const wchar_t* className, int id, DWORD style, const wchar_t* text = L"")
    {
        const HWND control = MakeTestControl(Parent, className, id, style, text);
        Messages.clear();
        return control;
    }
    // The notifications since the last call, as "id:code ".
    std::string Notified()
    {
        std::string list;
        for (const Received& received : Messages)
            if (received.message == WM_COMMAND)
                list += std::to_string(LOWORD(received.wParam)) + ":" +
                        std::to_string(HIWORD(received.wParam)) + " ";
        Messages.clear();
        return list;
    }
    LRESULT Ask(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return SendDlgItemMessageW(Parent, id, message, wParam, lParam);
    }
    LRESULT Give(int id, UINT message, const wchar_t* text, WPARAM wParam = 0)
    {
        return Ask(id, message, wParam, reinterpret_cast<LPARAM>(text));
    }
};

TEST_F(Controls, PushButton)
{
    const HWND button = Make(L"BUTTON", 7, 0);
    EXPECT_TRUE(HeadlessClick(Parent, 7));
    ASSERT_EQ(CountMessages(WM_COMMAND), 1u);
    EXPECT_EQ(HeadlessFocus(Parent), 7);
    for (const Received& received : Messages)
        if (received.message == WM_COMMAND) {
            EXPECT_EQ(received.lParam, reinterpret_cast<LPARAM>(button));
        }
    EXPECT_EQ(Notified(), "7:0 ");
    Ask(7, BM_SETCHECK, BST_CHECKED);
    EXPECT_EQ(Ask(7, BM_GETCHECK), BST_UNCHECKED);
    Ask(7, BM_CLICK);
    EXPECT_EQ(Notified(), "7:0 ");
    EnableWindow(button, FALSE);
    EXPECT_FALSE(HeadlessClick(Parent, 7));
    EXPECT_FALSE(HeadlessEnabled(Parent, 7));
    EXPECT_EQ(HeadlessFocus(Parent), 0) << "a disabled control loses the focus";
    EnableWindow(button, TRUE);
    ShowWindow(button, SW_HIDE);
    EXPECT_FALSE(HeadlessClick(Parent, 7));
    ShowWindow(button, SW_SHOW);
    EnableWindow(Parent, FALSE);
    EXPECT_FALSE(HeadlessClick(Parent, 7));
    EXPECT_DEATH(HeadlessClick(Parent, 8), "control 8");
}

TEST_F(Controls, CheckBoxes)
{
    Make(L"BUTTON", 1, AutoCheckBox);
    Make(L"BUTTON", 2, AutoThreeState);
    HeadlessClick(Parent, 1);
    EXPECT_EQ(HeadlessCheck(Parent, 1), BST_CHECKED);
    HeadlessClick(Parent, 1);
    EXPECT_EQ(Ask(1, BM_GETCHECK), BST_UNCHECKED);
    Ask(1, BM_SETCHECK, BST_INDETERMINATE);
    EXPECT_EQ(Ask(1, BM_GETCHECK), BST_CHECKED) << "this kind has two states";
    const UINT states[] = {BST_CHECKED, BST_INDETERMINATE, BST_UNCHECKED};
    for (const UINT state : states) {
        HeadlessClick(Parent, 2);
        EXPECT_EQ(HeadlessCheck(Parent, 2), state);
    }
    Messages.clear();
    Ask(2, BM_SETCHECK, BST_INDETERMINATE);
    EXPECT_EQ(Notified(), "") << "the program's own change is not notified";
}

TEST_F(Controls, OptionButtonsOfAGroup)
{
    Make(L"BUTTON", 1, AutoRadioButton | WS_GROUP);
    Make(L"BUTTON", 2, AutoRadioButton);
    Make(L"BUTTON", 3, AutoCheckBox);
    Make(L"BUTTON", 4, AutoRadioButton | WS_GROUP);
    Make(L"BUTTON", 5, AutoRadioButton);
    Make(L"BUTTON", 6, GroupBox | WS_GROUP);
    Ask(3, BM_SETCHECK, BST_CHECKED);
    HeadlessClick(Parent, 1);
    HeadlessClick(Parent, 4);
    HeadlessClick(Parent, 2);
    EXPECT_EQ(HeadlessCheck(Parent, 1), BST_UNCHECKED);
    EXPECT_EQ(HeadlessCheck(Parent, 2), BST_CHECKED);
    EXPECT_EQ(HeadlessCheck(Parent, 3), BST_CHECKED);
    EXPECT_EQ(HeadlessCheck(Parent, 4), BST_CHECKED);
    HeadlessClick(Parent, 5);
    EXPECT_EQ(HeadlessCheck(Parent, 4), BST_UNCHECKED);
    EXPECT_EQ(HeadlessCheck(Parent, 2), BST_CHECKED);
}

TEST_F(Controls, EditTellsOfChanges)
{
    Make(L"EDIT", 1, 0, L"first");
    SetDlgItemTextW(Parent, 1, L"second");
    EXPECT_EQ(Notified(), "1:1024 1:768 ");
    EXPECT_TRUE(HeadlessType(Parent, 1, L"third"));
    EXPECT_EQ(HeadlessText(Parent, 1), L"third");
    EXPECT_EQ(Notified(), "1:256 1:1024 1:768 ") << "it gets the focus first";
    Ask(1, EM_SETLIMITTEXT, 4);
    HeadlessType(Parent, 1, L"fourth");
    EXPECT_EQ(HeadlessText(Parent, 1), L"four");
    SetDlgItemTextW(Parent, 1, L"by the program");
    EXPECT_EQ(HeadlessText(Parent, 1), L"by the program") << "the limit is the user's";
}

TEST_F(Controls, MultiLineAndReadOnlyEdit)
{
    Make(L"EDIT", 1, MultiLine | ReadOnly);
    SetDlgItemTextW(Parent, 1, L"a\r\nb");
    EXPECT_EQ(Notified(), "");
    EXPECT_FALSE(HeadlessType(Parent, 1, L"x"));
    EXPECT_EQ(HeadlessText(Parent, 1), L"a\r\nb");
}

TEST_F(Controls, TextAccess)
{
    const HWND edit = Make(L"EDIT", 1, 0, L"12345");
    wchar_t text[4] = L"";
    EXPECT_EQ(GetDlgItemTextW(Parent, 1, text, 4), 3u);
    EXPECT_STREQ(text, L"123");
    EXPECT_EQ(GetWindowTextLengthW(edit), 5);
    EXPECT_EQ(GetWindowTextW(edit, text, 1), 0);
    EXPECT_STREQ(text, L"");
    SetDlgItemInt(Parent, 1, 0xFFFFFFFF, TRUE);
    EXPECT_EQ(HeadlessText(Parent, 1), L"-1");
    SetDlgItemInt(Parent, 1, 0xFFFFFFFF, FALSE);
    EXPECT_EQ(HeadlessText(Parent, 1), L"4294967295");
    SetDlgItemTextW(Parent, 1, nullptr);
    EXPECT_EQ(HeadlessText(Parent, 1), L"");
    EXPECT_EQ(GetDlgCtrlID(edit), 1);
    EXPECT_EQ(GetParent(edit), Parent);
}

TEST_F(Controls, MissingControlOrDialog)
{
    wchar_t text[4] = L"abc";
    EXPECT_FALSE(SetDlgItemTextW(Parent, 99, L""));
    EXPECT_EQ(GetLastError(), ERROR_CONTROL_ID_NOT_FOUND);
    EXPECT_FALSE(SetDlgItemTextW(nullptr, 99, L""));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
    EXPECT_EQ(GetDlgItemTextW(Parent, 99, text, 4), 0u);
    EXPECT_STREQ(text, L"");
    EXPECT_EQ(Ask(99, CB_GETCURSEL), 0);
    EXPECT_EQ(SendDlgItemMessageW(nullptr, 1, CB_GETCURSEL, 0, 0), 0);
    EXPECT_EQ(GetDlgItem(Parent, 99), nullptr);
    EXPECT_FALSE(HeadlessHasControl(Parent, 99));
}

TEST_F(Controls, EditableComboBox)
{
    Make(L"COMBOBOX", 1, DropDown);
    for (const wchar_t* const item : {L"one", L"two", L"three"}) Give(1, CB_ADDSTRING, item);
    EXPECT_EQ(Ask(1, CB_GETCURSEL), CB_ERR);
    EXPECT_EQ(Ask(1, CB_SETCURSEL, 1), 1);
    EXPECT_EQ(HeadlessText(Parent, 1), L"two");
    EXPECT_EQ(Notified(), "");
    SetDlgItemTextW(Parent, 1, L"seven");
    EXPECT_EQ(HeadlessSelection(Parent, 1), 1) << "set by the program, the text leaves the list alone";
    EXPECT_EQ(Notified(), "");
    EXPECT_TRUE(HeadlessType(Parent, 1, L"eight"));
    EXPECT_EQ(HeadlessSelection(Parent, 1), -1);
    EXPECT_EQ(Notified(), "1:3 1:6 1:5 ");
    EXPECT_TRUE(HeadlessChoose(Parent, 1, 2));
    EXPECT_EQ(HeadlessText(Parent, 1), L"three");
    EXPECT_EQ(Notified(), "1:1 ");
    EXPECT_EQ(Ask(1, CB_SETCURSEL, static_cast<WPARAM>(-1)), CB_ERR);
    EXPECT_EQ(HeadlessText(Parent, 1), L"");
    Ask(1, CB_LIMITTEXT, 3);
    HeadlessType(Parent, 1, L"abcd");
    EXPECT_EQ(HeadlessText(Parent, 1), L"abc");
    EXPECT_EQ(Ask(1, CB_GETEDITSEL), static_cast<LRESULT>(MAKEWPARAM(3, 3)));
    EXPECT_DEATH(HeadlessChoose(Parent, 1, 3), "does not have it");
}

TEST_F(Controls, DropDownList)
{
    Make(L"COMBOBOX", 1, DropDownList);
    Give(1, CB_ADDSTRING, L"one");
    Ask(1, CB_SETCURSEL, 0);
    SetDlgItemTextW(Parent, 1, L"other");
    EXPECT_EQ(HeadlessText(Parent, 1), L"one");
    wchar_t text[8];
    EXPECT_EQ(GetDlgItemTextW(Parent, 1, text, 8), 3u);
    EXPECT_EQ(Ask(1, CB_GETEDITSEL), CB_ERR);
    EXPECT_DEATH(HeadlessType(Parent, 1, L"x"), "takes no text");
}

TEST_F(Controls, ListContents)
{
    struct Row {
        const wchar_t* className;
        DWORD style;
        UINT add, insert, remove, reset, count, select, selection, text, length;
    };
    const Row rows[] = {
        {L"COMBOBOX", DropDownList, CB_ADDSTRING, CB_INSERTSTRING, CB_DELETESTRING, CB_RESETCONTENT,
         CB_GETCOUNT, CB_SETCURSEL, CB_GETCURSEL, CB_GETLBTEXT, CB_GETLBTEXTLEN},
        {L"LISTBOX", ListNotifies, LB_ADDSTRING, LB_INSERTSTRING, LB_DELETESTRING, LB_RESETCONTENT,
         LB_GETCOUNT, LB_SETCURSEL, LB_GETCURSEL, LB_GETTEXT, LB_GETTEXTLEN},
    };
    int id = 0;
    for (const Row& row : rows) {
        SCOPED_TRACE(id);
        Make(row.className, ++id, row.style);
        EXPECT_EQ(Give(id, row.add, L"a"), 0);
        EXPECT_EQ(Give(id, row.add, L"c"), 1);
        EXPECT_EQ(Give(id, row.insert, L"b", 1), 1);
        EXPECT_EQ(Give(id, row.insert, L"d", static_cast<WPARAM>(-1)), 3);
        EXPECT_EQ(Give(id, row.insert, L"x", 9), LB_ERR);
        EXPECT_EQ(HeadlessItems(Parent, id), (std::vector<std::wstring>{L"a", L"b", L"c", L"d"}));
        EXPECT_EQ(Ask(id, row.select, 2), 2);
        EXPECT_EQ(HeadlessText(Parent, id), L"c");
        EXPECT_EQ(Ask(id, row.remove, 0), 3);
        EXPECT_EQ(Ask(id, row.selection), 1) << "the same entry";
        EXPECT_EQ(Give(id, row.insert, L"a", 0), 0);
        EXPECT_EQ(Ask(id, row.selection), 2);
        EXPECT_EQ(Ask(id, row.remove, 2), 3);
        EXPECT_EQ(Ask(id, row.selection), LB_ERR);
        EXPECT_EQ(Ask(id, row.remove, 3), LB_ERR);
        wchar_t text[8] = L"";
        EXPECT_EQ(Ask(id, row.text, 1, reinterpret_cast<LPARAM>(text)), 1);
        EXPECT_STREQ(text, L"b");
        EXPECT_EQ(Ask(id, row.length, 1), 1);
        EXPECT_EQ(Ask(id, row.length, 3), LB_ERR);
        EXPECT_EQ(Ask(id, row.text, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text)), LB_ERR);
        EXPECT_EQ(Ask(id, row.select, 3), LB_ERR);
        Notified();
        EXPECT_TRUE(HeadlessChoose(Parent, id, 0));
        EXPECT_NE(Notified().find(std::to_string(id) + ":1 "), std::string::npos);
        Ask(id, row.reset);
        EXPECT_EQ(Ask(id, row.count), 0);
        EXPECT_EQ(Ask(id, row.selection), LB_ERR);
        EXPECT_EQ(Ask(id, 0x1C1, 0, 2), 0) << "an unknown message";
    }
}

TEST_F(Controls, SortedList)
{
    Make(L"COMBOBOX", 1, DropDownList | Sorted);
    EXPECT_EQ(Give(1, CB_ADDSTRING, L"beta"), 0);
    EXPECT_EQ(Give(1, CB_ADDSTRING, L"Alpha"), 0);
    EXPECT_EQ(Give(1, CB_ADDSTRING, L"gamma"), 2);
}

TEST_F(Controls, StaticAndOthers)
{
    Make(L"STATIC", 1, Notifies, L"label");
    Make(L"STATIC", 2, 0);
    Notified();
    EXPECT_TRUE(HeadlessClick(Parent, 1));
    EXPECT_FALSE(HeadlessClick(Parent, 2)) << "it does not notify";
    EXPECT_EQ(Notified(), "1:0 ");
    EXPECT_EQ(HeadlessText(Parent, 1), L"label");
    EXPECT_DEATH(HeadlessType(Parent, 1, L"x"), "takes no text");
}

} // namespace
