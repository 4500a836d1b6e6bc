// SPDX-License-Identifier: MIT
#include "tests/unit/nmea/dialogs/command_dialog_test.h"

#include <algorithm>

#include "link/serial_port.h"
#include "link/write_queue.h"
#include "nmea/dialogs/command_dialog.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"

CommandDialogTest::CommandDialogTest() : Port(OpenPort())
{
    if (GetParam()) HeadlessSetPlatformType(L"SmartPhone");
    ChooseLayout();
    PortDcb = Port.dcb;
    RecogniseNmea();
}

void CommandDialogTest::Open(const Dialog* shown, const std::function<void(HWND)>& act)
{
    HeadlessUser([&] {
        act(HeadlessTopDialog());
        HeadlessCommand(HeadlessTopDialog(), IDOK);
    });
    OpenDialog(*shown);
}

void CommandDialogTest::Choose(HWND dialog, int control, const std::wstring& text)
{
    const std::vector<std::wstring> items = HeadlessItems(dialog, control);
    const auto found = std::find(items.begin(), items.end(), text);
    HeadlessChoose(dialog, control, static_cast<int>(found - items.begin()));
}

void CommandDialogTest::Unchoose(HWND dialog, int control)
{
    SelectListEntry(dialog, control, -1);
}

std::string CommandDialogTest::TakeSent()
{
    return std::exchange(Port.sent, "");
}

std::vector<HeadlessBox> CommandDialogTest::TakeBoxes()
{
    const std::vector<HeadlessBox> boxes = HeadlessBoxes();
    HeadlessClearBoxes();
    return boxes;
}

testing::AssertionResult CommandDialogTest::Refuses(const std::wstring& caption, const std::wstring& text)
{
    const std::vector<HeadlessBox> boxes = TakeBoxes();
    const std::string sent = TakeSent();
    if (!sent.empty()) return testing::AssertionFailure() << "sent " << sent;
    if (boxes.size() != 1) return testing::AssertionFailure() << boxes.size() << " boxes";
    return IsBox(boxes[0], caption, text);
}
