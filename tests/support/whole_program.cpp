// SPDX-License-Identifier: MIT
#include "tests/support/whole_program.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#include "link/reader_thread.h"
#include "link/serial_port.h"
#include "link/write_queue.h"
#include "platform/start.h"
#include "resources/resource_ids.h"
#include "ui/dialog_support.h"
#include "ui/page_lines.h"

namespace
{

void CloseTopDialog()
{
    if (HWND dialog = HeadlessTopDialog()) HeadlessCommand(dialog, IDCANCEL);
}

void Expect(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "Not given back: %s\n", what);
    std::abort();
}

} // namespace

void InDialog(const DialogEntry& entry, const std::function<void(HWND)>& act)
{
    const auto waiting = std::make_shared<bool>(true); // until the dialog was open, or did not open
    HeadlessUser([&act, waiting] {
        if (!std::exchange(*waiting, false)) return;
        const HWND dialog = HeadlessTopDialog();
        if (!dialog) return;
        act(dialog);
        if (HeadlessTopDialog() == dialog) CloseTopDialog();
    });
    HeadlessCommand(HeadlessMainWindow(), entry.command);
    *waiting = false;
}

std::vector<HeadlessTemplateControl> ControlsOf(const DialogEntry& entry)
{
    HeadlessTemplate found;
    if (!HeadlessFindTemplate(entry.resource + LayoutOffset(), found)) std::abort();
    std::erase_if(found.controls, [](const HeadlessTemplateControl& control) {
        return control.id <= 0 || control.id == 0xFFFF;
    });
    return found.controls;
}

bool Closes(int control)
{
    return control == IDOK || control == IDCANCEL;
}

bool Searches(int control)
{
    return control == CONTROL_COM_FIND_PORT || control == CONTROL_COM_FIND_BAUD;
}

void ClickEveryButton(HWND dialog, const DialogEntry& entry)
{
    for (const HeadlessTemplateControl& control : ControlsOf(entry)) {
        if (control.className != L"BUTTON" || Closes(control.id) || Searches(control.id)) continue;
        if (HeadlessTopDialog() != dialog) return;
        HeadlessClick(dialog, control.id);
    }
}

void RunWholeProgram(const wchar_t* commandLine, const std::function<void()>& act)
{
    HeadlessUser(CloseTopDialog);
    HeadlessUser([&] {
        if (!HeadlessMainWindow()) return;
        act();
        HeadlessUser([] { HeadlessCommand(HeadlessMainWindow(), COMMAND_EXIT); });
    });
    RunProgram(nullptr, commandLine, SW_SHOWNORMAL);
    ExpectNothingLeft();
}

void ExpectNothingLeft()
{
    Expect(HeadlessLiveThreads() == 0, "a thread");
    Expect(HeadlessOpenHandles() == 0, "a handle");
    Expect(HeadlessOpenKeys() == 0, "a registry key");
    Expect(HeadlessUnfreedTexts() == 0, "a system text");
    Expect(HeadlessGdiObjects() == 0, "a drawing object");
}

void Receive(std::string_view bytes)
{
    constexpr size_t BytesBetweenPaints = 256;
    constexpr uint32_t Milliseconds = 40;
    for (;; bytes.remove_prefix(BytesBetweenPaints)) {
        const std::string_view run = bytes.substr(0, BytesBetweenPaints);
        RouteReceived(reinterpret_cast<const uint8_t*>(run.data()), static_cast<uint32_t>(run.size()));
        HeadlessPass(Milliseconds);
        if (bytes.size() < BytesBetweenPaints) return;
    }
}

void ShowChart()
{
    constexpr WPARAM LeftKey = 0x25;
    HeadlessKey(HeadlessMainWindow(), LeftKey);
}

void OpenPortWithoutReader()
{
    HeadlessAddPort(3);
    PortHandle.store(
        CreateFileW(L"COM3:", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    PortDcb.DCBlength = sizeof PortDcb;
    GetCommState(PortHandle.load(), &PortDcb);
}
