// SPDX-License-Identifier: MIT
#include "output.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "graph/channels.h"
#include "link/link_state.h"
#include "nmea/receiver_messages.h"
#include "text/utf8.h"
#include "ui/page_lines.h"

namespace
{

constexpr int SignificantDigits = 17; // enough digits to restore each value from its text

} // namespace

void PrintLine(const wchar_t* text)
{
    std::puts(ToUtf8(text).c_str());
}

void PrintSample()
{
    char line[512]; // ten values of at most 24 characters
    char* end = line;
    const auto put = [&end](std::string_view text) { end = std::copy(text.begin(), text.end(), end); };
    const auto putNumber = [&](auto number, auto... format) {
        end = std::to_chars(end, line + sizeof line, number, format...).ptr;
    };
    const char* separator = "{\"time\":[";
    for (const uint32_t part :
         {FixTime.wYear, FixTime.wMonth, FixTime.wDay, FixTime.wHour, FixTime.wMinute, FixTime.wSecond}) {
        put(separator);
        putNumber(part);
        separator = ",";
    }
    separator = "],\"values\":[";
    for (const GraphChannelRecord& channel : GraphChannel) {
        put(separator);
        if (std::isfinite(channel.Value))
            putNumber(channel.Value, std::chars_format::general, SignificantDigits);
        else
            put("null");
        separator = ",";
    }
    put("]}\n");
    std::fwrite(line, 1, static_cast<size_t>(end - line), stdout);
}

std::string PageText()
{
    std::string page;
    for (uint32_t i = 0; i < TextLineCount; ++i) {
        wchar_t line[TextLineCapacity];
        CopyTextLine(i, line);
        page += ToUtf8(line) + '\n';
    }
    return page;
}

void PrintStats()
{
    std::printf("Messages NMEA %u SiRF %u\n", NmeaMessageCount.load(), SirfMessageCount.load());
    std::printf("Baudrate NMEA %u\n", NmeaReportedBaud.load());
    std::printf("Bytes %u\n", BytesReceived.load());
    std::printf("Protocol %s\n", ToUtf8(ProtocolName(ProtocolMode())).c_str());
}

void PrintMessages()
{
    for (const char c : ToUtf8(ReceiverMessagesText))
        if (c != '\r') std::putchar(c);
}

void PrintCommands(const std::vector<std::string>& commands)
{
    for (const std::string& command : commands) {
        if (command.size() >= 2 && command[0] == '$') {
            std::printf("%s\n", command.substr(0, command.size() - 2).c_str());
            continue;
        }
        const char* separator = "";
        for (const char c : command) {
            std::printf("%s%02X", separator, static_cast<unsigned>(static_cast<unsigned char>(c)));
            separator = " ";
        }
        std::putchar('\n');
    }
}
