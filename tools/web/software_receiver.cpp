// SPDX-License-Identifier: MIT
#include "software_receiver.h"

#include <algorithm>

namespace
{

constexpr size_t MostArrived = 1 << 16; // bytes, like the buffer of a driver

// Bytes are delivered in few portions, because the page may be painted after each of them. While a dialog is
// open they are delivered immediately, because it may wait for an answer or show the rate of the line.
constexpr uint64_t NextLook = 300'000; // microseconds
constexpr double LongestPortion = 1;   // seconds, if the line is never idle

double Seconds()
{
    return static_cast<double>(memory::Now()) / 1e6;
}

// A walk within the default bands of the chart.
receiver::Config Setup(uint64_t ahead)
{
    receiver::Config config;
    config.track.kind = receiver::TrackKind::Walk;
    config.track.origin = {59.218600, 12.698000, 118.0};
    config.start = receiver::TimeOfThisMachine();
    config.start.ms -= static_cast<int64_t>(ahead / 1000);
    config.firstStart = receiver::Restart::Hot;
    return config;
}

bool MayCollect()
{
    return memory::TopDialog() == nullptr;
}

} // namespace

SoftwareReceiver::SoftwareReceiver(uint64_t ahead)
    : Sim(Setup(ahead)), Wire(Sim.Options.seed), Begun(Seconds())
{
}

void SoftwareReceiver::Open()
{
    Run(0);
    Arrived.clear(); // bytes that arrive while nobody listens are lost
    Portion = 0;
}

void SoftwareReceiver::Run(uint32_t rate)
{
    const double now = Seconds() - Begun;
    Wire.SetHostRate(rate);
    for (const uint8_t byte : Wire.ToReceiver(FromProgram, Sim.Kept.lineRate, now)) Sim.HostByte(byte);
    FromProgram.clear();
    Sim.Advance(now);
    const receiver::Bytes sent = Wire.ToHost(Sim.Output, now);
    Arrived.append(reinterpret_cast<const char*>(sent.data()), sent.size());
    if (Arrived.size() > MostArrived) Arrived.erase(Portion, Arrived.size() - MostArrived);
}

std::string SoftwareReceiver::Read(size_t most, uint32_t rate)
{
    Run(rate);
    const bool rests = Sim.Output.empty() && Wire.Idle();
    if (Portion == 0 && (rests || !MayCollect() || Seconds() >= HandedOut + LongestPortion)) {
        HandedOut = Seconds();
        Portion = Arrived.size();
    }
    std::string bytes = Arrived.substr(0, std::min(most, Portion));
    Arrived.erase(0, bytes.size());
    Portion -= bytes.size();
    return bytes;
}

void SoftwareReceiver::Write(std::string_view bytes, uint32_t rate)
{
    Run(rate);
    FromProgram.insert(FromProgram.end(), bytes.begin(), bytes.end());
}

uint64_t SoftwareReceiver::NextBytes()
{
    return memory::Now() + (MayCollect() ? NextLook : 0);
}
