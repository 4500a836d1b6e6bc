#include "sirf/command_layouts.h"

#include "resources/resource_ids.h"
#include "sirf/message_names.h"

namespace
{

using enum FieldKind;

constexpr const wchar_t* BadSelection = L"Bad selection";
constexpr const wchar_t* Undecided = L"Indeterminate";

// ---- Lists --------------------------------------------------------------------------------------------

constexpr const wchar_t* DgpsSources[] = {L"None", L"SBAS", L"External RTCM", L"Internal Beacon",
                                          L"User Software"};
constexpr const wchar_t* DegradedModes[] = {L"Hold direction,clock", L"Hold clock,direction",
                                            L"Hold direction", L"Hold clock", L"Disable"};
constexpr const wchar_t* AltitudeHoldModes[] = {L"Auto", L"Always", L"Disable"};
constexpr const wchar_t* AltitudeHoldSources[] = {L"Last computed", L"User input"};
constexpr const wchar_t* DopSelections[] = {L"Auto PDOP/HDOP", L"PDOP", L"HDOP", L"GDOP", L"Disabled"};
constexpr const wchar_t* DgpsModes[] = {L"Auto", L"Exclusive", L"Never use"};
constexpr const wchar_t* SbasPrns[] = {
    L"Auto",      L"120 EGNOS/ESTB", L"121",       L"122 WAAS", L"123",      L"124 EGNOS", L"125",
    L"126 EGNOS", L"127 GAGAN",      L"128 GAGAN", L"129 MSAS", L"130",      L"131",       L"132",
    L"133",       L"134 WAAS",       L"135 WAAS",  L"136",      L"137 MSAS", L"138 WAAS"};
constexpr const wchar_t* SbasModes[] = {L"Testing", L"Integrity"};
constexpr const wchar_t* SbasTimeouts[] = {L"Default", L"User input"};
constexpr const wchar_t* ApmErrors[] = {L"1", L"5", L"10", L"20", L"40", L"80", L"160", L"No Max"};
constexpr const wchar_t* ApmAccuracyPriorities[] = {L"No Preference", L"Max Response Time",
                                                    L"Max Horizontal Error"};
constexpr const wchar_t* UpdateRates[] = {L"0", L"1", L"2", L"5", L"10"};
constexpr const wchar_t* ApmTimingPriorities[] = {L"No Preference", L"Time Between Fixes",
                                                  L"Power Duty Cycle"};

// ---- Fields -------------------------------------------------------------------------------------------

constexpr CommandField ListField(uint16_t control, uint8_t offset, const wchar_t* caption,
                                 std::span<const wchar_t* const> entries)
{
    return {List,    control,      offset, 1, 0, static_cast<int32_t>(entries.size()) - 1,
            caption, BadSelection, entries};
}

constexpr CommandField CheckField(uint16_t control, uint8_t offset, uint8_t width, const wchar_t* caption)
{
    return {Check, control, offset, width, 0, 1, caption, Undecided};
}

bool IsBeaconFrequency(int32_t hertz)
{
    return hertz == 0 || hertz >= 283500;
}

bool IsBeaconBitRate(int32_t bitsPerSecond)
{
    return bitsPerSecond == 0 || bitsPerSecond == 25 || bitsPerSecond == 50 || bitsPerSecond == 100 ||
           bitsPerSecond == 200;
}

constexpr int32_t MaxEcef = 10000000;
constexpr const wchar_t* EcefRange = L"Range -10000000 to 10000000 m";

constexpr CommandField InitializeDataSourceFields[] = {
    {Number, CONTROL_INIT_ECEF_X, 1, 4, -MaxEcef, MaxEcef, L"ECEF X", EcefRange},
    {Number, CONTROL_INIT_ECEF_Y, 5, 4, -MaxEcef, MaxEcef, L"ECEF Y", EcefRange},
    {Number, CONTROL_INIT_ECEF_Z, 9, 4, -MaxEcef, MaxEcef, L"ECEF Z", EcefRange},
    {Number, CONTROL_INIT_CLOCK_OFFSET, 13, 4, 0, 1000000, L"Clock Offset", L"Range 0-1000000 Hz"},
    {Hundredths, CONTROL_INIT_TIME_OF_WEEK, 17, 4, 0, 604800, L"Time of Week", L"Range 0-604800 s"},
    {Number, CONTROL_INIT_WEEK, 21, 2, 0, 10000, L"Week Number", L"Range 0-10000"},
    {Number, CONTROL_INIT_CHANNELS, 23, 1, 1, 12, L"Channels", L"Range 1-12"},
};

constexpr CommandField DgpsSourceFields[] = {
    ListField(CONTROL_DGPS_SOURCE, 1, L"DGPS Source", DgpsSources),
    {Number,
     CONTROL_DGPS_BEACON_FREQUENCY,
     2,
     4,
     0,
     325000,
     L"Internal Beacon Frequency",
     L"Range 0 or 283500-325000 Hz",
     {},
     IsBeaconFrequency},
    {Number,
     CONTROL_DGPS_BEACON_BIT_RATE,
     6,
     1,
     0,
     200,
     L"Internal Beacon Bit Rate",
     L"Range 0, 25, 50, 100 or 200 BPS",
     {},
     IsBeaconBitRate},
};

constexpr CommandField ModeControlFields[] = {
    ListField(CONTROL_MODE_DEGRADED, 3, L"Degraded Mode", DegradedModes),
    {Number, CONTROL_MODE_ALTITUDE, 6, 2, -1000, 10000, L"Altitude", L"Range -1000 to +10000 m"},
    ListField(CONTROL_MODE_ALTITUDE_HOLD, 8, L"Alt Hold Mode", AltitudeHoldModes),
    ListField(CONTROL_MODE_ALTITUDE_SOURCE, 9, L"Alt Hold Source", AltitudeHoldSources),
    {Number, CONTROL_MODE_DEGRADED_TIMEOUT, 11, 1, 0, 120, L"Degraded Time Out", L"Range 0-120 s"},
    {Number, CONTROL_MODE_DR_TIMEOUT, 12, 1, 0, 120, L"DR Time Out", L"Range 0-120 s"},
    CheckField(CONTROL_MODE_TRACK_SMOOTHING, 13, 1, L"Track Smoothing"),
};

constexpr CommandField DopMaskFields[] = {
    ListField(CONTROL_DOP_SELECTION, 1, L"DOP Selection", DopSelections),
    {Number, CONTROL_DOP_GDOP, 2, 1, 1, 50, L"GDOP Value", L"Range 1-50"},
    {Number, CONTROL_DOP_PDOP, 3, 1, 1, 50, L"PDOP Value", L"Range 1-50"},
    {Number, CONTROL_DOP_HDOP, 4, 1, 1, 50, L"HDOP Value", L"Range 1-50"},
};

constexpr CommandField DgpsModeFields[] = {
    ListField(CONTROL_DGPS_MODE, 1, L"DGPS Selection", DgpsModes),
    {Number, CONTROL_DGPS_TIMEOUT, 2, 1, 0, 255, L"DGPS TimeOut", L"Range 0-255 s"},
};

constexpr CommandField MaskField(uint16_t control, uint8_t offset, const wchar_t* caption)
{
    // On purpose dialogs test the number of degrees as typed against limits in tenths.
    return {Tenths, control, offset, 2, -20, 90, caption, L"Range -20.0 to 90.0 \u00B0", {}, nullptr, 10};
}

constexpr CommandField ElevationMaskFields[] = {
    MaskField(CONTROL_ELEVATION_TRACKING, 1, L"Tracking Mask"),
    MaskField(CONTROL_ELEVATION_NAVIGATION, 3, L"Navigation Mask"),
};

constexpr CommandField PowerMaskFields[] = {
    {Number, CONTROL_POWER_TRACKING, 1, 1, 0, 50, L"Tracking Mask", L"Range 0-50 dBHz"},
    {Number, CONTROL_POWER_NAVIGATION, 2, 1, 0, 50, L"Navigation Mask", L"Range 0-50 dBHz"},
};

constexpr CommandField StaticNavigationFields[] = {
    CheckField(CONTROL_STATIC_NAVIGATION, 1, 1, L"Static Navigation Flag"),
};

constexpr CommandField TricklePowerFields[] = {
    CheckField(CONTROL_TRICKLE_PUSH_TO_FIX, 1, 2, L"Push-to-Fix Mode"),
    {Tenths, CONTROL_TRICKLE_DUTY_CYCLE, 3, 2, 0, 100, L"Duty Cycle", L"Range 0.0-100.0 %"},
    {Number, CONTROL_TRICKLE_ON_TIME, 5, 4, 200, 900, L"On-Time", L"Range 200-900 ms"},
};

constexpr CommandField LowPowerFields[] = {
    {Number, CONTROL_LOW_POWER_MAX_OFF_TIME, 1, 4, 0, 3600000, L"Max Off Time",
     L"Range 0-3600000 ms\rDefault 30 s"},
    {Number, CONTROL_LOW_POWER_MAX_SEARCH_TIME, 5, 4, 0, 3600000, L"Max Acq. Search Time",
     L"Range 0-3600000 ms\rDefault 120 s"},
    {Number, CONTROL_LOW_POWER_PERIOD, 9, 4, 0, 3600, L"Push-to-Fix Period",
     L"Range 0-3600 s\rDefault 1800 s"},
    CheckField(CONTROL_LOW_POWER_ADAPTIVE, 13, 2, L"Adaptive TricklePower"),
};

constexpr CommandField SbasFields[] = {
    ListField(CONTROL_SBAS_PRN, 1, L"SBAS PRN", SbasPrns),
    ListField(CONTROL_SBAS_MODE, 2, L"SBAS Mode", SbasModes),
    ListField(CONTROL_SBAS_TIMEOUT, 3, L"Timeout", SbasTimeouts),
};

constexpr uint8_t PrnIsChosen = 0x08, TimeoutIsChosen = 0x01; // flags of a command 170
constexpr uint32_t PrnOffset = 1, FlagsOffset = 3;

// The satellite's entry becomes its number, and a flag says that there is one.
void EncodeSbas(uint8_t* payload)
{
    if (!payload[PrnOffset]) return;
    payload[PrnOffset] = static_cast<uint8_t>(payload[PrnOffset] + SbasEntryToPrn);
    payload[FlagsOffset] |= PrnIsChosen;
}

// The satellite becomes its list entry, the flags become the one that chooses the time-out.
void DecodeSbas(uint8_t* payload)
{
    constexpr uint8_t FirstPrn = 120, Auto = 0, NoEntry = 0xFF;
    const uint8_t prn = payload[PrnOffset];
    if (!prn || !(payload[FlagsOffset] & PrnIsChosen))
        payload[PrnOffset] = Auto;
    else
        payload[PrnOffset] = prn < FirstPrn ? NoEntry : static_cast<uint8_t>(prn - SbasEntryToPrn);
    payload[FlagsOffset] &= TimeoutIsChosen;
}

constexpr CommandField AdvancedPowerManagementFields[] = {
    CheckField(CONTROL_APM_ENABLED, 1, 1, L"APM Enabled"),
    {Number, CONTROL_APM_CYCLES, 2, 1, 0, 255, L"Number of Fixes", L"Range 0-255"},
    {Number, CONTROL_APM_TIME_BETWEEN_FIXES, 3, 1, 10, 180, L"Time Between Fixes", L"Range 10-180"},
    ListField(CONTROL_APM_MAX_HORIZONTAL_ERROR, 5, L"Maximum Horizontal Error", ApmErrors),
    ListField(CONTROL_APM_MAX_VERTICAL_ERROR, 6, L"Maximum Vertical Error", ApmErrors),
    {Number, CONTROL_APM_MAX_RESPONSE_TIME, 7, 1, 0, 255, L"Maximum Response Time", L"Range 0-255"},
    ListField(CONTROL_APM_ACCURACY_PRIORITY, 8, L"Time Accuracy Priority", ApmAccuracyPriorities),
    {FivePercent, CONTROL_APM_DUTY_CYCLE, 9, 1, 5, 100, L"Power Duty Cycle", L"Range 5-100%"},
    ListField(CONTROL_APM_TIMING_PRIORITY, 10, L"Timing Priority", ApmTimingPriorities),
};

constexpr CommandField SetMessageRateFields[] = {
    {NumberList, CONTROL_RATE_SECONDS, 3, 1, 0, 30, L"Message Rate", L"Range 0-30 s", UpdateRates},
    {NumberList, CONTROL_RATE_MESSAGE_ID, 2, 1, 1, 255, L"Message ID", L"Range 1-255", MessageNames},
};

// ---- Layouts ------------------------------------------------------------------------------------------

// Not constant expressions: a faulty layout stops the compiler here.
void FieldIsMisplaced() {}
void PayloadIsTooLong() {}
void FieldsAreTooMany() {}

// A layout whose fields lie inside the payload, after the message id, without overlapping.
consteval CommandLayout Layout(uint8_t command, uint8_t length, DialogKind dialog,
                               std::span<const CommandField> fields,
                               SettingsPoll poll = SettingsPoll::Settings)
{
    uint32_t used = 1;
    for (const CommandField& field : fields) {
        const uint32_t bytes = ((1u << field.width) - 1) << field.offset;
        if (field.offset + field.width > length || (used & bytes)) FieldIsMisplaced();
        used |= bytes;
    }
    if (length > MaxCommandLength) PayloadIsTooLong();
    if (fields.size() > MaxCommandFields) FieldsAreTooMany();
    return {command, length, dialog, poll, fields};
}

consteval CommandLayout Layout(CommandLayout layout, void (*encode)(uint8_t*), void (*decode)(uint8_t*))
{
    layout.encode = encode;
    layout.decode = decode;
    return layout;
}

} // namespace

