// SPDX-License-Identifier: MIT
// The rate that worked last at each port, kept in the user's own folder. It is only a hint: errors of reading
// and writing are ignored.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace console
{

std::optional<uint32_t> RememberedRate(const std::string& port);
void RememberRate(const std::string& port, uint32_t rate);

} // namespace console
