// SPDX-License-Identifier: MIT
#include "chart_picture.h"

#include <png.h>

#include <cstdint>
#include <vector>

#include "common/files.h"
#include "graph/chart.h"
#include "graph/surface.h"
#include "options.h"

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

    const uint32_t* const pixels = static_cast<const uint32_t*>(bits); // 0x00RRGGBB
    std::vector<png_byte> colors;
    for (size_t i = 0; i < static_cast<size_t>(width) * static_cast<size_t>(height); ++i)
        for (const int shift : {16, 8, 0}) colors.push_back(static_cast<png_byte>(pixels[i] >> shift));
    SelectObject(window, before);
    DeleteObject(bitmap);
    DeleteDC(window);

    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::string content(size, '\0');
    if (!png_image_write_to_memory(&image, content.data(), &size, 0, colors.data(), 0, nullptr))
        EndWithError(file + ": " + image.message);
    std::string error;
    if (!WriteWholeFile(file, std::string_view(content).substr(0, size), error)) EndWithError(error);
}
