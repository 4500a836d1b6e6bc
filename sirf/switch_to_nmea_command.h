// SPDX-License-Identifier: MIT
// The command by which a receiver leaves SiRF binary for NMEA (message id 129), and the sentence rates that
// it is given, which are kept in the settings.
#pragma once

#include <cstdint>

constexpr uint8_t SwitchToNmeaId = 129;
constexpr uint32_t NmeaRateCount = 10; // GGA, GLL, GSA, GSV, RMC, VTG, MSS, User 8, ZDA, User 10
constexpr uint32_t SwitchToNmeaLength = 24;

// What becomes of the receiver's debug messages.
enum class DebugMessages : uint8_t { On = 0, Off = 1, Unchanged = 2 };

// Seconds between two sentences of each kind, 0 none: as stored under "NmeaIntervalIdx01" to "10", the
// default of a sentence where nothing is stored or a number outside 0..255.
void LoadNmeaRates(uint8_t (&seconds)[NmeaRateCount]);
void StoreNmeaRates(const uint8_t (&seconds)[NmeaRateCount]);

// What a user who has set nothing is offered.
extern const uint8_t DefaultNmeaSeconds[NmeaRateCount];

// The command's payload. Of the rate in bits/s it holds the low 16 bits: the field has no room for 115200.
void PackSwitchToNmea(DebugMessages debug, const uint8_t (&seconds)[NmeaRateCount], bool checksums,
                      uint32_t baud, uint8_t (&payload)[SwitchToNmeaLength]);

// Packs and sends it.
void SendSwitchToNmea(DebugMessages debug, const uint8_t (&seconds)[NmeaRateCount], bool checksums,
                      uint32_t baud);
