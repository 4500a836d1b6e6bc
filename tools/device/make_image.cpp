// SPDX-License-Identifier: MIT
// toravane-make-image PROGRAM RESOURCES IMAGE: see image.h.

#include "files.h"
#include "image.h"

#include <cstdio>

int main(int count, char** arguments)
{
    if (count != 4) {
        std::fputs("Usage: toravane-make-image PROGRAM.elf RESOURCES.res IMAGE.exe\n", stderr);
        return 2;
    }
    try {
        const device::Bytes program = device::ReadWholeFile(arguments[1]);
        const device::Image image = device::MakeImage(program, device::ReadWholeFile(arguments[2]));
        device::WriteWholeFile(arguments[3], image.file);
        std::printf("%s: %zu bytes, %u relocations, %u imports from", arguments[3], image.file.size(),
                    image.pointerCount, image.importCount);
        for (const std::string& library : image.libraries) std::printf(" %s", library.c_str());
        std::puts("");
        return 0;
    } catch (const device::Refusal& refusal) {
        std::fprintf(stderr, "%s: refused: %s\n", arguments[1], refusal.what());
        return 1;
    }
}
