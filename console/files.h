// SPDX-License-Identifier: MIT
// Files that the program writes.
#pragma once

#include <string>
#include <string_view>

namespace console
{

// Writes a whole file. An existing file is replaced only when the new one is complete. Throws Failure of the
// kind Failed.
void WriteWholeFile(const std::string& name, std::string_view content);

// Reads a whole file of at most `limit` bytes; "-" is standard input. Throws Failure of the kind Failed, or
// Usage for a file that cannot be opened or is longer.
std::string ReadWholeFile(const std::string& name, size_t limit);

} // namespace console
