// SPDX-License-Identifier: MIT
// Order of the threads on the virtual clock, messages between them, and waits that never end.
#include <cstring>

#include <gtest/gtest.h>

#include "platform/headless/headless.h"
#include "platform/platform.h"

namespace
{

struct Scheduler : testing::Test {
    Scheduler()
    {
        HeadlessReset();
        Trace.clear();
    }
    static inline std::string Trace;
    static inline HWND Target;
};

void Note(const char* what)
{
    Scheduler::Trace += what + std::to_string(HeadlessElapsed()) + " ";
}

DWORD NoteThrice(void* name)
{
    for (int i = 0; i < 3; ++i) {
        Note(static_cast<const char*>(name));
        Sleep(10);
    }
    return 7;
}

HANDLE Start(LPTHREAD_START_ROUTINE routine, const char* name = "")
{
    return CreateThread(nullptr, 0, routine, const_cast<char*>(name), 0, nullptr);
}

TEST_F(Scheduler, SleepMovesTheClockAndTheTick)
{
    HeadlessSetTick(0xFFFFFFF0);
    Sleep(0x20);
    EXPECT_EQ(GetTickCount(), 0x10u);
    EXPECT_EQ(HeadlessElapsed(), 0x20u);
}

TEST_F(Scheduler, LocalTimeRunsWithTheClock)
{
    HeadlessSetTimeLimit(0);
    HeadlessSetLocalTime({2008, 2, 0, 28, 23, 59, 58, 900});
    Sleep(86400u * 1000 + 1200);
    SYSTEMTIME time{};
    GetLocalTime(&time);
    const SYSTEMTIME expected = {2008, 3, 6, 1, 0, 0, 0, 100}; // a leap year; a Saturday
    EXPECT_EQ(0, std::memcmp(&time, &expected, sizeof time));
}

TEST_F(Scheduler, EarliestFirstThenInOrder)
{
    Start(NoteThrice, "a");
    Start(NoteThrice, "b");
    Sleep(15);
    Note("main");
    Sleep(100);
    EXPECT_EQ(Trace, "a0 b0 a10 b10 main15 a20 b20 ");
    EXPECT_EQ(HeadlessLiveThreads(), 0u);
}

TEST_F(Scheduler, ExitCode)
{
    const HANDLE thread = Start(NoteThrice, "a");
    DWORD code = 0;
    ASSERT_TRUE(GetExitCodeThread(thread, &code));
    EXPECT_EQ(code, STILL_ACTIVE);
    Sleep(100);
    ASSERT_TRUE(GetExitCodeThread(thread, &code));
    EXPECT_EQ(code, 7u);
    EXPECT_TRUE(CloseHandle(thread));
    code = STILL_ACTIVE;
    EXPECT_FALSE(GetExitCodeThread(thread, &code));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(code, STILL_ACTIVE);
    EXPECT_FALSE(GetExitCodeThread(nullptr, &code));
}

TEST_F(Scheduler, InterleavingIsRepeatable)
{
    const auto run = [](uint32_t seed) {
        HeadlessReset();
        HeadlessInterleave(seed);
        Trace.clear();
        const LPTHREAD_START_ROUTINE count = [](void* name) -> DWORD {
            for (int i = 0; i < 50; ++i) {
                Trace += static_cast<const char*>(name);
                GetTickCount();
            }
            return 0;
        };
        Start(count, "a");
        Start(count, "b");
        for (int i = 0; i < 50; ++i) {
            Trace += "m";
            GetTickCount();
        }
        Sleep(1000);
        return Trace;
    };
    const std::string first = run(1);
    EXPECT_EQ(first.size(), 150u);
    EXPECT_EQ(first, run(1));
    EXPECT_NE(first, run(2));
    EXPECT_NE(run(1).find("ba"), std::string::npos);
}

// ---- Messages between threads --------------------------------------------------------------------------

LRESULT Window(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_USER) {
        Note("got");
        EXPECT_EQ(GetCurrentThreadId(), static_cast<DWORD>(lParam));
        return static_cast<LRESULT>(wParam) + 1;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND MakeWindow()
{
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = Window;
    windowClass.lpszClassName = L"Test";
    RegisterClassW(&windowClass);
    Scheduler::Target =
        CreateWindowExW(0, L"Test", L"", WS_OVERLAPPED, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    return Scheduler::Target;
}

DWORD SendToTarget(void* receiver)
{
    Sleep(5);
    Note("send");
    const LRESULT answer = SendMessageW(Scheduler::Target, WM_USER, 41,
                                        static_cast<LPARAM>(reinterpret_cast<uintptr_t>(receiver)));
    Note(answer == 42 ? "answered" : answer == 0 ? "gone" : "wrong");
    return 0;
}

void StartSender()
{
    CreateThread(nullptr, 0, SendToTarget, reinterpret_cast<void*>(uintptr_t{GetCurrentThreadId()}), 0,
                 nullptr);
}

TEST_F(Scheduler, SleepDoesNotServeSentMessages)
{
    MakeWindow();
    StartSender();
    Sleep(50);
    Note("slept");
    MSG message;
    EXPECT_FALSE(PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE));
    Sleep(1);
    EXPECT_EQ(Trace, "send5 slept50 got50 answered50 ");
}

TEST_F(Scheduler, WaitForSentMessagesReturnsAndPeekServes)
{
    MakeWindow();
    StartSender();
    EXPECT_EQ(MsgWaitForMultipleObjectsEx(0, nullptr, 1000, QS_SENDMESSAGE, 0), WAIT_OBJECT_0);
    Note("woke");
    PostMessageW(Target, WM_APP, 0, 0);
    MSG message;
    EXPECT_FALSE(PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE));
    EXPECT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE));
    EXPECT_EQ(message.message, WM_APP);
    EXPECT_EQ(MsgWaitForMultipleObjectsEx(0, nullptr, 100, QS_SENDMESSAGE, 0), WAIT_TIMEOUT);
    EXPECT_EQ(Trace, "send5 woke5 got5 answered5 ");
    EXPECT_EQ(HeadlessElapsed(), 105u);
}

