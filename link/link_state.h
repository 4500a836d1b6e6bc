// SPDX-License-Identifier: MIT
// State of the program's one link to a receiver: protocol, statistics, port and rate.
//
// The user-interface thread and the reader thread share it without a lock: each value is loaded and stored as
// a whole, and an old value does no harm.
#pragma once

#include <atomic>
#include <cstdint>

// ---- Protocol -----------------------------------------------------------------------------------------

// Protocols recognised since the last reset. Each flag is set by one decoder only, in the reader thread. So a
// reset is never lost because a decoder is setting the other flag at that moment.
constexpr uint8_t ProtocolNone = 0, ProtocolNmea = 1, ProtocolSirf = 2;
extern std::atomic<uint8_t> NmeaRecognised, SirfRecognised;

// The set of flags: 0 nothing yet, 1 NMEA, 2 SiRF binary, 3 both.
uint8_t ProtocolMode();

// Forgets the recognised protocols, when a port is opened or closed, at a search and at a switch of the
// protocol. User-interface thread.
void ResetProtocolMode();

// "NMEA" for exactly 1, "SiRF" for exactly 2, "-" for anything else.
const wchar_t* ProtocolName(uint8_t mode);

// Set while the search for port and rate runs: decoders then only recognise, and failures to open are silent.
// User-interface thread writes.
extern std::atomic<uint8_t> SearchInProgress;

// Set while the port is being closed: messages that are still being decoded are dropped.
extern std::atomic<uint8_t> LinkClosing;

// Set from the start to the end of a program that has a command line to carry out: the hot start that the
// first NMEA sentence causes would restart the receiver during the action.
extern std::atomic<uint8_t> CommandLinePending;

// ---- Statistics ---------------------------------------------------------------------------------------

extern std::atomic<uint32_t> BytesReceived;    // since the last Open command; reader counts, Open resets
extern std::atomic<uint32_t> NmeaMessageCount; // accepted sentences since the program started
extern std::atomic<uint32_t> SirfMessageCount; // accepted frames since the program started
extern std::atomic<uint32_t> NmeaReportedBaud; // bits/s, from the receiver's own start-up text; 0 unknown
extern std::atomic<float> EffectiveBaud;       // bits/s, measured on the last long message; may be infinite

// Measures EffectiveBaud: `bytes` that took the time since `startTick` (GetTickCount), at ten bits a byte.
void MeasureEffectiveBaud(uint32_t bytes, uint32_t startTick);

// ---- Port and rate ------------------------------------------------------------------------------------

constexpr int32_t PortCount = 10, BaudCount = 8;
constexpr const wchar_t* PortNameTable[PortCount] = {L"COM0:", L"COM1:", L"COM2:", L"COM3:", L"COM4:",
                                                     L"COM5:", L"COM6:", L"COM7:", L"COM8:", L"COM9:"};
constexpr uint32_t BaudTable[BaudCount] = {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200}; // bits/s

// Indexes into the tables, -1 when unknown. The user-interface thread writes them; the reader thread stores
// them as settings when a protocol is recognised. Stored settings come from outside: check them before use.
extern std::atomic<int32_t> CommPortIdx, BaudrateIdx;

constexpr bool IsPortIndex(int32_t index)
{
    return index >= 0 && index < PortCount;
}
constexpr bool IsBaudIndex(int32_t index)
{
    return index >= 0 && index < BaudCount;
}

// Index of a rate in bits/s in BaudTable; -1 when the table does not have it.
int32_t FindBaudrate(int64_t baud);

// Index of the infrared port, -1 when there is none; found by port discovery.
extern std::atomic<int8_t> IrPortNumber;

// Sets everything to its state at program start.
void ResetLinkState();
