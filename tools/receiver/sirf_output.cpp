// SPDX-License-Identifier: MIT
#include "sirf_output.h"

#include "power.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace receiver
{

namespace
{

constexpr double SpeedOfLight = 299792458.0;
constexpr double L1Hz = 1575420000.0;

uint8_t TimesFive(double dop)
{
    return static_cast<uint8_t>(std::min(255.0, std::round(dop * 5.0)));
}

template <typename T> T Rounded(double value)
{
    constexpr auto low = static_cast<double>(std::numeric_limits<T>::min());
    constexpr auto high = static_cast<double>(std::numeric_limits<T>::max());
    return static_cast<T>(std::clamp(std::round(value), low, high));
}

// Fix type in bits 0..2, DGPS in bit 7.
uint8_t Mode1(const Fix& fix)
{
    return static_cast<uint8_t>(static_cast<uint8_t>(fix.type) | (fix.differential ? 0x80 : 0));
}

std::vector<const Channel*> UsedChannels(const Fix& fix)
{
    std::vector<const Channel*> used;
    for (const Channel& channel : fix.channels) {
        if (channel.used) used.push_back(&channel);
    }
    return used;
}

// An invented but constant correction for each satellite, m.
double CorrectionM(uint8_t sv, double runSeconds)
{
    return (sv * 37 % 100) * 0.05 - 2.5 + 0.3 * std::sin(runSeconds / 90.0 + sv);
}

Bytes MeasuredNavigation(const Report& r) // MID 2, 41 bytes
{
    const Fix& fix = r.fix;
    const Vector3 velocity = EnuToEcef(fix.place, fix.velocity);
    Bytes p = {2};
    for (const double metres : {fix.ecef.x, fix.ecef.y, fix.ecef.z}) Put(p, Rounded<int32_t>(metres));
    for (const double mps : {velocity.x, velocity.y, velocity.z}) Put(p, Rounded<int16_t>(mps * 8.0));
    Put(p, Mode1(fix));
    Put(p, TimesFive(fix.hdop));
    Put(p, static_cast<uint8_t>(fix.Valid() ? 0x02 : 0x00)); // mode 2: solution validated
    Put(p, static_cast<uint16_t>(fix.time.Week() % 1024));
    Put(p, fix.time.TowCs());
    Put(p, fix.used);
    for (const Channel* channel : UsedChannels(fix)) Put(p, channel->sv);
    p.resize(41);
    return p;
}

Bytes MeasuredTracking(const Report& r) // MID 4, 188 bytes
{
    Bytes p = {4};
    Put(p, static_cast<uint16_t>(r.fix.time.Week() % 1024));
    Put(p, r.fix.time.TowCs());
    Put(p, static_cast<uint8_t>(ChannelCount));
    for (const Channel& channel : r.fix.channels) {
        Put(p, channel.sv);
        Put(p, Rounded<uint8_t>(channel.look.azimuthDeg * 2.0 / 3.0));
        Put(p, Rounded<uint8_t>(channel.look.elevationDeg * 2.0));
        Put(p, channel.state);
        for (const uint8_t cno : channel.cno) Put(p, cno);
    }
    return p;
}

Bytes ClockStatus(const Report& r) // MID 7, 20 bytes
{
    Bytes p = {7};
    Put(p, r.fix.Week());
    Put(p, r.fix.time.TowCs());
    Put(p, r.fix.used);
    Put(p, Rounded<uint32_t>(r.fix.clockDriftHz));
    Put(p, Rounded<uint32_t>(r.fix.clockBiasNs));
    Put(p, r.fix.time.TowMs());
    return p;
}

Bytes Throughput(const Report& r) // MID 9, 9 bytes
{
    const auto load = static_cast<uint16_t>(60 + 10 * r.fix.used);
    Bytes p = {9};
    Put(p, load);                                   // longest segment, 1/186 ms
    Put(p, static_cast<uint16_t>(load / 3));        // its latency, 1/186 ms
    Put(p, static_cast<uint16_t>(186 + load));      // average tracking time, 1/186 ms
    Put(p, static_cast<uint16_t>(20 + r.fix.used)); // ms
    return p;
}

Bytes VisibleList(const Report& r) // MID 13
{
    const size_t count = std::min(r.visible.size(), ChannelCount);
    Bytes p = {13, static_cast<uint8_t>(count)};
    for (size_t i = 0; i < count; ++i) {
        Put(p, r.visible[i].sv);
        Put(p, Rounded<int16_t>(r.visible[i].look.azimuthDeg));
        Put(p, Rounded<int16_t>(r.visible[i].look.elevationDeg));
    }
    return p;
}

Bytes NavigationParameters(const Report& r) // MID 19, 65 bytes
{
    const Settings& s = r.settings;
    const ModeControl mode = ModeControlOf(s);
    const DopMask dop = DopMaskOf(s);
    const Dgps dgps = DgpsOf(s);
    const TricklePower trickle = TricklePowerOf(s);
    const LowPower low = LowPowerOf(s);
    const AdvancedPower apm = AdvancedPowerOf(s);
    const PowerCycle cycle = PowerCycleOf(s);

    Bytes p = {19, 1};
    PutZeros(p, 3);
    Put(p, static_cast<uint8_t>(mode.altitudeHold)); // 5
    Put(p, static_cast<uint8_t>(mode.altitudeFromUser));
    Put(p, mode.altitudeM);    // 7
    Put(p, mode.degradedMode); // 9
    Put(p, mode.degradedTimeoutS);
    Put(p, mode.deadReckoningTimeoutS);
    Put(p, static_cast<uint8_t>(mode.trackSmoothing));
    Put(p, static_cast<uint8_t>(StaticNavigationOf(s))); // 13
    Put(p, uint8_t{1});                                  // three-satellite least squares
    PutZeros(p, 4);
    Put(p, static_cast<uint8_t>(dop.selection)); // 19
    Put(p, Rounded<int16_t>(ElevationMaskOf(s).navigationDeg * 10.0));
    Put(p, PowerMaskOf(s).navigationDbHz); // 22
    PutZeros(p, 4);
    Put(p, static_cast<uint8_t>(dgps.source)); // 27
    Put(p, static_cast<uint8_t>(dgps.use));
    Put(p, dgps.timeoutS);
    PutZeros(p, 4);
    Put(p, static_cast<uint8_t>(trickle.pushToFix)); // 34
    Put(p, trickle.onTimeMs);
    Put(p, Rounded<uint32_t>(cycle.Continuous() ? 1000.0 : cycle.periodS * 1000.0)); // 39
    PutZeros(p, 5);                                                                  // user tasks: none
    Put(p, static_cast<uint8_t>(!cycle.Continuous()));                               // 48
    Put(p, low.maxSearchMs);
    Put(p, low.maxOffMs);                                                                   // 53
    Put(p, static_cast<uint8_t>((apm.enabled ? 0x80 : 0) | (apm.dutyFivePercents & 0x1F))); // 57
    Put(p, static_cast<uint16_t>(apm.fixes));
    Put(p, static_cast<uint16_t>(apm.betweenS)); // 60
    Put(p, static_cast<uint8_t>(apm.horizontalErrorIdx << 4 | (apm.verticalErrorIdx & 0x0F)));
    Put(p, apm.responseS); // 63
    Put(p, static_cast<uint8_t>((apm.accuracyPriority & 3) << 2 | (apm.timingPriority & 3)));
    return p;
}

Bytes DgpsStatus(const Report& r) // MID 27, 52 bytes
{
    const Dgps dgps = DgpsOf(r.settings);
    Bytes p = {27, static_cast<uint8_t>(dgps.source)};
    std::vector<const Channel*> corrected;
    for (const Channel& channel : r.fix.channels) {
        if (channel.corrected) corrected.push_back(&channel);
    }
    if (dgps.source == DgpsSource::InternalBeacon) {
        Put(p, dgps.beaconHz);
        Put(p, dgps.beaconBps);
    } else {
        for (size_t i = 0; i < corrected.size(); ++i) Put(p, Rounded<uint8_t>(r.fix.correctionAgeS + 2.0));
    }
    p.resize(16);
    for (const Channel* channel : corrected) {
        Put(p, channel->sv);
        Put(p, Rounded<int16_t>(CorrectionM(channel->sv, r.runSeconds) * 100.0));
    }
    p.resize(52);
    return p;
}

std::vector<Bytes> Measurements(const Report& r) // MID 28, 56 bytes a satellite
{
    std::vector<Bytes> messages;
    for (size_t i = 0; i < r.fix.channels.size(); ++i) {
        const Channel& channel = r.fix.channels[i];
        if (channel.sv == 0 || channel.state == StateSearching) continue;
        const double range = channel.look.distanceM + r.fix.clockBiasNs * 1e-9 * SpeedOfLight;
        Bytes p = {28, static_cast<uint8_t>(i)};
        Put(p, r.fix.time.TowMs()); // receiver's time tag, ms
        Put(p, channel.sv);         // 6
        Put(p, static_cast<double>(r.fix.time.TowMs()) * 0.001);
        Put(p, range);                                                                     // 15
        Put(p, static_cast<float>(-600.0 * std::cos(channel.look.azimuthDeg * DegToRad))); // m/s
        Put(p, range * L1Hz / SpeedOfLight);                                               // 27: cycles
        Put(p, Rounded<uint16_t>(channel.lockedS * 1000.0));
        Put(p, static_cast<uint8_t>(channel.state == StateWithEphemeris ? 0x17 : 0x07)); // 37
        for (const uint8_t cno : channel.cno) Put(p, cno);
        Put(p, uint16_t{1000}); // 48: delta range interval, ms
        Put(p, uint16_t{500});
        PutZeros(p, 4); // extrapolation time, error counts
        messages.push_back(p);
    }
    return messages;
}

std::vector<Bytes> Corrections(const Report& r) // MID 29, 26 bytes a satellite
{
    std::vector<Bytes> messages;
    for (const Channel& channel : r.fix.channels) {
        if (!channel.corrected) continue;
        Bytes p = {29};
        Put(p, static_cast<uint16_t>(channel.sv));
        Put(p, static_cast<uint16_t>(channel.sv * 3 % 256)); // issue of data
        Put(p, static_cast<uint8_t>(DgpsOf(r.settings).source));
        Put(p, static_cast<float>(CorrectionM(channel.sv, r.runSeconds))); // 6
        Put(p, 0.0f);
        Put(p, static_cast<float>(r.fix.correctionAgeS + 2.0)); // 14
        PutZeros(p, 8);
        messages.push_back(p);
    }
    return messages;
}

Bytes GeodeticNavigation(const Report& r) // MID 41, 91 bytes
{
    const Fix& fix = r.fix;
    const UtcDate utc = fix.Utc();
    const Geodetic place = InDatum(fix.place, r.settings.datum);
    Bytes p = {41};
    Put(p, static_cast<uint16_t>(fix.Valid() ? 0x0000 : 0x0001)); // 1: bit 0 set: no valid fix
    uint16_t type = static_cast<uint16_t>(fix.type);
    if (fix.differential) type |= 0x0080;
    if (fix.Valid() && fix.used >= 5) type |= 0x0200; // overdetermined
    Put(p, type);                                     // 3
    Put(p, fix.Week());                               // 5
    Put(p, fix.time.TowMs());
    if (fix.timeKnown) {
        Put(p, static_cast<uint16_t>(utc.year)); // 11
        Put(p, static_cast<uint8_t>(utc.month));
        Put(p, static_cast<uint8_t>(utc.day));
        Put(p, static_cast<uint8_t>(utc.hour));
        Put(p, static_cast<uint8_t>(utc.minute));
        Put(p, static_cast<uint16_t>(utc.second * 1000 + utc.ms));
    } else {
        PutZeros(p, 8); // day 0: UTC is not known
    }
    uint32_t satellites = 0; // 19: bit n for satellite n + 1
    for (const Channel* channel : UsedChannels(fix)) satellites |= 1u << (channel->sv - 1);
    Put(p, satellites);
    if (!fix.everFixed) {
        PutZeros(p, 16);
    } else {
        Put(p, Rounded<int32_t>(place.latitudeDeg * 1e7)); // 23
        Put(p, Rounded<int32_t>(place.longitudeDeg * 1e7));
        Put(p, Rounded<int32_t>(place.heightM * 100.0)); // 31
        Put(p, Rounded<int32_t>((fix.place.heightM - GeoidSeparationM(fix.place)) * 100.0));
    }
    Put(p, r.settings.datum);                                                  // 39
    Put(p, Rounded<uint16_t>(fix.speedMps * 100.0));                           // 40
    Put(p, static_cast<uint16_t>(std::lround(fix.courseDeg * 100.0) % 36000)); // 42
    PutZeros(p, 2);                                                          // magnetic variation: not known
    Put(p, Rounded<int16_t>(fix.velocity.up * 100.0));                       // 46
    PutZeros(p, 2);                                                          // heading rate
    Put(p, Rounded<uint32_t>(fix.horizontalErrorM * 100.0));                 // 50
    Put(p, Rounded<uint32_t>(fix.verticalErrorM * 100.0));                   // 54
    PutZeros(p, 4);                                                          // time error
    Put(p, Rounded<uint16_t>(fix.Valid() ? 10.0 * fix.hdop : 0.0));          // 62: velocity error, 0.01 m/s
    Put(p, Rounded<int32_t>(fix.clockBiasNs * 1e-9 * SpeedOfLight * 100.0)); // 64: 0.01 m
    PutZeros(p, 4);
    Put(p, Rounded<int32_t>(fix.clockDriftHz / L1Hz * SpeedOfLight * 100.0)); // 72: 0.01 m/s
    PutZeros(p, 4);
    Put(p, Rounded<uint32_t>(fix.distanceM)); // 80
    PutZeros(p, 4);                           // distance and heading error
    Put(p, fix.used);                         // 88
    Put(p, TimesFive(fix.hdop));
    Put(p, uint8_t{0});
    return p;
}

Bytes SbasStatus(const Report& r) // MID 50, 13 bytes
{
    const Sbas sbas = SbasOf(r.settings);
    Bytes p = {50};
    const bool userPrn = (sbas.flags & 8) != 0 && sbas.prn != 0;
    Put(p, userPrn ? sbas.prn : r.fix.sbasSv);
    Put(p, static_cast<uint8_t>(sbas.integrity));
    Put(p, DgpsOf(r.settings).timeoutS);
    Put(p, sbas.flags);
    PutZeros(p, 8);
    return p;
}

Bytes DebugText(const Report& r)
{
    char text[96];
    std::snprintf(text, sizeof text, "#Time: %08u  SVs: %02u/%02zu  HDOP: %.1f", r.fix.time.TowCs(),
                  r.fix.used, r.visible.size(), r.fix.hdop);
    return DevelopmentText(text);
}

} // namespace

uint16_t SirfChecksum(std::span<const uint8_t> payload)
{
    unsigned sum = 0;
    for (const uint8_t byte : payload) sum += byte;
    return static_cast<uint16_t>(sum & 0x7FFF);
}

Bytes FrameSirf(std::span<const uint8_t> payload)
{
    Bytes frame = {0xA0, 0xA2};
    Put(frame, static_cast<uint16_t>(payload.size()));
    frame.insert(frame.end(), payload.begin(), payload.end());
    Put(frame, SirfChecksum(payload));
    frame.insert(frame.end(), {0xB0, 0xB3});
    return frame;
}

std::span<const uint8_t> PeriodicMids()
{
    static constexpr uint8_t mids[] = {7, 28, 29, 2, 4, 9, 13, 19, 27, 41, 50, 6, 255};
    return mids;
}

std::vector<Bytes> SirfPayloads(uint8_t mid, const Report& report)
{
    switch (mid) {
    case 2: return {MeasuredNavigation(report)};
    case 4: return {MeasuredTracking(report)};
    case 6: return {SoftwareVersion(report.version)};
    case 7: return {ClockStatus(report)};
    case 9: return {Throughput(report)};
    case 13: return {VisibleList(report)};
    case 18: return {OkToSend(report.awake)};
    case 19: return {NavigationParameters(report)};
    case 27: return {DgpsStatus(report)};
    case 28: return Measurements(report);
    case 29: return Corrections(report);
    case 41: return {GeodeticNavigation(report)};
    case 50: return {SbasStatus(report)};
    case 255: return {DebugText(report)};
    default: return {};
    }
}

Bytes SoftwareVersion(std::string_view version)
{
    Bytes p = {6};
    p.insert(p.end(), version.begin(),
             version.begin() + static_cast<std::ptrdiff_t>(std::min<size_t>(version.size(), 79)));
    p.resize(81);
    return p;
}

Bytes OkToSend(bool awake)
{
    return {18, static_cast<uint8_t>(awake)};
}
Bytes Acknowledge(uint8_t mid)
{
    return {11, mid};
}
Bytes Refuse(uint8_t mid)
{
    return {12, mid};
}

Bytes ParameterReport(std::span<const uint8_t> setCommand)
{
    Bytes p = {43};
    p.insert(p.end(), setCommand.begin(), setCommand.end());
    return p;
}

Bytes DevelopmentText(std::string_view text)
{
    Bytes p = {255};
    p.insert(p.end(), text.begin(), text.end());
    return p;
}

} // namespace receiver
