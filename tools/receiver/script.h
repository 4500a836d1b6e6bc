// SPDX-License-Identifier: MIT
#pragma once
// Scripts: lists of timed actions. One action per line, "TIME VERB [VALUE]..."; '#' begins a comment.

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

// The faults that can be set at the start, by their names.
bool IsFault(std::string_view name);
std::string FaultNames(); // "lose, flip, ..."

// "hot", "warm" or "cold".
std::optional<Restart> RestartByName(std::string_view name);

// One action without its time, such as "lose 0.01". On failure no value, with a text in `error`.
std::optional<Action> ParseAction(std::string_view text, std::string& error);

// A whole script, in order of time; an error contains file and line.
std::optional<std::vector<Action>> ReadScript(const std::string& path, std::string& error);

// Adds a list such as "170,?139,PSRF106" to `commands`. False if an item is not a MID (1..255), '?' with the
// MID of a poll, or PSRF with a number.
bool ParseCommandList(std::string_view list, CommandList& commands);

// Reads "139:4:99", with offset and value 0..255; no value for any other text.
std::optional<Alteration> ParseAlteration(std::string_view text);

std::optional<Protocol> ProtocolByName(std::string_view name);

} // namespace receiver
