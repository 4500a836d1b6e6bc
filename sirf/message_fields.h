// SPDX-License-Identifier: MIT
// Fields of SiRF binary messages: big-endian, at any address.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <cstring>

// An unsigned number of `width` bytes, 1 to 4.
constexpr uint32_t ReadBigEndian(const uint8_t* bytes, uint32_t width)
{
    uint32_t value = 0;
    for (uint32_t i = 0; i < width; ++i) value = value << 8 | bytes[i];
    return value;
}

// Place, width and sign of a field, so that it cannot be read with a wrong type.
template <std::integral T> struct MessageField {
    uint8_t offset; // from the message id
};

template <std::integral T> constexpr T ReadField(const uint8_t* message, MessageField<T> field)
{
    return static_cast<T>(ReadBigEndian(message + field.offset, sizeof(T)));
}

// Keeps the first bytes of a payload; missing bytes become 0.
template <uint32_t Size> void KeepRecord(uint8_t (&record)[Size], const uint8_t* payload, uint32_t available)
{
    const uint32_t count = std::min(available, Size);
    std::memcpy(record, payload, count);
    std::memset(record + count, 0, Size - count);
}
