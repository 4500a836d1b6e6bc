// SPDX-License-Identifier: MIT
#include "sky.h"

#include <algorithm>
#include <cmath>

namespace receiver
{

namespace
{

constexpr double GpsOrbitRadiusM = 26559700.0, GpsInclinationDeg = 55.0;
constexpr double GpsMeanMotion = 1.4585e-4;    // rad/s: two turns in a sidereal day
constexpr double EarthRotation = 7.2921151e-5; // rad/s
constexpr double GeostationaryRadiusM = 42164170.0;
constexpr int Planes = 6, SlotsPerPlane = 5; // 30 satellites: PRN 1..30

constexpr SbasSatellite SbasTable[] = {
    {120, -15.5}, {122, -142.0}, {124, 21.5},   {126, 25.0},  {127, 64.0},   {128, 55.0},
    {129, 140.0}, {134, 178.0},  {135, -133.0}, {137, 145.0}, {138, -107.3},
};

Vector3 GpsPosition(int prnIndex, GpsTime time, uint64_t seed)
{
    const int plane = prnIndex % Planes, slot = prnIndex / Planes;
    // The slots of a plane have unequal distances, as in the real constellation, and neighbouring planes are
    // shifted.
    static constexpr double slotDeg[SlotsPerPlane] = {0.0, 61.0, 134.0, 212.0, 283.0};
    const double phaseDeg = slotDeg[slot] + 23.0 * plane + static_cast<double>(seed % 360);
    const double t = time.Seconds();
    const double u = phaseDeg * DegToRad + std::fmod(GpsMeanMotion * t, 2.0 * std::numbers::pi);
    const double node = 60.0 * plane * DegToRad - std::fmod(EarthRotation * t, 2.0 * std::numbers::pi);
    const double inclination = GpsInclinationDeg * DegToRad;
    const double x = GpsOrbitRadiusM * std::cos(u), y = GpsOrbitRadiusM * std::sin(u);
    return {x * std::cos(node) - y * std::cos(inclination) * std::sin(node),
            x * std::sin(node) + y * std::cos(inclination) * std::cos(node), y * std::sin(inclination)};
}

} // namespace

std::span<const SbasSatellite> SbasSatellites()
{
    return SbasTable;
}

std::vector<Satellite> VisibleSatellites(const Geodetic& from, GpsTime time, uint64_t seed)
{
    std::vector<Satellite> visible;
    const auto add = [&](uint8_t sv, const Vector3& position) {
        const LookAngles look = Look(from, position);
        if (look.elevationDeg > 0) visible.push_back({sv, look});
    };
    for (int i = 0; i < Planes * SlotsPerPlane; ++i) {
        add(static_cast<uint8_t>(i + 1), GpsPosition(i, time, seed));
    }
    for (const SbasSatellite& satellite : SbasTable) {
        const double longitude = satellite.longitudeDeg * DegToRad;
        add(satellite.sv,
            {GeostationaryRadiusM * std::cos(longitude), GeostationaryRadiusM * std::sin(longitude), 0});
    }
    std::sort(visible.begin(), visible.end(), [](const Satellite& a, const Satellite& b) {
        return a.look.elevationDeg > b.look.elevationDeg;
    });
    return visible;
}

} // namespace receiver
