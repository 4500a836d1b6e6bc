// SPDX-License-Identifier: MIT
// Modal dialogs, made from the program's templates, and access to their controls.
#include "platform/memory/memory.h"

#include <algorithm>

namespace memory
{

namespace
{

constexpr WPARAM KeyEnter = 13, KeyEscape = 27;
constexpr DWORD ButtonType = 0xF, DefaultButton = 1;

void MakeControls(HWND dialog, const Template& source)
{
    const SIZE cell = FontCell();
    for (const TemplateControl& row : source.controls) {
        const WindowClass windowClass = {nullptr, nullptr, row.className};
        const HWND handle = MakeWindow(KindOfClass(row.className), windowClass, row.text,
                                       row.style | WS_CHILD, dialog, row.id);
        Window* control = FindWin(handle);
        control->x = row.x * cell.cx / 4;
        control->y = row.y * cell.cy / 8;
        control->width = row.width * cell.cx / 4;
        control->height = row.height * cell.cy / 8;
        Invalidate(*control, nullptr, true);
    }
}

// The first control that takes the focus, null if none does.
HWND FirstStop(HWND dialog)
{
    for (const HWND handle : Children(dialog)) {
        const Window* control = FindWin(handle);
        const DWORD wanted = WS_TABSTOP | WS_VISIBLE;
        if ((control->style & (wanted | WS_DISABLED)) == wanted) return handle;
    }
    return nullptr;
}

bool HasEnded(HWND dialog)
{
    const Window* found = FindWin(dialog);
    return !found || found->ended;
}

int DefaultCommand(HWND dialog)
{
    for (const HWND handle : Children(dialog)) {
        const Window* control = FindWin(handle);
        if (control->kind == Kind::Button && (control->style & ButtonType) == DefaultButton)
            return control->id;
    }
    return IDOK;
}

} // namespace

// Calls the dialog's own procedure first; messages that it does not handle get the usual treatment.
LRESULT DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Window* dialog = FindWin(window);
    if (const DLGPROC procedure = dialog->dialogProcedure) {
        const InProgram program;
        if (const INT_PTR result = procedure(window, message, wParam, lParam)) return result;
    }
    dialog = FindWin(window);
    if (!dialog) return 0;
    switch (message) {
    case WM_CLOSE: {
        const Window* cancel = FindChild(window, IDCANCEL);
        if (!cancel || !(cancel->style & WS_DISABLED))
            Send(window, WM_COMMAND, IDCANCEL, reinterpret_cast<LPARAM>(cancel ? cancel->handle : nullptr));
        return 0;
    }
    case WM_PAINT: Validate(*dialog); return 0;
    case WM_SETICON: dialog->windowClass.icon = reinterpret_cast<HICON>(lParam); return 0;
    default: return TextProcedure(*dialog, message, wParam, lParam);
    }
}

// Enter presses the default button, Escape cancels, whichever control of the dialog gets the key.
bool DialogKey(const MSG& message)
{
    if (message.message != WM_KEYDOWN || (message.wParam != KeyEnter && message.wParam != KeyEscape))
        return false;
    const Window* window = FindWin(message.hwnd);
    while (window && window->parent) window = FindWin(window->parent);
    if (!window || window->kind != Kind::Dialog) return false;
    const int command = message.wParam == KeyEscape ? IDCANCEL : DefaultCommand(window->handle);
    const Window* button = FindChild(window->handle, command);
    if (button && (button->style & WS_DISABLED)) return true;
    Send(window->handle, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(command), BN_CLICKED),
         reinterpret_cast<LPARAM>(button ? button->handle : nullptr));
    return true;
}

HWND TopDialog()
{
    HWND top = nullptr;
    for (const HWND handle : AllWindows()) {
        const Window* window = FindWin(handle);
        if (window->kind == Kind::Dialog && !window->ended && (window->style & WS_VISIBLE)) top = handle;
    }
    return top;
}

} // namespace memory

using namespace memory;

