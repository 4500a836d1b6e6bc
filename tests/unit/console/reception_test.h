// SPDX-License-Identifier: MIT
// Fixture of tests that feed bytes: a reception that has received nothing yet.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "console/reception.h"
#include "tests/support/fresh_reception.h"

class ReceptionTest : public testing::Test
{
protected:
    ReceptionTest() { StartReceptionAfresh(); }

    static void Bytes(const std::string& bytes)
    {
        console::Feed({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
    }

    // A sentence without checksum, which is accepted too.
    static void Say(const std::string& body) { Bytes("$" + body + "\r\n"); }

    // A payload with start, length, sum and end around it.
    static void Message(const std::string& payload)
    {
        unsigned sum = 0;
        for (const char c : payload) sum += static_cast<uint8_t>(c);
        const auto word = [](size_t value) {
            return std::string{static_cast<char>(value >> 8), static_cast<char>(value & 0xFF)};
        };
        Bytes("\xA0\xA2" + word(payload.size()) + payload + word(sum & 0x7FFF) + "\xB0\xB3");
    }
};
