// SPDX-License-Identifier: MIT
#include "ui/dialog_support.h"

#include "resources/resource_ids.h"
#include "tests/unit/support/product_test.h"
#include "ui/dialog.h"
#include "ui/waiting.h"

namespace
{

class DialogSupport : public ProductTest
{
};

struct PlatformRow {
    const wchar_t* type;
    DWORD error;
    bool smartphone, pocketPc;
};

TEST_F(DialogSupport, PlatformTypes)
{
    constexpr PlatformRow Rows[] = {
        {L"SmartPhone", 0, true, false},
        {L"SMARTPHONE 2003", 0, true, false},
        {L"Smart", 0, false, false},
        {L"PocketPC", 0, false, true},
        {L"pocketpc phone", 0, false, true},
        {L"Pocket PC", 0, false, false},
        {L"", 0, false, false},
        {L"", ERROR_ACCESS_DENIED, true, false}, // the answer of a locked keypad device
        {L"", ERROR_INVALID_SPI_VALUE, false, false},
    };
    for (const PlatformRow& row : Rows) {
        HeadlessSetPlatformType(row.type, row.error);
        EXPECT_EQ(IsSmartphone(), row.smartphone) << row.error;
        EXPECT_EQ(IsPocketPc(), row.pocketPc) << row.error;
    }
}

// A manufacturer's text may have any length.
TEST_F(DialogSupport, PlatformTypeThatHasNoRoomIsNone)
{
    const std::wstring room = L"smartphone" + std::wstring(245, L'x');
    HeadlessSetPlatformType(room.c_str());
    EXPECT_TRUE(IsSmartphone());
    HeadlessSetPlatformType((room + L'x').c_str());
    EXPECT_FALSE(IsSmartphone());
    EXPECT_FALSE(IsPocketPc());
}

TEST_F(DialogSupport, LayoutOfADesktopAndOfAKeypadDevice)
{
    ChooseLayout();
    EXPECT_EQ(LayoutOffset(), 0u);
    EXPECT_EQ(ListMessages.addString, 323u);
    EXPECT_EQ(ListMessages.insertString, 330u);
    EXPECT_EQ(ListMessages.deleteString, 324u);
    EXPECT_EQ(ListMessages.setSelection, 334u);
    EXPECT_EQ(ListMessages.getSelection, 327u);
    EXPECT_EQ(ListMessages.getText, 328u);
    EXPECT_EQ(ListMessages.getTextLength, 329u);
    HeadlessSetPlatformType(L"SmartPhone");
    ChooseLayout();
    EXPECT_EQ(LayoutOffset(), 100u);
    EXPECT_EQ(ListMessages.addString, 384u);
    EXPECT_EQ(ListMessages.insertString, 385u);
    EXPECT_EQ(ListMessages.deleteString, 386u);
    EXPECT_EQ(ListMessages.setSelection, 390u);
    EXPECT_EQ(ListMessages.getSelection, 392u);
    EXPECT_EQ(ListMessages.getText, 393u);
    EXPECT_EQ(ListMessages.getTextLength, 394u);
}

TEST_F(DialogSupport, ListOfNoDialogHasNoSelection)
{
    EXPECT_EQ(GetListSelection(nullptr, CONTROL_TO_SIRF_BAUDRATE), -1);
    wchar_t text[8] = L"old";
    EXPECT_EQ(GetSelectedListText(nullptr, CONTROL_TO_SIRF_BAUDRATE, text, 8), 0u);
    bool found = true;
    EXPECT_EQ(GetSelectedListNumber(nullptr, CONTROL_TO_SIRF_BAUDRATE, found), 0);
    EXPECT_FALSE(found);
}

TEST_F(DialogSupport, CaptionShowsTheProgramsIcon)
{
    constexpr Dialog Dgps = {.number = DIALOG_SIRF_DGPS_SOURCE, .kind = DialogKind::DgpsSource};
    HeadlessUser([] {
        const HWND dialog = HeadlessTopDialog();
        EXPECT_EQ(HeadlessWindowClass(dialog).hIcon, LoadIconW(nullptr, MAKEINTRESOURCEW(ICON_PROGRAM)));
        EXPECT_NE(HeadlessWindowClass(dialog).hIcon, nullptr);
        HeadlessCommand(dialog, IDCANCEL);
    });
    OpenDialog(Dgps);
}

// The text also needs room for its end.
TEST_F(DialogSupport, ListEntryIsReadIfItFits)
{
    constexpr Dialog Dgps = {.number = DIALOG_SIRF_DGPS_SOURCE, .kind = DialogKind::DgpsSource};
    HeadlessUser([] {
        const HWND dialog = HeadlessTopDialog();
        SendDlgItemMessageW(dialog, CONTROL_DGPS_SOURCE, CB_INSERTSTRING, 0,
                            reinterpret_cast<LPARAM>(L"Abcdefg"));
        SendDlgItemMessageW(dialog, CONTROL_DGPS_SOURCE, CB_SETCURSEL, 0, 0);
        wchar_t text[8] = L"old";
        EXPECT_EQ(GetSelectedListText(dialog, CONTROL_DGPS_SOURCE, text, 7), 0u);
        EXPECT_STREQ(text, L"old");
        EXPECT_EQ(GetSelectedListText(dialog, CONTROL_DGPS_SOURCE, text, 8), 7u);
        EXPECT_STREQ(text, L"Abcdefg");
        HeadlessCommand(dialog, IDCANCEL);
    });
    OpenDialog(Dgps);
}

// ---- Waiting ------------------------------------------------------------------------------------------

DWORD WINAPI SendSomething(void* window)
{
    Sleep(10);
    SendMessageW(static_cast<HWND>(window), WM_APP, 0, 0);
    return 0;
}

TEST_F(DialogSupport, WaitEndsInTimeAlthoughTheTickCountWrapsAndMessagesAreSent)
{
    static uint32_t served;
    served = 0;
    WNDCLASSW plain = {};
    plain.lpszClassName = L"Waiting";
    plain.lpfnWndProc = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
        served += message == WM_APP;
        return DefWindowProcW(window, message, wParam, lParam);
    };
    RegisterClassW(&plain);
    const HWND window =
        CreateWindowExW(0, L"Waiting", L"", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    HeadlessSetTick(0xFFFFFFF0);
    const HANDLE other = CreateThread(nullptr, 0, SendSomething, window, 0, nullptr);
    const uint64_t start = HeadlessElapsed();
    WaitServingSentMessages(100);
    EXPECT_EQ(HeadlessElapsed() - start, 100u);
    EXPECT_EQ(served, 1u);
    EXPECT_EQ(GetTickCount(), 84u);
    CloseHandle(other);
    DestroyWindow(window);
}

} // namespace
