// SPDX-License-Identifier: MIT
// What the program knows about its one link to a receiver: protocol, statistics, port and rate.
//
// Shared by the user-interface thread and the reader thread without a lock: each value is loaded and stored
// whole, and a stale one does no harm.
#pragma once

#include <atomic>
#include <cstdint>

// ---- Protocol -----------------------------------------------------------------------------------------

// Protocols recognised since the last reset. Each flag has one writer of 1 (the reader thread's decoder)
// beside the reset, so that a reset is never lost to a decoder that is just setting the other flag.
constexpr uint8_t ProtocolNone = 0, ProtocolNmea = 1, ProtocolSirf = 2;
extern std::atomic<uint8_t> NmeaRecognised, SirfRecognised;

// The set of flags: 0 nothing yet, 1 NMEA, 2 SiRF binary, 3 both.
uint8_t ProtocolMode();

// Forgets what was recognised: opening or closing a port, a search, a protocol switch. User-interface thread.
void ResetProtocolMode();

// "NMEA" for exactly 1, "SiRF" for exactly 2, "-" for anything else.
const wchar_t* ProtocolName(uint8_t mode);

// Set while the port and rate search runs: decoders then only recognise, and open failures are silent.
// User-interface thread writes.
extern std::atomic<uint8_t> SearchInProgress;

// Set while the port is being closed: what is still on its way through the decoders is dropped.
extern std::atomic<uint8_t> LinkClosing;

// Set from start-up until the program's end when it has a command line to carry out: the hot start that the
// first NMEA sentence causes would restart the receiver in the middle of that.
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

// Indexes into the tables, -1 when unknown. Written by the user-interface thread; stored as settings by the
// reader thread when a protocol is recognised. Stored settings come from outside: test them before use.
extern std::atomic<int32_t> CommPortIdx, BaudrateIdx;

constexpr bool IsPortIndex(int32_t index)
{
    return index >= 0 && index < PortCount;
}
constexpr bool IsBaudIndex(int32_t index)
{
    return index >= 0 && index < BaudCount;
}

// Index of a rate in bits/s in BaudTable, -1 when it is not there.
int32_t FindBaudrate(int64_t baud);

// Index of the infrared port, -1 when there is none; found by port discovery.
extern std::atomic<int8_t> IrPortNumber;

// Everything as when the program starts.
void ResetLinkState();
