// SPDX-License-Identifier: MIT
#include "console/commands/commands.h"
#include "console/correction_options.h"
#include "console/finder.h"
#include "graph/latest_fix.h"

namespace console
{

namespace
{

void ReportDate(Context& context, const CorrectionOptions& options)
{
    const Reference reference = options.ReferenceOrClock();
    if (context.options.dryRun) return; // it sends nothing
    const Receiver receiver = FindReceiver(context);
    if (!receiver.session->WaitFor([] { return LatestFix.Day != 0; },
                                   Seconds(context.options.timeoutSeconds)))
        Fail(FailureKind::NoAnswer,
             "the receiver reports no date: it needs RMC, ZDA or message 41, and one fix");
    const Correction correction =
        CorrectDate({LatestFix.Year, LatestFix.Month, LatestFix.Day}, reference, ReleaseDate());
    const std::string raw = FormatDate(correction.raw), corrected = FormatDate(correction.corrected);
    context.output.Line((correction.epochs == 0 ? raw : raw + " -> " + corrected) + " (" + correction.reason +
                        ")");
    context.output.object = {{"raw", raw},
                             {"corrected", corrected},
                             {"epochs", correction.epochs},
                             {"reference", FormatDate(correction.reference)},
                             {"reason", correction.reason}};
}

} // namespace

Action DefineDate(Parser& parser)
{
    const auto options = std::make_shared<CorrectionOptions>();
    options->DefineReference(parser, "the computer's clock");
    return [options](Context& context) { ReportDate(context, *options); };
}

} // namespace console
