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

// One action without its time, such as "lose 0.01". On failure nothing and a text in `error`.
std::optional<Action> ParseAction(std::string_view text, std::string& error);

// A whole script, in order of time; an error names file and line.
std::optional<std::vector<Action>> ReadScript(const std::string& path, std::string& error);

// "170,PSRF106": adds to `refusals`; false when an item is neither a MID (1..255) nor PSRF and a number.
bool ParseRefusals(std::string_view list, Refusals& refusals);

std::optional<Protocol> ProtocolByName(std::string_view name);

} // namespace receiver
