// SPDX-License-Identifier: MIT
#include "link/receiver_log.h"

#include "link/link_state.h"
#include "text/format.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"

std::atomic<HANDLE> LogFileHandle{INVALID_HANDLE_VALUE};

namespace
{

constexpr uint32_t PathCapacity = MAX_PATH;
constexpr DWORD NameTooLong = 206; // the system's error, which not every platform names

// Pairs of a text for the user and a pattern of file names; the third pattern accepts any name.
constexpr wchar_t NameFilters[] = L"NMEA Text (*.txt)\0*.txt\0SiRF Binary (*.srf)\0*.srf\0Any (*.*)\0*.*\0";
constexpr DWORD NmeaFilter = 1, SirfFilter = 2, AnyFilter = 3;

DWORD FilterOfProtocol()
{
    const uint8_t mode = ProtocolMode();
    return mode == ProtocolNmea ? NmeaFilter : mode == ProtocolSirf ? SirfFilter : AnyFilter;
}

// A name without extension in the user's folder: the local time, so that the names sort by time.
void ProposePath(wchar_t (&path)[PathCapacity], int folder)
{
    if (!SHGetSpecialFolderPathW(nullptr, path, folder, FALSE)) path[0] = 0;
    SYSTEMTIME now;
    GetLocalTime(&now);
    AppendFormat(path, L"\\%02u%02u%02u%02u%02u%02u", now.wYear % 100u, now.wMonth, now.wDay, now.wHour,
                 now.wMinute, now.wSecond);
}

bool HasExtension(const wchar_t* path)
{
    bool has = false;
    for (; *path; ++path) {
        if (*path == '.') has = true;
        if (*path == '\\') has = false;
    }
    return has;
}

// Closes the log after a failed write.
void EndLog(HANDLE log)
{
    const DWORD error = GetLastError();
    if (!ReplaceHandle(LogFileHandle, log, INVALID_HANDLE_VALUE)) return;
    SetLastError(error);
    ShowLastError(L"WriteFile File");
    if (!CloseHandle(log)) ShowLastError(L"CloseHandle File");
}

// True if the user has chosen a name; it is in `path` then.
bool AskForPath(wchar_t (&path)[PathCapacity])
{
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = BoxOwner();
    dialog.lpstrFilter = NameFilters;
    dialog.nFilterIndex = FilterOfProtocol();
    dialog.lpstrFile = path;
    dialog.nMaxFile = PathCapacity;
    dialog.lpstrDefExt = L"log";
    if (!GetSaveFileNameW(&dialog)) {
        // A name that is too long is not returned: the first character then holds the needed length, and no
        // path begins with such a character.
        if (static_cast<uint32_t>(path[0]) < PathCapacity) return false;
        SetLastError(NameTooLong);
        ShowLastError(L"CreateFile File");
        return false;
    }
    // Some systems add an extension, others do not, and they add different ones.
    if (!HasExtension(path))
        AppendFormat(path, L"%s",
                     dialog.nFilterIndex == NmeaFilter   ? L".txt"
                     : dialog.nFilterIndex == SirfFilter ? L".srf"
                                                         : L".log");
    return true;
}

// A port as the log would send the bytes back to the receiver.
bool IsPort(HANDLE file)
{
    DCB dcb = {};
    dcb.DCBlength = sizeof dcb;
    return GetCommState(file, &dcb);
}

void OpenLog()
{
    const bool asksNoName = IsSmartphone();
    wchar_t path[PathCapacity];
    ProposePath(path, asksNoName ? CSIDL_APPDATA : CSIDL_PERSONAL);
    if (asksNoName)
        AppendFormat(path, L"%s", ProtocolMode() == ProtocolSirf ? L".srf" : L".txt");
    else if (!AskForPath(path))
        return;
    const HANDLE log =
        CreateFileW(path, GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (log == INVALID_HANDLE_VALUE) {
        ShowLastError(L"CreateFile File");
        return;
    }
    if (IsPort(log)) {
        CloseHandle(log);
        InfoBox(L"CreateFile File", L"A port cannot be the log. Choose a file.");
        return;
    }
    LogFileHandle.store(log);
    if (asksNoName) InfoBox(L"Log File Name", path); // the user has not chosen it
}

bool IsLogOpen()
{
    return LogFileHandle.load() != INVALID_HANDLE_VALUE;
}

} // namespace

bool LogOpen()
{
    static bool isOpening = false; // while the user is asked for the name
    if (!isOpening && !IsLogOpen()) {
        isOpening = true;
        OpenLog();
        isOpening = false;
    }
    return IsLogOpen();
}

bool LogClose()
{
    const HANDLE log = ExchangeHandle(LogFileHandle, INVALID_HANDLE_VALUE);
    if (log == INVALID_HANDLE_VALUE) return false;
    if (CloseHandle(log)) return true;
    ShowLastError(L"CloseHandle File");
    return false;
}

void LogWrite(const uint8_t* bytes, uint32_t count)
{
    const HANDLE log = LogFileHandle.load();
    if (log == INVALID_HANDLE_VALUE) return;
    DWORD portion = count;
    for (uint32_t done = 0; done < count;) {
        DWORD written = 0;
        if (WriteFile(log, bytes + done, portion, &written, nullptr)) {
            done += portion;
            continue;
        }
        if (portion == 1) {
            EndLog(log);
            return;
        }
        done += written; // a full disk may have room for some of the rest
        portion = 1;
    }
}
