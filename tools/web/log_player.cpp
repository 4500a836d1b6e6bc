// SPDX-License-Identifier: MIT
#include "log_player.h"

#include <algorithm>

#include "graph/channels.h"
#include "graph/recorder.h"

namespace
{

constexpr double SliceMs = 16;    // the duration of one frame of the screen
constexpr size_t SmallRun = 32;   // bytes: shorter than a message with a fix
constexpr double LongestGapS = 5; // between two fixes; a pause of the recording is cut to this
constexpr double SecondsOfDay = 86400;
constexpr double BytesPerSecond = 115200 / 10.0; // no recorded log has fixes in shorter intervals

double FixSeconds()
{
    return FixTime.wHour * 3600.0 + FixTime.wMinute * 60.0 + FixTime.wSecond;
}

} // namespace

void LogPlayer::Play(int32_t speed, bool paused)
{
    Speed = speed;
    Paused = paused;
    Due = web::PageTime();
    memory::WakeAll(memory::WakePort);
}

// The program's recorded samples show the time of the log's own clock.
void LogPlayer::AwaitFix()
{
    const uint32_t samples = GraphSampleCount.load();
    if (samples == Samples) return;
    Samples = samples;
    const double fix = FixSeconds();
    double gap = LastFix < 0 ? 0 : fix - LastFix;
    if (gap < 0) gap += SecondsOfDay;
    LastFix = fix;
    const double now = web::PageTime();
    Due = std::max(Due, now - 1000) + std::min(gap, LongestGapS) * 1000 / Speed;
}

std::string LogPlayer::Read(size_t most, uint32_t)
{
    if (Paused || Place == Log.size()) return {};
    size_t count = most;
    if (Speed > 0) {
        AwaitFix();
        if (web::PageTime() < Due) return {};
        count = std::min(most, SmallRun);
        Due += static_cast<double>(count) * 1000 / BytesPerSecond / Speed;
    } else if (web::PageTime() - SliceBegun > SliceMs) {
        memory::YieldTurn(); // to the window, which shows the progress
        web::Breathe();
        SliceBegun = web::PageTime();
    }
    std::string bytes = Log.substr(Place, count);
    Place += bytes.size();
    return bytes;
}

uint64_t LogPlayer::NextBytes()
{
    if (Paused || Place == Log.size()) return memory::Never;
    const double left = Speed > 0 ? Due - web::PageTime() : 0;
    return memory::Now() + static_cast<uint64_t>(std::max(left, 0.0) * 1000);
}
