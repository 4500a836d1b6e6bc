// SPDX-License-Identifier: MIT
// The receiver's firmware.
#pragma once

#include "console/session.h"

namespace console
{

Frame VersionPoll();

// The version's text. Throws Failure of the kinds Refused and NoAnswer.
std::string ReadVersion(Session& session, Duration limit);

} // namespace console
