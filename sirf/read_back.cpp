// SPDX-License-Identifier: MIT
#include "sirf/read_back.h"

#include <bit>
#include <cwchar>
#include <span>

#include "resources/resource_ids.h"
#include "sirf/command_layouts.h"
#include "sirf/message_fields.h"
#include "sirf/setting_values.h"
#include "text/copy.h"
#include "text/format.h"
#include "ui/active_dialog.h"
#include "ui/dialog_fields.h"
#include "ui/fix_lines.h"

uint8_t OkToSendRecord[OkToSendLength];
uint8_t NavigationParameterRecord[NavigationParametersLength];
uint8_t DgpsStatusRecord[DgpsStatusLength];
uint8_t CorrectionRecord[CorrectionLength];
uint8_t ParameterRecord[CommandParametersLength];

namespace
{

// Time of the receiver's last announcement that its radio goes off, and on; ms.
struct PowerState {
    uint32_t tick;
    bool known;
};
PowerState RadioOff, RadioOn;

// The lines in which differential data is collected. Room is left for the unit at the end of a line.
constexpr uint32_t CorrectionLineCapacity = 256, UnitCharacters = 2;
wchar_t CorrectionSvs[CorrectionLineCapacity], Corrections[CorrectionLineCapacity],
    CorrectionAges[CorrectionLineCapacity];
uint32_t CorrectionCount = 0; // since they were last ended

// ---- Controls -----------------------------------------------------------------------------------------

void ShowNumber(HWND dialog, int control, uint32_t value)
{
    SetDlgItemInt(dialog, control, value, FALSE);
}

void ShowCheck(HWND dialog, int control, bool checked)
{
    SendDlgItemMessageW(dialog, control, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

void ShowValues(HWND dialog, const CommandLayout& layout, const SettingValues& values)
{
    for (size_t i = 0; i < layout.fields.size(); ++i) ShowField(dialog, layout.fields[i], values[i]);
}

// ---- Settings that are converted before they are shown ------------------------------------------------

// Initialize Data Source: the reset configuration is one option button and three boxes.
void ShowResetConfiguration(HWND dialog, uint8_t map)
{
    const int chosen = (map & 0x03) == 0x03   ? CONTROL_INIT_WARM_START_INIT
                       : map & 0x02           ? CONTROL_INIT_WARM_START_NO_INIT
                       : map & 0x04           ? CONTROL_INIT_COLD_START
                       : (map & 0x88) == 0x88 ? CONTROL_INIT_SYSTEM_RESET
                       : map & 0x08           ? CONTROL_INIT_FACTORY_RESET
                       : map & 0x40           ? CONTROL_INIT_HOT_START
                                              : CONTROL_INIT_SNAP_START;
    for (int option = CONTROL_INIT_SNAP_START; option <= CONTROL_INIT_SYSTEM_RESET; ++option)
        ShowCheck(dialog, option, option == chosen);
    ShowCheck(dialog, CONTROL_INIT_NAVLIB, map & 0x10);
    ShowCheck(dialog, CONTROL_INIT_DEBUG, map & 0x20);
    ShowCheck(dialog, CONTROL_INIT_CLEAR, map & 0x80);
}

// DGPS Source: the beacon's frequency and bit rate are valid only for the source "Internal Beacon".
void ClearUnusedBeacon(SettingValues& values)
{
    if (values[0] != InternalBeacon) values[1] = values[2] = 0;
}

// ---- DGPS ---------------------------------------------------------------------------------------------

void ShowDgpsSource(HWND dialog, int control, uint8_t source)
{
    wchar_t text[48];
    if (source < DgpsSourceNames.size())
        Format(text, L"DGPS Source: %s", DgpsSourceNames[source]);
    else
        Format(text, L"DGPS Source: %u", source);
    SetDlgItemTextW(dialog, control, text);
}

// Appends a piece while there is room for it.
template <typename Value>
void AppendPiece(wchar_t (&line)[CorrectionLineCapacity], CheckedFormat<wchar_t, Value> format, Value value)
{
    wchar_t piece[64];
    const FormatValue<wchar_t> number = value;
    const uint32_t added = FormatValues(piece, 64, format.text, &number);
    const uint32_t used = static_cast<uint32_t>(std::wcslen(line));
    if (used + added + UnitCharacters < CorrectionLineCapacity)
        CopyText(line + used, CorrectionLineCapacity - used, piece);
}

float FiniteOrZero(uint32_t bits)
{
    constexpr uint32_t Exponent = 0x7F800000;
    return (bits & Exponent) == Exponent ? 0.0f : std::bit_cast<float>(bits);
}

} // namespace

void ShowSoftwareVersion(const uint8_t* payload, uint32_t length)
{
    constexpr uint32_t MaxCharacters = 80;
    HWND dialog = OpenDialogOfKind(DialogKind::PollSoftwareVersion);
    if (!dialog) return;
    wchar_t text[MaxCharacters + 1];
    uint32_t count = 0;
    while (count < MaxCharacters && count + 1 < length && payload[count + 1]) {
        text[count] = payload[count + 1];
        ++count;
    }
    text[count] = 0;
    SetDlgItemTextW(dialog, CONTROL_SOFTWARE_VERSION, text);
}

void ShowOkToSend(const uint8_t* payload)
{
    const bool wasOn = OkToSendRecord[1], isOn = payload[1];
    KeepRecord(OkToSendRecord, payload, OkToSendLength);
    const uint32_t now = GetTickCount();
    PowerState& current = isOn ? RadioOn : RadioOff;
    const PowerState& previous = isOn ? RadioOff : RadioOn;
    current = {now, true};
    if (isOn == wasOn || !previous.known) return;
    const int control = isOn ? CONTROL_SIRF_OFF_TIME : CONTROL_SIRF_ON_TIME;
    constexpr DialogKind Showing[] = {DialogKind::AdvancedPowerManagement, DialogKind::TricklePower};
    for (const DialogKind kind : Showing)
        if (HWND dialog = OpenDialogOfKind(kind)) ShowNumber(dialog, control, now - previous.tick);
}

void ShowNavigationParameters(const uint8_t* payload)
{
    constexpr MessageField<uint32_t> MaxSearchTimeMs{49}, MaxOffTimeMs{53};
    KeepRecord(NavigationParameterRecord, payload, NavigationParametersLength);
    if (HWND dialog = OpenDialogOfKind(DialogKind::LowPower)) {
        ShowNumber(dialog, CONTROL_LOW_POWER_MAX_OFF_TIME,
                   ReadField(NavigationParameterRecord, MaxOffTimeMs));
        ShowNumber(dialog, CONTROL_LOW_POWER_MAX_SEARCH_TIME,
                   ReadField(NavigationParameterRecord, MaxSearchTimeMs));
    }
    SettingValues values;
    const CommandLayout& layout = AdvancedPowerManagementLayout;
    HWND dialog = OpenDialogOfKind(layout.kind);
    if (dialog &&
        ReadAnswer(layout, NavigationParameterRecord, NavigationParametersLength, Signs::Dropped, values))
        ShowValues(dialog, layout, values);
}

void ShowDgpsStatus(const uint8_t* payload)
{
    constexpr uint32_t Satellites = 12, Source = 1, Ages = 2, FirstSatellite = 16, SatelliteBytes = 3;
    constexpr uint8_t NoSource = 0;
    KeepRecord(DgpsStatusRecord, payload, DgpsStatusLength);
    HWND dialog = OpenDialogOfKind(DialogKind::DgpsSource);
    if (!dialog) return;
    const uint8_t* const record = DgpsStatusRecord;
    const uint8_t source = record[Source];
    ShowDgpsSource(dialog, CONTROL_DGPS_STATUS_SOURCE, source);
    if (source == NoSource) return;

    wchar_t svs[64] = L"Sv: ", corrections[128] = L"Cor:", ages[64] = L"";
    const bool hasAges = source != InternalBeacon;
    if (hasAges) AppendFormat(ages, L"Age:");
    for (uint32_t i = 0; i < Satellites; ++i) {
        const uint8_t* const satellite = record + FirstSatellite + SatelliteBytes * i;
        const int32_t centimetres = ReadField(satellite, MessageField<int16_t>{1});
        AppendFormat(svs, L" %u", satellite[0]);
        AppendFormat(corrections, L" %d", (centimetres + 50) / 100);
        if (hasAges) AppendFormat(ages, L" %u", record[Ages + i]);
    }
    AppendFormat(corrections, L" m");
    if (hasAges) AppendFormat(ages, L" s");
    SetDlgItemTextW(dialog, CONTROL_DGPS_STATUS_SVS, svs);
    SetDlgItemTextW(dialog, CONTROL_DGPS_STATUS_CORRECTIONS, corrections);
    SetDlgItemTextW(dialog, CONTROL_DGPS_STATUS_AGES, ages);
}

void ShowCorrection(const uint8_t* payload)
{
    constexpr MessageField<uint16_t> SvId{1};
    constexpr MessageField<uint32_t> CorrectionMetres{6}, AgeSeconds{14}; // 32-bit floats
    constexpr uint32_t Source = 5;
    KeepRecord(CorrectionRecord, payload, CorrectionLength);
    HWND dialog = OpenDialogOfKind(DialogKind::DgpsSource);
    if (!dialog) return;
    const uint8_t* const record = CorrectionRecord;
    if (CorrectionCount == 0) {
        ShowDgpsSource(dialog, CONTROL_DGPS_DATA_SOURCE, record[Source]);
        CopyText(CorrectionSvs, CorrectionLineCapacity, L"Sv: ");
        CopyText(Corrections, CorrectionLineCapacity, L"Cor:");
        CopyText(CorrectionAges, CorrectionLineCapacity, L"Age:");
    }
    AppendPiece<uint16_t>(CorrectionSvs, L" %u", ReadField(record, SvId));
    AppendPiece<float>(Corrections, L" %0.0f", FiniteOrZero(ReadField(record, CorrectionMetres)));
    AppendPiece<float>(CorrectionAges, L" %0.0f", FiniteOrZero(ReadField(record, AgeSeconds)));
    SetDlgItemTextW(dialog, CONTROL_DGPS_DATA_SVS, CorrectionSvs);
    SetDlgItemTextW(dialog, CONTROL_DGPS_DATA_CORRECTIONS, Corrections);
    SetDlgItemTextW(dialog, CONTROL_DGPS_DATA_AGES, CorrectionAges);
    ++CorrectionCount;
}

void EndCorrections()
{
    if (!CorrectionCount) return;
    CorrectionCount = 0;
    HWND dialog = OpenDialogOfKind(DialogKind::DgpsSource);
    if (!dialog) return;
    AppendFormat(Corrections, L" m");
    AppendFormat(CorrectionAges, L" s");
    SetDlgItemTextW(dialog, CONTROL_DGPS_DATA_CORRECTIONS, Corrections);
    SetDlgItemTextW(dialog, CONTROL_DGPS_DATA_AGES, CorrectionAges);
}

void ShowCommandParameters(const uint8_t* payload, uint32_t length)
{
    KeepRecord(ParameterRecord, payload, length);
    const CommandLayout* const layout = FindPolledCommand(ParameterRecord[1]);
    SettingValues values;
    if (!layout || !ReadAnswer(*layout, payload, length, Signs::Dropped, values)) return;
    HWND dialog = OpenDialogOfKind(layout->kind);
    if (!dialog) return;
    if (layout == &InitializeDataSourceLayout)
        ShowResetConfiguration(dialog, ParameterRecord[1 + ResetConfigurationOffset]);
    if (layout == &DgpsSourceLayout) ClearUnusedBeacon(values);
    ShowValues(dialog, *layout, values);
}

void ShowSbasSatellites(const TrackedSatellite* satellites, uint32_t count)
{
    constexpr uint8_t LastGpsSatellite = 32;
    HWND dialog = OpenDialogOfKind(DialogKind::Sbas);
    if (!dialog) return;
    for (const TrackedSatellite& satellite : std::span(satellites, count)) {
        if (satellite.svId <= LastGpsSatellite) continue;
        wchar_t state[8];
        Format(state, L"%02X", satellite.state);
        ShowNumber(dialog, CONTROL_SBAS_SV, satellite.svId);
        ShowNumber(dialog, CONTROL_SBAS_CARRIER_TO_NOISE, satellite.meanCarrierToNoiseDbHz);
        SetDlgItemTextW(dialog, CONTROL_SBAS_STATE, state);
        ShowNumber(dialog, CONTROL_SBAS_AZIMUTH, satellite.azimuthDegrees);
        ShowNumber(dialog, CONTROL_SBAS_ELEVATION, satellite.elevationDegrees);
    }
}

void ShowReceiverTime(uint32_t timeOfWeekSeconds)
{
    const DialogKind kind = ActiveDialogKind.load();
    switch (kind) {
    case DialogKind::SetSerialPort:
    case DialogKind::AdvancedPowerManagement:
    case DialogKind::SwitchToNmea:
    case DialogKind::TricklePower:
        if (HWND dialog = OpenDialogOfKind(kind)) ShowTimeOfDay(dialog, CONTROL_SIRF_TIME);
        return;
    case DialogKind::InitializeDataSource:
        if (HWND dialog = OpenDialogOfKind(kind))
            ShowNumber(dialog, CONTROL_INIT_TIME_OF_WEEK, timeOfWeekSeconds);
        return;
    default: return;
    }
}

void ResetReadBack()
{
    std::memset(OkToSendRecord, 0, sizeof OkToSendRecord);
    std::memset(NavigationParameterRecord, 0, sizeof NavigationParameterRecord);
    std::memset(DgpsStatusRecord, 0, sizeof DgpsStatusRecord);
    std::memset(CorrectionRecord, 0, sizeof CorrectionRecord);
    std::memset(ParameterRecord, 0, sizeof ParameterRecord);
    RadioOff = RadioOn = {};
    CorrectionCount = 0;
}
