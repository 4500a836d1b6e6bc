// What the receiver's settings dialogs have in common. A dialog shows the fields of one command: it polls the
// receiver for them when it opens and on "Get", and on "Set" checks them in their order and sends the
// command. User-interface thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <span>

#include "platform/platform.h"
#include "sirf/command_layouts.h"
#include "sirf/setting_values.h"

struct SirfDialog {
    uint16_t number; // of its templates, without the layout's offset
    const CommandLayout* layout;
    uint16_t getButton, setButton;              // 0: it has none
    SettingsPoll poll = SettingsPoll::Settings; // how it learns the receiver's settings

    // Where a dialog differs from its layout; null where it does not.
    void (*open)(HWND dialog) = nullptr; // when its lists are filled, before it is published
    void (*press)(HWND dialog, uint16_t button) = nullptr; // any button but Get and Set
    void (*set)(HWND dialog) = nullptr;                    // instead of checking all fields and sending them
    void (*draw)(HDC dc, int top) = nullptr;               // between its controls, at each paint
    bool pollsUnrecognised = false; // when it opens, even if no SiRF binary has been recognised
};

void ShowSirfDialog(const SirfDialog& dialog);

// Reads the fields in their order into as many values. The first one that is not acceptable is refused with
// its box: false.
bool ReadFields(HWND dialog, std::span<const CommandField> fields, int64_t* values);

// Sends a command to the receiver.
void SendCommand(const CommandLayout& layout, const SettingValues& values);

// True for the click on a button; its number. Nothing else that controls notify is acted upon:
// most of it is caused by the receiver's answers, which the reader thread writes into them.
bool IsClick(UINT message, WPARAM wParam, uint16_t& button);

// True if SiRF binary has been recognised, so that a poll will be understood.
bool ReceiverSpeaksSirf();

// Set when the receiver begins anew, by a command or at another rate; read by nothing.
extern std::atomic<uint8_t> InitializeSent;