TEST_F(Scheduler, MessageLoopServes)
{
    MakeWindow();
    StartSender();
    HeadlessUser([] { PostQuitMessage(3); }, 20);
    MSG message;
    EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.wParam, 3u);
    EXPECT_EQ(Trace, "send5 got5 answered5 ");
}

TEST_F(Scheduler, DestroyedWindowReleasesTheSender)
{
    MakeWindow();
    StartSender();
    Sleep(10);
    DestroyWindow(Target);
    Sleep(1);
    EXPECT_EQ(Trace, "send5 gone10 ");
}

TEST_F(Scheduler, TwoThreadsThatSendToEachOtherServeEachOther)
{
    static HWND other;
    static DWORD mainId;
    mainId = GetCurrentThreadId();
    MakeWindow();
    const LPTHREAD_START_ROUTINE routine = [](void*) -> DWORD {
        other =
            CreateWindowExW(0, L"Test", L"", WS_OVERLAPPED, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
        Sleep(10);
        EXPECT_EQ(SendMessageW(Target, WM_USER, 1, static_cast<LPARAM>(mainId)), 2);
        return 0;
    };
    DWORD id = 0;
    CreateThread(nullptr, 0, routine, nullptr, 0, &id);
    Sleep(5);
    EXPECT_EQ(SendMessageW(other, WM_USER, 2, static_cast<LPARAM>(id)), 3);
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
    Sleep(1);
    EXPECT_EQ(HeadlessLiveThreads(), 0u);
    EXPECT_FALSE(IsWindow(other)) << "a thread's windows go with it";
}

TEST_F(Scheduler, WaitForAThread)
{
    const HANDLE thread = Start(NoteThrice, "a");
    EXPECT_EQ(MsgWaitForMultipleObjectsEx(1, &thread, 5, 0, 0), WAIT_TIMEOUT);
    EXPECT_EQ(MsgWaitForMultipleObjectsEx(1, &thread, INFINITE, 0, 0), WAIT_OBJECT_0);
    EXPECT_EQ(HeadlessElapsed(), 30u);
}

// ---- Waits that never end ------------------------------------------------------------------------------

using SchedulerDeathTest = Scheduler;

TEST_F(SchedulerDeathTest, EveryThreadWaits)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto deadlock = [] {
        const DWORD id = GetCurrentThreadId();
        (void)id;
        MakeWindow();
        StartSender();
        Sleep(INFINITE);
    };
    EXPECT_DEATH(deadlock(),
                 "every thread waits.*(\n.*)*Sleep.*(\n.*)*answer to message 0x400 from thread 0x100");
}

TEST_F(SchedulerDeathTest, TimeLimit)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    HeadlessSetTimeLimit(1000);
    Sleep(1000);
    EXPECT_DEATH(Sleep(1), "time limit");
}

TEST_F(SchedulerDeathTest, ADialogLoopWithoutAUser)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    MSG message;
    EXPECT_DEATH(GetMessageW(&message, nullptr, 0, 0), "waits for a message");
}

} // namespace
