#include "console/input_reader.h"

#include <cerrno>
#include <cstring>
#include <thread>

namespace console
{

namespace
{

constexpr size_t Portion = 65536;
constexpr size_t MostWaiting = 4; // portions

} // namespace

// Read by a thread of its own, because a read of a pipe may never end. It outlives the reader when it is
// caught in one.
struct InputReader::Shared {
    std::FILE* file = nullptr;
    std::mutex mutex;
    std::condition_variable roomLeft;
    std::deque<std::string> portions;
    bool ended = false, abandoned = false;
    int error = 0;
    asio::io_context* wake = nullptr; // null once the reader is gone
};

InputReader::InputReader(EventLoop& loop, const std::string& name)
    : loop_(loop), name_(name), shared_(std::make_shared<Shared>())
{
    shared_->file = name == "-" ? stdin : std::fopen(name.c_str(), "rb");
    if (!shared_->file) Fail(FailureKind::Failed, name + ": " + std::strerror(errno));
    shared_->wake = &loop.Context();
    std::thread(ReadAll, shared_).detach();
}

InputReader::~InputReader()
{
    const std::lock_guard lock(shared_->mutex);
    shared_->abandoned = true;
    shared_->wake = nullptr;
    shared_->roomLeft.notify_one();
}

void InputReader::ReadAll(std::shared_ptr<Shared> shared)
{
    for (bool more = true; more;) {
        std::string portion(Portion, '\0');
        errno = 0;
        portion.resize(std::fread(portion.data(), 1, portion.size(), shared->file));
        const int error = std::ferror(shared->file) ? errno : 0;
        more = !portion.empty() && error == 0;
        std::unique_lock lock(shared->mutex);
        shared->roomLeft.wait(lock,
                              [&] { return shared->abandoned || shared->portions.size() < MostWaiting; });
        if (shared->abandoned) break;
        if (!portion.empty()) shared->portions.push_back(std::move(portion));
        shared->ended = !more;
        shared->error = error;
        asio::post(*shared->wake, [] {});
    }
    if (shared->file != stdin) std::fclose(shared->file);
}

bool InputReader::Next(std::string& portion)
{
    constexpr auto NoLimit = std::chrono::hours(24 * 366);
    loop_.WaitFor(
        [this] {
            const std::lock_guard lock(shared_->mutex);
            return !shared_->portions.empty() || shared_->ended;
        },
        NoLimit);
    if (loop_.IsInterrupted()) Fail(FailureKind::Interrupted, "interrupted");
    const std::lock_guard lock(shared_->mutex);
    if (!shared_->portions.empty()) {
        portion = std::move(shared_->portions.front());
        shared_->portions.pop_front();
        shared_->roomLeft.notify_one();
        bytesRead_ += portion.size();
        return true;
    }
    if (shared_->error != 0) Fail(FailureKind::Failed, name_ + ": " + std::strerror(shared_->error));
    return false;
}

} // namespace console
