// SPDX-License-Identifier: MIT
#pragma once
// The receiver's true motion: a position and a velocity for every moment of a run.

#include "geodesy.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace receiver
{

struct Motion {
    Geodetic place;
    Local velocity; // m/s
};

struct TrackPoint { // a position at a time of the run
    double seconds = 0;
    Geodetic place;
};

enum class TrackKind { Still, Circle, Walk, Eight, Points };

struct Track {
    TrackKind kind = TrackKind::Circle;
    Geodetic origin{47.376900, 8.541700, 455.0};
    std::vector<TrackPoint> points; // Points only: at least one, times ascending
};

// One of TrackNames; no value for another name.
constexpr std::string_view TrackNames = "still, circle, walk, eight";
std::optional<TrackKind> TrackByName(std::string_view name);

// The motion after this many seconds. Circle: 200 m at 10 m/s. Eight: 12 m/s at most, rising and sinking 5 m.
// Walk: a 150 m square at 1.4 m/s with a rest of 20 s at each corner. Points: along straight lines from point
// to point; after the last one, from the start again.
Motion MotionAt(const Track& track, double seconds);

// Points of a GPX file (trkpt, else rtept or wpt), timed by their <time>, or at `speedMps` if they have none.
// On failure no value, with a text without line end in `error`.
std::optional<std::vector<TrackPoint>> ReadGpx(const std::string& path, double speedMps, std::string& error);

} // namespace receiver
