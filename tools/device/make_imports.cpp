// SPDX-License-Identifier: MIT
// toravane-make-imports LIST SOURCE: see import_stubs.h.

#include "files.h"
#include "import_stubs.h"

#include <cstdio>

int main(int count, char** arguments)
{
    if (count != 3) {
        std::fputs("Usage: toravane-make-imports LIST.exports SOURCE.s\n", stderr);
        return 2;
    }
    try {
        const device::Bytes list = device::ReadWholeFile(arguments[1]);
        const std::string source = device::MakeImportStubs(std::string(list.begin(), list.end()));
        device::WriteWholeFile(arguments[2], device::Bytes(source.begin(), source.end()));
        return 0;
    } catch (const device::Refusal& refusal) {
        std::fprintf(stderr, "%s: refused: %s\n", arguments[1], refusal.what());
        return 1;
    }
}
