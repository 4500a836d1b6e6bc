// SPDX-License-Identifier: MIT
#include "resources/resource_ids.h"
#include "tests/unit/nmea/dialogs/command_dialog_test.h"

#include <algorithm>
#include <set>

#include "link/write_queue.h"
#include "tests/unit/nmea/dialogs/dialog_rows.h"
#include "ui/dialog_support.h"

namespace
{

// ---- What all five have in common ---------------------------------------------------------------------

struct DialogRow : NmeaDialogRow {
    const Dialog* shown;
    DialogKind kind;
};

constexpr DialogRow Dialogs[] = {
    {NmeaDialogs[0], &SetSerialPortDialog, DialogKind::SetSerialPort},
    {NmeaDialogs[1], &NavigationInitializationDialog, DialogKind::NavigationInitialization},
    {NmeaDialogs[2], &NmeaMessageRateDialog, DialogKind::NmeaSetMessageRate},
    {NmeaDialogs[3], &DevelopmentDataDialog, DialogKind::DevelopmentData},
    {NmeaDialogs[4], &SelectDatumDialog, DialogKind::SelectDatum},
};

class CommandDialogs : public CommandDialogTest
{
};
IN_BOTH_LAYOUTS(CommandDialogs);

TEST_P(CommandDialogs, PublishThemselvesWhileTheyAreOpen)
{
    for (const DialogRow& row : Dialogs) {
        SCOPED_TRACE(row.name);
        Open(row.shown, [&](HWND dialog) {
            EXPECT_EQ(HeadlessTitle(dialog), row.caption);
            EXPECT_EQ(ActiveDialogKind.load(), row.kind);
            EXPECT_EQ(ActiveDialogWindow.load(), dialog);
        });
        EXPECT_EQ(ActiveDialogKind.load(), DialogKind::None);
        EXPECT_EQ(ActiveDialogWindow.load(), nullptr);
    }
}

TEST_P(CommandDialogs, AreClosedByCancelWithoutSending)
{
    for (const DialogRow& row : Dialogs) {
        SCOPED_TRACE(row.name);
        HeadlessUser([] { HeadlessCommand(HeadlessTopDialog(), IDCANCEL); });
        OpenDialog(*row.shown);
        EXPECT_EQ(ActiveDialogKind.load(), DialogKind::None);
        EXPECT_EQ(ActiveDialogWindow.load(), nullptr);
        EXPECT_EQ(TakeSent(), "");
    }
}

TEST_P(CommandDialogs, SetSendsOneSentenceAndLeavesTheDialogOpen)
{
    for (const DialogRow& row : Dialogs) {
        SCOPED_TRACE(row.name);
        Open(row.shown, [&](HWND dialog) {
            row.prepare(dialog);
            EXPECT_EQ(TakeSent(), ""); // choosing alone sends nothing
            EXPECT_TRUE(HeadlessClick(dialog, row.set));
            EXPECT_EQ(TakeSent(), row.sentence);
            EXPECT_TRUE(TakeBoxes().empty());
            EXPECT_EQ(HeadlessTopDialog(), dialog);
        });
        EXPECT_EQ(TakeSent(), "");
    }
}

// Only a click sends: a notification of another kind must not.
TEST_P(CommandDialogs, ActOnClicksAlone)
{
    constexpr WORD BnSetFocus = 6;
    for (const DialogRow& row : Dialogs) {
        SCOPED_TRACE(row.name);
        Open(row.shown, [&](HWND dialog) {
            row.prepare(dialog);
            SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(row.set), BnSetFocus),
                         reinterpret_cast<LPARAM>(GetDlgItem(dialog, row.set)));
            EXPECT_EQ(TakeSent(), "");
        });
    }
}

