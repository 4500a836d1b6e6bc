// SPDX-License-Identifier: MIT
// Reads and writes whole files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// Content of a file. No value, and "PATH: REASON" in `error`, if it cannot be read, for example because it is
// a folder.
std::optional<std::string> ReadWholeFile(const std::string& path, std::string& error);

// Writes `content` to `path`. An existing file is replaced only when the new one is complete; a device or a
// pipe is written to directly. On failure returns false, with "PATH: REASON" in `error`; the old file then
// still exists.
bool WriteWholeFile(const std::string& path, std::string_view content, std::string& error);
