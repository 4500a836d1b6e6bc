// The text page: 19 lines that the decoders of both protocols write and the main window paints.
//
// Written by the reader thread (and once at start), read by the user-interface thread, without a lock: a
// paint may catch a line half-written. The last character of each line is never written and stays 0, so no
// reader runs past its line.
#pragma once

#include <atomic>
#include <cstdint>

#include "text/format.h"

constexpr uint32_t TextLineCount = 19;
constexpr uint32_t TextLineCapacity = 256; // characters, terminator included
constexpr uint32_t LastTextLine = TextLineCount - 1;

extern std::atomic<wchar_t> TextView[TextLineCount][TextLineCapacity];

// The page that a freshly started program shows: how to connect.
void StartTextView();

// Empties the page, as the first message of a protocol does, but for the last line with its hint on keys.
void ClearTextView();

// Replaces a line; more than 255 characters are cut.
void SetTextLine(uint32_t line, const wchar_t* text);

template <typename... Values>
void FormatTextLine(uint32_t line, std::type_identity_t<CheckedFormat<wchar_t, Values...>> format,
                    const Values&... values)
{
    wchar_t text[TextLineCapacity];
    Format(text, format, values...);
    SetTextLine(line, text);
}

// Copies a line as it is at this moment; returns its length.
uint32_t CopyTextLine(uint32_t line, wchar_t (&text)[TextLineCapacity]);
