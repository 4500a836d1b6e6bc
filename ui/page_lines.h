// SPDX-License-Identifier: MIT
// The text page: 19 lines that the decoders of both protocols store and the main window paints.
//
// A line is stored as what it is made from, and becomes text when somebody reads it: most lines are stored
// anew before they have been painted once. Stored by the reader thread (and once at start), read by any,
// without a lock: a reader finds a line as it was before or after a change, never half-way.
#pragma once

#include <cstdint>

#include "text/format.h"

constexpr uint32_t TextLineCount = 19;
constexpr uint32_t TextLineCapacity = 256; // characters, terminator included
constexpr uint32_t LastTextLine = TextLineCount - 1;

// What a line is made from.
struct LineSource {
    static constexpr uint32_t MaxValues = 6, MaxCells = 12;
    // Makes the text, cut at the capacity, and returns its length.
    using Writer = uint32_t (*)(const LineSource& source, wchar_t (&text)[TextLineCapacity]);

    Writer write;        // null: the line is empty
    const wchar_t* text; // a text or a format, there for as long as the program runs
    union {
        uint64_t zero[MaxValues];
        FormatValue<wchar_t> values[MaxValues]; // of the format; texts among them as lasting as `text`
        struct {
            uint32_t count;
            uint8_t values[MaxCells];
        } cells; // numbers of a row of the satellite table
    };

    explicit LineSource(Writer writer, const wchar_t* lasting = nullptr)
        : write(writer), text(lasting), zero{}
    {
    }
};

// The page that a freshly started program shows: how to connect.
void StartTextView();

// Empties the page, as the first message of a protocol does, but for the last line with its hint on keys.
void ClearTextView();

// Replaces a line.
void StoreLine(uint32_t line, const LineSource& source);

// The same with a text, which must be there for as long as it is shown; more than 255 characters are cut.
void SetTextLine(uint32_t line, const wchar_t* text);

// The same with a format and its `count` values, at most LineSource::MaxValues.
void StoreFormat(uint32_t line, const wchar_t* format, const FormatValue<wchar_t>* values, uint32_t count);
template <typename... Values>
void FormatTextLine(uint32_t line, std::type_identity_t<CheckedFormat<wchar_t, Values...>> format,
                    const Values&... values)
{
    static_assert(sizeof...(Values) <= LineSource::MaxValues);
    const FormatValue<wchar_t> list[] = {FormatValue<wchar_t>(values)..., FormatValue<wchar_t>(0u)};
    StoreFormat(line, format.text, list, sizeof...(Values));
}

// The text of a source with cells: `text`, and over it from `firstColumn` on each cell in its format, three
// columns from one to the next. Each ends the line, so that one that is too wide is overwritten by the next.
uint32_t WriteCells(const LineSource& source, wchar_t (&text)[TextLineCapacity], uint32_t firstColumn,
                    CheckedFormat<wchar_t, uint32_t> format, CheckedFormat<wchar_t, uint32_t> formatAbove99);

// Makes the text of a line as it is at this moment and returns its length. LineIsChanging and an empty text
// if it is being replaced just now; who replaces a line asks for a repaint afterwards.
constexpr uint32_t LineIsChanging = UINT32_MAX;
uint32_t CopyTextLine(uint32_t line, wchar_t (&text)[TextLineCapacity]);

// Lines that have been replaced by others and not been forgotten since; bit 0 is line 0. Reader thread.
uint32_t ChangedLines();
void ForgetChangedLines();
