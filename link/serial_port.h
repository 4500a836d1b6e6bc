// SPDX-License-Identifier: MIT
// Opening, setting and closing the one serial port: 8 data bits, no parity, one stop bit, no handshaking, RTS
// on. User-interface thread. Failures of platform calls are shown with the call's name as caption, and the
// sequence goes on: a driver that cannot report its properties may still receive.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// Opens "COMn:" at `baud` bits/s (0: the driver's own rate) and starts the reader thread. Takes two seconds,
// because drivers need this time before they answer. `label` is the name of a report about the port as it was
// found; null: no report. Returns true if the link runs; false also while another port is being opened. While
// a search runs, a port that cannot be opened causes no box. With rate 0 and a driver that reports 0 it
// returns false and leaves the port open without a reader.
bool PortOpen(const wchar_t* portName, uint32_t baud, const wchar_t* reportLabel = nullptr);

// True while a port is being opened, and while a reader runs.
bool IsPortBusy();

// Sets the open port's rate in bits/s, and BaudrateIdx when the table holds it. "SetCommState" on failure:
// PortDcb and BaudrateIdx keep what the driver has.
void PortSetBaud(uint32_t baud);

// Closes the port and waits for the end of the reader thread; meanwhile it serves that thread's messages.
void PortClose();

// Closes the handle alone; true if one was closed. "CloseHandle" on failure.
bool PortCloseHandle();

// The driver's values from the opening of the port, with the changes that the program has made since.
extern COMMPROP PortProperties;
extern DCB PortDcb;
extern HANDLE ReaderThreadHandle; // null when no reader runs
extern DWORD ReaderThreadId;
