// SPDX-License-Identifier: MIT
// Start values for a receiver that is restarted: the same fields in Initialize Data Source (SiRF binary) and
// in Navigation Initialization (NMEA).
#pragma once

#include <array>
#include <cstdint>

#include "text/fields.h"

// Position, clock and time are for a warm start with initialisation only; the number of channels is the last
// field.
constexpr uint32_t StartValueCount = 6, StartFieldCount = 7;

// The rows for a dialog whose controls are numbered from `first` on, with their places in a command 128.
consteval std::array<CommandField, StartFieldCount> StartFields(uint16_t first)
{
    using enum FieldKind;
    constexpr int32_t MaxEcef = 10000000;
    constexpr const wchar_t* EcefRange = L"Range -10000000 to 10000000 m";
    std::array<CommandField, StartFieldCount> fields = {{
        {Number, 0, 1, 4, -MaxEcef, MaxEcef, L"ECEF X", EcefRange},
        {Number, 0, 5, 4, -MaxEcef, MaxEcef, L"ECEF Y", EcefRange},
        {Number, 0, 9, 4, -MaxEcef, MaxEcef, L"ECEF Z", EcefRange},
        {Number, 0, 13, 4, 0, 1000000, L"Clock Offset", L"Range 0-1000000 Hz"},
        {Hundredths, 0, 17, 4, 0, 604800, L"Time of Week", L"Range 0-604800 s"},
        {Number, 0, 21, 2, 0, 10000, L"Week Number", L"Range 0-10000"},
        {Number, 0, 23, 1, 1, 12, L"Channels", L"Range 1-12"},
    }};
    for (CommandField& field : fields) field.control = first++;
    return fields;
}
