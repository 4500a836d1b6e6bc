// SPDX-License-Identifier: MIT
// Pictures are drawn for a screen with 96 dots per inch, and shown larger on one with smaller dots.
#pragma once

#include "platform/platform.h"

constexpr int PictureDotsPerInch = 96;

// Pixels on the screen, rounded down, for a length or a place in a picture. Each is at least 0.
inline int OnScreen(int pixels)
{
    return pixels * DotsPerInch() / PictureDotsPerInch;
}

// The smallest length in a picture that fills so many pixels on the screen.
inline int InPicture(int screenPixels)
{
    const int dots = DotsPerInch();
    return (screenPixels * PictureDotsPerInch + dots - 1) / dots;
}
