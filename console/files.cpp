// SPDX-License-Identifier: MIT
#include "console/files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

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

// Follows symbolic links, also to a file that does not exist yet.
fs::path FollowLinks(fs::path path)
{
    constexpr int MostLinks = 40; // Linux follows no more
    std::error_code error;
    for (int i = 0; i < MostLinks && fs::is_symlink(path, error); ++i) {
        const fs::path next = fs::read_symlink(path, error);
        if (error) break;
        path = path.parent_path() / next; // an absolute path stays as it is
    }
    return path;
}

} // namespace

NewFile::NewFile(const std::string& name) : name_(name), target_(PathOf(name))
{
    std::error_code error;
    const fs::file_status status = fs::status(target_, error);
    if (!fs::status_known(status)) FailToWrite(error.message());
    const fs::path real = FollowLinks(target_);
    if (!fs::exists(status)) {
        target_ = real;
        OpenDraft(fs::perms::all); // of which the user's mask leaves the usual ones
        return;
    }
    // An open file that has lost its name can be reached by a link (/dev/stdout), but not be replaced.
    if (!fs::is_regular_file(status) || !fs::equivalent(target_, real, error)) {
        file_ = OpenFile(target_, "wb");
        if (!file_) FailToWrite(std::strerror(errno));
        return;
    }
    target_ = real;
    // A file that is protected from writing is also protected from being replaced.
    if (!File(OpenFile(target_, "r+b"))) FailToWrite(std::strerror(errno));
    OpenDraft(status.permissions());
    fs::permissions(draft_, status.permissions(), error); // the user's mask has removed some
}

NewFile::~NewFile()
{
    if (file_) std::fclose(file_);
    std::error_code none;
    if (!draft_.empty()) fs::remove(draft_, none);
}

void NewFile::OpenDraft(fs::perms permissions)
{
    constexpr int MostDrafts = 100;
    for (int i = 1; !file_; ++i) {
        fs::path draft = target_;
        draft += i == 1 ? ".part" : ".part" + std::to_string(i);
        file_ = OpenNewFile(draft, permissions);
        if (file_)
            draft_ = draft;
        else if (errno != EEXIST || i == MostDrafts)
            FailToWrite(std::strerror(errno));
    }
}

void NewFile::Write(std::string_view content)
{
    if (std::fwrite(content.data(), 1, content.size(), file_) != content.size())
        FailToWrite(std::strerror(errno));
}

void NewFile::Finish()
{
    if (std::fclose(std::exchange(file_, nullptr)) != 0) FailToWrite(std::strerror(errno));
    if (draft_.empty()) return;
    std::error_code error;
    fs::rename(draft_, target_, error);
    if (error) FailToWrite(error.message());
    draft_.clear();
}

void NewFile::FailToWrite(const std::string& reason) const
{
    Fail(FailureKind::Failed, name_ + ": " + reason);
}

bool IsOrdinaryFile(const std::string& name)
{
    std::error_code none;
    return fs::is_regular_file(PathOf(name), none);
}

void WriteWholeFile(const std::string& name, std::string_view content)
{
    NewFile file(name);
    file.Write(content);
    file.Finish();
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
