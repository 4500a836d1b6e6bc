// SPDX-License-Identifier: MIT
#include "sirf/dialogs/command_dialog.h"

#include <algorithm>

#include "link/link_state.h"
#include "resources/resource_ids.h"
#include "sirf/frame_sender.h"
#include "sky/sky_objects.h"
#include "tests/unit/sirf/sirf_test.h"
#include "ui/dialog_support.h"

namespace
{

const std::string Poll = HexText("A0A2 0002 A8AA 0152 B0B3");

class SbasDialog : public SirfTest
{
protected:
    SbasDialog() { MakeMainWindow(); }

    // Opens the dialog; the user acts in it and closes it.
    static void Use(const std::function<void(HWND)>& steps)
    {
        HeadlessUser([=] { steps(HeadlessTopDialog()); });
        HeadlessUser([] { HeadlessCommand(HeadlessTopDialog(), IDCANCEL); });
        ShowSirfDialog(DIALOG_SIRF_SBAS);
    }
    static void Choose(HWND dialog, int prn, int mode, int timeout)
    {
        HeadlessChoose(dialog, CONTROL_SBAS_PRN, prn);
        HeadlessChoose(dialog, CONTROL_SBAS_MODE, mode);
        HeadlessChoose(dialog, CONTROL_SBAS_TIMEOUT, timeout);
    }
    // The receiver's position and time; message id 41.
    static Payload Fix(std::string_view type = "0004", std::string_view day = "15")
    {
        return Payload(41, 91)
            .At(3, type)
            .At(11, "07EA 06")            // 2026-06
            .At(14, day)                  // 21
            .At(15, "0C00 0000")          // 12:00:00
            .At(23, "1C316840 0510FF40"); // 47.3 N, 8.5 E
    }
};

// The keypad's layout, or that of touch screen and desktop.
class SbasDialogLayouts : public SbasDialog, public testing::WithParamInterface<bool>
{
protected:
    SbasDialogLayouts() : IsKeypad(GetParam())
    {
        if (IsKeypad) HeadlessSetPlatformType(L"SmartPhone");
        ChooseLayout();
    }
    HeadlessTemplate Template() const
    {
        HeadlessTemplate sbas;
        EXPECT_TRUE(HeadlessFindTemplate(DIALOG_SIRF_SBAS + LayoutOffset(), sbas));
        return sbas;
    }
    const bool IsKeypad;
};

INSTANTIATE_TEST_SUITE_P(Both, SbasDialogLayouts, testing::Bool());

// ---- Set ----------------------------------------------------------------------------------------------

TEST_F(SbasDialog, SendsEachSatellite)
{
    HeadlessPort& port = OpenPort();
    Use([&](HWND dialog) {
        const std::vector<std::wstring> entries = HeadlessItems(dialog, CONTROL_SBAS_PRN);
        ASSERT_EQ(entries.size(), 20u);
        for (int entry = 0; entry < 20; ++entry) {
            port.writes.clear();
            Choose(dialog, entry, 0, 0);
            HeadlessClick(dialog, CONTROL_SBAS_SET);
            const bool isAuto = entries[static_cast<size_t>(entry)] == L"Auto";
            const int prn = isAuto ? 0 : std::stoi(entries[static_cast<size_t>(entry)]);
            const std::vector<uint8_t> bytes = {170, static_cast<uint8_t>(prn), 0, uint8_t(isAuto ? 0 : 8), 0,
                                                0};
            Payload expected(170, 6);
            expected.bytes = bytes;
            EXPECT_EQ(port.writes, std::vector<std::string>{Frame(expected)}) << entry;
        }
    });
}

TEST_F(SbasDialog, SendsModeAndTimeout)
{
    struct Row {
        int prn, mode, timeout;
        const char* payload;
    };
    constexpr Row Rows[] = {
        {7, 1, 1, "AA 7E 01 09 00 00"}, // 126 EGNOS, Integrity, User input
        {0, 1, 1, "AA 00 01 01 00 00"}, // Auto has no bit 3
        {5, 0, 0, "AA 7C 00 08 00 00"}, // 124 EGNOS
        {19, 1, 0, "AA 8A 01 08 00 00"},
    };
    HeadlessPort& port = OpenPort();
    Use([&](HWND dialog) {
        EXPECT_EQ(HeadlessItems(dialog, CONTROL_SBAS_MODE),
                  (std::vector<std::wstring>{L"Testing", L"Integrity"}));
        EXPECT_EQ(HeadlessItems(dialog, CONTROL_SBAS_TIMEOUT),
                  (std::vector<std::wstring>{L"Default", L"User input"}));
        for (const Row& row : Rows) {
            port.writes.clear();
            Choose(dialog, row.prn, row.mode, row.timeout);
            HeadlessClick(dialog, CONTROL_SBAS_SET);
            EXPECT_EQ(port.writes, std::vector<std::string>{Frame(Payload(row.payload))}) << row.payload;
        }
    });
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(SbasDialog, NothingIsSentBeforeAllIsChosen)
{
    HeadlessPort& port = OpenPort();
    Use([&](HWND dialog) {
        HeadlessClick(dialog, CONTROL_SBAS_SET);
        HeadlessChoose(dialog, CONTROL_SBAS_PRN, 3);
        HeadlessClick(dialog, CONTROL_SBAS_SET);
        HeadlessChoose(dialog, CONTROL_SBAS_MODE, 1);
        HeadlessClick(dialog, CONTROL_SBAS_SET);
        EXPECT_TRUE(port.writes.empty());
        HeadlessChoose(dialog, CONTROL_SBAS_TIMEOUT, 0);
        HeadlessClick(dialog, CONTROL_SBAS_SET);
    });
    ASSERT_EQ(HeadlessBoxes().size(), 3u);
    EXPECT_TRUE(IsBox(HeadlessBoxes()[0], L"SBAS PRN", L"Bad selection"));
    EXPECT_TRUE(IsBox(HeadlessBoxes()[1], L"SBAS Mode", L"Bad selection"));
    EXPECT_TRUE(IsBox(HeadlessBoxes()[2], L"Timeout", L"Bad selection"));
    EXPECT_EQ(port.writes, std::vector<std::string>{Frame(Payload("AA 7A 01 08 00 00"))});
}

// ---- Get and read back --------------------------------------------------------------------------------

TEST_F(SbasDialog, PollsAtOpeningWhenTheReceiverSpeaksSirf)
{
    HeadlessPort& port = OpenPort();
    Use([&](HWND) { EXPECT_TRUE(port.writes.empty()); });
    SirfRecognised.store(1);
    Use([&](HWND) {
        EXPECT_EQ(port.writes, std::vector<std::string>{Poll});
        EXPECT_EQ(PendingPollId.load(), 0);
    });
}

TEST_F(SbasDialog, GetPolls)
{
    HeadlessPort& port = OpenPort();
    Use([&](HWND dialog) {
        HeadlessClick(dialog, CONTROL_SBAS_GET);
        EXPECT_EQ(port.writes, std::vector<std::string>{Poll});
        EXPECT_EQ(PendingPollId.load(), 170);
        Feed(Frame(Payload("2B AA 7E 01 09 00 00")));
        EXPECT_EQ(PendingPollId.load(), 0);
    });
}

TEST_P(SbasDialogLayouts, ShowsWhatItHasSent)
{
    HeadlessPort& port = OpenPort();
    Use([&](HWND dialog) {
        for (int entry = 0; entry < 20; ++entry) {
            const int mode = entry % 2, timeout = entry / 2 % 2;
            port.writes.clear();
            Choose(dialog, entry, mode, timeout);
            HeadlessClick(dialog, CONTROL_SBAS_SET);
            ASSERT_EQ(port.writes.size(), 1u);
            Choose(dialog, (entry + 3) % 20, 1 - mode, 1 - timeout);
            Payload answer(43, 7); // the command's own payload after the message id
            std::copy_n(port.writes[0].begin() + 4, 6, answer.bytes.begin() + 1);
            Feed(Frame(answer));
            EXPECT_EQ(HeadlessSelection(dialog, CONTROL_SBAS_PRN), entry);
            EXPECT_EQ(HeadlessSelection(dialog, CONTROL_SBAS_MODE), mode);
            EXPECT_EQ(HeadlessSelection(dialog, CONTROL_SBAS_TIMEOUT), timeout);
        }
    });
}

TEST_F(SbasDialog, RefusalsNameALikelyReason)
{
    OpenPort();
    Use([&](HWND dialog) {
        Choose(dialog, 7, 1, 1);
        HeadlessClick(dialog, CONTROL_SBAS_GET);
        Feed(Frame(Payload("0C A8")));
        HeadlessClick(dialog, CONTROL_SBAS_SET);
        Feed(Frame(Payload("0C AA")));
        HeadlessPumpMessages();
        EXPECT_EQ(PendingPollId.load(), 0);
    });
    ASSERT_EQ(HeadlessBoxes().size(), 2u);
    EXPECT_EQ(HeadlessBoxes()[0].text, L"Get SBAS parameters not accepted. A likely reason is that it is not "
                                       L"supported on XTrac or GSW3 firmware.");
    EXPECT_EQ(HeadlessBoxes()[1].text, L"Set SBAS parameters not accepted. A likely reason is that it is not "
                                       L"supported on XTrac firmware.");
}

TEST_F(SbasDialog, RefusedPollAtOpeningIsSilent)
{
    OpenPort();
    SirfRecognised.store(1);
    Use([&](HWND) {
        Feed(Frame(Payload("0C A8")));
        HeadlessPumpMessages();
    });
    EXPECT_TRUE(HeadlessBoxes().empty());
}

// ---- Satellites and sky -------------------------------------------------------------------------------

TEST_P(SbasDialogLayouts, FixFillsLinesAndPlot)
{
    Use([&](HWND dialog) {
        const size_t before = HeadlessPaintedTexts(dialog).size();
        HeadlessClearInvalidations(dialog);
        Feed(Frame(Fix()));
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SBAS_VISIBLE_SVS), L"120 124 126 127 128 ");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SBAS_VISIBLE_AZIMUTHS), L"211 163 158 117 125 ");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SBAS_VISIBLE_ELEVATIONS), L"  31   34   33   14   20 ");
        EXPECT_EQ(HeadlessInvalidations(dialog), std::vector<bool>{true});
        HeadlessPumpMessages(); // paints
        std::vector<std::wstring> labels;
        for (const HeadlessTextOut& text : HeadlessPaintedTexts(dialog)) labels.push_back(text.text);
        EXPECT_EQ(before, 4u) << "directions only, before the first fix";
        EXPECT_EQ(labels, (std::vector<std::wstring>{L" S ", L" N ", L" E ", L" W ", L"128", L"127", L"126",
                                                     L"124", L"120", L"M", L"S"}))
            << "the second picture, from the last row to the first";
    });
}

