// SPDX-License-Identifier: MIT
// Conversations with a receiver that speaks SiRF binary: send, and wait for the answer, the refusal, or the
// end of the time-out.
#pragma once

#include "console/session.h"

namespace console
{

enum class Reply { Answered, Refused, Silent };

// Sends a payload and waits. The answer is the first message that `isAnswer` accepts; the refusal a message
// 12 that names the payload's message id.
Reply Ask(Session& session, std::span<const uint8_t> payload,
          const std::function<bool(const Message&)>& isAnswer, Duration limit);

// The same for a command, which the receiver acknowledges with a message 11.
Reply SendCommand(Session& session, std::span<const uint8_t> payload, Duration limit);

// Throws Failure of the kind Refused or NoAnswer; nothing for an answer.
void Require(Reply reply, const std::string& what);

} // namespace console
