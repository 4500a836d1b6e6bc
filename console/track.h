// SPDX-License-Identifier: MIT
// Writers of tracks: GPX, KML, CSV, and lines of JSON with the names that gpsd uses.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "console/sample.h"

namespace console
{

using Write = std::function<void(std::string_view)>;

class TrackWriter
{
public:
    explicit TrackWriter(Write write) : write_(std::move(write)) {}
    virtual ~TrackWriter() = default;

    virtual void Begin() {}
    virtual void Point(const Sample& sample, bool beginsSegment) = 0;
    virtual void Satellites() {} // a new list of satellites in LatestFix
    virtual void End() {}

protected:
    void Put(std::string_view text) { write_(text); }

private:
    Write write_;
};

// The format is "gpx", "kml", "csv" or "json".
std::unique_ptr<TrackWriter> MakeTrackWriter(std::string_view format, Write write);

// One line each, with its line end. Unknown values are left out.
std::string TpvLine(const Sample& sample);
std::string SkyLine(const FixReport& fix);

// Text of a number, rounded to this number of decimals, without zeros at the end, with a decimal point in
// every locale.
std::string Number(double value, int decimals);

// Finds the beginnings of a track's segments: the first point, a point after a gap of more than 5 s, and a
// point whose time goes back. Points without a time continue the segment.
class Segments
{
public:
    bool BeginsWith(const Sample& sample);

private:
    bool any_ = false;
    std::optional<int64_t> time_;
    std::optional<int32_t> secondOfDay_;
};

} // namespace console
