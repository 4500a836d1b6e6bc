// SPDX-License-Identifier: MIT
#include "common/files.h"
#include "common/numbers.h"
#include "gps_time.h"
#include "track.h"

#include <cmath>

#include <pugixml.hpp>

namespace receiver
{

namespace
{

struct RawPoint {
    Geodetic place;
    std::optional<double> time; // seconds of GPS time
};

std::optional<RawPoint> PointOf(const pugi::xml_node& element)
{
    const auto latitude = NumberBetween(element.attribute("lat").value(), -90.0, 90.0);
    const auto longitude = NumberBetween(element.attribute("lon").value(), -180.0, 180.0);
    if (!latitude || !longitude) return std::nullopt;
    RawPoint point;
    point.place = {*latitude, *longitude,
                   NumberBetween(element.child_value("ele"), -MostHeightM, MostHeightM).value_or(0)};
    constexpr size_t toTheSecond = 19; // fractions and time zone are ignored
    if (const auto time = ParseDate(std::string_view(element.child_value("time")).substr(0, toTheSecond)))
        point.time = time->Seconds();
    return point;
}

std::vector<RawPoint> PointsNamed(const pugi::xml_document& document, std::string_view name)
{
    std::vector<RawPoint> points;
    struct Walker : pugi::xml_tree_walker {
        Walker(std::vector<RawPoint>& to, std::string_view wanted) : points(to), name(wanted) {}
        bool for_each(pugi::xml_node& node) override
        {
            if (node.name() != name) return true;
            if (const auto point = PointOf(node)) points.push_back(*point);
            return true;
        }
        std::vector<RawPoint>& points;
        std::string_view name;
    } walker(points, name);
    pugi::xml_node(document).traverse(walker);
    return points;
}

} // namespace

std::optional<std::vector<TrackPoint>> ReadGpx(const std::string& path, double speedMps, std::string& error)
{
    const auto content = ReadWholeFile(path, error);
    if (!content) return std::nullopt;
    pugi::xml_document document;
    const pugi::xml_parse_result result =
        document.load_buffer(content->data(), content->size(), pugi::parse_default | pugi::parse_trim_pcdata);
    if (!result) {
        error = path + ": " + result.description() + " at byte " + std::to_string(result.offset);
        return std::nullopt;
    }
    std::vector<RawPoint> raw;
    for (const char* name : {"trkpt", "rtept", "wpt"})
        if (raw.empty()) raw = PointsNamed(document, name);
    if (raw.empty()) {
        error = path + ": no track point with lat and lon";
        return std::nullopt;
    }
    std::vector<TrackPoint> points;
    for (const RawPoint& point : raw) {
        double seconds = 0;
        if (!points.empty()) {
            const RawPoint& last = raw[points.size() - 1];
            const Local way = Offset(last.place, point.place);
            const double byTime = point.time && last.time ? *point.time - *last.time : 0;
            const double bySpeed = std::max(0.01, std::hypot(way.east, way.north) / speedMps);
            seconds = points.back().seconds + (byTime > 0 ? byTime : bySpeed);
        }
        points.push_back({seconds, point.place});
    }
    return points;
}

} // namespace receiver
