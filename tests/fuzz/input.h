// SPDX-License-Identifier: MIT
// The input of a fuzz target: its bytes, taken one after the other. When none is left everything reads
// as 0 or empty.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

class Input
{
public:
    Input(const uint8_t* data, size_t size) : Data(data), Left(size) {}

    bool Ended() const { return Left == 0; }

    uint8_t Byte()
    {
        if (Left == 0) return 0;
        --Left;
        return *Data++;
    }

    // 0 to `count` - 1.
    size_t Below(size_t count) { return Byte() % count; }

    template <typename Value> Value Raw()
    {
        Value value{};
        const size_t taken = Left < sizeof value ? Left : sizeof value;
        if (taken != 0) std::memcpy(&value, Data, taken);
        Data += taken;
        Left -= taken;
        return value;
    }

    // Up to the end of the line.
    std::string Line()
    {
        std::string line;
        while (Left != 0) {
            const char c = static_cast<char>(Byte());
            if (c == '\n') break;
            line += c;
        }
        return line;
    }

    // The same as characters: 0x10 to 0x1F begin one of 12 bits, so that those beyond Latin 1 occur too.
    std::wstring Text()
    {
        std::wstring text;
        const std::string line = Line();
        for (size_t i = 0; i < line.size(); ++i) {
            uint32_t c = static_cast<uint8_t>(line[i]);
            if (c / 16 == 1 && i + 1 < line.size()) c = c % 16 * 256 + static_cast<uint8_t>(line[++i]);
            if (c != 0) text += static_cast<wchar_t>(c);
        }
        return text;
    }

    std::string Rest()
    {
        std::string rest(reinterpret_cast<const char*>(Data), Left);
        Left = 0;
        return rest;
    }

private:
    const uint8_t* Data;
    size_t Left;
};
