// SPDX-License-Identifier: MIT
#pragma once
// SiRF binary messages that the receiver sends. All fields are big-endian.

#include "navigation.h"

#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace receiver
{

// Start bytes, length, payload, checksum (15 bits of the sum of all payload bytes), end bytes.
Bytes FrameSirf(std::span<const uint8_t> payload);
uint16_t SirfChecksum(std::span<const uint8_t> payload);

// Data in the payloads in addition to the fix.
struct Report {
    const Fix& fix;
    const Settings& settings;
    const std::vector<Satellite>& visible;
    std::string_view version;
    double runSeconds;
    bool awake;
};

// The payloads of one message id; several for the ids with one satellite per message (28, 29), none for an id
// that this receiver does not send or for which it has no data now.
std::vector<Bytes> SirfPayloads(uint8_t mid, const Report& report);

// The ids of the periodic messages, in their order within a second.
std::span<const uint8_t> PeriodicMids();

Bytes SoftwareVersion(std::string_view version);            // MID 6, 81 bytes
Bytes OkToSend(bool awake);                                 // MID 18
Bytes Acknowledge(uint8_t mid);                             // MID 11
Bytes Refuse(uint8_t mid);                                  // MID 12
Bytes ParameterReport(std::span<const uint8_t> setCommand); // MID 43
Bytes DevelopmentText(std::string_view text);               // MID 255

} // namespace receiver
