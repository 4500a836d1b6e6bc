#include "gps_time.h"
#include "track.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace receiver
{

namespace
{

// The value of attribute `name` inside a start tag, NaN without one.
double Attribute(std::string_view tag, std::string_view name)
{
    for (const char quote : {'"', '\''}) {
        const std::string key = " " + std::string(name) + "=" + quote;
        const size_t at = tag.find(key);
        if (at == std::string_view::npos) continue;
        const std::string value(tag.substr(at + key.size(), 32));
        char* end = nullptr;
        const double number = std::strtod(value.c_str(), &end);
        if (end != value.c_str()) return number;
    }
    return std::nan("");
}

// The text of the element `name` inside `body`, empty without one.
std::string_view ElementText(std::string_view body, std::string_view name)
{
    const std::string open = "<" + std::string(name) + ">";
    const size_t from = body.find(open);
    if (from == std::string_view::npos) return {};
    const size_t start = from + open.size();
    const size_t end = body.find('<', start);
    return end == std::string_view::npos ? std::string_view{} : body.substr(start, end - start);
}

struct RawPoint {
    Geodetic place;
    double time = std::nan(""); // seconds of GPS time
};

std::vector<RawPoint> PointsNamed(std::string_view text, std::string_view element)
{
    std::vector<RawPoint> points;
    const std::string open = "<" + std::string(element) + " ", close = "</" + std::string(element);
    for (size_t at = text.find(open); at != std::string_view::npos; at = text.find(open, at + 1)) {
        const size_t tagEnd = text.find('>', at);
        if (tagEnd == std::string_view::npos) break;
        const std::string_view tag = text.substr(at, tagEnd - at);
        RawPoint point;
        point.place.latitudeDeg = Attribute(tag, "lat");
        point.place.longitudeDeg = Attribute(tag, "lon");
        if (!(std::abs(point.place.latitudeDeg) < 89.9) || !(std::abs(point.place.longitudeDeg) <= 180.0))
            continue;
        if (!tag.ends_with('/')) {
            const size_t bodyEnd = text.find(close, tagEnd);
            const std::string_view body = text.substr(tagEnd + 1, bodyEnd - tagEnd - 1);
            const std::string height(ElementText(body, "ele"));
            const double heightM = std::strtod(height.c_str(), nullptr);
            if (std::abs(heightM) < 20000.0) point.place.heightM = heightM;
            const std::string_view time = ElementText(body, "time");
            if (const auto parsed = ParseDate(time.substr(0, 19))) point.time = parsed->Seconds();
        }
        points.push_back(point);
    }
    return points;
}

} // namespace

std::optional<std::vector<TrackPoint>> ReadGpx(const std::string& path, double speedMps, std::string& error)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        error = path + ": cannot be read";
        return std::nullopt;
    }
    std::ostringstream content;
    content << file.rdbuf();
    const std::string text = content.str();

    std::vector<RawPoint> raw;
    for (const char* element : {"trkpt", "rtept", "wpt"}) {
        if (raw.empty()) raw = PointsNamed(text, element);
    }
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
            const double byTime = point.time - last.time;
            seconds = points.back().seconds +
                      (byTime > 0 ? byTime : std::max(0.01, std::hypot(way.east, way.north) / speedMps));
        }
        points.push_back({seconds, point.place});
    }
    return points;
}

} // namespace receiver
