// SPDX-License-Identifier: MIT
#pragma once
// A run: receiver or player, line, and the script's actions, driven step by step with the time of the run.
// Everything but the terminal itself.

#include "line.h"
#include "player.h"
#include "script.h"

#include <optional>

namespace receiver
{

class Session
{
public:
    Session(const Config& config, std::vector<Action> script, std::optional<Player> player);

    // Runs up to this moment. The host has written `fromHost` since the last step; `hostRate` is the host's
    // rate (0: the same as the receiver's). Returns the bytes that have reached the host.
    Bytes Step(double runSeconds, const Bytes& fromHost, uint32_t hostRate);

    bool Quitting() const { return Quit; }
    bool PlayEnded() const { return Play && Play->Ended() && Sim.Output.empty() && Wire.Idle(); }
    // The terminal is removed until this moment.
    double VanishedUntil() const { return Vanished; }

    // One line with the current state.
    std::string Status(uint32_t hostRate, bool hostPresent) const;

    void Perform(const Action& action);

    Receiver Sim;
    Line Wire;

private:
    std::vector<Action> Script;
    size_t NextAction = 0;
    std::optional<Player> Play;
    double Vanished = -1;
    bool Quit = false;
};

} // namespace receiver
