// SPDX-License-Identifier: MIT
// Device contexts with real pixels: windows, bitmaps, and bitmaps whose memory the program shares. Text is
// drawn as a pattern that depends only on the character; text in windows is recorded, too.
#include "platform/memory/memory.h"

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <utility>

namespace memory
{

namespace
{

constexpr DWORD ObjectInUse = 170;
constexpr COLORREF NoColor = 0xFFFFFFFF; // a failed colour call
constexpr int MostPixelsAcross = 16400;  // of a chart of 16384, with the padding of its rows
constexpr int DefaultFont = 17, SystemFont = 13, FirstFont = 10, NullPen = 8, WhitePen = 6;
constexpr uintptr_t FirstObject = 0x500010, FirstStock = 0x500000 - 0x1000, FirstDc = 0x600010;
constexpr UINT WmCtlColorListBox = 0x134;
constexpr DWORD EditReadOnly = 0x800;
constexpr uint32_t White = 0xFFFFFF, ControlGrey = 0xF0F0F0;

enum class ObjectKind : uint8_t { Bitmap, Brush, Pen, Font };

struct GdiObject {
    ObjectKind kind;
    bool stock = false, hollow = false, topDown = true;
    uint32_t color = 0; // 0x00RRGGBB
    SIZE cell{};
    Picture picture{};
    uint32_t selections = 0; // device contexts that hold it
};

struct Dc {
    DWORD thread;
    HWND window; // null: memory, or the screen
    bool isMemory;
    HGDIOBJ selected[4]; // by kind
    uint32_t textColor = 0, backColor = White;
    int backMode = OPAQUE;
};

struct Surface {
    uint32_t* pixels;
    int width, height;
    bool topDown;

    uint32_t* At(int x, int y) const
    {
        if (x < 0 || y < 0 || x >= width || y >= height) return nullptr;
        return pixels + static_cast<size_t>(topDown ? y : height - 1 - y) * static_cast<size_t>(width) + x;
    }
    void Set(int x, int y, uint32_t color) const
    {
        if (uint32_t* const pixel = At(x, y)) *pixel = color;
    }
    void Fill(RECT area, uint32_t color) const
    {
        area = {std::max(0, area.left), std::max(0, area.top), std::min(width, area.right),
                std::min(height, area.bottom)};
        if (area.left >= area.right) return;
        for (int y = area.top; y < area.bottom; ++y)
            std::fill_n(At(area.left, y), area.right - area.left, color);
    }
};

std::map<HGDIOBJ, GdiObject> Objects;
std::map<HDC, Dc> Contexts;
uintptr_t NextObject = FirstObject, NextDc = FirstDc;

uint32_t Swapped(COLORREF color)
{
    return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}

HGDIOBJ Add(GdiObject object)
{
    const HGDIOBJ handle = reinterpret_cast<HGDIOBJ>(NextObject);
    NextObject += 16;
    Objects[handle] = std::move(object);
    return handle;
}

// The system's own objects, made at their first use. Number -1: the bitmap of a new memory context.
HGDIOBJ Stock(int number)
{
    const HGDIOBJ handle = reinterpret_cast<HGDIOBJ>(FirstStock + static_cast<uintptr_t>(number + 1) * 16);
    if (const auto made = Objects.find(handle); made != Objects.end()) {
        if (made->second.kind == ObjectKind::Font) made->second.cell = FontCell();
        return handle;
    }
    constexpr uint32_t brushes[] = {White, 0xC0C0C0, 0x808080, 0x404040, 0, 0};
    GdiObject object{};
    object.stock = true;
    if (number >= WHITE_BRUSH && number <= HOLLOW_BRUSH) {
        object.kind = ObjectKind::Brush;
        object.color = brushes[number];
        object.hollow = number == HOLLOW_BRUSH;
    } else if (number >= WhitePen && number <= NullPen) {
        object.kind = ObjectKind::Pen;
        object.color = number == WhitePen ? White : 0;
        object.hollow = number == NullPen;
    } else if (number >= FirstFont && number <= DefaultFont) {
        object.kind = ObjectKind::Font;
        object.cell = FontCell();
    } else if (number == -1) {
        object.kind = ObjectKind::Bitmap;
        object.picture = {1, 1, {0}};
    } else {
        return nullptr;
    }
    Objects[handle] = std::move(object);
    return handle;
}

GdiObject* FindObjectOf(HGDIOBJ handle, ObjectKind kind)
{
    const auto found = Objects.find(handle);
    return found != Objects.end() && found->second.kind == kind ? &found->second : nullptr;
}

// Colour of a brush.
uint32_t BrushColor(HBRUSH brush, uint32_t otherwise)
{
    const GdiObject* found = FindObjectOf(brush, ObjectKind::Brush);
    return found && !found->hollow ? found->color : otherwise;
}

// A context of the calling thread; otherwise null and the error.
Dc* FindDc(HDC dc)
{
    const auto found = Contexts.find(dc);
    if (found != Contexts.end() && found->second.thread == Me().id) return &found->second;
    Fail(ERROR_INVALID_HANDLE);
    return nullptr;
}

HDC NewDc(HWND window, bool isMemory)
{
    const HDC handle = reinterpret_cast<HDC>(NextDc);
    NextDc += 16;
    Contexts[handle] = {
        Me().id, window, isMemory, {Stock(-1), Stock(WHITE_BRUSH), Stock(BLACK_PEN), Stock(SystemFont)}};
    return handle;
}

void Deselect(const Dc& dc)
{
    for (const HGDIOBJ handle : dc.selected)
        if (const auto found = Objects.find(handle); found != Objects.end() && !found->second.stock)
            --found->second.selections;
}

GdiObject& Selected(const Dc& dc, ObjectKind kind)
{
    return Objects.at(dc.selected[static_cast<size_t>(kind)]);
}

Surface SurfaceOf(const Dc& dc)
{
    if (dc.isMemory) {
        GdiObject& bitmap = Selected(dc, ObjectKind::Bitmap);
        return {bitmap.picture.pixels.data(), bitmap.picture.width, bitmap.picture.height, bitmap.topDown};
    }
    Window* window = FindWin(dc.window);
    if (!window) return {nullptr, 0, 0, true};
    const SIZE size = ClientSize(*window);
    Picture& picture = window->picture;
    if (picture.width != size.cx || picture.height != size.cy)
        picture = {size.cx, size.cy,
                   std::vector<uint32_t>(static_cast<size_t>(size.cx) * static_cast<size_t>(size.cy))};
    return {picture.pixels.data(), picture.width, picture.height, true};
}

std::wstring WithoutPrefixes(std::wstring_view text, UINT format)
{
    std::wstring shown;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'&' && !(format & DT_NOPREFIX) && i + 1 < text.size()) ++i;
        if (text[i] != L'\r') shown += text[i];
    }
    return shown;
}

