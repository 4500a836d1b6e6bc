// SPDX-License-Identifier: MIT
#include "tests/device/transcript.h"

#include <cstdarg>
#include <cstdio>

namespace
{

size_t BoxesSeen, SaveDialogsSeen, WritesSeen, RatesSeen, EscapesSeen;

// Runs of equal pixels, and runs of equal rows.
std::string RowText(const uint32_t* row, int width)
{
    std::string text;
    for (int x = 0; x < width;) {
        int end = x;
        while (end < width && row[end] == row[x]) ++end;
        char run[32];
        std::snprintf(run, sizeof run, " %dx%06X", end - x, row[x]);
        text += run;
        x = end;
    }
    return text;
}

} // namespace

std::string Readable(std::wstring_view text)
{
    std::string out;
    for (const wchar_t c : text) {
        char code[16];
        std::snprintf(code, sizeof code, c >= ' ' && c < 0x7F ? "%c" : "<%X>", static_cast<unsigned>(c));
        out += code;
    }
    return out;
}

std::string Readable(std::string_view bytes)
{
    std::string out;
    for (const char c : bytes) {
        char code[8];
        std::snprintf(code, sizeof code, c >= ' ' && c < 0x7F ? "%c" : "<%02X>", static_cast<uint8_t>(c));
        out += code;
    }
    return out;
}

void Print(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    std::putchar('\n');
}

void PrintTexts()
{
    for (const HeadlessTextOut& text : HeadlessPaintedTexts(HeadlessMainWindow()))
        Print("text %d %d |%s|", text.x, text.y, Readable(text.text).c_str());
}

void PrintPixels()
{
    const HWND window = HeadlessMainWindow();
    RECT client;
    GetClientRect(window, &client);
    const std::vector<uint32_t> pixels = HeadlessPixels(window);
    std::string before;
    int repeats = 0;
    for (int y = 0; y < client.bottom; ++y) {
        const std::string row =
            RowText(&pixels[static_cast<size_t>(y) * static_cast<size_t>(client.right)], client.right);
        if (row == before) {
            ++repeats;
            continue;
        }
        if (repeats != 0) Print("  %d more", repeats);
        repeats = 0;
        before = row;
        Print("row %d%s", y, row.c_str());
    }
    if (repeats != 0) Print("  %d more", repeats);
}

void PrintMainWindow()
{
    const HWND window = HeadlessMainWindow();
    if (!window) return Print("no main window");
    Print("window |%s| style %08X", Readable(HeadlessTitle(window)).c_str(),
          static_cast<unsigned>(GetWindowLongW(window, GWL_STYLE)));
    for (const std::wstring& entry : HeadlessMenu(window)) Print("menu %s", Readable(entry).c_str());
    PrintTexts();
    for (const std::string& shape : HeadlessPaintedShapes(window)) Print("shape %s", shape.c_str());
    PrintPixels();
}

void PrintDialog(HWND dialog, uint32_t templateNumber)
{
    HeadlessTemplate source;
    if (!dialog || !HeadlessFindTemplate(templateNumber, source)) return Print("no dialog");
    Print("dialog |%s| focus %d", Readable(HeadlessTitle(dialog)).c_str(), HeadlessFocus(dialog));
    constexpr int Unnamed = -1; // labels
    for (const HeadlessTemplateControl& control : source.controls) {
        if (control.id == Unnamed || !HeadlessHasControl(dialog, control.id)) continue;
        std::string items;
        for (const std::wstring& item : HeadlessItems(dialog, control.id))
            items += " [" + Readable(item) + "]";
        Print("control %d |%s| %s check %u selection %d%s", control.id,
              Readable(HeadlessText(dialog, control.id)).c_str(),
              HeadlessEnabled(dialog, control.id) ? "on" : "off", HeadlessCheck(dialog, control.id),
              HeadlessSelection(dialog, control.id), items.c_str());
    }
}

void PrintNews(HeadlessPort* port)
{
    const std::vector<HeadlessBox>& boxes = HeadlessBoxes();
    for (; BoxesSeen < boxes.size(); ++BoxesSeen)
        Print("box |%s| |%s| type %X", Readable(boxes[BoxesSeen].caption).c_str(),
              Readable(boxes[BoxesSeen].text).c_str(), boxes[BoxesSeen].type);
    const std::vector<HeadlessSaveDialog>& saves = HeadlessSaveDialogs();
    for (; SaveDialogsSeen < saves.size(); ++SaveDialogsSeen) {
        const HeadlessSaveDialog& save = saves[SaveDialogsSeen];
        Print("save dialog |%s| |%s| |%s| filter %u flags %X capacity %u",
              Readable(save.proposedName).c_str(), Readable(save.filters).c_str(),
              Readable(save.defaultExtension).c_str(), save.filterIndex, save.flags, save.capacity);
    }
    if (!port) return;
    for (; WritesSeen < port->writes.size(); ++WritesSeen)
        Print("sent |%s|", Readable(port->writes[WritesSeen]).c_str());
    for (; RatesSeen < port->rates.size(); ++RatesSeen) Print("rate %u", port->rates[RatesSeen]);
    for (; EscapesSeen < port->escapes.size(); ++EscapesSeen) Print("escape %u", port->escapes[EscapesSeen]);
}

void PrintRegistry()
{
    for (const std::wstring& value : HeadlessRegistryValues()) Print("registry %s", Readable(value).c_str());
}

void PrintLeftovers()
{
    Print("left: %u handles, %u keys, %u texts, %u drawing objects, %u threads, %zu libraries",
          HeadlessOpenHandles(), HeadlessOpenKeys(), HeadlessUnfreedTexts(), HeadlessGdiObjects(),
          HeadlessLiveThreads(), HeadlessLoadedLibraries().size());
}
