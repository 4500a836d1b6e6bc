// SPDX-License-Identifier: MIT
#pragma once
// Scripts: what happens when. One action a line, "TIME VERB [VALUE]...", '#' begins a comment.

#include "receiver.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace receiver
{

enum class Verb : uint8_t {
    Lose,              // number: chance per byte
    Flip,              // number: chance per byte
    Checksum,          // number: chance per message
    Burst,             // number: random bytes
    Silence,           // number: seconds
    Freeze,            // number: seconds
    FreezeAfterSwitch, // number: seconds
    SwitchLandsAt,     // number: line rate, 0: none
    IgnoreSwitches,    // number: how many
    Mute,              // text: list of commands
    Alter,             // text: MID:OFFSET:VALUE
    Vanish,            // number: seconds
    Tunnel,            // number: seconds
    Track,             // text: name of a track
    Restart,           // text: hot, warm, cold, factory
    Switch,            // text: nmea or sirf; number: line rate
    Refuse,            // text: list of commands
    Text,              // text
    Quit
};

struct Action {
    double at = 0; // seconds of the run
    Verb verb = Verb::Quit;
    double number = 0;
    std::string text;
};

// The faults that can stand from the start on, by their names.
bool IsFault(std::string_view name);
std::string FaultNames(); // "lose, flip, ..."

// "hot", "warm" or "cold".
std::optional<Restart> RestartByName(std::string_view name);

// One action without its time, such as "lose 0.01". On failure nothing and a text in `error`.
std::optional<Action> ParseAction(std::string_view text, std::string& error);

// A whole script, in order of time; an error names file and line.
std::optional<std::vector<Action>> ReadScript(const std::string& path, std::string& error);

// "170,?139,PSRF106": adds to `commands`; false when an item is neither a MID (1..255), nor '?' and the MID
// of a poll, nor PSRF and a number.
bool ParseCommandList(std::string_view list, CommandList& commands);

// "139:4:99", offset and value 0..255; nothing for anything else.
std::optional<Alteration> ParseAlteration(std::string_view text);

std::optional<Protocol> ProtocolByName(std::string_view name);

} // namespace receiver
