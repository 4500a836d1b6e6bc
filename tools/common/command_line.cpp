#include "common/command_line.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <sstream>

namespace
{

template <typename Number> std::optional<Number> Between(std::string_view text, Number low, Number high)
{
    Number value{};
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || rest != end || !(value >= low && value <= high)) return std::nullopt;
    return value;
}

} // namespace

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

std::optional<double> NumberBetween(std::string_view text, double low, double high)
{
    return Between(text, low, high);
}

std::optional<int> WholeNumberBetween(std::string_view text, int low, int high)
{
    return Between(text, low, high);
}
