// SPDX-License-Identifier: MIT
// The options of every command.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace console
{

struct Options {
    std::optional<std::string> port;
    std::optional<uint32_t> rate;
    double timeoutSeconds = 2;
    bool json = false, dryRun = false, yes = false, verbose = false, quiet = false;
};

// A number of seconds from 0.001 to one year. Throws Failure of the kind Usage; its message contains `what`.
double ParseSeconds(const std::string& text, const std::string& what);

// A rate of the product's table. Throws as above.
uint32_t ParseRate(const std::string& text, const std::string& what = "RATE");

// All rates of that table.
std::vector<std::string> RateTexts();

// A whole number in a range, limits included. Throws as above.
int64_t ParseWhole(const std::string& text, int64_t low, int64_t high, const std::string& what);

// Parts of "NAME=VALUE". Throws as above if there is no name or no value.
struct Assignment {
    std::string name, value;
};
Assignment ParseAssignment(const std::string& text);

} // namespace console
