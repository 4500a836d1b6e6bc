// SPDX-License-Identifier: MIT
#include "sirf/page_lines.h"

#include <cmath>

#include "ui/fix_lines.h"
#include "ui/page_lines.h"

namespace
{

constexpr uint32_t FirstColumn = 4; // of the table of channels

uint32_t WriteDecimal(const LineSource& source, wchar_t (&text)[TextLineCapacity])
{
    return WriteCells(source, text, FirstColumn, L"%02u    ", L"%02u    ");
}

uint32_t WriteCarrierToNoise(const LineSource& source, wchar_t (&text)[TextLineCapacity])
{
    return WriteCells(source, text, FirstColumn, L"%02u ", L"%02u ");
}

uint32_t WriteHexadecimal(const LineSource& source, wchar_t (&text)[TextLineCapacity])
{
    return WriteCells(source, text, FirstColumn, L"%02X    ", L"%02X    ");
}

uint32_t WriteElevations(const LineSource& source, wchar_t (&text)[TextLineCapacity])
{
    return WriteCells(source, text, FirstColumn + 1, L"%02u    ",
                      L"%02u    "); // shifted one column to the right, on purpose
}

} // namespace

void ShowSirfChannels(const TrackedSatellite* satellites, uint32_t count)
{
    static_assert(MaxShownChannels == LineSource::MaxCells);
    LineSource sv(WriteDecimal, L" Sv: "), carrierToNoise(WriteCarrierToNoise, L" Cn: ");
    LineSource state(WriteHexadecimal, L" St: "), elevation(WriteElevations, L" El: ");
    sv.cells.count = carrierToNoise.cells.count = state.cells.count = elevation.cells.count = count;
    for (uint32_t i = 0; i < count; ++i) {
        sv.cells.values[i] = satellites[i].svId;
        carrierToNoise.cells.values[i] = satellites[i].meanCarrierToNoiseDbHz;
        state.cells.values[i] = static_cast<uint8_t>(satellites[i].state);
        elevation.cells.values[i] = satellites[i].elevationDegrees;
    }
    StoreLine(SirfLineSv, sv);
    StoreLine(SirfLineCarrierToNoise, carrierToNoise);
    StoreLine(SirfLineState, state);
    StoreLine(SirfLineElevation, elevation);
}

void ShowSirfFix(uint32_t fixType, uint32_t satellites, bool differential)
{
    const wchar_t* const tail =
        differential ? L", DGPS                                " : L"                                      ";
    constexpr const wchar_t* KalmanKinds[] = {L"", L"Degraded", L"Degraded", L"2D", L"3D"};
    switch (fixType) {
    case 0: FormatTextLine(SirfLineFix, L" Fix: No Fix%s", tail); return;
    case 5:
    case 6:
        FormatTextLine(SirfLineFix, L" Fix: %u-D Least-Squares, %u SVs%s", fixType - 3, satellites, tail);
        return;
    case 7: FormatTextLine(SirfLineFix, L" Fix: Dead Reckoning%s", tail); return;
    default:
        FormatTextLine(SirfLineFix, L" Fix: %s Kalman Filter, %u SVs%s", KalmanKinds[fixType], satellites,
                       tail);
        return;
    }
}

void ShowSirfPosition(double latitudeDegrees, double longitudeDegrees)
{
    ShowLatitudeLine(SirfLineLatitude, std::fabs(latitudeDegrees), latitudeDegrees < 0 ? L'S' : L'N');
    ShowLongitudeLine(SirfLineLongitude, std::fabs(longitudeDegrees), longitudeDegrees < 0 ? L'W' : L'E');
}

void ShowSirfErrors(double horizontalMetres, double verticalMetres)
{
    FormatTextLine(SirfLineHorizontalError, L" EstimatedHorizontalPrecisionError: %04.02f m          ",
                   horizontalMetres);
    FormatTextLine(SirfLineVerticalError, L" EstimatedVerticalPrecisionError: %04.02f m          ",
                   verticalMetres);
}

void ShowSirfAltitudeEllipsoid(double metres)
{
    FormatTextLine(SirfLineAltitudeEllipsoid, L" Altitude Ellipsoid: %04.02f m      ", metres);
}

void ShowSirfMapDatum(uint8_t datum)
{
    switch (datum) {
    case 21: SetTextLine(SirfLineMapDatum, L" Map Datum: WGS-84"); return;
    case 178: SetTextLine(SirfLineMapDatum, L" Map Datum: Tokyo Mean"); return;
    case 179: SetTextLine(SirfLineMapDatum, L" Map Datum: Tokyo Japan"); return;
    case 180: SetTextLine(SirfLineMapDatum, L" Map Datum: Tokyo Korea"); return;
    case 181: SetTextLine(SirfLineMapDatum, L" Map Datum: Tokyo Okinawa"); return;
    default: FormatTextLine(SirfLineMapDatum, L" Map Datum: %u", datum); return;
    }
}
