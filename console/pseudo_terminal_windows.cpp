// SPDX-License-Identifier: MIT
#include "console/pseudo_terminal.h"
#include "console/result.h"

namespace console
{

std::unique_ptr<PseudoTerminal> MakePseudoTerminal(asio::io_context&, const std::string&,
                                                   std::function<void(std::span<const uint8_t>)>)
{
    Fail(FailureKind::Usage,
         "--pty: Windows has no pseudo-terminals of this kind; --tcp serves the same programs");
}

} // namespace console