TEST_P(CommandDialogs, GreyBoxShowsAllThatHasArrivedWithTheNextLine)
{
    for (const DialogRow& row : Dialogs) {
        SCOPED_TRACE(row.name);
        ReceiverMessagesText[0] = 0;
        FeedSentence("PSRFTXT,before");
        Open(row.shown, [&](HWND dialog) {
            EXPECT_EQ(HeadlessText(dialog, CONTROL_NMEA_GREY_BOX), L"");
            FeedSentence("PSRFTXT,while it is open");
            EXPECT_EQ(HeadlessText(dialog, CONTROL_NMEA_GREY_BOX), L"before\r\nwhile it is open\r\n");
            EXPECT_FALSE(HeadlessType(dialog, CONTROL_NMEA_GREY_BOX, L"x")); // read-only
        });
    }
}

TEST_P(CommandDialogs, GreyBoxShowsTheAnswerAloneAfterACommand)
{
    for (const DialogRow& row : Dialogs) {
        SCOPED_TRACE(row.name);
        Open(row.shown, [&](HWND dialog) {
            FeedSentence("PSRFTXT,old");
            row.prepare(dialog);
            HeadlessClick(dialog, row.set);
            FeedSentence("PSRFTXT,first");
            FeedSentence("PSRFTXT,second");
            EXPECT_EQ(HeadlessText(dialog, CONTROL_NMEA_GREY_BOX), L"first\r\nsecond\r\n");
        });
        ReceiverMessagesText[0] = 0;
    }
}

// A receiver answers at once: its first line must not be lost because the flag is set too late.
TEST_P(CommandDialogs, TextIsMarkedForClearingBeforeTheCommandGoesOut)
{
    for (const DialogRow& row : Dialogs) {
        SCOPED_TRACE(row.name);
        bool answered = false; // a reset receiver's first sentence causes a write of its own
        Port.onWrite = [&](HeadlessPort&, std::string_view) {
            if (std::exchange(answered, true)) return;
            FeedSentence("PSRFTXT,first");
            FeedSentence("PSRFTXT,second");
        };
        Open(row.shown, [&](HWND dialog) {
            FeedSentence("PSRFTXT,old");
            row.prepare(dialog);
            HeadlessClick(dialog, row.set);
            EXPECT_EQ(HeadlessText(dialog, CONTROL_NMEA_GREY_BOX), L"first\r\nsecond\r\n");
        });
        EXPECT_EQ(ClearOnNextAppend.load(), 0);
        Port.onWrite = nullptr;
    }
}

TEST_P(CommandDialogs, FullQueueIsShownAndNothingIsSent)
{
    for (const DialogRow& row : Dialogs) {
        SCOPED_TRACE(row.name);
        Open(row.shown, [&](HWND dialog) {
            row.prepare(dialog);
            WriteHead = 250;
            HeadlessClick(dialog, row.set);
            WriteHead = 0;
            EXPECT_TRUE(Refuses(L"NmeaSend", L"Buffer Full"));
        });
    }
}

TEST_P(CommandDialogs, WithoutAnOpenPortSetIsSilent)
{
    CloseHandle(PortHandle.exchange(INVALID_HANDLE_VALUE));
    for (const DialogRow& row : Dialogs) {
        SCOPED_TRACE(row.name);
        ClearOnNextAppend.store(0);
        Open(row.shown, [&](HWND dialog) {
            row.prepare(dialog);
            HeadlessClick(dialog, row.set);
            EXPECT_TRUE(TakeBoxes().empty());
            EXPECT_EQ(ClearOnNextAppend.load(), 1);
        });
    }
    EXPECT_EQ(TakeSent(), "");
}

// ---- Templates ----------------------------------------------------------------------------------------

std::multiset<int> Numbers(const HeadlessTemplate& found)
{
    std::multiset<int> numbers;
    for (const HeadlessTemplateControl& control : found.controls) numbers.insert(control.id);
    return numbers;
}

RECT Area(const HeadlessTemplateControl& control)
{
    constexpr int ClosedListHeight = 12; // a drop-down list's height counts when it is open
    const bool dropsDown = control.className == L"COMBOBOX";
    return {control.x, control.y, control.x + control.width,
            control.y + (dropsDown ? ClosedListHeight : control.height)};
}

