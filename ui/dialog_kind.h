// SPDX-License-Identifier: MIT
// The program's dialogs by number.
#pragma once

#include <cstdint>

enum class DialogKind : uint32_t {
    None = 0,
    About = 1,
    Communication = 2,
    SetSerialPort = 3,
    NavigationInitialization = 4,
    NmeaSetMessageRate = 5,
    DevelopmentData = 6,
    SelectDatum = 7,
    AdvancedPowerManagement = 8,
    InitializeDataSource = 9,
    SwitchToNmea = 10,
    PollSoftwareVersion = 11,
    DgpsSource = 12,
    ModeControl = 13,
    DopMask = 14,
    DgpsMode = 15,
    ElevationMask = 16,
    PowerMask = 17,
    StaticNavigation = 18,
    TricklePower = 19,
    SirfSetMessageRate = 20,
    LowPower = 21,
    Sbas = 22,
    GraphOptions = 23,
};
