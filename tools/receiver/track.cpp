// SPDX-License-Identifier: MIT
#include "track.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace receiver
{

namespace
{

constexpr double CircleRadiusM = 200.0, CircleSpeedMps = 10.0;
constexpr double EightSizeM = 300.0, EightPeriodS = 240.0, EightClimbM = 5.0;
constexpr double WalkSideM = 150.0, WalkSpeedMps = 1.4, WalkRestS = 20.0;

Local CircleOffset(double seconds)
{
    const double angle = seconds * CircleSpeedMps / CircleRadiusM; // clockwise, from the north point
    return {CircleRadiusM * std::sin(angle), CircleRadiusM * std::cos(angle), 0};
}

Local EightOffset(double seconds)
{
    const double angle = 2.0 * std::numbers::pi * seconds / EightPeriodS;
    return {EightSizeM * std::sin(angle), 0.5 * EightSizeM * std::sin(2.0 * angle),
            EightClimbM * std::sin(angle)};
}

Local WalkOffset(double seconds)
{
    constexpr double legS = WalkSideM / WalkSpeedMps;
    const double inLap = std::fmod(seconds, 4.0 * (legS + WalkRestS));
    const int leg = static_cast<int>(inLap / (legS + WalkRestS));
    const double way = std::min((inLap - leg * (legS + WalkRestS)) * WalkSpeedMps, WalkSideM);
    switch (leg) {
    case 0: return {0, way, 0};
    case 1: return {way, WalkSideM, 0};
    case 2: return {WalkSideM, WalkSideM - way, 0};
    default: return {WalkSideM - way, 0, 0};
    }
}

Geodetic PointPlace(const std::vector<TrackPoint>& points, double seconds)
{
    const double length = points.back().seconds;
    if (length <= 0) return points.front().place;
    const double at = std::fmod(seconds, length);
    const auto next = std::upper_bound(points.begin(), points.end(), at,
                                       [](double s, const TrackPoint& point) { return s < point.seconds; });
    if (next == points.end()) return points.back().place;
    if (next == points.begin()) return points.front().place;
    const TrackPoint &a = *(next - 1), &b = *next;
    const double part = (at - a.seconds) / (b.seconds - a.seconds);
    const Local whole = Offset(a.place, b.place);
    return Moved(a.place, {whole.east * part, whole.north * part, whole.up * part});
}

Geodetic PlaceAt(const Track& track, double seconds)
{
    switch (track.kind) {
    case TrackKind::Circle: return Moved(track.origin, CircleOffset(seconds));
    case TrackKind::Walk: return Moved(track.origin, WalkOffset(seconds));
    case TrackKind::Eight: return Moved(track.origin, EightOffset(seconds));
    case TrackKind::Points: return PointPlace(track.points, seconds);
    case TrackKind::Still: break;
    }
    return track.origin;
}

} // namespace

std::optional<TrackKind> TrackByName(std::string_view name)
{
    struct Row {
        std::string_view name;
        TrackKind kind;
    };
    static constexpr std::array<Row, 4> rows = {{{"still", TrackKind::Still},
                                                 {"circle", TrackKind::Circle},
                                                 {"walk", TrackKind::Walk},
                                                 {"eight", TrackKind::Eight}}};
    for (const Row& row : rows) {
        if (row.name == name) return row.kind;
    }
    return std::nullopt;
}

Motion MotionAt(const Track& track, double seconds)
{
    // The speed is measured after the moment, not around it: a rest has speed 0 from its first instant.
    constexpr double stepS = 0.1;
    Motion motion;
    motion.place = PlaceAt(track, seconds);
    const Local way = Offset(motion.place, PlaceAt(track, seconds + stepS));
    motion.velocity = {way.east / stepS, way.north / stepS, way.up / stepS};
    // A recorded track jumps when it starts again; this jump is not a speed.
    if (std::hypot(motion.velocity.east, motion.velocity.north) > 600.0) motion.velocity = {};
    return motion;
}

} // namespace receiver
