// SPDX-License-Identifier: MIT
#include "console/firmware.h"

#include <algorithm>

#include "console/conversation.h"

namespace console
{

Frame VersionPoll()
{
    return {132, 0};
}

std::string ReadVersion(Session& session, Duration limit)
{
    constexpr uint8_t SoftwareVersion = 6;
    std::string text;
    const Reply reply = Ask(
        session, VersionPoll(),
        [&](const Message& message) {
            if (message.Id() != SoftwareVersion || message.payload.size() < 2) return false;
            const auto begin = message.payload.begin() + 1;
            text.assign(begin, std::find(begin, message.payload.end(), 0));
            return true;
        },
        limit);
    Require(reply, "version");
    return Printable(text);
}

} // namespace console
