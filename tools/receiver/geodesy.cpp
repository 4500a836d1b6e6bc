// SPDX-License-Identifier: MIT
#include "geodesy.h"

#include <cmath>

namespace receiver
{

namespace
{

constexpr double SemiMajorM = 6378137.0;
constexpr double EccentricitySquared = 6.69437999014e-3;

struct Radii { // metres of curvature along the meridian and along the parallel
    double meridian, normal;
};

Radii RadiiAt(double latitudeDeg)
{
    const double s = std::sin(latitudeDeg * DegToRad);
    const double w = 1.0 - EccentricitySquared * s * s;
    return {SemiMajorM * (1.0 - EccentricitySquared) / (w * std::sqrt(w)), SemiMajorM / std::sqrt(w)};
}

double WrapLongitude(double deg)
{
    return deg - 360.0 * std::floor((deg + 180.0) / 360.0);
}

} // namespace

Vector3 ToEcef(const Geodetic& place)
{
    const double lat = place.latitudeDeg * DegToRad, lon = place.longitudeDeg * DegToRad;
    const double n = RadiiAt(place.latitudeDeg).normal;
    return {(n + place.heightM) * std::cos(lat) * std::cos(lon),
            (n + place.heightM) * std::cos(lat) * std::sin(lon),
            (n * (1.0 - EccentricitySquared) + place.heightM) * std::sin(lat)};
}

Vector3 EnuToEcef(const Geodetic& at, const Local& d)
{
    const double lat = at.latitudeDeg * DegToRad, lon = at.longitudeDeg * DegToRad;
    const double sinLat = std::sin(lat), cosLat = std::cos(lat), sinLon = std::sin(lon),
                 cosLon = std::cos(lon);
    return {-sinLon * d.east - sinLat * cosLon * d.north + cosLat * cosLon * d.up,
            cosLon * d.east - sinLat * sinLon * d.north + cosLat * sinLon * d.up,
            cosLat * d.north + sinLat * d.up};
}

Geodetic Moved(const Geodetic& from, const Local& by)
{
    const Radii r = RadiiAt(from.latitudeDeg);
    Geodetic to = from;
    to.latitudeDeg += by.north / r.meridian / DegToRad;
    const double parallel = r.normal * std::cos(from.latitudeDeg * DegToRad);
    to.longitudeDeg += by.east / parallel / DegToRad;
    if (std::abs(to.latitudeDeg) > 90.0) { // over a pole
        to.latitudeDeg = std::copysign(180.0, to.latitudeDeg) - to.latitudeDeg;
        to.longitudeDeg += 180.0;
    }
    to.longitudeDeg = WrapLongitude(to.longitudeDeg);
    to.heightM += by.up;
    return to;
}

Local Offset(const Geodetic& from, const Geodetic& to)
{
    const Radii r = RadiiAt(from.latitudeDeg);
    const double parallel = r.normal * std::cos(from.latitudeDeg * DegToRad);
    return {WrapLongitude(to.longitudeDeg - from.longitudeDeg) * DegToRad * parallel,
            (to.latitudeDeg - from.latitudeDeg) * DegToRad * r.meridian, to.heightM - from.heightM};
}

Geodetic InDatum(const Geodetic& wgs84, int datum)
{
    struct Shift { // from the centre of WGS-84 to that of the datum, metres
        int datum;
        double x, y, z;
    };
    static constexpr Shift shifts[] = {
        {178, 148, -507, -685}, {179, 148, -507, -685}, {180, 147, -506, -687}, {181, 158, -507, -676}};
    constexpr double flattening = 1.0 / 298.257223563;
    constexpr double axisChange = 6377397.155 - SemiMajorM; // to the Bessel ellipsoid
    constexpr double flatteningChange = 1.0 / 299.1528128 - flattening;
    for (const Shift& shift : shifts) {
        if (shift.datum != datum) continue;
        const double lat = wgs84.latitudeDeg * DegToRad, lon = wgs84.longitudeDeg * DegToRad;
        const double sinLat = std::sin(lat), cosLat = std::cos(lat), sinLon = std::sin(lon),
                     cosLon = std::cos(lon);
        const double shape = SemiMajorM * flatteningChange + flattening * axisChange;
        return Moved(wgs84, {-shift.x * sinLon + shift.y * cosLon,
                             -shift.x * sinLat * cosLon - shift.y * sinLat * sinLon + shift.z * cosLat +
                                 shape * 2.0 * sinLat * cosLat,
                             shift.x * cosLat * cosLon + shift.y * cosLat * sinLon + shift.z * sinLat +
                                 shape * sinLat * sinLat - axisChange});
    }
    return wgs84;
}

LookAngles Look(const Geodetic& from, const Vector3& target)
{
    const Vector3 here = ToEcef(from);
    const double dx = target.x - here.x, dy = target.y - here.y, dz = target.z - here.z;
    const double lat = from.latitudeDeg * DegToRad, lon = from.longitudeDeg * DegToRad;
    const double sinLat = std::sin(lat), cosLat = std::cos(lat), sinLon = std::sin(lon),
                 cosLon = std::cos(lon);
    const double east = -sinLon * dx + cosLon * dy;
    const double north = -sinLat * cosLon * dx - sinLat * sinLon * dy + cosLat * dz;
    const double up = cosLat * cosLon * dx + cosLat * sinLon * dy + sinLat * dz;
    double azimuth = std::atan2(east, north) / DegToRad;
    if (azimuth < 0) azimuth += 360.0;
    return {azimuth, std::atan2(up, std::hypot(east, north)) / DegToRad,
            std::sqrt(dx * dx + dy * dy + dz * dz)};
}

} // namespace receiver
