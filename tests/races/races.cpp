// SPDX-License-Identifier: MIT
// The two threads at work at the same time, for ThreadSanitizer: the reader decodes both protocols at full
// speed, while the user opens and closes the port and every dialog, searches, logs, paints and draws the
// chart. Ends with an error when a race was reported that tests/races/suppressions.txt does not name (the
// sanitizer does that), or if the program did not do its work.
//
// Usage: races [SECONDS]

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "graph/recorder.h"
#include "headless.h"
#include "link/link_state.h"
#include "platform/start.h"
#include "resources/resource_ids.h"
#include "sky/sky_objects.h"
#include "tests/support/settings_key.h"

namespace
{

using Clock = std::chrono::steady_clock;

constexpr uint32_t ByteMicroseconds = 20; // faster than the program can read
constexpr uint32_t ShortMs = 200, LongMs = 1500;
constexpr int FastestRate = 7; // index of 115200

Clock::time_point End;
uint32_t Rounds = 0, DialogsOpened = 0, Paints = 0;

std::string Log(const char* name)
{
    std::ifstream file(std::string(TEST_DATA) + "/" + name, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (bytes.empty()) {
        std::fprintf(stderr, "%s is missing\n", name);
        std::exit(1);
    }
    return bytes;
}

// ---- What the user does -------------------------------------------------------------------------------

void Then(std::function<void()> step, uint32_t delay = ShortMs)
{
    HeadlessUser(std::move(step), delay);
}

void Click(int control, uint32_t delay = ShortMs)
{
    Then([control] { HeadlessClick(HeadlessTopDialog(), control); }, delay);
}

void Choose(int control, int entry)
{
    Then([control, entry] { HeadlessChoose(HeadlessTopDialog(), control, entry); }, 0);
}

void OpenDialog(int command)
{
    Then([command] {
        ++DialogsOpened;
        HeadlessCommand(HeadlessMainWindow(), command);
    });
}

void CloseDialog(uint32_t delay = ShortMs)
{
    Then([] { HeadlessCommand(HeadlessTopDialog(), IDCANCEL); }, delay);
}

void Toggle()
{
    Then([] {
        ++Paints;
        HeadlessKey(HeadlessMainWindow(), 0x25); // an arrow key has no character
    });
}

// Close, open again, log, and a search, from within the Communication dialog.
void VisitCommunication()
{
    OpenDialog(COMMAND_COMMUNICATION);
    Then([] {
        HeadlessAnswerSaveDialog(L"\\log" + std::to_wstring(Rounds), 1);
        HeadlessClick(HeadlessTopDialog(), CONTROL_COM_LOG_OPEN);
    });
    Click(CONTROL_COM_CLOSE, LongMs);
    Choose(CONTROL_COM_PORT, 3);
    Choose(CONTROL_COM_BAUDRATE, FastestRate);
    if (Rounds % 4 == 3)
        Click(CONTROL_COM_FIND_BAUD);
    else
        Click(CONTROL_COM_OPEN);
    Click(CONTROL_COM_LOG_CLOSE, LongMs);
    CloseDialog(LongMs);
}

void VisitGraphOptions()
{
    constexpr int Ends[] = {CONTROL_GRAPH_SHOW, CONTROL_GRAPH_HIDE};
    OpenDialog(COMMAND_GRAPH);
    Choose(CONTROL_GRAPH_TIME_SCALE, static_cast<int>(Rounds % 6));
    Click(CONTROL_GRAPH_LINES);
    Click(CONTROL_GRAPH_ZERO);
    Click(CONTROL_GRAPH_SAVE);
    Click(Ends[Rounds % 2]);
}

struct Visit {
    int command, get, set; // 0: the dialog has no such button
};
constexpr Visit Visits[] = {
    {COMMAND_ABOUT, 0, 0},
    {DIALOG_NMEA_SET_SERIAL_PORT, 0, 0},
    {DIALOG_NMEA_NAVIGATION_INITIALIZATION, 0, CONTROL_NAVINIT_SET},
    {DIALOG_NMEA_SET_MESSAGE_RATE, 0, CONTROL_NMEA_RATE_SET},
    {DIALOG_NMEA_DEVELOPMENT_DATA, 0, CONTROL_DEVELOPMENT_SET},
    {DIALOG_NMEA_SELECT_DATUM, 0, CONTROL_DATUM_SET},
    {DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT, CONTROL_APM_GET, CONTROL_APM_SET},
    {DIALOG_SIRF_INITIALIZE_DATA_SOURCE, CONTROL_INIT_GET, CONTROL_INIT_SET},
    {DIALOG_SIRF_SWITCH_TO_NMEA, 0, CONTROL_TO_NMEA_SET},
    {DIALOG_SIRF_DGPS_SOURCE, CONTROL_DGPS_SOURCE_GET, CONTROL_DGPS_SOURCE_SET},
    {DIALOG_SIRF_MODE_CONTROL, CONTROL_MODE_GET, CONTROL_MODE_SET},
    {DIALOG_SIRF_DOP_MASK, CONTROL_DOP_GET, CONTROL_DOP_SET},
    {DIALOG_SIRF_DGPS_MODE, CONTROL_DGPS_MODE_GET, CONTROL_DGPS_MODE_SET},
    {DIALOG_SIRF_ELEVATION_MASK, CONTROL_ELEVATION_GET, CONTROL_ELEVATION_SET},
    {DIALOG_SIRF_POWER_MASK, CONTROL_POWER_GET, CONTROL_POWER_SET},
    {DIALOG_SIRF_STATIC_NAVIGATION, CONTROL_STATIC_NAVIGATION_GET, CONTROL_STATIC_NAVIGATION_SET},
    {DIALOG_SIRF_TRICKLE_POWER, CONTROL_TRICKLE_GET, CONTROL_TRICKLE_SET},
    {DIALOG_SIRF_SET_MESSAGE_RATE, 0, CONTROL_RATE_SET},
    {DIALOG_SIRF_LOW_POWER, CONTROL_LOW_POWER_GET, CONTROL_LOW_POWER_SET},
    {DIALOG_SIRF_SBAS, CONTROL_SBAS_GET, CONTROL_SBAS_SET},
    {DIALOG_SIRF_POLL_SOFTWARE_VERSION, CONTROL_SOFTWARE_VERSION_GET, 0},
};

void Round()
{
    if (Clock::now() >= End) {
        Then([] { HeadlessCommand(HeadlessMainWindow(), COMMAND_EXIT); });
        return;
    }
    ++Rounds;
    for (const Visit& visit : Visits) {
        OpenDialog(visit.command);
        if (visit.get) Click(visit.get);
        if (visit.set) Click(visit.set);
        CloseDialog();
        Toggle();
    }
    VisitGraphOptions();
    VisitCommunication();
    Then(Round);
}

int Report(int exitCode)
{
    std::printf("%u rounds, %u dialogs, %zu boxes, %u bytes, %u sentences, %u messages, %u samples\n", Rounds,
                DialogsOpened, HeadlessBoxes().size(), BytesReceived.load(), NmeaMessageCount.load(),
                SirfMessageCount.load(), GraphSampleCount.load());
    const bool worked = exitCode == 0 && Rounds > 0 && NmeaMessageCount.load() > 1000 &&
                        SirfMessageCount.load() > 1000 && GraphSampleCount.load() > 1000 &&
                        HeadlessLiveThreads() == 0;
    return worked ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    End = Clock::now() + std::chrono::seconds(argc > 1 ? std::atoi(argv[1]) : 10);
    HeadlessReset();
    HeadlessSetTimeLimit(0);
    ResetSkyObjects();
    HeadlessPort& port = HeadlessAddPort(3);
    HeadlessStream(port, Log("walk-south-west.txt") + Log("walk-south-west.srf"), ByteMicroseconds);
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, SettingsKey, L"CommPortIdx", 3);
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, SettingsKey, L"BaudrateIdx", FastestRate);
    Round();
    return Report(RunProgram(nullptr, L"", SW_SHOWNORMAL));
}
