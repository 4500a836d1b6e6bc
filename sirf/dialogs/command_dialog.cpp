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

constexpr uint32_t MaxDecimalCharacters = 20; // what is typed beyond them is not read

// ---- Fields -------------------------------------------------------------------------------------------

// The value that a control holds; false when it is not acceptable.
bool ReadField(HWND dialog, const CommandField& field, int64_t& value)
{
    switch (field.kind) {
    case FieldKind::List: value = GetListSelection(dialog, field.control); break;
    case FieldKind::Check: value = GetCheck(dialog, field.control); break; // undecided is none of its values
    default: {
        wchar_t text[ControlTextCapacity];
        ReadControlText(dialog, field.control, text);
        if (field.kind == FieldKind::Tenths) text[MaxDecimalCharacters] = 0;
        return ParseValue(field, text, Reading::Typed, value);
    }
    }
    return AcceptsValue(field, value, Reading::Typed);
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
    case SettingsPoll::Settings: SendPollParameter(Current->layout->command); return;
    case SettingsPoll::NavigationParameters: SendPollNavigationParameters(); return;
    case SettingsPoll::Nothing: return;
    }
}

// Only a poll that the user has asked for is named when the receiver refuses it.
void Get()
{
    if (Current->poll == SettingsPoll::Settings) PendingPollId.store(Current->layout->command);
    Poll();
}

void Set(HWND dialog)
{
    if (Current->set) {
        Current->set(dialog);
        return;
    }
    SettingValues values;
    if (ReadFields(dialog, Current->layout->fields, values.data())) SendCommand(*Current->layout, values);
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

bool ReadFields(HWND dialog, std::span<const CommandField> fields, int64_t* values)
{
    for (const CommandField& field : fields)
        if (!ReadField(dialog, field, *values++)) {
            InfoBox(field.caption, field.refusal);
            return false;
        }
    return true;
}

void SendCommand(const CommandLayout& layout, const SettingValues& values)
{
    uint8_t payload[MaxCommandLength];
    PackCommand(layout, values, payload);
    SirfSend(payload, layout.length);
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