TEST_F(SbasDialog, EachFixIsDrawnInTheOtherOrder)
{
    Use([&](HWND dialog) {
        Feed(Frame(Fix()));
        HeadlessPumpMessages();
        std::vector<std::string> once = HeadlessPaintedShapes(dialog);
        Feed(Frame(Fix()));
        HeadlessPumpMessages();
        std::vector<std::string> twice = HeadlessPaintedShapes(dialog);
        ASSERT_GT(once.size(), 4u);
        EXPECT_NE(once, twice);
        std::reverse(twice.begin() + 2, twice.end()); // after the two circles
        EXPECT_EQ(once, twice);
    });
}

TEST_F(SbasDialog, TrackedSatelliteIsShown)
{
    Use([&](HWND dialog) {
        Feed(Frame(Payload(4, 188).At(7, "01").At(8, "7E 6A 44 003F 28282828282828282828")));
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SBAS_SV), L"126");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SBAS_CARRIER_TO_NOISE), L"40");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SBAS_STATE), L"3F");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SBAS_AZIMUTH), L"159");
        EXPECT_EQ(HeadlessText(dialog, CONTROL_SBAS_ELEVATION), L"34");
    });
}

TEST_F(SbasDialog, FailingPaintDrawsNothing)
{
    Use([&](HWND dialog) {
        HeadlessFailCall("BeginPaint", 1, ERROR_NOT_ENOUGH_MEMORY);
        InvalidateRect(dialog, nullptr, TRUE);
        HeadlessPumpMessages();
        EXPECT_EQ(HeadlessFailedCall(), "BeginPaint");
    });
    EXPECT_TRUE(HeadlessBoxes().empty());
}

