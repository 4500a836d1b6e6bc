// SPDX-License-Identifier: MIT
// The NMEA dialogs as a table, for their tests and for the tests of other forms of the whole program. Nothing
// here is part of the program.
#pragma once

#include <cstdint>

#include "headless.h"
#include "resources/resource_ids.h"

struct NmeaDialogRow {
    const char* name;
    uint32_t number; // of the template, and of the menu's command
    const wchar_t* caption;
    int set;
    const char* sentence; // sent by "Set", after `prepare`
    void (*prepare)(HWND dialog);
};

inline void ChooseNothing(HWND) {}

inline void ChooseRate(HWND dialog)
{
    HeadlessChoose(dialog, CONTROL_TO_SIRF_BAUDRATE, 2);
}

inline void ChooseGgaEachSecond(HWND dialog)
{
    HeadlessChoose(dialog, CONTROL_NMEA_RATE_MESSAGE, 0);
    HeadlessChoose(dialog, CONTROL_NMEA_RATE_SECONDS, 1);
}

inline constexpr NmeaDialogRow NmeaDialogs[] = {
    {"Set Serial Port", 2003, L"Set Serial Port", 1004, "$PSRF100,0,4800,8,1,0*0F\r\n", ChooseRate},
    {"Navigation Initialization", 2004, L"Navigation Initialization", 1018,
     "$PSRF101,0,0,0,0,0,0,12,1*15\r\n", ChooseNothing},
    {"Set Message Rate", 2005, L"Set Message Rate", 1034, "$PSRF103,0,0,1,1*25\r\n", ChooseGgaEachSecond},
    {"Development Data", 2007, L"Development Data", 1052, "$PSRF105,1*3E\r\n", ChooseNothing},
    {"Select Datum", 2008, L"Select Datum", 1062, "$PSRF106,21*0F\r\n", ChooseNothing},
};
