#include "ui/page_lines.h"

std::atomic<wchar_t> TextView[TextLineCount][TextLineCapacity];

namespace
{

void EmptyLines()
{
    for (auto& line : TextView) line[0].store(0, std::memory_order_relaxed);
}

} // namespace

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
    std::atomic<wchar_t>* slot = TextView[line];
    uint32_t i = 0;
    for (; i < TextLineCapacity - 1 && text[i]; ++i) slot[i].store(text[i], std::memory_order_relaxed);
    slot[i].store(0, std::memory_order_relaxed);
}

uint32_t CopyTextLine(uint32_t line, wchar_t (&text)[TextLineCapacity])
{
    const std::atomic<wchar_t>* slot = TextView[line];
    uint32_t i = 0;
    while (i < TextLineCapacity - 1 && (text[i] = slot[i].load(std::memory_order_relaxed))) ++i;
    text[i] = 0;
    return i;
}
