// SPDX-License-Identifier: MIT
// Modal dialogs from the program's own templates.
#include <algorithm>

#include <gtest/gtest.h>

#include "resources/resource_ids.h"
#include "tests/unit/platform/test_window.h"

namespace
{

constexpr WPARAM KeyEnter = 13, KeyEscape = 27;

std::vector<UINT> DialogMessages;
std::function<INT_PTR(HWND, UINT)> OnDialogMessage; // 0: the procedure below goes on

INT_PTR Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    DialogMessages.push_back(message);
    if (OnDialogMessage)
        if (const INT_PTR result = OnDialogMessage(dialog, message)) return result;
    if (message == WM_INITDIALOG) {
        EXPECT_EQ(lParam, 5);
        EXPECT_EQ(reinterpret_cast<HWND>(wParam), GetDlgItem(dialog, IDOK));
        return TRUE;
    }
    if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL))
        return EndDialog(dialog, LOWORD(wParam));
    return FALSE;
}

struct Dialogs : Fresh<testing::Test> {
    Dialogs()
    {
        DialogMessages.clear();
        OnDialogMessage = nullptr;
    }
    static INT_PTR Open(HWND owner = nullptr, uint32_t number = DIALOG_ABOUT)
    {
        return DialogBoxParamW(nullptr, MAKEINTRESOURCEW(number), owner, Procedure, 5);
    }
};

TEST_F(Dialogs, TemplatesOfTheAboutBox)
{
    HeadlessTemplate about;
    ASSERT_TRUE(HeadlessFindTemplate(DIALOG_ABOUT, about));
    EXPECT_EQ(about.caption, L"About Toravane");
    EXPECT_EQ(about.width, 160);
    EXPECT_EQ(about.height, 92);
    EXPECT_EQ(about.x, 20);
    EXPECT_EQ(about.y, 32);
    ASSERT_EQ(about.controls.size(), 6u);
    EXPECT_EQ(about.controls[0].className, L"STATIC");
    EXPECT_EQ(about.controls[0].text, L"Toravane v 2.20");
    EXPECT_EQ(about.controls[0].id, -1);
    EXPECT_EQ(about.controls[5].className, L"BUTTON");
    EXPECT_EQ(about.controls[5].id, IDOK);
    EXPECT_EQ(about.controls[5].x, 55);
    ASSERT_TRUE(HeadlessFindTemplate(DIALOG_ABOUT + KEYPAD_LAYOUT, about));
    EXPECT_EQ(about.width, 120);
    EXPECT_FALSE(HeadlessFindTemplate(999, about));
    EXPECT_EQ(Open(nullptr, 999), -1);
    EXPECT_EQ(GetLastError(), ERROR_RESOURCE_NAME_NOT_FOUND);
}

TEST_F(Dialogs, OpenAndClose)
{
    const HWND owner = MakeTestWindow();
    HeadlessUser([=] {
        const HWND dialog = HeadlessTopDialog();
        EXPECT_EQ(GetActiveWindow(), dialog);
        EXPECT_EQ(GetParent(dialog), owner);
        EXPECT_FALSE(IsWindowEnabled(owner));
        EXPECT_EQ(HeadlessTitle(dialog), L"About Toravane");
        EXPECT_EQ(HeadlessFocus(dialog), IDOK);
        RECT frame;
        GetWindowRect(dialog, &frame);
        EXPECT_EQ(frame.right - frame.left, 240); // 160 units of a quarter of 6 pixels
        EXPECT_TRUE(HeadlessClick(dialog, IDOK));
    });
    EXPECT_EQ(Open(owner), IDOK);
    EXPECT_EQ(DialogMessages.front(), WM_INITDIALOG);
    EXPECT_EQ(DialogMessages.back(), WM_DESTROY);
    EXPECT_EQ(HeadlessTopDialog(), nullptr);
    EXPECT_TRUE(IsWindowEnabled(owner));
    EXPECT_EQ(GetActiveWindow(), owner);
    EXPECT_EQ(GetFocus(), owner);
}

TEST_F(Dialogs, CancelByClosing)
{
    HeadlessUser([] { SendMessageW(HeadlessTopDialog(), WM_CLOSE, 0, 0); });
    EXPECT_EQ(Open(), IDCANCEL);
}

TEST_F(Dialogs, EnterAndEscape)
{
    HeadlessUser([] { HeadlessKey(GetDlgItem(HeadlessTopDialog(), IDOK), KeyEnter); });
    EXPECT_EQ(Open(), IDOK);
    HeadlessUser([] { HeadlessKey(HeadlessTopDialog(), KeyEscape); });
    EXPECT_EQ(Open(), IDCANCEL);
}

TEST_F(Dialogs, EndedWhileInitialising)
{
    OnDialogMessage = [](HWND dialog, UINT message) -> INT_PTR {
        return message == WM_INITDIALOG && EndDialog(dialog, 9);
    };
    EXPECT_EQ(Open(), 9);
}

