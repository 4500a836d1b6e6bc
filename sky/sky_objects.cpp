// SPDX-License-Identifier: MIT
#include "sky/sky_objects.h"

#include <cmath>

#include "resources/resource_ids.h"
#include "sky/sun_and_moon.h"
#include "sky/vectors_and_time.h"
#include "text/format.h"
#include "ui/active_dialog.h"

SkyObject SkyObjects[SkyObjectCount] = {
    {100, 0},  {101, 0},   {120, -15.5}, {122, -142}, {124, 21.5}, {126, 25},     {127, 64},
    {128, 55}, {129, 140}, {134, 178},   {135, -133}, {137, 145},  {138, -107.3},
};

namespace
{

constexpr uint32_t LineCapacity = 256;

struct SatelliteLines {
    wchar_t numbers[LineCapacity], azimuths[LineCapacity], elevations[LineCapacity];
};

void SetElevation(SkyObject& object, double degrees)
{
    object.elevation = degrees;
    object.plottedElevation.store(static_cast<float>(degrees));
}

void SetAzimuth(SkyObject& object, double degrees)
{
    object.azimuth = degrees;
    object.plottedAzimuth.store(static_cast<float>(degrees));
}

void PlaceBody(SkyObject& body, const EquatorialPlace& place, double localSiderealTime, double latitude)
{
    constexpr double ToNearest = 0.5;
    const HorizontalPlace seen =
        EquatorialToHorizontal(place.declination, localSiderealTime - place.rightAscension, latitude);
    SetAzimuth(body, Modulo(seen.azimuthFromSouth / RadiansPerDegree + 180, 360) + ToNearest);
    SetElevation(body, seen.elevation / RadiansPerDegree + ToNearest);
}

void PlaceSatellite(SkyObject& satellite, double latitude, double longitude, SatelliteLines& lines)
{
    constexpr double EarthToOrbitRadius = 0.1512;
    const double difference = satellite.longitude * RadiansPerDegree - longitude;
    const double c = std::cos(latitude) * std::cos(difference); // of the angle between receiver and satellite
    SetElevation(satellite, std::atan2(c - EarthToOrbitRadius, std::sqrt(1 - c * c)) / RadiansPerDegree);
    if (!(satellite.elevation >= 0)) return;
    SetAzimuth(satellite, 180 - std::atan2(std::tan(difference), std::sin(latitude)) / RadiansPerDegree);
    AppendFormat(lines.numbers, L"%d ", satellite.id);
    AppendFormat(lines.azimuths, L"%03.0f ", satellite.azimuth);
    AppendFormat(lines.elevations, L"% 4.0f ", satellite.elevation);
}

} // namespace

void UpdateSkyObjects(const SYSTEMTIME& time, double latitude, double longitude)
{
    const double phi = latitude * RadiansPerDegree, lambda = longitude * RadiansPerDegree;
    const double mjd =
        ModifiedJulianDate(time.wYear, static_cast<uint8_t>(time.wMonth), static_cast<uint8_t>(time.wDay),
                           static_cast<uint8_t>(time.wHour), static_cast<uint8_t>(time.wMinute),
                           static_cast<uint8_t>(time.wSecond));
    const double centuries = JulianCenturies(mjd), siderealTime = SiderealTime(mjd) + lambda;
    PlaceBody(SkyObjects[SunRow], SunPosition(centuries), siderealTime, phi);
    PlaceBody(SkyObjects[MoonRow], MoonPosition(centuries), siderealTime, phi);

    SatelliteLines lines = {};
    for (SkyObject& object : SkyObjects)
        if (object.longitude != 0) PlaceSatellite(object, phi, lambda, lines);

    HWND dialog = ActiveDialogWindow.load();
    if (!dialog) return; // a null window would mean every window of the system
    SetDlgItemTextW(dialog, CONTROL_SBAS_VISIBLE_SVS, lines.numbers);
    SetDlgItemTextW(dialog, CONTROL_SBAS_VISIBLE_AZIMUTHS, lines.azimuths);
    SetDlgItemTextW(dialog, CONTROL_SBAS_VISIBLE_ELEVATIONS, lines.elevations);
    InvalidateRect(dialog, nullptr, TRUE);
}

void ResetSkyObjects()
{
    for (SkyObject& object : SkyObjects) {
        SetElevation(object, -90);
        SetAzimuth(object, 0);
    }
}
