#include "options.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>

namespace receiver
{

namespace
{

bool ParseDouble(std::string_view text, double low, double high, double& value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && value >= low && value <= high;
}

// LATITUDE,LONGITUDE[,HEIGHT]
bool ParsePosition(std::string_view text, Geodetic& place)
{
    double* const parts[] = {&place.latitudeDeg, &place.longitudeDeg, &place.heightM};
    static constexpr double limits[] = {89.9, 180.0, 20000.0};
    for (size_t i = 0; i < 3; ++i) {
        const size_t end = std::min(text.find(','), text.size());
        if (!ParseDouble(text.substr(0, end), -limits[i], limits[i], *parts[i])) return false;
        if (end == text.size()) return i >= 1;
        text.remove_prefix(end + 1);
    }
    return false;
}

GpsTime TimeOfThisMachine()
{
    using namespace std::chrono;
    constexpr int64_t gpsEpochMs = 315964800000; // 1980-01-06 in Unix time
    const int64_t unixMs = duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    const GpsTime utc{unixMs - gpsEpochMs};
    return {utc.ms + LeapSeconds(utc) * 1000};
}

// Each setter gets the option's value and says whether it makes sense.
using Setter = bool (*)(std::string_view value, Options& options, std::string& error);

bool SetProtocol(std::string_view value, Options& options, std::string&)
{
    const auto protocol = ProtocolByName(value);
    if (protocol) options.config.protocol = *protocol;
    return protocol.has_value();
}

bool SetRate(std::string_view value, Options& options, std::string&)
{
    double rate = 0;
    if (!ParseDouble(value, 1, 115200, rate) || !IsLineRate(static_cast<uint32_t>(rate)) ||
        rate != std::floor(rate)) {
        return false;
    }
    options.config.lineRate = static_cast<uint32_t>(rate);
    return true;
}

bool SetTrack(std::string_view value, Options& options, std::string& error)
{
    if (const auto kind = TrackByName(value)) {
        options.config.track.kind = *kind;
        return true;
    }
    if (!value.ends_with(".gpx")) return false;
    constexpr double withoutTimesMps = 5.0;
    auto points = ReadGpx(std::string(value), withoutTimesMps, error);
    if (!points) return false;
    options.config.track.kind = TrackKind::Points;
    options.config.track.points = std::move(*points);
    return true;
}

bool SetPosition(std::string_view value, Options& options, std::string&)
{
    return ParsePosition(value, options.config.track.origin);
}

bool SetDate(std::string_view value, Options& options, std::string&)
{
    const auto time = value == "now" ? TimeOfThisMachine() : ParseDate(value);
    if (time) options.config.start = *time;
    return time.has_value();
}

bool SetStart(std::string_view value, Options& options, std::string&)
{
    if (value == "cold")
        options.config.firstStart = Restart::Cold;
    else if (value == "warm")
        options.config.firstStart = Restart::Warm;
    else if (value == "hot")
        options.config.firstStart = Restart::Hot;
    else
        return false;
    return true;
}

bool SetSeed(std::string_view value, Options& options, std::string&)
{
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), options.config.seed);
    return error == std::errc() && end == value.data() + value.size();
}

bool SetFirmware(std::string_view value, Options& options, std::string&)
{
    options.config.version = std::string(value);
    return !value.empty() && value.size() <= 60;
}

bool SetRefuse(std::string_view value, Options& options, std::string&)
{
    return ParseCommandList(value, options.config.refused);
}

bool SetPivotWeek(std::string_view value, Options& options, std::string&)
{
    double week = 0;
    if (!ParseDouble(value, 0, 9999, week) || week != std::floor(week)) return false;
    options.config.pivotWeek = static_cast<int32_t>(week);
    return true;
}

bool SetFault(std::string_view value, Options& options, std::string& error)
{
    const size_t equals = value.find('=');
    if (equals == std::string_view::npos) return false;
    const auto action = ParseAction(
        std::string(value.substr(0, equals)) + " " + std::string(value.substr(equals + 1)), error);
    if (!action) return false;
    static constexpr Verb standingVerbs[] = {Verb::Lose,           Verb::Flip,
                                             Verb::Checksum,       Verb::SwitchLandsAt,
                                             Verb::IgnoreSwitches, Verb::FreezeAfterSwitch,
                                             Verb::Mute,           Verb::Alter};
    const bool standing = std::ranges::find(standingVerbs, action->verb) != std::end(standingVerbs);
    if (standing) options.startFaults.push_back(*action);
    return standing;
}

bool SetSpeed(std::string_view value, Options& options, std::string&)
{
    return ParseDouble(value, 0.01, 10000, options.speed);
}

bool SetDuration(std::string_view value, Options& options, std::string&)
{
    return ParseDouble(value, 0, 1e9, options.durationS);
}

template <std::string Options::*Field> bool SetPath(std::string_view value, Options& options, std::string&)
{
    options.*Field = std::string(value);
    return !value.empty();
}

struct ValueRow {
    std::string_view name;
    Setter set;
};
constexpr ValueRow ValueRows[] = {
    {"--protocol", SetProtocol},
    {"--rate", SetRate},
    {"--link", SetPath<&Options::link>},
    {"--track", SetTrack},
    {"--position", SetPosition},
    {"--date", SetDate},
    {"--start", SetStart},
    {"--seed", SetSeed},
    {"--firmware", SetFirmware},
    {"--refuse", SetRefuse},
    {"--pivot-week", SetPivotWeek},
    {"--fault", SetFault},
    {"--play", SetPath<&Options::play>},
    {"--script", SetPath<&Options::script>},
    {"--record", SetPath<&Options::record>},
    {"--speed", SetSpeed},
    {"--duration", SetDuration},
};

struct FlagRow {
    std::string_view name;
    bool Options::*flag;
};
constexpr FlagRow FlagRows[] = {
    {"--repeat", &Options::repeat}, {"--verbose", &Options::verbose}, {"-v", &Options::verbose},
    {"--help", &Options::help},     {"-h", &Options::help},           {"--version", &Options::version},
};

bool SetFlag(std::string_view name, Options& options)
{
    if (name == "--wrap") {
        options.config.wrap = true;
        return true;
    }
    for (const FlagRow& row : FlagRows) {
        if (row.name != name) continue;
        options.*row.flag = true;
        return true;
    }
    return false;
}

} // namespace

bool ParseOptions(const std::vector<std::string>& arguments, Options& options, std::string& error)
{
    options.config.start = *ParseDate("2008-06-21T10:00:00");
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (SetFlag(argument, options)) {
            if (options.help || options.version) return true;
            continue;
        }
        const size_t equals = std::min(argument.find('='), argument.size());
        const std::string_view name = argument.substr(0, equals);
        const ValueRow* row = nullptr;
        for (const ValueRow& each : ValueRows) {
            if (each.name == name) row = &each;
        }
        if (row == nullptr) {
            error = argument.starts_with("-") ? "unknown option " : "unexpected argument ";
            error += argument;
            return false;
        }
        std::string_view value;
        if (equals < argument.size()) {
            value = argument.substr(equals + 1);
        } else if (++i < arguments.size()) {
            value = arguments[i];
        } else {
            error = std::string(name) + " needs a value";
            return false;
        }
        if (!row->set(value, options, error)) {
            if (error.empty())
                error = "bad value for " + std::string(name) + ": '" + std::string(value) + "'";
            return false;
        }
    }
    if (options.repeat && options.play.empty()) {
        error = "--repeat needs --play";
        return false;
    }
    return true;
}

} // namespace receiver