TEST_F(Dialogs, ProcedureKeepsItsOwnFocus)
{
    OnDialogMessage = [](HWND dialog, UINT message) -> INT_PTR {
        if (message == WM_INITDIALOG) SetFocus(GetDlgItem(dialog, -1));
        return 0;
    };
    // Returning 0 from the initialisation leaves the focus where the procedure has put it.
    const DLGPROC quiet = [](HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) -> INT_PTR {
        const INT_PTR result = Procedure(dialog, message, wParam, lParam);
        return message == WM_INITDIALOG ? FALSE : result;
    };
    HeadlessUser([] {
        EXPECT_EQ(HeadlessFocus(HeadlessTopDialog()), -1);
        HeadlessClick(HeadlessTopDialog(), IDOK);
    });
    EXPECT_EQ(DialogBoxParamW(nullptr, MAKEINTRESOURCEW(DIALOG_ABOUT), nullptr, quiet, 5), IDOK);
}

TEST_F(Dialogs, BoxOverADialog)
{
    HeadlessUser([] {
        const HWND dialog = HeadlessTopDialog();
        HeadlessDuringBox([=] {
            EXPECT_FALSE(HeadlessClick(dialog, IDOK));
            EXPECT_NE(GetActiveWindow(), dialog);
        });
        MessageBoxW(GetActiveWindow(), L"", L"", MB_OK);
        EXPECT_EQ(HeadlessBoxes().at(0).owner, dialog);
        EXPECT_EQ(GetActiveWindow(), dialog);
        EXPECT_EQ(HeadlessFocus(dialog), IDOK) << "the focus comes back";
    });
    HeadlessUser([] { HeadlessClick(HeadlessTopDialog(), IDOK); });
    EXPECT_EQ(Open(), IDOK);
}

TEST_F(Dialogs, DialogInADialog)
{
    std::vector<HWND> open;
    HeadlessUser([&] {
        open.push_back(HeadlessTopDialog());
        EXPECT_EQ(Open(open[0]), IDCANCEL);
        EXPECT_EQ(HeadlessTopDialog(), open[0]);
    });
    HeadlessUser([&] {
        EXPECT_NE(HeadlessTopDialog(), open[0]);
        EXPECT_FALSE(IsWindowEnabled(open[0]));
        SendMessageW(HeadlessTopDialog(), WM_CLOSE, 0, 0);
    });
    HeadlessUser([&] { HeadlessClick(open[0], IDOK); });
    EXPECT_EQ(Open(), IDOK);
}

TEST_F(Dialogs, OwnerDestroyed)
{
    const HWND owner = MakeTestWindow();
    HeadlessUser([=] { DestroyWindow(owner); });
    EXPECT_EQ(Open(owner), 0);
    EXPECT_EQ(DialogMessages.back(), WM_DESTROY);
    EXPECT_EQ(HeadlessTopDialog(), nullptr);
}

TEST_F(Dialogs, EndOfTheProgram)
{
    HeadlessUser([] { PostQuitMessage(6); });
    Open();
    EXPECT_EQ(DialogMessages.back(), WM_DESTROY);
    MSG message;
    EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.wParam, 6u);
}

TEST_F(Dialogs, ClosedFromAnotherThread)
{
    OnDialogMessage = [](HWND dialog, UINT message) -> INT_PTR {
        const LPTHREAD_START_ROUTINE closing = [](void* opened) -> DWORD {
            Sleep(10);
            EXPECT_TRUE(SetDlgItemTextW(static_cast<HWND>(opened), IDOK, L"from afar"));
            EXPECT_EQ(HeadlessText(static_cast<HWND>(opened), IDOK), L"from afar");
            EndDialog(static_cast<HWND>(opened), 3);
            EXPECT_FALSE(SetDlgItemTextW(nullptr, IDOK, L""));
            return 0;
        };
        if (message == WM_INITDIALOG) CreateThread(nullptr, 0, closing, dialog, 0, nullptr);
        return 0;
    };
    EXPECT_EQ(Open(), 3);
    EXPECT_EQ(HeadlessElapsed(), 10u);
}

TEST_F(Dialogs, TimersRunInTheLoop)
{
    int ticks = 0;
    OnDialogMessage = [&](HWND dialog, UINT message) -> INT_PTR {
        if (message == WM_INITDIALOG) SetTimer(dialog, 1, 1000, nullptr);
        if (message == WM_TIMER && ++ticks == 3) EndDialog(dialog, 8);
        return 0;
    };
    EXPECT_EQ(Open(), 8);
    EXPECT_EQ(HeadlessElapsed(), 3000u);
}

TEST_F(Dialogs, ControlsAskForTheirColours)
{
    static HBRUSH red;
    red = CreateSolidBrush(RGB(255, 0, 0));
    OnDialogMessage = [](HWND, UINT message) -> INT_PTR {
        return message == WM_CTLCOLORSTATIC ? reinterpret_cast<INT_PTR>(red) : 0;
    };
    HeadlessUser([] {
        const HWND label = GetDlgItem(HeadlessTopDialog(), -1);
        EXPECT_EQ(HeadlessPixels(label).back(), 0xFF0000u);
        HeadlessClick(HeadlessTopDialog(), IDOK);
    });
    Open();
    EXPECT_EQ(std::count(DialogMessages.begin(), DialogMessages.end(), WM_CTLCOLORSTATIC), 5);
    EXPECT_EQ(std::count(DialogMessages.begin(), DialogMessages.end(), WM_CTLCOLORBTN), 1);
}

} // namespace
