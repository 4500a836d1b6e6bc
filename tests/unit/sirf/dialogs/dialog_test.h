// SPDX-License-Identifier: MIT
// Fixture of the tests of the SiRF command dialogs: the real dialogs on a port whose writes are kept,
// operated by a scripted user.
#pragma once

#include "headless.h"
#include "tests/unit/sirf/dialogs/field_cases.h"
#include "tests/unit/sirf/sirf_test.h"

class SirfDialogTest : public SirfTest
{
protected:
    SirfDialogTest() : Port(OpenPort()) {}

    // Opens a dialog, lets the user do something in it, and closes it again.
    void With(int number, const std::function<void(HWND dialog)>& user);

    static void Enter(HWND dialog, const Entry& entry);
    static void UseKeypad();

    // The frames written since the last call.
    std::vector<std::string> Written();

    HeadlessPort& Port;
    size_t Seen = 0;
};
