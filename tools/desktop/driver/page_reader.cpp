// SPDX-License-Identifier: MIT
#include "driver.h"

#include <map>
#include <span>

constexpr wchar_t UnknownCharacter = 0xFFFD;

// 32-bit pixels of a rectangle, row by row, without the unused fourth byte.
struct Pixels {
    int width = 0, height = 0;
    std::vector<uint32_t> data;

    std::vector<uint32_t> Cell(int left, int top, int cellWidth, int cellHeight) const
    {
        std::vector<uint32_t> cell;
        cell.reserve(size_t(cellWidth) * size_t(cellHeight));
        for (int y = top; y < top + cellHeight; y++) {
            for (int x = left; x < left + cellWidth; x++) {
                // Pixels beyond the right or bottom edge count as background.
                const bool inside = x < width && y < height;
                cell.push_back(inside ? data[size_t(y) * size_t(width) + size_t(x)] : 0xFFFFFF);
            }
        }
        return cell;
    }
};

// A memory context with its own pixels, white at first.
class Canvas
{
public:
    Canvas(int width, int height) : Width(width), Height(height)
    {
        BITMAPINFO info = {};
        info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        Bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        if (!Bitmap) throw Refused("no bitmap");
        Bits = {static_cast<uint32_t*>(bits), size_t(width) * size_t(height)};
        Context = CreateCompatibleDC(nullptr);
        Before = SelectObject(Context, Bitmap);
        PatBlt(Context, 0, 0, width, height, WHITENESS);
    }
    ~Canvas()
    {
        SelectObject(Context, Before);
        DeleteDC(Context);
        DeleteObject(Bitmap);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    Pixels Read() const
    {
        GdiFlush();
        Pixels pixels{Width, Height, {Bits.begin(), Bits.end()}};
        for (uint32_t& pixel : pixels.data) pixel &= 0xFFFFFF;
        return pixels;
    }

    HDC Context = nullptr;

private:
    int Width, Height;
    std::span<uint32_t> Bits;
    HBITMAP Bitmap = nullptr;
    HGDIOBJ Before = nullptr;
};

// The characters of the page's font by their pixels.
struct Alphabet {
    int cellWidth = 0, cellHeight = 0;
    std::map<std::vector<uint32_t>, wchar_t> characters;
};

static Alphabet DrawAlphabet()
{
    // The font of the text page, as the desktop platform chooses it.
    LOGFONTW description = {};
    description.lfHeight = -13;
    description.lfCharSet = ANSI_CHARSET;
    description.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
    wcscpy(description.lfFaceName, L"Courier New");
    const HFONT font = CreateFontIndirectW(&description);

    Canvas canvas(64, 64);
    const HGDIOBJ before = SelectObject(canvas.Context, font);
    RECT measured = {};
    DrawTextW(canvas.Context, L"A", 1, &measured, DT_CALCRECT | DT_SINGLELINE);
    Alphabet alphabet{int(measured.right), int(measured.bottom), {}};
    for (wchar_t c = 0xFF; c >= L' '; c--) { // of characters with the same pixels, the lower one is kept
        if (c > L'~' && c < 0xA1) continue;
        RECT cell = {0, 0, alphabet.cellWidth, alphabet.cellHeight};
        PatBlt(canvas.Context, 0, 0, 64, 64, WHITENESS);
        DrawTextW(canvas.Context, &c, 1, &cell, DT_SINGLELINE | DT_NOPREFIX | DT_NOCLIP);
        alphabet.characters[canvas.Read().Cell(0, 0, alphabet.cellWidth, alphabet.cellHeight)] = c;
    }
    SelectObject(canvas.Context, before);
    DeleteObject(font);
    return alphabet;
}

static void RefuseIfCovered(HWND window, const RECT& area)
{
    for (HWND above = GetWindow(window, GW_HWNDPREV); above; above = GetWindow(above, GW_HWNDPREV)) {
        RECT other = {};
        RECT common = {};
        GetWindowRect(above, &other);
        if (IsWindowVisible(above) && IntersectRect(&common, &area, &other))
            throw Refused("another window covers the page");
    }
}

static Pixels ReadScreen(const RECT& area)
{
    const int width = int(area.right - area.left);
    const int height = int(area.bottom - area.top);
    Canvas canvas(width, height);
    const HDC screen = GetDC(nullptr);
    BitBlt(canvas.Context, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
    ReleaseDC(nullptr, screen);
    return canvas.Read();
}

std::vector<std::wstring> ReadPage(HWND window, int lines)
{
    RECT area = {};
    GetClientRect(window, &area);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&area), 2);
    RefuseIfCovered(window, area);

    static const Alphabet alphabet = DrawAlphabet();
    const Pixels screen = ReadScreen(area);
    std::vector<std::wstring> page;
    for (int line = 0; line * alphabet.cellHeight < screen.height; line++) {
        std::wstring text;
        for (int left = 0; left < screen.width; left += alphabet.cellWidth) {
            const auto found = alphabet.characters.find(
                screen.Cell(left, line * alphabet.cellHeight, alphabet.cellWidth, alphabet.cellHeight));
            text += found == alphabet.characters.end() ? UnknownCharacter : found->second;
        }
        text.erase(text.find_last_not_of(L' ') + 1);
        if (line < lines) {
            page.push_back(text);
        } else if (!text.empty()) {
            throw Refused("there is something below the page");
        }
    }
    return page;
}
