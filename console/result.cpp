// SPDX-License-Identifier: MIT
#include "console/result.h"

#include <cstddef>

namespace console
{

const KindRow& Describe(FailureKind kind)
{
    // In the order of FailureKind. 4 and 5 belong to the window program.
    static constexpr KindRow Rows[] = {
        {"usage", 2},     {"port", 3},  {"silent", 6},    {"noise", 6},  {"refused", 7},       {"differs", 8},
        {"no-answer", 9}, {"lost", 10}, {"protocol", 11}, {"failed", 1}, {"interrupted", 130},
    };
    return Rows[static_cast<size_t>(kind)];
}

void Fail(FailureKind kind, std::string message)
{
    throw Failure{kind, std::move(message)};
}

} // namespace console
