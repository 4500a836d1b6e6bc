// SPDX-License-Identifier: MIT
// A recorded log as a port of the page: played at once, or with the time between its fixes.
#pragma once

#include "platform/web/web.h"

class LogPlayer : public web::Device
{
public:
    LogPlayer(std::string_view log, int32_t speed) : Log(log), Speed(speed) {}

    void Open() override {}
    std::string Read(size_t most, uint32_t rate) override;
    void Write(std::string_view, uint32_t) override {} // a log ignores all bytes that are sent to it
    uint64_t NextBytes() override;

    void Play(int32_t speed, bool paused); // 0: at once, else times real time
    size_t Position() const { return Place; }
    size_t Length() const { return Log.size(); }

private:
    void AwaitFix();

    std::string Log;
    int32_t Speed;
    bool Paused = false;
    size_t Place = 0;
    uint32_t Samples = 0;  // recorded from the log so far
    double LastFix = -1;   // seconds of its day
    double Due = 0;        // time of the next bytes, milliseconds of the page's clock
    double SliceBegun = 0; // time of the last call by the page
};
