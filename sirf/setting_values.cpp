// SPDX-License-Identifier: MIT
#include "sirf/setting_values.h"

#include <cstring>

#include "sirf/message_fields.h"

namespace
{

constexpr uint8_t NavigationParametersId = 19, CommandParametersId = 43;
constexpr uint8_t PollNavigationParametersId = 152, PollParametersId = 168;

constexpr int32_t HundredthsPerUnit = 100;

// A negative number becomes its two's complement, as the receiver expects it.
void PutField(const CommandField& field, int64_t value, uint8_t* payload)
{
    if (field.kind == FieldKind::Hundredths) value *= HundredthsPerUnit;
    if (field.kind == FieldKind::FivePercent) value /= StepOf(field);
    uint64_t number = static_cast<uint64_t>(value);
    for (uint32_t i = field.width; i > 0; --i) {
        payload[field.offset + i - 1] = static_cast<uint8_t>(number);
        number >>= 8;
    }
}

int64_t GetField(const CommandField& field, const uint8_t* payload, Signs signs)
{
    int64_t value = ReadBigEndian(payload + field.offset, field.width);
    const int64_t beyond = int64_t{1} << (8 * field.width);
    if (signs == Signs::Kept && field.low < 0 && value >= beyond / 2) value -= beyond;
    switch (field.kind) {
    case FieldKind::Hundredths: return value / HundredthsPerUnit;
    case FieldKind::FivePercent: return value * StepOf(field);
    case FieldKind::Check: return value != 0;
    default: return value;
    }
}

// The settings of power management, in the form of its command.
void PackPowerManagement(const uint8_t* message, uint8_t (&payload)[MaxCommandLength])
{
    constexpr uint32_t Enabled = 57, Cycles = 59, TimeBetweenFixes = 61, MaxErrors = 62, MaxResponseTime = 63,
                       Priorities = 64;
    const uint8_t settings[] = {
        AdvancedPowerManagementLayout.command,
        static_cast<uint8_t>(message[Enabled] >> 7),
        message[Cycles],
        message[TimeBetweenFixes],
        0,
        static_cast<uint8_t>(message[MaxErrors] >> 4),
        static_cast<uint8_t>(message[MaxErrors] & 15),
        message[MaxResponseTime],
        static_cast<uint8_t>(message[Priorities] >> 2 & 3),
        static_cast<uint8_t>(message[Enabled] & 31),
        static_cast<uint8_t>(message[Priorities] & 3),
    };
    std::memcpy(payload, settings, sizeof settings);
}

// The settings of an answer, in the form of the layout's command.
bool PackAnswer(const CommandLayout& layout, const uint8_t* message, uint32_t length,
                uint8_t (&payload)[MaxCommandLength])
{
    constexpr uint32_t NavigationParametersLength = 65;
    constexpr uint8_t WithPowerManagement = 1; // byte 1 of message 19
    if (layout.poll == SettingsPoll::NavigationParameters) {
        if (length < NavigationParametersLength || message[0] != NavigationParametersId ||
            message[1] != WithPowerManagement)
            return false;
        PackPowerManagement(message, payload);
        return true;
    }
    if (layout.poll != SettingsPoll::Settings || length < layout.length + 1u ||
        message[0] != CommandParametersId || message[1] != layout.command)
        return false;
    std::memcpy(payload, message + 1, layout.length);
    return true;
}

} // namespace

void PackCommand(const CommandLayout& layout, const SettingValues& values,
                 uint8_t (&payload)[MaxCommandLength])
{
    std::memset(payload, 0, sizeof payload);
    payload[0] = layout.command;
    for (size_t i = 0; i < layout.fields.size(); ++i) PutField(layout.fields[i], values[i], payload);
    if (layout.encode) layout.encode(payload);
}

uint32_t PackPoll(const CommandLayout& layout, uint8_t (&payload)[PollLength])
{
    switch (layout.poll) {
    case SettingsPoll::Settings:
        payload[0] = PollParametersId;
        payload[1] = layout.command;
        return PollLength;
    case SettingsPoll::NavigationParameters:
        payload[0] = PollNavigationParametersId;
        payload[1] = 0;
        return PollLength;
    case SettingsPoll::Nothing: break;
    }
    return 0;
}

bool ReadAnswer(const CommandLayout& layout, const uint8_t* message, uint32_t length, Signs signs,
                SettingValues& values)
{
    uint8_t payload[MaxCommandLength] = {};
    if (!PackAnswer(layout, message, length, payload)) return false;
    if (layout.decode) layout.decode(payload);
    for (size_t i = 0; i < layout.fields.size(); ++i) values[i] = GetField(layout.fields[i], payload, signs);
    return true;
}
