// Fixture of the tests of the SiRF command dialogs: the real dialogs on a port whose writes are kept, worked
// by a scripted user.
#pragma once

#include "headless.h"
#include "tests/unit/sirf/sirf_test.h"

// What the user puts into a control.
struct Entry {
    int control;
    enum class Kind : uint8_t { Text, Choice, Box } kind;
    std::wstring text; // typed, or on keypads the beginning of the entry that is chosen
    int number = 0;    // index of the entry, -1 none; or BST_...
};
inline Entry Typed(int control, const std::wstring& text)
{
    return {control, Entry::Kind::Text, text};
}
inline Entry Chosen(int control, int index)
{
    return {control, Entry::Kind::Choice, {}, index};
}
inline Entry Ticked(int control, UINT state)
{
    return {control, Entry::Kind::Box, {}, static_cast<int>(state)};
}

class SirfDialogTest : public SirfTest
{
protected:
    SirfDialogTest() : Port(OpenPort()) {}

    // Opens a dialog, lets the user do something in it, and closes it again.
    void With(void (*show)(), const std::function<void(HWND dialog)>& user);

    static void Enter(HWND dialog, const Entry& entry);
    static void UseKeypad();

    // The frames written since the last call, as they went out.
    std::vector<std::string> Written();

    HeadlessPort& Port;
    size_t Seen = 0;
};
