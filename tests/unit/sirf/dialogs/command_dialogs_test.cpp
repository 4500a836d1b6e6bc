// SPDX-License-Identifier: MIT
// The dialogs that are made from their command's fields, as tables: the entries that each field accepts and
// refuses, the sent bytes, and the polls.
#include "link/link_state.h"
#include "link/write_queue.h"
#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"
#include "sirf/frame_sender.h"
#include "tests/unit/sirf/dialogs/dialog_test.h"
#include "tests/unit/sirf/dialogs/field_cases.h"
#include "ui/dialog_support.h"
#include "ui/shell_libraries.h"

namespace
{

class SirfFields : public SirfDialogTest
{
protected:
    static void EnterUsual(HWND dialog, const DialogCase& row)
    {
        for (const FieldCase& field : row.fields) Enter(dialog, field.usual);
    }

    void ExpectUsualEntriesSent()
    {
        for (const DialogCase& row : FieldCases()) {
            SCOPED_TRACE(row.name);
            With(row.command, [&](HWND dialog) {
                EnterUsual(dialog, row);
                HeadlessClick(dialog, row.set);
            });
            EXPECT_EQ(Written(), std::vector{HexText(row.frame)});
        }
        EXPECT_TRUE(HeadlessBoxes().empty());
    }
};

TEST_F(SirfFields, UsualEntriesAreSent)
{
    ExpectUsualEntriesSent();
}

TEST_F(SirfFields, KeypadSendsTheSameBytes)
{
    UseKeypad();
    ExpectUsualEntriesSent();
}

TEST_F(SirfFields, EveryEntryAtTheEdgeIsSent)
{
    for (const DialogCase& row : FieldCases()) {
        const std::vector<uint8_t> whole = Hex(row.frame);
        const std::vector<uint8_t> usual(whole.begin() + 4, whole.end() - 4);
        With(row.command, [&](HWND dialog) {
            EnterUsual(dialog, row);
            for (const FieldCase& field : row.fields) {
                for (const Accepted& accepted : field.accepted) {
                    SCOPED_TRACE(std::string(row.name) + ", control " +
                                 std::to_string(accepted.entry.control) + ", sent as " + accepted.bytes);
                    Enter(dialog, accepted.entry);
                    HeadlessClick(dialog, row.set);
                    Payload expected(usual[0], usual.size());
                    expected.bytes = usual;
                    expected.At(accepted.offset, accepted.bytes);
                    EXPECT_EQ(Written(), std::vector{Frame(expected)});
                }
                Enter(dialog, field.usual);
            }
        });
    }
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(SirfFields, EveryEntryBeyondTheEdgeIsRefused)
{
    for (const DialogCase& row : FieldCases())
        With(row.command, [&](HWND dialog) {
            EnterUsual(dialog, row);
            for (const FieldCase& field : row.fields) {
                for (const Entry& entry : field.refused) {
                    SCOPED_TRACE(testing::Message() << row.name << ", control " << entry.control << ", '"
                                                    << testing::PrintToString(entry.text) << "'");
                    HeadlessClearBoxes();
                    Enter(dialog, entry);
                    HeadlessClick(dialog, row.set);
                    ASSERT_EQ(HeadlessBoxes().size(), 1u);
                    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], field.caption, field.text));
                    EXPECT_EQ(HeadlessBoxes()[0].owner, dialog);
                    EXPECT_EQ(HeadlessTopDialog(), dialog); // stays open
                }
                Enter(dialog, field.usual);
            }
        });
    EXPECT_TRUE(Written().empty());
}

TEST_F(SirfFields, FirstRefusedFieldStopsTheCommand)
{
    for (const DialogCase& row : FieldCases())
        With(row.command, [&](HWND dialog) {
            for (const FieldCase& field : row.fields) Enter(dialog, field.refused[0]);
            for (const FieldCase& field : row.fields) {
                SCOPED_TRACE(row.name);
                HeadlessClearBoxes();
                HeadlessClick(dialog, row.set);
                ASSERT_EQ(HeadlessBoxes().size(), 1u);
                EXPECT_TRUE(IsBox(HeadlessBoxes()[0], field.caption, field.text));
                Enter(dialog, field.usual);
            }
        });
    EXPECT_TRUE(Written().empty());
}