using Kind = DialogKind;

constexpr CommandLayout InitializeDataSourceLayout =
    Layout(128, 25, Kind::InitializeDataSource, InitializeDataSourceFields);
constexpr CommandLayout DgpsSourceLayout = Layout(133, 7, Kind::DgpsSource, DgpsSourceFields);
constexpr CommandLayout ModeControlLayout = Layout(136, 14, Kind::ModeControl, ModeControlFields);
constexpr CommandLayout DopMaskLayout = Layout(137, 5, Kind::DopMask, DopMaskFields);
constexpr CommandLayout DgpsModeLayout = Layout(138, 3, Kind::DgpsMode, DgpsModeFields);
constexpr CommandLayout ElevationMaskLayout = Layout(139, 5, Kind::ElevationMask, ElevationMaskFields);
constexpr CommandLayout PowerMaskLayout = Layout(140, 3, Kind::PowerMask, PowerMaskFields);
constexpr CommandLayout StaticNavigationLayout =
    Layout(143, 2, Kind::StaticNavigation, StaticNavigationFields);
constexpr CommandLayout TricklePowerLayout = Layout(151, 9, Kind::TricklePower, TricklePowerFields);
constexpr CommandLayout LowPowerLayout = Layout(167, 15, Kind::LowPower, LowPowerFields);
constexpr CommandLayout SbasLayout = Layout(Layout(170, 6, Kind::Sbas, SbasFields), EncodeSbas, DecodeSbas);
constexpr CommandLayout AdvancedPowerManagementLayout = Layout(
    53, 12, Kind::AdvancedPowerManagement, AdvancedPowerManagementFields, SettingsPoll::NavigationParameters);
constexpr CommandLayout SetMessageRateLayout =
    Layout(166, 8, Kind::SirfSetMessageRate, SetMessageRateFields, SettingsPoll::Nothing);

constexpr std::span<const wchar_t* const> DgpsSourceNames = DgpsSources;
constexpr std::span<const wchar_t* const> UpdateRateTexts = UpdateRates;

const CommandLayout* FindPolledCommand(uint8_t command)
{
    constexpr const CommandLayout* Polled[] = {
        &InitializeDataSourceLayout,
        &DgpsSourceLayout,
        &ModeControlLayout,
        &DopMaskLayout,
        &DgpsModeLayout,
        &ElevationMaskLayout,
        &PowerMaskLayout,
        &StaticNavigationLayout,
        &TricklePowerLayout,
        &LowPowerLayout,
        &SbasLayout,
    };
    for (const CommandLayout* layout : Polled)
        if (layout->command == command) return layout;
    return nullptr;
}
