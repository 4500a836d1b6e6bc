// SPDX-License-Identifier: MIT
#pragma once
// Settings that a host can change and that the receiver keeps over restarts (except a factory reset).

#include "big_endian.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string_view>

namespace receiver
{

enum class Protocol : uint8_t { SirfBinary = 0, Nmea = 1 }; // the numbers of PSRF100

// The line rates that the receiver can be switched to, bits per second.
constexpr std::array<uint32_t, 8> LineRates = {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};
constexpr std::string_view LineRateNames = "1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200";
bool IsLineRate(uint32_t rate);
std::optional<uint32_t> LineRateByName(std::string_view name);

// NMEA message numbers of PSRF103 and MID 129. 7 and 9 are "user" messages: kept, never sent.
enum NmeaMessage : uint8_t { Gga, Gll, Gsa, Gsv, Rmc, Vtg, Mss, User8, Zda, User10, NmeaMessageCount };

struct NmeaRate {
    uint8_t seconds = 0; // 0: off
    bool checksum = true;
};

struct Settings {
    Protocol protocol = Protocol::Nmea;
    uint32_t lineRate = 4800;
    std::array<NmeaRate, NmeaMessageCount> nmea{};
    std::array<uint8_t, 256> sirfSeconds{}; // by MID, 0: off
    bool nmeaDebug = false;                 // text about each NMEA command
    uint8_t datum = 21;                     // 21 WGS-84, 178..181 Tokyo
    // The last accepted payload of each set command, MID first, at its full length.
    std::map<uint8_t, Bytes> commands;
};

Settings FactorySettings(Protocol protocol, uint32_t lineRate);

// The set commands whose settings are kept as their payload; 0 for any other MID.
size_t SetCommandLength(uint8_t mid);

// Views of the kept payloads, in the units named.
std::span<const uint8_t> Kept(const Settings& settings, uint8_t mid);

enum class DgpsSource : uint8_t { None, Sbas, ExternalRtcm, InternalBeacon, UserSoftware };
enum class DgpsUse : uint8_t { Auto, Exclusive, Never };
enum class AltitudeHold : uint8_t { Auto, Always, Disabled };
enum class DopSelection : uint8_t { Auto, Pdop, Hdop, Gdop, Disabled };

struct ModeControl {
    uint8_t degradedMode; // 4: disabled
    int16_t altitudeM;
    AltitudeHold altitudeHold;
    bool altitudeFromUser;
    uint8_t degradedTimeoutS, deadReckoningTimeoutS;
    bool trackSmoothing;
};
struct DopMask {
    DopSelection selection;
    uint8_t gdop, pdop, hdop;
};
struct ElevationMask {
    double trackingDeg, navigationDeg;
};
struct PowerMask {
    uint8_t trackingDbHz, navigationDbHz;
};
struct Dgps {
    DgpsSource source;
    DgpsUse use;
    uint8_t timeoutS;
    uint32_t beaconHz;
    uint8_t beaconBps;
};
struct TricklePower {
    bool pushToFix;
    uint16_t dutyPerMille;
    uint32_t onTimeMs;
};
struct LowPower {
    uint32_t maxOffMs, maxSearchMs, pushToFixPeriodS;
    bool adaptive;
};
struct AdvancedPower { // as MID 53 carries it
    bool enabled;
    uint8_t fixes, betweenS, horizontalErrorIdx, verticalErrorIdx, responseS, accuracyPriority;
    uint8_t dutyFivePercents, timingPriority;
};
struct Sbas {
    uint8_t prn; // 0: automatic
    bool integrity;
    uint8_t flags; // bit 0 user time-out, bit 3 PRN chosen by the user
};

ModeControl ModeControlOf(const Settings& settings);
DopMask DopMaskOf(const Settings& settings);
ElevationMask ElevationMaskOf(const Settings& settings);
PowerMask PowerMaskOf(const Settings& settings);
Dgps DgpsOf(const Settings& settings);
bool StaticNavigationOf(const Settings& settings);
TricklePower TricklePowerOf(const Settings& settings);
LowPower LowPowerOf(const Settings& settings);
AdvancedPower AdvancedPowerOf(const Settings& settings);
Sbas SbasOf(const Settings& settings);

} // namespace receiver
