// SPDX-License-Identifier: MIT
// The program's device image, on the emulated device.
#include <cstdio>
#include <cstdlib>

#include "platform/platform.h"
#include "tests/device/image.h"
#include "tests/device/machine.h"
#include "tests/device/scenario.h"
#include "tests/device/symbols.h"
#include "tests/device/system_calls.h"

namespace
{

MachineOptions Options;
std::string ImagePath, SymbolPath;
GuestAddress Base;
bool WithFigures;

[[noreturn]] void ListCores()
{
    for (const std::string& name : CoreNames()) std::printf("%s\n", name.c_str());
    std::exit(0);
}

} // namespace

bool TakeProgramOption(const std::string& name, const std::string& value)
{
    if (name == "--image")
        ImagePath = value;
    else if (name == "--symbols")
        SymbolPath = value;
    else if (name == "--core")
        Options.core = value;
    else if (name == "--base")
        Base = static_cast<GuestAddress>(std::stoul(value, nullptr, 0));
    else if (name == "--stack-skew")
        Options.stackSkew = static_cast<uint32_t>(std::stoul(value));
    else if (name == "--system")
        Options.thumbSystem = value == "thumb";
    else if (name == "--figures")
        WithFigures = value == "yes";
    else if (name == "--list-cores")
        ListCores();
    else
        return false;
    return true;
}

int RunProgramUnderTest(const wchar_t* commandLine)
{
    StartMachine(Options);
    MapKernelPage();
    const LoadedImage image = LoadImage(ImagePath, Base, ResolveImport);
    ServeResourcesOf(image);
    if (!SymbolPath.empty()) LoadSymbols(SymbolPath, image.base);
    const std::wstring text = commandLine;
    const GuestAddress copy = AllocateGuest(2 * static_cast<uint32_t>(text.size() + 1));
    StoreGuestText(copy, text);
    const uint32_t exitCode = CallGuest(image.entry, {image.base, 0, copy, SW_SHOW}, "the program");
    FreeGuest(copy);
    return static_cast<int>(exitCode);
}

void PrintFigures(const Scenario& scenario)
{
    if (!WithFigures) return;
    const ThreadFigures user = MainThreadFigures(), reader = OtherThreadFigures();
    std::fprintf(stderr, "%-40s stack %5u and %5u bytes", scenario.name.c_str(), user.stackBytes,
                 reader.stackBytes);
    if (scenario.bytes != 0) {
        constexpr double ClockHz = 200e6, BytesPerSecond = 11520;
        const double perByte = static_cast<double>(reader.instructions) / static_cast<double>(scenario.bytes);
        std::fprintf(stderr, ", %.0f instructions a byte: %.1f %% of 200 MHz at 115200 baud", perByte,
                     100 * perByte * BytesPerSecond / ClockHz);
    }
    std::fputs("\n", stderr);
}
