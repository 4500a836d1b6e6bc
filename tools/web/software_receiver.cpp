// SPDX-License-Identifier: MIT
#include "software_receiver.h"

namespace
{

constexpr size_t MostArrived = 1 << 16; // bytes, as of a driver that nobody reads

double Seconds()
{
    return static_cast<double>(memory::Now()) / 1e6;
}

// A walk where the chart's bands stand as long as nobody has moved them.
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

} // namespace

SoftwareReceiver::SoftwareReceiver(uint64_t ahead)
    : Sim(Setup(ahead)), Wire(Sim.Options.seed), Begun(Seconds())
{
}

void SoftwareReceiver::Open()
{
    Run(0);
    Arrived.clear(); // what came while nobody listened is lost
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
    if (Arrived.size() > MostArrived) Arrived.erase(0, Arrived.size() - MostArrived);
}

std::string SoftwareReceiver::Read(size_t most, uint32_t rate)
{
    Run(rate);
    std::string bytes = Arrived.substr(0, most);
    Arrived.erase(0, bytes.size());
    return bytes;
}

void SoftwareReceiver::Write(std::string_view bytes, uint32_t rate)
{
    Run(rate);
    FromProgram.insert(FromProgram.end(), bytes.begin(), bytes.end());
}
