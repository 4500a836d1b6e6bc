// SPDX-License-Identifier: MIT
#include "console/track.h"

#include <charconv>
#include <cmath>

#include "console/output.h"

namespace console
{

namespace
{

// Digits for which these receivers deliver data.
constexpr int DegreeDecimals = 8, MetreDecimals = 3;

double Rounded(double value, int decimals)
{
    const double factor = std::pow(10.0, decimals);
    const double rounded = std::round(value * factor) / factor;
    return rounded == 0 ? 0 : rounded; // no "-0"
}

bool IsKnown(double value)
{
    return std::isfinite(value);
}

// Text of a number; no value for one that is not known.
std::string NumberOrNothing(double value, int decimals)
{
    return IsKnown(value) ? Number(value, decimals) : std::string();
}

void PutNumber(Json& object, const char* name, double value, int decimals = MetreDecimals)
{
    if (IsKnown(value)) object[name] = Rounded(value, decimals);
}

std::string Element(std::string_view name, const std::string& text)
{
    if (text.empty()) return {};
    return "<" + std::string(name) + ">" + text + "</" + std::string(name) + ">";
}

std::string SatelliteCount(const Sample& sample)
{
    return sample.fix.SatellitesInFix < 0 ? std::string() : std::to_string(sample.fix.SatellitesInFix);
}

std::string Latitude(const Sample& sample)
{
    return Number(sample.fix.LatitudeDegrees, DegreeDecimals);
}

std::string Longitude(const Sample& sample)
{
    return Number(sample.fix.LongitudeDegrees, DegreeDecimals);
}

class GpxWriter : public TrackWriter
{
public:
    using TrackWriter::TrackWriter;

    void Begin() override
    {
        Put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<gpx version=\"1.1\" creator=\"toravanectl " TORAVANE_VERSION "\""
            " xmlns=\"http://www.topografix.com/GPX/1/1\""
            " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
            " xsi:schemaLocation=\"http://www.topografix.com/GPX/1/1 "
            "http://www.topografix.com/GPX/1/1/gpx.xsd\">\n"
            "<trk>\n");
    }

    void Point(const Sample& sample, bool beginsSegment) override
    {
        if (beginsSegment) {
            EndSegment();
            Put("<trkseg>\n");
            inSegment_ = true;
        }
        // The schema prescribes this order.
        Put("<trkpt lat=\"" + Latitude(sample) + "\" lon=\"" + Longitude(sample) + "\">" +
            Element("ele", NumberOrNothing(sample.fix.AltitudeMslMetres, MetreDecimals)) +
            Element("time", sample.time ? FormatTime(*sample.time) : "") +
            Element("sat", SatelliteCount(sample)) +
            Element("hdop", NumberOrNothing(sample.fix.Hdop, MetreDecimals)) + "</trkpt>\n");
    }

    void End() override
    {
        EndSegment();
        Put("</trk>\n</gpx>\n");
    }

private:
    void EndSegment()
    {
        if (std::exchange(inSegment_, false)) Put("</trkseg>\n");
    }

    bool inSegment_ = false;
};

// A placemark for each segment: a line, or a point when it has only one.
class KmlWriter : public TrackWriter
{
public:
    using TrackWriter::TrackWriter;

    void Begin() override
    {
        Put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n"
            "<Document>\n<name>Track</name>\n");
    }

    void Point(const Sample& sample, bool beginsSegment) override
    {
        const std::string altitude = NumberOrNothing(sample.fix.AltitudeMslMetres, MetreDecimals);
        const std::string place =
            Longitude(sample) + "," + Latitude(sample) + (altitude.empty() ? "" : "," + altitude);
        if (beginsSegment) {
            EndSegment();
            const std::string time = sample.time ? FormatTime(*sample.time) : "";
            Put("<Placemark>" + Element("name", time.empty() ? "Track" : time) +
                (time.empty() ? "" : "<TimeSpan>" + Element("begin", time) + "</TimeSpan>"));
            first_ = place;
            return;
        }
        if (!first_.empty()) {
            Put("<LineString><coordinates>\n" + std::exchange(first_, {}) + "\n");
            inLine_ = true;
        }
        Put(place + "\n");
    }

    void End() override
    {
        EndSegment();
        Put("</Document>\n</kml>\n");
    }

private:
    void EndSegment()
    {
        if (!first_.empty())
            Put("<Point>" + Element("coordinates", std::exchange(first_, {})) + "</Point></Placemark>\n");
        if (std::exchange(inLine_, false)) Put("</coordinates></LineString></Placemark>\n");
    }

    std::string first_; // position of a segment that has only one point so far
    bool inLine_ = false;
};

class CsvWriter : public TrackWriter
{
public:
    using TrackWriter::TrackWriter;

    void Begin() override { Put("time,latitude,longitude,altitude,speed,course,hdop,satellites\n"); }