INT_PTR DialogBoxParamW(HINSTANCE, const wchar_t* name, HWND owner, DLGPROC procedure, LPARAM parameter)
{
    if (Fails(Call::DialogBoxParamW)) return -1;
    Template source;
    if ((owner && !NeedWindow(owner)) || !FindTemplate(name, source)) return -1;
    while (FindWin(owner) && FindWin(owner)->parent) owner = FindWin(owner)->parent; // only such windows own
    const HWND handle = MakeWindow(Kind::Dialog, {nullptr, nullptr, L"#32770"}, source.caption,
                                   (source.style & ~(WS_VISIBLE | WS_CHILD)), owner, 0);
    const SIZE cell = FontCell();
    Window* dialog = FindWin(handle);
    dialog->width = source.width * cell.cx / 4;
    dialog->height = source.height * cell.cy / 8 + (dialog->framed ? CaptionHeight : 0);
    MakeControls(handle, source);
    dialog->dialogProcedure = procedure;
    const bool ownerWasEnabled = owner && !Enable(owner, false);

    const HWND first = FirstStop(handle);
    const bool takesFocus =
        CallProcedure(handle, WM_INITDIALOG, reinterpret_cast<WPARAM>(first), parameter) != 0;
    if (!HasEnded(handle)) {
        Window* made = FindWin(handle);
        if (takesFocus)
            made->savedFocus = first;
        else
            made->savedFocus = Me().focus; // the procedure has set it
        Show(handle, true);
    }
    while (!HasEnded(handle)) {
        MSG message;
        const Next next = NextMessage(
            message, nullptr, 0, 0, [&] { return HasEnded(handle); }, Idle::Wait);
        if (next == Next::Quit) {
            Me().quit = true; // for the outer loop
            Me().quitCode = static_cast<int>(message.wParam);
            break;
        }
        if (next == Next::Stopped || DialogKey(message)) continue;
        Translate(message);
        Dispatch(message);
    }
    if (ownerWasEnabled) Enable(owner, true);
    dialog = FindWin(handle);
    if (!dialog) return 0;
    const INT_PTR result = dialog->result;
    Destroy(handle);
    return result;
}

BOOL EndDialog(HWND dialog, INT_PTR result)
{
    if (Fails(Call::EndDialog)) return FALSE;
    Window* found = NeedWindow(dialog);
    if (!found) return FALSE;
    if (found->kind != Kind::Dialog) return Fail(ERROR_INVALID_WINDOW_HANDLE);
    found->ended = true;
    found->result = result;
    Wake(*found->thread, WakeInput);
    return TRUE;
}

HWND GetDlgItem(HWND dialog, int control)
{
    if (Fails(Call::GetDlgItem)) return nullptr;
    const Window* found = FindChild(dialog, control);
    return found ? found->handle : nullptr;
}

int GetDlgCtrlID(HWND control)
{
    if (Fails(Call::GetDlgCtrlID)) return 0;
    const Window* found = NeedWindow(control);
    return found ? found->id : 0;
}

BOOL SetDlgItemTextW(HWND dialog, int control, const wchar_t* text)
{
    if (Fails(Call::SetDlgItemTextW)) return FALSE;
    const Window* found = FindChild(dialog, control);
    if (!found) return FALSE;
    Send(found->handle, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    return TRUE;
}

UINT GetDlgItemTextW(HWND dialog, int control, wchar_t* text, int capacity)
{
    if (capacity > 0) text[0] = 0;
    if (Fails(Call::GetDlgItemTextW)) return 0;
    const Window* found = FindChild(dialog, control);
    if (!found || capacity <= 0) return 0;
    return static_cast<UINT>(
        Send(found->handle, WM_GETTEXT, static_cast<WPARAM>(capacity), reinterpret_cast<LPARAM>(text)));
}

BOOL SetDlgItemInt(HWND dialog, int control, UINT value, BOOL isSigned)
{
    if (Fails(Call::SetDlgItemInt)) return FALSE;
    const Window* found = FindChild(dialog, control);
    if (!found) return FALSE;
    const std::wstring text =
        isSigned ? std::to_wstring(static_cast<int32_t>(value)) : std::to_wstring(value);
    Send(found->handle, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    return TRUE;
}

LRESULT SendDlgItemMessageW(HWND dialog, int control, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (Fails(Call::SendDlgItemMessageW)) return 0;
    const Window* found = FindChild(dialog, control);
    return found ? Send(found->handle, message, wParam, lParam) : 0;
}
