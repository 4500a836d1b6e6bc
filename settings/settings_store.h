// SPDX-License-Identifier: MIT
// All stored settings of the program: 32-bit numbers in the registry, under Software\Quenmark\Toravane of the
// machine-wide root. If the system does not let the user write there, they are stored under the user's own
// root. The user's root is read first. Any thread; no handle is kept between calls.
#pragma once

#include <cstdint>

// ---- Names ---------------------------------------------------------------------------------------------
// The names for the chart's channels consist of the channel's name and a suffix (graph/graph_settings.cpp).

inline constexpr const wchar_t* SettingCommPort = L"CommPortIdx"; // index of the port that worked last
inline constexpr const wchar_t* SettingBaudrate = L"BaudrateIdx"; // index in BaudTable of its rate
inline constexpr const wchar_t* SettingSirfBaudrate = L"SirfBaudrateIdx"; // of the rate used for SiRF binary
inline constexpr const wchar_t* SettingNmeaBaudrate = L"NmeaBaudrateIdx"; // and for NMEA
inline constexpr const wchar_t* SettingNmeaInterval =
    L"NmeaIntervalIdx%02u";                                         // 1 to 10: seconds between sentences
inline constexpr const wchar_t* SettingLines = L"Lines";            // the chart joins its points
inline constexpr const wchar_t* SettingTimeScale = L"TimeScaleIdx"; // index of the chart's time scale

// ---- Access --------------------------------------------------------------------------------------------

// The stored number, or `absent` when the value is not stored, cannot be read or is longer than 4 bytes. Its
// type is not checked. Callers pass a number that cannot be a stored value.
int32_t SettingsGetDword(const wchar_t* name, int32_t absent);

// Stores the number. If the system refuses, the old one stays, without a message.
void SettingsSetDword(const wchar_t* name, int32_t value);
