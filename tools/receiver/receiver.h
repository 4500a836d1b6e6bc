// SPDX-License-Identifier: MIT
#pragma once
// The receiver without its terminal: it takes the host's bytes and the time of the run, and queues the bytes
// that it sends. It uses no clock, no file and no thread: equal input gives equal output.

#include "host_input.h"
#include "navigation.h"
#include "power.h"
#include "settings.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace receiver
{

// One message on its way to the host, at the line rate that was set when it was queued.
struct Burst {
    Bytes bytes;
    uint32_t rate = 4800;
    bool answer = false; // to a command: survives a switch of the line
};

// Commands by name: MIDs with their polls by 168, such polls alone, and PSRF numbers.
struct CommandList {
    std::set<int> mids, polls, psrf;
};

// A byte of a set command that is reported with another value, although the command was acknowledged.
struct Alteration {
    uint8_t mid = 0, offset = 0, value = 0; // offset from the MID
};

struct Config {
    Track track;
    GpsTime start;
    uint64_t seed = 1;
    Protocol protocol = Protocol::Nmea; // factory protocol and rate: a factory reset restores them
    uint32_t lineRate = 4800;
    Restart firstStart = Restart::Cold;
    std::string version = "GSW3.1.1-SW 1.00";
    CommandList refused; // commands that this firmware does not know
    // Old firmware assumes the first possible week from this one on, and so reports dates that are a multiple
    // of 1024 weeks too early. Without this value the date is right.
    std::optional<int32_t> pivotWeek;
    bool wrap = false; // each SiRF message inside an EE message, as some two-part firmware sends them
};

class Receiver
{
public:
    explicit Receiver(const Config& config);

    // One byte from the host, as the receiver's own line interface has read it.
    void HostByte(uint8_t byte);

    // Runs up to this moment; never goes back.
    void Advance(double runSeconds);

    // Bytes that wait to be sent. The line takes bursts from the front.
    std::deque<Burst> Output;

    // ---- used by the command and output files ----
    void Send(Bytes message);                             // an answer: always queued
    void Answer(const Bytes& payload);                    // the same for a SiRF payload
    void SendPeriodic(Bytes message);                     // dropped when the line cannot keep up
    void SwitchTo(Protocol protocol, uint32_t rate);      // discards the bytes that were not sent yet
    void SwitchForHost(Protocol protocol, uint32_t rate); // the same, with the faults of a switch
    void RestartAs(Restart kind, bool factoryReset);

    Config Options;
    Settings Kept;
    Navigator Navigation;
    double Now = 0; // seconds of the run

    // The values of the last start, for the start-up text and for polls.
    struct StartValues {
        int32_t x = 0, y = 0, z = 0; // ECEF metres
        int32_t clockHz = 96000;
        uint32_t towCs = 0;
        uint16_t week = 0;
        uint8_t channels = 12;
    } Started;

    // ---- faults, set from outside at any time ----
    double FrozenUntil = -1; // receives nothing, sends nothing
    double SilentUntil = -1; // receives, sends nothing
    double FreezeAfterSwitchS = 0;
    double WrongChecksumChance = 0; // per message
    uint32_t SwitchLandsAt = 0;     // the rate after a host's switch; 0: the requested one
    uint32_t SwitchesIgnored = 0;   // this number of the host's next switches has no effect
    CommandList Muted;              // not carried out and not answered
    std::vector<Alteration> Altered;

    // ---- for the status line ----
    uint64_t CommandsAccepted = 0, CommandsRefused = 0, MessagesSent = 0, MessagesDropped = 0;
    bool Awake() const { return Power.Awake; }

private:
    double NextEvent() const;
    void Boot();
    void Epoch();
    void Wake();
    void Sleep();
    void ReportPower();
    Bytes Frame(const Bytes& payload) const;
    void Queue(Bytes message, bool answer);
    bool Due(double& last, uint8_t seconds) const;

    Random Noise;
    PowerState Power;
    double NextEpoch = 0, BootAt = 0;
    bool Booted = false;
    std::array<double, NmeaMessageCount> NmeaSent{}; // time, seconds of the run
    std::array<double, 256> SirfSent{};
    NmeaInput NmeaCommand;
    SirfInput SirfCommand;
};

} // namespace receiver
