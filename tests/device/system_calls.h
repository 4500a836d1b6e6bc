// SPDX-License-Identifier: MIT
// The calls that the program imports: each is answered by the headless platform, or, where the device's
// system has a call of another form or the platform none, by one of a few routines of its own.
#pragma once

#include <string>

#include "tests/device/image.h"
#include "tests/device/memory.h"

// Address of an import; DeviceFault if nothing answers it. For LoadImage.
GuestAddress ResolveImport(const std::string& library, const std::string& name);

// Once the image is loaded: where its resources are found.
void ServeResourcesOf(const LoadedImage& image);

// The page that the system shows every process, as far as the program reads it: the number of its thread.
void MapKernelPage();
