// SPDX-License-Identifier: MIT
// Whole files in and out.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// Everything in a file. Nothing and "PATH: REASON" in `error` when it cannot be read, as with a folder.
std::optional<std::string> ReadWholeFile(const std::string& path, std::string& error);

// Puts `content` at `path`. A file that is there is replaced only when the new one is complete; a device or a
// pipe is written to and stays. False and "PATH: REASON" in `error` on failure; what was at `path` is still
// there then.
bool WriteWholeFile(const std::string& path, std::string_view content, std::string& error);
