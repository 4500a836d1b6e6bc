// SPDX-License-Identifier: MIT
// The end of a run: exit status, kind of failure and message.
#pragma once

#include <string>
#include <utility>

namespace console
{

enum class FailureKind {
    Usage,
    Port,
    Silent,
    Noise,
    Refused,
    Differs,
    NoAnswer,
    Lost,
    Protocol,
    Failed,
    Interrupted,
};

struct KindRow {
    const char* name; // as in the JSON output
    int exitStatus;
};

// Name and exit status of a kind.
const KindRow& Describe(FailureKind kind);

// Thrown by code that cannot continue. The message is one line, without the program's name.
struct Failure {
    FailureKind kind;
    std::string message;
    bool quiet = false; // the result already contains everything: nothing goes to standard error
};

[[noreturn]] void Fail(FailureKind kind, std::string message);

} // namespace console
