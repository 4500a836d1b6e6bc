// SPDX-License-Identifier: MIT
#pragma once
// A recorded log in place of the receiver: sends its bytes unchanged, one after another.

#include "receiver.h"

#include <optional>
#include <string>

namespace receiver
{

// The file without its leading lines that begin with '#'. On failure no value, with a text in `error`.
std::optional<Bytes> ReadLog(const std::string& path, std::string& error);

class Player
{
public:
    Player(Bytes log, bool repeat) : Log(std::move(log)), Repeat(repeat) {}

    // Keeps `output` filled with the next bytes, for a line of this rate.
    void Fill(std::deque<Burst>& output, uint32_t rate);
    bool Ended() const { return !Repeat && At >= Log.size(); }

private:
    Bytes Log;
    bool Repeat;
    size_t At = 0;
};

} // namespace receiver
