// SPDX-License-Identifier: MIT
// Fixture of the dialogs' tests: an open port, and one step of the user while a dialog is open.
#pragma once

#include <functional>

#include "link/link_state.h"
#include "nmea/dialogs/command_dialog.h"
#include "nmea/receiver_messages.h"
#include "resources/resource_ids.h"
#include "tests/unit/support/product_test.h"

// The parameter: true for a device with a keypad.
class CommandDialogTest : public ProductTest, public testing::WithParamInterface<bool>
{
protected:
    CommandDialogTest();

    // Shows a dialog; the user does something in it and closes it.
    static void Open(const Dialog* shown, const std::function<void(HWND dialog)>& act);

    // Chooses the list entry of that text.
    static void Choose(HWND dialog, int control, const std::wstring& text);
    // Removes the selection, which no user can do.
    static void Unchoose(HWND dialog, int control);

    // The sent bytes and the shown boxes since the last call.
    std::string TakeSent();
    static std::vector<HeadlessBox> TakeBoxes();

    // The only box of a refused entry; nothing has been sent.
    testing::AssertionResult Refuses(const std::wstring& caption, const std::wstring& text);

    HeadlessPort& Port;
};

#define IN_BOTH_LAYOUTS(suite)                               \
    INSTANTIATE_TEST_SUITE_P(Layout, suite, testing::Bool(), \
                             [](const auto& layout) { return layout.param ? "Keypad" : "Touch"; })

// For tests that type into a list: a keypad device's lists accept no text.
#define IN_TOUCH_LAYOUT(suite) INSTANTIATE_TEST_SUITE_P(Touch, suite, testing::Values(false))
