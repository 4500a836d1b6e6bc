// SPDX-License-Identifier: MIT
#include "text/fields.h"

#include "text/format.h"
#include "text/numbers.h"

namespace
{

constexpr int32_t FivePercent = 5;

int64_t ValuesPerUnit(const CommandField& field)
{
    return DecimalsOf(field) ? 10 : 1;
}

} // namespace

uint32_t DecimalsOf(const CommandField& field)
{
    return field.kind == FieldKind::Tenths ? 1 : 0;
}

int32_t StepOf(const CommandField& field)
{
    return field.kind == FieldKind::FivePercent ? FivePercent : 1;
}

int64_t LowestValue(const CommandField& field)
{
    return field.low * ValuesPerUnit(field);
}

int64_t HighestValue(const CommandField& field)
{
    return field.high * ValuesPerUnit(field);
}

bool AcceptsValue(const CommandField& field, int64_t value, Reading reading)
{
    const int64_t times = reading == Reading::Typed ? field.typedTimes : 1;
    if (value < LowestValue(field) * times || value > HighestValue(field) * times) return false;
    if (reading == Reading::Exact && value % StepOf(field)) return false;
    return !field.accepts || field.accepts(static_cast<int32_t>(value));
}

template <typename Char>
bool ParseValue(const CommandField& field, const Char* text, Reading reading, int64_t& value)
{
    int64_t number;
    if (reading == Reading::Typed && field.kind == FieldKind::Tenths) {
        double decimal;
        if (!ParseDecimalNumber(text, decimal)) return false;
        if (decimal < field.low * field.typedTimes || decimal > field.high * field.typedTimes) return false;
        number =
            static_cast<int64_t>(decimal * 10.0 + 0.5); // negative values are rounded upwards, on purpose
    } else if (reading == Reading::Typed && field.kind == FieldKind::NamedNumber) {
        int32_t leading;
        if (!ParseWholeNumber(text, leading)) return false;
        number = leading;
    } else if (!ParseFixedPoint(text, DecimalsOf(field), number)) {
        return false;
    }
    if (!AcceptsValue(field, number, reading)) return false;
    value = number;
    return true;
}

template bool ParseValue(const CommandField&, const char*, Reading, int64_t&);
template bool ParseValue(const CommandField&, const wchar_t*, Reading, int64_t&);

uint32_t WriteValue(const CommandField& field, int64_t value, wchar_t (&text)[ValueTextCapacity])
{
    if (DecimalsOf(field)) return Format(text, L"%.1f", static_cast<double>(value) * 0.1);
    return Format(text, L"%.0f", static_cast<double>(value));
}
