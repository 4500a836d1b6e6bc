// SPDX-License-Identifier: MIT
// Finds the serial ports of the device: makes the labels of the port list from the driver registry.
//
// Position n of the list always stands for "COMn:"; discovery changes an entry's text, never its place. If
// the registry has no data for an entry, or not in the expected form, the entry stays as it is.
// User-interface thread.
#pragma once

#include <cstdint>

#include "platform/platform.h"

// Labels the entries of all ports that have a driver, then the entry of the infrared port.
void LabelPorts(HWND dialog);

// Labels the entries of the serial drivers under one driver key, for example "COM5: Serial Cable". Returns
// the registry's result code of closing the key, or of the failure to open it.
LONG ScanDriverKey(HWND dialog, const wchar_t* keyPath);

// Finds the infrared port's name, for example "COM3:". It follows the device's infrared settings from the key
// `keyName` under "\Comm\". `portName` must be empty before. Returns its length, 0 when no port was found.
constexpr uint32_t PortNameCapacity = 8;
uint32_t FindIrdaPort(const wchar_t* keyName, wchar_t (&portName)[PortNameCapacity]);

// Sets IrPortNumber when there is an infrared port, and labels its entry " Raw IR" if no driver has labelled
// it.
void AddRawIrPort(HWND dialog);

// Index of the port whose driver key is "IrCOMM", -1 when there is none.
extern int8_t IrCommPortNumber;
