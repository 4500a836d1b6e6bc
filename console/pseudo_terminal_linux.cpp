// SPDX-License-Identifier: MIT
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include "console/pseudo_terminal.h"
#include "console/result.h"

namespace console
{

namespace
{

// While no program has the terminal open, each read of its other side fails immediately, so it is polled at
// intervals.
constexpr auto PresenceInterval = std::chrono::milliseconds(100);

[[noreturn]] void FailWith(const std::string& what)
{
    Fail(FailureKind::Failed, what + ": " + std::strerror(errno));
}

class LinuxTerminal : public PseudoTerminal
{
public:
    LinuxTerminal(asio::io_context& context, const std::string& link,
                  std::function<void(std::span<const uint8_t>)> received)
        : master_(context), timer_(context), link_(link), received_(std::move(received))
    {
        const int master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        if (master < 0) FailWith("pseudo-terminal");
        master_.assign(master);
        char path[128];
        if (grantpt(master) != 0 || unlockpt(master) != 0 || ptsname_r(master, path, sizeof path) != 0)
            FailWith("pseudo-terminal");
        path_ = path;
        MakeRaw();
        PlaceLink();
        LookForReader();
    }

    ~LinuxTerminal() override
    {
        // Removes only our own link: another program may use the name now.
        char target[128];
        const ssize_t length = readlink(link_.c_str(), target, sizeof target);
        if (length > 0 && path_ == std::string(target, static_cast<size_t>(length))) unlink(link_.c_str());
    }

    void Write(std::string_view bytes) override
    {
        if (!present_) return;
        const ssize_t taken = write(master_.native_handle(), bytes.data(), bytes.size());
        (void)taken; // bytes without room are lost, as at a port that nobody reads
    }

private:
    void MakeRaw()
    {
        const int terminal = open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        termios settings{};
        if (terminal < 0 || tcgetattr(terminal, &settings) != 0) FailWith(path_);
        cfmakeraw(&settings);
        settings.c_cflag |= CLOCAL | CREAD;
        tcsetattr(terminal, TCSANOW, &settings);
        close(terminal); // from now on the other side notices opening and closing
    }

    void PlaceLink()
    {
        // A link that an earlier run has left leads to a pseudo-terminal; any other is somebody else's.
        constexpr std::string_view Terminals = "/dev/pts/";
        char old[128];
        const ssize_t length = readlink(link_.c_str(), old, sizeof old);
        if (length > 0 && std::string_view(old, static_cast<size_t>(length)).starts_with(Terminals))
            unlink(link_.c_str());
        if (symlink(path_.c_str(), link_.c_str()) == 0) return;
        if (errno == EEXIST)
            Fail(FailureKind::Failed, link_ + ": exists, and is no link to a pseudo-terminal");
        FailWith(link_);
    }

    bool HasReader()
    {
        pollfd state{master_.native_handle(), POLLIN, 0};
        poll(&state, 1, 0);
        return (state.revents & POLLHUP) == 0;
    }

    void LookForReader()
    {
        present_ = HasReader();
        if (present_) {
            Read();
            return;
        }
        timer_.expires_after(PresenceInterval);
        timer_.async_wait([this](const asio::error_code& cancelled) {
            if (!cancelled) LookForReader();
        });
    }

    void Read()
    {
        master_.async_read_some(asio::buffer(buffer_), [this](const asio::error_code& error, size_t count) {
            if (error == asio::error::operation_aborted) return;
            if (error) { // the last program has closed it
                present_ = false;
                ForgetUnread();
                LookForReader();
                return;
            }
            received_({buffer_, count});
            Read();
        });
    }

    // The next program that opens it finds an empty port.
    void ForgetUnread()
    {
        const int terminal = open(path_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        if (terminal < 0) return;
        tcflush(terminal, TCIFLUSH);
        close(terminal);
    }

    asio::posix::stream_descriptor master_;
    asio::steady_timer timer_;
    std::string path_, link_;
    std::function<void(std::span<const uint8_t>)> received_;
    uint8_t buffer_[1024];
    bool present_ = false;
};

} // namespace

std::unique_ptr<PseudoTerminal> MakePseudoTerminal(asio::io_context& context, const std::string& link,
                                                   std::function<void(std::span<const uint8_t>)> received)
{
    return std::make_unique<LinuxTerminal>(context, link, std::move(received));
}

} // namespace console