// ---- Which messages move the sky ----------------------------------------------------------------------

bool SkyIsComputed()
{
    const bool computed = SkyObjects[SunRow].elevation != -90;
    ResetSkyObjects();
    return computed;
}

// The sky at a time, from the table after a message.
void ExpectSkyOf(uint16_t year, double latitude, double longitude)
{
    std::vector<double> shown;
    for (const SkyObject& object : SkyObjects) shown.insert(shown.end(), {object.elevation, object.azimuth});
    ResetSkyObjects();
    UpdateSkyObjects({year, 6, 0, 21, 12, 0, 0, 0}, latitude, longitude);
    for (size_t i = 0; i < SkyObjectCount; ++i) {
        EXPECT_NEAR(shown[2 * i], SkyObjects[i].elevation, 1e-6) << i;
        EXPECT_NEAR(shown[2 * i + 1], SkyObjects[i].azimuth, 1e-6) << i;
    }
    ResetSkyObjects();
}

TEST_F(SbasDialog, GeodeticNavigationMovesTheSky)
{
    Feed(Frame(Fix()));
    EXPECT_FALSE(SkyIsComputed()) << "without the dialog";
    Use([&](HWND) {
        Feed(Frame(Fix("0000")));
        EXPECT_FALSE(SkyIsComputed()) << "no fix";
        Feed(Frame(Fix("0004", "00")));
        EXPECT_FALSE(SkyIsComputed()) << "day not known";
        Feed(Frame(Payload(2, 41).At(19, "04")));
        EXPECT_FALSE(SkyIsComputed()) << "another message";
        Feed(Frame(Fix()));
        ExpectSkyOf(2026, 47.3, 8.5);
    });
    Feed(Frame(Fix()));
    EXPECT_FALSE(SkyIsComputed()) << "dialog closed";
}

