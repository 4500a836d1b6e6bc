#include "sirf/dialogs/command_dialog.h"

#include "link/link_state.h"
#include "sirf/frame_sender.h"
#include "ui/active_dialog.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_scrolling.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"

std::atomic<uint8_t> InitializeSent{0};

namespace
{

const SirfDialog* Current = nullptr; // modal, so there is one

// ---- Fields -------------------------------------------------------------------------------------------

bool ReadWholeNumber(HWND dialog, const CommandField& field, int32_t& value)
{
    return ReadNumber(dialog, field.control, value) && value >= field.low && value <= field.high &&
           (!field.accepts || field.accepts(value));
}

// A negative number becomes the two's complement that the receiver takes it for.
bool ReadTenths(HWND dialog, const CommandField& field, int32_t& value)
{
    const double number = ReadDecimal(dialog, field.control);
    if (number < field.low || number > field.high) return false;
    value = static_cast<int32_t>(number * 10.0 + 0.5);
    return true;
}

// The payload number that a control holds; false when it is not acceptable.
bool ReadField(HWND dialog, const CommandField& field, int32_t& value)
{
    switch (field.kind) {
    case FieldKind::Number:
    case FieldKind::NumberList: return ReadWholeNumber(dialog, field, value);
    case FieldKind::Hundredths:
        if (!ReadWholeNumber(dialog, field, value)) return false;
        value *= 100;
        return true;
    case FieldKind::FivePercent:
        if (!ReadWholeNumber(dialog, field, value)) return false;
        value /= 5;
        return true;
    case FieldKind::Tenths: return ReadTenths(dialog, field, value);
    case FieldKind::List:
        value = GetListSelection(dialog, field.control);
        return value >= field.low && value <= field.high;
    case FieldKind::Check:
        value = static_cast<int32_t>(GetCheck(dialog, field.control));
        return value != static_cast<int32_t>(BST_INDETERMINATE);
    }
    return false;
}

void PutField(const CommandField& field, uint32_t value, uint8_t* payload)
{
    for (uint32_t i = field.width; i > 0; --i) {
        payload[field.offset + i - 1] = static_cast<uint8_t>(value);
        value >>= 8;
    }
}

// Lists are filled. On touch screens and desktops boxes are undecided until the receiver has answered.
void PrepareField(HWND dialog, const CommandField& field)
{
    switch (field.kind) {
    case FieldKind::List:
    case FieldKind::NumberList: FillList(dialog, field.control, field.entries); return;
    case FieldKind::Check:
        if (!LayoutOffset()) SetCheck(dialog, field.control, BST_INDETERMINATE);
        return;
    default: UseNumericInput(dialog, field.control); return;
    }
}

// ---- Polls and commands -------------------------------------------------------------------------------

void Poll()
{
    switch (Current->poll) {
    case SirfPoll::Settings: SendPollParameter(Current->layout->command); return;
    case SirfPoll::NavigationParameters: SendPollNavigationParameters(); return;
    case SirfPoll::Nothing: return;
    }
}

// Only a poll that the user has asked for is named when the receiver refuses it.
void Get()
{
    if (Current->poll == SirfPoll::Settings) PendingPollId.store(Current->layout->command);
    Poll();
}

void Set(HWND dialog)
{
    if (Current->set) {
        Current->set(dialog);
        return;
    }
    uint8_t payload[MaxCommandLength] = {Current->layout->command};
    if (PackFields(dialog, Current->layout->fields, payload)) SirfSend(payload, Current->layout->length);
}

// ---- Dialog -------------------------------------------------------------------------------------------

// Published before the poll: a fast receiver's answer finds the dialog.
void Open(HWND dialog)
{
    InitDialogCommon(dialog);
    for (const CommandField& field : Current->layout->fields) PrepareField(dialog, field);
    if (Current->open) Current->open(dialog);
    PublishDialog(Current->layout->dialog, dialog);
    if (ReceiverSpeaksSirf() || Current->pollsUnrecognised) Poll();
}

void Paint(HWND dialog)
{
    PAINTSTRUCT paint;
    if (HDC dc = BeginPaint(dialog, &paint)) Current->draw(dc, -DialogScrolled());
    EndPaint(dialog, &paint);
}

INT_PTR CALLBACK CommandProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        Open(dialog);
        return TRUE;
    }
    if (message == WM_PAINT && Current->draw) {
        Paint(dialog);
        return TRUE;
    }
    uint16_t button;
    if (IsClick(message, wParam, button)) {
        if (button == Current->getButton)
            Get();
        else if (button == Current->setButton)
            Set(dialog);
        else if (Current->press)
            Current->press(dialog, button);
    }
    return HandleCommonMessages(dialog, message, wParam, lParam);
}

} // namespace

void ShowSirfDialog(const SirfDialog& dialog)
{
    Current = &dialog;
    ShowDialog(dialog.number, CommandProcedure);
}

bool PackFields(HWND dialog, std::span<const CommandField> fields, uint8_t* payload)
{
    for (const CommandField& field : fields) {
        int32_t value;
        if (!ReadField(dialog, field, value)) {
            InfoBox(field.caption, field.refusal);
            return false;
        }
        PutField(field, static_cast<uint32_t>(value), payload);
    }
    return true;
}

bool IsClick(UINT message, WPARAM wParam, uint16_t& button)
{
    button = LOWORD(wParam);
    return message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED;
}

bool ReceiverSpeaksSirf()
{
    return ProtocolMode() & ProtocolSirf;
}
