// SPDX-License-Identifier: MIT
// Linux: terminals of the serial drivers, sysfs and udev's links.
#include "console/system.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <grp.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include "console/output.h"
#include "console/result.h"

namespace console
{

namespace
{

namespace fs = std::filesystem;

struct SpeedRow {
    uint32_t rate;
    speed_t speed;
};
constexpr SpeedRow Speeds[] = {{1200, B1200},   {2400, B2400},   {4800, B4800},   {9600, B9600},
                               {19200, B19200}, {38400, B38400}, {57600, B57600}, {115200, B115200}};

// The first line of a file of the system. USB devices and processes choose their names freely, so that other
// characters than printable ones are replaced.
std::string ReadLine(const fs::path& file)
{
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return Printable(line);
}

// What helps when we may not open a port.
std::string RemedyForPermission(const std::string& port)
{
    constexpr mode_t ForGroup = S_IRGRP | S_IWGRP;
    struct stat status {
    };
    if (stat(port.c_str(), &status) != 0) return {};
    if (status.st_gid == 0 || (status.st_mode & ForGroup) != ForGroup)
        return std::string("; only ") + (status.st_uid == 0 ? "root" : "its owner and root") +
               " may open it; a udev rule can change this";
    const group* const owner = getgrgid(status.st_gid);
    const std::string name = owner ? owner->gr_name : std::to_string(status.st_gid);
    return "; become a member of the group " + name + " (sudo usermod -aG " + name +
           " $USER, then log in again)";
}

void SetState(PortInfo& info)
{
    info.holder = HolderOf(info.port);
    info.state = access(info.port.c_str(), R_OK | W_OK) != 0 ? "denied"
                 : info.holder.empty()                       ? "free"
                                                             : "busy";
}

// USB numbers and names are in a folder above the port's device.
void DescribeUsb(PortInfo& info, fs::path device)
{
    for (; device.has_relative_path(); device = device.parent_path()) {
        std::error_code error;
        if (!fs::exists(device / "idVendor", error)) continue;
        info.usb = ReadLine(device / "idVendor") + ":" + ReadLine(device / "idProduct");
        info.serial = ReadLine(device / "serial");
        info.description = ReadLine(device / "manufacturer");
        const std::string product = ReadLine(device / "product");
        if (!info.description.empty() && !product.empty()) info.description += ' ';
        info.description += product;
        return;
    }
}

// Drivers create terminals for chips that do not exist; such a terminal has type 0.
bool IsPlaceholder(const fs::path& entry)
{
    return ReadLine(entry / "type") == "0";
}

// The reason why a port cannot be opened, and the remedy.
std::string Explain(const std::string& port, int error)
{
    switch (error) {
    case ENOENT:
    case ENXIO:
    case ENODEV: return "no such port (missing); \"toravanectl ports\" lists those there are";
    case EACCES:
    case EPERM: return "no permission" + RemedyForPermission(port);
    case EBUSY:
    case EWOULDBLOCK: {
        const std::string holder = HolderOf(port);
        return "busy" +
               (holder.empty() ? std::string(", another program has it open") : ", held by " + holder) +
               "; end that program first";
    }
    case EINVAL:
    case ENOTTY: return "not a serial port";
    default: return std::strerror(error);
    }
}

[[noreturn]] void FailToOpen(const std::string& port, int error)
{
    Fail(FailureKind::Port, port + ": " + Explain(port, error));
}

bool Configure(int port, uint32_t rate)
{
    termios settings{};
    if (tcgetattr(port, &settings) != 0) return false;
    cfmakeraw(&settings);
    settings.c_cflag |= CLOCAL | CREAD;
    settings.c_cflag &= ~static_cast<tcflag_t>(CSTOPB | CRTSCTS);
    settings.c_iflag |= IGNBRK;
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    for (const SpeedRow& row : Speeds)
        if (row.rate == rate) cfsetspeed(&settings, row.speed);
    return tcsetattr(port, TCSANOW, &settings) == 0;
}

} // namespace

std::string HolderOf(const std::string& port)
{
    std::error_code error;
    const fs::path device = fs::canonical(port, error);
    if (error) return {};
    for (fs::directory_iterator process("/proc", error), end; !error && process != end;
         process.increment(error)) {
        const std::string number = process->path().filename();
        if (number.find_first_not_of("0123456789") != number.npos || number == std::to_string(getpid()))
            continue;
        std::error_code ignored;
        for (fs::directory_iterator open(process->path() / "fd", ignored), last; !ignored && open != last;
             open.increment(ignored)) {
            std::error_code unreadable;
            if (fs::read_symlink(open->path(), unreadable) != device || unreadable) continue;
            return ReadLine(process->path() / "comm") + " (" + number + ")";
        }
    }
    return {};
}

std::vector<PortInfo> ListPorts()
{
    std::vector<PortInfo> ports;
    std::error_code error;
    for (fs::directory_iterator entry("/sys/class/tty", error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code none;
        const fs::path device = fs::canonical(entry->path() / "device", none);
        const std::string name = entry->path().filename();
        const bool isBluetooth = name.starts_with("rfcomm");
        if ((none && !isBluetooth) || IsPlaceholder(entry->path())) continue;
        PortInfo info;
        info.port = "/dev/" + name;
        if (!fs::exists(info.port, none)) continue;
        DescribeUsb(info, device);
        if (info.description.empty()) info.description = isBluetooth ? "Bluetooth" : "serial port";
        SetState(info);
        ports.push_back(info);
    }
    std::sort(ports.begin(), ports.end(),
              [](const PortInfo& a, const PortInfo& b) { return a.port < b.port; });
    return ports;
}

std::optional<PortInfo> InspectPort(const std::string& port)
{
    std::error_code error;
    const fs::path device = fs::canonical(port, error);
    if (error) return {};
    for (const PortInfo& info : ListPorts())
        if (info.port == device) return info;
    PortInfo info;
    info.port = port;
    SetState(info);
    return info;
}

NativePort OpenPort(const std::string& port, uint32_t rate)
{
    const int opened = open(port.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (opened < 0) FailToOpen(port, errno);
    // The lock keeps out other copies of this program, also those of root; the driver's exclusive mode keeps
    // out all others. Nothing is changed at the port before we have both.
    if (!isatty(opened) || flock(opened, LOCK_EX | LOCK_NB) != 0 || ioctl(opened, TIOCEXCL) != 0 ||
        !Configure(opened, rate)) {
        const int error = errno;
        close(opened);
        FailToOpen(port, error);
    }
    tcflush(opened, TCIFLUSH);
    return opened;
}

asio::error_code SetPortRate(NativePort port, uint32_t rate)
{
    tcdrain(port);
    if (!Configure(port, rate)) return {errno, asio::system_category()};
    tcflush(port, TCIFLUSH);
    return {};
}

void ReleasePort(NativePort port)
{
    ioctl(port, TIOCNXCL);
}

bool HasVanished(const asio::error_code& error)
{
    return error == asio::error::eof || error.value() == EIO || error.value() == ENXIO ||
           error.value() == ENODEV;
}

bool CanReadOn(NativePort, const asio::error_code&)
{
    return false;
}

asio::error_code ReserveAddress(asio::ip::tcp::acceptor& acceptor)
{
    asio::error_code error;
    acceptor.set_option(asio::ip::tcp::acceptor::reuse_address(true), error);
    return error;
}

fs::path StateFolder()
{
    const char* const state = std::getenv("XDG_STATE_HOME");
    if (state && *state) return fs::path(state) / "toravane";
    const char* const home = std::getenv("HOME");
    if (home && *home) return fs::path(home) / ".local/state/toravane";
    return {};
}

std::vector<int> EndingSignals()
{
    std::vector<int> signals = {SIGINT, SIGTERM};
    // The end of a terminal or of its connection; "nohup" lets the program outlive it.
    struct sigaction old {
    };
    if (sigaction(SIGHUP, nullptr, &old) == 0 && old.sa_handler != SIG_IGN) signals.push_back(SIGHUP);
    return signals;
}

void PrepareStandardStreams()
{
    signal(SIGPIPE, SIG_IGN);
    // An opened file must not get the number of a standard stream that the caller has closed.
    for (int stream = 0; stream <= 2; ++stream)
        if (fcntl(stream, F_GETFD) < 0) (void)!open("/dev/null", stream == 0 ? O_WRONLY : O_RDONLY);
}

std::FILE* OpenFile(const fs::path& file, const char* mode)
{
    return std::fopen(file.c_str(), mode);
}

std::FILE* OpenNewFile(const fs::path& file, fs::perms permissions)
{
    constexpr mode_t ReadAndWrite = 0666;
    const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                            static_cast<mode_t>(permissions) & ReadAndWrite);
    if (opened < 0) return nullptr;
    std::FILE* const stream = fdopen(opened, "wb");
    if (stream) return stream;
    const int error = errno;
    close(opened);
    unlink(file.c_str());
    errno = error;
    return nullptr;
}

AnsiTerminal::AnsiTerminal()
{
    const char* const kind = std::getenv("TERM");
    takesSequences_ = !kind || std::string_view(kind) != "dumb";
}

AnsiTerminal::~AnsiTerminal() = default;

bool InputIsTerminal()
{
    return isatty(0);
}

bool InputIsWaiting()
{
    pollfd input{0, POLLIN, 0};
    return poll(&input, 1, 0) > 0;
}

bool OutputIsTerminal()
{
    return isatty(1);
}

bool ErrorIsTerminal()
{
    return isatty(2);
}

std::vector<std::string> ProgramArguments(int count, char** arguments)
{
    return std::vector<std::string>(arguments + (count > 0), arguments + count);
}

} // namespace console
