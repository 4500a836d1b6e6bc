#include "nmea/text_page.h"

#include "text/copy.h"
#include "ui/fix_lines.h"
#include "ui/page_lines.h"

namespace
{

enum Line : uint32_t {
    LinePrn = 1,
    LineCarrierToNoise,
    LineElevation,
    LineFix,
    LineHdop,
    LineLatitude,
    LineLongitude,
    LineNorthing,
    LineEasting,
    LineVdop,
    LineAltitudeMsl,
    LineGeoidSeparation,
    LineSpeed,
    LineCourse,
};

constexpr uint32_t FirstColumn = 4, ColumnWidth = 3;
constexpr uint32_t WidestColumn = 5; // four characters and the terminator
constexpr uint32_t RowCapacity = FirstColumn + ColumnWidth * (SatelliteCount - 1) + WidestColumn;

// A row of the satellite table: label, then a column a slot. Each column starts at its place and ends the
// line, so that a value too wide for its column is overwritten by the next one.
struct SatelliteRow {
    wchar_t text[RowCapacity];
    explicit SatelliteRow(const wchar_t* label) { CopyText(text, RowCapacity, label); }
    wchar_t* Column(uint32_t slot) { return text + FirstColumn + ColumnWidth * slot; }
};

void PutColumn(SatelliteRow& row, uint32_t slot, CheckedFormat<wchar_t, uint8_t> format, uint8_t value)
{
    const FormatValue<wchar_t> number = value;
    FormatValues(row.Column(slot), WidestColumn, format.text, &number);
}

} // namespace

void ShowSatellites(const Satellite (&satellites)[SatelliteCount])
{
    SatelliteRow prn(L" Sv:"), carrierToNoise(L" Cn:"), elevation(L" El:");
    for (uint32_t i = 0; i < SatelliteCount; ++i) {
        const Satellite& satellite = satellites[i];
        if (satellite.prn <= 99)
            PutColumn(prn, i, L"%02u ", satellite.prn);
        else
            PutColumn(prn, i, L"%03u", satellite.prn);
        PutColumn(carrierToNoise, i, L"%02u ", satellite.carrierToNoiseDbHz);
        PutColumn(elevation, i, L" %02u", satellite.elevationDegrees);
    }
    SetTextLine(LinePrn, prn.text);
    SetTextLine(LineCarrierToNoise, carrierToNoise.text);
    SetTextLine(LineElevation, elevation.text);
}

void ShowFix(int32_t quality, int32_t satellites, int32_t dgpsAgeSeconds)
{
    switch (quality) {
    case 0: FormatTextLine(LineFix, L" Fix: -                           "); return;
    case 1: FormatTextLine(LineFix, L" Fix: %d SVs                      ", satellites); return;
    case 2:
        FormatTextLine(LineFix, L" Fix: %d SVs DGPS Age %d s        ", satellites, dgpsAgeSeconds);
        return;
    case 6: FormatTextLine(LineFix, L" Fix: Dead Reckoning              "); return;
    default: FormatTextLine(LineFix, L"                                      "); return;
    }
}

void ShowHdop(float hdop)
{
    ShowHdopLine(LineHdop, hdop);
}

void ShowVdop(float vdop)
{
    FormatTextLine(LineVdop, L" VDOP: %03.01f  ", vdop);
}

void ShowLatitude(double degrees, wchar_t hemisphere)
{
    ShowLatitudeLine(LineLatitude, degrees, hemisphere);
}

void ShowLongitude(double degrees, wchar_t hemisphere)
{
    ShowLongitudeLine(LineLongitude, degrees, hemisphere);
}

void ShowNorthing(double metres)
{
    ShowNorthingLine(LineNorthing, metres);
}

void ShowEasting(double metres)
{
    ShowEastingLine(LineEasting, metres);
}

void ShowAltitudeMsl(float metres)
{
    ShowAltitudeMslLine(LineAltitudeMsl, metres);
}

void ShowGeoidSeparation(float metres)
{
    FormatTextLine(LineGeoidSeparation, L" Geoid Separation: %04.02f m      ", metres);
}

void ShowSpeed(float metresPerSecond)
{
    ShowSpeedLine(LineSpeed, metresPerSecond);
}

void ShowCourse(float degrees)
{
    ShowCourseLine(LineCourse, degrees);
}
