// SPDX-License-Identifier: MIT
#include "ui/error_boxes.h"

#include "resources/resource_ids.h"
#include "tests/unit/support/product_test.h"
#include "ui/dialog.h"
#include "ui/dialog_support.h"

namespace
{

class ErrorBoxes : public ProductTest
{
protected:
    ErrorBoxes() { MakeMainWindow(); }
    ~ErrorBoxes() override { DestroyWindow(MainWindow.load()); }

    // Like the reader thread.
    template <typename Action> static void OnReaderThread(Action action)
    {
        const DWORD own = UserInterfaceThread.load();
        UserInterfaceThread.store(own + 1);
        action();
        UserInterfaceThread.store(own);
    }
};

TEST_F(ErrorBoxes, LastErrorIsShownWithTheCallsName)
{
    SetLastError(ERROR_ACCESS_DENIED);
    ShowLastError(L"SomeCall");
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"SomeCall");
    EXPECT_NE(HeadlessBoxes()[0].text.find(L"5"), std::wstring::npos);
    EXPECT_EQ(HeadlessBoxes()[0].type, MB_OK | MB_ICONINFORMATION);
    EXPECT_EQ(HeadlessBoxes()[0].owner, MainWindow.load());
}

TEST_F(ErrorBoxes, ErrorWithoutASystemTextIsShownByItsNumber)
{
    HeadlessFailCall("FormatMessageW", 1, ERROR_GEN_FAILURE);
    SetLastError(1234);
    ShowLastError(L"SomeCall");
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"SomeCall", L"Error 1234"));
}

TEST_F(ErrorBoxes, CheckShowsZeroResultsOnly)
{
    CheckGdiResult(1, L"Call");
    EXPECT_TRUE(HeadlessBoxes().empty());
    CheckGdiResult(0, L"Call");
    EXPECT_EQ(HeadlessBoxes().size(), 1u);
}

TEST_F(ErrorBoxes, ReaderPostsAndTheUserInterfaceShows)
{
    OnReaderThread([] {
        SetLastError(ERROR_DISK_FULL);
        ShowLastError(L"WriteFile File");
        PostBox(PostedBox::CouldOnlyWrite, 3u << 16 | 31u);
    });
    EXPECT_TRUE(HeadlessBoxes().empty());
    HeadlessPumpMessages();
    ASSERT_EQ(HeadlessBoxes().size(), 2u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"WriteFile File");
    EXPECT_NE(HeadlessBoxes()[0].text.find(L"112"), std::wstring::npos);
    EXPECT_TRUE(IsBox(HeadlessBoxes()[1], L"PortWriteBuffer", L"Could only write 3 of 31 bytes."));
}

TEST_F(ErrorBoxes, ReaderSaysEachFailureOnceUntilItIsAnswered)
{
    OnReaderThread([] {
        for (int i = 0; i < 100; ++i) CheckGdiResult(0, L"BitBlt3");
        CheckGdiResult(0, L"Polyline3");
    });
    HeadlessPumpMessages();
    ASSERT_EQ(HeadlessBoxes().size(), 2u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"BitBlt3");
    EXPECT_EQ(HeadlessBoxes()[1].caption, L"Polyline3");
    OnReaderThread([] { CheckGdiResult(0, L"BitBlt3"); });
    HeadlessPumpMessages();
    EXPECT_EQ(HeadlessBoxes().size(), 3u);
}

TEST_F(ErrorBoxes, PostedBoxesComeOneByOneAndEightMayWait)
{
    HeadlessDuringBox([] {
        for (uint32_t i = 1; i <= 20; ++i) PostBox(PostedBox::CouldOnlyWrite, i << 16 | 99u);
    });
    PostBox(PostedBox::CouldOnlyWrite, 99u);
    HeadlessPumpMessages();
    ASSERT_EQ(HeadlessBoxes().size(), 9u); // the box that was shown and eight that waited
    EXPECT_EQ(HeadlessBoxes()[0].text, L"Could only write 0 of 99 bytes.");
    EXPECT_EQ(HeadlessBoxes()[1].text, L"Could only write 1 of 99 bytes.");
    EXPECT_EQ(HeadlessBoxes()[8].text, L"Could only write 8 of 99 bytes.");
}

struct RefusalRow {
    uint32_t refused, polled;
    const wchar_t* text;
};

