// SPDX-License-Identifier: MIT
#include "nmea/page_lines.h"

#include "ui/page_lines.h"

namespace
{

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
    StoreLine(NmeaLinePrn, prn);
    StoreLine(NmeaLineCarrierToNoise, carrierToNoise);
    StoreLine(NmeaLineElevation, elevation);
}

void ShowFix(int32_t quality, int32_t satellites, int32_t dgpsAgeSeconds)
{
    switch (quality) {
    case 0: FormatTextLine(NmeaLineFix, L" Fix: -                           "); return;
    case 1: FormatTextLine(NmeaLineFix, L" Fix: %d SVs                      ", satellites); return;
    case 2:
        FormatTextLine(NmeaLineFix, L" Fix: %d SVs DGPS Age %d s        ", satellites, dgpsAgeSeconds);
        return;
    case 6: FormatTextLine(NmeaLineFix, L" Fix: Dead Reckoning              "); return;
    default: FormatTextLine(NmeaLineFix, L"                                      "); return;
    }
}

void ShowVdop(float vdop)
{
    FormatTextLine(NmeaLineVdop, L" VDOP: %03.01f  ", vdop);
}

void ShowGeoidSeparation(float metres)
{
    FormatTextLine(NmeaLineGeoidSeparation, L" Geoid Separation: %04.02f m      ", metres);
}
