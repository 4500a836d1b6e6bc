// SPDX-License-Identifier: MIT
// The failure loop: something that the user does is done again and again in a freshly started program, and
// each time another platform call fails while it is done: once, or from then on every time. What the user
// sees, what state that leaves, and what doing it again makes of it become lines of a text.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

struct DialogEntry;

// Something that the user does. `act` is called twice.
struct UserAction {
    std::string name;
    const DialogEntry* within = nullptr; // the dialog that is open meanwhile
    std::function<void()> prepare;       // before, without a fault
    std::function<void()> act;
    std::function<std::string()> state; // what shows of it, beside what is noted for every action
    std::function<void()> finish;       // puts back what would hinder the next try, without a fault
};

// Ends the fault before the end of `act`, where more must be done there without it.
void ActionIsOver();

// A heading with what is usual, then one line for each platform call, way of failing and outcome; a failure
// that makes no difference has no line.
std::string FailureLines(const UserAction& action);

struct StoredSetting {
    const wchar_t* name;
    uint32_t value;
};

// The same for a start of the whole program.
std::string StartFailureLines(const std::string& name, const std::vector<StoredSetting>& settings,
                              const wchar_t* commandLine);