// Draws one line of text with its upper left corner at the place, inside `clip`; records it if it is in a
// window.
void PutText(const Dc& dc, int x, int y, const std::wstring& text, const RECT& clip)
{
    if (text.empty()) return;
    if (Window* window = FindWin(dc.window)) {
        window->texts.push_back({x, y, text});
        window->drawn.push_back(L"Text " + std::to_wstring(x) + L" " + std::to_wstring(y) + L" " + text);
    }
    if (!DrawsTexts) return;
    const Surface surface = SurfaceOf(dc);
    const SIZE cell = Selected(dc, ObjectKind::Font).cell;
    for (size_t i = 0; i < text.size(); ++i) {
        const int left = x + static_cast<int>(i) * cell.cx;
        const auto code = static_cast<uint32_t>(text[i]);
        const uint32_t pattern = code == ' ' ? 0 : (code + 1) * 2654435761u;
        for (int row = 0; row < cell.cy; ++row)
            for (int column = 0; column < cell.cx; ++column) {
                const int atX = left + column, atY = y + row;
                if (atX < clip.left || atX >= clip.right || atY < clip.top || atY >= clip.bottom) continue;
                const bool inGlyph = column < cell.cx - 1 && row > 1 && row < cell.cy - 1;
                if (inGlyph && (pattern >> ((column * 7 + row) % 32) & 1) != 0)
                    surface.Set(atX, atY, dc.textColor);
                else if (dc.backMode == OPAQUE)
                    surface.Set(atX, atY, dc.backColor);
            }
    }
}

RECT Everything(const Dc& dc)
{
    const Surface surface = SurfaceOf(dc);
    return {0, 0, surface.width, surface.height};
}

