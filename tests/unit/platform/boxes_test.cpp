// SPDX-License-Identifier: MIT
// Message boxes and the save-file dialog.
#include <gtest/gtest.h>

#include "tests/unit/platform/test_window.h"

namespace
{

using Boxes = Fresh<testing::Test>;

TEST_F(Boxes, AreRecordedAndAnsweredWithTheDefaultButton)
{
    EXPECT_EQ(MessageBoxW(nullptr, L"text", L"caption", MB_OK | MB_ICONINFORMATION), IDOK);
    EXPECT_EQ(MessageBoxW(nullptr, L"", L"", MB_OKCANCEL), IDOK);
    EXPECT_EQ(MessageBoxW(nullptr, L"", L"", MB_OKCANCEL | MB_DEFBUTTON2), IDCANCEL);
    ASSERT_EQ(HeadlessBoxes().size(), 3u);
    EXPECT_EQ(HeadlessBoxes()[0].text, L"text");
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"caption");
    EXPECT_EQ(HeadlessBoxes()[0].type, MB_ICONINFORMATION);
    EXPECT_TRUE(HeadlessBoxes()[0].onUserInterfaceThread);
    HeadlessClearBoxes();
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(Boxes, ScriptedAnswersComeInOrder)
{
    HeadlessAnswerBox(IDCANCEL);
    HeadlessAnswerBox(IDOK);
    EXPECT_EQ(MessageBoxW(nullptr, L"", L"", MB_OKCANCEL), IDCANCEL);
    EXPECT_EQ(MessageBoxW(nullptr, L"", L"", MB_OKCANCEL), IDOK);
    HeadlessAnswerBox(IDCANCEL);
    EXPECT_DEATH(MessageBoxW(nullptr, L"", L"", MB_OK), "a button that it does not have");
}

TEST_F(Boxes, DisableTheirOwnerAndDispatchMessagesWhileUp)
{
    const HWND window = MakeTestWindow();
    PostMessageW(window, WM_APP, 0, 0);
    OnMessage = [&](HWND, const Received& received) {
        if (received.message == WM_APP) {
            EXPECT_FALSE(IsWindowEnabled(window));
        }
        return false;
    };
    HeadlessDuringBox([&] {
        EXPECT_EQ(CountMessages(WM_APP), 1u);
        EXPECT_FALSE(IsWindowEnabled(window));
        EXPECT_NE(GetActiveWindow(), window);
        PostMessageW(window, WM_APP, 0, 0);
    });
    HeadlessDuringBox([] { EXPECT_EQ(CountMessages(WM_APP), 2u); });
    MessageBoxW(window, L"", L"", MB_OK);
    EXPECT_TRUE(IsWindowEnabled(window));
    EXPECT_EQ(GetActiveWindow(), window);
    MessageBoxW(window, L"", L"", MB_OK); // the steps were the first box's
    EXPECT_EQ(CountMessages(WM_APP), 2u);
}

TEST_F(Boxes, AnOwnerThatWasDisabledStaysSo)
{
    const HWND window = MakeTestWindow();
    EnableWindow(window, FALSE);
    MessageBoxW(window, L"", L"", MB_OK);
    EXPECT_FALSE(IsWindowEnabled(window));
}

TEST_F(Boxes, ScriptWaitsUntilTheBoxIsClosed)
{
    bool acted = false;
    HeadlessUser([] { MessageBoxW(nullptr, L"", L"", MB_OK); });
    HeadlessUser([&] { acted = true; });
    HeadlessDuringBox([&] { EXPECT_FALSE(acted); });
    EXPECT_FALSE(HeadlessRunMessages());
    EXPECT_TRUE(acted);
}

TEST_F(Boxes, GoWithTheirOwner)
{
    const HWND window = MakeTestWindow();
    HeadlessDuringBox([&] { DestroyWindow(window); });
    EXPECT_EQ(MessageBoxW(window, L"", L"", MB_OK), 0);
    EXPECT_EQ(MessageBoxW(window, L"", L"", MB_OK), 0) << "no such owner";
    EXPECT_EQ(HeadlessBoxes().size(), 1u);
}

TEST_F(Boxes, TheEndOfTheProgramStaysInTheQueue)
{
    HeadlessDuringBox([] { PostQuitMessage(4); });
    EXPECT_EQ(MessageBoxW(nullptr, L"", L"", MB_OK), IDOK);
    MSG message;
    EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.wParam, 4u);
}

TEST_F(Boxes, OnAnotherThread)
{
    const LPTHREAD_START_ROUTINE box = [](void* owner) -> DWORD {
        return static_cast<DWORD>(MessageBoxW(static_cast<HWND>(owner), L"", L"", MB_OK));
    };
    const HWND window = MakeTestWindow();
    const HANDLE thread = CreateThread(nullptr, 0, box, window, 0, nullptr);
    Sleep(100); // disabling the owner is a message to this thread
    DWORD code = 0;
    GetExitCodeThread(thread, &code);
    EXPECT_EQ(code, STILL_ACTIVE);
    HeadlessPass(10);
    GetExitCodeThread(thread, &code);
    EXPECT_EQ(code, static_cast<DWORD>(IDOK));
    EXPECT_FALSE(HeadlessBoxes().at(0).onUserInterfaceThread);
}

TEST_F(Boxes, SaveDialog)
{
    const HWND window = MakeTestWindow();
    wchar_t path[20] = L"\\proposed";
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = window;
    dialog.lpstrFilter = L"Text (*.txt)\0*.txt\0Any\0*.*\0";
    dialog.nFilterIndex = 2;
    dialog.lpstrFile = path;
    dialog.nMaxFile = 20;
    dialog.lpstrDefExt = L"log";
    EXPECT_FALSE(GetSaveFileNameW(&dialog)) << "cancelled";
    EXPECT_STREQ(path, L"\\proposed");

    HeadlessAnswerSaveDialog(L"\\dir\\name.txt", 1);
    EXPECT_TRUE(GetSaveFileNameW(&dialog));
    EXPECT_STREQ(path, L"\\dir\\name.txt");
    EXPECT_EQ(dialog.nFilterIndex, 1u);
    EXPECT_EQ(dialog.nFileOffset, 5);
    EXPECT_EQ(dialog.nFileExtension, 10);

    HeadlessAnswerSaveDialog(L"\\a name that is too long", 1);
    EXPECT_FALSE(GetSaveFileNameW(&dialog));

    ASSERT_EQ(HeadlessSaveDialogs().size(), 3u);
    const HeadlessSaveDialog& shown = HeadlessSaveDialogs()[0];
    EXPECT_EQ(shown.proposedName, L"\\proposed");
    EXPECT_EQ(shown.filters, L"Text (*.txt)|*.txt|Any|*.*");
    EXPECT_EQ(shown.defaultExtension, L"log");
    EXPECT_EQ(shown.filterIndex, 2u);
    EXPECT_EQ(shown.capacity, 20u);
    EXPECT_EQ(shown.owner, window);
    EXPECT_TRUE(IsWindowEnabled(window));
}

} // namespace
