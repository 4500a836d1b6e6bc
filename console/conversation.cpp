// SPDX-License-Identifier: MIT
#include "console/conversation.h"

namespace console
{

namespace
{

constexpr uint8_t Acknowledged = 11, CommandRefused = 12;

bool Names(const Message& message, uint8_t id, uint8_t named)
{
    return message.Id() == id && message.payload.size() >= 2 && message.payload[1] == named;
}

} // namespace

Reply Ask(Session& session, std::span<const uint8_t> payload,
          const std::function<bool(const Message&)>& isAnswer, Duration limit)
{
    std::optional<Reply> reply;
    Listener listener;
    listener.message = [&](const Message& message) {
        if (reply) return;
        if (isAnswer(message))
            reply = Reply::Answered;
        else if (Names(message, CommandRefused, payload[0]))
            reply = Reply::Refused;
    };
    session.Send(FrameSirf(payload));
    session.WaitFor([&] { return reply.has_value(); }, limit);
    return reply.value_or(Reply::Silent);
}

Reply SendCommand(Session& session, std::span<const uint8_t> payload, Duration limit)
{
    return Ask(
        session, payload, [&](const Message& message) { return Names(message, Acknowledged, payload[0]); },
        limit);
}

const char* MissingText(Reply reply)
{
    return reply == Reply::Refused ? "refused" : "no answer";
}

void Require(Reply reply, const std::string& what)
{
    if (reply == Reply::Refused) Fail(FailureKind::Refused, what + ": refused by the receiver");
    if (reply == Reply::Silent) Fail(FailureKind::NoAnswer, what + ": no answer came in time");
}

} // namespace console
