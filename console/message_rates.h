// SPDX-License-Identifier: MIT
// Setting how often the receiver sends a kind of message, and seeing that it does.
#pragma once

#include "console/sentence_rates.h"

namespace console
{

// One kind of message and its wanted interval.
struct MessageRate {
    std::string kind; // the name under which it is counted: "GGA", "41"
    unsigned number;  // the receiver's number of a sentence, or a message id
    unsigned seconds; // 0: off
};

// The payload for a message of SiRF binary, and the frame for either protocol.
Frame MessageRatePayload(const MessageRate& rate);
Frame MessageRateFrame(Protocol protocol, const MessageRate& rate);

// All sentences of a change to NMEA.
std::vector<MessageRate> SentenceRates(const NmeaRates& rates);

// Listens until each kind that is on has come, and not more often than wanted, and each that is off has
// stayed away. Throws Failure of the kind Differs, which names those that did not.
void SeeMessageRates(Session& session, std::span<const MessageRate> rates);

} // namespace console
