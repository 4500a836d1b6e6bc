#include "sirf/command_layouts.h"

#include <set>

#include "sirf/message_names.h"
#include "tests/unit/sirf/sirf_test.h"

namespace
{

// One row per field of the receiver's commands, written out apart from the tables under test.
struct Expected {
    const CommandLayout* layout;
    uint8_t command, length;
    DialogKind dialog;
    struct Row {
        int control;
        unsigned offset, width;
        int32_t low, high;
        const wchar_t *caption, *refusal;
    };
    std::vector<Row> rows;
};

const std::vector<Expected>& ExpectedLayouts()
{
    static const wchar_t *bad = L"Bad selection", *open = L"Indeterminate";
    static const std::vector<Expected> layouts = {
        {&InitializeDataSourceLayout,
         128,
         25,
         DialogKind::InitializeDataSource,
         {{1281, 1, 4, -10000000, 10000000, L"ECEF X", L"Range -10000000 to 10000000 m"},
          {1282, 5, 4, -10000000, 10000000, L"ECEF Y", L"Range -10000000 to 10000000 m"},
          {1283, 9, 4, -10000000, 10000000, L"ECEF Z", L"Range -10000000 to 10000000 m"},
          {1284, 13, 4, 0, 1000000, L"Clock Offset", L"Range 0-1000000 Hz"},
          {1285, 17, 4, 0, 604800, L"Time of Week", L"Range 0-604800 s"},
          {1286, 21, 2, 0, 10000, L"Week Number", L"Range 0-10000"},
          {1287, 23, 1, 1, 12, L"Channels", L"Range 1-12"}}},
        {&DgpsSourceLayout,
         133,
         7,
         DialogKind::DgpsSource,
         {{1331, 1, 1, 0, 4, L"DGPS Source", bad},
          {1332, 2, 4, 0, 325000, L"Internal Beacon Frequency", L"Range 0 or 283500-325000 Hz"},
          {1333, 6, 1, 0, 200, L"Internal Beacon Bit Rate", L"Range 0, 25, 50, 100 or 200 BPS"}}},
        {&ModeControlLayout,
         136,
         14,
         DialogKind::ModeControl,
         {{1363, 3, 1, 0, 4, L"Degraded Mode", bad},
          {1364, 6, 2, -1000, 10000, L"Altitude", L"Range -1000 to +10000 m"},
          {1365, 8, 1, 0, 2, L"Alt Hold Mode", bad},
          {1366, 9, 1, 0, 1, L"Alt Hold Source", bad},
          {1367, 11, 1, 0, 120, L"Degraded Time Out", L"Range 0-120 s"},
          {1368, 12, 1, 0, 120, L"DR Time Out", L"Range 0-120 s"},
          {1369, 13, 1, 0, 1, L"Track Smoothing", open}}},
        {&DopMaskLayout,
         137,
         5,
         DialogKind::DopMask,
         {{1373, 1, 1, 0, 4, L"DOP Selection", bad},
          {1374, 2, 1, 1, 50, L"GDOP Value", L"Range 1-50"},
          {1375, 3, 1, 1, 50, L"PDOP Value", L"Range 1-50"},
          {1376, 4, 1, 1, 50, L"HDOP Value", L"Range 1-50"}}},
        {&DgpsModeLayout,
         138,
         3,
         DialogKind::DgpsMode,
         {{1383, 1, 1, 0, 2, L"DGPS Selection", bad},
          {1384, 2, 1, 0, 255, L"DGPS TimeOut", L"Range 0-255 s"}}},
        {&ElevationMaskLayout,
         139,
         5,
         DialogKind::ElevationMask,
         {{1393, 1, 2, -20, 90, L"Tracking Mask", L"Range -20.0 to 90.0 \u00B0"},
          {1394, 3, 2, -20, 90, L"Navigation Mask", L"Range -20.0 to 90.0 \u00B0"}}},
        {&PowerMaskLayout,
         140,
         3,
         DialogKind::PowerMask,
         {{1403, 1, 1, 0, 50, L"Tracking Mask", L"Range 0-50 dBHz"},
          {1404, 2, 1, 0, 50, L"Navigation Mask", L"Range 0-50 dBHz"}}},
        {&StaticNavigationLayout,
         143,
         2,
         DialogKind::StaticNavigation,
         {{1433, 1, 1, 0, 1, L"Static Navigation Flag", open}}},
        {&TricklePowerLayout,
         151,
         9,
         DialogKind::TricklePower,
         {{1513, 1, 2, 0, 1, L"Push-to-Fix Mode", open},
          {1514, 3, 2, 0, 100, L"Duty Cycle", L"Range 0.0-100.0 %"},
          {1515, 5, 4, 200, 900, L"On-Time", L"Range 200-900 ms"}}},
        {&LowPowerLayout,
         167,
         15,
         DialogKind::LowPower,
         {{1673, 1, 4, 0, 3600000, L"Max Off Time", L"Range 0-3600000 ms\rDefault 30 s"},
          {1674, 5, 4, 0, 3600000, L"Max Acq. Search Time", L"Range 0-3600000 ms\rDefault 120 s"},
          {1675, 9, 4, 0, 3600, L"Push-to-Fix Period", L"Range 0-3600 s\rDefault 1800 s"},
          {1676, 13, 2, 0, 1, L"Adaptive TricklePower", open}}},
        {&SbasLayout,
         170,
         6,
         DialogKind::Sbas,
         {{1701, 1, 1, 0, 19, L"SBAS PRN", bad},
          {1702, 2, 1, 0, 1, L"SBAS Mode", bad},
          {1703, 3, 1, 0, 1, L"Timeout", bad}}},
        {&AdvancedPowerManagementLayout,
         53,
         12,
         DialogKind::AdvancedPowerManagement,
         {{5301, 1, 1, 0, 1, L"APM Enabled", open},
          {5302, 2, 1, 0, 255, L"Number of Fixes", L"Range 0-255"},
          {5303, 3, 1, 10, 180, L"Time Between Fixes", L"Range 10-180"},
          {5304, 5, 1, 0, 7, L"Maximum Horizontal Error", bad},
          {5305, 6, 1, 0, 7, L"Maximum Vertical Error", bad},
          {5306, 7, 1, 0, 255, L"Maximum Response Time", L"Range 0-255"},
          {5307, 8, 1, 0, 2, L"Time Accuracy Priority", bad},
          {5308, 9, 1, 5, 100, L"Power Duty Cycle", L"Range 5-100%"},
          {5309, 10, 1, 0, 2, L"Timing Priority", bad}}},
        {&SetMessageRateLayout,
         166,
         8,
         DialogKind::SirfSetMessageRate,
         {{16617, 3, 1, 0, 30, L"Message Rate", L"Range 0-30 s"},
          {16616, 2, 1, 1, 255, L"Message ID", L"Range 1-255"}}},
    };
    return layouts;
}

TEST(CommandLayouts, AreTheReceiversCommands)
{
    for (const Expected& expected : ExpectedLayouts()) {
        const CommandLayout& layout = *expected.layout;
        EXPECT_EQ(layout.command, expected.command);
        EXPECT_EQ(layout.length, expected.length) << int{expected.command};
        EXPECT_EQ(layout.kind, expected.dialog) << int{expected.command};
        ASSERT_EQ(layout.fields.size(), expected.rows.size()) << int{expected.command};
        for (size_t i = 0; i < expected.rows.size(); ++i) {
            const CommandField& field = layout.fields[i];
            const Expected::Row& row = expected.rows[i];
            EXPECT_EQ(field.control, row.control) << i;
            EXPECT_EQ(field.offset, row.offset) << row.control;
            EXPECT_EQ(field.width, row.width) << row.control;
            EXPECT_EQ(field.low, row.low) << row.control;
            EXPECT_EQ(field.high, row.high) << row.control;
            EXPECT_STREQ(field.caption, row.caption) << row.control;
            EXPECT_STREQ(field.refusal, row.refusal) << row.control;
        }
    }
}

TEST(CommandLayouts, ElevenAreReportedByThePoll)
{
    const std::set<unsigned> polled = {128, 133, 136, 137, 138, 139, 140, 143, 151, 167, 170};
    for (unsigned command = 0; command < 256; ++command) {
        const CommandLayout* layout = FindPolledCommand(static_cast<uint8_t>(command));
        ASSERT_EQ(layout != nullptr, polled.contains(command)) << command;
        EXPECT_EQ(layout ? layout->command : command, command);
    }
}

TEST(CommandLayouts, BeaconTakesZeroOrItsBand)
{
    const auto accepts = DgpsSourceLayout.fields[1].accepts;
    ASSERT_NE(accepts, nullptr);
    EXPECT_TRUE(accepts(0));
    EXPECT_FALSE(accepts(1));
    EXPECT_FALSE(accepts(283499));
    EXPECT_TRUE(accepts(283500));
    EXPECT_TRUE(accepts(325000));
}

TEST(CommandLayouts, BeaconTakesFiveBitRates)
{
    const auto accepts = DgpsSourceLayout.fields[2].accepts;
    ASSERT_NE(accepts, nullptr);
    for (int32_t rate = 0; rate <= 255; ++rate) {
        const bool expected = rate == 0 || rate == 25 || rate == 50 || rate == 100 || rate == 200;
        EXPECT_EQ(accepts(rate), expected) << rate;
    }
}

TEST(CommandLayouts, SbasEntriesAreTheSatellitesInOrder)
{
    const auto entries = SbasLayout.fields[0].entries;
    ASSERT_EQ(entries.size(), 20u);
    EXPECT_STREQ(entries[0], L"Auto");
    for (size_t i = 1; i < entries.size(); ++i)
        EXPECT_EQ(std::wstring(entries[i]).substr(0, 3), std::to_wstring(SbasEntryToPrn + i));
    EXPECT_STREQ(entries[1], L"120 EGNOS/ESTB");
    EXPECT_STREQ(entries[10], L"129 MSAS");
    EXPECT_STREQ(entries[19], L"138 WAAS");
}

TEST(CommandLayouts, MessageNamesBeginWithTheirNumbersInOrder)
{
    constexpr size_t count = sizeof MessageNames / sizeof *MessageNames;
    EXPECT_EQ(count, 58u);
    long last = 0;
    for (const wchar_t* name : MessageNames) {
        const long number = std::wcstol(name, nullptr, 10);
        EXPECT_GT(number, last);
        last = number;
    }
    EXPECT_EQ(last, 255);
    EXPECT_STREQ(MessageNames[40], L"41 Geodetic Navigation Data");
    EXPECT_STREQ(MessageNames[54], L"221");
}

} // namespace
