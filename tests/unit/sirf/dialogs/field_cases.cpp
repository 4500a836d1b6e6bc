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

// A whole number, with its lowest and highest value and the sent bytes; one value below, one above.
FieldCase NumberCase(int control, const wchar_t* usual, size_t offset, Entry low, const char* lowBytes,
                     Entry high, const char* highBytes, const wchar_t* below, const wchar_t* above,
                     const std::wstring& caption, const std::wstring& text)
{
    return {Typed(control, usual),
            {{low, offset, lowBytes}, {high, offset, highBytes}},
            {Typed(control, below), Typed(control, above), Typed(control, L""), Typed(control, L"a1"),
             Typed(control, L"-"), Typed(control, L"99999999999"),
             Typed(control, below + std::wstring(L" 10")),
             // The whole text must be a number: with a fraction, a unit, a comma, an exponent, or the minus
             // sign of typography it is refused, even if its beginning is a number.
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
         CONTROL_MODE_SET,
         "A0A2 000E 88 00 00 02 00 00 01F4 01 01 00 1E 0F 01 01AF B0B3",
         {
             ListCase(CONTROL_MODE_DEGRADED, 2, 5, 3, L"Degraded Mode"),
             NumberCase(CONTROL_MODE_ALTITUDE, L"500", 6, L"-1000", "FC18", L"10000", "2710", L"-1001",
                        L"10001", L"Altitude", L"Range -1000 to +10000 m"),
             ListCase(CONTROL_MODE_ALTITUDE_HOLD, 1, 3, 8, L"Alt Hold Mode"),
             ListCase(CONTROL_MODE_ALTITUDE_SOURCE, 1, 2, 9, L"Alt Hold Source"),
             NumberCase(CONTROL_MODE_DEGRADED_TIMEOUT, L"30", 11, L"0", "00", L"120", "78", L"-1", L"121",
                        L"Degraded Time Out", L"Range 0-120 s"),
             NumberCase(CONTROL_MODE_DR_TIMEOUT, L"15", 12, L"0", "00", L"120", "78", L"-1", L"121",
                        L"DR Time Out", L"Range 0-120 s"),
             BoxCase(CONTROL_MODE_TRACK_SMOOTHING, 13, false, L"Track Smoothing"),
         }},
        {"DOP Mask",
         DIALOG_SIRF_DOP_MASK,
         CONTROL_DOP_SET,
         "A0A2 0005 89 03 0A 0B 0C 00AD B0B3",
         {
             ListCase(CONTROL_DOP_SELECTION, 3, 5, 1, L"DOP Selection"),
             NumberCase(CONTROL_DOP_GDOP, L"10", 2, L"1", "01", L"50", "32", L"0", L"51", L"GDOP Value",
                        L"Range 1-50"),
             NumberCase(CONTROL_DOP_PDOP, L"11", 3, L"1", "01", L"50", "32", L"0", L"51", L"PDOP Value",
                        L"Range 1-50"),
             NumberCase(CONTROL_DOP_HDOP, L"12", 4, L"1", "01", L"50", "32", L"0", L"51", L"HDOP Value",
                        L"Range 1-50"),
         }},
        {"Elevation Mask",
         DIALOG_SIRF_ELEVATION_MASK,
         CONTROL_ELEVATION_SET,
         "A0A2 0005 8B 0032 004B 0108 B0B3",
         {
             {Typed(CONTROL_ELEVATION_TRACKING, L"5"),
              {
                  {Typed(CONTROL_ELEVATION_TRACKING, L"-200"), 1, "F831"}, // -1999.5, its fraction dropped
                  {Typed(CONTROL_ELEVATION_TRACKING, L"900.0"), 1, "2328"},
                  {Typed(CONTROL_ELEVATION_TRACKING, L"150"), 1, "05DC"},
                  {Typed(CONTROL_ELEVATION_TRACKING, L"-5"), 1, "FFCF"}, // -49.5, its fraction dropped
                  {Typed(CONTROL_ELEVATION_TRACKING, L"000000000000000000.59"), 1, "0006"},
                  {Typed(CONTROL_ELEVATION_TRACKING, L"7.54"), 1, "004B"},
                  {Typed(CONTROL_ELEVATION_TRACKING, L"7.55"), 1, "004C"},
                  {Typed(CONTROL_ELEVATION_TRACKING, L"                    90 "), 1, "0384"},
                  {Typed(CONTROL_ELEVATION_TRACKING, L"1e1"), 1, "0064"},
                  {Typed(CONTROL_ELEVATION_TRACKING, L"+750E-2"), 1, "004B"},
              },
              {Typed(CONTROL_ELEVATION_TRACKING, L""), Typed(CONTROL_ELEVATION_TRACKING, L"nan"),
               Typed(CONTROL_ELEVATION_TRACKING, L"-"), Typed(CONTROL_ELEVATION_TRACKING, L"7,5"),
               Typed(CONTROL_ELEVATION_TRACKING, L"7.5x"), Typed(CONTROL_ELEVATION_TRACKING, L"1e"),
               Typed(CONTROL_ELEVATION_TRACKING, L"1e1.5"), Typed(CONTROL_ELEVATION_TRACKING, L"\u22125"),
               Typed(CONTROL_ELEVATION_TRACKING, L"7.5.0"), Typed(CONTROL_ELEVATION_TRACKING, L"7.5\u00B0"),
               Typed(CONTROL_ELEVATION_TRACKING, std::wstring(254, L'0') + L"50"),
               Typed(CONTROL_ELEVATION_TRACKING, L"-200.1"), Typed(CONTROL_ELEVATION_TRACKING, L"900.1"),
               Typed(CONTROL_ELEVATION_TRACKING, L"999999999999999")},
              L"Tracking Mask",
              MaskText},
             {Typed(CONTROL_ELEVATION_NAVIGATION, L"7.5"),
              {{Typed(CONTROL_ELEVATION_NAVIGATION, L"-200"), 3, "F831"},
               {Typed(CONTROL_ELEVATION_NAVIGATION, L"900"), 3, "2328"}},
              {Typed(CONTROL_ELEVATION_NAVIGATION, L"x"), Typed(CONTROL_ELEVATION_NAVIGATION, L"-200.1"),
               Typed(CONTROL_ELEVATION_NAVIGATION, L"900.1"),
               Typed(CONTROL_ELEVATION_NAVIGATION, L"-999999999999999")},
              L"Navigation Mask",
              MaskText},
         }},
        {"Power Mask",
         DIALOG_SIRF_POWER_MASK,
         CONTROL_POWER_SET,
         "A0A2 0003 8C 1C 1E 00C6 B0B3",
         {
             NumberCase(CONTROL_POWER_TRACKING, L"28", 1, L"0", "00", L"50", "32", L"-1", L"51",
                        L"Tracking Mask", L"Range 0-50 dBHz"),
             NumberCase(CONTROL_POWER_NAVIGATION, L"30", 2, L"0", "00", L"50", "32", L"-1", L"51",
                        L"Navigation Mask", L"Range 0-50 dBHz"),
         }},
        {"Static Navigation",
         DIALOG_SIRF_STATIC_NAVIGATION,
         CONTROL_STATIC_NAVIGATION_SET,
         "A0A2 0002 8F 01 0090 B0B3",
         {BoxCase(CONTROL_STATIC_NAVIGATION, 1, false, L"Static Navigation Flag")}},
        {"DGPS Source",
         DIALOG_SIRF_DGPS_SOURCE,
         CONTROL_DGPS_SOURCE_SET,
         "A0A2 0007 85 03 00 04 AF 6C 64 020B B0B3",
         {
             ListCase(CONTROL_DGPS_SOURCE, 3, 5, 1, L"DGPS Source"),
             {Typed(CONTROL_DGPS_BEACON_FREQUENCY, L"307052"),
              {{Typed(CONTROL_DGPS_BEACON_FREQUENCY, L"0"), 2, "00000000"},
               {Typed(CONTROL_DGPS_BEACON_FREQUENCY, L"283500"), 2, "0004536C"},
               {Typed(CONTROL_DGPS_BEACON_FREQUENCY, L"325000"), 2, "0004F588"}},
              {Typed(CONTROL_DGPS_BEACON_FREQUENCY, L"-1"), Typed(CONTROL_DGPS_BEACON_FREQUENCY, L"1"),
               Typed(CONTROL_DGPS_BEACON_FREQUENCY, L"283499"),
               Typed(CONTROL_DGPS_BEACON_FREQUENCY, L"325001"), Typed(CONTROL_DGPS_BEACON_FREQUENCY, L""),
               Typed(CONTROL_DGPS_BEACON_FREQUENCY, L"x")},
              L"Internal Beacon Frequency",
              L"Range 0 or 283500-325000 Hz"},
             {Typed(CONTROL_DGPS_BEACON_BIT_RATE, L"100"),
              {{Typed(CONTROL_DGPS_BEACON_BIT_RATE, L"0"), 6, "00"},
               {Typed(CONTROL_DGPS_BEACON_BIT_RATE, L"25"), 6, "19"},
               {Typed(CONTROL_DGPS_BEACON_BIT_RATE, L"50"), 6, "32"},
               {Typed(CONTROL_DGPS_BEACON_BIT_RATE, L"100"), 6, "64"},
               {Typed(CONTROL_DGPS_BEACON_BIT_RATE, L"200"), 6, "C8"}},
              {Typed(CONTROL_DGPS_BEACON_BIT_RATE, L"-1"), Typed(CONTROL_DGPS_BEACON_BIT_RATE, L"24"),
               Typed(CONTROL_DGPS_BEACON_BIT_RATE, L"26"), Typed(CONTROL_DGPS_BEACON_BIT_RATE, L"75"),
               Typed(CONTROL_DGPS_BEACON_BIT_RATE, L"201"), Typed(CONTROL_DGPS_BEACON_BIT_RATE, L""),
               Typed(CONTROL_DGPS_BEACON_BIT_RATE, L"x")},
              L"Internal Beacon Bit Rate",
              L"Range 0, 25, 50, 100 or 200 BPS"},
         }},
        {"DGPS Mode",
         DIALOG_SIRF_DGPS_MODE,
         CONTROL_DGPS_MODE_SET,
         "A0A2 0003 8A 01 1E 00A9 B0B3",
         {
             ListCase(CONTROL_DGPS_MODE, 1, 3, 1, L"DGPS Selection"),
             NumberCase(CONTROL_DGPS_TIMEOUT, L"30", 2, L"0", "00", L"255", "FF", L"-1", L"256",
                        L"DGPS TimeOut", L"Range 0-255 s"),
         }},
        {"Trickle Power",
         DIALOG_SIRF_TRICKLE_POWER,
         CONTROL_TRICKLE_SET,
         "A0A2 0009 97 0001 00C8 0000012C 018D B0B3",
         {
             BoxCase(CONTROL_TRICKLE_PUSH_TO_FIX, 1, true, L"Push-to-Fix Mode"),
             {Typed(CONTROL_TRICKLE_DUTY_CYCLE, L"20"),
              {{Typed(CONTROL_TRICKLE_DUTY_CYCLE, L"0"), 3, "0000"},
               {Typed(CONTROL_TRICKLE_DUTY_CYCLE, L"100.0"), 3, "03E8"},
               {Typed(CONTROL_TRICKLE_DUTY_CYCLE, L"12.34"), 3, "007B"},
               {Typed(CONTROL_TRICKLE_DUTY_CYCLE, L"12.35"), 3, "007C"}},
              {Typed(CONTROL_TRICKLE_DUTY_CYCLE, L""), Typed(CONTROL_TRICKLE_DUTY_CYCLE, L"x"),
               Typed(CONTROL_TRICKLE_DUTY_CYCLE, L"30,000"), Typed(CONTROL_TRICKLE_DUTY_CYCLE, L"-0.1"),
               Typed(CONTROL_TRICKLE_DUTY_CYCLE, L"100.1"),
               Typed(CONTROL_TRICKLE_DUTY_CYCLE, L"999999999999999")},
              L"Duty Cycle",
              L"Range 0.0-100.0 %"},
             NumberCase(CONTROL_TRICKLE_ON_TIME, L"300", 5, L"200", "000000C8", L"900", "00000384", L"199",
                        L"901", L"On-Time", L"Range 200-900 ms"),
         }},
        {"Low Power",
         DIALOG_SIRF_LOW_POWER,
         CONTROL_LOW_POWER_SET,
         "A0A2 000F A7 00007530 0001D4C0 00000708 0001 02F1 B0B3",
         {
             NumberCase(CONTROL_LOW_POWER_MAX_OFF_TIME, L"30000", 1, L"0", "00000000", L"3600000", "0036EE80",
                        L"-1", L"3600001", L"Max Off Time", L"Range 0-3600000 ms\rDefault 30 s"),
             NumberCase(CONTROL_LOW_POWER_MAX_SEARCH_TIME, L"120000", 5, L"0", "00000000", L"3600000",
                        "0036EE80", L"-1", L"3600001", L"Max Acq. Search Time",
                        L"Range 0-3600000 ms\rDefault 120 s"),
             NumberCase(CONTROL_LOW_POWER_PERIOD, L"1800", 9, L"0", "00000000", L"3600", "00000E10", L"-1",
                        L"3601", L"Push-to-Fix Period", L"Range 0-3600 s\rDefault 1800 s"),
             BoxCase(CONTROL_LOW_POWER_ADAPTIVE, 13, true, L"Adaptive TricklePower"),
         }},
        {"Advanced Power Management",
         DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT,
         CONTROL_APM_SET,
         "A0A2 000C 35 01 05 3C 00 03 07 1E 01 04 02 00 00A6 B0B3",
         {
             BoxCase(CONTROL_APM_ENABLED, 1, false, L"APM Enabled"),
             NumberCase(CONTROL_APM_CYCLES, L"5", 2, L"0", "00", L"255", "FF", L"-1", L"256",
                        L"Number of Fixes", L"Range 0-255"),
             NumberCase(CONTROL_APM_TIME_BETWEEN_FIXES, L"60", 3, L"10", "0A", L"180", "B4", L"9", L"181",
                        L"Time Between Fixes", L"Range 10-180"),
             ListCase(CONTROL_APM_MAX_HORIZONTAL_ERROR, 3, 8, 5, L"Maximum Horizontal Error"),
             ListCase(CONTROL_APM_MAX_VERTICAL_ERROR, 7, 8, 6, L"Maximum Vertical Error"),
             NumberCase(CONTROL_APM_MAX_RESPONSE_TIME, L"30", 7, L"0", "00", L"255", "FF", L"-1", L"256",
                        L"Maximum Response Time", L"Range 0-255"),
             ListCase(CONTROL_APM_ACCURACY_PRIORITY, 1, 3, 8, L"Time Accuracy Priority"),
             {Typed(CONTROL_APM_DUTY_CYCLE, L"20"),
              {{Typed(CONTROL_APM_DUTY_CYCLE, L"5"), 9, "01"},
               {Typed(CONTROL_APM_DUTY_CYCLE, L"7"), 9, "01"},
               {Typed(CONTROL_APM_DUTY_CYCLE, L"99"), 9, "13"},
               {Typed(CONTROL_APM_DUTY_CYCLE, L"100"), 9, "14"}},
              {Typed(CONTROL_APM_DUTY_CYCLE, L"4"), Typed(CONTROL_APM_DUTY_CYCLE, L"101"),
               Typed(CONTROL_APM_DUTY_CYCLE, L""), Typed(CONTROL_APM_DUTY_CYCLE, L"x")},
              L"Power Duty Cycle",
              L"Range 5-100%"},
             ListCase(CONTROL_APM_TIMING_PRIORITY, 2, 3, 10, L"Timing Priority"),
         }},
        {"Set Message Rate",
         DIALOG_SIRF_SET_MESSAGE_RATE,
         CONTROL_RATE_SET,
         "A0A2 0008 A6 00 29 05 00000000 00D4 B0B3",
         {
             // The rate is checked before the message.
             NumberCase(CONTROL_RATE_SECONDS, L"5", 3, L"0", "00", L"30", "1E", L"-1", L"31", L"Message Rate",
                        L"Range 0-30 s"),
             {Typed(CONTROL_RATE_MESSAGE_ID, L"41 Geodetic Navigation Data"),
              {{Typed(CONTROL_RATE_MESSAGE_ID, L"1"), 2, "01"},
               {Typed(CONTROL_RATE_MESSAGE_ID, L"255"), 2, "FF"},
               {Typed(CONTROL_RATE_MESSAGE_ID, L"255 Development Data"), 2, "FF"},
               {Typed(CONTROL_RATE_MESSAGE_ID, L"53"), 2, "35"}, // not in the list
               {Chosen(CONTROL_RATE_MESSAGE_ID, 0), 2, "01"},
               {Chosen(CONTROL_RATE_MESSAGE_ID, 3), 2, "04"}},
              {Typed(CONTROL_RATE_MESSAGE_ID, L"0"), Typed(CONTROL_RATE_MESSAGE_ID, L"256"),
               Typed(CONTROL_RATE_MESSAGE_ID, L"-1"), Typed(CONTROL_RATE_MESSAGE_ID, L""),
               Typed(CONTROL_RATE_MESSAGE_ID, L"Geodetic")},
              L"Message ID",
              L"Range 1-255"},
         }},
    };
    return cases;
}
