// SPDX-License-Identifier: MIT
#include "terminal.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

namespace receiver
{

namespace
{

struct SpeedRow {
    speed_t speed;
    uint32_t rate;
};
constexpr SpeedRow Speeds[] = {
    {B300, 300},     {B600, 600},     {B1200, 1200},   {B2400, 2400},     {B4800, 4800},     {B9600, 9600},
    {B19200, 19200}, {B38400, 38400}, {B57600, 57600}, {B115200, 115200}, {B230400, 230400},
};

speed_t SpeedOf(uint32_t rate)
{
    for (const SpeedRow& row : Speeds) {
        if (row.rate == rate) return row.speed;
    }
    return B4800;
}

std::string Failed(const char* what)
{
    return std::string(what) + ": " + std::strerror(errno);
}

// A link of an earlier run may be replaced; any other file at that place belongs to the user.
bool PlaceLink(const std::string& target, const std::string& link, std::string& error)
{
    char old[1];
    if (readlink(link.c_str(), old, sizeof old) >= 0) unlink(link.c_str());
    if (symlink(target.c_str(), link.c_str()) == 0) return true;
    error = Failed(link.c_str());
    return false;
}

} // namespace

bool Terminal::Open(const std::string& link, uint32_t rate, std::string& error)
{
    Close();
    Master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    char path[128];
    if (Master < 0 || grantpt(Master) != 0 || unlockpt(Master) != 0 ||
        ptsname_r(Master, path, sizeof path) != 0) {
        error = Failed("pseudo-terminal");
        Close();
        return false;
    }
    SlavePath = path;
    // Opened and closed once: the terminal keeps the settings, and from now on it is possible to find out if
    // a program has it open.
    const int slave = open(path, O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    if (slave < 0 || tcgetattr(slave, &settings) != 0) {
        error = Failed(path);
        if (slave >= 0) close(slave);
        Close();
        return false;
    }
    cfmakeraw(&settings);
    settings.c_cflag |= CLOCAL | CREAD;
    cfsetspeed(&settings, SpeedOf(rate));
    tcsetattr(slave, TCSANOW, &settings);
    close(slave);
    Present = false;
    if (!link.empty()) {
        if (!PlaceLink(SlavePath, link, error)) {
            Close();
            return false;
        }
        Link = link;
    }
    return true;
}

void Terminal::Close()
{
    if (!Link.empty()) {
        // Removes only our own link: another receiver may use the name now.
        char target[128];
        const ssize_t length = readlink(Link.c_str(), target, sizeof target);
        if (length > 0 && SlavePath == std::string(target, static_cast<size_t>(length))) unlink(Link.c_str());
        Link.clear();
    }
    if (Master >= 0) close(Master);
    Master = -1;
    Present = false;
}

bool Terminal::HostPresent()
{
    if (Master < 0) return false;
    pollfd fd{Master, POLLIN, 0};
    poll(&fd, 1, 0);
    const bool present = (fd.revents & POLLHUP) == 0;
    if (Present && !present) {
        // The next program starts with an empty port. Only the other side can empty its own queue, into which
        // the kernel may still be moving the last bytes.
        constexpr int SettleMs = 50;
        const int slave = open(SlavePath.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (slave >= 0) {
            pollfd waiting{slave, POLLIN, 0};
            while (poll(&waiting, 1, SettleMs) > 0 && waiting.revents == POLLIN) tcflush(slave, TCIFLUSH);
            close(slave);
        }
    }
    Present = present;
    return present;
}

uint32_t Terminal::HostRate() const
{
    termios settings{};
    if (Master < 0 || tcgetattr(Master, &settings) != 0) return 0;
    const speed_t speed = cfgetospeed(&settings);
    for (const SpeedRow& row : Speeds) {
        if (row.speed == speed) return row.rate;
    }
    return 0;
}

void Terminal::Write(const Bytes& bytes)
{
    if (bytes.empty() || !HostPresent()) return;
    const ssize_t written = write(Master, bytes.data(), bytes.size());
    const size_t taken = written > 0 ? static_cast<size_t>(written) : 0;
    BytesLost += bytes.size() - taken;
}

Bytes Terminal::Read()
{
    Bytes bytes(4096);
    const ssize_t count = Master < 0 ? -1 : read(Master, bytes.data(), bytes.size());
    bytes.resize(count > 0 ? static_cast<size_t>(count) : 0);
    return bytes;
}

void Terminal::Wait(int milliseconds)
{
    if (Present && Master >= 0) {
        pollfd fd{Master, POLLIN, 0};
        poll(&fd, 1, milliseconds);
        return;
    }
    // A disconnected terminal would end every poll immediately.
    const timespec pause{milliseconds / 1000, milliseconds % 1000 * 1000000L};
    nanosleep(&pause, nullptr);
}

} // namespace receiver
