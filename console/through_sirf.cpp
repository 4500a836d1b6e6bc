// SPDX-License-Identifier: MIT
#include "console/through_sirf.h"

#include "console/message_rates.h"

namespace console
{

namespace
{

constexpr const char* PresentRate = "now";
constexpr auto MeasuringTime = std::chrono::seconds(11);

// Throws if the state is not the wanted one.
void RequireState(const std::optional<Found>& found, Found wanted, const std::string& way)
{
    if (!found) Fail(FailureKind::Lost, way + ": the receiver is not heard at any rate any more");
    if (found->protocol != wanted.protocol || found->rate != wanted.rate)
        Fail(FailureKind::Differs,
             way + ": the receiver is at " + FoundText(*found) + " instead of " + FoundText(wanted));
}

// The sentences must come as they came before.
void RequireSentences(Session& session, const NmeaRates& rates)
{
    try {
        SeeMessageRates(session, SentenceRates(rates));
    } catch (const Failure& failure) {
        if (failure.kind != FailureKind::Differs) throw;
        Fail(FailureKind::Differs, "back in NMEA, but " + failure.message);
    }
}

void GoBack(Session& session, Found now, Found old, const NmeaRates& rates)
{
    // After a failure or an interruption of the switch, the receiver's state is not known.
    const auto state = Search(session, {now.rate, old.rate});
    if (!state) Fail(FailureKind::Lost, "way back: the receiver is not heard at any rate any more");
    RequireState(CarryOutSwitch(session, *state, PlanSwitch(*state, old, rates)), old, "way back");
    RequireSentences(session, rates);
}

} // namespace

void ThroughSirf::AddTo(Parser& parser)
{
    // A flag, so that the next argument is not taken for its rate.
    parser
        .Flag(ThroughSirfOption, std::string(PresentRate), rate,
              "on a receiver that speaks NMEA: change to SiRF binary, at RATE or the present rate, and back")
        .TypeName("RATE")
        .Suggest(RateTexts())
        .Check([](const std::string& typed) {
            if (typed != PresentRate) ParseRate(typed, ThroughSirfOption);
        });
}

void WithSirf(Context& context, const ThroughSirf& option, const SirfWork& work)
{
    Found sirf = {Protocol::Sirf, 0};
    if (!option.rate.empty() && option.rate != PresentRate) sirf.rate = ParseRate(option.rate);
    Receiver receiver = FindReceiver(context);
    Session& session = *receiver.session;
    const Found old = receiver.found;
    if (old.protocol == Protocol::Sirf) {
        work(session);
        return;
    }
    const std::string rate = std::to_string(old.rate);
    if (option.rate.empty())
        Fail(FailureKind::Protocol,
             session.Port() +
                 ": the receiver speaks NMEA, and this needs SiRF binary: \"toravanectl switch sirf\" "
                 "before it and \"toravanectl switch nmea " +
                 rate + "\" after it, or --through-sirf");
    if (!sirf.rate) sirf.rate = old.rate;

    context.output.Note("noting the sentences' rates for 11 seconds");
    const NmeaRates rates = RatesFrom(MeasureRates(session, MeasuringTime));
    if (!AnyIsOn(rates))
        Fail(FailureKind::Failed, session.Port() + ": no sentence that could be switched on again came in "
                                                   "11 seconds; nothing was sent");
    std::optional<Failure> failure;
    try {
        {
            // After an interruption between the command and its effect, the way back would not be known.
            const EventLoop::Hold hold(session.Loop());
            RequireState(CarryOutSwitch(session, old, PlanSwitch(old, sirf, rates)), sirf,
                         "way to SiRF binary");
        }
        work(session);
    } catch (const Failure& thrown) {
        failure = thrown;
    }
    const EventLoop::Hold hold(session.Loop());
    GoBack(session, sirf, old, rates);
    if (failure) throw Failure(*failure);
}

} // namespace console
