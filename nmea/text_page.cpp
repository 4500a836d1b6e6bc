#include "nmea/text_page.h"

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

constexpr uint32_t FirstColumn = 4; // of the satellite table

uint32_t WritePrns(const LineSource& source, wchar_t (&text)[TextLineCapacity])
{
    return WriteCells(source, text, FirstColumn, L"%02u ", L"%03u");
}

uint32_t WriteCarrierToNoise(const LineSource& source, wchar_t (&text)[TextLineCapacity])
{
    return WriteCells(source, text, FirstColumn, L"%02u ", L"%02u ");
}

uint32_t WriteElevations(const LineSource& source, wchar_t (&text)[TextLineCapacity])
{
    return WriteCells(source, text, FirstColumn, L" %02u", L" %02u");
}

} // namespace

void ShowSatellites(const Satellite (&satellites)[SatelliteCount])
{
    static_assert(SatelliteCount == LineSource::MaxCells);
    LineSource prn(WritePrns, L" Sv:"), carrierToNoise(WriteCarrierToNoise, L" Cn:");
    LineSource elevation(WriteElevations, L" El:");
    prn.cells.count = carrierToNoise.cells.count = elevation.cells.count = SatelliteCount;
    for (uint32_t i = 0; i < SatelliteCount; ++i) {
        prn.cells.values[i] = satellites[i].prn;
        carrierToNoise.cells.values[i] = satellites[i].carrierToNoiseDbHz;
        elevation.cells.values[i] = satellites[i].elevationDegrees;
    }
    StoreLine(LinePrn, prn);
    StoreLine(LineCarrierToNoise, carrierToNoise);
    StoreLine(LineElevation, elevation);
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
