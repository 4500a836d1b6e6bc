// SPDX-License-Identifier: MIT
#include "files.h"

#include "common/files.h"

namespace device
{

Bytes ReadWholeFile(const char* path)
{
    std::string error;
    const auto content = ::ReadWholeFile(path, error);
    if (!content) throw Refusal(error);
    return Bytes(content->begin(), content->end());
}

void WriteWholeFile(const char* path, std::span<const uint8_t> bytes)
{
    std::string error;
    const std::string_view content(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (!::WriteWholeFile(path, content, error)) throw Refusal(error);
}

} // namespace device