TEST_F(SirfFields, NothingIsChosenAndBoxesAreUndecidedAtFirst)
{
    constexpr int TrackSmoothing = CONTROL_MODE_TRACK_SMOOTHING; // the one box that is off
    for (const DialogCase& row : FieldCases())
        With(row.command, [&](HWND dialog) {
            for (const FieldCase& field : row.fields) {
                SCOPED_TRACE(field.usual.control);
                if (field.usual.kind == Entry::Kind::Text)
                    EXPECT_EQ(HeadlessText(dialog, field.usual.control), L"");
                else if (field.usual.kind == Entry::Kind::Choice)
                    EXPECT_EQ(HeadlessSelection(dialog, field.usual.control), -1);
                else
                    EXPECT_EQ(HeadlessCheck(dialog, field.usual.control),
                              field.usual.control == TrackSmoothing ? BST_UNCHECKED : BST_INDETERMINATE);
            }
        });
}

TEST_F(SirfFields, KeypadBoxesAreOffAtFirstAndHaveThreeStates)
{
    UseKeypad();
    for (const DialogCase& row : FieldCases())
        With(row.command, [&](HWND dialog) {
            for (const FieldCase& field : row.fields) {
                if (field.usual.kind != Entry::Kind::Box) continue;
                SCOPED_TRACE(field.usual.control);
                EXPECT_EQ(HeadlessCheck(dialog, field.usual.control), BST_UNCHECKED);
                HeadlessClick(dialog, field.usual.control);
                EXPECT_EQ(HeadlessCheck(dialog, field.usual.control), BST_CHECKED);
                HeadlessClick(dialog, field.usual.control);
                EXPECT_EQ(HeadlessCheck(dialog, field.usual.control), BST_INDETERMINATE);
            }
        });
}

// ---- Lists --------------------------------------------------------------------------------------------

TEST_F(SirfFields, LongListsCanBeLeafedThroughOnKeypads)
{
    constexpr UINT SetListMode = 0x1C1;
    const struct {
        uint16_t number;
        std::vector<int> controls;
    } rows[] = {{DIALOG_SIRF_SBAS, {CONTROL_SBAS_PRN}},
                {DIALOG_SIRF_SET_MESSAGE_RATE, {CONTROL_RATE_MESSAGE_ID, CONTROL_RATE_SECONDS}}};
    for (const LPARAM mode : {0, 2}) {
        if (mode) UseKeypad();
        for (const auto& row : rows)
            With(row.number, [&](HWND dialog) {
                for (const int control : row.controls)
                    EXPECT_EQ(HeadlessIgnoredMessage(dialog, control, SetListMode), mode) << control;
            });
    }
}

// They always show an entry.
TEST_F(SirfFields, KeypadSendsTheRateThatItsListsShowAtFirst)
{
    UseKeypad();
    With(DIALOG_SIRF_SET_MESSAGE_RATE, [&](HWND dialog) {
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_RATE_MESSAGE_ID), 0);
        EXPECT_EQ(HeadlessSelection(dialog, CONTROL_RATE_SECONDS), 1);
        HeadlessClick(dialog, CONTROL_RATE_SET);
        EXPECT_EQ(Written(), std::vector{HexText("A0A2 0008 A6 00 01 01 00000000 00A8 B0B3")});
    });
}

TEST_F(SirfFields, ListsOfferTheirEntriesInBothLayouts)
{
    using Items = std::vector<std::wstring>;
    const Items errors = {L"1", L"5", L"10", L"20", L"40", L"80", L"160", L"No Max"};
    const struct {
        uint16_t number;
        int control;
        Items items;
    } rows[] = {
        {DIALOG_SIRF_DGPS_SOURCE,
         CONTROL_DGPS_SOURCE,
         {L"None", L"SBAS", L"External RTCM", L"Internal Beacon", L"User Software"}},
        {DIALOG_SIRF_MODE_CONTROL,
         CONTROL_MODE_DEGRADED,
         {L"Hold direction,clock", L"Hold clock,direction", L"Hold direction", L"Hold clock", L"Disable"}},
        {DIALOG_SIRF_MODE_CONTROL, CONTROL_MODE_ALTITUDE_HOLD, {L"Auto", L"Always", L"Disable"}},
        {DIALOG_SIRF_MODE_CONTROL, CONTROL_MODE_ALTITUDE_SOURCE, {L"Last computed", L"User input"}},
        {DIALOG_SIRF_DOP_MASK,
         CONTROL_DOP_SELECTION,
         {L"Auto PDOP/HDOP", L"PDOP", L"HDOP", L"GDOP", L"Disabled"}},
        {DIALOG_SIRF_DGPS_MODE, CONTROL_DGPS_MODE, {L"Auto", L"Exclusive", L"Never use"}},
        {DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT, CONTROL_APM_MAX_HORIZONTAL_ERROR, errors},
        {DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT, CONTROL_APM_MAX_VERTICAL_ERROR, errors},
        {DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT,
         CONTROL_APM_ACCURACY_PRIORITY,
         {L"No Preference", L"Max Response Time", L"Max Horizontal Error"}},
        {DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT,
         CONTROL_APM_TIMING_PRIORITY,
         {L"No Preference", L"Time Between Fixes", L"Power Duty Cycle"}},
        {DIALOG_SIRF_SET_MESSAGE_RATE, CONTROL_RATE_SECONDS, {L"0", L"1", L"2", L"5", L"10"}},
    };
    for (int layout = 0; layout < 2; ++layout) {
        if (layout) UseKeypad();
        for (const auto& row : rows)
            With(row.number, [&](HWND dialog) {
                EXPECT_EQ(HeadlessItems(dialog, row.control), row.items) << row.control;
            });
        With(DIALOG_SIRF_SET_MESSAGE_RATE, [&](HWND dialog) {
            const Items names = HeadlessItems(dialog, CONTROL_RATE_MESSAGE_ID);
            ASSERT_EQ(names.size(), 58u);
            EXPECT_EQ(names[40], L"41 Geodetic Navigation Data");
            EXPECT_EQ(names[57], L"255 Development Data");
        });
    }
}

