// The dialogs that follow their command's fields, as tables: what each field accepts and refuses, what is
// sent, and when the receiver is polled.
#include "app/dialog_support.h"
#include "app/shell_libraries.h"
#include "link/link_state.h"
#include "link/write_queue.h"
#include "sirf/dialogs/advanced_power_management.h"
#include "sirf/dialogs/command_dialog.h"
#include "sirf/dialogs/dgps_mode.h"
#include "sirf/dialogs/dgps_source.h"
#include "sirf/dialogs/dop_mask.h"
#include "sirf/dialogs/elevation_mask.h"
#include "sirf/dialogs/initialize_data_source.h"
#include "sirf/dialogs/low_power.h"
#include "sirf/dialogs/mode_control.h"
#include "sirf/dialogs/poll_software_version.h"
#include "sirf/dialogs/power_mask.h"
#include "sirf/dialogs/set_message_rate.h"
#include "sirf/dialogs/static_navigation.h"
#include "sirf/dialogs/switch_to_nmea.h"
#include "sirf/dialogs/trickle_power.h"
#include "sirf/frame_sender.h"
#include "tests/unit/sirf/dialogs/dialog_test.h"

namespace
{

// ---- What each field takes ----------------------------------------------------------------------------

struct Accepted {
    Entry entry;
    size_t offset;     // of its bytes in the payload
    const char* bytes; // there, whatever stands in the other fields
};

struct FieldCase {
    Entry usual; // something acceptable
    std::vector<Accepted> accepted;
    std::vector<Entry> refused;
    std::wstring caption, text;
};

struct DialogCase {
    const char* name;
    void (*show)();
    int set;
    const char* frame;             // sent when every field holds its usual entry
    std::vector<FieldCase> fields; // in the order in which they are checked
};

// A list of `entries`, whose index is sent at `offset`.
FieldCase ListCase(int control, int usual, int entries, size_t offset, const std::wstring& caption)
{
    static constexpr const char* Bytes[] = {"00", "01", "02", "03", "04", "05", "06", "07"};
    return {Chosen(control, usual),
            {{Chosen(control, 0), offset, "00"}, {Chosen(control, entries - 1), offset, Bytes[entries - 1]}},
            {Chosen(control, -1)},
            caption,
            L"Bad selection"};
}

// A box that is sent as 0 or 1.
FieldCase BoxCase(int control, size_t offset, bool wide, const std::wstring& caption)
{
    return {Ticked(control, BST_CHECKED),
            {{Ticked(control, BST_UNCHECKED), offset, wide ? "00 00" : "00"},
             {Ticked(control, BST_CHECKED), offset, wide ? "00 01" : "01"}},
            {Ticked(control, BST_INDETERMINATE)},
            caption,
            L"Indeterminate"};
}

// A whole number, with its lowest and highest value and what is sent for them; one below, one above.
FieldCase NumberCase(int control, const wchar_t* usual, size_t offset, Entry low, const char* lowBytes,
                     Entry high, const char* highBytes, const wchar_t* below, const wchar_t* above,
                     const std::wstring& caption, const std::wstring& text)
{
    return {Typed(control, usual),
            {{low, offset, lowBytes}, {high, offset, highBytes}},
            {Typed(control, below), Typed(control, above), Typed(control, L""), Typed(control, L"a1"),
             Typed(control, L"-"), Typed(control, L"99999999999")},
            caption,
            text};
}
FieldCase NumberCase(int control, const wchar_t* usual, size_t offset, const wchar_t* low,
                     const char* lowBytes, const wchar_t* high, const char* highBytes, const wchar_t* below,
                     const wchar_t* above, const std::wstring& caption, const std::wstring& text)
{
    return NumberCase(control, usual, offset, Typed(control, low), lowBytes, Typed(control, high), highBytes,
                      below, above, caption, text);
}

const std::wstring MaskText = L"Range -20.0 to 90.0 \u00B0";

const std::vector<DialogCase>& Cases()
{
    static const std::vector<DialogCase> cases = {
        {"Mode Control",
         ShowModeControlDialog,
         1362,
         "A0A2 000E 88 00 00 02 00 00 01F4 01 01 00 1E 0F 01 01AF B0B3",
         {
             ListCase(1363, 2, 5, 3, L"Degraded Mode"),
             NumberCase(1364, L"500", 6, L"-1000", "FC18", L"10000", "2710", L"-1001", L"10001", L"Altitude",
                        L"Range -1000 to +10000 m"),
             ListCase(1365, 1, 3, 8, L"Alt Hold Mode"),
             ListCase(1366, 1, 2, 9, L"Alt Hold Source"),
             NumberCase(1367, L"30", 11, L"0", "00", L"120", "78", L"-1", L"121", L"Degraded Time Out",
                        L"Range 0-120 s"),
             NumberCase(1368, L"15", 12, L"0", "00", L"120", "78", L"-1", L"121", L"DR Time Out",
                        L"Range 0-120 s"),
             BoxCase(1369, 13, false, L"Track Smoothing"),
         }},
        {"DOP Mask",
         ShowDopMaskDialog,
         1372,
         "A0A2 0005 89 03 0A 0B 0C 00AD B0B3",
         {
             ListCase(1373, 3, 5, 1, L"DOP Selection"),
             NumberCase(1374, L"10", 2, L"1", "01", L"50", "32", L"0", L"51", L"GDOP Value", L"Range 1-50"),
             NumberCase(1375, L"11", 3, L"1", "01", L"50", "32", L"0", L"51", L"PDOP Value", L"Range 1-50"),
             NumberCase(1376, L"12", 4, L"1", "01", L"50", "32", L"0", L"51", L"HDOP Value", L"Range 1-50"),
         }},
        {"Elevation Mask",
         ShowElevationMaskDialog,
         1392,
         "A0A2 0005 8B 0032 004B 0108 B0B3",
         {
             {Typed(1393, L"5"),
              {
                  {Typed(1393, L"-200"), 1, "F831"}, // -1999.5, its fraction dropped
                  {Typed(1393, L"900.0"), 1, "2328"},
                  {Typed(1393, L"150"), 1, "05DC"},
                  {Typed(1393, L"-5"), 1, "FFCF"}, // -49.5, its fraction dropped
                  {Typed(1393, L"000000000000000000.59"), 1,
                   "0005"}, // the twenty-first character is not read
                  {Typed(1393, L"7.54"), 1, "004B"},
                  {Typed(1393, L"7.55"), 1, "004C"},
                  {Typed(1393, L""), 1, "0000"}, // no number reads as 0
                  {Typed(1393, L"nan"), 1, "0000"},
                  {Typed(1393, L"                    90"), 1, "0000"}, // behind twenty characters
              },
              {Typed(1393, L"-200.1"), Typed(1393, L"900.1"), Typed(1393, L"999999999999999")},
              L"Tracking Mask",
              MaskText},
             {Typed(1394, L"7.5"),
              {{Typed(1394, L"-200"), 3, "F831"},
               {Typed(1394, L"900"), 3, "2328"},
               {Typed(1394, L"x"), 3, "0000"}},
              {Typed(1394, L"-200.1"), Typed(1394, L"900.1"), Typed(1394, L"-999999999999999")},
              L"Navigation Mask",
              MaskText},
         }},
        {"Power Mask",
         ShowPowerMaskDialog,
         1402,
         "A0A2 0003 8C 1C 1E 00C6 B0B3",
         {
             NumberCase(1403, L"28", 1, L"0", "00", L"50", "32", L"-1", L"51", L"Tracking Mask",
                        L"Range 0-50 dBHz"),
             NumberCase(1404, L"30", 2, L"0", "00", L"50", "32", L"-1", L"51", L"Navigation Mask",
                        L"Range 0-50 dBHz"),
         }},
        {"Static Navigation",
         ShowStaticNavigationDialog,
         1432,
         "A0A2 0002 8F 01 0090 B0B3",
         {BoxCase(1433, 1, false, L"Static Navigation Flag")}},
        {"DGPS Source",
         ShowDgpsSourceDialog,
         1335,
         "A0A2 0007 85 03 00 04 AF 6C 64 020B B0B3",
         {
             ListCase(1331, 3, 5, 1, L"DGPS Source"),
             {Typed(1332, L"307052"),
              {{Typed(1332, L"0"), 2, "00000000"},
               {Typed(1332, L"283500"), 2, "0004536C"},
               {Typed(1332, L"325000"), 2, "0004F588"}},
              {Typed(1332, L"-1"), Typed(1332, L"1"), Typed(1332, L"283499"), Typed(1332, L"325001"),
               Typed(1332, L""), Typed(1332, L"x")},
              L"Internal Beacon Frequency",
              L"Range 0 or 283500-325000 Hz"},
             {Typed(1333, L"100"),
              {{Typed(1333, L"0"), 6, "00"},
               {Typed(1333, L"25"), 6, "19"},
               {Typed(1333, L"50"), 6, "32"},
               {Typed(1333, L"100"), 6, "64"},
               {Typed(1333, L"200"), 6, "C8"}},
              {Typed(1333, L"-1"), Typed(1333, L"24"), Typed(1333, L"26"), Typed(1333, L"75"),
               Typed(1333, L"201"), Typed(1333, L""), Typed(1333, L"x")},
              L"Internal Beacon Bit Rate",
              L"Range 0, 25, 50, 100 or 200 BPS"},
         }},
        {"DGPS Mode",
         ShowDgpsModeDialog,
         1382,
         "A0A2 0003 8A 01 1E 00A9 B0B3",
         {
             ListCase(1383, 1, 3, 1, L"DGPS Selection"),
             NumberCase(1384, L"30", 2, L"0", "00", L"255", "FF", L"-1", L"256", L"DGPS TimeOut",
                        L"Range 0-255 s"),
         }},
        {"Trickle Power",
         ShowTricklePowerDialog,
         1512,
         "A0A2 0009 97 0001 00C8 0000012C 018D B0B3",
         {
             BoxCase(1513, 1, true, L"Push-to-Fix Mode"),
             {Typed(1514, L"20"),
              {{Typed(1514, L"0"), 3, "0000"},
               {Typed(1514, L"100.0"), 3, "03E8"},
               {Typed(1514, L"12.34"), 3, "007B"},
               {Typed(1514, L"12.35"), 3, "007C"},
               {Typed(1514, L""), 3, "0000"},
               {Typed(1514, L"x"), 3, "0000"}},
              {Typed(1514, L"-0.1"), Typed(1514, L"100.1"), Typed(1514, L"999999999999999")},
              L"Duty Cycle",
              L"Range 0.0-100.0 %"},
             NumberCase(1515, L"300", 5, L"200", "000000C8", L"900", "00000384", L"199", L"901", L"On-Time",
                        L"Range 200-900 ms"),
         }},
        {"Low Power",
         ShowLowPowerDialog,
         1672,
         "A0A2 000F A7 00007530 0001D4C0 00000708 0001 02F1 B0B3",
         {
             NumberCase(1673, L"30000", 1, L"0", "00000000", L"3600000", "0036EE80", L"-1", L"3600001",
                        L"Max Off Time", L"Range 0-3600000 ms\rDefault 30 s"),
             NumberCase(1674, L"120000", 5, L"0", "00000000", L"3600000", "0036EE80", L"-1", L"3600001",
                        L"Max Acq. Search Time", L"Range 0-3600000 ms\rDefault 120 s"),
             NumberCase(1675, L"1800", 9, L"0", "00000000", L"3600", "00000E10", L"-1", L"3601",
                        L"Push-to-Fix Period", L"Range 0-3600 s\rDefault 1800 s"),
             BoxCase(1676, 13, true, L"Adaptive TricklePower"),
         }},
        {"Advanced Power Management",
         ShowAdvancedPowerManagementDialog,
         5311,
         "A0A2 000C 35 01 05 3C 00 03 07 1E 01 04 02 00 00A6 B0B3",
         {
             BoxCase(5301, 1, false, L"APM Enabled"),
             NumberCase(5302, L"5", 2, L"0", "00", L"255", "FF", L"-1", L"256", L"Number of Fixes",
                        L"Range 0-255"),
             NumberCase(5303, L"60", 3, L"10", "0A", L"180", "B4", L"9", L"181", L"Time Between Fixes",
                        L"Range 10-180"),
             ListCase(5304, 3, 8, 5, L"Maximum Horizontal Error"),
             ListCase(5305, 7, 8, 6, L"Maximum Vertical Error"),
             NumberCase(5306, L"30", 7, L"0", "00", L"255", "FF", L"-1", L"256", L"Maximum Response Time",
                        L"Range 0-255"),
             ListCase(5307, 1, 3, 8, L"Time Accuracy Priority"),
             {Typed(5308, L"20"),
              {{Typed(5308, L"5"), 9, "01"},
               {Typed(5308, L"7"), 9, "01"},
               {Typed(5308, L"99"), 9, "13"},
               {Typed(5308, L"100"), 9, "14"}},
              {Typed(5308, L"4"), Typed(5308, L"101"), Typed(5308, L""), Typed(5308, L"x")},
              L"Power Duty Cycle",
              L"Range 5-100%"},
             ListCase(5309, 2, 3, 10, L"Timing Priority"),
         }},
        {"Set Message Rate",
         ShowSirfSetMessageRateDialog,
         16618,
         "A0A2 0008 A6 00 29 05 00000000 00D4 B0B3",
         {
             // The rate is looked at before the message.
             NumberCase(16617, L"5", 3, L"0", "00", L"30", "1E", L"-1", L"31", L"Message Rate",
                        L"Range 0-30 s"),
             {Typed(16616, L"41 Geodetic Navigation Data"),
              {{Typed(16616, L"1"), 2, "01"},
               {Typed(16616, L"255"), 2, "FF"},
               {Typed(16616, L"255 Development Data"), 2, "FF"},
               {Typed(16616, L"53"), 2, "35"}, // not in the list
               {Chosen(16616, 0), 2, "01"},
               {Chosen(16616, 3), 2, "04"}},
              {Typed(16616, L"0"), Typed(16616, L"256"), Typed(16616, L"-1"), Typed(16616, L""),
               Typed(16616, L"Geodetic")},
              L"Message ID",
              L"Range 1-255"},
         }},
    };
    return cases;
}

class SirfFields : public SirfDialogTest
{
protected:
    static void EnterUsual(HWND dialog, const DialogCase& row)
    {
        for (const FieldCase& field : row.fields) Enter(dialog, field.usual);
    }
};

TEST_F(SirfFields, UsualEntriesAreSent)
{
    for (const DialogCase& row : Cases()) {
        SCOPED_TRACE(row.name);
        With(row.show, [&](HWND dialog) {
            EnterUsual(dialog, row);
            HeadlessClick(dialog, row.set);
        });
        EXPECT_EQ(Written(), std::vector{HexText(row.frame)});
    }
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(SirfFields, KeypadSendsTheSameBytes)
{
    UseKeypad();
    for (const DialogCase& row : Cases()) {
        SCOPED_TRACE(row.name);
        With(row.show, [&](HWND dialog) {
            EnterUsual(dialog, row);
            HeadlessClick(dialog, row.set);
        });
        EXPECT_EQ(Written(), std::vector{HexText(row.frame)});
    }
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(SirfFields, EveryEntryAtTheEdgeIsSent)
{
    for (const DialogCase& row : Cases()) {
        const std::vector<uint8_t> whole = Hex(row.frame);
        const std::vector<uint8_t> usual(whole.begin() + 4, whole.end() - 4);
        With(row.show, [&](HWND dialog) {
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
    for (const DialogCase& row : Cases())
        With(row.show, [&](HWND dialog) {
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
    for (const DialogCase& row : Cases())
        With(row.show, [&](HWND dialog) {
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
    for (const DialogCase& row : Cases())
        With(row.show, [&](HWND dialog) {
            for (const FieldCase& field : row.fields) {
                SCOPED_TRACE(field.usual.control);
                if (field.usual.kind == Entry::Kind::Text)
                    EXPECT_EQ(HeadlessText(dialog, field.usual.control), L"");
                else if (field.usual.kind == Entry::Kind::Choice)
                    EXPECT_EQ(HeadlessSelection(dialog, field.usual.control), -1);
                else
                    EXPECT_EQ(HeadlessCheck(dialog, field.usual.control), BST_INDETERMINATE);
            }
        });
}

// ---- Lists --------------------------------------------------------------------------------------------

TEST_F(SirfFields, ListsOfferTheirEntriesInBothLayouts)
{
    using Items = std::vector<std::wstring>;
    const Items errors = {L"1", L"5", L"10", L"20", L"40", L"80", L"160", L"No Max"};
    const struct {
        void (*show)();
        int control;
        Items items;
    } rows[] = {
        {ShowDgpsSourceDialog,
         1331,
         {L"None", L"SBAS", L"External RTCM", L"Internal Beacon", L"User Software"}},
        {ShowModeControlDialog,
         1363,
         {L"Hold direction,clock", L"Hold clock,direction", L"Hold direction", L"Hold clock", L"Disable"}},
        {ShowModeControlDialog, 1365, {L"Auto", L"Always", L"Disable"}},
        {ShowModeControlDialog, 1366, {L"Last computed", L"User input"}},
        {ShowDopMaskDialog, 1373, {L"Auto PDOP/HDOP", L"PDOP", L"HDOP", L"GDOP", L"Disabled"}},
        {ShowDgpsModeDialog, 1383, {L"Auto", L"Exclusive", L"Never use"}},
        {ShowAdvancedPowerManagementDialog, 5304, errors},
        {ShowAdvancedPowerManagementDialog, 5305, errors},
        {ShowAdvancedPowerManagementDialog,
         5307,
         {L"No Preference", L"Max Response Time", L"Max Horizontal Error"}},
        {ShowAdvancedPowerManagementDialog,
         5309,
         {L"No Preference", L"Time Between Fixes", L"Power Duty Cycle"}},
        {ShowSirfSetMessageRateDialog, 16617, {L"0", L"1", L"2", L"5", L"10"}},
    };
    for (int layout = 0; layout < 2; ++layout) {
        if (layout) UseKeypad();
        for (const auto& row : rows)
            With(row.show, [&](HWND dialog) {
                EXPECT_EQ(HeadlessItems(dialog, row.control), row.items) << row.control;
            });
        With(ShowSirfSetMessageRateDialog, [&](HWND dialog) {
            const Items names = HeadlessItems(dialog, 16616);
            ASSERT_EQ(names.size(), 58u);
            EXPECT_EQ(names[40], L"41 Geodetic Navigation Data");
            EXPECT_EQ(names[57], L"255 Development Data");
        });
    }
}

// ---- Polls --------------------------------------------------------------------------------------------

struct PollCase {
    void (*show)();
    DialogKind kind;
    int get;          // 0: no such button
    const char* poll; // "" none
    uint8_t pending;  // command that a refusal of what Get asks for is about; 0 none
    bool always = false;
};
constexpr const char* NavigationPoll = "A0A2 0002 98 00 0098 B0B3";
constexpr PollCase Polls[] = {
    {ShowAdvancedPowerManagementDialog, DialogKind::AdvancedPowerManagement, 5310, NavigationPoll, 0},
    {ShowInitializeDataSourceDialog, DialogKind::InitializeDataSource, 1289, "A0A2 0002 A8 80 0128 B0B3", 128,
     true},
    {ShowSwitchToNmeaDialog, DialogKind::SwitchToNmea, 0, "", 0},
    {ShowPollSoftwareVersionDialog, DialogKind::PollSoftwareVersion, 1321, "A0A2 0002 84 00 0084 B0B3", 0},
    {ShowDgpsSourceDialog, DialogKind::DgpsSource, 1334, "A0A2 0002 A8 85 012D B0B3", 133},
    {ShowModeControlDialog, DialogKind::ModeControl, 1361, "A0A2 0002 A8 88 0130 B0B3", 136},
    {ShowDopMaskDialog, DialogKind::DopMask, 1371, "A0A2 0002 A8 89 0131 B0B3", 137},
    {ShowDgpsModeDialog, DialogKind::DgpsMode, 1381, "A0A2 0002 A8 8A 0132 B0B3", 138},
    {ShowElevationMaskDialog, DialogKind::ElevationMask, 1391, "A0A2 0002 A8 8B 0133 B0B3", 139},
    {ShowPowerMaskDialog, DialogKind::PowerMask, 1401, "A0A2 0002 A8 8C 0134 B0B3", 140},
    {ShowStaticNavigationDialog, DialogKind::StaticNavigation, 1431, "A0A2 0002 A8 8F 0137 B0B3", 143},
    {ShowTricklePowerDialog, DialogKind::TricklePower, 1511, "A0A2 0002 A8 97 013F B0B3", 151},
    {ShowLowPowerDialog, DialogKind::LowPower, 1671, NavigationPoll, 0},
    {ShowSirfSetMessageRateDialog, DialogKind::SirfSetMessageRate, 0, "", 0},
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
                With(row.show, [&](HWND dialog) {
                    EXPECT_EQ(OpenDialogOfKind(row.kind), dialog);
                    EXPECT_EQ(Written(), Frames(row, mode.sirf || row.always));
                    EXPECT_EQ(PendingPollId.load(), 0);
                });
            }
        }
    }
}

// The dialog is there before its poll is: an answer that comes at once is shown.
TEST_F(SirfPolls, DialogIsPublishedBeforeItsPoll)
{
    SirfRecognised.store(1);
    for (const PollCase& row : Polls) {
        DialogKind published = DialogKind::None;
        Port.onWrite = [&](HeadlessPort&, std::string_view) { published = ActiveDialogKind.load(); };
        With(row.show, [](HWND) {});
        EXPECT_EQ(published, *row.poll ? row.kind : DialogKind::None);
    }
    Port.onWrite = nullptr;
}

TEST_F(SirfPolls, GetPollsAlways)
{
    for (const PollCase& row : Polls) {
        if (!row.get) continue;
        SCOPED_TRACE(row.get);
        With(row.show, [&](HWND dialog) {
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
        With(row.show, [&](HWND dialog) {
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
            row.show();
            EXPECT_EQ(HeadlessTopDialog(), nullptr);
            EXPECT_EQ(ActiveDialogKind.load(), DialogKind::None);
            EXPECT_EQ(ActiveDialogWindow.load(), nullptr);
        }
}

// The reader thread writes answers into edits and lists, which notify the dialog.
TEST_F(SirfPolls, NotificationsThatAreNoClicksDoNothing)
{
    constexpr WORD EnChange = 0x300;
    for (const DialogCase& row : Cases())
        With(row.show, [&](HWND dialog) {
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
        With(row.show, [](HWND dialog) {
            SendMessageW(dialog, WM_HOTKEY, 0, 27 << 16);
            SendMessageW(dialog, WM_HOTKEY, 0, 28 << 16);
            EXPECT_EQ(HeadlessTopDialog(), dialog);
        });
    ShellSendBackToFocusWindow = nullptr;
    EXPECT_EQ(BackKeys, std::size(Polls));
}

} // namespace
