// SPDX-License-Identifier: MIT
// Queues, timers and the scripted user.
#include <gtest/gtest.h>

#include "tests/unit/platform/test_window.h"

namespace
{

using Queue = Fresh<testing::Test>;

TEST_F(Queue, PostedThenPaintThenTimer)
{
    const HWND window = MakeTestWindow();
    SetTimer(window, 4, 10, nullptr);
    Sleep(25);
    PostMessageW(window, WM_APP, 1, 2);
    std::vector<UINT> order;
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        order.push_back(message.message);
        DispatchMessageW(&message);
    }
    EXPECT_EQ(order, (std::vector<UINT>{WM_APP, WM_PAINT, WM_TIMER})) << "one timer message for two ticks";
}

TEST_F(Queue, QuitComesAfterPosted)
{
    const HWND window = MakeTestWindow(0);
    PostQuitMessage(7);
    PostMessageW(window, WM_APP, 0, 0);
    MSG message;
    EXPECT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, WM_APP);
    EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, WM_QUIT);
    EXPECT_EQ(message.wParam, 7u);
}

TEST_F(Queue, Filters)
{
    const HWND a = MakeTestWindow(0), b = MakeTestWindow(0);
    PostMessageW(a, WM_APP, 0, 0);
    PostMessageW(b, WM_APP + 1, 0, 0);
    MSG message;
    EXPECT_FALSE(PeekMessageW(&message, a, WM_APP + 1, WM_APP + 1, PM_REMOVE));
    EXPECT_TRUE(PeekMessageW(&message, b, 0, 0, PM_NOREMOVE));
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_APP + 1, WM_APP + 1, PM_REMOVE));
    EXPECT_EQ(message.hwnd, b);
    EXPECT_EQ(GetMessageW(&message, reinterpret_cast<HWND>(uintptr_t{16}), 0, 0), -1);
}

TEST_F(Queue, PostingToNoWindow)
{
    const HWND window = MakeTestWindow(0);
    PostMessageW(window, WM_APP, 0, 0);
    DestroyWindow(window);
    EXPECT_FALSE(PostMessageW(window, WM_APP, 0, 0));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
    EXPECT_EQ(SendMessageW(window, WM_APP, 0, 0), 0);
    MSG message;
    EXPECT_FALSE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) << "what was posted before has gone";
    EXPECT_TRUE(PostMessageW(nullptr, WM_APP, 0, 0));
    EXPECT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) << "a message of the thread";
}

TEST_F(Queue, HasAnEnd)
{
    const HWND window = MakeTestWindow(0);
    int posted = 0;
    while (posted < 20000 && PostMessageW(window, WM_APP, 0, 0)) ++posted;
    EXPECT_EQ(posted, 10000);
}

TEST_F(Queue, Keys)
{
    const HWND window = MakeTestWindow();
    HeadlessPumpMessages();
    Messages.clear();
    EXPECT_TRUE(HeadlessKey(window, 0x26));
    EXPECT_TRUE(HeadlessKey(window, 'A', L'a'));
    HeadlessPumpMessages();
    ASSERT_EQ(Messages.size(), 3u);
    EXPECT_EQ(Messages[0].wParam, 0x26u);
    EXPECT_EQ(Messages[1].wParam, static_cast<WPARAM>('A'));
    EXPECT_EQ(Messages[2].message, WM_CHAR);
    EXPECT_EQ(Messages[2].wParam, static_cast<WPARAM>('a'));

    HeadlessKey(window, 'B', L'b');
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    EXPECT_EQ(CountMessages(WM_CHAR), 1u) << "no character without TranslateMessage";
    EnableWindow(window, FALSE);
    EXPECT_FALSE(HeadlessKey(window, 'C'));
}

TEST_F(Queue, Timers)
{
    const HWND window = MakeTestWindow(0);
    EXPECT_EQ(SetTimer(window, 3, 1000, nullptr), 3u);
    HeadlessPass(3500);
    EXPECT_EQ(CountMessages(WM_TIMER), 3u);
    SetTimer(window, 3, 100, nullptr);
    HeadlessPass(150);
    EXPECT_EQ(CountMessages(WM_TIMER), 4u);
    EXPECT_TRUE(KillTimer(window, 3));
    EXPECT_FALSE(KillTimer(window, 3));
    EXPECT_FALSE(SetTimer(reinterpret_cast<HWND>(uintptr_t{16}), 1, 1, nullptr));
    static int called;
    called = 0;
    SetTimer(nullptr, 0, 100, [](HWND, UINT, UINT_PTR, DWORD) { ++called; });
    HeadlessPass(250);
    EXPECT_EQ(called, 2);
    SetTimer(window, 5, 10, nullptr);
    DestroyWindow(window);
    Messages.clear();
    HeadlessPass(100);
    EXPECT_EQ(CountMessages(WM_TIMER), 0u);
}

TEST_F(Queue, TimersAreNotServedInASleep)
{
    const HWND window = MakeTestWindow(0);
    SetTimer(window, 3, 1000, nullptr);
    Sleep(5000);
    EXPECT_EQ(CountMessages(WM_TIMER), 0u);
}

TEST_F(Queue, UserActsWhenNothingIsLeft)
{
    const HWND window = MakeTestWindow(0);
    std::string order;
    OnMessage = [&](HWND, const Received& received) {
        if (received.message == WM_APP) order += "message ";
        return false;
    };
    HeadlessUser([&] { order += "first "; });
    HeadlessUser([&] { order += "second" + std::to_string(HeadlessElapsed()) + " "; }, 200);
    HeadlessUser([&] {
        order += "third" + std::to_string(HeadlessElapsed()) + " ";
        PostMessageW(window, WM_APP, 0, 0);
        HeadlessUser([&] { order += "fourth "; });
    });
    PostMessageW(window, WM_APP, 0, 0);
    EXPECT_FALSE(HeadlessRunMessages());
    EXPECT_EQ(order, "message first second200 third200 message fourth ");
    HeadlessUser([] { PostQuitMessage(0); });
    HeadlessUser([&] { order += "never"; });
    EXPECT_TRUE(HeadlessRunMessages());
    EXPECT_EQ(order.find("never"), order.npos);
}

TEST_F(Queue, OtherThreadsGoBeforeTheUser)
{
    static std::string order;
    order.clear();
    const LPTHREAD_START_ROUTINE other = [](void*) -> DWORD {
        order += "thread ";
        return 0;
    };
    CreateThread(nullptr, 0, other, nullptr, 0, nullptr);
    HeadlessUser([] { order += "user"; });
    HeadlessRunMessages();
    EXPECT_EQ(order, "thread user");
}

TEST_F(Queue, WaitForAnyInput)
{
    constexpr DWORD allInput = 0x4FF;
    const HWND window = MakeTestWindow(0);
    SetTimer(window, 1, 30, nullptr);
    EXPECT_EQ(MsgWaitForMultipleObjectsEx(0, nullptr, 10, allInput, 0), WAIT_TIMEOUT);
    EXPECT_EQ(MsgWaitForMultipleObjectsEx(0, nullptr, 1000, allInput, 0), WAIT_OBJECT_0);
    EXPECT_EQ(HeadlessElapsed(), 30u);
    KillTimer(window, 1);
    PostMessageW(window, WM_APP, 0, 0);
    EXPECT_EQ(MsgWaitForMultipleObjectsEx(0, nullptr, 1000, allInput, 0), WAIT_OBJECT_0);
    const HANDLE none = nullptr;
    EXPECT_EQ(MsgWaitForMultipleObjectsEx(1, &none, 0, 0, 0), WAIT_FAILED);
}

} // namespace
