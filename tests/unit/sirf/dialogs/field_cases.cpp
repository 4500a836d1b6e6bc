// SPDX-License-Identifier: MIT
#include "tests/unit/sirf/dialogs/field_cases.h"

#include "resources/resource_ids.h"

namespace
{

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
             Typed(control, L"-"), Typed(control, L"99999999999"),
             Typed(control, below + std::wstring(L" 10")),
             // A number counts as a whole: with a fraction, a unit, a comma, an exponent, or the minus sign
             // of typography it is none, also where its beginning would do.
             Typed(control, usual + std::wstring(L".0")), Typed(control, usual + std::wstring(L"x")),
             Typed(control, usual + std::wstring(L",0")), Typed(control, usual + std::wstring(L"e0")),
             Typed(control, L"\u2212" + std::wstring(usual))},
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

} // namespace

const std::vector<DialogCase>& FieldCases()
{
    static const std::vector<DialogCase> cases = {
        {"Mode Control",
         DIALOG_SIRF_MODE_CONTROL,
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
         DIALOG_SIRF_DOP_MASK,
         1372,
         "A0A2 0005 89 03 0A 0B 0C 00AD B0B3",
         {
             ListCase(1373, 3, 5, 1, L"DOP Selection"),
             NumberCase(1374, L"10", 2, L"1", "01", L"50", "32", L"0", L"51", L"GDOP Value", L"Range 1-50"),
             NumberCase(1375, L"11", 3, L"1", "01", L"50", "32", L"0", L"51", L"PDOP Value", L"Range 1-50"),
             NumberCase(1376, L"12", 4, L"1", "01", L"50", "32", L"0", L"51", L"HDOP Value", L"Range 1-50"),
         }},
        {"Elevation Mask",
         DIALOG_SIRF_ELEVATION_MASK,
         1392,
         "A0A2 0005 8B 0032 004B 0108 B0B3",
         {
             {Typed(1393, L"5"),
              {
                  {Typed(1393, L"-200"), 1, "F831"}, // -1999.5, its fraction dropped
                  {Typed(1393, L"900.0"), 1, "2328"},
                  {Typed(1393, L"150"), 1, "05DC"},
                  {Typed(1393, L"-5"), 1, "FFCF"}, // -49.5, its fraction dropped
                  {Typed(1393, L"000000000000000000.59"), 1, "0006"},
                  {Typed(1393, L"7.54"), 1, "004B"},
                  {Typed(1393, L"7.55"), 1, "004C"},
                  {Typed(1393, L"                    90 "), 1, "0384"},
                  {Typed(1393, L"1e1"), 1, "0064"},
                  {Typed(1393, L"+750E-2"), 1, "004B"},
              },
              {Typed(1393, L""), Typed(1393, L"nan"), Typed(1393, L"-"), Typed(1393, L"7,5"),
               Typed(1393, L"7.5x"), Typed(1393, L"1e"), Typed(1393, L"1e1.5"), Typed(1393, L"\u22125"),
               Typed(1393, L"7.5.0"), Typed(1393, L"7.5\u00B0"), Typed(1393, std::wstring(254, L'0') + L"50"),
               Typed(1393, L"-200.1"), Typed(1393, L"900.1"), Typed(1393, L"999999999999999")},
              L"Tracking Mask",
              MaskText},
             {Typed(1394, L"7.5"),
              {{Typed(1394, L"-200"), 3, "F831"}, {Typed(1394, L"900"), 3, "2328"}},
              {Typed(1394, L"x"), Typed(1394, L"-200.1"), Typed(1394, L"900.1"),
               Typed(1394, L"-999999999999999")},
              L"Navigation Mask",
              MaskText},
         }},
        {"Power Mask",
         DIALOG_SIRF_POWER_MASK,
         1402,
         "A0A2 0003 8C 1C 1E 00C6 B0B3",
         {
             NumberCase(1403, L"28", 1, L"0", "00", L"50", "32", L"-1", L"51", L"Tracking Mask",
                        L"Range 0-50 dBHz"),
             NumberCase(1404, L"30", 2, L"0", "00", L"50", "32", L"-1", L"51", L"Navigation Mask",
                        L"Range 0-50 dBHz"),
         }},
        {"Static Navigation",
         DIALOG_SIRF_STATIC_NAVIGATION,
         1432,
         "A0A2 0002 8F 01 0090 B0B3",
         {BoxCase(1433, 1, false, L"Static Navigation Flag")}},
        {"DGPS Source",
         DIALOG_SIRF_DGPS_SOURCE,
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
         DIALOG_SIRF_DGPS_MODE,
         1382,
         "A0A2 0003 8A 01 1E 00A9 B0B3",
         {
             ListCase(1383, 1, 3, 1, L"DGPS Selection"),
             NumberCase(1384, L"30", 2, L"0", "00", L"255", "FF", L"-1", L"256", L"DGPS TimeOut",
                        L"Range 0-255 s"),
         }},
        {"Trickle Power",
         DIALOG_SIRF_TRICKLE_POWER,
         1512,
         "A0A2 0009 97 0001 00C8 0000012C 018D B0B3",
         {
             BoxCase(1513, 1, true, L"Push-to-Fix Mode"),
             {Typed(1514, L"20"),
              {{Typed(1514, L"0"), 3, "0000"},
               {Typed(1514, L"100.0"), 3, "03E8"},
               {Typed(1514, L"12.34"), 3, "007B"},
               {Typed(1514, L"12.35"), 3, "007C"}},
              {Typed(1514, L""), Typed(1514, L"x"), Typed(1514, L"30,000"), Typed(1514, L"-0.1"),
               Typed(1514, L"100.1"), Typed(1514, L"999999999999999")},
              L"Duty Cycle",
              L"Range 0.0-100.0 %"},
             NumberCase(1515, L"300", 5, L"200", "000000C8", L"900", "00000384", L"199", L"901", L"On-Time",
                        L"Range 200-900 ms"),
         }},
        {"Low Power",
         DIALOG_SIRF_LOW_POWER,
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
         DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT,
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
         DIALOG_SIRF_SET_MESSAGE_RATE,
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
