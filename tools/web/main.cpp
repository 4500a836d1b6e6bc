// SPDX-License-Identifier: MIT
// The program for the page: the port that it uses first, the requests of the page, and its reports.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "graph/channels.h"
#include "link/link_state.h"
#include "link/port_search.h"
#include "link/serial_port.h"
#include "link/write_queue.h"
#include "log_player.h"
#include "messages.h"
#include "platform/start.h"
#include "settings/settings_store.h"
#include "sky/sky_objects.h"
#include "software_receiver.h"
#include "text/format.h"
#include "ui/active_dialog.h"

namespace
{

constexpr int32_t ReceiverPort = 0, LogPort = 9;
constexpr int32_t ReceiverRate = 4800, LogRate = 115200;
constexpr const wchar_t* SettingsPath = L"Software\\Quenmark\\Toravane";
constexpr uint64_t Settling = 2'000'000; // microseconds that opening a port takes
// The software receiver is ahead by this time, so that each of its messages has arrived once; microseconds.
constexpr uint64_t FirstFixes = 7'000'000;
constexpr double ReportMs = 200; // between two reports of a log's progress
constexpr int MostDialogs = 10;  // windows above each other

std::shared_ptr<LogPlayer> Player; // null: no log
int32_t Substitute = -1;           // port that was opened instead of the stored one

// ---- Reports ------------------------------------------------------------------------------------------

struct LinkReport {
    int32_t port = -1, rate = 0;
    std::wstring protocol = L"-";
    bool searching = false;
    bool operator==(const LinkReport&) const = default;
};
LinkReport Reported;
size_t ReportedPlace = 0;
double LastReport = 0;

LinkReport Link()
{
    LinkReport link;
    link.searching = SearchInProgress.load() != 0;
    if (!IsPortOpen()) return link;
    link.port = CommPortIdx.load();
    const int32_t rate = BaudrateIdx.load();
    link.rate = IsBaudIndex(rate) ? static_cast<int32_t>(BaudTable[rate]) : 0;
    link.protocol = ProtocolName(ProtocolMode());
    return link;
}

void ReportLink()
{
    const LinkReport link = Link();
    if (link == Reported) return;
    Reported = link;
    web::ToPageReceiver(link.port, link.rate, link.protocol, link.searching);
}

void ReportPlayback()
{
    if (!Player || Player->Position() == ReportedPlace) return;
    const double now = web::PageTime();
    if (now - LastReport < ReportMs && Player->Position() != Player->Length()) return;
    LastReport = now;
    ReportedPlace = Player->Position();
    web::ToPagePlayback(static_cast<int32_t>(ReportedPlace), static_cast<int32_t>(Player->Length()));
}

// ---- Ports --------------------------------------------------------------------------------------------

int32_t Stored(const wchar_t* name)
{
    int32_t number = -1;
    const memory::StoredValue* value = memory::FindValue(HKEY_LOCAL_MACHINE, SettingsPath, name);
    if (value && value->data.size() == sizeof number) std::memcpy(&number, value->data.data(), sizeof number);
    return number;
}

// The port that the program finds stored when it starts.
uint32_t ChooseFirstPort()
{
    const int32_t port = Stored(SettingCommPort);
    const bool known = IsPortIndex(port) && IsBaudIndex(Stored(SettingBaudrate)) &&
                       (port == ReceiverPort || web::HasPort(static_cast<uint32_t>(port)));
    if (!Player && known) return static_cast<uint32_t>(port);
    Substitute = Player ? LogPort : ReceiverPort;
    web::OnSetting(SettingCommPort, Substitute);
    web::OnSetting(SettingBaudrate, FindBaudrate(Player ? LogRate : ReceiverRate));
    return static_cast<uint32_t>(Substitute);
}

void Open(int32_t port, int32_t rate)
{
    CommPortIdx.store(port);
    BytesReceived.store(0);
    PortOpen(PortNameTable[port], static_cast<uint32_t>(rate));
}

// When no dialog is open, closes the port and continues with `act`.
void WithPortClosed(std::function<void()> act, int dialogs = MostDialogs)
{
    web::Enqueue([=] {
        if (HWND dialog = memory::TopDialog()) {
            memory::Send(dialog, WM_CLOSE, 0, 0);
            if (dialogs > 0) WithPortClosed(act, dialogs - 1);
            return;
        }
        PortClose();
        ResetProtocolMode();
        Substitute = -1; // this is the user's choice
        act();
    });
}

} // namespace

namespace web
{

int Start()
{
    const uint32_t first = ChooseFirstPort();
    const uint64_t ahead = first == uint32_t{ReceiverPort} ? Settling + FirstFixes
                           : first == uint32_t{LogPort}    ? Settling
                                                           : 0;
    AddDevice(ReceiverPort, L"Receiver in this page", std::make_shared<SoftwareReceiver>(ahead));
    if (Player) AddDevice(LogPort, L"Log", Player);
    OfferColourChooser();
    HurryUntil(memory::Now() + ahead);
    return RunProgram(nullptr, L"", SW_SHOWNORMAL);
}

void AfterStep()
{
    ReportLink();
    ReportPlayback();
}

bool Keeps(const std::wstring& setting)
{
    const bool ofPort = setting == SettingCommPort || setting == SettingBaudrate;
    return !ofPort || Substitute < 0 || CommPortIdx.load() != Substitute;
}

std::wstring ChartValues()
{
    std::wstring words;
    for (const GraphChannelRecord& channel : GraphChannel) {
        wchar_t value[64];
        Format(value, L"%s%s %.1f", words.empty() ? L"" : L", ", channel.Name,
               static_cast<double>(channel.PublishedValue.load()));
        words += value;
    }
    return words;
}

std::wstring SkyValues()
{
    std::wstring words;
    for (uint32_t row = 0; row < SkyObjectCount; ++row) {
        const SkyObject& object = SkyObjects[row];
        const double elevation = object.plottedElevation.load();
        if (elevation < 0) continue;
        wchar_t name[16], place[64];
        if (row == SunRow || row == MoonRow)
            Format(name, L"%s", row == SunRow ? L"Sun" : L"Moon");
        else
            Format(name, L"satellite %d", object.id);
        Format(place, L"%s%s elevation %.0f azimuth %.0f", words.empty() ? L"" : L", ", name, elevation,
               static_cast<double>(object.plottedAzimuth.load()));
        words += place;
    }
    return words.empty() ? L"nothing above the horizon" : words;
}

void OnLog(std::string_view bytes, int32_t speed)
{
    Player = std::make_shared<LogPlayer>(bytes, speed);
}

void OnPlay(int32_t speed, bool paused)
{
    if (Player) Player->Play(speed, paused);
}

void OnSearch(int32_t port)
{
    if (!IsPortIndex(port)) return;
    const LinkReport before = Link();
    const int32_t substitute = Substitute;
    WithPortClosed([=] {
        const bool found = SearchPorts(MainWindow.load(), port, port);
        const LinkReport link = Link();
        ToPageFound(port, found ? link.rate : 0, link.protocol);
        if (found) return;
        const bool hadOther = before.rate > 0 && before.port != port;
        Substitute = hadOther ? substitute : ReceiverPort;
        Open(hadOther ? before.port : ReceiverPort, hadOther ? before.rate : ReceiverRate);
    });
}

void OnConnect(int32_t port, int32_t rate)
{
    WithPortClosed([=] {
        if (IsPortIndex(port) && rate > 0) Open(port, rate);
    });
}

} // namespace web
