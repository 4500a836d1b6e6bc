// SPDX-License-Identifier: MIT
#include "chart_picture.h"

#include <zlib.h>

#include <cstdint>
#include <string_view>

#include "common/files.h"
#include "graph/chart.h"
#include "graph/surface.h"
#include "options.h"

namespace
{

// A picture is packed with zlib only: Debian has no PNG library for Windows, where this tool also runs.

void AppendNumber(std::string& bytes, uint32_t number)
{
    for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(number >> shift);
}

void AppendChunk(std::string& picture, std::string_view name, std::string_view content)
{
    AppendNumber(picture, static_cast<uint32_t>(content.size()));
    const size_t start = picture.size();
    picture.append(name).append(content);
    const auto* const checked = reinterpret_cast<const Bytef*>(picture.data() + start);
    AppendNumber(picture, static_cast<uint32_t>(crc32_z(0, checked, picture.size() - start)));
}

// A PNG picture of pixels 0x00RRGGBB. Empty when there is no memory for it.
std::string MakePng(const uint32_t* pixels, int width, int height)
{
    std::string rows;
    rows.reserve((static_cast<size_t>(width) * 3 + 1) * static_cast<size_t>(height));
    for (int y = 0; y < height; ++y) {
        rows += '\0'; // no filter
        for (int x = 0; x < width; ++x, ++pixels)
            for (const int shift : {16, 8, 0}) rows += static_cast<char>(*pixels >> shift);
    }
    uLongf size = compressBound(static_cast<uLong>(rows.size()));
    std::string packed(size, '\0');
    if (compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(rows.data()),
                 static_cast<uLong>(rows.size())) != Z_OK)
        return {};
    packed.resize(size);

    std::string head;
    AppendNumber(head, static_cast<uint32_t>(width));
    AppendNumber(head, static_cast<uint32_t>(height));
    head.append("\x08\x02\0\0\0", 5); // 8 bits each of red, green and blue; not interlaced
    std::string picture = "\x89PNG\r\n\x1A\n";
    AppendChunk(picture, "IHDR", head);
    AppendChunk(picture, "IDAT", packed);
    AppendChunk(picture, "IEND", {});
    return picture;
}

} // namespace

void StartChartPicture(int width, int height)
{
    CreateChart(nullptr, width, height);
    if (!GraphBitmap.Pixels) EndWithError("no memory for the chart");
}

void WriteChartPicture(const std::string& file, int width, int height)
{
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    HDC window = CreateCompatibleDC(nullptr);
    HBITMAP bitmap = CreateDIBSection(window, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!window || !bitmap) EndWithError("no memory for the picture");
    const HGDIOBJ before = SelectObject(window, bitmap);
    PaintChart(window, 0);

    const std::string picture = MakePng(static_cast<const uint32_t*>(bits), width, height);
    SelectObject(window, before);
    DeleteObject(bitmap);
    DeleteDC(window);
    if (picture.empty()) EndWithError("no memory for the picture");
    std::string error;
    if (!WriteWholeFile(file, picture, error)) EndWithError(error);
}
