// SPDX-License-Identifier: MIT
#include "console/commands/commands.h"
#include "console/finder.h"

namespace console
{

namespace
{

void Probe(Context& context)
{
    if (context.options.dryRun) return; // it never sends anything
    const Receiver receiver = FindReceiver(context);
    const std::string& port = receiver.session->Port();
    context.output.Line(port + ": " + ProtocolTitle(receiver.found.protocol) + " at " +
                        std::to_string(receiver.found.rate) + " baud");
    context.output.object = {{"port", port},
                             {"protocol", ProtocolKey(receiver.found.protocol)},
                             {"rate", receiver.found.rate},
                             {"bytes", receiver.heard.bytes},
                             {"messages", receiver.heard.messages}};
}

} // namespace

Action DefineProbe(Parser&)
{
    return Probe;
}

} // namespace console