    void Point(const Sample& sample, bool) override
    {
        const FixReport& fix = sample.fix;
        Put((sample.time ? FormatTime(*sample.time) : "") + "," + Latitude(sample) + "," + Longitude(sample) +
            "," + NumberOrNothing(fix.AltitudeMslMetres, MetreDecimals) + "," +
            NumberOrNothing(fix.SpeedMetresPerSecond, MetreDecimals) + "," +
            NumberOrNothing(fix.CourseDegrees, MetreDecimals) + "," +
            NumberOrNothing(fix.Hdop, MetreDecimals) + "," + SatelliteCount(sample) + "\n");
    }
};

class JsonWriter : public TrackWriter
{
public:
    using TrackWriter::TrackWriter;

    void Point(const Sample& sample, bool) override { Put(TpvLine(sample)); }
    void Satellites() override { Put(SkyLine(LatestFix)); }
};

template <typename Writer> std::unique_ptr<TrackWriter> Make(Write write)
{
    return std::make_unique<Writer>(std::move(write));
}

struct FormatRow {
    std::string_view name;
    std::unique_ptr<TrackWriter> (*make)(Write);
};
constexpr FormatRow Formats[] = {
    {"gpx", Make<GpxWriter>}, {"kml", Make<KmlWriter>}, {"csv", Make<CsvWriter>}, {"json", Make<JsonWriter>}};

} // namespace

std::unique_ptr<TrackWriter> MakeTrackWriter(std::string_view format, Write write)
{
    for (const FormatRow& row : Formats)
        if (row.name == format) return row.make(std::move(write));
    return nullptr;
}

std::string Number(double value, int decimals)
{
    constexpr double Most = 1e15; // no receiver reports such a number; this keeps the text short
    char text[64];
    const double rounded = Rounded(std::fmin(std::fmax(value, -Most), Most), decimals);
    const auto [end, error] = std::to_chars(text, text + sizeof text, rounded, std::chars_format::fixed);
    return error == std::errc() ? std::string(text, end) : std::string();
}

std::string TpvLine(const Sample& sample)
{
    const FixReport& fix = sample.fix;
    Json line = {{"class", "TPV"}};
    if (sample.time) line["time"] = FormatTime(*sample.time);
    if (sample.rawTime) line["rawTime"] = FormatTime(*sample.rawTime);
    // 0: not known, 1: no fix, 2: 2D, 3: 3D. A fix without a position, because its sentence was damaged, is
    // not known.
    const bool claimsFix = fix.Mode == FixMode::TwoD || fix.Mode == FixMode::ThreeD;
    line["mode"] = static_cast<int>(claimsFix && !sample.IsPoint() ? FixMode::Unknown : fix.Mode);
    if (sample.IsPoint()) {
        PutNumber(line, "lat", fix.LatitudeDegrees, DegreeDecimals);
        PutNumber(line, "lon", fix.LongitudeDegrees, DegreeDecimals);
        PutNumber(line, "altMSL", fix.AltitudeMslMetres);
        PutNumber(line, "altHAE", fix.AltitudeEllipsoidMetres);
        PutNumber(line, "geoidSep", fix.GeoidSeparationMetres);
        PutNumber(line, "speed", fix.SpeedMetresPerSecond);
        PutNumber(line, "track", fix.CourseDegrees);
        PutNumber(line, "hdop", fix.Hdop);
        PutNumber(line, "vdop", fix.Vdop);
        PutNumber(line, "eph", fix.HorizontalErrorMetres);
        PutNumber(line, "epv", fix.VerticalErrorMetres);
    }
    return line.dump() + "\n";
}

std::string SkyLine(const FixReport& fix)
{
    Json satellites = Json::array();
    for (uint32_t i = 0; i < fix.InViewCount; ++i) {
        const SatelliteInView& each = fix.InView[i];
        satellites.push_back({{"PRN", each.Number},
                              {"ss", each.CarrierToNoiseDbHz},
                              {"el", each.ElevationDegrees},
                              {"az", each.AzimuthDegrees}});
    }
    return Json{{"class", "SKY"}, {"satellites", satellites}}.dump() + "\n";
}

bool Segments::BeginsWith(const Sample& sample)
{
    constexpr int64_t LongestGap = 5;
    bool begins = !std::exchange(any_, true);
    if (sample.time && time_) {
        begins |= *sample.time < *time_ || *sample.time - *time_ > LongestGap;
    } else if (sample.secondOfDay && secondOfDay_) {
        // Without dates, midnight looks like a step back by a whole day.
        const int64_t gap = (*sample.secondOfDay - *secondOfDay_ + SecondsPerDay) % SecondsPerDay;
        begins |= gap > LongestGap;
    }
    if (sample.secondOfDay) {
        time_ = sample.time;
        secondOfDay_ = sample.secondOfDay;
    }
    return begins;
}

} // namespace console
