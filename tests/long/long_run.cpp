// SPDX-License-Identifier: MIT
// The whole program, its window, reader thread, decoders, chart and log, against the software receiver for a
// simulated week (or the number of hours in the argument). The receiver's protocol changes every few hours,
// by the program's own commands; five minutes of each hour bytes are lost, five minutes bits are wrong, then
// noise comes. The tick count wraps after ten minutes and midnight comes after an hour and a half, at the
// end of a GPS week.
//
// While the line is good every message is counted, every byte is in the log, page and chart show the time of
// day, and the used heap does not grow. The first violation ends the run with an error.
//
// Usage: long_run [HOURS]

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <deque>
#include <fstream>
#include <malloc.h>
#include <new>
#include <optional>
#include <string>

#include "graph/graph_settings.h"
#include "graph/recorder.h"
#include "graph/surface.h"
#include "headless.h"
#include "link/link_state.h"
#include "link/receiver_log.h"
#include "link/serial_port.h"
#include "nmea/command_encoder.h"
#include "platform/start.h"
#include "resources/resource_ids.h"
#include "sirf/switch_to_nmea_command.h"
#include "tests/support/settings_key.h"
#include "tools/receiver/session.h"
#include "ui/page_lines.h"

// Bytes of heap in use. The allocator's own figure counts what its threads keep for later, too, and that
// grows.
static std::atomic<size_t> HeapInUse = 0;

void* operator new(size_t size)
{
    void* block = std::malloc(size);
    if (!block) std::abort();
    HeapInUse += malloc_usable_size(block);
    return block;
}

void operator delete(void* block) noexcept
{
    HeapInUse -= malloc_usable_size(block);
    std::free(block);
}

void operator delete(void* block, size_t) noexcept
{
    operator delete(block);
}

namespace
{

constexpr uint32_t StepMs = 50, StepsPerSecond = 1000 / StepMs;
constexpr uint32_t Minute = 60, Hour = 3600;
constexpr uint32_t TicksBeforeWrap = 10 * Minute * 1000 + 170; // in the middle of a sentence
constexpr uint32_t NmeaRate = 9600, SirfRate = 38400;
constexpr int NmeaRateIndex = 3;
constexpr uint32_t SettleS = 60; // after a change of protocol, or faults
constexpr uint32_t LossAt = 20 * Minute, FlipAt = 25 * Minute, NoiseAt = 30 * Minute, GoodAt = 31 * Minute;
constexpr uint32_t ChangeAt = 40 * Minute; // of the protocol
constexpr uint32_t HiddenAt = 5 * Minute;  // a window that nobody sees is not painted
constexpr uint32_t LogAt = 2 * Minute, LogEndsAt = 58 * Minute;
constexpr const wchar_t* LogName = L"\\hour.log";

struct Counts {
    uint32_t bytes = 0, nmea = 0, sirf = 0;
};

std::optional<receiver::Session> Session;
receiver::NmeaInput SentSentences; // count what has been sent by other means than the program's
receiver::SirfInput SentFrames;
Counts Sent;
std::deque<Counts> SentBefore; // at the steps before, as the reader may not have come to the latest

uint32_t Hours = 168, HoursOfAProtocol = 5;
uint64_t StartMs = 0, Steps = 0;
uint32_t LastTick = 0, Wraps = 0, Midnights = 0, Changes = 0, Checks = 0;
bool Sirf = false; // the receiver's protocol

// The state at the beginning of a stretch of good line.
struct Stretch {
    uint32_t second = 0; // of the run; 0: none
    Counts sent, read;
};
Stretch Good;
uint32_t GoodFrom = SettleS; // second of the run from which the line counts as good
bool Faulty = false;

uint32_t LogStart = 0;
size_t HeapAtStart = 0, MostHeap = 0;
uint32_t BorrowedAtStart = 0;
long ResidentAtStart = 0;
std::wstring LastDate;

HeadlessPort& Port()
{
    return HeadlessGetPort(3);
}

uint32_t Second()
{
    return static_cast<uint32_t>(Steps / StepsPerSecond);
}

void Require(bool holds, const char* what, double is = 0, double expected = 0)
{
    if (holds) return;
    std::printf("after %u:%02u:%02u: %s: %.3f, expected %.3f\n", Second() / Hour, Second() / Minute % 60,
                Second() % 60, what, is, expected);
    std::fflush(stdout);
    std::_Exit(1);
}

long ResidentKilobytes(const char* field)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(field)) return std::atol(line.c_str() + std::string(field).size() + 1);
    return 0;
}

