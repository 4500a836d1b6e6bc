// SPDX-License-Identifier: MIT
// The chart as the window would show it, as a picture file.
#pragma once

#include <string>

// Makes a chart of that size with its default settings; before the first byte is fed.
void StartChartPicture(int width, int height);

// Paints it as the window's paint does and writes it as a PNG file.
void WriteChartPicture(const std::string& file, int width, int height);