// ---- Polls --------------------------------------------------------------------------------------------

struct PollCase {
    uint16_t number;
    DialogKind kind;
    int get;          // 0: no such button
    const char* poll; // "" none
    uint8_t pending;  // the command in a refusal of Get's poll; 0 none
    bool always = false;
};
constexpr const char* NavigationPoll = "A0A2 0002 98 00 0098 B0B3";
constexpr PollCase Polls[] = {
    {DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT, DialogKind::AdvancedPowerManagement, CONTROL_APM_GET,
     NavigationPoll, 0},
    {DIALOG_SIRF_INITIALIZE_DATA_SOURCE, DialogKind::InitializeDataSource, CONTROL_INIT_GET,
     "A0A2 0002 A8 80 0128 B0B3", 128, true},
    {DIALOG_SIRF_SWITCH_TO_NMEA, DialogKind::SwitchToNmea, 0, "", 0},
    {DIALOG_SIRF_POLL_SOFTWARE_VERSION, DialogKind::PollSoftwareVersion, CONTROL_SOFTWARE_VERSION_GET,
     "A0A2 0002 84 00 0084 B0B3", 0},
    {DIALOG_SIRF_DGPS_SOURCE, DialogKind::DgpsSource, CONTROL_DGPS_SOURCE_GET, "A0A2 0002 A8 85 012D B0B3",
     133},
    {DIALOG_SIRF_MODE_CONTROL, DialogKind::ModeControl, CONTROL_MODE_GET, "A0A2 0002 A8 88 0130 B0B3", 136},
    {DIALOG_SIRF_DOP_MASK, DialogKind::DopMask, CONTROL_DOP_GET, "A0A2 0002 A8 89 0131 B0B3", 137},
    {DIALOG_SIRF_DGPS_MODE, DialogKind::DgpsMode, CONTROL_DGPS_MODE_GET, "A0A2 0002 A8 8A 0132 B0B3", 138},
    {DIALOG_SIRF_ELEVATION_MASK, DialogKind::ElevationMask, CONTROL_ELEVATION_GET,
     "A0A2 0002 A8 8B 0133 B0B3", 139},
    {DIALOG_SIRF_POWER_MASK, DialogKind::PowerMask, CONTROL_POWER_GET, "A0A2 0002 A8 8C 0134 B0B3", 140},
    {DIALOG_SIRF_STATIC_NAVIGATION, DialogKind::StaticNavigation, CONTROL_STATIC_NAVIGATION_GET,
     "A0A2 0002 A8 8F 0137 B0B3", 143},
    {DIALOG_SIRF_TRICKLE_POWER, DialogKind::TricklePower, CONTROL_TRICKLE_GET, "A0A2 0002 A8 97 013F B0B3",
     151},
    {DIALOG_SIRF_LOW_POWER, DialogKind::LowPower, CONTROL_LOW_POWER_GET, NavigationPoll, 0},
    {DIALOG_SIRF_SET_MESSAGE_RATE, DialogKind::SirfSetMessageRate, 0, "", 0},
};

class SirfPolls : public SirfDialogTest
{
protected:
    static std::vector<std::string> Frames(const PollCase& row, bool sent)
    {
        return sent && *row.poll ? std::vector{HexText(row.poll)} : std::vector<std::string>();
    }
};

