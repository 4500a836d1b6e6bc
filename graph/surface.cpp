// SPDX-License-Identifier: MIT
#include "graph/surface.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

Surface GraphBitmap, BackgroundColumn, TickColumn;
std::atomic<uint16_t> GraphWidth{0}, GraphHeight{0};

namespace
{

bool HasPixels(const Surface& surface)
{
    if (surface.Pixels) return true;
    SetLastError(ERROR_INVALID_HANDLE);
    return false;
}

bool HasColumn(const Surface& surface, int32_t column)
{
    return column >= 0 && column < surface.Width;
}

uint32_t* PixelAt(const Surface& surface, int32_t x, int32_t y)
{
    return surface.Pixels + static_cast<ptrdiff_t>(y) * surface.Stride + x;
}

// 0x00BBGGRR as 0x00RRGGBB.
uint32_t PixelOf(COLORREF color)
{
    return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}

// Quotient rounded down, for a positive divisor.
int64_t FloorDivide(int64_t value, int64_t divisor)
{
    const int64_t quotient = value / divisor;
    return value % divisor < 0 ? quotient - 1 : quotient;
}

} // namespace

int32_t FillColumn(const Surface& surface, int32_t column, COLORREF color)
{
    if (!HasPixels(surface)) return 0;
    if (!HasColumn(surface, column)) return 1;
    // Local copies, because the compiler must assume that writing a pixel could change `surface`.
    const int32_t height = surface.Height, stride = surface.Stride;
    const uint32_t value = PixelOf(color);
    uint32_t* pixel = PixelAt(surface, column, 0);
    for (int32_t y = 0; y < height; ++y, pixel += stride) *pixel = value;
    return 1;
}

int32_t CopyColumn(const Surface& surface, int32_t column, const Surface& pattern)
{
    if (!HasPixels(surface) || !HasPixels(pattern)) return 0;
    if (!HasColumn(surface, column)) return 1;
    const int32_t height = surface.Height, toStride = surface.Stride, fromStride = pattern.Stride;
    uint32_t* to = PixelAt(surface, column, 0);
    const uint32_t* from = pattern.Pixels;
    for (int32_t y = 0; y < height; ++y, to += toStride, from += fromStride) *to = *from;
    return 1;
}

int32_t CopyToAllColumns(const Surface& surface, const Surface& pattern)
{
    if (!HasPixels(surface) || !HasPixels(pattern)) return 0;
    for (int32_t y = 0; y < surface.Height; ++y)
        std::fill_n(PixelAt(surface, 0, y), surface.Width, *PixelAt(pattern, 0, y));
    return 1;
}

int32_t DrawLine(const Surface& surface, POINT from, POINT to, COLORREF color)
{
    if (!HasPixels(surface)) return 0;
    const bool steep = std::abs(int64_t{to.y} - from.y) > std::abs(int64_t{to.x} - from.x);
    if (steep) { // from here on x is the axis along which the line is longer
        std::swap(from.x, from.y);
        std::swap(to.x, to.y);
    }
    if (from.x > to.x) std::swap(from, to);
    const int32_t alongEnd = steep ? surface.Height : surface.Width;
    const int32_t acrossEnd = steep ? surface.Width : surface.Height;
    const ptrdiff_t alongStep = steep ? surface.Stride : 1, acrossStep = steep ? 1 : surface.Stride;

    // y = from.y + rise / length * (x - from.x), rounded half up, beginning at the first visible x.
    // `rest` / (2 * length) is the part by which y has been rounded down.
    const int32_t first = std::max<int32_t>(from.x, 0), last = std::min<int32_t>(to.x, alongEnd - 1);
    const int64_t length = std::max<int64_t>(int64_t{to.x} - from.x, 1), rise = int64_t{to.y} - from.y;
    const int64_t start = 2 * (int64_t{first} - from.x) * rise + length;
    const int64_t whole = FloorDivide(start, 2 * length);
    int64_t y = from.y + whole, rest = start - whole * 2 * length;
    for (int32_t x = first; x <= last; ++x) {
        if (y >= 0 && y < acrossEnd)
            surface.Pixels[x * alongStep + static_cast<ptrdiff_t>(y) * acrossStep] = PixelOf(color);
        rest += 2 * rise;
        if (rest >= 2 * length) {
            rest -= 2 * length;
            ++y;
        } else if (rest < 0) {
            rest += 2 * length;
            --y;
        }
    }
    return 1;
}

int32_t DrawPixel(const Surface& surface, POINT point, COLORREF color)
{
    return DrawLine(surface, point, point, color);
}
