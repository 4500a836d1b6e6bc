#include "sirf/text_page.h"

#include <cmath>

#include "text/copy.h"
#include "ui/fix_lines.h"
#include "ui/page_lines.h"

namespace
{

enum Line : uint32_t {
    LineSv = 1,
    LineCarrierToNoise,
    LineState,
    LineElevation,
    LineFix,
    LineHdop,
    LineHorizontalError,
    LineLatitude,
    LineLongitude,
    LineNorthing,
    LineEasting,
    LineVerticalError,
    LineAltitudeEllipsoid,
    LineAltitudeMsl,
    LineSpeed,
    LineCourse,
    LineMapDatum,
};

constexpr uint32_t ColumnWidth = 3;
constexpr uint32_t CellCapacity = 8; // three digits, four blanks, terminator

// A line of the channel table. Each column starts at its place and ends the line, so that a value too wide
// for its column is overwritten by the next one.
struct ChannelLine {
    wchar_t text[5 + ColumnWidth * MaxShownChannels + CellCapacity];
    uint32_t firstColumn;

    ChannelLine(const wchar_t* header, uint32_t first) : firstColumn(first)
    {
        CopyText(text, sizeof text / sizeof *text, header);
    }
    void Put(uint32_t channel, CheckedFormat<wchar_t, uint32_t> format, uint32_t value)
    {
        const FormatValue<wchar_t> number = value;
        FormatValues(text + firstColumn + ColumnWidth * channel, CellCapacity, format.text, &number);
    }
};

} // namespace

void ShowSirfChannels(const TrackedSatellite* satellites, uint32_t count)
{
    ChannelLine sv(L" Sv: ", 4), carrierToNoise(L" Cn: ", 4), state(L" St: ", 4);
    ChannelLine elevation(L" El: ", 5); // one to the right of the others, on purpose
    for (uint32_t i = 0; i < count; ++i) {
        const TrackedSatellite& satellite = satellites[i];
        sv.Put(i, L"%02u    ", satellite.svId);
        carrierToNoise.Put(i, L"%02u ", satellite.meanCarrierToNoiseDbHz);
        state.Put(i, L"%02X    ", satellite.state & 0xFFu);
        elevation.Put(i, L"%02u    ", satellite.elevationDegrees);
    }
    SetTextLine(LineSv, sv.text);
    SetTextLine(LineCarrierToNoise, carrierToNoise.text);
    SetTextLine(LineState, state.text);
    SetTextLine(LineElevation, elevation.text);
}

void ShowSirfFix(uint32_t fixType, uint32_t satellites, bool differential)
{
    const wchar_t* const tail =
        differential ? L", DGPS                                " : L"                                      ";
    constexpr const wchar_t* KalmanKinds[] = {L"", L"Degraded", L"Degraded", L"2D", L"3D"};
    switch (fixType) {
    case 0: FormatTextLine(LineFix, L" Fix: No Fix%s", tail); return;
    case 5:
    case 6:
        FormatTextLine(LineFix, L" Fix: %u-D Least-Squares, %u SVs%s", fixType - 3, satellites, tail);
        return;
    case 7: FormatTextLine(LineFix, L" Fix: Dead Reckoning%s", tail); return;
    default:
        FormatTextLine(LineFix, L" Fix: %s Kalman Filter, %u SVs%s", KalmanKinds[fixType], satellites, tail);
        return;
    }
}

void ShowSirfHdop(double hdop)
{
    ShowHdopLine(LineHdop, hdop);
}

void ShowSirfPosition(double latitudeDegrees, double longitudeDegrees)
{
    ShowLatitudeLine(LineLatitude, std::fabs(latitudeDegrees), latitudeDegrees < 0 ? L'S' : L'N');
    ShowLongitudeLine(LineLongitude, std::fabs(longitudeDegrees), longitudeDegrees < 0 ? L'W' : L'E');
}

void ShowSirfGridPosition(double northingMetres, double eastingMetres)
{
    ShowNorthingLine(LineNorthing, northingMetres);
    ShowEastingLine(LineEasting, eastingMetres);
}

void ShowSirfErrors(double horizontalMetres, double verticalMetres)
{
    FormatTextLine(LineHorizontalError, L" EstimatedHorizontalPrecisionError: %04.02f m          ",
                   horizontalMetres);
    FormatTextLine(LineVerticalError, L" EstimatedVerticalPrecisionError: %04.02f m          ",
                   verticalMetres);
}

void ShowSirfAltitudeEllipsoid(double metres)
{
    FormatTextLine(LineAltitudeEllipsoid, L" Altitude Ellipsoid: %04.02f m      ", metres);
}

void ShowSirfAltitudeMsl(double metres)
{
    ShowAltitudeMslLine(LineAltitudeMsl, metres);
}

void ShowSirfSpeed(double metresPerSecond)
{
    ShowSpeedLine(LineSpeed, metresPerSecond);
}

void ShowSirfCourse(double degrees)
{
    ShowCourseLine(LineCourse, degrees);
}

void ShowSirfMapDatum(uint8_t datum)
{
    switch (datum) {
    case 21: SetTextLine(LineMapDatum, L" Map Datum: WGS-84"); return;
    case 178: SetTextLine(LineMapDatum, L" Map Datum: Tokyo Mean"); return;
    case 179: SetTextLine(LineMapDatum, L" Map Datum: Tokyo Japan"); return;
    case 180: SetTextLine(LineMapDatum, L" Map Datum: Tokyo Korea"); return;
    case 181: SetTextLine(LineMapDatum, L" Map Datum: Tokyo Okinawa"); return;
    default: FormatTextLine(LineMapDatum, L" Map Datum: %u", datum); return;
    }
}