// ---- Line ---------------------------------------------------------------------------------------------

void Perform(const char* text)
{
    std::string error;
    const std::optional<receiver::Action> action = receiver::ParseAction(text, error);
    Require(action.has_value(), text);
    Session->Perform(*action);
}

void MoveBytes()
{
    HeadlessPort& port = Port();
    const receiver::Bytes fromHost(port.sent.begin(), port.sent.end());
    port.sent.clear();
    port.writes.clear();
    const double seconds = static_cast<double>(HeadlessElapsed() - StartMs) / 1000;
    const receiver::Bytes bytes = Session->Step(seconds, fromHost, port.dcb.BaudRate);
    SentBefore.push_back(Sent);
    if (SentBefore.size() > 4) SentBefore.pop_front();
    for (const uint8_t b : bytes) {
        ++Sent.bytes;
        if (SentSentences.Feed(b)) ++Sent.nmea;
        if (SentFrames.Feed(b)) ++Sent.sirf;
    }
    HeadlessReceive(port, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

// A number of the program's lies between what had been sent a moment ago and what has been sent now.
void RequireCount(const char* what, uint32_t read, uint32_t before, uint32_t now)
{
    Require(read - before <= now - before, what, read, now);
}

Counts Read()
{
    return {BytesReceived.load(), NmeaMessageCount.load(), SirfMessageCount.load()};
}

// ---- What must hold -----------------------------------------------------------------------------------

// Seconds that the page's time is behind the receiver's.
double PageDelay(uint32_t& secondOfDay)
{
    wchar_t line[TextLineCapacity];
    CopyTextLine(0, line);
    receiver::UtcDate date;
    const int read = std::swscanf(line, L" UTC: %d-%d-%d %d:%d:%d", &date.year, &date.month, &date.day,
                                  &date.hour, &date.minute, &date.second);
    Require(read == 6, "numbers on the page's first line", read, 6);
    const std::wstring day(line, 16);
    Midnights += !LastDate.empty() && day != LastDate;
    LastDate = day;
    secondOfDay = static_cast<uint32_t>(date.hour * 3600 + date.minute * 60 + date.second);
    const double seconds = static_cast<double>(HeadlessElapsed() - StartMs) / 1000;
    return Session->Sim.Navigation.TrueTime(seconds).Seconds() - receiver::FromUtc(date).Seconds();
}

void CheckTimes()
{
    uint32_t secondOfDay = 0;
    const double delay = PageDelay(secondOfDay);
    Require(delay > -1 && delay < 4, "seconds that the page is behind", delay, 1);
    const uint32_t width = GraphWidth.load(), scale = SelectedTimeScale().SecondsPerColumn;
    const uint32_t column = CurrentGraphColumn.load();
    const bool fits =
        column == secondOfDay / scale % width || column == (secondOfDay + 86399) % 86400 / scale % width;
    Require(fits, "column of the chart", column, secondOfDay / scale % width);
}

void CheckMinute()
{
    ++Checks;
    const Counts read = Read(), before = SentBefore.front();
    Require(HeadlessBoxes().empty(), "boxes", static_cast<double>(HeadlessBoxes().size()));
    Require(HeadlessLiveThreads() == 1, "reader threads", HeadlessLiveThreads(), 1);
    RequireCount("bytes", read.bytes, before.bytes, Sent.bytes);
    Require((ProtocolMode() & (Sirf ? ProtocolSirf : ProtocolNmea)) != 0, "protocol", ProtocolMode());
    if (Faulty || Second() < GoodFrom) {
        Good.second = 0;
        return;
    }
    CheckTimes();
    if (!Good.second) {
        Good = {Second(), Sent, read};
        return;
    }
    if (Sirf)
        RequireCount("SiRF messages", read.sirf - Good.read.sirf, before.sirf - Good.sent.sirf,
                     Sent.sirf - Good.sent.sirf + 2);
    else
        RequireCount("NMEA messages", read.nmea - Good.read.nmea, before.nmea - Good.sent.nmea,
                     Sent.nmea - Good.sent.nmea + 2);
}

void CheckSamples()
{
    static uint32_t samples = 0;
    const uint32_t added = GraphSampleCount.load() - samples;
    samples += added;
    if (Good.second && Second() - Good.second >= Minute)
        Require(added >= 58 && added <= 62, "samples a minute", added, 60);
}

// Resources that the program has not given back to the system: handles, registry keys, texts, drawing
// objects.
uint32_t Borrowed()
{
    return HeadlessOpenHandles() + HeadlessOpenKeys() + HeadlessUnfreedTexts() + HeadlessGdiObjects();
}

void CheckHour()
{
    const size_t heap = HeapInUse.load();
    if (Second() == Hour) {
        HeapAtStart = heap;
        BorrowedAtStart = Borrowed();
        ResidentAtStart = ResidentKilobytes("VmHWM:");
    }
    MostHeap = std::max(MostHeap, heap);
    // The receiver and the queues of the line breathe a little.
    const double grown = static_cast<double>(heap) - static_cast<double>(HeapAtStart);
    Require(grown < 16384, "bytes of heap since the first hour", grown);
    Require(Borrowed() == BorrowedAtStart, "handles, keys, texts and drawing objects", Borrowed(),
            BorrowedAtStart);
    if (Second() % (24 * Hour) == 0)
        std::printf("day %u: %u sentences, %u messages, %u samples, heap %zu\n", Second() / (24 * Hour),
                    NmeaMessageCount.load(), SirfMessageCount.load(), GraphSampleCount.load(), heap);
}

// ---- What happens -------------------------------------------------------------------------------------

void EnterNmea(uint32_t baud)
{
    uint8_t seconds[NmeaRateCount];
    LoadNmeaRates(seconds);
    SendSwitchToNmea(DebugMessages::Unchanged, seconds, true, baud);
}

void ChangeProtocol()
{
    if (Sirf)
        EnterNmea(NmeaRate);
    else
        NmeaSend("PSRF100,0,38400,8,1,0");
    GoodFrom = Second() + SettleS;
    Good.second = 0;
}

void FollowReceiver()
{
    Sirf = !Sirf;
    ++Changes;
    PortSetBaud(Sirf ? SirfRate : NmeaRate);
    Port().rates.clear();
    ResetProtocolMode();
}

void OpenLog()
{
    HeadlessAnswerSaveDialog(LogName, 3);
    Require(LogOpen(), "log");
    LogStart = BytesReceived.load();
}

void CloseLog()
{
    const uint32_t routed = BytesReceived.load() - LogStart;
    LogClose();
    const size_t size = HeadlessFileContent(LogName).size();
    Require(size == routed, "bytes in the log", static_cast<double>(size), routed);
    HeadlessWriteFile(LogName, "");
    HeadlessClearSaveDialogs();
}

void ActOnSecond()
{
    const uint32_t second = Second() % Hour, hour = Second() / Hour;
    const bool changes = hour % HoursOfAProtocol == HoursOfAProtocol - 1;
    const HWND window = HeadlessMainWindow();
    static uint32_t before = 0;
    switch (second) {
    case 0: ShowWindow(window, SW_SHOW); break;
    case LogAt: OpenLog(); break;
    case HiddenAt:
        HeadlessKey(window, 0x25);
        ShowWindow(window, SW_HIDE);
        break;
    case LossAt:
        Faulty = true;
        before = NmeaMessageCount.load() + SirfMessageCount.load();
        Perform("lose 0.002");
        break;
    case FlipAt:
        Perform("lose 0");
        Perform("flip 0.002");
        break;
    case NoiseAt:
        Perform("flip 0");
        Perform("burst 5000");
        break;
    case GoodAt: {
        const uint32_t through = NmeaMessageCount.load() + SirfMessageCount.load() - before;
        Require(through > 600, "messages through a bad line", through, 600);
        Faulty = false;
        GoodFrom = Second() + SettleS;
        break;
    }
    case ChangeAt:
        if (changes) ChangeProtocol();
        break;
    case ChangeAt + 2:
        if (changes) FollowReceiver();
        break;
    case LogEndsAt: CloseLog(); break;
    default: break;
    }
    if (second == Minute) TimeScaleIdx.store(static_cast<int32_t>(hour % TimeScaleCount));
}

void Step()
{
    MoveBytes();
    ++Steps;
    const uint32_t tick = GetTickCount();
    Wraps += tick < LastTick;
    LastTick = tick;
    // Measured over a sentence or a message: a wrap counted as time would make it next to nothing.
    const float baud = EffectiveBaud.load();
    Require(baud == 0 || baud > 500, "effective baud", static_cast<double>(baud), NmeaRate);
    if (Steps % StepsPerSecond == 0) {
        ActOnSecond();
        if (Second() % Minute == Minute - 1) {
            CheckMinute();
            CheckSamples();
            HeadlessClearInvalidations(HeadlessMainWindow());
        }
        if (Second() % Hour == 0) CheckHour();
    }
    if (Steps < uint64_t{Hours} * Hour * StepsPerSecond)
        HeadlessUser(Step, StepMs);
    else
        HeadlessUser([] {
            ShowWindow(HeadlessMainWindow(), SW_SHOW);
            HeadlessCommand(HeadlessMainWindow(), COMMAND_EXIT);
        });
}

void Begin()
{
    StartMs = HeadlessElapsed();
    HeadlessSetTick(0u - TicksBeforeWrap);
    LastTick = GetTickCount();
    receiver::Config config;
    config.protocol = receiver::Protocol::Nmea;
    config.lineRate = NmeaRate;
    config.firstStart = receiver::Restart::Hot;
    config.start = *receiver::ParseDate("2008-06-21T22:30:00"); // a Saturday
    Session.emplace(config, std::vector<receiver::Action>{}, std::nullopt);
    Step();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1) Hours = static_cast<uint32_t>(std::atoi(argv[1]));
    if (Hours < 24) HoursOfAProtocol = 1;
    HeadlessReset();
    HeadlessSetTimeLimit(0);
    HeadlessAddPort(3);
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, SettingsKey, L"CommPortIdx", 3);
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, SettingsKey, L"BaudrateIdx", NmeaRateIndex);
    HeadlessUser(Begin);
    Require(RunProgram(nullptr, L"", SW_SHOWNORMAL) == 0, "exit code");
    Require(HeadlessOpenHandles() <= 1, "handles", HeadlessOpenHandles());
    Require(Wraps >= 1, "wraps of the tick count", Wraps, 1);
    std::printf(
        "%u hours: %u bytes, %u sentences, %u messages, %u samples; %u checks, %u changes of protocol, "
        "%u midnights, %u wraps of the tick count\n",
        Hours, Sent.bytes, NmeaMessageCount.load(), SirfMessageCount.load(), GraphSampleCount.load(), Checks,
        Changes, Midnights, Wraps);
    std::printf(
        "peak of memory after the first hour %ld kB, at the end %ld kB; heap in use after the first hour %zu "
        "bytes, after any %zu at most\n",
        ResidentAtStart, ResidentKilobytes("VmHWM:"), HeapAtStart, MostHeap);
    return 0;
}