TEST_F(ErrorBoxes, RefusalsAreWorded)
{
    constexpr RefusalRow Rows[] = {
        {168, 170,
         L"Get SBAS parameters not accepted. A likely reason is that it is not supported on XTrac or GSW3 "
         L"firmware."},
        {168, 136, L"Command 168 with parameter 136 not accepted."},
        {170, 0,
         L"Set SBAS parameters not accepted. A likely reason is that it is not supported on XTrac firmware."},
        {136, 0, L"Command 136\r\rCommand or parameter not accepted."},
    };
    for (const RefusalRow& row : Rows) {
        HeadlessClearBoxes();
        PostBox(PostedBox::RefusedCommand, row.refused << 8 | row.polled);
        HeadlessPumpMessages();
        ASSERT_EQ(HeadlessBoxes().size(), 1u);
        EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"NAcknowledgment", row.text));
        EXPECT_EQ(HeadlessBoxes()[0].owner, MainWindow.load());
    }
}

// A receiver that refuses at the speed of a fast line must not fill the queue of the user interface.
TEST_F(ErrorBoxes, ReaderPostsNothingWhileEnoughBoxesWait)
{
    HeadlessCountCalls();
    for (uint32_t i = 0; i < 1000; ++i) PostBox(PostedBox::RefusedCommand, 128u << 8);
    uint32_t posted = 0;
    for (const auto& [call, count] : HeadlessCountedCalls())
        if (call == "PostMessageW") posted = count;
    HeadlessClearFaults();
    EXPECT_EQ(posted, 9u);
    HeadlessPumpMessages();
    EXPECT_EQ(HeadlessBoxes().size(), 9u);
    PostBox(PostedBox::RefusedCommand, 128u << 8); // all have been answered
    HeadlessPumpMessages();
    EXPECT_EQ(HeadlessBoxes().size(), 10u);
}

TEST_F(ErrorBoxes, BoxesThatCouldNotBePostedOrAreNotTheReadersDoNotCount)
{
    HeadlessFailCall("PostMessageW", 1, ERROR_NOT_ENOUGH_MEMORY, FailMode::FromHereOn);
    for (int i = 0; i < 20; ++i) PostBox(PostedBox::CouldOnlyWrite, 99u);
    HeadlessClearFaults();
    for (int i = 0; i < 20; ++i) ShowPostedBox(200, 0); // another program's messages
    PostBox(PostedBox::CouldOnlyWrite, 99u);
    HeadlessPumpMessages();
    EXPECT_EQ(HeadlessBoxes().size(), 1u);
}

