// SPDX-License-Identifier: MIT
#include "commands_nmea.h"

#include "nmea_output.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <vector>

namespace receiver
{

namespace
{

// Only whole fields: "12x" is not a number.
std::optional<int64_t> Number(std::string_view field)
{
    int64_t value = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (error != std::errc() || end != field.data() + field.size()) return std::nullopt;
    return value;
}

struct Range {
    int64_t low, high;
};

enum class Outcome { Done, OutOfRange, WrongFieldCount };

using Values = std::vector<int64_t>;

// PSRF100,protocol,rate,data bits,stop bits,parity
Outcome SetSerialPort(Receiver& receiver, const Values& v)
{
    if (!IsLineRate(static_cast<uint32_t>(v[1]))) return Outcome::OutOfRange;
    receiver.SwitchForHost(v[0] == 0 ? Protocol::SirfBinary : Protocol::Nmea, static_cast<uint32_t>(v[1]));
    return Outcome::Done;
}

// PSRF101,x,y,z,clock offset,time of week in 1/100 s,week,channels,reset
Outcome Initialize(Receiver& receiver, const Values& v)
{
    struct Row {
        int64_t reset;
        Restart kind;
        bool factory;
    };
    static constexpr Row rows[] = {{0, Restart::Hot, false},  {1, Restart::Hot, false},
                                   {2, Restart::Warm, false}, {3, Restart::Warm, false},
                                   {4, Restart::Cold, false}, {8, Restart::Cold, true}};
    for (const Row& row : rows) {
        if (row.reset != v[7]) continue;
        if (row.reset == 3) {
            auto& started = receiver.Started;
            started.x = static_cast<int32_t>(v[0]);
            started.y = static_cast<int32_t>(v[1]);
            started.z = static_cast<int32_t>(v[2]);
            started.clockHz = static_cast<int32_t>(v[3]);
            started.towCs = static_cast<uint32_t>(v[4]);
            started.week = static_cast<uint16_t>(v[5]);
        }
        receiver.Started.channels = static_cast<uint8_t>(v[6]);
        receiver.RestartAs(row.kind, row.factory);
        return Outcome::Done;
    }
    return Outcome::OutOfRange;
}

// PSRF103,message,mode,rate in seconds,checksum
Outcome SetMessageRate(Receiver& receiver, const Values& v)
{
    const auto message = static_cast<NmeaMessage>(v[0]);
    NmeaRate& rate = receiver.Kept.nmea[message];
    rate.checksum = v[3] != 0;
    if (v[1] == 1) { // query: once, now
        for (const std::string& body : NmeaBodies(message, receiver.Navigation.Current(), receiver.Kept)) {
            receiver.Send(FrameNmea(body, rate.checksum));
        }
    } else {
        rate.seconds = static_cast<uint8_t>(v[2]);
    }
    return Outcome::Done;
}

Outcome SetDevelopmentData(Receiver& receiver, const Values& v)
{
    receiver.Kept.nmeaDebug = v[0] != 0;
    return Outcome::Done;
}

Outcome SelectDatum(Receiver& receiver, const Values& v)
{
    if (v[0] != 21 && (v[0] < 178 || v[0] > 181)) return Outcome::OutOfRange;
    receiver.Kept.datum = static_cast<uint8_t>(v[0]);
    return Outcome::Done;
}

struct CommandRow {
    int number;
    std::vector<Range> fields; // all fields must be present, each in its range
    Outcome (*carryOut)(Receiver&, const Values&);
};

const std::vector<CommandRow>& CommandRows()
{
    static const std::vector<CommandRow> rows = {
        {100, {{0, 1}, {1, 115200}, {8, 8}, {1, 1}, {0, 0}}, SetSerialPort},
        {101,
         {{-10000000, 10000000},
          {-10000000, 10000000},
          {-10000000, 10000000},
          {0, 1000000},
          {0, 60480000},
          {0, 10000},
          {1, 12},
          {0, 8}},
         Initialize},
        {103, {{0, NmeaMessageCount - 1}, {0, 1}, {0, 255}, {0, 1}}, SetMessageRate},
        {105, {{0, 1}}, SetDevelopmentData},
        {106, {{0, 65535}}, SelectDatum},
    };
    return rows;
}

Outcome CarryOut(Receiver& receiver, const CommandRow& row, std::string_view rest)
{
    Values values;
    while (!rest.empty()) {
        rest.remove_prefix(1); // the comma
        const size_t end = std::min(rest.find(','), rest.size());
        const auto value = Number(rest.substr(0, end));
        rest.remove_prefix(end);
        if (values.size() >= row.fields.size()) return Outcome::WrongFieldCount;
        const Range range = row.fields[values.size()];
        if (!value || *value < range.low || *value > range.high) return Outcome::OutOfRange;
        values.push_back(*value);
    }
    if (values.size() != row.fields.size()) return Outcome::WrongFieldCount;
    return row.carryOut(receiver, values);
}

void Explain(Receiver& receiver, const std::string& text)
{
    if (receiver.Kept.nmeaDebug) SendNmeaText(receiver, text);
}

} // namespace

void SendNmeaText(Receiver& receiver, std::string_view text)
{
    receiver.Send(FrameNmea("PSRFTXT," + std::string(text)));
}

void HandleNmeaCommand(Receiver& receiver, std::string_view body)
{
    const std::string_view name = body.substr(0, std::min(body.find(','), body.size()));
    const auto number = name.starts_with("PSRF") ? Number(name.substr(4)) : std::nullopt;
    if (number && receiver.Muted.psrf.contains(static_cast<int>(*number))) return;
    const CommandRow* known = nullptr;
    for (const CommandRow& row : CommandRows()) {
        if (number && row.number == *number) known = &row;
    }
    const std::string command(name);
    if (known == nullptr || receiver.Options.refused.psrf.contains(known->number)) {
        ++receiver.CommandsRefused;
        Explain(receiver, command + " unknown");
        return;
    }
    const bool explained = receiver.Kept.nmeaDebug;
    switch (CarryOut(receiver, *known, body.substr(name.size()))) {
    case Outcome::Done:
        ++receiver.CommandsAccepted;
        // The answer to a command that changes the line would not be received.
        if (explained && known->number != 100 && known->number != 101)
            SendNmeaText(receiver, command + " ok");
        return;
    case Outcome::OutOfRange: Explain(receiver, command + " parameter out of range"); break;
    case Outcome::WrongFieldCount: Explain(receiver, command + " wrong number of parameters"); break;
    }
    ++receiver.CommandsRefused;
}

void SendStartText(Receiver& receiver)
{
    const auto& started = receiver.Started;
    const auto line = [&receiver](const std::string& text) { SendNmeaText(receiver, text); };
    line("Version: " + receiver.Options.version);
    line("TOW: " + std::to_string(started.towCs / 100));
    line("WK: " + std::to_string(started.week));
    line("POS: " + std::to_string(started.x) + " " + std::to_string(started.y) + " " +
         std::to_string(started.z));
    line("CLK: " + std::to_string(started.clockHz));
    line("CHNL: " + std::to_string(started.channels));
    line("Baud rate: " + std::to_string(receiver.Kept.lineRate));
}

} // namespace receiver
