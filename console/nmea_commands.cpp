// SPDX-License-Identifier: MIT
#include "console/nmea_commands.h"

#include "text/format.h"

namespace console
{

std::string SerialPortBody(bool nmea, uint32_t rate)
{
    char body[48];
    Format(body, "PSRF100,%d,%u,8,1,0", nmea ? 1 : 0, rate);
    return body;
}

std::string RestartBody(unsigned configuration)
{
    char body[48];
    Format(body, "PSRF101,0,0,0,0,0,0,12,%u", configuration);
    return body;
}

std::string SentenceRateBody(unsigned sentence, unsigned seconds)
{
    char body[48];
    Format(body, "PSRF103,%u,0,%u,1", sentence, seconds);
    return body;
}

} // namespace console
