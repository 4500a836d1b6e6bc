// SPDX-License-Identifier: MIT
#include "ui/dialog_scrolling.h"

#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"
#include "tests/unit/support/product_test.h"
#include "ui/dialog_support.h"
#include "ui/shell_libraries.h"

namespace
{

constexpr int Degraded = CONTROL_MODE_DEGRADED, Set = CONTROL_MODE_SET,
              Smoothing = CONTROL_MODE_TRACK_SMOOTHING;
constexpr int ScreenWidth = 176, ScreenHeight = 180, Caption = 20; // of headless dialogs
constexpr int ContentWidth = 110 * 6 / 4,
              ContentHeight = 164 * 13 / 8; // of the template, in the headless font

BOOL FillScreen(ShellInitDialog* request)
{
    return SetWindowPos(request->dialog, nullptr, 0, 0, ScreenWidth, ScreenHeight + Caption, 0);
}

// A dialog that is higher than a keypad device's screen.
class DialogScrolling : public ProductTest
{
protected:
    DialogScrolling()
    {
        HeadlessSetPlatformType(L"SmartPhone");
        HeadlessAddExport(L"AYGSHELL.DLL", L"SHInitDialog",
                          reinterpret_cast<FARPROC>(reinterpret_cast<void*>(FillScreen)));
        LoadShellLibraries();
        ChooseLayout();
    }
    ~DialogScrolling() override { FreeShellLibraries(); }

    static void With(const std::function<void(HWND dialog)>& look)
    {
        HeadlessUser([&] {
            look(HeadlessTopDialog());
            HeadlessCommand(HeadlessTopDialog(), IDOK);
        });
        ShowSirfDialog(DIALOG_SIRF_MODE_CONTROL);
    }
    static RECT PlaceOf(HWND dialog, int control)
    {
        RECT place = {};
        GetWindowRect(GetDlgItem(dialog, control), &place);
        return place;
    }
    static void Scroll(HWND dialog, int code, int position = 0)
    {
        SendMessageW(dialog, WM_VSCROLL, MAKEWPARAM(static_cast<WORD>(code), static_cast<WORD>(position)), 0);
    }
};

TEST_F(DialogScrolling, ControlsTakeTheScreensWidth)
{
    With([](HWND dialog) {
        const RECT place = PlaceOf(dialog, Degraded);
        EXPECT_EQ(place.left, 6 * ScreenWidth / ContentWidth);
        EXPECT_EQ(place.right, (6 + 153) * ScreenWidth / ContentWidth);
    });
}

TEST_F(DialogScrolling, FollowsTheFocusWithRoomAroundIt)
{
    With([](HWND dialog) {
        EXPECT_EQ(DialogScrolled(), 0);
        SetFocus(GetDlgItem(dialog, Set));
        EXPECT_EQ(DialogScrolled(), ContentHeight - ScreenHeight); // not beyond the end of the content
        EXPECT_LE(PlaceOf(dialog, Set).bottom, Caption + ScreenHeight);
        SetFocus(GetDlgItem(dialog, Degraded));
        EXPECT_EQ(DialogScrolled(), 0);
        EXPECT_GE(PlaceOf(dialog, Degraded).top, Caption);
    });
}

TEST_F(DialogScrolling, TheUserMayScrollAwayFromTheFocus)
{
    With([](HWND dialog) {
        SetFocus(GetDlgItem(dialog, Smoothing));
        Scroll(dialog, SB_TOP);
        SetDlgItemTextW(dialog, CONTROL_MODE_ALTITUDE, L"5"); // notifies of the change
        EXPECT_EQ(DialogScrolled(), 0);
    });
}

TEST_F(DialogScrolling, EveryMovementOfTheBar)
{
    struct Row {
        int code, position, scrolled;
    };
    constexpr int Last = ContentHeight - ScreenHeight;
    constexpr Row Rows[] = {
        {SB_LINEDOWN, 0, 24},   {SB_LINEUP, 0, 0}, {SB_LINEUP, 0, 0},
        {SB_PAGEDOWN, 0, Last}, {SB_PAGEUP, 0, 0}, {SB_THUMBTRACK, 77, 77},
        {SB_BOTTOM, 0, Last},   {SB_TOP, 0, 0},    {SB_THUMBPOSITION, 30000, Last},
        {8, 0, Last},
    };
    With([&](HWND dialog) {
        const LONG top = PlaceOf(dialog, Degraded).top;
        for (const Row& row : Rows) {
            Scroll(dialog, row.code, row.position);
            EXPECT_EQ(DialogScrolled(), row.scrolled) << row.code;
            EXPECT_EQ(PlaceOf(dialog, Degraded).top, top - row.scrolled) << row.code;
        }
    });
}

// The system scrolls only visible controls.
TEST_F(DialogScrolling, DialogThatIsNotShownYetMovesItsControls)
{
    With([](HWND dialog) {
        const LONG top = PlaceOf(dialog, Degraded).top;
        const LONG style = GetWindowLongW(dialog, GWL_STYLE);
        SetWindowLongW(dialog, GWL_STYLE, style & ~static_cast<LONG>(WS_VISIBLE));
        Scroll(dialog, SB_THUMBPOSITION, 30);
        SetWindowLongW(dialog, GWL_STYLE, style);
        EXPECT_EQ(DialogScrolled(), 30);
        EXPECT_EQ(PlaceOf(dialog, Degraded).top, top - 30);
        EXPECT_EQ(PlaceOf(dialog, Degraded).bottom - PlaceOf(dialog, Degraded).top, 11 * 13 / 8);
    });
}

TEST_F(DialogScrolling, DropDownListsKeepTheHeightOfTheirLists)
{
    HeadlessSetPlatformType(L"PocketPC");
    ChooseLayout();
    With([](HWND dialog) {
        const RECT place = PlaceOf(dialog, Degraded);
        EXPECT_EQ(place.bottom - place.top, 100 * 13 / 8);
        EXPECT_LE(place.right, ScreenWidth);
    });
}

// A spinner notifies its dialog of its own movements with the same message.
TEST_F(DialogScrolling, SpinnersScrollNothing)
{
    With([](HWND dialog) {
        SendMessageW(dialog, WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(GetDlgItem(dialog, Set)));
        EXPECT_EQ(DialogScrolled(), 0);
    });
}

} // namespace