int PutLines(const Dc& dc, const std::wstring& text, RECT& area, UINT format)
{
    const SIZE cell = Selected(dc, ObjectKind::Font).cell;
    std::vector<std::wstring> lines(1);
    for (const wchar_t character : text)
        if (character == L'\n' && !(format & DT_SINGLELINE))
            lines.emplace_back();
        else
            lines.back() += character;
    size_t longest = 0;
    for (const std::wstring& line : lines) longest = std::max(longest, line.size());
    const int height = static_cast<int>(lines.size()) * cell.cy;
    if (format & DT_CALCRECT) {
        area.right = area.left + static_cast<int>(longest) * cell.cx;
        area.bottom = area.top + height;
        return height;
    }
    const bool centred = (format & DT_VCENTER) && (format & DT_SINGLELINE);
    int y = centred ? area.top + (area.bottom - area.top - height) / 2 : area.top;
    const RECT clip = format & DT_NOCLIP ? Everything(dc) : area;
    for (const std::wstring& line : lines) {
        const int width = static_cast<int>(line.size()) * cell.cx;
        const int x = format & DT_CENTER ? area.left + (area.right - area.left - width) / 2 : area.left;
        PutText(dc, x, y, line, clip);
        y += cell.cy;
    }
    return height;
}

// A filled shape with an outline; `inside` is true for the pixels of the area that belong to it.
template <typename Inside> void PutShape(const Dc& dc, const char* name, RECT area, Inside inside)
{
    if (Window* window = FindWin(dc.window)) {
        const std::string shape = std::string(name) + " " + std::to_string(area.left) + " " +
                                  std::to_string(area.top) + " " + std::to_string(area.right) + " " +
                                  std::to_string(area.bottom);
        window->shapes.push_back(shape);
        window->drawn.emplace_back(shape.begin(), shape.end());
    }
    const Surface surface = SurfaceOf(dc);
    const GdiObject &brush = Selected(dc, ObjectKind::Brush), &pen = Selected(dc, ObjectKind::Pen);
    const RECT clip = {std::max(area.left, 0), std::max(area.top, 0), std::min(area.right, surface.width),
                       std::min(area.bottom, surface.height)};
    for (int y = clip.top; y < clip.bottom; ++y)
        for (int x = clip.left; x < clip.right; ++x) {
            if (!inside(x, y)) continue;
            const bool edge =
                !inside(x - 1, y) || !inside(x + 1, y) || !inside(x, y - 1) || !inside(x, y + 1);
            const GdiObject& with = edge ? pen : brush;
            if (!with.hollow) surface.Set(x, y, with.color);
        }
}

BOOL Copy(HDC to, RECT target, HDC from, RECT source, DWORD operation)
{
    const Dc* into = FindDc(to);
    if (!into) return FALSE;
    const Surface surface = SurfaceOf(*into);
    if (operation == WHITENESS) {
        surface.Fill(target, White);
        return TRUE;
    }
    if (operation != SRCCOPY) return Fail(ERROR_INVALID_PARAMETER);
    if (Window* window = FindWin(into->window)) window->copied = true;
    const Dc* outOf = FindDc(from);
    if (!outOf) return FALSE;
    const int width = target.right - target.left, height = target.bottom - target.top;
    const int fromWidth = source.right - source.left, fromHeight = source.bottom - source.top;
    if (width < 0 || height < 0 || fromWidth < 0 || fromHeight < 0) return Fail(ERROR_INVALID_PARAMETER);
    // Through a copy, because source and target may be the same bitmap.
    Surface read = SurfaceOf(*outOf);
    const std::vector<uint32_t> pixels(read.pixels, read.pixels + static_cast<size_t>(read.width) *
                                                                      static_cast<size_t>(read.height));
    read.pixels = const_cast<uint32_t*>(pixels.data());
    for (int y = std::max(0, -target.top); y < std::min(height, surface.height - target.top); ++y)
        for (int x = std::max(0, -target.left); x < std::min(width, surface.width - target.left); ++x) {
            const int fromX = source.left + static_cast<int>(int64_t{x} * fromWidth / width);
            const int fromY = source.top + static_cast<int>(int64_t{y} * fromHeight / height);
            if (const uint32_t* const pixel = read.At(fromX, fromY))
                surface.Set(target.left + x, target.top + y, *pixel);
        }
    return TRUE;
}

HBITMAP AddBitmap(Picture picture, bool topDown)
{
    GdiObject object{};
    object.kind = ObjectKind::Bitmap;
    object.topDown = topDown;
    object.picture = std::move(picture);
    return static_cast<HBITMAP>(Add(std::move(object)));
}

bool IsSize(int width, int height)
{
    if (width >= 0 && height >= 0 && width <= MostPixelsAcross && height <= MostPixelsAcross) return true;
    return Fail(ERROR_NOT_ENOUGH_MEMORY);
}

