// SPDX-License-Identifier: MIT
#include "console/commands/commands.h"
#include "console/system.h"

namespace console
{

namespace
{

Json OrNull(const std::string& text)
{
    return text.empty() ? Json(nullptr) : Json(text);
}

void Ports(Context& context)
{
    const std::vector<PortInfo> ports = ListPorts();
    Json list = Json::array();
    for (const PortInfo& info : ports) {
        std::string line = info.port + ' ' + info.description;
        if (info.state != "free")
            line += " (" + info.state + (info.holder.empty() ? "" : ": " + info.holder) + ")";
        context.output.Line(line);
        list.push_back({{"port", info.port},
                        {"description", info.description},
                        {"usb", OrNull(info.usb)},
                        {"serial", OrNull(info.serial)},
                        {"state", info.state},
                        {"holder", OrNull(info.holder)}});
    }
    context.output.object["ports"] = list;
    if (ports.empty()) Fail(FailureKind::Port, "this machine has no serial port");
}

} // namespace

Action DefinePorts(Parser& parser)
{
    parser.NeedsNoPort();
    return Ports;
}

} // namespace console
