// SPDX-License-Identifier: MIT
#include "player.h"

#include "common/files.h"

#include <algorithm>

namespace receiver
{

std::optional<Bytes> ReadLog(const std::string& path, std::string& error)
{
    const auto content = ReadWholeFile(path, error);
    if (!content) return std::nullopt;
    Bytes log(content->begin(), content->end());
    auto at = log.begin();
    while (at != log.end() && *at == '#') {
        at = std::find(at, log.end(), '\n');
        if (at != log.end()) ++at;
    }
    log.erase(log.begin(), at);
    if (log.empty()) {
        error = path + ": nothing to play";
        return std::nullopt;
    }
    return log;
}

void Player::Fill(std::deque<Burst>& output, uint32_t rate)
{
    constexpr size_t chunk = 64;
    while (output.size() < 16) {
        if (At >= Log.size() && Repeat) At = 0;
        if (At >= Log.size()) return;
        const size_t count = std::min(chunk, Log.size() - At);
        const auto from = Log.begin() + static_cast<std::ptrdiff_t>(At);
        output.push_back({Bytes(from, from + static_cast<std::ptrdiff_t>(count)), rate});
        At += count;
    }
}

} // namespace receiver
