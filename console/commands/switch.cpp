// SPDX-License-Identifier: MIT
#include "console/commands/commands.h"
#include "console/message_rates.h"
#include "console/remembered_rate.h"
#include "console/switching.h"

namespace console
{

namespace
{

struct SwitchOptions {
    std::string protocol, rate, sentences;
};

void Switch(Context& context, const SwitchOptions& options)
{
    Output& output = context.output;
    Found wanted = {Protocol::Nmea, 0};
    if (options.protocol == "sirf")
        wanted.protocol = Protocol::Sirf;
    else if (options.protocol != "nmea")
        Fail(FailureKind::Usage, "no protocol \"" + options.protocol + "\"; there are nmea and sirf");
    if (!options.rate.empty()) wanted.rate = ParseRate(options.rate);
    if (!options.sentences.empty() && wanted.protocol == Protocol::Sirf)
        Fail(FailureKind::Usage, "--rates is for a change to NMEA");
    const NmeaRates rates = options.sentences.empty() ? DefaultRates() : ParseNmeaRates(options.sentences);
    if (context.options.dryRun) {
        if (!wanted.rate)
            Fail(FailureKind::Usage, "--dry-run needs the rate, because nothing can be found out");
        Found now = {wanted.protocol == Protocol::Nmea ? Protocol::Sirf : Protocol::Nmea, wanted.rate};
        for (const SwitchStep& step : PlanSwitch(now, wanted, rates)) {
            output.Line("> " + FrameText(StepFrame(now.protocol, step)));
            now = step.expected;
        }
        return;
    }

    const Receiver receiver = FindReceiver(context);
    if (!wanted.rate) wanted.rate = receiver.found.rate;
    output.object["wanted"] = FoundJson(wanted);
    const std::vector<SwitchStep> steps = PlanSwitch(receiver.found, wanted, rates);
    const auto found = CarryOutSwitch(*receiver.session, receiver.found, steps);
    output.object["found"] = FoundJson(found);
    if (!found)
        Fail(FailureKind::Lost,
             "the receiver is not heard at any rate any more, wanted " + FoundText(wanted));
    RememberRate(receiver.session->Port(), found->rate);
    output.Line("now " + FoundText(*found));
    if (found->protocol != wanted.protocol || found->rate != wanted.rate)
        Fail(FailureKind::Differs,
             "the receiver is at " + FoundText(*found) + " instead of " + FoundText(wanted));
    if (options.sentences.empty()) {
        if (steps.empty()) output.Note("it was so already; nothing was sent");
        return;
    }
    const std::vector<MessageRate> sentences = SentenceRates(rates);
    // The command that leads from SiRF binary to NMEA has brought them along.
    if (receiver.found.protocol == Protocol::Nmea)
        for (const MessageRate& rate : sentences)
            receiver.session->Send(MessageRateFrame(Protocol::Nmea, rate));
    SeeMessageRates(*receiver.session, sentences);
}

} // namespace

Action DefineSwitch(Parser& parser)
{
    const auto options = std::make_shared<SwitchOptions>();
    parser.Option("PROTOCOL", options->protocol, "nmea or sirf")
        .Required()
        .Suggest({ProtocolKey(Protocol::Nmea), ProtocolKey(Protocol::Sirf)});
    parser.Option("RATE", options->rate, "line rate in bits/s; the present one if it is not given")
        .Suggest(RateTexts());
    parser.Option("--rates", options->sentences, "sentences and seconds, as GGA=1,GSV=5; the others are off")
        .TypeName("LIST");
    return [options](Context& context) { Switch(context, *options); };
}

} // namespace console
