// SPDX-License-Identifier: MIT
// Writes the chart of the window as a picture file.
#pragma once

#include <string>

// Makes a chart of this size with its default settings. To be called before the first byte is fed.
void StartChartPicture(int width, int height);

// Paints it like the window and writes it as a PNG file.
void WriteChartPicture(const std::string& file, int width, int height);
