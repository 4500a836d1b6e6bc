// SPDX-License-Identifier: MIT
// Little-endian numbers in byte sequences, and the exception with which these tools refuse their input.
#pragma once

#include <concepts>
#include <cstdint>
#include <cstdio>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace device
{

using Bytes = std::vector<uint8_t>;

// Input from which no correct image can be made; what() gives the reason.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

inline std::string Hex(uint32_t number)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08x", number);
    return text;
}

// `count` bytes from `offset` on; refuses a range beyond the end.
inline std::span<const uint8_t> Part(std::span<const uint8_t> bytes, size_t offset, size_t count)
{
    if (offset > bytes.size() || count > bytes.size() - offset) throw Refusal("input is cut short");
    return bytes.subspan(offset, count);
}

template <std::unsigned_integral T> T Get(std::span<const uint8_t> bytes, size_t offset)
{
    T value = 0;
    size_t shift = 0;
    for (const uint8_t b : Part(bytes, offset, sizeof(T))) {
        value = static_cast<T>(value | static_cast<T>(b) << shift);
        shift += 8;
    }
    return value;
}

template <std::unsigned_integral T> void Put(std::span<uint8_t> bytes, size_t offset, T value)
{
    for (size_t i = 0; i < sizeof(T); ++i)
        bytes[offset + i] = static_cast<uint8_t>(uint64_t{value} >> (8 * i));
}

template <std::unsigned_integral T> void Append(Bytes& bytes, T value)
{
    bytes.resize(bytes.size() + sizeof(T));
    Put(bytes, bytes.size() - sizeof(T), value);
}

inline void Append(Bytes& bytes, std::span<const uint8_t> more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

template <std::unsigned_integral T> T RoundUp(T value, T step)
{
    return static_cast<T>((value + step - 1) / step * step);
}

// Adds zeros up to a multiple of `step`.
inline void Align(Bytes& bytes, size_t step)
{
    bytes.resize(RoundUp(bytes.size(), step));
}

} // namespace device
