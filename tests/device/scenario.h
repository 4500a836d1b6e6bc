// SPDX-License-Identifier: MIT
// Scenarios: a user who works with the program on the headless platform. All effects of the program are
// printed; the same scenario is run with the program itself and with its device image on the emulated device,
// and the two transcripts must be equal. Expectations are only in the unit tests of the program.
#pragma once

#include <functional>
#include <string>
#include <vector>

struct Scenario {
    std::string name;
    std::function<void()> run;
    uint64_t bytes = 0; // that are received in it, where the figures are to be per byte
};

// All scenarios, with those of each of the logs. Logs are files of received bytes.
std::vector<Scenario> AllScenarios(const std::vector<std::string>& logs);

// ---- The program in the form under test (native_program.cpp, emulated_program.cpp) --------------------

// Options of this form; false if there is none of the name.
bool TakeProgramOption(const std::string& name, const std::string& value);

// Runs the program to its end and returns its exit code. Once in a process.
int RunProgramUnderTest(const wchar_t* commandLine);

// Prints the costs of a run that this form can measure to the standard error stream.
void PrintFigures(const Scenario& scenario);
