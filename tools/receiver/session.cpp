// SPDX-License-Identifier: MIT
#include "session.h"

#include "commands_nmea.h"
#include "sirf_output.h"

#include <cstdio>

namespace receiver
{

Session::Session(const Config& config, std::vector<Action> script, std::optional<Player> player)
    : Sim(config), Wire(config.seed), Script(std::move(script)), Play(std::move(player))
{
}

Bytes Session::Step(double runSeconds, const Bytes& fromHost, uint32_t hostRate)
{
    Wire.SetHostRate(hostRate);
    const Bytes heard = Wire.ToReceiver(fromHost, Sim.Kept.lineRate, runSeconds);
    while (NextAction < Script.size() && Script[NextAction].at <= runSeconds) {
        const Action& action = Script[NextAction++];
        if (!Play) Sim.Advance(action.at);
        Perform(action);
    }
    if (Play) {
        Play->Fill(Sim.Output, Sim.Kept.lineRate);
    } else {
        for (const uint8_t byte : heard) Sim.HostByte(byte);
        Sim.Advance(runSeconds);
    }
    return Wire.ToHost(Sim.Output, runSeconds);
}

void Session::Perform(const Action& action)
{
    const double until = Sim.Now + action.number;
    switch (action.verb) {
    case Verb::Lose: Wire.Faults.lose = action.number; break;
    case Verb::Flip: Wire.Faults.flip = action.number; break;
    case Verb::Checksum: Sim.WrongChecksumChance = action.number; break;
    case Verb::Burst: Wire.AddNoiseBurst(static_cast<size_t>(action.number)); break;
    case Verb::Silence: Sim.SilentUntil = until; break;
    case Verb::Freeze: Sim.FrozenUntil = until; break;
    case Verb::FreezeAfterSwitch: Sim.FreezeAfterSwitchS = action.number; break;
    case Verb::Vanish: Vanished = until; break;
    case Verb::Tunnel: Sim.Navigation.HideSkyUntil(until); break;
    case Verb::Track: {
        Track track = Sim.Options.track;
        track.kind = TrackByName(action.text).value_or(TrackKind::Still);
        Sim.Navigation.SetTrack(track);
        break;
    }
    case Verb::Restart: {
        const bool factory = action.text == "factory";
        Sim.RestartAs(action.text == "hot"    ? Restart::Hot
                      : action.text == "warm" ? Restart::Warm
                                              : Restart::Cold,
                      factory);
        break;
    }
    case Verb::Switch:
        Sim.SwitchTo(*ProtocolByName(action.text), static_cast<uint32_t>(action.number));
        break;
    case Verb::SwitchLandsAt: Sim.SwitchLandsAt = static_cast<uint32_t>(action.number); break;
    case Verb::IgnoreSwitches: Sim.SwitchesIgnored = static_cast<uint32_t>(action.number); break;
    case Verb::Mute: ParseCommandList(action.text, Sim.Muted); break;
    case Verb::Alter: Sim.Altered.push_back(ParseAlteration(action.text).value_or(Alteration{})); break;
    case Verb::Refuse: ParseCommandList(action.text, Sim.Options.refused); break;
    case Verb::Text:
        if (Sim.Kept.protocol == Protocol::Nmea) {
            SendNmeaText(Sim, action.text);
        } else {
            Sim.Answer(DevelopmentText(action.text));
        }
        break;
    case Verb::Quit: Quit = true; break;
    }
}

std::string Session::Status(uint32_t hostRate, bool hostPresent) const
{
    const Fix& fix = Sim.Navigation.Current();
    const char* type = "no fix";
    switch (fix.type) {
    case FixType::None: break;
    case FixType::OneSv:
    case FixType::TwoSv: type = "degraded"; break;
    case FixType::TwoD: type = "2D"; break;
    case FixType::ThreeD: type = "3D"; break;
    case FixType::DeadReckoning: type = "dead reckoning"; break;
    }
    char text[256];
    std::snprintf(text, sizeof text,
                  "%8.1f s  %s %u  host %s %u  %s%s %u SVs %.6f %.6f %.1f m/s%s  sent %llu B (%llu dropped)  "
                  "heard %llu B, %llu commands, %llu refused",
                  Sim.Now, Sim.Kept.protocol == Protocol::Nmea ? "NMEA" : "SiRF", Sim.Kept.lineRate,
                  hostPresent ? "open" : "away", hostRate, type, fix.differential ? " DGPS" : "", fix.used,
                  fix.place.latitudeDeg, fix.place.longitudeDeg, fix.speedMps, Sim.Awake() ? "" : " asleep",
                  static_cast<unsigned long long>(Wire.BytesToHost),
                  static_cast<unsigned long long>(Sim.MessagesDropped),
                  static_cast<unsigned long long>(Wire.BytesToReceiver),
                  static_cast<unsigned long long>(Sim.CommandsAccepted),
                  static_cast<unsigned long long>(Sim.CommandsRefused));
    return text;
}

} // namespace receiver
