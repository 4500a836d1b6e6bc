// SPDX-License-Identifier: MIT
#include "host_input.h"

#include "nmea_output.h"
#include "sirf_output.h"

#include <charconv>
#include <utility>

namespace receiver
{

std::optional<std::string> NmeaInput::Feed(uint8_t byte)
{
    constexpr size_t longest = 250;
    if (byte == '$') {
        Sentence.assign(1, '$');
        return std::nullopt;
    }
    if (Sentence.empty()) return std::nullopt;
    if (byte != '\n') {
        Sentence.push_back(static_cast<char>(byte));
        if (Sentence.size() > longest + 6) Sentence.clear();
        return std::nullopt;
    }
    const std::string sentence = std::exchange(Sentence, {});
    if (sentence.size() < 6 || sentence.back() != '\r') return std::nullopt;
    const size_t star = sentence.size() - 4;
    if (sentence[star] != '*') return std::nullopt;
    const std::string body = sentence.substr(1, star - 1);
    unsigned given = 0;
    const char* digits = sentence.data() + star + 1;
    const auto [end, error] = std::from_chars(digits, digits + 2, given, 16);
    if (error != std::errc() || end != digits + 2 || given != NmeaChecksum(body)) return std::nullopt;
    return body;
}

std::optional<Bytes> SirfInput::Feed(uint8_t byte)
{
    constexpr size_t longest = 1023, around = 8;
    Frame.push_back(byte);
    if (Frame[0] != 0xA0) Frame.clear();
    if (Frame.size() == 2 && Frame[1] != 0xA2) Frame.assign(byte == 0xA0 ? 1 : 0, 0xA0);
    if (Frame.size() < 4) return std::nullopt;
    const size_t length = Get<uint16_t>(Frame, 2);
    if (length == 0 || length > longest) {
        Frame.clear();
        return std::nullopt;
    }
    if (Frame.size() < length + around) return std::nullopt;
    const Bytes frame = std::exchange(Frame, {});
    const std::span<const uint8_t> payload(frame.data() + 4, length);
    const auto given = Get<uint16_t>(frame, 4 + length);
    if ((given & 0x7FFF) != SirfChecksum(payload) || frame[6 + length] != 0xB0 || frame[7 + length] != 0xB3) {
        return std::nullopt;
    }
    const size_t wrap = payload[0] == 0xEE && length > 1 ? 1 : 0;
    return Bytes(payload.begin() + static_cast<std::ptrdiff_t>(wrap), payload.end());
}

} // namespace receiver