Picture Blank(int width, int height)
{
    return {width, height, std::vector<uint32_t>(static_cast<size_t>(width) * static_cast<size_t>(height))};
}

} // namespace

HDC NewWindowDc(HWND window)
{
    return NewDc(window, false);
}

void FreeDc(HDC dc)
{
    const auto found = Contexts.find(dc);
    if (found == Contexts.end()) return;
    Deselect(found->second);
    Contexts.erase(found);
}

void FreeWindowDcs(HWND window)
{
    std::vector<HDC> gone;
    for (const auto& [handle, dc] : Contexts)
        if (dc.window == window && !dc.isMemory) gone.push_back(handle);
    for (const HDC dc : gone) FreeDc(dc);
}

void FillWindow(HDC dc, HBRUSH brush)
{
    const Dc* found = FindDc(dc);
    if (!found) return;
    const GdiObject* object = FindObjectOf(brush, ObjectKind::Brush);
    if (!object || !object->hollow) SurfaceOf(*found).Fill(Everything(*found), BrushColor(brush, White));
}

void PaintControl(HWND control)
{
    Window* window = FindWin(control);
    Validate(*window);
    window->texts.clear();
    window->drawn.clear();
    UINT message = WM_CTLCOLORSTATIC;
    uint32_t background = ControlGrey;
    const bool fixed =
        (window->style & WS_DISABLED) || (window->kind == Kind::Edit && (window->style & EditReadOnly));
    if (window->kind == Kind::Button) message = WM_CTLCOLORBTN;
    if (window->kind == Kind::List) message = WmCtlColorListBox;
    if ((window->kind == Kind::Edit || window->kind == Kind::Combo) && !fixed) message = WM_CTLCOLOREDIT;
    if (message == WM_CTLCOLOREDIT || message == WmCtlColorListBox) background = White;

    const HDC dc = NewWindowDc(control);
    const LRESULT brush = window->parent ? Send(window->parent, message, reinterpret_cast<WPARAM>(dc),
                                                reinterpret_cast<LPARAM>(control))
                                         : 0;
    window = FindWin(control);
    Dc* found = window ? FindDc(dc) : nullptr;
    if (found) {
        const GdiObject* given = FindObjectOf(reinterpret_cast<HBRUSH>(brush), ObjectKind::Brush);
        window->background = given && !given->hollow ? static_cast<int32_t>(given->color) : -1;
        SurfaceOf(*found).Fill(Everything(*found), BrushColor(reinterpret_cast<HBRUSH>(brush), background));
        found->backMode = TRANSPARENT;
        RECT area = Everything(*found);
        PutLines(*found, WithoutPrefixes(window->text, 0), area, DT_LEFT);
    }
    FreeDc(dc);
}

uint32_t GdiObjectCount()
{
    const auto count =
        std::count_if(Objects.begin(), Objects.end(), [](const auto& o) { return !o.second.stock; });
    return static_cast<uint32_t>(count) + static_cast<uint32_t>(Contexts.size());
}

const Picture& PictureOf(HWND window)
{
    const HDC dc = NewWindowDc(window);
    SurfaceOf(*FindDc(dc)); // makes it as large as the window
    FreeDc(dc);
    return FindWin(window)->picture;
}

void ResetDrawing()
{
    Objects.clear();
    Contexts.clear();
    NextObject = FirstObject;
    NextDc = FirstDc;
}

} // namespace memory

using namespace memory;

HFONT CreateTextPageFont()
{
    return nullptr;
} // the screen font has a fixed pitch already

HDC BeginPaint(HWND window, PAINTSTRUCT* paint)
{
    *paint = {};
    Window* found = NeedWindow(window);
    const bool fails = Fails(Call::BeginPaint);
    if (!found) return nullptr;
    if (found->thread != &Me()) return Fail(ERROR_ACCESS_DENIED), nullptr;
    const bool erase = found->erase;
    paint->rcPaint = found->update;
    Validate(*found); // also after a failure; otherwise the window would be asked to paint for ever
    if (fails) return nullptr;
    const RECT& area = paint->rcPaint;
    const bool isWhole = area.top <= 0 && area.bottom >= ClientSize(*found).cy;
    std::erase_if(found->texts, [&area, isWhole](const TextOut& text) {
        return isWhole || (text.y >= area.top && text.y < area.bottom);
    });
    found->shapes.clear();
    found->drawn.clear();
    found->copied = false;
    ++found->paints;
    paint->hdc = NewWindowDc(window);
    paint->fErase = erase && Send(window, WM_ERASEBKGND, reinterpret_cast<WPARAM>(paint->hdc), 0) == 0;
    return paint->hdc;
}

