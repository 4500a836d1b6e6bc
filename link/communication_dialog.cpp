// SPDX-License-Identifier: MIT
#include "link/communication_dialog.h"

#include "link/baudrate_choice.h"
#include "link/link_state.h"
#include "link/port_discovery.h"
#include "link/port_search.h"
#include "link/receiver_log.h"
#include "link/serial_port.h"
#include "link/serial_report.h"
#include "link/write_queue.h"
#include "resources/resource_ids.h"
#include "text/format.h"
#include "ui/active_dialog.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"
#include "ui/waiting.h"

namespace
{

constexpr UINT_PTR StatisticsTimer = 1;
constexpr UINT StatisticsMs = 1000;
constexpr uint32_t ReceiverPasses = 100, PassMs = 50; // longest wait for a message after opening
constexpr uint32_t ClosedMs = 500;                    // pause that some drivers need before the next open

bool IsAtThePort = false; // while a command opens or closes the port

// The controls that choose and open a port; they can be used while none is open.
constexpr int SelectionControls[] = {CONTROL_COM_PORT, CONTROL_COM_BAUDRATE, CONTROL_COM_FIND_PORT,
                                     CONTROL_COM_FIND_BAUD, CONTROL_COM_OPEN};

// ---- Controls -----------------------------------------------------------------------------------------

void EnableSelection(HWND dialog, bool enable)
{
    for (const int control : SelectionControls) EnableControl(dialog, control, enable);
}

void FocusControl(HWND dialog, int control)
{
    if (HWND window = GetDlgItem(dialog, control)) SetFocus(window);
}

void EnableAndFocus(HWND dialog, int control)
{
    EnableControl(dialog, control, true);
    FocusControl(dialog, control);
}

void ShowProtocol(HWND dialog)
{
    SetDlgItemTextW(dialog, CONTROL_COM_PROTOCOL, ProtocolName(ProtocolMode()));
}

// Forgets the protocol, and shows that none is known.
void ForgetProtocol(HWND dialog)
{
    ResetProtocolMode();
    ShowProtocol(dialog);
}

void ShowStatistics(HWND dialog)
{
    if (SearchInProgress.load()) return;
    wchar_t text[160];
    Format(text, L"Messages NMEA %u SiRF %u\r\nBaudrate NMEA %u Effective %.0f\r\nBytes %u",
           NmeaMessageCount.load(), SirfMessageCount.load(), NmeaReportedBaud.load(), EffectiveBaud.load(),
           BytesReceived.load());
    SetDlgItemTextW(dialog, CONTROL_COM_STATUS, text);
}

// The first statistics are shown one second from now, also when the timer is running already.
void StartStatistics(HWND dialog)
{
    if (!SetTimer(dialog, StatisticsTimer, StatisticsMs, nullptr)) ShowLastError(L"SetTimer");
}

// Index of the selected port; -1, after a box, when none is selected.
int32_t ReadPortSelection(HWND dialog)
{
    const int32_t port = GetListSelection(dialog, CONTROL_COM_PORT);
    if (IsPortIndex(port)) return port;
    InfoBox(L"Comm Port", L"Bad selection");
    return -1;
}

// ---- Initialisation -----------------------------------------------------------------------------------

void ShowPortState(HWND dialog)
{
    const bool open = IsPortOpen();
    EnableSelection(dialog, !open);
    EnableControl(dialog, CONTROL_COM_CLOSE, open);
}

int FirstFocus()
{
    return IsPortOpen() ? CONTROL_COM_CLOSE : 0;
}

void ShowLogState(HWND dialog)
{
    const bool open = LogFileHandle.load() != INVALID_HANDLE_VALUE;
    EnableControl(dialog, CONTROL_COM_LOG_OPEN, !open);
    EnableControl(dialog, CONTROL_COM_LOG_CLOSE, open);
}

void Fill(HWND dialog)
{
    FillList(dialog, CONTROL_COM_PORT, PortNameTable);
    LabelPorts(dialog);
    FillBaudrates(dialog, CONTROL_COM_BAUDRATE);
    if (IsPortIndex(CommPortIdx.load())) SelectListEntry(dialog, CONTROL_COM_PORT, CommPortIdx.load());
    if (IsBaudIndex(BaudrateIdx.load())) SelectListEntry(dialog, CONTROL_COM_BAUDRATE, BaudrateIdx.load());
    ShowProtocol(dialog);
    ShowPortState(dialog);
    ShowLogState(dialog);
    MakeListLeafable(dialog, CONTROL_COM_BAUDRATE);
    StartStatistics(dialog);
}

// ---- Commands -----------------------------------------------------------------------------------------

// Meanwhile the dialog neither repaints nor counts.
void AwaitReceiver(HWND dialog)
{
    for (uint32_t pass = 0; pass < ReceiverPasses && IsWindow(dialog); ++pass) {
        WaitServingSentMessages(PassMs);
        const uint8_t mode = ProtocolMode();
        if (mode == ProtocolNone) continue;
        if (mode == ProtocolNmea || mode == ProtocolSirf) ShowProtocol(dialog);
        return;
    }
}

// True if a link runs or is being opened. A press of a button then changes nothing; it may come too late, or
// from a program that ignores that the button is disabled. A port that a search has left open without a
// reader is closed.
bool HasLink()
{
    if (IsPortBusy()) return true;
    PortCloseHandle();
    return false;
}

void OnOpen(HWND dialog)
{
    if (HasLink()) return;
    ForgetProtocol(dialog);
    SetDlgItemTextW(dialog, CONTROL_COM_STATUS, L"");
    CommPortIdx.store(GetListSelection(dialog, CONTROL_COM_PORT));
    const int32_t port = ReadPortSelection(dialog);
    if (port < 0) return;
    const int32_t rate = GetListSelection(dialog, CONTROL_COM_BAUDRATE);
    if (!IsBaudIndex(rate)) {
        InfoBox(L"Baudrate", L"Bad selection");
        return;
    }
    BytesReceived.store(0); // before the reader counts
    wchar_t label[PortLabelCapacity] = L"";
    GetSelectedListText(dialog, CONTROL_COM_PORT, label, PortLabelCapacity);
    if (!PortOpen(PortNameTable[port], BaudTable[rate], label)) return;
    EnableSelection(dialog, false);
    AwaitReceiver(dialog);
    if (!IsWindow(dialog)) return; // the program was ended meanwhile
    EnableAndFocus(dialog, CONTROL_COM_CLOSE);
    if (ProtocolMode() != ProtocolNone) return;
    wchar_t text[32];
    Format(text, L"Bytes Received %u", BytesReceived.load());
    SetDlgItemTextW(dialog, CONTROL_COM_STATUS, text);
    StartStatistics(dialog); // a tick that is already due would replace the text immediately
}

void OnClose(HWND dialog)
{
    if (!IsPortOpen()) {
        ForgetProtocol(dialog);
        return;
    }
    EnableControl(dialog, CONTROL_COM_CLOSE, false);
    PortClose();
    // Not before the reader has ended: until then it may still recognise and show a late message.
    ForgetProtocol(dialog);
    WaitServingSentMessages(ClosedMs);
    EnableSelection(dialog, true);
    FocusControl(dialog, CONTROL_COM_OPEN);
}

void Find(HWND dialog, int32_t first, int32_t last, int button)
{
    if (HasLink()) return;
    EnableSelection(dialog, false);
    EnableControl(dialog, CONTROL_COM_CLOSE, false);
    ForgetProtocol(dialog);
    SetDlgItemTextW(dialog, CONTROL_COM_STATUS, L"");
    if (SearchPorts(dialog, first, last)) {
        const uint8_t mode = ProtocolMode();
        if (mode == ProtocolNmea || mode == ProtocolSirf) ShowProtocol(dialog);
        EnableAndFocus(dialog, CONTROL_COM_CLOSE);
        return;
    }
    ForgetProtocol(dialog); // found, but the port could not be opened again
    EnableSelection(dialog, true);
    FocusControl(dialog, button);
}

void OnFindPortAndBaud(HWND dialog)
{
    Find(dialog, 0, PortCount - 1, CONTROL_COM_FIND_PORT);
}

void OnFindBaud(HWND dialog)
{
    const int32_t port = ReadPortSelection(dialog);
    if (port >= 0) Find(dialog, port, port, CONTROL_COM_FIND_BAUD);
}

void OnLogOpen(HWND dialog)
{
    LogOpen();
    if (LogFileHandle.load() == INVALID_HANDLE_VALUE) return;
    EnableAndFocus(dialog, CONTROL_COM_LOG_CLOSE);
    EnableControl(dialog, CONTROL_COM_LOG_OPEN, false);
}

void OnLogClose(HWND dialog)
{
    LogClose();
    EnableAndFocus(dialog, CONTROL_COM_LOG_OPEN);
    EnableControl(dialog, CONTROL_COM_LOG_CLOSE, false);
}

// The log ends by itself when it cannot be written any more.
void NoticeEndOfLog(HWND dialog)
{
    const HWND close = GetDlgItem(dialog, CONTROL_COM_LOG_CLOSE);
    if (LogFileHandle.load() != INVALID_HANDLE_VALUE || !close || !IsWindowEnabled(close)) return;
    EnableControl(dialog, CONTROL_COM_LOG_OPEN, true);
    if (GetFocus() == close) FocusControl(dialog, CONTROL_COM_LOG_OPEN); // a disabled button takes no keys
    EnableControl(dialog, CONTROL_COM_LOG_CLOSE, false);
}

void OnEnd(HWND dialog)
{
    if (OpenDialogOfKind(DialogKind::Communication) != dialog) return; // it has ended already
    WithdrawDialog();
    if (!KillTimer(dialog, StatisticsTimer)) ShowLastError(L"KillTimer");
}

// While a command waits, it serves messages of other programs, which may press disabled buttons, too. So only
// one command at a time may open or close the port.
template <void (*Command)(HWND)> void AtThePort(HWND dialog)
{
    if (IsAtThePort) return;
    IsAtThePort = true;
    Command(dialog);
    IsAtThePort = false;
}

constexpr DialogButton Buttons[] = {
    {CONTROL_COM_OPEN, AtThePort<OnOpen>},
    {CONTROL_COM_CLOSE, AtThePort<OnClose>},
    {CONTROL_COM_FIND_BAUD, AtThePort<OnFindBaud>},
    {CONTROL_COM_FIND_PORT, AtThePort<OnFindPortAndBaud>},
    {CONTROL_COM_LOG_OPEN, OnLogOpen},
    {CONTROL_COM_LOG_CLOSE, OnLogClose},
    {IDOK, OnEnd},
    {IDCANCEL, OnEnd},
};

INT_PTR OnTimer(HWND dialog, UINT message, WPARAM, LPARAM)
{
    if (message != WM_TIMER) return FALSE;
    ShowStatistics(dialog);
    NoticeEndOfLog(dialog);
    return TRUE;
}

} // namespace

constexpr Dialog CommunicationDialog = {
    .number = DIALOG_COMMUNICATION,
    .kind = DialogKind::Communication,
    .buttons = Buttons,
    .fill = Fill,
    .firstFocus = FirstFocus,
    .handle = OnTimer,
};
