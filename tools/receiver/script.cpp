// SPDX-License-Identifier: MIT
#include "script.h"

#include "common/files.h"
#include "common/numbers.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace receiver
{

namespace
{

constexpr std::string_view Blanks = " \t\r";

std::string_view Trimmed(std::string_view text)
{
    const size_t from = text.find_first_not_of(Blanks);
    if (from == std::string_view::npos) return {};
    return text.substr(from, text.find_last_not_of(Blanks) - from + 1);
}

// Removes the first word from `text`.
std::string_view Word(std::string_view& text)
{
    text = Trimmed(text);
    const std::string_view word = text.substr(0, std::min(text.find_first_of(Blanks), text.size()));
    text = Trimmed(text.substr(word.size()));
    return word;
}

// Each takes the text after an action's name; false if it is invalid.
using Taker = bool (*)(std::string_view text, Action& action);

bool TakeNothing(std::string_view text, Action&)
{
    return text.empty();
}

template <int Low, int High> bool TakeNumber(std::string_view text, Action& action)
{
    const auto number = NumberBetween(text, Low, High);
    action.number = number.value_or(0);
    return number.has_value();
}

template <int Low> bool TakeCount(std::string_view text, Action& action)
{
    const auto count = WholeNumberBetween(text, Low, 1000000);
    action.number = count.value_or(0);
    return count.has_value();
}

bool TakeRate(std::string_view text, Action& action)
{
    const auto rate = LineRateByName(text);
    action.number = rate.value_or(0);
    return rate || text == "0";
}

bool TakeTrack(std::string_view text, Action&)
{
    return TrackByName(text).has_value();
}

bool TakeRestart(std::string_view text, Action&)
{
    return text == "factory" || RestartByName(text);
}

bool TakeSwitch(std::string_view text, Action& action)
{
    action.text = std::string(Word(text));
    const auto rate = LineRateByName(text);
    action.number = rate.value_or(0);
    return rate && ProtocolByName(action.text);
}

bool TakeCommands(std::string_view text, Action&)
{
    CommandList commands;
    return ParseCommandList(text, commands);
}

bool TakeAlteration(std::string_view text, Action&)
{
    return ParseAlteration(text).has_value();
}

bool TakeText(std::string_view text, Action&)
{
    return !text.empty() && text.size() <= 80;
}

struct VerbRow {
    std::string_view name;
    Verb verb;
    Taker take;
    std::string_view takes; // for an error
    bool isFault = false;   // can be set at the start
};
constexpr std::string_view Chance = "a number from 0 to 1", Seconds = "seconds from 0 to 1000000",
                           Commands = "a list like 170,?139,PSRF106";
constexpr VerbRow VerbRows[] = {
    {"lose", Verb::Lose, TakeNumber<0, 1>, Chance, true},
    {"flip", Verb::Flip, TakeNumber<0, 1>, Chance, true},
    {"checksum", Verb::Checksum, TakeNumber<0, 1>, Chance, true},
    {"freeze-after-switch", Verb::FreezeAfterSwitch, TakeNumber<0, 1000000>, Seconds, true},
    {"switch-lands-at", Verb::SwitchLandsAt, TakeRate,
     "0, 1200, 2400, 4800, 9600, 19200, 38400, 57600 or 115200", true},
    {"ignore-switches", Verb::IgnoreSwitches, TakeCount<0>, "a whole number from 0 to 1000000", true},
    {"mute", Verb::Mute, TakeCommands, Commands, true},
    {"alter", Verb::Alter, TakeAlteration, "MID:OFFSET:VALUE, 0 to 255 each", true},
    {"burst", Verb::Burst, TakeCount<1>, "a whole number from 1 to 1000000"},
    {"silence", Verb::Silence, TakeNumber<0, 1000000>, Seconds},
    {"freeze", Verb::Freeze, TakeNumber<0, 1000000>, Seconds},
    {"vanish", Verb::Vanish, TakeNumber<0, 1000000>, Seconds},
    {"tunnel", Verb::Tunnel, TakeNumber<0, 1000000>, Seconds},
    {"track", Verb::Track, TakeTrack, TrackNames},
    {"restart", Verb::Restart, TakeRestart, "hot, warm, cold or factory"},
    {"switch", Verb::Switch, TakeSwitch, "nmea or sirf, and a line rate"},
    {"refuse", Verb::Refuse, TakeCommands, Commands},
    {"text", Verb::Text, TakeText, "1 to 80 characters"},
    {"quit", Verb::Quit, TakeNothing, "nothing"},
};

std::string Names(bool faultsOnly)
{
    std::string names;
    for (const VerbRow& row : VerbRows)
        if (row.isFault || !faultsOnly) (names += names.empty() ? "" : ", ") += row.name;
    return names;
}

} // namespace

bool IsFault(std::string_view name)
{
    const auto row = std::ranges::find(VerbRows, name, &VerbRow::name);
    return row != std::end(VerbRows) && row->isFault;
}

std::string FaultNames()
{
    return Names(true);
}

std::optional<Restart> RestartByName(std::string_view name)
{
    if (name == "hot") return Restart::Hot;
    if (name == "warm") return Restart::Warm;
    if (name == "cold") return Restart::Cold;
    return std::nullopt;
}

std::optional<Action> ParseAction(std::string_view text, std::string& error)
{
    const std::string name(Word(text));
    const auto row = std::ranges::find(VerbRows, name, &VerbRow::name);
    if (row == std::end(VerbRows)) {
        error = "unknown action '" + name + "', not one of " + Names(false);
        return std::nullopt;
    }
    Action action;
    action.verb = row->verb;
    action.text = std::string(text);
    if (row->take(text, action)) return action;
    error = name + " takes " + std::string(row->takes) + ", not '" + std::string(text) + "'";
    return std::nullopt;
}

std::optional<std::vector<Action>> ReadScript(const std::string& path, std::string& error)
{
    const auto content = ReadWholeFile(path, error);
    if (!content) return std::nullopt;
    std::istringstream file(*content);
    std::vector<Action> actions;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        std::string_view rest = Trimmed(std::string_view(line).substr(0, line.find('#')));
        if (rest.empty()) continue;
        const std::string where = path + ":" + std::to_string(number) + ": ";
        const std::string time(Word(rest));
        const auto at = NumberBetween(time, 0, 1e9);
        if (!at) {
            error = where + "'" + time + "' is no time, a number of seconds from 0 to 1000000000";
            return std::nullopt;
        }
        auto action = ParseAction(rest, error);
        if (!action) {
            error = where + error;
            return std::nullopt;
        }
        action->at = *at;
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
        const auto number = WholeNumberBetween(item, 1, 255);
        if (!number) return false;
        (sentence ? commands.psrf : poll ? commands.polls : commands.mids).insert(*number);
        if (comma == list.size()) return true;
        list.remove_prefix(comma + 1);
    }
}

std::optional<Alteration> ParseAlteration(std::string_view text)
{
    std::array<uint8_t, 3> numbers{};
    for (size_t i = 0; i < numbers.size(); ++i) {
        const size_t colon = i + 1 < numbers.size() ? text.find(':') : text.size();
        if (colon == std::string_view::npos) return std::nullopt;
        const auto number = NumberWithin<uint8_t>(text.substr(0, colon), 0, 255);
        if (!number) return std::nullopt;
        numbers[i] = *number;
        text.remove_prefix(std::min(colon + 1, text.size()));
    }
    return Alteration{numbers[0], numbers[1], numbers[2]};
}

std::optional<Protocol> ProtocolByName(std::string_view name)
{
    if (name == "nmea") return Protocol::Nmea;
    if (name == "sirf") return Protocol::SirfBinary;
    return std::nullopt;
}

} // namespace receiver
