// SPDX-License-Identifier: MIT
#include "ui/dialog_fields.h"

#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"

namespace
{

void PrepareField(HWND dialog, const CommandField& field)
{
    if (!field.entries.empty()) {
        FillList(dialog, field.control, field.entries);
    } else if (field.kind != FieldKind::Check) {
        UseNumericInput(dialog, field.control);
    } else if (!LayoutOffset()) {
        SetCheck(dialog, field.control, BST_INDETERMINATE);
    }
}

bool HasDigit(const wchar_t* text)
{
    for (; *text; ++text)
        if (*text >= L'0' && *text <= L'9') return true;
    return false;
}

bool ReadTextField(HWND dialog, const CommandField& field, int64_t& value)
{
    wchar_t text[ControlTextCapacity];
    ReadControlText(dialog, field.control, text);
    if (field.keepsValue && !HasDigit(text)) return true;
    return ParseValue(field, text, Reading::Typed, value);
}

// False when the control's value is not acceptable.
bool ReadField(HWND dialog, const CommandField& field, int64_t& value)
{
    if (field.kind != FieldKind::List && field.kind != FieldKind::Check)
        return ReadTextField(dialog, field, value);
    value = field.kind == FieldKind::List ? GetListSelection(dialog, field.control)
                                          : static_cast<int64_t>(GetCheck(dialog, field.control));
    return AcceptsValue(field, value, Reading::Typed); // false for an undecided box
}

} // namespace

void PrepareFields(HWND dialog, std::span<const CommandField> fields)
{
    for (const CommandField& field : fields) PrepareField(dialog, field);
}

bool ReadFields(HWND dialog, std::span<const CommandField> fields, int64_t* values)
{
    for (const CommandField& field : fields)
        if (!ReadField(dialog, field, *values++)) {
            InfoBox(field.caption, field.refusal);
            return false;
        }
    return true;
}

void ShowField(HWND dialog, const CommandField& field, int64_t value)
{
    if (field.kind == FieldKind::Check) {
        SetCheck(dialog, field.control, value ? BST_CHECKED : BST_UNCHECKED);
    } else if (field.kind == FieldKind::List) {
        SelectListEntry(dialog, field.control, AcceptsValue(field, value) ? static_cast<int32_t>(value) : -1);
    } else {
        wchar_t text[ValueTextCapacity];
        WriteValue(field, value, text);
        SetDlgItemTextW(dialog, field.control, text);
    }
}

void EnableFields(HWND dialog, std::span<const CommandField> fields, bool enable)
{
    for (const CommandField& field : fields) EnableControl(dialog, field.control, enable);
}
