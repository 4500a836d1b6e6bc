// SPDX-License-Identifier: MIT
// The receiver's latest report, in full precision and common units, for programs that write it to files. The
// text page and the chart have their own values, which are rounded and kept in other ways.
#pragma once

#include <cstdint>

constexpr uint32_t MaxSatellitesInView = 12;

struct SatelliteInView {
    uint32_t Number; // as the receiver numbers it, never 0
    uint32_t ElevationDegrees, AzimuthDegrees, CarrierToNoiseDbHz;
};

enum class FixMode : uint8_t { Unknown, None, TwoD, ThreeD };

// Each number is a NaN while it is not known. Position, altitudes, HDOP and satellites belong to the latest
// sample of the chart; values that its message did not contain are not known. The other values are the latest
// ones that were reported.
struct FixReport {
    double LatitudeDegrees, LongitudeDegrees;          // north and east positive, longitude -180 to 180
    double AltitudeMslMetres, AltitudeEllipsoidMetres; // above mean sea level, above the ellipsoid
    double GeoidSeparationMetres;                      // of the geoid above the ellipsoid
    double SpeedMetresPerSecond, CourseDegrees;        // over ground
    double Hdop, Vdop;
    double HorizontalErrorMetres, VerticalErrorMetres; // estimated
    int32_t SatellitesInFix;                           // -1: not known
    FixMode Mode;
    bool HasTimeOfDay;         // FixTime is the UTC that the latest sample's message gave
    uint16_t Year, Month, Day; // of the calendar, UTC; Day 0: not known
    int32_t DatedSecondOfDay;  // of the message that contained the date
    SatelliteInView InView[MaxSatellitesInView];
    uint32_t InViewCount;
    uint32_t InViewReports; // lists received; wraps
};

// Written and read by the reader thread.
extern FixReport LatestFix;

// Begins the report of a sample's message: forgets the values that belong to the sample before.
void BeginFixReport(FixMode mode);

// Does nothing for a day that the calendar does not have.
void ReportDate(uint32_t year, uint32_t month, uint32_t day, uint32_t secondOfDay);

void ReportSatellite(
    const SatelliteInView& satellite); // after the list was begun; does nothing when the list is full
void BeginSatelliteReport();

// Sets everything to unknown, as at program start.
void ResetLatestFix();
