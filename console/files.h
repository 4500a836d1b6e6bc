// SPDX-License-Identifier: MIT
// Files that the program reads and writes as a whole.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace console
{

// A file that gets its name, and replaces an older file of that name, only when it is complete. Until then
// the content is in a draft beside it, under a name that nobody uses; a draft that is not finished is
// removed. The new file has the permissions of the older one. If the name is a symbolic link, the file that
// it leads to is replaced. Devices and pipes are written to directly.
//
// All routines throw Failure of the kind Failed.
class NewFile
{
public:
    explicit NewFile(const std::string& name);
    ~NewFile();
    NewFile(const NewFile&) = delete;

    void Write(std::string_view content);

    // Completes the file; nothing can be written afterwards.
    void Finish();

private:
    void OpenDraft(std::filesystem::perms permissions);
    [[noreturn]] void FailToWrite(const std::string& reason) const;

    std::string name_;
    std::filesystem::path target_, draft_; // no draft: the target is written to directly, or is complete
    std::FILE* file_ = nullptr;
};

// True if there is a file whose content a new file would replace.
bool IsOrdinaryFile(const std::string& name);

// Writes a whole file, as NewFile does.
void WriteWholeFile(const std::string& name, std::string_view content);

// Reads a whole file of at most `limit` bytes; "-" is standard input. Throws Failure of the kind Failed, or
// Usage for a file that cannot be opened or is longer.
std::string ReadWholeFile(const std::string& name, size_t limit);

} // namespace console
