// SPDX-License-Identifier: MIT
#include "receiver.h"

#include "commands_nmea.h"
#include "commands_sirf.h"
#include "nmea_output.h"
#include "sirf_output.h"

#include <cmath>
#include <utility>

namespace receiver
{

namespace
{

constexpr double BootS = 0.8; // from a reset to the start-up text
constexpr double LongAgo = -1e9, Never = 1e18;
constexpr double Tolerance = 1e-6; // rounding error of added times

} // namespace

Receiver::Receiver(const Config& config)
    : Options(config),
      Kept(FactorySettings(config.protocol, config.lineRate)),
      Navigation(config.track, config.start, config.seed, config.pivotWeek),
      Noise(config.seed ^ 0x7265636569766572u)
{
    if (config.firstStart != Restart::Cold) Navigation.Remember();
    RestartAs(config.firstStart, false);
}

void Receiver::RestartAs(Restart kind, bool factoryReset)
{
    if (factoryReset) {
        Kept = FactorySettings(Options.protocol, Options.lineRate);
        Started = StartValues{};
    }
    Navigation.Begin(kind, Now);
    Power = PowerState{};
    Booted = false;
    BootAt = Now + BootS;
    NmeaSent.fill(LongAgo);
    SirfSent.fill(LongAgo);
    NmeaCommand.Reset();
    SirfCommand.Reset();
}

void Receiver::SwitchTo(Protocol protocol, uint32_t rate)
{
    // Bytes that are not yet on the line would be sent at the new rate; only an answer that was just queued
    // stays.
    std::erase_if(Output, [](const Burst& burst) { return !burst.answer; });
    Kept.protocol = protocol;
    Kept.lineRate = rate;
    NmeaSent.fill(LongAgo);
    SirfSent.fill(LongAgo);
    NmeaCommand.Reset();
    SirfCommand.Reset();
    if (FreezeAfterSwitchS > 0) FrozenUntil = Now + FreezeAfterSwitchS;
}

void Receiver::SwitchForHost(Protocol protocol, uint32_t rate)
{
    if (SwitchesIgnored > 0) {
        --SwitchesIgnored;
        return;
    }
    SwitchTo(protocol, SwitchLandsAt != 0 ? SwitchLandsAt : rate);
}

void Receiver::HostByte(uint8_t byte)
{
    if (!Booted || !Power.Awake || Now < FrozenUntil) return;
    if (Kept.protocol == Protocol::Nmea) {
        if (const auto body = NmeaCommand.Feed(byte)) HandleNmeaCommand(*this, *body);
    } else {
        if (const auto payload = SirfCommand.Feed(byte)) HandleSirfCommand(*this, *payload);
    }
}

void Receiver::Queue(Bytes message, bool answer)
{
    if (Now < FrozenUntil || Now < SilentUntil) return;
    // The last byte before the line end, or before the end bytes, belongs to the checksum.
    if (Noise.Chance(WrongChecksumChance) && message.size() > 3) message[message.size() - 3] ^= 0x01;
    ++MessagesSent;
    Output.push_back({std::move(message), Kept.lineRate, answer});
}

void Receiver::Send(Bytes message)
{
    Queue(std::move(message), true);
}

void Receiver::SendPeriodic(Bytes message)
{
    size_t waiting = 0;
    for (const Burst& burst : Output) waiting += burst.bytes.size();
    if (waiting * 10 > Kept.lineRate * 3 / 2) { // more than the line can send in 1.5 s
        ++MessagesDropped;
        return;
    }
    Queue(std::move(message), false);
}

Bytes Receiver::Frame(const Bytes& payload) const
{
    if (!Options.wrap) return FrameSirf(payload);
    Bytes wrapped = {0xEE};
    wrapped.insert(wrapped.end(), payload.begin(), payload.end());
    return FrameSirf(wrapped);
}

void Receiver::Answer(const Bytes& payload)
{
    Send(Frame(payload));
}

double Receiver::NextEvent() const
{
    if (!Booted) return BootAt;
    if (!Power.Cycling) return NextEpoch;
    const PowerCycle cycle = PowerCycleOf(Kept);
    return Power.Awake ? std::min(NextEpoch, Power.WokeAt + cycle.onS) : Power.WokeAt + cycle.periodS;
}

void Receiver::Advance(double runSeconds)
{
    if (Power.Cycling && PowerCycleOf(Kept).Continuous()) { // a command has ended the power saving
        Power = PowerState{};
        NextEpoch = std::floor(Now) + 1.0;
    }
    for (double next = NextEvent(); next <= runSeconds; next = NextEvent()) {
        Now = std::max(Now, next);
        if (!Booted) {
            Boot();
        } else if (!Power.Awake) {
            Wake();
        } else if (Power.Cycling && next < NextEpoch - Tolerance) {
            Sleep();
        } else {
            Epoch();
        }
    }
    Now = runSeconds;
}

void Receiver::Boot()
{
    Booted = true;
    NextEpoch = std::floor(Now) + 1.0;
    if (Kept.protocol == Protocol::Nmea) {
        SendStartText(*this);
        return;
    }
    ReportPower();
    if (Kept.sirfSeconds[255] != 0) {
        Answer(DevelopmentText("Version: " + Options.version));
        Answer(DevelopmentText("Baud rate: " + std::to_string(Kept.lineRate)));
    }
}

void Receiver::ReportPower()
{
    if (Kept.protocol == Protocol::Nmea) {
        SendPeriodic(FrameNmea(Power.Awake ? "PSRF150,1" : "PSRF150,0"));
    } else if (Kept.sirfSeconds[18] != 0) {
        SendPeriodic(Frame(OkToSend(Power.Awake)));
    }
}

void Receiver::Wake()
{
    Power.Awake = true;
    Power.WokeAt = NextEpoch = Now;
    ReportPower();
}

void Receiver::Sleep()
{
    Power.Awake = false;
    ReportPower();
    NmeaCommand.Reset();
    SirfCommand.Reset();
}

void Receiver::Epoch()
{
    NextEpoch = Now + 1.0;
    const Fix& fix = Navigation.Update(Now, Kept);

    const PowerCycle cycle = PowerCycleOf(Kept);
    if (!cycle.Continuous()) {
        if (!Power.Cycling && fix.Valid()) { // power saving begins with the first fix
            Power.Cycling = true;
            Power.WokeAt = Now;
        }
        // The last fix before it sleeps; the next one follows when it wakes up.
        if (Power.Cycling && Power.WokeAt + cycle.onS <= NextEpoch + Tolerance) NextEpoch = Never;
    }

    if (Kept.protocol == Protocol::Nmea) {
        for (size_t i = 0; i < NmeaMessageCount; ++i) {
            if (!Due(NmeaSent[i], Kept.nmea[i].seconds)) continue;
            for (const std::string& body : NmeaBodies(static_cast<NmeaMessage>(i), fix, Kept)) {
                SendPeriodic(FrameNmea(body, Kept.nmea[i].checksum));
            }
        }
        return;
    }
    const Report report{fix, Kept, Navigation.Visible(), Options.version, Now, Power.Awake};
    for (const uint8_t mid : PeriodicMids()) {
        if (!Due(SirfSent[mid], Kept.sirfSeconds[mid])) continue;
        for (const Bytes& payload : SirfPayloads(mid, report)) SendPeriodic(Frame(payload));
    }
}

bool Receiver::Due(double& last, uint8_t seconds) const
{
    if (seconds == 0 || Now - last < seconds - 0.5) return false;
    last = Now;
    return true;
}

} // namespace receiver
