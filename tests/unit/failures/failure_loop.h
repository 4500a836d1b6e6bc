// SPDX-License-Identifier: MIT
// The failure loop: repeats an action of the user in a newly started program; each time another platform call
// fails, once or from then on every time. The lines of a text describe what the user sees, the state after
// the action, and the result of a second try.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

struct DialogEntry;

// An action of the user. `act` is called twice.
struct UserAction {
    std::string name;
    const DialogEntry* within = nullptr; // the dialog that is open meanwhile
    std::function<void()> prepare;       // before, without a fault
    std::function<void()> act;
    std::function<std::string()> state; // its visible effects, beside those noted for every action
    std::function<void()> finish;       // restores the state for the next try, without a fault
};

// Ends the fault before the end of `act`, if the rest must run without it.
void ActionIsOver();

// A heading with the result without a fault, then one line for each platform call, kind of failure and
// outcome; a failure without effect has no line.
std::string FailureLines(const UserAction& action);

struct StoredSetting {
    const wchar_t* name;
    uint32_t value;
};

// The same for a start of the whole program.
std::string StartFailureLines(const std::string& name, const std::vector<StoredSetting>& settings,
                              const wchar_t* commandLine);
