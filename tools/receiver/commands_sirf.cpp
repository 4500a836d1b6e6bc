// SPDX-License-Identifier: MIT
#include "commands_sirf.h"

#include "sirf_output.h"

#include <algorithm>

namespace receiver
{

namespace
{

using Payload = std::span<const uint8_t>;

bool InRange(int64_t value, int64_t low, int64_t high)
{
    return value >= low && value <= high;
}

// Ranges of the set commands; the length has been checked before.
bool Acceptable(Payload p)
{
    switch (p[0]) {
    case 53: // advanced power
        return p[1] <= 1 && InRange(p[3], 10, 180) && p[5] <= 7 && p[6] <= 7 && p[8] <= 2 &&
               InRange(p[9], 1, 20) && p[10] <= 2;
    case 133: { // DGPS source
        static constexpr uint8_t bitRates[] = {0, 25, 50, 100, 200};
        const auto hz = Get<uint32_t>(p, 2);
        return p[1] <= 4 && (hz == 0 || InRange(hz, 283500, 325000)) &&
               std::ranges::find(bitRates, p[6]) != std::end(bitRates);
    }
    case 136: // mode control
        return p[3] <= 4 && InRange(Get<int16_t>(p, 6), -1000, 10000) && p[8] <= 2 && p[9] <= 1 &&
               p[11] <= 120 && p[12] <= 120 && p[13] <= 1;
    case 137: // DOP mask
        return p[1] <= 4 && InRange(p[2], 1, 50) && InRange(p[3], 1, 50) && InRange(p[4], 1, 50);
    case 138: // DGPS mode
        return p[1] <= 2;
    case 139: // elevation mask, -200.0 to 900.0 degrees: a larger range than the sky, as hosts may send it
        return InRange(Get<int16_t>(p, 1), -2000, 9000) && InRange(Get<int16_t>(p, 3), -2000, 9000);
    case 140: // power mask
        return p[1] <= 50 && p[2] <= 50;
    case 143: // static navigation
        return p[1] <= 1;
    case 151: // trickle power
        return Get<uint16_t>(p, 1) <= 1 && Get<uint16_t>(p, 3) <= 1000 &&
               InRange(Get<uint32_t>(p, 5), 200, 900);
    case 167: // low power
        return Get<uint32_t>(p, 1) <= 3600000 && Get<uint32_t>(p, 5) <= 3600000 &&
               Get<uint32_t>(p, 9) <= 3600 && Get<uint16_t>(p, 13) <= 1;
    case 170: // SBAS
        return (p[1] == 0 || InRange(p[1], FirstSbas, LastSbas)) && p[2] <= 1 && (p[3] & ~0x09) == 0;
    default: return false;
    }
}

Report ReportOf(const Receiver& receiver)
{
    return {receiver.Navigation.Current(), receiver.Kept, receiver.Navigation.Visible(),
            receiver.Options.version,      receiver.Now,  receiver.Awake()};
}

void Answer(Receiver& receiver, const Bytes& payload)
{
    receiver.Answer(payload);
}

// The start values in the form in which the receiver reports them: the present position, time and clock if
// known.
Bytes InitializationReport(const Receiver& receiver)
{
    const Fix& fix = receiver.Navigation.Current();
    const auto& started = receiver.Started;
    const Payload kept = Kept(receiver.Kept, 128);
    Bytes p = {128};
    if (fix.everFixed) {
        for (const double metres : {fix.ecef.x, fix.ecef.y, fix.ecef.z}) Put(p, static_cast<int32_t>(metres));
    } else {
        for (const int32_t metres : {started.x, started.y, started.z}) Put(p, metres);
    }
    Put(p, fix.everFixed ? static_cast<int32_t>(fix.clockDriftHz) : started.clockHz);
    Put(p, fix.timeKnown ? fix.time.TowCs() : started.towCs);
    Put(p, fix.timeKnown ? fix.Week() : started.week);
    Put(p, started.channels);
    Put(p, kept[24]);
    return p;
}

// MID 128: restart; the bits of the last byte select the kind.
bool Initialize(Receiver& receiver, Payload p)
{
    const uint8_t map = p[24];
    const auto clock = Get<int32_t>(p, 13);
    if (p[23] < 1 || p[23] > 12 || !InRange(clock, 0, 1000000) || Get<uint32_t>(p, 17) > 60480000)
        return false;
    for (const size_t offset : {1u, 5u, 9u}) {
        if (!InRange(Get<int32_t>(p, offset), -10000000, 10000000)) return false;
    }
    Answer(receiver, Acknowledge(128));
    auto& started = receiver.Started;
    const bool factory = (map & 8) != 0 && (map & 0x80) == 0;
    started.channels = p[23];
    if ((map & 3) == 3) {
        started.x = Get<int32_t>(p, 1);
        started.y = Get<int32_t>(p, 5);
        started.z = Get<int32_t>(p, 9);
        started.clockHz = clock;
        started.towCs = Get<uint32_t>(p, 17);
        started.week = Get<uint16_t>(p, 21);
    }
    const Restart kind = (map & 0x0C) != 0 ? Restart::Cold : (map & 2) != 0 ? Restart::Warm : Restart::Hot;
    receiver.RestartAs(kind, factory);
    // After the reset, so that a factory reset keeps these requested values.
    receiver.Kept.commands[128] = Bytes(p.begin(), p.end());
    for (const size_t mid : {28u, 29u}) receiver.Kept.sirfSeconds[mid] = (map & 0x10) != 0 ? 1 : 0;
    receiver.Kept.sirfSeconds[255] = (map & 0x20) != 0 ? 1 : 0;
    return true;
}

// What is kept of an accepted command: its bytes, some of them altered by a fault.
Bytes AsKept(const Receiver& receiver, Payload p)
{
    Bytes kept(p.begin(), p.end());
    for (const Alteration& each : receiver.Altered) {
        if (each.mid == p[0] && each.offset < kept.size()) kept[each.offset] = each.value;
    }
    return kept;
}

// MID 129: sentence rates, debug texts and line rate for NMEA; then switch to NMEA.
bool SwitchToNmea(Receiver& receiver, Payload p)
{
    const auto rate = Get<uint16_t>(p, 22);
    // The field has 16 bits, so 115200 arrives as its low half.
    const uint32_t lineRate = rate == (115200 & 0xFFFF) ? 115200 : rate;
    if (!IsLineRate(lineRate) || p[1] > 2) return false;
    const Bytes kept = AsKept(receiver, p);
    for (size_t i = 0; i < NmeaMessageCount; ++i) {
        receiver.Kept.nmea[i] = {kept[2 + 2 * i], kept[3 + 2 * i] != 0};
    }
    if (p[1] != 2) receiver.Kept.nmeaDebug = p[1] == 0;
    Answer(receiver, Acknowledge(129)); // still at the old rate
    receiver.SwitchForHost(Protocol::Nmea, lineRate);
    return true;
}

// MID 166: mode 0 sets the rate of one message, 1 requests it once, 2 sets the rate of all.
bool SetMessageRate(Receiver& receiver, Payload p)
{
    const uint8_t mode = p[1], mid = p[2], seconds = p[3];
    if (mode > 2 || seconds > 30 || (mode != 2 && mid == 0)) return false;
    if (mode == 0) receiver.Kept.sirfSeconds[mid] = seconds;
    if (mode == 2) {
        for (const uint8_t each : PeriodicMids()) receiver.Kept.sirfSeconds[each] = seconds;
    }
    Answer(receiver, Acknowledge(166));
    if (mode == 1) {
        for (const Bytes& payload : SirfPayloads(mid, ReportOf(receiver))) Answer(receiver, payload);
    }
    return true;
}

bool PollParameter(Receiver& receiver, Payload p)
{
    const uint8_t mid = p[1];
    const CommandList& refused = receiver.Options.refused;
    if (SetCommandLength(mid) == 0 || refused.mids.contains(mid) || refused.polls.contains(mid)) return false;
    const CommandList& muted = receiver.Muted;
    if (muted.mids.contains(mid) || muted.polls.contains(mid)) return true;
    if (mid == 128) {
        Answer(receiver, ParameterReport(InitializationReport(receiver)));
    } else {
        Answer(receiver, ParameterReport(Kept(receiver.Kept, mid)));
    }
    return true;
}

bool PollVersion(Receiver& receiver, Payload)
{
    Answer(receiver, SoftwareVersion(receiver.Options.version));
    return true;
}

bool PollNavigationParameters(Receiver& receiver, Payload)
{
    for (const Bytes& payload : SirfPayloads(19, ReportOf(receiver))) Answer(receiver, payload);
    return true;
}

bool Set(Receiver& receiver, Payload p)
{
    if (!Acceptable(p)) return false;
    receiver.Kept.commands[p[0]] = AsKept(receiver, p);
    Answer(receiver, Acknowledge(p[0]));
    return true;
}

struct CommandRow {
    uint8_t mid;
    size_t length;
    bool (*carryOut)(Receiver&, Payload); // queues its answer; false: refused, nothing queued
};
constexpr CommandRow SpecialCommands[] = {
    {128, 25, Initialize},    {129, 24, SwitchToNmea},
    {132, 2, PollVersion},    {152, 2, PollNavigationParameters},
    {166, 8, SetMessageRate}, {168, 2, PollParameter},
};

bool CarryOut(Receiver& receiver, Payload payload)
{
    const uint8_t mid = payload[0];
    if (receiver.Options.refused.mids.contains(mid)) return false;
    for (const CommandRow& row : SpecialCommands) {
        if (row.mid == mid) return payload.size() == row.length && row.carryOut(receiver, payload);
    }
    return payload.size() == SetCommandLength(mid) && Set(receiver, payload);
}

} // namespace

void HandleSirfCommand(Receiver& receiver, std::span<const uint8_t> payload)
{
    if (receiver.Muted.mids.contains(payload[0])) return;
    if (CarryOut(receiver, payload)) {
        ++receiver.CommandsAccepted;
        return;
    }
    ++receiver.CommandsRefused;
    Answer(receiver, Refuse(payload[0]));
}

} // namespace receiver
