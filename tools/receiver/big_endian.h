// SPDX-License-Identifier: MIT
#pragma once
// Big-endian fields of SiRF binary messages, and the bit patterns of floating-point numbers in them.

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace receiver
{

using Bytes = std::vector<uint8_t>;

template <std::integral T> void Put(Bytes& to, T value)
{
    const auto bits = static_cast<std::make_unsigned_t<T>>(value);
    for (size_t i = sizeof(T); i-- > 0;) to.push_back(static_cast<uint8_t>(bits >> (8 * i)));
}

inline void Put(Bytes& to, float value)
{
    Put(to, std::bit_cast<uint32_t>(value));
}
inline void Put(Bytes& to, double value)
{
    Put(to, std::bit_cast<uint64_t>(value));
}
inline void PutZeros(Bytes& to, size_t count)
{
    to.insert(to.end(), count, 0);
}

// The field must be inside the payload; the length is checked when a command arrives.
template <std::integral T> T Get(std::span<const uint8_t> from, size_t offset)
{
    std::make_unsigned_t<T> bits = 0;
    for (size_t i = 0; i < sizeof(T); ++i) {
        bits = static_cast<std::make_unsigned_t<T>>((static_cast<uint64_t>(bits) << 8) | from[offset + i]);
    }
    return static_cast<T>(bits);
}

} // namespace receiver