BOOL EndPaint(HWND, const PAINTSTRUCT* paint)
{
    PlatformCall();
    FreeDc(paint->hdc);
    return TRUE;
}

HDC GetDC(HWND window)
{
    if (Fails(Call::GetDC) || (window && !NeedWindow(window))) return nullptr;
    return NewDc(window, false);
}

int ReleaseDC(HWND, HDC dc)
{
    if (Fails(Call::ReleaseDC)) return 0;
    const Dc* found = FindDc(dc);
    if (!found || found->isMemory) return Fail(ERROR_INVALID_HANDLE);
    FreeDc(dc);
    return 1;
}

HDC CreateCompatibleDC(HDC dc)
{
    if (Fails(Call::CreateCompatibleDC) || (dc && !FindDc(dc))) return nullptr;
    return NewDc(nullptr, true);
}

BOOL DeleteDC(HDC dc)
{
    if (Fails(Call::DeleteDC)) return FALSE;
    const Dc* found = FindDc(dc);
    if (!found || !found->isMemory) return Fail(ERROR_INVALID_HANDLE);
    FreeDc(dc);
    return TRUE;
}

HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height)
{
    if (Fails(Call::CreateCompatibleBitmap) || !FindDc(dc) || !IsSize(width, height)) return nullptr;
    return AddBitmap(Blank(std::max(1, width), std::max(1, height)), true);
}

HBITMAP CreateDIBSection(HDC, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section, DWORD)
{
    if (bits) *bits = nullptr;
    if (Fails(Call::CreateDIBSection)) return nullptr;
    const BITMAPINFOHEADER& header = info->bmiHeader;
    const int height = std::abs(header.biHeight);
    if (header.biSize != sizeof header || header.biBitCount != 32 || header.biPlanes != 1 ||
        header.biCompression != BI_RGB || usage != DIB_RGB_COLORS || section || !bits ||
        header.biWidth <= 0 || height == 0)
        return Fail(ERROR_INVALID_PARAMETER), nullptr;
    if (!IsSize(header.biWidth, height)) return nullptr;
    const HBITMAP bitmap = AddBitmap(Blank(header.biWidth, height), header.biHeight < 0);
    *bits = Objects.at(bitmap).picture.pixels.data();
    return bitmap;
}

HBITMAP LoadBitmapW(HINSTANCE, const wchar_t* name)
{
    Picture picture;
    if (Fails(Call::LoadBitmapW) || !FindPicture(name, picture)) return nullptr;
    return AddBitmap(std::move(picture), true);
}

HGDIOBJ SelectObject(HDC dc, HGDIOBJ object)
{
    if (Fails(Call::SelectObject)) return nullptr;
    Dc* found = FindDc(dc);
    const auto entry = Objects.find(object);
    if (!found) return nullptr;
    if (entry == Objects.end()) return Fail(ERROR_INVALID_HANDLE), nullptr;
    GdiObject& selected = entry->second;
    HGDIOBJ& place = found->selected[static_cast<size_t>(selected.kind)];
    const bool elsewhere = selected.selections != 0 && place != object;
    if (selected.kind == ObjectKind::Bitmap && (!found->isMemory || elsewhere))
        return Fail(ERROR_INVALID_PARAMETER), nullptr; // a bitmap can be in one memory context only
    const HGDIOBJ before = place;
    if (GdiObject& old = Objects.at(before); !old.stock) --old.selections;
    if (!selected.stock) ++selected.selections;
    place = object;
    return before;
}

BOOL DeleteObject(HGDIOBJ object)
{
    if (Fails(Call::DeleteObject)) return FALSE;
    const auto found = Objects.find(object);
    if (found == Objects.end()) return Fail(ERROR_INVALID_HANDLE);
    if (found->second.stock) return TRUE;
    if (found->second.selections != 0) return Fail(ObjectInUse);
    Objects.erase(found);
    return TRUE;
}

HGDIOBJ GetStockObject(int object)
{
    if (Fails(Call::GetStockObject)) return nullptr;
    const HGDIOBJ stock = object < 0 ? nullptr : Stock(object);
    if (!stock) Fail(ERROR_INVALID_PARAMETER);
    return stock;
}

HBRUSH CreateSolidBrush(COLORREF color)
{
    if (Fails(Call::CreateSolidBrush)) return nullptr;
    GdiObject object{};
    object.kind = ObjectKind::Brush;
    object.color = Swapped(color);
    return static_cast<HBRUSH>(Add(std::move(object)));
}

