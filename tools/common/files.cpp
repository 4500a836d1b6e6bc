// SPDX-License-Identifier: MIT
#include "common/files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace
{

namespace fs = std::filesystem;

std::string Reason(const std::string& path)
{
    return path + ": " + std::strerror(errno);
}

bool Write(const std::string& path, std::string_view content)
{
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
    const bool whole = std::fwrite(content.data(), 1, content.size(), file) == content.size();
    return (std::fclose(file) == 0) && whole;
}

// Names are UTF-8 everywhere; on Windows, a path made from plain characters would be read in another
// encoding.
fs::path PathOf(const std::string& name)
{
    return std::u8string(name.begin(), name.end());
}

std::string NameOf(const fs::path& path)
{
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

// An unused name in the file's folder.
fs::path NameBeside(const fs::path& file)
{
    std::error_code error;
    fs::path name;
    int number = 0;
    do {
        name = file;
        name += ".part" + std::to_string(++number);
    } while (fs::exists(fs::symlink_status(name, error)));
    return name;
}

} // namespace

std::optional<std::string> ReadWholeFile(const std::string& path, std::string& error)
{
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (!file) {
        error = Reason(path);
        return std::nullopt;
    }
    std::string content;
    char part[65536];
    while (const size_t count = std::fread(part, 1, sizeof part, file)) content.append(part, count);
    const bool failed = std::ferror(file);
    if (failed) error = Reason(path);
    std::fclose(file);
    if (failed) return std::nullopt;
    return content;
}

bool WriteWholeFile(const std::string& path, std::string_view content, std::string& error)
{
    std::error_code code;
    const fs::file_status there = fs::status(PathOf(path), code);
    if (fs::exists(there) && !fs::is_regular_file(there)) {
        if (Write(path, content)) return true;
        error = Reason(path);
        return false;
    }
    // The file itself, not a link to it, is replaced.
    const fs::path target = fs::exists(there) ? fs::canonical(PathOf(path), code) : PathOf(path);
    const fs::path part = NameBeside(target);
    if (!Write(NameOf(part), content)) {
        error = Reason(path);
        fs::remove(part, code);
        return false;
    }
    if (fs::exists(there)) fs::permissions(part, there.permissions(), code);
    fs::rename(part, target, code);
    if (!code) return true;
    error = path + ": " + code.message();
    fs::remove(part, code);
    return false;
}
