// SPDX-License-Identifier: MIT
#include "ui/page_lines.h"

#include <atomic>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include "text/copy.h"

namespace
{

// A line's source, word by word. The version is odd while the words change. Words are stored with release and
// loaded with acquire order, so that a thread that has loaded a new word also finds the new version.
using Word = uintptr_t;
constexpr uint32_t SourceWords = sizeof(LineSource) / sizeof(Word);
static_assert(std::is_trivially_copyable_v<LineSource>);
static_assert(sizeof(LineSource) == 2 * sizeof(void*) + sizeof LineSource::zero); // no gaps to compare

struct Slot {
    std::atomic<uint32_t> version;
    std::atomic<Word> words[SourceWords];
};
Slot Slots[TextLineCount];

uint32_t Changed = 0; // bit set of lines

constexpr uint32_t Tries = 100; // limit, because the writing thread may be suspended

bool LoadSource(const Slot& slot, LineSource& source)
{
    for (uint32_t i = 0; i < Tries; ++i) {
        const uint32_t version = slot.version.load(std::memory_order_acquire);
        if (version % 2) continue;
        Word words[SourceWords];
        for (uint32_t k = 0; k < SourceWords; ++k) words[k] = slot.words[k].load(std::memory_order_acquire);
        if (slot.version.load(std::memory_order_relaxed) != version) continue;
        std::memcpy(static_cast<void*>(&source), words, sizeof source);
        return true;
    }
    return false;
}

// Stores the first words of a source; its writer does not use the rest.
void StoreWords(uint32_t line, const Word* words, uint32_t count)
{
    Slot& slot = Slots[line];
    uint32_t i = 0;
    while (i < count && slot.words[i].load(std::memory_order_relaxed) == words[i]) ++i;
    if (i == count) return;
    Changed |= uint32_t{1} << line;
    const uint32_t version = slot.version.load(std::memory_order_relaxed);
    slot.version.store(version + 1, std::memory_order_relaxed);
    for (; i < count; ++i) slot.words[i].store(words[i], std::memory_order_release);
    slot.version.store(version + 2, std::memory_order_release);
}

uint32_t WriteText(const LineSource& source, wchar_t (&text)[TextLineCapacity])
{
    return CopyText(text, TextLineCapacity, source.text);
}

uint32_t WriteFormat(const LineSource& source, wchar_t (&text)[TextLineCapacity])
{
    return FormatValues(text, TextLineCapacity, source.text, source.values);
}

void EmptyLines()
{
    for (uint32_t line = 0; line < TextLineCount; ++line) StoreLine(line, LineSource(nullptr));
}

} // namespace

void StoreLine(uint32_t line, const LineSource& source)
{
    Word words[SourceWords];
    std::memcpy(words, &source, sizeof words);
    StoreWords(line, words, SourceWords);
}

void StartTextView()
{
    EmptyLines();
    SetTextLine(0, L" Menu Com. Open a port.");
}

void ClearTextView()
{
    EmptyLines();
    SetTextLine(LastTextLine, L" Use joystick to toggle graph/text.");
}

void SetTextLine(uint32_t line, const wchar_t* text)
{
    StoreLine(line, LineSource(WriteText, text));
}

void StoreFormat(uint32_t line, const wchar_t* format, const FormatValue<wchar_t>* values, uint32_t count)
{
    constexpr uint32_t HeadWords = 2, WordsPerValue = sizeof *values / sizeof(Word);
    static_assert(offsetof(LineSource, values) == HeadWords * sizeof(Word));
    Word words[SourceWords];
    words[0] = reinterpret_cast<Word>(WriteFormat);
    words[1] = reinterpret_cast<Word>(format);
    std::memcpy(words + HeadWords, values, count * sizeof *values);
    StoreWords(line, words, HeadWords + count * WordsPerValue);
}

uint32_t WriteCells(const LineSource& source, wchar_t (&text)[TextLineCapacity], uint32_t firstColumn,
                    CheckedFormat<wchar_t, uint32_t> format, CheckedFormat<wchar_t, uint32_t> formatAbove99)
{
    constexpr uint32_t ColumnWidth = 3;
    uint32_t length = WriteText(source, text);
    for (uint32_t i = 0; i < source.cells.count; ++i) {
        const uint32_t column = firstColumn + ColumnWidth * i;
        const uint32_t cell = source.cells.values[i];
        const FormatValue<wchar_t> number = cell;
        length = column + FormatValues(text + column, TextLineCapacity - column,
                                       (cell > 99 ? formatAbove99 : format).text, &number);
    }
    return length;
}

uint32_t CopyTextLine(uint32_t line, wchar_t (&text)[TextLineCapacity])
{
    LineSource source(nullptr);
    const bool isWhole = LoadSource(Slots[line], source);
    if (isWhole && source.write) return source.write(source, text);
    text[0] = 0;
    return isWhole ? 0 : LineIsChanging;
}

uint32_t ChangedLines()
{
    return Changed;
}

void ForgetChangedLines()
{
    Changed = 0;
}
