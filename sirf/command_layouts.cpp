// SPDX-License-Identifier: MIT
#include "sirf/command_layouts.h"

#include "resources/resource_ids.h"
#include "sirf/message_names.h"
#include "sirf/start_fields.h"

namespace
{

using enum FieldKind;

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
constexpr const wchar_t* ApmTimingPriorities[] = {L"No Preference", L"Time Between Fixes",
                                                  L"Power Duty Cycle"};

// ---- Fields -------------------------------------------------------------------------------------------

bool IsBeaconFrequency(int32_t hertz)
{
    return hertz == 0 || hertz >= 283500;
}

bool IsBeaconBitRate(int32_t bitsPerSecond)
{
    return bitsPerSecond == 0 || bitsPerSecond == 25 || bitsPerSecond == 50 || bitsPerSecond == 100 ||
           bitsPerSecond == 200;
}

constexpr auto InitializeDataSourceFields = StartFields(CONTROL_INIT_ECEF_X);

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
    // On purpose: dialogs compare the typed number of degrees with the limits in tenths.
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

// Converts the satellite's list entry to its number, and sets a flag that a satellite is chosen.
void EncodeSbas(uint8_t* payload)
{
    if (!payload[PrnOffset]) return;
    payload[PrnOffset] = static_cast<uint8_t>(payload[PrnOffset] + SbasEntryToPrn);
    payload[FlagsOffset] |= PrnIsChosen;
}

// Converts the satellite's number to its list entry, and the flags to the choice of the time-out.
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
    {Number, CONTROL_RATE_SECONDS, 3, 1, 0, 30, L"Message Rate", L"Range 0-30 s", UpdateRateTexts},
    {NamedNumber, CONTROL_RATE_MESSAGE_ID, 2, 1, 1, 255, L"Message ID", L"Range 1-255", MessageNames},
};

// ---- Layouts ------------------------------------------------------------------------------------------

// Not constant expressions: a faulty layout stops the compiler here.
void FieldIsMisplaced() {}
void PayloadIsTooLong() {}
void FieldsAreTooMany() {}

// Checks that the fields of a layout are inside the payload, after the message id, without overlapping.
consteval CommandLayout Checked(CommandLayout layout)
{
    uint32_t used = 1;
    for (const CommandField& field : layout.fields) {
        const uint32_t bytes = ((1u << field.width) - 1) << field.offset;
        if (field.offset + field.width > layout.length || (used & bytes)) FieldIsMisplaced();
        used |= bytes;
    }
    if (layout.length > MaxCommandLength) PayloadIsTooLong();
    if (layout.fields.size() > MaxCommandFields) FieldsAreTooMany();
    return layout;
}

} // namespace

using Kind = DialogKind;

constexpr CommandLayout InitializeDataSourceLayout =
    Checked({128, 25, InitializeDataSourceFields, Kind::InitializeDataSource,
             DIALOG_SIRF_INITIALIZE_DATA_SOURCE, CONTROL_INIT_SET, CONTROL_INIT_GET});
constexpr CommandLayout DgpsSourceLayout =
    Checked({133, 7, DgpsSourceFields, Kind::DgpsSource, DIALOG_SIRF_DGPS_SOURCE, CONTROL_DGPS_SOURCE_SET,
             CONTROL_DGPS_SOURCE_GET});
constexpr CommandLayout ModeControlLayout =
    Checked({136, 14, ModeControlFields, Kind::ModeControl, DIALOG_SIRF_MODE_CONTROL, CONTROL_MODE_SET,
             CONTROL_MODE_GET});
constexpr CommandLayout DopMaskLayout =
    Checked({137, 5, DopMaskFields, Kind::DopMask, DIALOG_SIRF_DOP_MASK, CONTROL_DOP_SET, CONTROL_DOP_GET});
constexpr CommandLayout DgpsModeLayout =
    Checked({138, 3, DgpsModeFields, Kind::DgpsMode, DIALOG_SIRF_DGPS_MODE, CONTROL_DGPS_MODE_SET,
             CONTROL_DGPS_MODE_GET});
constexpr CommandLayout ElevationMaskLayout =
    Checked({139, 5, ElevationMaskFields, Kind::ElevationMask, DIALOG_SIRF_ELEVATION_MASK,
             CONTROL_ELEVATION_SET, CONTROL_ELEVATION_GET});
constexpr CommandLayout PowerMaskLayout = Checked(
    {140, 3, PowerMaskFields, Kind::PowerMask, DIALOG_SIRF_POWER_MASK, CONTROL_POWER_SET, CONTROL_POWER_GET});
constexpr CommandLayout StaticNavigationLayout =
    Checked({143, 2, StaticNavigationFields, Kind::StaticNavigation, DIALOG_SIRF_STATIC_NAVIGATION,
             CONTROL_STATIC_NAVIGATION_SET, CONTROL_STATIC_NAVIGATION_GET});
constexpr CommandLayout TricklePowerLayout =
    Checked({151, 9, TricklePowerFields, Kind::TricklePower, DIALOG_SIRF_TRICKLE_POWER, CONTROL_TRICKLE_SET,
             CONTROL_TRICKLE_GET});
constexpr CommandLayout LowPowerLayout =
    Checked({167, 15, LowPowerFields, Kind::LowPower, DIALOG_SIRF_LOW_POWER, CONTROL_LOW_POWER_SET,
             CONTROL_LOW_POWER_GET});
constexpr CommandLayout SbasLayout =
    Checked({170, 6, SbasFields, Kind::Sbas, DIALOG_SIRF_SBAS, CONTROL_SBAS_SET, CONTROL_SBAS_GET,
             SettingsPoll::Settings, EncodeSbas, DecodeSbas});
constexpr CommandLayout AdvancedPowerManagementLayout =
    Checked({53, 12, AdvancedPowerManagementFields, Kind::AdvancedPowerManagement,
             DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT, CONTROL_APM_SET, CONTROL_APM_GET,
             SettingsPoll::NavigationParameters});
constexpr CommandLayout SetMessageRateLayout =
    Checked({166, 8, SetMessageRateFields, Kind::SirfSetMessageRate, DIALOG_SIRF_SET_MESSAGE_RATE,
             CONTROL_RATE_SET, 0, SettingsPoll::Nothing});

constexpr std::span<const wchar_t* const> DgpsSourceNames = DgpsSources;

namespace
{

constexpr const CommandLayout* Layouts[] = {
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
    &AdvancedPowerManagementLayout,
    &SetMessageRateLayout,
};

} // namespace

const CommandLayout* FindDialogLayout(uint16_t number)
{
    for (const CommandLayout* layout : Layouts)
        if (layout->number == number) return layout;
    return nullptr;
}

const CommandLayout* FindPolledCommand(uint8_t command)
{
    for (const CommandLayout* layout : Layouts)
        if (layout->command == command && layout->poll == SettingsPoll::Settings) return layout;
    return nullptr;
}
