// SPDX-License-Identifier: MIT
// Opening, setting and closing the one serial port: 8 data bits, no parity, one stop bit, no handshaking, RTS
// on. User-interface thread. Failures of platform calls are shown with the call's name as caption, and the
// sequence goes on: a driver that cannot tell its properties may well receive.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// Opens "COMn:" at `baud` bits/s (0: the rate that the driver has) and starts the reader thread. Takes two
// seconds, which drivers need before they can be asked. With a label of the port a report of the port as it
// was found is written under that name, null: none. Returns true if the link runs; false also while another
// port is being opened. Silent about a port that cannot be opened while a search runs. With rate 0 on a
// driver that reports 0 it returns false and leaves the port open without a reader.
bool PortOpen(const wchar_t* portName, uint32_t baud, const wchar_t* reportLabel = nullptr);

// True while a port is being opened, and while a reader runs.
bool IsPortBusy();

// Sets the open port's rate in bits/s, and BaudrateIdx when the table holds it. "SetCommState" on failure:
// PortDcb and BaudrateIdx keep what the driver has.
void PortSetBaud(uint32_t baud);

// Closes the port and waits for the reader thread to end, serving what it sends meanwhile.
void PortClose();

// Closes the handle alone; true if one was closed. "CloseHandle" on failure.
bool PortCloseHandle();

// As the driver reported them when the port was opened, and as the program has set them since.
extern COMMPROP PortProperties;
extern DCB PortDcb;
extern HANDLE ReaderThreadHandle; // null when no reader runs
extern DWORD ReaderThreadId;
