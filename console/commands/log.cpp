// SPDX-License-Identifier: MIT
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "console/commands/commands.h"
#include "console/finder.h"
#include "console/for_option.h"
#include "console/remembered_rate.h"
#include "console/system.h"

namespace console
{

namespace
{

namespace fs = std::filesystem;

struct Arguments {
    std::string file;
    ForOption duration;
    bool force = false, append = false;
};

// The log: a file, or standard output.
class LogFile
{
public:
    LogFile(Output& output, const Arguments& arguments)
        : output_(output), name_(arguments.file), beginsAnew_(arguments.force)
    {
        if (name_ == "-") return;
        exists_ = fs::exists(PathOf(name_), none_);
        if (exists_ && !arguments.force && !arguments.append)
            Fail(FailureKind::Usage,
                 name_ + ": exists already; --append goes on with it, --force begins it anew");
    }

    // Called when the port is open, so that no file is created without a port. Older content stays until the
    // first byte has come.
    void Open()
    {
        if (name_ == "-") return;
        file_ = OpenFile(PathOf(name_), "ab");
        if (!file_) FailToWrite(std::strerror(errno));
        place_ = fs::canonical(PathOf(name_), none_);
        std::setvbuf(file_, nullptr, _IONBF, 0); // received bytes reach the file immediately
    }

    ~LogFile()
    {
        if (file_) std::fclose(file_);
        RemoveIfEmpty();
    }

    LogFile(const LogFile&) = delete;

    void Write(std::span<const uint8_t> bytes)
    {
        if (bytes.empty()) return;
        if (std::exchange(beginsAnew_, false)) RemoveOldContent();
        if (!file_) {
            output_.Raw({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        } else if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) {
            FailToWrite(std::strerror(errno));
        }
        written_ += bytes.size();
    }

    void Close()
    {
        if (file_ && std::fclose(std::exchange(file_, nullptr)) != 0) FailToWrite(std::strerror(errno));
    }

    uint64_t Written() const { return written_; }

private:
    // Devices and pipes have none.
    void RemoveOldContent()
    {
        std::error_code error;
        if (file_ && fs::is_regular_file(place_, none_)) fs::resize_file(place_, 0, error);
        if (error) FailToWrite(error.message());
    }

    // An empty file of this run would only make the next one fail.
    void RemoveIfEmpty()
    {
        if (!place_.empty() && !exists_ && fs::is_empty(place_, none_)) fs::remove(place_, none_);
    }

    [[noreturn]] void FailToWrite(const std::string& reason) const
    {
        Fail(FailureKind::Failed, name_ + ": " + reason);
    }

    Output& output_;
    std::string name_;
    fs::path place_; // of the open file; the name may be a symbolic link
    bool beginsAnew_, exists_ = false;
    std::error_code none_;
    std::FILE* file_ = nullptr;
    uint64_t written_ = 0;
};

// Opens the port and finds the rate. The bytes received at that rate during the search come first in the log.
class Recording
{
public:
    Recording(Context& context, LogFile& log)
        : context_(context),
          log_(log),
          port_(ChoosePort(context.options)),
          remembered_(RememberedRate(port_)),
          firstRate_(context.options.rate.value_or(remembered_.value_or(DefaultRate))),
          session_(context, port_, firstRate_)
    {
        listener_.bytes = [this](std::span<const uint8_t> bytes) { Take(bytes); };
    }

    void FindRate()
    {
        if (!context_.options.rate) {
            searching_ = true;
            if (const auto found = Search(session_, {firstRate_})) {
                RememberRate(port_, found->rate);
            } else {
                early_.clear(); // noise at some rate: the log gets that of the first rate
                session_.SetRate(firstRate_);
            }
            searching_ = false;
        }
        log_.Write(std::exchange(early_, {}));
    }

    bool WaitFor(Duration limit) { return session_.WaitFor({}, limit); }

    const std::string& Port() const { return port_; }

private:
    static constexpr uint32_t DefaultRate = 4800;

    void Take(std::span<const uint8_t> bytes)
    {
        if (!searching_) {
            log_.Write(bytes);
            return;
        }
        if (earlyRate_ != session_.Rate()) early_.clear();
        earlyRate_ = session_.Rate();
        early_.insert(early_.end(), bytes.begin(), bytes.end());
    }

    Context& context_;
    LogFile& log_;
    std::string port_;
    std::optional<uint32_t> remembered_;
    uint32_t firstRate_, earlyRate_ = 0;
    bool searching_ = false;
    std::vector<uint8_t> early_; // received at earlyRate_ during the search: a few seconds of data at most
    Session session_;
    Listener listener_;
};

void Record(Context& context, const Arguments& arguments, LogFile& log)
{
    const Duration limit = arguments.duration.Limit();
    const bool showsProgress = ErrorIsTerminal() && !context.options.quiet;
    Recording recording(context, log);
    log.Open();
    recording.FindRate();
    const Clock::time_point begin = Clock::now();
    constexpr Duration ProgressInterval = std::chrono::seconds(1);
    for (;;) {
        const Duration passed = Clock::now() - begin;
        if (passed >= limit) break;
        recording.WaitFor(std::min(ProgressInterval, limit - passed));
        if (showsProgress)
            std::fprintf(stderr, "\r%llu bytes in %lld s ", static_cast<unsigned long long>(log.Written()),
                         static_cast<long long>(
                             std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begin).count()));
    }
    if (log.Written() == 0)
        Fail(FailureKind::Silent,
             recording.Port() + ": no byte: is the receiver on, and its line the right one?");
}

void Log(Context& context, const Arguments& arguments)
{
    if (arguments.file == "-") RefuseJson(context, "log -");
    if (arguments.force && arguments.append) Fail(FailureKind::Usage, "either --force or --append");
    if (context.options.dryRun) return; // it sends nothing
    LogFile log(context.output, arguments);
    const bool endsLine = ErrorIsTerminal() && !context.options.quiet;
    try {
        Record(context, arguments, log);
        log.Close();
    } catch (const Failure&) {
        context.output.object["bytes"] = log.Written();
        if (endsLine) std::fputc('\n', stderr);
        throw;
    }
    if (endsLine) std::fputc('\n', stderr);
    context.output.object["bytes"] = log.Written();
}

} // namespace

Action DefineLog(Parser& parser)
{
    const auto arguments = std::make_shared<Arguments>();
    parser.Option("FILE", arguments->file, "file to write, - for standard output").Required();
    arguments->duration.Define(parser);
    parser.Flag("--force", arguments->force, "begin a file anew that exists");
    parser.Flag("--append", arguments->append, "go on with a file that exists");
    return [arguments](Context& context) { Log(context, *arguments); };
}

} // namespace console
