// SPDX-License-Identifier: MIT
// toravane-receiver: the receiver on a pseudo-terminal, in real time (or faster).

#include "common/command_line.h"
#include "options.h"
#include "session.h"
#include "terminal.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>

using namespace receiver;

namespace
{

std::atomic<bool> Interrupted = false;

void OnSignal(int)
{
    Interrupted = true;
}

int Fail(const std::string& error)
{
    return FailTool(ProgramName, error);
}

using File = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

std::string RecordError(const Options& options)
{
    return options.record + ": " + std::strerror(errno);
}

// Makes the terminal and prints its path.
bool Announce(Terminal& terminal, const Options& options, uint32_t rate, std::string& error)
{
    if (!terminal.Open(options.link, rate, error)) return false;
    std::printf("%s\n", terminal.Path().c_str());
    if (!std::fflush(stdout)) return true;
    error = std::string("standard output: ") + std::strerror(errno);
    return false;
}

int Run(const Options& options, Session& session, std::FILE* record)
{
    using Clock = std::chrono::steady_clock;
    Terminal terminal;
    std::string error;
    if (!Announce(terminal, options, session.Sim.Kept.lineRate, error)) return Fail(error);

    const auto start = Clock::now();
    // A recorded log waits for its first listener, and lets it set its port up: what arrives before that is
    // lost.
    constexpr double SettingUpS = 0.3;
    double waited = 0;
    bool played = options.play.empty();
    double nextStatus = 0;
    while (!Interrupted && !session.Quitting()) {
        const double real = std::chrono::duration<double>(Clock::now() - start).count();
        const bool present = terminal.HostPresent();
        if (!played && !present) waited = real + SettingUpS;
        played = played || present;
        const double now = std::max(0.0, real - waited) * options.speed;
        if (options.durationS > 0 && now >= options.durationS) break;
        if (!present && session.PlayEnded()) break;

        const Bytes fromHost = terminal.Read();
        if (record && !fromHost.empty()) {
            std::fwrite(fromHost.data(), 1, fromHost.size(), record);
            if (std::fflush(record)) return Fail(RecordError(options));
        }
        const uint32_t hostRate = terminal.HostRate();
        terminal.Write(session.Step(now, fromHost, hostRate));

        if (terminal.IsOpen() && now < session.VanishedUntil()) terminal.Close();
        if (!terminal.IsOpen() && now >= session.VanishedUntil() &&
            !Announce(terminal, options, session.Sim.Kept.lineRate, error)) {
            return Fail(error);
        }
        if (options.verbose && real >= nextStatus) {
            std::fprintf(stderr, "%s\n", session.Status(hostRate, present).c_str());
            nextStatus += 1.0;
        }
        terminal.Wait(4);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    if (const auto exitCode = ParseOptions(argc, argv, options)) return *exitCode;

    std::string error;
    std::vector<Action> script;
    if (!options.script.empty()) {
        auto read = ReadScript(options.script, error);
        if (!read) return Fail(error);
        script = std::move(*read);
    }
    std::optional<Player> player;
    if (!options.play.empty()) {
        auto log = ReadLog(options.play, error);
        if (!log) return Fail(error);
        player.emplace(std::move(*log), options.repeat);
    }
    File record(nullptr, std::fclose);
    if (!options.record.empty()) {
        record.reset(std::fopen(options.record.c_str(), "wb"));
        if (!record) return Fail(RecordError(options));
    }

    struct sigaction action {
    };
    action.sa_handler = OnSignal;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
    signal(SIGPIPE, SIG_IGN);

    Session session(options.config, std::move(script), std::move(player));
    for (const Action& fault : options.startFaults) session.Perform(fault);
    return Run(options, session, record.get());
}
