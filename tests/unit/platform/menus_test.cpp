// SPDX-License-Identifier: MIT
// Menus of the program's resources.
#include <algorithm>

#include <gtest/gtest.h>

#include "resources/resource_ids.h"
#include "tests/unit/platform/test_window.h"

namespace
{

using Menus = Fresh<testing::Test>;

TEST_F(Menus, OfTheBar)
{
    const HWND window = MakeTestWindow();
    EXPECT_TRUE(HeadlessMenu(window).empty());
    const HWND bar = CommandBar_Create(nullptr, window, 1);
    EXPECT_EQ(CommandBar_Height(bar), 26);
    EXPECT_EQ(CommandBar_Height(window), 0);
    EXPECT_FALSE(CommandBar_InsertMenubar(bar, nullptr, 999, 0));
    EXPECT_FALSE(CommandBar_InsertMenubar(window, nullptr, MENU_MAIN, 0));
    ASSERT_TRUE(CommandBar_InsertMenubar(bar, nullptr, MENU_MAIN, 0));
    const std::vector<std::wstring> menu = HeadlessMenu(window);
    ASSERT_GE(menu.size(), 26u);
    EXPECT_EQ(menu[0], L"0 401 About");
    EXPECT_EQ(menu[2], L"0 0 NMEA");
    EXPECT_EQ(menu[3], L"1 2003 Set Serial Port (Switch to SiRF)");
    EXPECT_EQ(menu.back(), L"0 406 Exit");
    EXPECT_TRUE(HeadlessCommand(window, COMMAND_EXIT));
    ASSERT_EQ(Messages.back().message, WM_COMMAND);
    EXPECT_EQ(Messages.back().wParam, static_cast<WPARAM>(COMMAND_EXIT));
    EnableWindow(window, FALSE);
    EXPECT_FALSE(HeadlessCommand(window, COMMAND_EXIT));
    EXPECT_DEATH(HeadlessCommand(window, 77), "the menu has no command 77");
}

TEST_F(Menus, OfAWindow)
{
    const HMENU menu = LoadMenuW(nullptr, MAKEINTRESOURCEW(MENU_MAIN + KEYPAD_LAYOUT));
    ASSERT_TRUE(menu);
    MakeTestWindow();
    const HWND window =
        CreateWindowExW(0, L"Test", L"", WS_VISIBLE, 0, 0, 9, 9, nullptr, menu, nullptr, nullptr);
    const std::vector<std::wstring> entries = HeadlessMenu(window);
    EXPECT_EQ(std::count_if(entries.begin(), entries.end(), [](const auto& e) { return e[0] == L'0'; }), 2);
    EXPECT_EQ(LoadMenuW(nullptr, MAKEINTRESOURCEW(5)), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_RESOURCE_NAME_NOT_FOUND);
    EXPECT_EQ(CreateWindowExW(0, L"Test", L"", 0, 0, 0, 9, 9, nullptr, menu, nullptr, nullptr), nullptr)
        << "the menu is another window's";
}

} // namespace
