// SPDX-License-Identifier: MIT
// The parts that differ between the operating systems: serial ports, terminals, places of files. One source
// file for each system.
#pragma once

#include <asio.hpp>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace console
{

struct PortInfo {
    std::string port;        // the name that opens it
    std::string description; // may be empty
    std::string usb;         // "067b:2303"; empty if it is not a USB device
    std::string serial;      // serial number of the device; may be empty
    std::string state;       // "free", "busy" or "denied"
    std::string holder;      // "gpsd (812)", if it can be found out
};

// The machine's serial ports, sorted. Opens none of them.
std::vector<PortInfo> ListPorts();

// State and holder of one port, as in the list; no value if there is no such port.
std::optional<PortInfo> InspectPort(const std::string& port);

// "gpsd (812)": another process that has the port open, among those that we may inspect; empty if none is
// found, and on systems that do not show it.
std::string HolderOf(const std::string& port);

using NativePort = asio::serial_port::native_handle_type;

// Opens a port for this process alone, raw, 8 data bits, no parity, one stop bit, no handshake. Throws
// Failure of the kind Port; the message contains the reason (missing, denied or busy) and the remedy.
NativePort OpenPort(const std::string& port, uint32_t rate);

// Sets the rate after all written bytes have been sent, and discards received bytes. Returns the driver's
// error.
asio::error_code SetPortRate(NativePort port, uint32_t rate);

// Allows other programs to open it again; the owner closes the handle itself.
void ReleasePort(NativePort port);

// True for the errors of reading or writing after the device was removed.
bool HasVanished(const asio::error_code& error);

// True for an error of reading that leaves the port as it was: reading can go on.
bool CanReadOn(NativePort port, const asio::error_code& error);

// Lets an opened socket take an address from which connections of an earlier run are still being closed, but
// never one at which another program listens. Returns the system's error.
asio::error_code ReserveAddress(asio::ip::tcp::acceptor& acceptor);

// Folder for the data that the program remembers; empty if the system has no such folder.
std::filesystem::path StateFolder();

// Signals that end the program in order: it closes the port and completes its files first.
std::vector<int> EndingSignals();

// Prepares the standard streams: bytes stay unchanged, and a closed pipe causes an error instead of ending
// the program.
void PrepareStandardStreams();

// A file's name in UTF-8, as everywhere in the program, for the routines that take a path.
inline std::filesystem::path PathOf(const std::string& name)
{
    return std::u8string(name.begin(), name.end());
}

// fopen for any path; null, with errno, if it fails.
std::FILE* OpenFile(const std::filesystem::path& file, const char* mode);

// Creates a file for writing bytes, with these permissions to read and write, except those that the user's
// mask removes; Windows has no such permissions. Null, with errno, if it fails: EEXIST for a name that is
// used already, also by a symbolic link.
std::FILE* OpenNewFile(const std::filesystem::path& file, std::filesystem::perms permissions);

bool InputIsTerminal();

// True if standard input has something to read, or where a signal ends reading.
bool InputIsWaiting();

bool OutputIsTerminal();
bool ErrorIsTerminal();

// While an object of this class exists, the terminal on standard output accepts ANSI sequences and UTF-8; its
// old state is restored afterwards.
class AnsiTerminal
{
public:
    AnsiTerminal();
    ~AnsiTerminal();
    AnsiTerminal(const AnsiTerminal&) = delete;

    // False for a terminal that cannot do this: it would show sequences as characters.
    bool TakesSequences() const { return takesSequences_; }

private:
    bool takesSequences_ = false;
    [[maybe_unused]] unsigned mode_ = 0, codePage_ = 0; // the old state
};

// The arguments in UTF-8, without the program's name.
std::vector<std::string> ProgramArguments(int count, char** arguments);

} // namespace console
