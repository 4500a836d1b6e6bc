// SPDX-License-Identifier: MIT
#include "console/output.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "console/system.h"

namespace console
{

Output::Output() = default;
Output::~Output() = default;

void Output::Raw(std::string_view bytes)
{
    if (broken_) return;
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size() && std::fflush(stdout) == 0)
        return;
    broken_ = true;
    if (errno == EINTR) Fail(FailureKind::Interrupted, "interrupted"); // while a full pipe was waited for
    Fail(FailureKind::Failed, std::string("standard output: ") + std::strerror(errno));
}

void Output::Line(std::string_view text)
{
    if (!json) Raw(std::string(text) + '\n');
}

std::string Output::Coloured(Colour colour, std::string_view text)
{
    const char* const refusal = std::getenv("NO_COLOR");
    if ((refusal && *refusal) || !OutputIsTerminal()) return std::string(text);
    if (!terminal_) terminal_ = std::make_unique<AnsiTerminal>();
    if (!terminal_->TakesSequences()) return std::string(text);
    constexpr const char* Begin[] = {"\x1b[32m", "\x1b[31m", "\x1b[33m"}; // in the order of Colour
    return Begin[static_cast<size_t>(colour)] + std::string(text) + "\x1b[0m";
}

void Output::Note(std::string_view text)
{
    if (!quiet) std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
}

void Output::Error(std::string_view text)
{
    std::fprintf(stderr, "toravanectl: %.*s\n", static_cast<int>(text.size()), text.data());
}

int Output::End(const std::string& command, const Failure* failure)
{
    const int status = failure ? Describe(failure->kind).exitStatus : 0;
    if (failure && !failure->quiet) Error(failure->message);
    if (!json || noObject || broken_) return status;
    Json whole = {{"command", command}, {"exit", status}};
    if (failure) whole["error"] = {{"kind", Describe(failure->kind).name}, {"message", failure->message}};
    whole.update(object);
    try {
        Raw(whole.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n');
    } catch (const Failure& late) {
        Error(late.message);
        return Describe(late.kind).exitStatus;
    }
    return status;
}

std::string FrameText(std::span<const uint8_t> frame)
{
    if (frame.empty() || frame[0] != '$') return HexText(frame);
    std::string text(frame.begin(), frame.end());
    while (!text.empty() && (text.back() == '\r' || text.back() == '\n')) text.pop_back();
    return text;
}

std::string HexText(std::span<const uint8_t> bytes)
{
    constexpr char Digits[] = "0123456789ABCDEF";
    std::string text;
    for (const uint8_t b : bytes) {
        if (!text.empty()) text += ' ';
        text += Digits[b >> 4];
        text += Digits[b & 15];
    }
    return text;
}

std::string Printable(std::string_view text)
{
    std::string printable(text);
    for (char& c : printable)
        if (c < 0x20 || c > 0x7E) c = '?';
    return printable;
}

} // namespace console
