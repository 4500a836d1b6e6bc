// SPDX-License-Identifier: MIT
// Loads a program's image for Windows CE on ARM into the emulated memory, as the system's loader does:
// sections with their rights, base relocations, imports by name or number.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "tests/device/memory.h"

struct LoadedImage {
    GuestAddress base, entry;
    uint32_t size;
};

// Address of an import, asked for once each. A name that begins with '#' is a number.
using ImportResolver = std::function<GuestAddress(const std::string& library, const std::string& name)>;

// `base` 0: where the image wants to be. Whatever is wrong with the image is a DeviceFault.
LoadedImage LoadImage(const std::string& path, GuestAddress base, const ImportResolver& resolve);

// A resource of the image by the numbers of its type and name, in its only language.
struct ImageResource {
    GuestAddress address; // 0 if there is none
    uint32_t size;
};
ImageResource FindImageResource(const LoadedImage& image, uint32_t type, uint32_t name);
