// SPDX-License-Identifier: MIT
// Conversations with a receiver in SiRF binary: send, then wait for the answer, the refusal, or the time-out.
#pragma once

#include "console/session.h"

namespace console
{

enum class Reply { Answered, Refused, Silent };

// Sends a payload and waits. The answer is the first message that `isAnswer` accepts. The refusal is a
// message 12 that contains the payload's message id.
Reply Ask(Session& session, std::span<const uint8_t> payload,
          const std::function<bool(const Message&)>& isAnswer, Duration limit);

// The same for a command, which the receiver acknowledges with a message 11.
Reply SendCommand(Session& session, std::span<const uint8_t> payload, Duration limit);

// "refused" or "no answer", for a setting that cannot be shown.
const char* MissingText(Reply reply);

// Throws Failure of the kind Refused or NoAnswer; does nothing for an answer.
void Require(Reply reply, const std::string& what);

} // namespace console
