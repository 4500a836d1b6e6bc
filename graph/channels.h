// SPDX-License-Identifier: MIT
// The ten quantities of the strip chart: their current values, and how each is drawn.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/platform.h"

enum Channel : uint32_t {
    ChannelSvsInFix,
    ChannelHdop,
    ChannelEhpe,     // m
    ChannelNorthing, // m: degrees of latitude times 111325
    ChannelEasting,  // m: degrees of longitude times 111325, times the cosine of the latitude
    ChannelVdop,
    ChannelEvpe,     // m
    ChannelAltitude, // m
    ChannelSpeed,    // m/s
    ChannelCourse,   // degrees
    ChannelCount
};

// One channel. Settings are written by the user-interface thread and read by both; a routine that uses
// several reads each once. Values belong to the reader thread.
struct GraphChannelRecord {
    const wchar_t* Name;               // also the start of the names under which its settings are stored
    std::atomic<float> ValueZero;      // subtracted from the value before it is scaled
    std::atomic<float> ValueMin;       // after that: drawn at PixelMin
    std::atomic<float> ValueMax;       // drawn at PixelMax
    std::atomic<uint16_t> PixelMin;    // height of the band's floor above the chart's bottom row
    std::atomic<uint16_t> PixelMax;    // and of its ceiling
    std::atomic<COLORREF> Color;       // 0x00BBGGRR
    std::atomic<int32_t> Visible;      // 0: neither drawn nor ticked
    double Value;                      // reader thread only
    std::atomic<float> PublishedValue; // the same for the user-interface thread
    POINT Previous;                    // last point drawn; y -1: none yet
    POINT Current;                     // point being drawn
};

extern GraphChannelRecord GraphChannel[ChannelCount];

// Reader thread: stores the current value of a channel.
void SetChannelValue(Channel channel, double value);

// Time of the latest fix, UTC. Written and read by the reader thread; day of week and milliseconds stay 0.
extern SYSTEMTIME FixTime;

// Everything as when the program starts, settings included.
void ResetChannels();
