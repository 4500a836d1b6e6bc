// SPDX-License-Identifier: MIT
#include "link/serial_report.h"

#include <cstdint>
#include <cstring>
#include <cwchar>

#include "text/format.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"

namespace
{

constexpr uint32_t PathCapacity = 64; // for folder, separator, label and terminator
constexpr uint32_t ExtraLength = 5;   // of a ";" and the extension after them
constexpr uint32_t BlockCapacity = 2048;
constexpr uint32_t SystemCapacity = 1000; // characters of the system block

constexpr char Notice[] = "This file was created by Toravane v 2.20 \r\n"
                          "for troubleshooting serial communication.\r\n\r\n"
                          "To be of best use:\r\n"
                          " - First disconnect ActiveSync cable.\r\n"
                          " - Soft reset Pocket PC.\r\n"
                          " - Open all comm ports once in Toravane.\r\n"
                          " - Save files to PC.\r\n"
                          " - Then use any program freely.\r\n\r\n";

// ---- Names of values ----------------------------------------------------------------------------------

struct NamedValue {
    const char* name;
    uint32_t value;
};

constexpr NamedValue SubTypes[] = {
    {"PST_UNSPECIFIED", 0},  {"PST_RS232", 1},
    {"PST_PARALLELPORT", 2}, {"PST_RS422", 3},
    {"PST_RS423", 4},        {"PST_RS449", 5},
    {"PST_MODEM", 6},        {"PST_FAX", 0x21},
    {"PST_SCANNER", 0x22},   {"PST_NETWORK_BRIDGE", 0x100},
    {"PST_LAT", 0x101},      {"PST_TCPIP_TELNET", 0x102},
    {"PST_X25", 0x103},
};

constexpr NamedValue Capabilities[] = {
    {"PCF_DTRDSR", 0x1},         {"PCF_RTSCTS", 0x2},       {"PCF_RLSD", 0x4},
    {"PCF_PARITY_CHECK", 0x8},   {"PCF_XONXOFF", 0x10},     {"PCF_SETXCHAR", 0x20},
    {"PCF_TOTALTIMEOUTS", 0x40}, {"PCF_INTTIMEOUTS", 0x80}, {"PCF_SPECIALCHARS", 0x100},
    {"PCF_16BITMODE", 0x200},
};

constexpr NamedValue SettableParameters[] = {
    {"SP_PARITY", 0x1},       {"SP_BAUD", 0x2},          {"SP_DATABITS", 0x4}, {"SP_STOPBITS", 0x8},
    {"SP_HANDSHAKING", 0x10}, {"SP_PARITY_CHECK", 0x20}, {"SP_RLSD", 0x40},
};

constexpr NamedValue Bauds[] = {
    {"BAUD_075", 0x1},      {"BAUD_110", 0x2},        {"BAUD_134_5", 0x4},     {"BAUD_150", 0x8},
    {"BAUD_300", 0x10},     {"BAUD_600", 0x20},       {"BAUD_1200", 0x40},     {"BAUD_1800", 0x80},
    {"BAUD_2400", 0x100},   {"BAUD_4800", 0x200},     {"BAUD_7200", 0x400},    {"BAUD_9600", 0x800},
    {"BAUD_14400", 0x1000}, {"BAUD_19200", 0x2000},   {"BAUD_38400", 0x4000},  {"BAUD_56K", 0x8000},
    {"BAUD_128K", 0x10000}, {"BAUD_115200", 0x20000}, {"BAUD_57600", 0x40000}, {"BAUD_USER", 0x10000000},
};

constexpr NamedValue DataBits[] = {
    {"DATABITS_5", 0x1}, {"DATABITS_6", 0x2},   {"DATABITS_7", 0x4},
    {"DATABITS_8", 0x8}, {"DATABITS_16", 0x10}, {"DATABITS_16X", 0x20},
};

constexpr NamedValue StopBitsAndParity[] = {
    {"STOPBITS_10", 0x1},  {"STOPBITS_15", 0x2},   {"STOPBITS_20", 0x4},   {"PARITY_NONE", 0x100},
    {"PARITY_ODD", 0x200}, {"PARITY_EVEN", 0x400}, {"PARITY_MARK", 0x800}, {"PARITY_SPACE", 0x1000},
};

constexpr NamedValue LineErrors[] = {
    {"CE_BREAK", 0x10},  {"CE_FRAME", 0x8},  {"CE_IOE", 0x400},    {"CE_MODE", 0x8000},
    {"CE_OVERRUN", 0x2}, {"CE_RXOVER", 0x1}, {"CE_RXPARITY", 0x4}, {"CE_TXFULL", 0x100},
};

// ---- Blocks -------------------------------------------------------------------------------------------

using Block = char[BlockCapacity];

template <uint32_t Count> void AppendName(Block& block, const NamedValue (&names)[Count], uint32_t value)
{
    for (const NamedValue& known : names)
        if (known.value == value) {
            AppendFormat(block, "%s", known.name);
            return;
        }
    AppendFormat(block, "%X", value);
}

// A flag that is not set leaves an empty line, so that each flag has the same line in every report.
template <uint32_t Count>
void AppendFlags(Block& block, const char* heading, const NamedValue (&flags)[Count], uint32_t value)
{
    AppendFormat(block, "\r\n%s\t", heading);
    for (const NamedValue& flag : flags) {
        AppendFormat(block, "\r\n");
        if (value & flag.value) AppendFormat(block, "\t%s", flag.name);
    }
}

// Writes the text in the system's 8-bit encoding. The system replaces characters that the encoding lacks. No
// replacement character is given, because UTF-8, which has all characters, does not allow one.
void Narrow(Block& block, const wchar_t* text)
{
    if (!WideCharToMultiByte(CP_ACP, 0, text, -1, block, BlockCapacity, nullptr, nullptr)) block[0] = 0;
}

// Appends the system's answer to the text; nothing when the system does not answer.
void AppendSystemText(wchar_t (&text)[SystemCapacity], UINT code)
{
    constexpr uint32_t Room = 64; // reserved for the text that follows the system's answer
    const uint32_t length = static_cast<uint32_t>(std::wcslen(text));
    if (length + Room >= SystemCapacity) return;
    // The size in characters. A system that takes it as bytes uses a part of the buffer only.
    if (!SystemParametersInfoW(code, SystemCapacity - Room - length, text + length, 0)) text[length] = 0;
    text[SystemCapacity - Room] = 0;
}

void SystemBlock(Block& block)
{
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExW(&version);
    constexpr uint32_t Longest = sizeof version.szCSDVersion / sizeof *version.szCSDVersion;
    version.szCSDVersion[Longest - 1] = 0;
    wchar_t text[SystemCapacity];
    Format(text, L"Windows Version:\t%u.%u.%u\r\nCSD Version:\t%s\r\nPlatform:\t", version.dwMajorVersion,
           version.dwMinorVersion, version.dwBuildNumber, version.szCSDVersion);
    AppendSystemText(text, SPI_GETPLATFORMTYPE);
    AppendFormat(text, L"\r\nOEM Info:\t");
    AppendSystemText(text, SPI_GETOEMINFO);
    AppendFormat(text, L"\r\n\r\n");
    Narrow(block, text);
}

void PropertiesBlock(Block& block, const COMMPROP& properties)
{
    constexpr uint32_t SerialService = 1;
    Format(block, "\r\n\r\nCommProp:\r\nwPacketLength\t%X\r\nwPacketVersion\t%X\r\ndwServiceMask\t",
           properties.wPacketLength, properties.wPacketVersion);
    if (properties.dwServiceMask & SerialService)
        AppendFormat(block, "SP_SERIALCOMM");
    else
        AppendFormat(block, "%X", properties.dwServiceMask);
    AppendFormat(block, "\r\ndwReserved1\t%X\r\ndwMaxTxQueue\t%u\r\ndwMaxRxQueue\t%u\r\ndwMaxBaud\t",
                 properties.dwReserved1, properties.dwMaxTxQueue, properties.dwMaxRxQueue);
    AppendName(block, Bauds, properties.dwMaxBaud);
    AppendFormat(block, "\r\ndwProvSubType\t");
    AppendName(block, SubTypes, properties.dwProvSubType);
    AppendFlags(block, "dwProvCapabilities", Capabilities, properties.dwProvCapabilities);
    AppendFlags(block, "dwSettableParams", SettableParameters, properties.dwSettableParams);
    AppendFlags(block, "dwSettableBaud", Bauds, properties.dwSettableBaud);
    AppendFlags(block, "wSettableData", DataBits, properties.wSettableData);
    AppendFlags(block, "wSettableStopParity", StopBitsAndParity, properties.wSettableStopParity);
    AppendFormat(block,
                 "\r\ndwCurrentTxQueue\t%u\r\ndwCurrentRxQueue\t%u\r\ndwProvSpec1\t%X\r\ndwProvSpec2\t%X"
                 "\r\nwcProvChar[0]\t\r\n\r\n",
                 properties.dwCurrentTxQueue, properties.dwCurrentRxQueue, properties.dwProvSpec1,
                 properties.dwProvSpec2);
}

// Writes a character as its code.
uint32_t Code(char character)
{
    return static_cast<uint8_t>(character);
}

void LineStateBlock(Block& block, const DCB& dcb)
{
    Format(block,
           "CommState:\r\nDCBlength\t%u\r\nBaudRate\t%u\r\nfBinary\t%u\r\nfParity\t%u\r\nfOutxCtsFlow\t%u\r\n"
           "fOutxDsrFlow\t%u\r\nfDtrControl\t%u\r\nfDsrSensitivity\t%u\r\nfTXContinueOnXoff\t%u\r\n"
           "fOutX\t%u\r\nfInX\t%u\r\nfErrorChar\t%u\r\nfNull\t%u\r\nfRtsControl\t%u\r\nfAbortOnError\t%u\r\n"
           "fDummy2\t%u\r\nwReserved\t%X\r\nXonLim\t%u\r\nXoffLim\t%u\r\nByteSize\t%u\r\nParity\t%u\r\n"
           "StopBits\t%u\r\nXonChar\t%u\r\nXoffChar\t%u\r\nErrorChar\t%u\r\nEofChar\t%u\r\nEvtChar\t%u\r\n"
           "wReserved1\t%X\r\n\r\n",
           dcb.DCBlength, dcb.BaudRate, dcb.fBinary, dcb.fParity, dcb.fOutxCtsFlow, dcb.fOutxDsrFlow,
           dcb.fDtrControl, dcb.fDsrSensitivity, dcb.fTXContinueOnXoff, dcb.fOutX, dcb.fInX, dcb.fErrorChar,
           dcb.fNull, dcb.fRtsControl, dcb.fAbortOnError, dcb.fDummy2, dcb.wReserved, dcb.XonLim, dcb.XoffLim,
           dcb.ByteSize, dcb.Parity, dcb.StopBits, Code(dcb.XonChar), Code(dcb.XoffChar), Code(dcb.ErrorChar),
           Code(dcb.EofChar), Code(dcb.EvtChar), dcb.wReserved1);
}

void TimeoutsBlock(Block& block, const COMMTIMEOUTS& timeouts)
{
    Format(block,
           "CommTimeouts:\r\nReadIntervalTimeout\t%u\r\nReadTotalTimeoutMultiplier\t%u\r\n"
           "ReadTotalTimeoutConstant\t%u\r\nWriteTotalTimeoutMultiplier\t%u\r\n"
           "WriteTotalTimeoutConstant\t%u\r\n\r\n",
           timeouts.ReadIntervalTimeout, timeouts.ReadTotalTimeoutMultiplier,
           timeouts.ReadTotalTimeoutConstant, timeouts.WriteTotalTimeoutMultiplier,
           timeouts.WriteTotalTimeoutConstant);
}

void ErrorsBlock(Block& block, uint32_t errors)
{
    Format(block, "Errors:\t");
    for (const NamedValue& flag : LineErrors)
        if (errors & flag.value) AppendFormat(block, "%s ", flag.name);
    AppendFormat(block, "\r\n\r\n");
}

void StatusBlock(Block& block, const COMSTAT& status)
{
    Format(block,
           "ComStat:\r\nfCtsHold\t%u\r\nfDsrHold\t%u\r\nfRlsdHold\t%u\r\nfXoffHold\t%u\r\nfXoffSent\t%u\r\n"
           "fEof\t%u\r\nfTxim\t%u\r\nfReserved\t%u\r\ncbInQue\t%u\r\ncbOutQue\t%u\r\n\r\n",
           status.fCtsHold, status.fDsrHold, status.fRlsdHold, status.fXoffHold, status.fXoffSent,
           status.fEof, status.fTxim, status.fReserved, status.cbInQue, status.cbOutQue);
}

// ---- File ---------------------------------------------------------------------------------------------

// Puts the name of the report's file into `path`. False when there is no label or the name would be too long.
bool NameReport(const wchar_t* label, wchar_t (&path)[PathCapacity + ExtraLength])
{
    wchar_t folder[MAX_PATH] = L"";
    if (!SHGetSpecialFolderPathW(nullptr, folder, IsSmartphone() ? CSIDL_APPDATA : CSIDL_PERSONAL, FALSE))
        folder[0] = 0;
    wchar_t start[MAX_PATH + 1];
    const uint32_t length = Format(start, L"%s\\", folder);
    if (!*label || length + std::wcslen(label) >= PathCapacity) return false;
    Format(path, L"%s%s", start, label);
    wchar_t* c = path + length;
    for (; *c; ++c) {
        if (*c == ':') *c = ';';
        if (*c == '\\') *c = '!';
    }
    // A name that ends in a digit could be a device's.
    const bool endsInDigit = c[-1] >= '0' && c[-1] <= '9';
    AppendFormat(path, L"%s", endsInDigit ? L";.txt" : L".txt");
    return true;
}

// Each block with one write, so that a report that was cut short ends with a whole block.
void WriteBlock(HANDLE file, const char* text)
{
    DWORD written;
    WriteFile(file, text, static_cast<DWORD>(std::strlen(text)), &written, nullptr);
}

} // namespace

void WriteSerialReport(const wchar_t* label, const COMMPROP& properties, const DCB& dcb,
                       const COMMTIMEOUTS& timeouts, DWORD errors, const COMSTAT& status)
{
    wchar_t path[PathCapacity + ExtraLength];
    if (!NameReport(label, path)) return;
    const HANDLE file =
        CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        ShowLastError(L"CreateFile File 2");
        return;
    }
    static Block block; // not on the stack, which is small on devices
    WriteBlock(file, Notice);
    SystemBlock(block);
    WriteBlock(file, block);
    Narrow(block, label);
    WriteBlock(file, block);
    PropertiesBlock(block, properties);
    WriteBlock(file, block);
    LineStateBlock(block, dcb);
    WriteBlock(file, block);
    TimeoutsBlock(block, timeouts);
    WriteBlock(file, block);
    ErrorsBlock(block, errors);
    WriteBlock(file, block);
    StatusBlock(block, status);
    WriteBlock(file, block);
    CloseHandle(file);
}
