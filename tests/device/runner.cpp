// SPDX-License-Identifier: MIT
// Runs scenarios, each in a process of its own, and prints their transcripts.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "headless.h"
#include "tests/device/scenario.h"

namespace
{

// Logs of received bytes in a folder.
void AddLogs(const std::string& folder, std::vector<std::string>& logs)
{
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::filesystem::path& path = entry.path();
        const bool isReport = path.filename().string().starts_with("report-");
        if (!isReport && (path.extension() == ".txt" || path.extension() == ".srf"))
            logs.push_back(path.string());
    }
    std::sort(logs.begin(), logs.end());
}

bool Run(const Scenario& scenario)
{
    std::printf("=== %s\n", scenario.name.c_str());
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        HeadlessReset();
        scenario.run();
        PrintFigures(scenario);
        std::fflush(stdout);
        std::_Exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (status == 0) return true;
    std::fprintf(stderr, "%s: ended with status %#x\n", scenario.name.c_str(), status);
    return false;
}

} // namespace

int main(int count, char** arguments)
{
    std::vector<std::string> logs, chosen;
    for (int i = 1; i < count; ++i) {
        const std::string name = arguments[i];
        if (name == "--logs" && i + 1 < count) {
            AddLogs(arguments[++i], logs);
        } else if (name.starts_with("--")) {
            if (i + 1 == count || !TakeProgramOption(name, arguments[i + 1])) {
                std::fprintf(stderr, "unknown option %s\n", name.c_str());
                return 2;
            }
            ++i;
        } else {
            chosen.push_back(name);
        }
    }
    int failures = 0, runs = 0;
    for (const Scenario& scenario : AllScenarios(logs)) {
        const bool isChosen =
            chosen.empty() || std::any_of(chosen.begin(), chosen.end(),
                                          [&](const auto& text) { return scenario.name.starts_with(text); });
        if (!isChosen) continue;
        ++runs;
        if (!Run(scenario)) ++failures;
    }
    std::fprintf(stderr, "%d of %d scenarios ended\n", runs - failures, runs);
    return failures != 0 || runs == 0;
}
