// SPDX-License-Identifier: MIT
#include "console/fix_reports.h"

namespace console
{

std::optional<bool> ReportedFix(const Sentence& sentence)
{
    if (!sentence.hadChecksum) return {};
    struct Row {
        std::string_view kind;
        unsigned field;
        std::string_view without; // the field's text while there is no fix
    };
    constexpr Row Rows[] = {{"GGA", 6, "0"}, {"RMC", 2, "V"}, {"GLL", 6, "V"}};
    for (const Row& row : Rows) {
        if (sentence.Kind() != row.kind) continue;
        const std::string_view text = sentence.Field(row.field);
        return !text.empty() && text != row.without;
    }
    return {};
}

std::optional<bool> ReportedFix(const Message& message)
{
    struct Row {
        uint8_t id;
        size_t length, place; // of the fix type, whose low three bits are 0 while there is no fix
    };
    constexpr Row Rows[] = {{2, 41, 19}, {41, 91, 4}};
    constexpr uint8_t FixTypeBits = 7;
    for (const Row& row : Rows)
        if (message.Id() == row.id && message.payload.size() >= row.length)
            return (message.payload[row.place] & FixTypeBits) != 0;
    return {};
}

} // namespace console
