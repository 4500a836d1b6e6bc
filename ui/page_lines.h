// SPDX-License-Identifier: MIT
// The text page: 19 lines that the decoders of both protocols store and the main window paints.
//
// A line is stored as its source, and becomes text when it is read, because most lines are replaced before
// they are painted. The reader thread stores lines (the user-interface thread once at start); any thread
// reads them without a lock: it finds a line as it was before or after a change, never between.
#pragma once

#include <cstdint>

#include "text/format.h"

constexpr uint32_t TextLineCount = 19;
constexpr uint32_t TextLineCapacity = 256; // characters, terminator included
constexpr uint32_t LastTextLine = TextLineCount - 1;

// The source of a line.
struct LineSource {
    static constexpr uint32_t MaxValues = 6, MaxCells = 12;
    // Writes the text, cut at the capacity, and returns its length.
    using Writer = uint32_t (*)(const LineSource& source, wchar_t (&text)[TextLineCapacity]);

    Writer write;        // null: the line is empty
    const wchar_t* text; // a text or a format with static lifetime
    union {
        uint64_t zero[MaxValues];
        FormatValue<wchar_t> values[MaxValues]; // of the format; texts among them have the same lifetime
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

// The page at program start: how to connect.
void StartTextView();

// Empties the page, except the last line with its hint about keys. Called at the first message of a protocol.
void ClearTextView();

// Replaces a line.
void StoreLine(uint32_t line, const LineSource& source);

// The same with a text, which must live as long as it is shown; it is cut after 255 characters.
void SetTextLine(uint32_t line, const wchar_t* text);

// The same with a format and its `count` values (at most LineSource::MaxValues).
void StoreFormat(uint32_t line, const wchar_t* format, const FormatValue<wchar_t>* values, uint32_t count);
template <typename... Values>
void FormatTextLine(uint32_t line, std::type_identity_t<CheckedFormat<wchar_t, Values...>> format,
                    const Values&... values)
{
    static_assert(sizeof...(Values) <= LineSource::MaxValues);
    const FormatValue<wchar_t> list[] = {FormatValue<wchar_t>(values)..., FormatValue<wchar_t>(0u)};
    StoreFormat(line, format.text, list, sizeof...(Values));
}

// The text of a source with cells: `text`, and over it, from `firstColumn` on, each cell in its format, three
// columns apart. Each cell ends the line, so that the next one overwrites a cell that is too wide.
uint32_t WriteCells(const LineSource& source, wchar_t (&text)[TextLineCapacity], uint32_t firstColumn,
                    CheckedFormat<wchar_t, uint32_t> format, CheckedFormat<wchar_t, uint32_t> formatAbove99);

// Writes the present text of a line and returns its length. If the line is being replaced at this moment, it
// returns LineIsChanging and an empty text; the thread that replaces a line requests a repaint afterwards.
constexpr uint32_t LineIsChanging = UINT32_MAX;
uint32_t CopyTextLine(uint32_t line, wchar_t (&text)[TextLineCapacity]);

// Lines that have been replaced by different ones since ForgetChangedLines; bit 0 is line 0. Reader thread.
uint32_t ChangedLines();
void ForgetChangedLines();
