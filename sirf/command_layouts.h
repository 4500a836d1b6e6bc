// SPDX-License-Identifier: MIT
// The receiver's settings commands as data: each control of a command dialog and the bytes of the payload
// that it fills, in the order in which a dialog checks them. The answer to a poll has the same payload, so
// the same rows are used to send and to show.
#pragma once

#include <cstdint>
#include <span>

#include "text/fields.h"
#include "ui/dialog_kind.h"

// The way in which the receiver reports a command's settings.
enum class SettingsPoll : uint8_t {
    Settings,             // alone: polled with message id 168, answered by 43
    NavigationParameters, // together with others: polled with 152, answered by 19
    Nothing,              // not at all
};

// Bytes without a field are sent as 0. A command 128 has two special rules: positions are sent with one kind
// of reset only, and byte 24 comes from option buttons.
struct CommandLayout {
    uint8_t command;                      // message id
    uint8_t length;                       // payload bytes, message id included
    std::span<const CommandField> fields; // in the order in which they are checked

    // The dialog that sends the command.
    DialogKind kind;
    uint16_t number;                   // of its templates and its menu item
    uint16_t setButton, getButton = 0; // 0: it has none
    SettingsPoll poll = SettingsPoll::Settings;

    // For payloads that differ from the values of the fields: conversion before sending, and after receiving.
    void (*encode)(uint8_t* payload) = nullptr;
    void (*decode)(uint8_t* payload) = nullptr;
};

constexpr uint32_t MaxCommandLength = 25, MaxCommandFields = 9;
constexpr uint32_t ResetConfigurationOffset = 24; // in a command 128

extern const CommandLayout InitializeDataSourceLayout, DgpsSourceLayout, ModeControlLayout, DopMaskLayout,
    DgpsModeLayout, ElevationMaskLayout, PowerMaskLayout, StaticNavigationLayout, TricklePowerLayout,
    LowPowerLayout, SbasLayout, AdvancedPowerManagementLayout, SetMessageRateLayout;

// The layout of the dialog with this number; null if it has none.
const CommandLayout* FindDialogLayout(uint16_t number);

// The layout of a command whose settings are polled alone (168); null for any other message id.
const CommandLayout* FindPolledCommand(uint8_t command);

constexpr uint8_t InternalBeacon = 3; // index into the DGPS sources
extern const std::span<const wchar_t* const> DgpsSourceNames;

// The SBAS list begins with "Auto"; entry n is the satellite with number n + this constant.
constexpr uint8_t SbasEntryToPrn = 119;