TEST_F(SbasDialog, NmeaMovesTheSkyWithEightBitsOfTheYear)
{
    RecogniseNmea();
    Use([&](HWND) {
        FeedSentence("GPGGA,120000,4718.0000,N,00830.0000,E,1,05,1.5,400.0,M,47.0,M,,");
        EXPECT_FALSE(SkyIsComputed()) << "another sentence";
        FeedSentence("GPRMC,120000,A,,,,,0.0,0.0,210626,,");
        EXPECT_FALSE(SkyIsComputed()) << "no position";
        FeedSentence("GPRMC,120000,A,4718.0000,N,00830.0000,E,0.0,0.0,210626,,");
        ExpectSkyOf(2026 & 0xFF, 47.3, 8.5);
        FeedSentence("GPRMC,120000,V,4718.0000,S,07030.0000,W,0.0,0.0,210626,,"); // not valid, on purpose
        ExpectSkyOf(2026 & 0xFF, -47.3, -70.5);
    });
}

// ---- Templates ----------------------------------------------------------------------------------------

TEST_P(SbasDialogLayouts, PlotHasItsPlaceForItself)
{
    // Pixels of a dialog unit times 4 and times 8: the desktop's, and fonts a little smaller and larger.
    constexpr SIZE Fonts[] = {{6, 13}, {6, 12}, {6, 14}};
    constexpr RECT Plot = {31, 62, 149, 182};
    const HeadlessTemplate sbas = Template();
    EXPECT_EQ(sbas.caption, L"SBAS");
    for (const SIZE font : Fonts) {
        EXPECT_GT(sbas.width * font.cx / 4, Plot.right);
        EXPECT_GT(sbas.height * font.cy / 8, Plot.bottom);
        for (const HeadlessTemplateControl& control : sbas.controls) {
            constexpr int ListHeight = 14; // of a closed list; its template has the open one's
            const int height = control.className == L"COMBOBOX" ? ListHeight : control.height;
            const int left = control.x * font.cx / 4, right = (control.x + control.width) * font.cx / 4;
            const int top = control.y * font.cy / 8, bottom = (control.y + height) * font.cy / 8;
            EXPECT_TRUE(right <= Plot.left || left >= Plot.right || bottom <= Plot.top || top >= Plot.bottom)
                << control.id << " at " << control.x << ',' << control.y;
        }
    }
}

TEST_P(SbasDialogLayouts, TemplateHasAllControls)
{
    const HeadlessTemplate sbas = Template();
    std::vector<int> ids;
    std::vector<std::wstring> headings;
    for (const HeadlessTemplateControl& control : sbas.controls) {
        if (control.id > 0)
            ids.push_back(control.id);
        else
            headings.push_back(control.text);
        EXPECT_LE(control.x + control.width, sbas.width) << control.id;
        const bool isList = control.id >= CONTROL_SBAS_PRN && control.id <= CONTROL_SBAS_TIMEOUT;
        EXPECT_EQ(control.className == (IsKeypad ? L"LISTBOX" : L"COMBOBOX"), isList) << control.id;
    }
    std::sort(ids.begin(), ids.end()); // the keypad's buttons are last, so that its keys reach all controls
    EXPECT_EQ(std::erase(ids, IDOK), IsKeypad ? 0u : 1u); // a keypad closes with its soft key
    EXPECT_EQ(ids, (std::vector<int>{CONTROL_SBAS_SV, CONTROL_SBAS_CARRIER_TO_NOISE, CONTROL_SBAS_STATE,
                                     CONTROL_SBAS_AZIMUTH, CONTROL_SBAS_ELEVATION, CONTROL_SBAS_PRN,
                                     CONTROL_SBAS_MODE, CONTROL_SBAS_TIMEOUT, CONTROL_SBAS_GET,
                                     CONTROL_SBAS_SET, CONTROL_SBAS_VISIBLE_SVS,
                                     CONTROL_SBAS_VISIBLE_AZIMUTHS, CONTROL_SBAS_VISIBLE_ELEVATIONS}));
    EXPECT_EQ(headings,
              (std::vector<std::wstring>{L"SBAS PRN", L"SBAS Mode", L"Timeout", L"SV", L"C/No", L"State",
                                         L"Azimuth", L"Elevation", L"Visibles", L"Azimuth", L"Elevation"}));
}

} // namespace
