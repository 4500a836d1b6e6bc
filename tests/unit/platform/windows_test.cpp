// SPDX-License-Identifier: MIT
// Windows: making, sizes, activation and the end.
#include <gtest/gtest.h>

#include "tests/unit/platform/test_window.h"

namespace
{

using Windows = Fresh<testing::Test>;

TEST_F(Windows, MakingOne)
{
    HeadlessSetClientSize(100, 50);
    const HWND window = MakeTestWindow(WS_VISIBLE | WS_CAPTION | WS_SYSMENU);
    ASSERT_TRUE(window);
    ASSERT_GE(Messages.size(), 3u);
    EXPECT_EQ(Messages[0].message, WM_CREATE);
    EXPECT_EQ(Messages[1].message, WM_SIZE);
    EXPECT_EQ(Messages[1].lParam, 100 | 50 << 16);
    EXPECT_EQ(CountMessages(WM_ACTIVATE), 1u);
    EXPECT_EQ(CountMessages(WM_PAINT), 0u) << "not before UpdateWindow or the loop";
    UpdateWindow(window);
    EXPECT_EQ(CountMessages(WM_PAINT), 1u);
    EXPECT_EQ(HeadlessMainWindow(), window);
    EXPECT_EQ(HeadlessTitle(window), L"A test");
    EXPECT_EQ(GetActiveWindow(), window);
    EXPECT_EQ(FindWindowW(L"test", L"A test"), window);
    EXPECT_EQ(FindWindowW(L"test", L"Another"), nullptr);
    RECT client, frame;
    GetClientRect(window, &client);
    GetWindowRect(window, &frame);
    EXPECT_EQ(client.bottom, 50);
    EXPECT_EQ(frame.bottom - frame.top, 70) << "with the caption";
}

TEST_F(Windows, RefusedCreation)
{
    OnMessage = [](HWND, const Received&) { return false; };
    EXPECT_FALSE(CreateWindowExW(0, L"Unknown", L"", 0, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr));
    WNDCLASSW windowClass{};
    windowClass.lpszClassName = L"Refusing";
    windowClass.lpfnWndProc = [](HWND, UINT message, WPARAM, LPARAM) -> LRESULT {
        return message == WM_CREATE ? -1 : 0;
    };
    EXPECT_TRUE(RegisterClassW(&windowClass));
    EXPECT_FALSE(RegisterClassW(&windowClass)) << "there already";
    EXPECT_FALSE(CreateWindowExW(0, L"Refusing", L"", 0, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(HeadlessMainWindow(), nullptr);
}

TEST_F(Windows, Sizes)
{
    const HWND window = MakeTestWindow(WS_VISIBLE);
    Messages.clear();
    EXPECT_TRUE(SetWindowPos(window, nullptr, 0, 0, 240, 268, SWP_NOMOVE | SWP_NOZORDER));
    ASSERT_EQ(CountMessages(WM_SIZE), 1u);
    EXPECT_TRUE(SetWindowPos(window, nullptr, 5, 6, 0, 0, SWP_NOSIZE | SWP_NOZORDER));
    EXPECT_EQ(CountMessages(WM_SIZE), 1u);
    RECT frame;
    GetWindowRect(window, &frame);
    EXPECT_EQ(frame.left, 5);
    EXPECT_EQ(frame.bottom, 274);

    // A caption that is added takes its room when the frame is told to change.
    SetWindowLongW(window, GWL_STYLE, GetWindowLongW(window, GWL_STYLE) | static_cast<LONG>(WS_CAPTION));
    RECT client;
    GetClientRect(window, &client);
    EXPECT_EQ(client.bottom, 268);
    SetWindowPos(window, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_FRAMECHANGED);
    GetClientRect(window, &client);
    EXPECT_EQ(client.bottom, 248);
    const HWND child = MakeTestControl(window, L"STATIC", 1, 0);
    GetWindowRect(child, &frame);
    EXPECT_EQ(frame.top, 26) << "below the caption";
    EXPECT_EQ(GetWindowLongW(window, 3), 0);
}

TEST_F(Windows, TheEnd)
{
    const HWND window = MakeTestWindow();
    const HWND owned = MakeTestWindow(WS_VISIBLE, window);
    const HWND child = MakeTestControl(window, L"EDIT", 1, 0);
    EXPECT_EQ(GetActiveWindow(), owned);
    DestroyWindow(owned);
    EXPECT_EQ(GetActiveWindow(), window);
    const HWND another = MakeTestWindow(WS_VISIBLE, window);
    Messages.clear();
    SendMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(CountMessages(WM_DESTROY), 2u);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_FALSE(IsWindow(child));
    EXPECT_FALSE(IsWindow(another));
    EXPECT_EQ(GetActiveWindow(), nullptr);
    EXPECT_FALSE(DestroyWindow(window));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
}

TEST_F(Windows, OfAnotherThread)
{
    const HWND window = MakeTestWindow();
    const LPTHREAD_START_ROUTINE other = [](void* handle) -> DWORD {
        const HWND foreign = static_cast<HWND>(handle);
        EXPECT_EQ(GetActiveWindow(), nullptr);
        EXPECT_FALSE(DestroyWindow(foreign));
        EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
        EXPECT_FALSE(SetFocus(foreign));
        EXPECT_FALSE(SetTimer(foreign, 1, 100, nullptr));
        EXPECT_TRUE(InvalidateRect(foreign, nullptr, FALSE)) << "does not wait";
        EXPECT_TRUE(PostMessageW(foreign, WM_APP, 0, 0));
        PAINTSTRUCT paint;
        EXPECT_FALSE(BeginPaint(foreign, &paint));
        return 0;
    };
    CreateThread(nullptr, 0, other, window, 0, nullptr);
    Sleep(1);
    EXPECT_EQ(HeadlessLiveThreads(), 0u);
    HeadlessPumpMessages();
    EXPECT_EQ(CountMessages(WM_APP), 1u);
}

TEST_F(Windows, Focus)
{
    const HWND window = MakeTestWindow();
    const HWND edit = MakeTestControl(window, L"EDIT", 1, 0);
    EXPECT_EQ(GetFocus(), window);
    EXPECT_EQ(SetFocus(edit), window);
    EXPECT_EQ(HeadlessFocus(window), 1);
    EnableWindow(edit, FALSE);
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_EQ(SetFocus(edit), nullptr);
    EXPECT_FALSE(EnableWindow(window, TRUE)) << "it was enabled";
    EXPECT_TRUE(EnableWindow(edit, TRUE));
    EXPECT_TRUE(IsWindowEnabled(edit));
    SetFocus(edit);
    EXPECT_EQ(SetFocus(nullptr), edit);
    EXPECT_EQ(GetFocus(), nullptr);
}

TEST_F(Windows, OtherProgramsInFront)
{
    const HWND window = MakeTestWindow();
    HeadlessOtherProgramInFront(true);
    EXPECT_EQ(GetActiveWindow(), nullptr);
    HeadlessOtherProgramInFront(false);
    EXPECT_EQ(GetActiveWindow(), window);
    EXPECT_EQ(HeadlessBroughtToFront(), nullptr);
    BringToFront(window);
    EXPECT_EQ(HeadlessBroughtToFront(), window);
    EXPECT_EQ(CreateTextPageFont(), nullptr);
}

TEST_F(Windows, TextFromAnotherThreadWaits)
{
    static HWND edit;
    edit = MakeTestControl(MakeTestWindow(), L"EDIT", 1, 0, L"old");
    const LPTHREAD_START_ROUTINE other = [](void*) -> DWORD {
        SetWindowTextW(edit, L"new");
        wchar_t text[8] = L"";
        EXPECT_EQ(GetWindowTextW(edit, text, 8), 3);
        EXPECT_STREQ(text, L"new");
        return 0;
    };
    CreateThread(nullptr, 0, other, nullptr, 0, nullptr);
    Sleep(500);
    EXPECT_EQ(HeadlessText(GetParent(edit), 1), L"old");
    HeadlessPass(1);
    EXPECT_EQ(HeadlessLiveThreads(), 0u);
    EXPECT_EQ(HeadlessText(GetParent(edit), 1), L"new");
}

} // namespace
