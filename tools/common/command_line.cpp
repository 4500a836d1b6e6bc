// SPDX-License-Identifier: MIT
#include "common/command_line.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sstream>

#include "common/system.h"

const CLI::Validator
    NotEmpty([](const std::string& text) { return std::string(text.empty() ? "is empty" : ""); }, "");

int FailTool(const std::string& tool, const std::string& message)
{
    std::fprintf(stderr, "%s: %s\n", tool.c_str(), message.c_str());
    return ExitBadUse;
}

int FinishOutput(const std::string& tool)
{
    if (!std::fflush(stdout) && !std::ferror(stdout)) return 0;
    return FailTool(tool, std::string("standard output: ") + std::strerror(errno));
}

std::optional<int> ParseCommandLine(CLI::App& app, int argumentCount, const char* const* arguments)
{
    PrepareStandardStreams();
    app.allow_windows_style_options(false); // a slash begins a path on every system
    try {
        app.parse(argumentCount, arguments);
        return std::nullopt;
    } catch (const CLI::Success& shown) { // --help or --version
        std::ostringstream out;
        app.exit(shown, out, out);
        std::fputs(out.str().c_str(), stdout);
        return FinishOutput(app.get_name());
    } catch (const CLI::Error& error) {
        return FailTool(app.get_name(), std::string(error.what()) + " (--help explains)");
    }
}
