// The receiver's settings commands as data: each control of a command dialog with the payload bytes that it
// fills, in the order in which a dialog checks them. The answer to a poll carries the same payload, so the
// rows serve sending and showing alike.
#pragma once

#include <cstdint>
#include <span>

#include "ui/dialog_kind.h"

// How a control holds a payload number.
enum class FieldKind : uint8_t {
    Number,      // text: the number itself
    Tenths,      // text: a decimal number, sent in tenths
    Hundredths,  // text: a whole number, sent in hundredths
    FivePercent, // text: per cent, sent in steps of five
    List,        // index of the selected entry
    NumberList,  // number at the start of the text, chosen from a list or typed
    Check,       // three-state box: 0 or 1; undecided is refused
};

struct CommandField {
    FieldKind kind;
    uint16_t control;
    uint8_t offset, width; // payload bytes, the message id at 0; big-endian
    int32_t low, high; // both included, in the control's unit; below zero: the receiver's number is signed
    const wchar_t* caption; // of the box that refuses anything else; nothing is sent then
    const wchar_t* refusal; // its text
    std::span<const wchar_t* const> entries = {}; // of a list or number list
    bool (*accepts)(int32_t value) = nullptr;     // narrower than low and high, where they do not say all
    int32_t typedTimes = 1;                       // a dialog takes this many times low and high
};

// How the receiver reports a command's settings.
enum class SettingsPoll : uint8_t {
    Settings,             // by themselves: polled with message id 168, answered by 43
    NavigationParameters, // in a collection of many: polled with 152, answered by 19
    Nothing,              // not at all
};

// What is sent as 0 has no field. A command 128 has more than its rows say: positions are sent with one kind
// of reset only, and byte 24 comes from option buttons.
struct CommandLayout {
    uint8_t command; // message id
    uint8_t length;  // payload bytes, message id included
    DialogKind dialog;
    SettingsPoll poll;
    std::span<const CommandField> fields; // in the order in which they are checked

    // Where a payload is not what the fields hold: makes what is sent of that, and that of what was received.
    void (*encode)(uint8_t* payload) = nullptr;
    void (*decode)(uint8_t* payload) = nullptr;
};

constexpr uint32_t MaxCommandLength = 25, MaxCommandFields = 9;
constexpr uint32_t ResetConfigurationOffset = 24; // in a command 128

extern const CommandLayout InitializeDataSourceLayout, DgpsSourceLayout, ModeControlLayout, DopMaskLayout,
    DgpsModeLayout, ElevationMaskLayout, PowerMaskLayout, StaticNavigationLayout, TricklePowerLayout,
    LowPowerLayout, SbasLayout, AdvancedPowerManagementLayout, SetMessageRateLayout;

// The layout of a command whose settings are polled by themselves (168); null for any other message id.
const CommandLayout* FindPolledCommand(uint8_t command);

constexpr uint8_t InternalBeacon = 3; // index into the DGPS sources
extern const std::span<const wchar_t* const> DgpsSourceNames;

// Seconds between two messages that lists offer; others can be typed.
extern const std::span<const wchar_t* const> UpdateRateTexts;

// The SBAS list begins with "Auto"; entry n is the satellite with number n + this.
constexpr uint8_t SbasEntryToPrn = 119;
