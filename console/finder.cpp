// SPDX-License-Identifier: MIT
#include "console/finder.h"

#include <algorithm>

#include "console/remembered_rate.h"

namespace console
{

namespace
{

// Tried after the rate that worked last: the usual rates of receivers come first.
constexpr uint32_t SearchOrder[] = {4800, 9600, 38400, 57600, 115200, 19200, 2400, 1200};

} // namespace

Duration ListeningTime(uint32_t rate)
{
    // At 1200 baud the longest message takes 1.6 s.
    return Seconds(rate > 1200 ? 1.5 : 2.5);
}

std::optional<Protocol> Listen(Session& session, Duration limit)
{
    std::optional<Protocol> heard;
    Listener listener;
    listener.sentence = [&](const Sentence& sentence) {
        if (sentence.hadChecksum && !heard) heard = Protocol::Nmea;
    };
    listener.message = [&](const Message&) {
        if (!heard) heard = Protocol::Sirf;
    };
    session.WaitFor([&] { return heard.has_value(); }, limit);
    return heard;
}

std::optional<Found> Search(Session& session, std::vector<uint32_t> rates)
{
    rates.insert(rates.end(), std::begin(SearchOrder), std::end(SearchOrder));
    std::vector<uint32_t> tried;
    for (const uint32_t rate : rates) {
        if (std::find(tried.begin(), tried.end(), rate) != tried.end()) continue;
        tried.push_back(rate);
        session.SetRate(rate);
        if (const auto protocol = Listen(session, ListeningTime(rate))) return Found{*protocol, rate};
    }
    return {};
}

std::string PlaceOfSearch(const Options& options)
{
    return options.rate ? "at " + std::to_string(*options.rate) + " baud" : "at any rate";
}

Receiver FindReceiver(Context& context)
{
    const std::string port = ChoosePort(context.options);
    std::vector<uint32_t> first;
    if (const auto remembered = RememberedRate(port)) first.push_back(*remembered);
    const uint32_t start = context.options.rate.value_or(first.empty() ? SearchOrder[0] : first[0]);
    Receiver receiver = {std::make_unique<Session>(context, port, start), {}, {}};
    Session& session = *receiver.session;

    Listener counter;
    counter.sentence = [&](const Sentence& sentence) { receiver.heard.messages += sentence.hadChecksum; };
    counter.message = [&](const Message&) { ++receiver.heard.messages; };
    std::optional<Found> found;
    if (context.options.rate) {
        if (const auto protocol = Listen(session, ListeningTime(start))) found = Found{*protocol, start};
    } else {
        found = Search(session, first);
    }
    receiver.heard.bytes = session.BytesReceived();
    if (!found) {
        const std::string where = PlaceOfSearch(context.options);
        // A program that opened the port without a lock takes bytes away.
        const std::string name = HolderOf(port),
                          holder = name.empty() ? "" : "; " + name + " has the port open, too";
        if (receiver.heard.bytes == 0)
            Fail(FailureKind::Silent,
                 port + ": no byte " + where + ": is the receiver on, and its line the right one?" + holder);
        Fail(FailureKind::Noise, port + ": bytes, but no message " + where +
                                     (context.options.rate ? ": try without --rate" : "") + holder);
    }
    receiver.found = *found;
    RememberRate(port, found->rate);
    return receiver;
}

} // namespace console
