// SPDX-License-Identifier: MIT
#include "console/files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "console/result.h"
#include "console/system.h"

namespace console
{

namespace
{

namespace fs = std::filesystem;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

void WriteTo(const fs::path& place, const std::string& name, std::string_view content)
{
    File file(OpenFile(place, "wb"));
    bool written = file && std::fwrite(content.data(), 1, content.size(), file.get()) == content.size();
    written = written && std::fflush(file.get()) == 0;
    const int error = errno;
    if (file && std::fclose(file.release()) != 0) written = false;
    if (!written) Fail(FailureKind::Failed, name + ": " + std::strerror(error));
}

} // namespace

void WriteWholeFile(const std::string& name, std::string_view content)
{
    std::error_code error;
    const fs::path target = PathOf(name);
    // Devices, pipes and links are written to directly, not replaced.
    const fs::file_status status = fs::symlink_status(target, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        WriteTo(target, name, content);
        return;
    }
    const fs::path draft = PathOf(name + ".new");
    try {
        WriteTo(draft, name, content);
    } catch (const Failure&) {
        fs::remove(draft, error);
        throw;
    }
    fs::rename(draft, target, error);
    if (!error) return;
    const std::string reason = error.message();
    fs::remove(draft, error);
    Fail(FailureKind::Failed, name + ": " + reason);
}

std::string ReadWholeFile(const std::string& name, size_t limit)
{
    const bool isInput = name == "-";
    File file(isInput ? nullptr : OpenFile(PathOf(name), "rb"));
    if (!isInput && !file) Fail(FailureKind::Usage, name + ": " + std::strerror(errno));
    std::FILE* const stream = isInput ? stdin : file.get();
    std::string content;
    char buffer[4096];
    while (const size_t count = std::fread(buffer, 1, sizeof buffer, stream)) {
        content.append(buffer, count);
        if (content.size() > limit) Fail(FailureKind::Usage, name + ": too long");
    }
    if (std::ferror(stream)) Fail(FailureKind::Failed, name + ": " + std::strerror(errno));
    return content;
}

} // namespace console
