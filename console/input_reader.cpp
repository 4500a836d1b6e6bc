// SPDX-License-Identifier: MIT
#include "console/input_reader.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "console/system.h"

namespace console
{

namespace
{

constexpr size_t Portion = 1 << 16; // data from a pipe is seen when this number of bytes has arrived

// The reading thread is never joined: reading from a pipe may never end.
asio::thread_pool& ReadingThread()
{
    static asio::thread_pool* const thread = new asio::thread_pool(1);
    return *thread;
}

} // namespace

// One portion. The reading thread uses it until `ready`, the other thread after that. Both own it, because
// the reading thread may still be waiting in a read when the InputReader is destroyed.
struct InputReader::Shared {
    std::FILE* file = nullptr;
    std::string portion;
    int error = 0;
    std::atomic<bool> ready{false};

    ~Shared()
    {
        if (file && file != stdin) std::fclose(file);
    }
};

InputReader::InputReader(EventLoop& loop, const std::string& name)
    : loop_(loop), name_(name), shared_(std::make_shared<Shared>())
{
    shared_->file = name == "-" ? stdin : OpenFile(PathOf(name), "rb");
    if (!shared_->file) Fail(FailureKind::Failed, name + ": " + std::strerror(errno));
}

bool InputReader::Next(std::string& portion)
{
    shared_->ready.store(false);
    asio::post(ReadingThread(), [shared = shared_] {
        shared->portion.resize(Portion);
        errno = 0;
        shared->portion.resize(std::fread(shared->portion.data(), 1, Portion, shared->file));
        shared->error = std::ferror(shared->file) ? errno : 0;
        shared->ready.store(true);
    });
    // Polled often at first, because files deliver immediately; pipes may take long.
    constexpr int OftenCount = 100;
    constexpr double Often = 0.001, Seldom = 0.02;
    const auto isReady = [this] { return shared_->ready.load(); };
    for (int i = 0; !loop_.WaitFor(isReady, Seconds(i < OftenCount ? Often : Seldom));) i += i < OftenCount;
    if (loop_.IsInterrupted()) Fail(FailureKind::Interrupted, "interrupted");
    portion = shared_->portion;
    bytesRead_ += portion.size();
    if (!portion.empty()) return true;
    if (shared_->error != 0) Fail(FailureKind::Failed, name_ + ": " + std::strerror(shared_->error));
    return false;
}

} // namespace console