TEST_F(ErrorBoxes, StrayMessagesShowNothing)
{
    ShowPostedBox(200, 0);
    ShowPostedBox(static_cast<WPARAM>(PostedBox::LastError), 0x7FFF0000);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(ErrorBoxes, WithoutAMainWindowNothingIsPosted)
{
    HWND window = MainWindow.exchange(nullptr);
    PostBox(PostedBox::CouldOnlyWrite, 1);
    HeadlessPumpMessages();
    EXPECT_TRUE(HeadlessBoxes().empty());
    MainWindow.store(window);
}

// A dialog opens while the box is shown; after the box, the window below the dialog must be disabled.
TEST_F(ErrorBoxes, RefusalLeavesTheWindowBehindADialogDisabled)
{
    PostBox(PostedBox::RefusedCommand, 128u << 8);
    HeadlessPumpMessages();
    EXPECT_TRUE(IsWindowEnabled(MainWindow.load()));
    HeadlessDuringBox([] { PublishDialog(DialogKind::Sbas, MainWindow.load()); });
    PostBox(PostedBox::RefusedCommand, 128u << 8);
    HeadlessPumpMessages();
    EXPECT_FALSE(IsWindowEnabled(MainWindow.load()));
}

// ---- Boxes over an open dialog ------------------------------------------------------------------------

constexpr Dialog PowerMask = {.number = DIALOG_SIRF_POWER_MASK, .kind = DialogKind::PowerMask};

// In both layouts.
class BoxesOverADialog : public ErrorBoxes, public testing::WithParamInterface<const wchar_t*>
{
protected:
    static constexpr int Field = CONTROL_POWER_NAVIGATION; // not the first one

    BoxesOverADialog()
    {
        HeadlessSetPlatformType(GetParam());
        ChooseLayout();
    }

    // Opens a dialog in which a field has the focus, and acts.
    static void InDialog(const std::function<void(HWND)>& act)
    {
        HeadlessUser([&act] {
            const HWND dialog = HeadlessTopDialog();
            SetFocus(GetDlgItem(dialog, Field));
            act(dialog);
            HeadlessCommand(dialog, IDCANCEL);
        });
        OpenDialog(PowerMask);
    }

    static void Refuse()
    {
        PostBox(PostedBox::RefusedCommand, 140u << 8);
        HeadlessPumpMessages();
    }

    static void ExpectKeyboardIn(HWND dialog)
    {
        EXPECT_TRUE(IsWindowEnabled(dialog));
        EXPECT_FALSE(IsWindowEnabled(MainWindow.load()));
        EXPECT_EQ(GetActiveWindow(), dialog);
        EXPECT_EQ(HeadlessFocus(dialog), Field);
    }
};

INSTANTIATE_TEST_SUITE_P(Layouts, BoxesOverADialog, testing::Values(L"", L"SmartPhone"),
                         [](const auto& layout) { return layout.index ? "Keypad" : "TouchScreen"; });

TEST_P(BoxesOverADialog, RefusalGivesTheKeyboardBackToTheField)
{
    InDialog([](HWND dialog) {
        for (uint32_t round = 1; round <= 2; ++round) {
            Refuse();
            ASSERT_EQ(HeadlessBoxes().size(), round);
            EXPECT_EQ(HeadlessBoxes().back().owner, dialog);
            ExpectKeyboardIn(dialog);
        }
    });
    EXPECT_TRUE(IsWindowEnabled(MainWindow.load()));
}

TEST_P(BoxesOverADialog, RefusalsInARowGiveTheKeyboardBackToTheField)
{
    InDialog([](HWND dialog) {
        PostBox(PostedBox::RefusedCommand, 140u << 8);
        Refuse();
        ASSERT_EQ(HeadlessBoxes().size(), 2u);
        EXPECT_EQ(HeadlessBoxes()[1].owner, dialog);
        ExpectKeyboardIn(dialog);
    });
}

TEST_P(BoxesOverADialog, RefusalDuringABoxOfTheDialogsOwnBelongsToThatBox)
{
    InDialog([](HWND dialog) {
        bool boxWasUsable = false, dialogWasUsable = true;
        HeadlessDuringBox([&] {
            const HWND own = GetActiveWindow();
            Refuse();
            ASSERT_EQ(HeadlessBoxes().size(), 2u);
            EXPECT_EQ(HeadlessBoxes()[1].owner, own);
            boxWasUsable = IsWindowEnabled(own) && GetActiveWindow() == own;
            dialogWasUsable = IsWindowEnabled(dialog);
        });
        InfoBox(L"Tracking Mask", L"Range 20-50 dB-Hz");
        EXPECT_TRUE(boxWasUsable);
        EXPECT_FALSE(dialogWasUsable);
        ExpectKeyboardIn(dialog);
    });
}

// Another program is in front; this program has only a dialog with a box, whose window is not known.
TEST_P(BoxesOverADialog, NoDisabledWindowOwnsABox)
{
    InDialog([](HWND dialog) {
        HeadlessDuringBox([] {
            HeadlessOtherProgramInFront(true);
            EXPECT_EQ(BoxOwner(), nullptr);
            HeadlessOtherProgramInFront(false);
        });
        InfoBox(L"Tracking Mask", L"Range 20-50 dB-Hz");
        ExpectKeyboardIn(dialog);
    });
}

// The main window's own box is shown when a dialog opens.
TEST_P(BoxesOverADialog, BoxThatWasThereBeforeTheDialogGivesItTheKeyboard)
{
    HWND opened = nullptr;
    HeadlessDuringBox([&] {
        const HWND box = GetActiveWindow();
        opened = CreateWindowExW(0, L"MainWindow", L"", WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr,
                                 nullptr);
        PublishDialog(DialogKind::PowerMask, opened);
        SetFocus(box); // the user answers it
    });
    SetFocus(MainWindow.load());
    Refuse();
    EXPECT_FALSE(IsWindowEnabled(MainWindow.load()));
    EXPECT_EQ(GetFocus(), opened);
    WithdrawDialog();
    DestroyWindow(opened);
}

TEST_F(ErrorBoxes, BoxesBelongToTheActiveWindowElseToTheDialogElseToTheMainWindow)
{
    const HWND dialog =
        CreateWindowExW(0, L"MainWindow", L"", WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    const HWND active =
        CreateWindowExW(0, L"MainWindow", L"", WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(BoxOwner(), active);
    HeadlessOtherProgramInFront(true);
    EXPECT_EQ(BoxOwner(), MainWindow.load());
    PublishDialog(DialogKind::Sbas, dialog);
    EXPECT_EQ(BoxOwner(), dialog);
    HeadlessOtherProgramInFront(false);
    EXPECT_EQ(BoxOwner(), active);
    WithdrawDialog();
    DestroyWindow(active);
    DestroyWindow(dialog);
}

} // namespace
