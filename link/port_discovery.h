// SPDX-License-Identifier: MIT
// Which serial ports the device has: labels for the port list out of the driver registry.
//
// Position n of the list always stands for "COMn:"; discovery changes an entry's text, never its place.
// Whatever the registry does not hold, or holds in another form than expected, leaves the entry as it is.
// User-interface thread.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// Labels the entries of all ports that have a driver, then that of the infrared port.
void LabelPorts(HWND dialog);

// Labels the entries of the serial drivers under one driver key, as in "COM5: Serial Cable". Returns the
// registry's code for closing the key, or for the failure to open it.
LONG ScanDriverKey(HWND dialog, const wchar_t* keyPath);

// The infrared port's name, as in "COM3:", found by following the device's infrared settings from the key
// `keyName` under "\Comm\". `portName` must be empty before; returns its length, 0 when no port was found.
constexpr uint32_t PortNameCapacity = 8;
uint32_t FindIrdaPort(const wchar_t* keyName, wchar_t (&portName)[PortNameCapacity]);

// Sets IrPortNumber when there is an infrared port, and labels its entry " Raw IR" if no driver has.
void AddRawIrPort(HWND dialog);

// Index of the port whose driver key is "IrCOMM", -1 when there is none.
extern int8_t IrCommPortNumber;
