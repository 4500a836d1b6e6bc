#include "script.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>

namespace receiver
{

namespace
{

enum class Value : uint8_t {
    None,
    Chance,
    Count,
    CountOrNone,
    Seconds,
    Rate,
    Track,
    Restart,
    Switch,
    Commands,
    Alteration,
    Text
};

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
    {"switch-lands-at", Verb::SwitchLandsAt, Value::Rate},
    {"ignore-switches", Verb::IgnoreSwitches, Value::CountOrNone},
    {"mute", Verb::Mute, Value::Commands},
    {"alter", Verb::Alter, Value::Alteration},
    {"vanish", Verb::Vanish, Value::Seconds},
    {"tunnel", Verb::Tunnel, Value::Seconds},
    {"track", Verb::Track, Value::Track},
    {"restart", Verb::Restart, Value::Restart},
    {"switch", Verb::Switch, Value::Switch},
    {"refuse", Verb::Refuse, Value::Commands},
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

bool ParseByte(std::string_view text, int& value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && value >= 0 && value <= 255;
}

bool ParseRate(std::string_view text, double& rate)
{
    return ParseDouble(text, 1, 115200, rate) && std::floor(rate) == rate &&
           IsLineRate(static_cast<uint32_t>(rate));
}

bool ParseValue(Value kind, std::string_view rest, Action& action)
{
    action.text = std::string(rest);
    switch (kind) {
    case Value::None: return rest.empty();
    case Value::Chance: return ParseDouble(rest, 0, 1, action.number);
    case Value::Count:
    case Value::CountOrNone:
        return ParseDouble(rest, kind == Value::Count ? 1 : 0, 1000000, action.number) &&
               std::floor(action.number) == action.number;
    case Value::Seconds: return ParseDouble(rest, 0, 1000000, action.number);
    case Value::Rate: return rest == "0" || ParseRate(rest, action.number);
    case Value::Track: return TrackByName(rest).has_value();
    case Value::Restart: return rest == "hot" || rest == "warm" || rest == "cold" || rest == "factory";
    case Value::Switch: {
        action.text = std::string(Word(rest));
        return ProtocolByName(action.text) && ParseRate(rest, action.number);
    }
    case Value::Commands: {
        CommandList commands;
        return ParseCommandList(rest, commands);
    }
    case Value::Alteration: return ParseAlteration(rest).has_value();
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

bool ParseCommandList(std::string_view list, CommandList& commands)
{
    while (true) {
        const size_t comma = std::min(list.find(','), list.size());
        std::string_view item = list.substr(0, comma);
        const bool sentence = item.starts_with("PSRF");
        if (sentence) item.remove_prefix(4);
        const bool poll = !sentence && item.starts_with("?");
        if (poll) item.remove_prefix(1);
        int number = 0;
        if (!ParseByte(item, number) || number == 0) return false;
        (sentence ? commands.psrf : poll ? commands.polls : commands.mids).insert(number);
        if (comma == list.size()) return true;
        list.remove_prefix(comma + 1);
    }
}

std::optional<Alteration> ParseAlteration(std::string_view text)
{
    std::array<int, 3> numbers{};
    for (size_t i = 0; i < numbers.size(); ++i) {
        const size_t colon = i + 1 < numbers.size() ? text.find(':') : text.size();
        if (colon == std::string_view::npos || !ParseByte(text.substr(0, colon), numbers[i]))
            return std::nullopt;
        text.remove_prefix(std::min(colon + 1, text.size()));
    }
    return Alteration{static_cast<uint8_t>(numbers[0]), static_cast<uint8_t>(numbers[1]),
                      static_cast<uint8_t>(numbers[2])};
}

std::optional<Protocol> ProtocolByName(std::string_view name)
{
    if (name == "nmea") return Protocol::Nmea;
    if (name == "sirf") return Protocol::SirfBinary;
    return std::nullopt;
}

} // namespace receiver
