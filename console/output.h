// SPDX-License-Identifier: MIT
// Output of a run: results on standard output, as text or as one JSON object; everything else on standard
// error.
#pragma once

#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>

#include "console/result.h"

namespace console
{

using Json = nlohmann::ordered_json;

class Output
{
public:
    bool json = false;  // one object instead of text
    bool quiet = false; // no notes

    // The object's members beside "command", "exit" and "error".
    Json object = Json::object();

    // Set by a command whose standard output is the result itself, or lines of JSON: no object at the end.
    bool noObject = false;

    // A line of text; nothing with --json. Throws Failure when standard output takes it no more.
    void Line(std::string_view text);

    // Bytes without any change, for all options. Throws like Line.
    void Raw(std::string_view bytes);

    // A line of standard error: a note, which --quiet drops.
    void Note(std::string_view text);

    // An error in full, with the program's name before it.
    void Error(std::string_view text);

    // Prints the object if there is to be one; returns the exit status, which is another one if that fails.
    int End(const std::string& command, const Failure* failure);

private:
    bool broken_ = false; // standard output has failed before
};

// A sentence without its line end, or a frame as upper-case hexadecimal bytes.
std::string FrameText(std::span<const uint8_t> frame);

// Bytes from outside as valid UTF-8 on one line: what is not printable ASCII becomes '?'.
std::string Printable(std::string_view text);

} // namespace console
