// SPDX-License-Identifier: MIT
// The receiver's settings commands as data: each control of a command dialog with the payload bytes that it
// fills, in the order in which a dialog checks them. The answer to a poll carries the same payload, so the
// rows serve sending and showing alike.
#pragma once

#include <cstdint>
#include <span>

#include "text/fields.h"
#include "ui/dialog_kind.h"

// How the receiver reports a command's settings.
enum class SettingsPoll : uint8_t {
    Settings,             // by themselves: polled with message id 168, answered by 43
    NavigationParameters, // in a collection of many: polled with 152, answered by 19
    Nothing,              // not at all
};

// What is sent as 0 has no field. A command 128 has more than its rows say: positions are sent with one kind
// of reset only, and byte 24 comes from option buttons.
struct CommandLayout {
    uint8_t command;                      // message id
    uint8_t length;                       // payload bytes, message id included
    std::span<const CommandField> fields; // in the order in which they are checked

    // The dialog that sets it.
    DialogKind kind;
    uint16_t number;                   // of its templates and its menu item
    uint16_t setButton, getButton = 0; // 0: it has none
    SettingsPoll poll = SettingsPoll::Settings;

    // Where a payload is not what the fields hold: makes what is sent of that, and that of what was received.
    void (*encode)(uint8_t* payload) = nullptr;
    void (*decode)(uint8_t* payload) = nullptr;
};

constexpr uint32_t MaxCommandLength = 25, MaxCommandFields = 9;
constexpr uint32_t ResetConfigurationOffset = 24; // in a command 128

extern const CommandLayout InitializeDataSourceLayout, DgpsSourceLayout, ModeControlLayout, DopMaskLayout,
    DgpsModeLayout, ElevationMaskLayout, PowerMaskLayout, StaticNavigationLayout, TricklePowerLayout,
    LowPowerLayout, SbasLayout, AdvancedPowerManagementLayout, SetMessageRateLayout;

// The layout of the dialog with that number; null where it has none.
const CommandLayout* FindDialogLayout(uint16_t number);

// The layout of a command whose settings are polled by themselves (168); null for any other message id.
const CommandLayout* FindPolledCommand(uint8_t command);

constexpr uint8_t InternalBeacon = 3; // index into the DGPS sources
extern const std::span<const wchar_t* const> DgpsSourceNames;

// The SBAS list begins with "Auto"; entry n is the satellite with number n + this.
constexpr uint8_t SbasEntryToPrn = 119;