HFONT CreateFontIndirectW(const LOGFONTW* font)
{
    if (Fails(Call::CreateFontIndirectW)) return nullptr;
    const SIZE usual = FontCell();
    GdiObject object{};
    object.kind = ObjectKind::Font;
    object.cell = {font->lfWidth != 0 ? std::abs(font->lfWidth) : usual.cx,
                   font->lfHeight != 0 ? std::abs(font->lfHeight) : usual.cy};
    return static_cast<HFONT>(Add(std::move(object)));
}

COLORREF SetTextColor(HDC dc, COLORREF color)
{
    if (Fails(Call::SetTextColor)) return NoColor;
    Dc* found = FindDc(dc);
    return found ? Swapped(std::exchange(found->textColor, Swapped(color))) : NoColor;
}

COLORREF SetBkColor(HDC dc, COLORREF color)
{
    if (Fails(Call::SetBkColor)) return NoColor;
    Dc* found = FindDc(dc);
    return found ? Swapped(std::exchange(found->backColor, Swapped(color))) : NoColor;
}

int SetBkMode(HDC dc, int mode)
{
    if (Fails(Call::SetBkMode)) return 0;
    Dc* found = FindDc(dc);
    return found ? std::exchange(found->backMode, mode) : 0;
}

BOOL BitBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY, DWORD operation)
{
    if (Fails(Call::BitBlt)) return FALSE;
    return Copy(to, {x, y, x + width, y + height}, from, {fromX, fromY, fromX + width, fromY + height},
                operation);
}

BOOL StretchBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY, int fromWidth,
                int fromHeight, DWORD operation)
{
    if (Fails(Call::StretchBlt)) return FALSE;
    return Copy(to, {x, y, x + width, y + height}, from,
                {fromX, fromY, fromX + fromWidth, fromY + fromHeight}, operation);
}

BOOL Ellipse(HDC dc, int left, int top, int right, int bottom)
{
    if (Fails(Call::Ellipse)) return FALSE;
    const Dc* found = FindDc(dc);
    if (!found) return FALSE;
    PutShape(*found, "Ellipse", {left, top, right, bottom}, [=](int x, int y) {
        const double acrossX = (2.0 * x + 1 - left - right) / std::max(1, right - left);
        const double acrossY = (2.0 * y + 1 - top - bottom) / std::max(1, bottom - top);
        return acrossX * acrossX + acrossY * acrossY <= 1.0;
    });
    return TRUE;
}

BOOL Rectangle(HDC dc, int left, int top, int right, int bottom)
{
    if (Fails(Call::Rectangle)) return FALSE;
    const Dc* found = FindDc(dc);
    if (!found) return FALSE;
    PutShape(*found, "Rectangle", {left, top, right, bottom},
             [=](int x, int y) { return x >= left && x < right && y >= top && y < bottom; });
    return TRUE;
}

int FillRect(HDC dc, const RECT* rectangle, HBRUSH brush)
{
    if (Fails(Call::FillRect)) return 0;
    const Dc* found = FindDc(dc);
    if (!found) return 0;
    const GdiObject* object = FindObjectOf(brush, ObjectKind::Brush);
    if (!object && (!brush || !IsNumber(reinterpret_cast<const wchar_t*>(brush))))
        return Fail(ERROR_INVALID_HANDLE);
    if (!object || !object->hollow) SurfaceOf(*found).Fill(*rectangle, BrushColor(brush, White));
    return 1;
}

int DrawTextW(HDC dc, const wchar_t* text, int count, RECT* rectangle, UINT format)
{
    if (Fails(Call::DrawTextW)) return 0;
    const Dc* found = FindDc(dc);
    if (!found) return 0;
    const size_t length = count < 0 ? std::wcslen(text) : static_cast<size_t>(count);
    return PutLines(*found, WithoutPrefixes({text, length}, format), *rectangle, format);
}

BOOL ExtTextOutW(HDC dc, int x, int y, UINT options, const RECT* rectangle, const wchar_t* text, UINT count,
                 const int*)
{
    if (Fails(Call::ExtTextOutW)) return FALSE;
    const Dc* found = FindDc(dc);
    if (!found) return FALSE;
    if ((options & ETO_OPAQUE) && rectangle) SurfaceOf(*found).Fill(*rectangle, found->backColor);
    PutText(*found, x, y, std::wstring(text ? text : L"", text ? count : 0), Everything(*found));
    return TRUE;
}
