// SPDX-License-Identifier: MIT
#include "console/commands/commands.h"
#include "console/firmware.h"
#include "console/through_sirf.h"

namespace console
{

Action DefineVersion(Parser& parser)
{
    const auto through = std::make_shared<ThroughSirf>();
    through->AddTo(parser);
    return [through](Context& context) {
        if (context.options.dryRun) {
            context.output.Line("> " + FrameText(FrameSirf(VersionPoll())));
            return;
        }
        WithSirf(context, *through, [&](Session& session) {
            const std::string version = ReadVersion(session, Seconds(context.options.timeoutSeconds));
            context.output.object["version"] = version;
            context.output.Line(version);
        });
    };
}

} // namespace console
