// SPDX-License-Identifier: MIT
#include "navigation.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace receiver
{

namespace
{

// Times of a receiver's start, in seconds (a real cold start takes longer, because ephemeris data need 30 s;
// a bench should not make people wait).
struct StartTimes {
    double firstLock, lockInterval; // first signal, and each further one
    double ephemeris;               // from lock to usable, for a satellite without kept ephemeris
    double corrections;             // from lock of the SBAS satellite to corrections
    bool keepsTime, keepsPlace, keepsEphemeris;
};

constexpr StartTimes Times(Restart restart)
{
    switch (restart) {
    case Restart::Hot: return {0.5, 0.2, 6.0, 4.0, true, true, true};
    case Restart::Warm: return {2.0, 1.0, 6.0, 6.0, true, true, false};
    case Restart::Cold: break;
    }
    return {4.0, 2.0, 9.0, 10.0, false, false, false};
}

constexpr double SettleS = 6.0;         // four satellites this long before the height is trusted
constexpr double HoldBelowMps = 0.6;    // static navigation begins below this speed
constexpr double ReleaseAboveMps = 1.0; // and ends above this one
constexpr double ErrorMemoryS = 60.0;   // time constant of the wandering error
constexpr double StandAloneErrorM = 2.4, DifferentialErrorM = 0.7;

// 4x4 inverse of a positive definite matrix by Gauss-Jordan; false when it is singular.
bool Invert(std::array<std::array<double, 8>, 4>& m)
{
    for (size_t i = 0; i < 4; ++i) {
        size_t pivot = i;
        for (size_t r = i + 1; r < 4; ++r) {
            if (std::abs(m[r][i]) > std::abs(m[pivot][i])) pivot = r;
        }
        if (std::abs(m[pivot][i]) < 1e-9) return false;
        std::swap(m[i], m[pivot]);
        const double scale = 1.0 / m[i][i];
        for (double& value : m[i]) value *= scale;
        for (size_t r = 0; r < 4; ++r) {
            if (r == i) continue;
            const double factor = m[r][i];
            for (size_t c = 0; c < 8; ++c) m[r][c] -= factor * m[i][c];
        }
    }
    return true;
}

} // namespace

uint8_t Channel::MeanCno() const
{
    return static_cast<uint8_t>(std::accumulate(cno.begin(), cno.end(), 0) / 10);
}

double GeoidSeparationM(const Geodetic& place)
{
    return 25.0 +
           24.0 * std::cos(place.latitudeDeg * DegToRad - 0.9) * std::cos(place.longitudeDeg * DegToRad);
}

Navigator::Navigator(const Track& track, GpsTime start, uint64_t seed, std::optional<int32_t> pivotWeek)
    : World(track), Start(start), PivotWeek(pivotWeek), Seed(seed), Noise(seed ^ 0x6E61766967617465u)
{
}

GpsTime Navigator::TrueTime(double runSeconds) const
{
    return {Start.ms + static_cast<int64_t>(std::llround(runSeconds * 1000.0))};
}

void Navigator::Remember()
{
    State.timeKnown = true;
    for (Tracking& satellite : Satellites) satellite.hasEphemeris = true;
}

void Navigator::Begin(Restart restart, double runSeconds)
{
    // Without kept data, every start is a cold start.
    if (!State.timeKnown) restart = Restart::Cold;
    Kind = restart;
    BeganAt = LastUpdate = runSeconds;
    FourSince = LastFixAt = CorrectionsSince = -1;
    Holding = false;
    HeightKnown = HeightKnown && Times(restart).keepsPlace;
    const StartTimes times = Times(restart);
    for (Tracking& satellite : Satellites) {
        satellite.lockedSince = -1;
        satellite.hasEphemeris = satellite.hasEphemeris && times.keepsEphemeris;
    }
    Fix fresh;
    fresh.timeKnown = times.keepsTime && State.timeKnown;
    fresh.everFixed = times.keepsPlace && State.everFixed;
    if (fresh.everFixed) {
        fresh.place = State.place;
        fresh.ecef = State.ecef;
    }
    State = fresh;
}

const Fix& Navigator::Update(double runSeconds, const Settings& settings)
{
    const double elapsed = std::max(0.0, runSeconds - LastUpdate);
    LastUpdate = runSeconds;
    const Motion truth = MotionAt(World, runSeconds);
    VisibleNow = VisibleSatellites(truth.place, TrueTime(runSeconds), Seed);

    TrackChannels(runSeconds, settings);
    ChooseUsed(runSeconds, settings);
    DecideFix(runSeconds, settings);
    WanderErrors(elapsed);
    PlaceFix(elapsed, truth, settings);

    State.time = State.timeKnown ? TrueTime(runSeconds)
                                 : GpsTime{static_cast<int64_t>((runSeconds - BeganAt) * 1000.0)};
    State.epochsBehind = State.timeKnown && PivotWeek ? EpochsBehind(State.time.Week(), *PivotWeek) : 0;
    State.clockDriftHz = 96000.0 + 40.0 * std::sin(runSeconds / 300.0);
    State.clockBiasNs = std::fmod(61000.0 * runSeconds, 1.0e6); // a receiver clock slews each millisecond
    return State;
}

// Assigns satellites to the twelve channels; their signals lock one after another.
void Navigator::TrackChannels(double runSeconds, const Settings& settings)
{
    const StartTimes times = Times(Kind);
    const bool wantsSbas = DgpsOf(settings).source == DgpsSource::Sbas;
    const Sbas sbas = SbasOf(settings);
    const double mask = ElevationMaskOf(settings).trackingDeg;
    const bool hidden = runSeconds < HiddenUntil;

    // One channel is reserved for the SBAS satellite: the one that the user has chosen, otherwise the highest
    // one.
    const Satellite* chosenSbas = nullptr;
    std::vector<const Satellite*> order;
    for (const Satellite& satellite : VisibleNow) {
        if (!IsSbas(satellite.sv)) {
            if (satellite.look.elevationDeg >= mask) order.push_back(&satellite);
            continue;
        }
        const bool wanted = (sbas.flags & 8) == 0 || sbas.prn == 0 || sbas.prn == satellite.sv;
        if (wantsSbas && wanted && chosenSbas == nullptr) chosenSbas = &satellite;
    }
    const size_t gpsChannels = chosenSbas != nullptr ? ChannelCount - 1 : ChannelCount;
    if (order.size() > gpsChannels) order.resize(gpsChannels);
    if (chosenSbas != nullptr) order.push_back(chosenSbas);

    State.sbasSv = 0;
    for (size_t i = 0; i < ChannelCount; ++i) {
        Channel& channel = State.channels[i];
        channel = Channel{};
        if (i >= order.size()) continue;
        channel.sv = order[i]->sv;
        channel.look = order[i]->look;
        Tracking& satellite = Satellites[channel.sv];
        // Satellites are not found in the order of their elevation; the SBAS satellite is searched last.
        const size_t turn = IsSbas(channel.sv) ? ChannelCount - 1 : (i * 5 + 2) % ChannelCount;
        const double lockAt = BeganAt + times.firstLock + times.lockInterval * static_cast<double>(turn);
        if (hidden || runSeconds < lockAt) {
            satellite.lockedSince = -1;
            continue;
        }
        if (satellite.lockedSince < 0) {
            satellite.lockedSince = runSeconds;
            satellite.ephemerisAt = runSeconds + (satellite.hasEphemeris ? 1.0 : times.ephemeris);
        }
        channel.lockedS = runSeconds - satellite.lockedSince;
        if (runSeconds >= satellite.ephemerisAt) satellite.hasEphemeris = true;
        const bool usable = satellite.hasEphemeris && runSeconds >= satellite.ephemerisAt;
        channel.state = usable ? StateWithEphemeris : StateLocked;
        if (IsSbas(channel.sv)) State.sbasSv = channel.sv;
        if (usable || channel.lockedS >= 3.0) State.timeKnown = true;

        const double strength = 31.0 + 17.0 * std::sin(channel.look.elevationDeg * DegToRad) -
                                static_cast<double>((channel.sv * 7) % 5) - (IsSbas(channel.sv) ? 4.0 : 0.0);
        for (uint8_t& cno : channel.cno) {
            cno = static_cast<uint8_t>(std::clamp(strength + 0.8 * Noise.Normal(), 12.0, 54.0));
        }
    }
    // A satellite that lost its channel must be found again.
    for (size_t sv = 0; sv < Satellites.size(); ++sv) {
        const bool assigned = std::ranges::any_of(order, [sv](const Satellite* s) { return s->sv == sv; });
        if (!assigned) Satellites[sv].lockedSince = -1;
    }
}

void Navigator::ChooseUsed(double runSeconds, const Settings& settings)
{
    const double elevationMask = ElevationMaskOf(settings).navigationDeg;
    const PowerMask power = PowerMaskOf(settings);
    const Dgps dgps = DgpsOf(settings);

    bool corrections = false;
    for (const Channel& channel : State.channels) {
        if (IsSbas(channel.sv) && channel.state != StateSearching &&
            channel.lockedS >= Times(Kind).corrections) {
            corrections = true;
        }
    }
    // Corrections of the other sources would arrive over a second port that this receiver does not have.
    corrections = corrections && dgps.source == DgpsSource::Sbas && dgps.use != DgpsUse::Never;
    if (corrections) CorrectionsSince = runSeconds;
    State.correctionAgeS = CorrectionsSince < 0 ? 0 : runSeconds - CorrectionsSince;
    const double timeoutS = dgps.timeoutS == 0 ? 30.0 : dgps.timeoutS;
    const bool fresh = CorrectionsSince >= 0 && State.correctionAgeS <= timeoutS &&
                       dgps.source == DgpsSource::Sbas && dgps.use != DgpsUse::Never;

    State.used = 0;
    for (Channel& channel : State.channels) {
        channel.used = channel.state == StateWithEphemeris && !IsSbas(channel.sv) &&
                       channel.look.elevationDeg >= elevationMask &&
                       channel.MeanCno() >= power.navigationDbHz;
        channel.corrected = channel.used && fresh;
        if (dgps.use == DgpsUse::Exclusive && !fresh) channel.used = false;
        if (channel.used) ++State.used;
    }
    State.differential = fresh && State.used > 0;
}

// Dilution of precision from the geometry of the satellites in use. In two dimensions the known height
// replaces one satellite.
void Navigator::ComputeDops(bool twoDimensions)
{
    State.gdop = State.pdop = State.hdop = State.vdop = 50;
    if (State.used < 3) return;
    std::array<std::array<double, 8>, 4> m{};
    const auto addRow = [&m](const std::array<double, 4>& row) {
        for (size_t r = 0; r < 4; ++r) {
            for (size_t c = 0; c < 4; ++c) m[r][c] += row[r] * row[c];
        }
    };
    for (const Channel& channel : State.channels) {
        if (!channel.used) continue;
        const double elevation = channel.look.elevationDeg * DegToRad,
                     azimuth = channel.look.azimuthDeg * DegToRad;
        addRow({std::cos(elevation) * std::sin(azimuth), std::cos(elevation) * std::cos(azimuth),
                std::sin(elevation), 1.0});
    }
    if (twoDimensions) addRow({0, 0, 1, 0});
    for (size_t i = 0; i < 4; ++i) m[i][4 + i] = 1;
    if (!Invert(m)) return;
    const double e = m[0][4], n = m[1][5], u = m[2][6], t = m[3][7];
    const auto limited = [](double variance) {
        return std::clamp(std::sqrt(std::max(variance, 0.0)), 0.5, 50.0);
    };
    State.hdop = limited(e + n);
    State.vdop = limited(u);
    State.pdop = limited(e + n + u);
    State.gdop = limited(e + n + u + t);
}

bool Navigator::DopsAcceptable(bool twoDimensions, const Settings& settings) const
{
    const DopMask mask = DopMaskOf(settings);
    switch (mask.selection) {
    case DopSelection::Auto: return twoDimensions ? State.hdop <= mask.hdop : State.pdop <= mask.pdop;
    case DopSelection::Pdop: return State.pdop <= mask.pdop;
    case DopSelection::Hdop: return State.hdop <= mask.hdop;
    case DopSelection::Gdop: return State.gdop <= mask.gdop;
    case DopSelection::Disabled: break;
    }
    return true;
}

void Navigator::DecideFix(double runSeconds, const Settings& settings)
{
    const ModeControl mode = ModeControlOf(settings);
    const double sinceFix = LastFixAt < 0 ? 1e9 : runSeconds - LastFixAt;
    State.type = FixType::None;

    // Three dimensions need four satellites for a while; until then, and where the height is held, two do.
    ComputeDops(false);
    if (State.used < 4 || !DopsAcceptable(false, settings)) {
        FourSince = -1;
    } else if (FourSince < 0) {
        FourSince = runSeconds;
    }
    const double settle = Kind == Restart::Hot ? 1.0 : SettleS;
    if (State.timeKnown && FourSince >= 0 && runSeconds - FourSince >= settle &&
        mode.altitudeHold != AltitudeHold::Always) {
        State.type = FixType::ThreeD;
    } else if (State.timeKnown && State.used >= 3) {
        ComputeDops(true);
        if (DopsAcceptable(true, settings)) State.type = FixType::TwoD;
    }

    if (State.type != FixType::None) {
        State.everFixed = true;
        LastFixAt = runSeconds;
    } else if (State.used >= 1 && State.used <= 2 && mode.degradedMode != 4 &&
               sinceFix <= mode.degradedTimeoutS) {
        State.type = State.used == 2 ? FixType::TwoSv : FixType::OneSv;
    } else if (State.used == 0 && sinceFix <= mode.deadReckoningTimeoutS) {
        State.type = FixType::DeadReckoning;
    }
    if (State.type == FixType::None || State.type == FixType::DeadReckoning) State.differential = false;
}

void Navigator::WanderErrors(double elapsedS)
{
    const double keep = std::exp(-elapsedS / ErrorMemoryS);
    const double renew = std::sqrt(1.0 - keep * keep);
    Error.east = keep * Error.east + renew * Noise.Normal();
    Error.north = keep * Error.north + renew * Noise.Normal();
    Error.up = keep * Error.up + renew * Noise.Normal();
}

void Navigator::PlaceFix(double elapsedS, const Motion& truth, const Settings& settings)
{
    if (!State.Valid()) {
        State.velocity = {};
        State.speedMps = 0;
        State.horizontalErrorM = State.verticalErrorM = 0;
        Holding = false;
        return;
    }
    const double metres = State.differential ? DifferentialErrorM : StandAloneErrorM;
    State.horizontalErrorM = metres * std::max(0.8, State.hdop);
    State.verticalErrorM = metres * std::max(0.8, State.vdop) * 1.5;

    const ModeControl mode = ModeControlOf(settings);
    const double heightBefore = State.place.heightM;
    Geodetic place = Moved(truth.place, {Error.east * metres, Error.north * metres, Error.up * metres * 1.5});
    const double sea = GeoidSeparationM(place); // sea level, above the ellipsoid
    if (State.type == FixType::ThreeD) {
        HeightKnown = true;
    } else if (mode.altitudeFromUser) {
        place.heightM = mode.altitudeM + sea;
    } else {
        place.heightM = HeightKnown ? heightBefore : sea;
    }

    // Static navigation begins when the height is known, and then keeps the position exactly.
    const double trueSpeed = std::hypot(truth.velocity.east, truth.velocity.north);
    const bool slow = trueSpeed < (Holding ? ReleaseAboveMps : HoldBelowMps);
    const bool wasHolding = Holding;
    Holding = StaticNavigationOf(settings) && slow &&
              (wasHolding || State.type == FixType::ThreeD || mode.altitudeHold == AltitudeHold::Always);
    if (Holding && !wasHolding) HeldPlace = place;
    State.place = Holding ? HeldPlace : place;
    State.ecef = ToEcef(State.place);
    if (Holding) {
        State.velocity = {};
        State.speedMps = 0;
        return;
    }

    const double noise = State.differential ? 0.02 : 0.05; // m/s
    State.velocity = {truth.velocity.east + noise * Noise.Normal(),
                      truth.velocity.north + noise * Noise.Normal(),
                      State.type == FixType::ThreeD ? truth.velocity.up + noise * Noise.Normal() : 0.0};
    State.speedMps = std::hypot(State.velocity.east, State.velocity.north);
    if (State.speedMps > 0.1) {
        const double course = std::atan2(State.velocity.east, State.velocity.north) / DegToRad;
        State.courseDeg = course < 0 ? course + 360.0 : course;
    }
    State.distanceM += State.speedMps * elapsedS;
}

} // namespace receiver
