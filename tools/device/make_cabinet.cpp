// SPDX-License-Identifier: MIT
// toravane-make-cabinet IMAGE PROGRAMS CABINET: the program's install package. PROGRAMS is the folder of
// programs on the device; links with a command line need it.

#include "cabinet.h"
#include "files.h"

#include <cstdio>

namespace
{

constexpr const char* Application = "Toravane";
constexpr const char* Provider = "Quenmark";
constexpr const char* ProgramFolder = "%CE1%\\Toravane";
constexpr const char* StartMenu = "%CE11%";

struct Action {
    const char *link, *commandLine; // see app/command_line.h
};
constexpr Action Actions[] = {
    {"Static Navigation On.lnk", "StaticNavigationOn"},
    {"Static Navigation Off.lnk", "StaticNavigationOff"},
};

} // namespace

int main(int count, char** arguments)
{
    if (count != 4) {
        std::fputs("Usage: toravane-make-cabinet IMAGE.exe '\\Program Files' PACKAGE.cab\n", stderr);
        return 2;
    }
    try {
        device::Package package = {Application, Provider, {}, 0};
        package.files.push_back({ProgramFolder, "toravane.exe", device::ReadWholeFile(arguments[1])});
        const std::string program = std::string(arguments[2]) + "\\Toravane\\toravane.exe";
        for (const Action& action : Actions)
            package.files.push_back(
                {StartMenu, action.link, device::LinkContent(program, action.commandLine)});
        const device::Bytes cabinet = device::MakeCabinet(package);
        device::WriteWholeFile(arguments[3], cabinet);
        std::printf("%s: %zu bytes, %zu files\n", arguments[3], cabinet.size(), package.files.size());
        return 0;
    } catch (const device::Refusal& refusal) {
        std::fprintf(stderr, "%s: refused: %s\n", arguments[1], refusal.what());
        return 1;
    }
}
