// SPDX-License-Identifier: MIT
// The ten quantities of the strip chart: their current values, and the settings for drawing them.
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

// One channel. The user-interface thread writes the settings, both threads read them; a routine reads each
// setting only once. The values belong to the reader thread.
struct GraphChannelRecord {
    const wchar_t* Name;               // also the beginning of the names of its stored settings
    std::atomic<float> ValueZero;      // subtracted from the value before it is scaled
    std::atomic<float> ValueMin;       // is drawn at PixelMin
    std::atomic<float> ValueMax;       // is drawn at PixelMax
    std::atomic<uint16_t> PixelMin;    // height of the band's floor above the chart's bottom row
    std::atomic<uint16_t> PixelMax;    // and of its ceiling
    std::atomic<COLORREF> Color;       // 0x00BBGGRR
    std::atomic<int32_t> Visible;      // 0: neither points nor ticks are drawn
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

// Sets everything to its state at program start, settings included.
void ResetChannels();
