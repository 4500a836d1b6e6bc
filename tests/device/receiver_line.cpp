// SPDX-License-Identifier: MIT
#include "tests/device/receiver_line.h"

namespace
{

constexpr uint32_t StepMs = 20;

receiver::Config ConfigFor(receiver::Protocol protocol, uint32_t rate)
{
    receiver::Config config;
    config.protocol = protocol;
    config.lineRate = rate;
    config.firstStart = receiver::Restart::Hot;
    return config;
}

} // namespace

ReceiverLine::ReceiverLine(HeadlessPort& port, receiver::Protocol protocol, uint32_t rate)
    : Port(port),
      Session(ConfigFor(protocol, rate), {}, std::nullopt),
      Thread(CreateThread(nullptr, 0, Run, this, 0, nullptr))
{
}

ReceiverLine::~ReceiverLine()
{
    Ending = true;
    Sleep(2 * StepMs);
    CloseHandle(Thread);
}

DWORD ReceiverLine::Run(void* line)
{
    auto& me = *static_cast<ReceiverLine*>(line);
    while (!me.Ending) {
        const receiver::Bytes written(me.Port.sent.begin() + static_cast<ptrdiff_t>(me.Taken),
                                      me.Port.sent.end());
        me.Taken = me.Port.sent.size();
        const uint32_t hostRate = me.Port.rates.empty() ? 0 : me.Port.rates.back();
        const receiver::Bytes bytes =
            me.Session.Step(static_cast<double>(HeadlessElapsed()) / 1000, written, hostRate);
        if (me.Port.isOpen && !bytes.empty())
            HeadlessReceive(me.Port, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        Sleep(StepMs);
    }
    return 0;
}
