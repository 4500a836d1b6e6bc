// SPDX-License-Identifier: MIT
#pragma once
// Converts the true motion and the sky to the receiver's estimates: channels that lock, fixes that come and
// go, errors that change slowly.

#include "random.h"
#include "settings.h"
#include "sky.h"
#include "track.h"

#include <array>
#include <optional>

namespace receiver
{

enum class Restart : uint8_t { Hot, Warm, Cold };

enum class FixType : uint8_t { None = 0, OneSv = 1, TwoSv = 2, TwoD = 3, ThreeD = 4, DeadReckoning = 7 };

// Bits of a channel's state word.
constexpr uint16_t StateSearching = 0x0000, StateLocked = 0x003F, StateWithEphemeris = 0x00BF;

struct Channel {
    uint8_t sv = 0; // 0: no satellite assigned
    LookAngles look;
    uint16_t state = StateSearching;
    std::array<uint8_t, 10> cno{}; // dB-Hz, one each 100 ms; 0 while searching
    double lockedS = 0;            // time since the signal was locked
    bool used = false;             // in the fix
    bool corrected = false;        // by differential corrections

    uint8_t MeanCno() const;
};

constexpr size_t ChannelCount = 12;

struct Fix {
    GpsTime time;             // the receiver's own time; counts from 0 while the time is not known
    int32_t epochsBehind = 0; // 1024 weeks each, by which the firmware reports the date too early
    bool timeKnown = false;   // from a satellite, or from the clock that was kept over the restart
    bool everFixed = false;   // since the last cold start
    FixType type = FixType::None;
    bool differential = false;
    uint8_t used = 0; // satellites in the fix
    Geodetic place;   // last one that is known
    Vector3 ecef;
    Local velocity;                     // m/s
    double speedMps = 0, courseDeg = 0; // over ground
    double gdop = 50, pdop = 50, hdop = 50, vdop = 50;
    double horizontalErrorM = 0, verticalErrorM = 0; // estimated, one sigma
    double clockDriftHz = 96000, clockBiasNs = 0;
    double distanceM = 0; // travelled since the restart
    double correctionAgeS = 0;
    uint8_t sbasSv = 0; // the SBAS satellite that is tracked, 0: none
    std::array<Channel, ChannelCount> channels{};

    bool Valid() const { return type != FixType::None; }

    // Date and week as the firmware reports them.
    UtcDate Utc() const { return DaysEarlier(ToUtc(time), epochsBehind * DaysPerEpoch); }
    uint16_t Week() const { return static_cast<uint16_t>(time.Week() - epochsBehind * WeeksPerEpoch); }
};

// Height of the geoid above the ellipsoid, m; an invented undulation of the right size.
double GeoidSeparationM(const Geodetic& place);

class Navigator
{
public:
    // `pivotWeek`: as in Config.
    Navigator(const Track& track, GpsTime start, uint64_t seed, std::optional<int32_t> pivotWeek = {});

    // Assumes that the receiver ran until now: time and ephemeris data are kept. For a first hot start.
    void Remember();

    // Restarts at this time of the run; after that, Update must be called with later times.
    void Begin(Restart restart, double runSeconds);

    // Computes the state at this moment of the run, at most a few seconds after the moment of the last call.
    const Fix& Update(double runSeconds, const Settings& settings);

    const Fix& Current() const { return State; }
    void SetTrack(const Track& track) { World = track; }
    // No signal arrives until this moment of the run (a tunnel).
    void HideSkyUntil(double runSeconds) { HiddenUntil = runSeconds; }
    GpsTime TrueTime(double runSeconds) const;
    const std::vector<Satellite>& Visible() const { return VisibleNow; }

private:
    struct Tracking { // per satellite
        double lockedSince = -1, ephemerisAt = 0;
        bool hasEphemeris = false;
    };

    void TrackChannels(double runSeconds, const Settings& settings);
    void ChooseUsed(double runSeconds, const Settings& settings);
    void ComputeDops(bool twoDimensions);
    bool DopsAcceptable(bool twoDimensions, const Settings& settings) const;
    void DecideFix(double runSeconds, const Settings& settings);
    void WanderErrors(double elapsedS);
    void PlaceFix(double elapsedS, const Motion& truth, const Settings& settings);

    struct Track World;
    GpsTime Start;
    std::optional<int32_t> PivotWeek;
    uint64_t Seed;
    Random Noise;
    Fix State;
    Restart Kind = Restart::Cold;
    double BeganAt = 0, LastUpdate = 0, HiddenUntil = -1;
    double FourSince = -1, LastFixAt = -1, CorrectionsSince = -1;
    Local Error; // metres, before the factor of the fix quality
    bool Holding = false, HeightKnown = false;
    Geodetic HeldPlace;
    std::vector<Satellite> VisibleNow;
    std::array<Tracking, 256> Satellites{};
};

} // namespace receiver
