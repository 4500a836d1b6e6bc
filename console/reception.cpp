// SPDX-License-Identifier: MIT
#include "console/reception.h"

#include <algorithm>
#include <vector>

#include "graph/recorder.h"
#include "link/link_state.h"
#include "link/reader_thread.h"
#include "nmea/sentence_assembler.h"
#include "sirf/frame_assembler.h"
#include "sirf/frame_sender.h"

namespace console
{

namespace
{

std::vector<Listener*> Listeners;

void OnSentence(const char* body, uint32_t length, bool hadChecksum)
{
    const Sentence sentence = {{body, length}, hadChecksum};
    for (const Listener* listener : Listeners)
        if (listener->sentence) listener->sentence(sentence);
}

void OnPayload(const uint8_t* payload, uint32_t length)
{
    const std::span<const uint8_t> wire(payload, length);
    const auto start = std::find_if(wire.begin(), wire.end(), [](uint8_t b) { return b != WrapId; });
    if (start == wire.end()) return;
    const Message message = {{start, wire.end()}, wire};
    for (const Listener* listener : Listeners)
        if (listener->message) listener->message(message);
}

uint32_t MessageCount()
{
    return NmeaMessageCount.load(std::memory_order_relaxed) +
           SirfMessageCount.load(std::memory_order_relaxed);
}

} // namespace

const char* ProtocolTitle(Protocol protocol)
{
    return protocol == Protocol::Nmea ? "NMEA" : "SiRF binary";
}

const char* ProtocolKey(Protocol protocol)
{
    return protocol == Protocol::Nmea ? "nmea" : "sirf";
}

std::string_view Sentence::Field(unsigned index) const
{
    std::string_view rest = body;
    for (; index; --index) {
        const size_t comma = rest.find(',');
        if (comma == rest.npos) return {};
        rest.remove_prefix(comma + 1);
    }
    return rest.substr(0, rest.find(','));
}

std::string_view Sentence::Kind() const
{
    constexpr size_t TalkerLength = 2, KindLength = 3;
    const std::string_view name = Field(0);
    if (name.size() != TalkerLength + KindLength || name[0] == 'P') return name;
    return name.substr(TalkerLength);
}

Listener::Listener()
{
    ObserveSentence.store(OnSentence, std::memory_order_relaxed);
    ObservePayload.store(OnPayload, std::memory_order_relaxed);
    Listeners.push_back(this);
}

Listener::~Listener()
{
    std::erase(Listeners, this);
}

void Feed(std::span<const uint8_t> bytes)
{
    for (const Listener* listener : Listeners)
        if (listener->bytes) listener->bytes(bytes);
    uint32_t messages = MessageCount(), samples = GraphSampleCount.load();
    while (!bytes.empty()) {
        bytes = bytes.subspan(RouteUpToMessage(bytes.data(), static_cast<uint32_t>(bytes.size())));
        if (messages == MessageCount()) continue;
        messages = MessageCount();
        const bool sampled = samples != GraphSampleCount.load();
        samples = GraphSampleCount.load();
        for (const Listener* listener : Listeners) {
            if (sampled && listener->sample) listener->sample();
            if (listener->decoded) listener->decoded();
        }
    }
}

void ForgetPartialMessage()
{
    ResetNmeaAssembler();
    ResetSirfFramer();
}

} // namespace console
