// SPDX-License-Identifier: MIT
// Differences between the systems: serial ports, terminals, places of files. One source file for each
// system.
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
    std::string port;        // what it is opened by
    std::string description; // may be empty
    std::string usb;         // "067b:2303", empty when it is none
    std::string serial;      // number of the device, may be empty
    std::string state;       // "free", "busy" or "denied"
    std::string holder;      // "gpsd (812)", where it can be known
};

// The machine's serial ports, sorted. Opens none of them.
std::vector<PortInfo> ListPorts();

// State and holder of one port, as in the list; nothing when there is no such port.
std::optional<PortInfo> InspectPort(const std::string& port);

using NativePort = asio::serial_port::native_handle_type;

// Opens a port for this process alone, raw, 8 data bits, no parity, one stop bit, no handshake. Throws
// Failure of the kind Port, which says if it is missing, denied or busy, and what helps.
NativePort OpenPort(const std::string& port, uint32_t rate);

// Sets the rate once everything written has gone out, and forgets what has been received. Returns the
// driver's error.
asio::error_code SetPortRate(NativePort port, uint32_t rate);

// Lets others open it again; the handle itself is closed by its owner.
void ReleasePort(NativePort port);

// True for the errors that reading or writing gives when the device has gone.
bool HasVanished(const asio::error_code& error);

// Where the program keeps what it remembers; empty when the system names no place.
std::filesystem::path StateFolder();

// Standard streams as the program needs them: bytes unchanged, and a closed pipe is an error, not an end.
void PrepareStandardStreams();

// A file's name in UTF-8, as everywhere in the program, for the routines that take a path.
inline std::filesystem::path PathOf(const std::string& name)
{
    return std::u8string(name.begin(), name.end());
}

// fopen of any path; null and errno when it fails.
std::FILE* OpenFile(const std::filesystem::path& file, const char* mode);

bool InputIsTerminal();
bool OutputIsTerminal();
bool ErrorIsTerminal();

// While one exists, the terminal on standard output takes ANSI sequences and UTF-8; afterwards it is as it
// was.
class AnsiTerminal
{
public:
    AnsiTerminal();
    ~AnsiTerminal();
    AnsiTerminal(const AnsiTerminal&) = delete;

    // False for one that cannot: sequences would be shown as characters.
    bool TakesSequences() const { return takesSequences_; }

private:
    bool takesSequences_ = false;
    unsigned mode_ = 0, codePage_ = 0; // as they were
};

// The arguments in UTF-8, the program's name not among them.
std::vector<std::string> ProgramArguments(int count, char** arguments);

} // namespace console