TEST_P(CommandDialogs, ControlsFitTheScreenAndDoNotOverlap)
{
    const int width = GetParam() ? 110 : 160; // at most
    for (const DialogRow& row : Dialogs) {
        SCOPED_TRACE(row.name);
        HeadlessTemplate found;
        ASSERT_TRUE(HeadlessFindTemplate(row.number + LayoutOffset(), found));
        EXPECT_EQ(found.caption, row.caption);
        EXPECT_LE(found.width, width);
        if (!GetParam()) {
            EXPECT_LE(found.height, 190);
        } // the narrow layout is scrolled
        for (size_t i = 0; i < found.controls.size(); ++i) {
            const RECT a = Area(found.controls[i]);
            EXPECT_TRUE(a.left >= 0 && a.top >= 0 && a.right <= found.width && a.bottom <= found.height)
                << found.controls[i].id;
            for (size_t j = 0; j < i; ++j) {
                const RECT b = Area(found.controls[j]);
                EXPECT_FALSE(a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom)
                    << found.controls[i].id << " and " << found.controls[j].id;
            }
        }
    }
}

TEST_P(CommandDialogs, HaveTheSameControlsInBothLayouts)
{
    for (const DialogRow& row : Dialogs) {
        SCOPED_TRACE(row.name);
        HeadlessTemplate touch, keypad;
        ASSERT_TRUE(HeadlessFindTemplate(row.number, touch));
        ASSERT_TRUE(HeadlessFindTemplate(row.number + KEYPAD_LAYOUT, keypad));
        std::multiset<int> wide = Numbers(touch);
        EXPECT_EQ(wide.erase(IDOK), 1u); // a keypad closes with its soft key
        EXPECT_EQ(wide, Numbers(keypad));
    }
}

TEST_P(CommandDialogs, ListsAreOfTheLayoutsKind)
{
    constexpr DWORD ComboKind = 3, Editable = 2, ChosenOnly = 3;
    const std::set<int> editable = {CONTROL_TO_SIRF_BAUDRATE, CONTROL_NMEA_RATE_SECONDS},
                        chosenOnly = {CONTROL_SERIAL_PROTOCOL, CONTROL_NMEA_RATE_MESSAGE, CONTROL_DATUM};
    uint32_t lists = 0;
    for (const DialogRow& row : Dialogs) {
        HeadlessTemplate found;
        ASSERT_TRUE(HeadlessFindTemplate(row.number + LayoutOffset(), found));
        for (const HeadlessTemplateControl& control : found.controls) {
            if (!editable.contains(control.id) && !chosenOnly.contains(control.id)) continue;
            ++lists;
            EXPECT_EQ(control.className, GetParam() ? L"LISTBOX" : L"COMBOBOX") << control.id;
            if (!GetParam()) {
                EXPECT_EQ(control.style & ComboKind, editable.contains(control.id) ? Editable : ChosenOnly)
                    << control.id;
            }
        }
    }
    EXPECT_EQ(lists, 5u);
}

TEST_P(CommandDialogs, GreyBoxIsAScrollableReadOnlyEdit)
{
    constexpr DWORD MultiLine = 4, ReadOnly = 0x800;
    for (const DialogRow& row : Dialogs) {
        SCOPED_TRACE(row.name);
        HeadlessTemplate found;
        ASSERT_TRUE(HeadlessFindTemplate(row.number + LayoutOffset(), found));
        const auto box = std::find_if(
            found.controls.begin(), found.controls.end(),
            [](const HeadlessTemplateControl& control) { return control.id == CONTROL_NMEA_GREY_BOX; });
        ASSERT_NE(box, found.controls.end());
        constexpr DWORD Wanted = MultiLine | ReadOnly | WS_VSCROLL | WS_VISIBLE;
        EXPECT_EQ(box->className, L"EDIT");
        EXPECT_EQ(box->style & Wanted, Wanted);
    }
}

} // namespace
