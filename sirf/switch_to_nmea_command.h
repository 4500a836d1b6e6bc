// SPDX-License-Identifier: MIT
// The command that switches a receiver from SiRF binary to NMEA (message id 129), and the sentence rates in
// it, which are stored as settings.
#pragma once

#include <cstdint>

constexpr uint8_t SwitchToNmeaId = 129;
constexpr uint32_t NmeaRateCount = 10; // GGA, GLL, GSA, GSV, RMC, VTG, MSS, User 8, ZDA, User 10
constexpr uint32_t SwitchToNmeaLength = 24;

// The new state of the receiver's debug messages.
enum class DebugMessages : uint8_t { On = 0, Off = 1, Unchanged = 2 };

// Seconds between two sentences of each kind, 0: none. Stored under "NmeaIntervalIdx01" to "10"; a missing
// number, or one outside 0..255, is replaced by the sentence's default.
void LoadNmeaRates(uint8_t (&seconds)[NmeaRateCount]);
void StoreNmeaRates(const uint8_t (&seconds)[NmeaRateCount]);

// The defaults of all sentences.
extern const uint8_t DefaultNmeaSeconds[NmeaRateCount];

// Writes the command's payload. It contains only the low 16 bits of the rate in bits/s: 115200 does not fit.
void PackSwitchToNmea(DebugMessages debug, const uint8_t (&seconds)[NmeaRateCount], bool checksums,
                      uint32_t baud, uint8_t (&payload)[SwitchToNmeaLength]);

// Packs and sends it.
void SendSwitchToNmea(DebugMessages debug, const uint8_t (&seconds)[NmeaRateCount], bool checksums,
                      uint32_t baud);
