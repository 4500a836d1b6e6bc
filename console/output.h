// SPDX-License-Identifier: MIT
// Output of a run: results go to standard output, as text or as one JSON object; all else goes to standard
// error.
#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>

#include "console/result.h"

namespace console
{

using Json = nlohmann::ordered_json;

class AnsiTerminal;

enum class Colour { Good, Bad, Doubtful }; // green, red, yellow

class Output
{
public:
    Output();
    ~Output();

    bool json = false;  // one object instead of text
    bool quiet = false; // no notes

    // The object's members except "command", "exit" and "error".
    Json object = Json::object();

    // Set by a command whose standard output is the result itself, or lines of JSON: no object is printed at
    // the end.
    bool noObject = false;

    // Prints a line of text; nothing with --json. Throws Failure if writing to standard output fails.
    void Line(std::string_view text);

    // The text for Line in a colour, if standard output is a terminal that has colours and the user has not
    // set NO_COLOR; else the text alone.
    std::string Coloured(Colour colour, std::string_view text);

    // Writes bytes unchanged, with all options. Throws like Line.
    void Raw(std::string_view bytes);

    // Prints a line on standard error: a note, which --quiet suppresses.
    void Note(std::string_view text);

    // Prints an error, with the program's name before it.
    void Error(std::string_view text);

    // Prints the JSON object if it is wanted. Returns the exit status; if printing fails, the status of that
    // failure.
    int End(const std::string& command, const Failure* failure);

private:
    bool broken_ = false;                    // standard output has failed before
    std::unique_ptr<AnsiTerminal> terminal_; // from the first colour on
};

// The text of a sentence without its line end, or of a frame as HexText.
std::string FrameText(std::span<const uint8_t> frame);

// Upper-case hexadecimal bytes, with blanks between them.
std::string HexText(std::span<const uint8_t> bytes);

// Received bytes as valid UTF-8 on one line: each byte that is not printable ASCII becomes '?'.
std::string Printable(std::string_view text);

} // namespace console