TEST_F(SirfPolls, OpeningPollsWhatIsUnderstood)
{
    const struct {
        uint8_t nmea, sirf;
    } modes[] = {{0, 0}, {1, 0}, {0, 1}, {1, 1}};
    for (int layout = 0; layout < 2; ++layout) {
        if (layout) UseKeypad();
        for (const auto& mode : modes) {
            NmeaRecognised.store(mode.nmea);
            SirfRecognised.store(mode.sirf);
            for (const PollCase& row : Polls) {
                SCOPED_TRACE(testing::Message() << "dialog " << static_cast<uint32_t>(row.kind) << ", SiRF "
                                                << static_cast<int>(mode.sirf));
                With(row.number, [&](HWND dialog) {
                    EXPECT_EQ(OpenDialogOfKind(row.kind), dialog);
                    EXPECT_EQ(Written(), Frames(row, mode.sirf || row.always));
                    EXPECT_EQ(PendingPollId.load(), 0);
                });
            }
        }
    }
}

// The dialog exists before its poll is sent: an answer that arrives at once is shown.
TEST_F(SirfPolls, DialogIsPublishedBeforeItsPoll)
{
    SirfRecognised.store(1);
    for (const PollCase& row : Polls) {
        DialogKind published = DialogKind::None;
        Port.onWrite = [&](HeadlessPort&, std::string_view) { published = ActiveDialogKind.load(); };
        With(row.number, [](HWND) {});
        EXPECT_EQ(published, *row.poll ? row.kind : DialogKind::None);
    }
    Port.onWrite = nullptr;
}

TEST_F(SirfPolls, GetPollsAlways)
{
    for (const PollCase& row : Polls) {
        if (!row.get) continue;
        SCOPED_TRACE(row.get);
        With(row.number, [&](HWND dialog) {
            Written();
            PendingPollId.store(0);
            EXPECT_TRUE(HeadlessClick(dialog, row.get));
            EXPECT_EQ(Written(), Frames(row, true));
            EXPECT_EQ(PendingPollId.load(), row.pending);
        });
    }
}

TEST_F(SirfPolls, NothingHappensWithoutAPort)
{
    CloseHandle(PortHandle.exchange(INVALID_HANDLE_VALUE));
    SirfRecognised.store(1);
    for (const PollCase& row : Polls)
        With(row.number, [&](HWND dialog) {
            if (row.get) HeadlessClick(dialog, row.get);
        });
    EXPECT_TRUE(Written().empty());
    EXPECT_TRUE(HeadlessBoxes().empty());
}

// ---- Ends ---------------------------------------------------------------------------------------------

TEST_F(SirfPolls, OkCancelAndTheCrossEndEveryDialog)
{
    const std::function<void(HWND)> ends[] = {
        [](HWND dialog) { HeadlessClick(dialog, IDOK); },
        [](HWND dialog) { HeadlessCommand(dialog, IDCANCEL); },
        [](HWND dialog) { PostMessageW(dialog, WM_CLOSE, 0, 0); },
    };
    for (const PollCase& row : Polls)
        for (const auto& end : ends) {
            HeadlessUser([&] { end(HeadlessTopDialog()); });
            ShowSirfDialog(row.number);
            EXPECT_EQ(HeadlessTopDialog(), nullptr);
            EXPECT_EQ(ActiveDialogKind.load(), DialogKind::None);
            EXPECT_EQ(ActiveDialogWindow.load(), nullptr);
        }
}

// The reader thread writes answers into edits and lists, which notify the dialog.
TEST_F(SirfPolls, NotificationsThatAreNoClicksDoNothing)
{
    constexpr WORD EnChange = 0x300;
    for (const DialogCase& row : FieldCases())
        With(row.command, [&](HWND dialog) {
            Written();
            SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(row.set), EnChange), 0);
        });
    EXPECT_TRUE(Written().empty());
    EXPECT_TRUE(HeadlessBoxes().empty());
}

uint32_t BackKeys = 0;
void WINAPI BackKey(UINT, WPARAM, LPARAM)
{
    ++BackKeys;
}

TEST_F(SirfPolls, BackKeyGoesToTheShell)
{
    UseKeypad();
    BackKeys = 0;
    ShellSendBackToFocusWindow = BackKey;
    for (const PollCase& row : Polls)
        With(row.number, [](HWND dialog) {
            SendMessageW(dialog, WM_HOTKEY, 0, 27 << 16);
            SendMessageW(dialog, WM_HOTKEY, 0, 28 << 16);
            EXPECT_EQ(HeadlessTopDialog(), dialog);
        });
    ShellSendBackToFocusWindow = nullptr;
    EXPECT_EQ(BackKeys, std::size(Polls));
}

} // namespace
