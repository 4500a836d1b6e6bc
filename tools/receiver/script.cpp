#include "script.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>

namespace receiver
{

namespace
{

enum class Value : uint8_t { None, Chance, Count, Seconds, Track, Restart, Switch, Refusals, Text };

struct VerbRow {
    std::string_view name;
    Verb verb;
    Value value;
};
constexpr VerbRow VerbRows[] = {
    {"lose", Verb::Lose, Value::Chance},
    {"flip", Verb::Flip, Value::Chance},
    {"checksum", Verb::Checksum, Value::Chance},
    {"burst", Verb::Burst, Value::Count},
    {"silence", Verb::Silence, Value::Seconds},
    {"freeze", Verb::Freeze, Value::Seconds},
    {"freeze-after-switch", Verb::FreezeAfterSwitch, Value::Seconds},
    {"vanish", Verb::Vanish, Value::Seconds},
    {"tunnel", Verb::Tunnel, Value::Seconds},
    {"track", Verb::Track, Value::Track},
    {"restart", Verb::Restart, Value::Restart},
    {"switch", Verb::Switch, Value::Switch},
    {"refuse", Verb::Refuse, Value::Refusals},
    {"text", Verb::Text, Value::Text},
    {"quit", Verb::Quit, Value::None},
};

constexpr std::string_view Blanks = " \t\r";

std::string_view Trimmed(std::string_view text)
{
    const size_t from = text.find_first_not_of(Blanks);
    if (from == std::string_view::npos) return {};
    return text.substr(from, text.find_last_not_of(Blanks) - from + 1);
}

// Takes the first word off `text`.
std::string_view Word(std::string_view& text)
{
    text = Trimmed(text);
    const std::string_view word = text.substr(0, std::min(text.find_first_of(Blanks), text.size()));
    text = Trimmed(text.substr(word.size()));
    return word;
}

bool ParseDouble(std::string_view text, double low, double high, double& value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && value >= low && value <= high;
}

bool ParseValue(Value kind, std::string_view rest, Action& action)
{
    action.text = std::string(rest);
    switch (kind) {
    case Value::None: return rest.empty();
    case Value::Chance: return ParseDouble(rest, 0, 1, action.number);
    case Value::Count:
        return ParseDouble(rest, 1, 1000000, action.number) && std::floor(action.number) == action.number;
    case Value::Seconds: return ParseDouble(rest, 0, 1000000, action.number);
    case Value::Track: return TrackByName(rest).has_value();
    case Value::Restart: return rest == "hot" || rest == "warm" || rest == "cold" || rest == "factory";
    case Value::Switch: {
        action.text = std::string(Word(rest));
        return ProtocolByName(action.text) && ParseDouble(rest, 1, 115200, action.number) &&
               IsLineRate(static_cast<uint32_t>(action.number));
    }
    case Value::Refusals: {
        Refusals refusals;
        return ParseRefusals(rest, refusals);
    }
    case Value::Text: return !rest.empty() && rest.size() <= 80;
    }
    return false;
}

} // namespace

std::optional<Action> ParseAction(std::string_view text, std::string& error)
{
    const std::string name(Word(text));
    for (const VerbRow& row : VerbRows) {
        if (row.name != name) continue;
        Action action;
        action.verb = row.verb;
        if (ParseValue(row.value, text, action)) return action;
        error = "bad value for " + name + ": '" + std::string(text) + "'";
        return std::nullopt;
    }
    error = "unknown action '" + name + "'";
    return std::nullopt;
}

std::optional<std::vector<Action>> ReadScript(const std::string& path, std::string& error)
{
    std::ifstream file(path);
    if (!file) {
        error = path + ": cannot be read";
        return std::nullopt;
    }
    std::vector<Action> actions;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        std::string_view rest = Trimmed(std::string_view(line).substr(0, line.find('#')));
        if (rest.empty()) continue;
        const std::string where = path + ":" + std::to_string(number) + ": ";
        const std::string time(Word(rest));
        double at = 0;
        if (!ParseDouble(time, 0, 1e9, at)) {
            error = where + "bad time '" + time + "'";
            return std::nullopt;
        }
        auto action = ParseAction(rest, error);
        if (!action) {
            error = where + error;
            return std::nullopt;
        }
        action->at = at;
        actions.push_back(*action);
    }
    std::stable_sort(actions.begin(), actions.end(),
                     [](const Action& a, const Action& b) { return a.at < b.at; });
    return actions;
}

bool ParseRefusals(std::string_view list, Refusals& refusals)
{
    while (true) {
        const size_t comma = std::min(list.find(','), list.size());
        std::string_view item = list.substr(0, comma);
        const bool sentence = item.starts_with("PSRF");
        if (sentence) item.remove_prefix(4);
        int number = 0;
        const auto [end, error] = std::from_chars(item.data(), item.data() + item.size(), number);
        if (error != std::errc() || end != item.data() + item.size() || number < 1 || number > 255)
            return false;
        (sentence ? refusals.psrf : refusals.mids).insert(number);
        if (comma == list.size()) return true;
        list.remove_prefix(comma + 1);
    }
}

std::optional<Protocol> ProtocolByName(std::string_view name)
{
    if (name == "nmea") return Protocol::Nmea;
    if (name == "sirf") return Protocol::SirfBinary;
    return std::nullopt;
}

} // namespace receiver
