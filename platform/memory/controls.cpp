// SPDX-License-Identifier: MIT
// The system's controls: their contents, the messages that they answer, the notifications that they send.
#include "platform/memory/memory.h"

#include <algorithm>

namespace memory
{

namespace
{

constexpr DWORD ButtonType = 0xF, CheckBox = 2, AutoCheckBox = 3, RadioButton = 4, ThreeState = 5,
                AutoThreeState = 6, GroupBox = 7, AutoRadioButton = 9;
constexpr DWORD EsMultiline = 4;
constexpr DWORD CbsType = 3, CbsDropDownList = 3, CbsSort = 0x100, LbsNotify = 1, LbsSort = 2;
constexpr UINT EnKillFocus = 0x200, EnChange = 0x300, EnUpdate = 0x400;
constexpr UINT CbnKillFocus = 4;
constexpr UINT WmSetFocus = 7, WmKillFocus = 8;

// The messages of both kinds of list, under one name each.
enum class ListMessage : uint8_t {
    Add,
    Insert,
    Delete,
    Reset,
    Count,
    Select,
    Selection,
    Text,
    TextLength,
    None
};

ListMessage ListMessageOf(Kind kind, UINT message)
{
    struct Row {
        UINT combo, list;
        ListMessage meaning;
    };
    static constexpr Row rows[] = {
        {CB_ADDSTRING, LB_ADDSTRING, ListMessage::Add},
        {CB_INSERTSTRING, LB_INSERTSTRING, ListMessage::Insert},
        {CB_DELETESTRING, LB_DELETESTRING, ListMessage::Delete},
        {CB_RESETCONTENT, LB_RESETCONTENT, ListMessage::Reset},
        {CB_GETCOUNT, LB_GETCOUNT, ListMessage::Count},
        {CB_SETCURSEL, LB_SETCURSEL, ListMessage::Select},
        {CB_GETCURSEL, LB_GETCURSEL, ListMessage::Selection},
        {CB_GETLBTEXT, LB_GETTEXT, ListMessage::Text},
        {CB_GETLBTEXTLEN, LB_GETTEXTLEN, ListMessage::TextLength},
    };
    for (const Row& row : rows)
        if ((kind == Kind::Combo ? row.combo : row.list) == message) return row.meaning;
    return ListMessage::None;
}

LRESULT InsertItem(Window& list, size_t index, const wchar_t* text)
{
    list.items.insert(list.items.begin() + static_cast<ptrdiff_t>(index), text);
    if (list.selection >= static_cast<int>(index)) ++list.selection;
    return static_cast<LRESULT>(index);
}

size_t AddIndex(const Window& list, const wchar_t* text)
{
    const bool sorted = (list.style & (list.kind == Kind::Combo ? CbsSort : LbsSort)) != 0;
    if (!sorted) return list.items.size();
    const auto place =
        std::upper_bound(list.items.begin(), list.items.end(), std::wstring(text),
                         [](const std::wstring& a, const std::wstring& b) { return Lower(a) < Lower(b); });
    return static_cast<size_t>(place - list.items.begin());
}

LRESULT ListProcedure(Window& list, ListMessage message, WPARAM wParam, LPARAM lParam)
{
    const wchar_t* text = reinterpret_cast<const wchar_t*>(lParam);
    const auto count = static_cast<intptr_t>(list.items.size());
    const auto index = static_cast<intptr_t>(wParam);
    const bool exists = index >= 0 && index < count;
    const auto select = [&](int selection) {
        list.selection = selection;
        if (list.kind == Kind::Combo)
            list.text = selection < 0 ? L"" : list.items[static_cast<size_t>(selection)];
    };
    switch (message) {
    case ListMessage::Add: return InsertItem(list, AddIndex(list, text), text);
    case ListMessage::Insert:
        if (index == -1) return InsertItem(list, list.items.size(), text);
        return index < 0 || index > count ? LB_ERR : InsertItem(list, static_cast<size_t>(index), text);
    case ListMessage::Delete:
        if (!exists) return LB_ERR;
        list.items.erase(list.items.begin() + static_cast<ptrdiff_t>(index));
        if (list.selection == index)
            select(-1);
        else if (list.selection > index)
            --list.selection;
        return count - 1;
    case ListMessage::Reset:
        list.items.clear();
        select(-1);
        return 0;
    case ListMessage::Count: return count;
    case ListMessage::Select: select(exists ? static_cast<int>(index) : -1); return list.selection;
    case ListMessage::Selection: return list.selection;
    case ListMessage::Text: {
        if (!exists) return LB_ERR;
        const std::wstring& item = list.items[static_cast<size_t>(index)];
        std::copy_n(item.c_str(), item.size() + 1, reinterpret_cast<wchar_t*>(lParam));
        return static_cast<LRESULT>(item.size());
    }
    case ListMessage::TextLength:
        return exists ? static_cast<LRESULT>(list.items[static_cast<size_t>(index)].size()) : LB_ERR;
    case ListMessage::None: break;
    }
    return 0;
}

bool IsRadio(const Window& window)
{
    return window.kind == Kind::Button && (window.style & ButtonType) == AutoRadioButton;
}

// The other option buttons of a group, which reaches from one control with WS_GROUP to the next.
void UncheckGroup(const Window& button)
{
    std::vector<HWND> group;
    bool found = false;
    for (const HWND handle : Children(button.parent)) {
        if (FindWin(handle)->style & WS_GROUP) {
            if (found) break;
            group.clear();
        }
        group.push_back(handle);
        found |= handle == button.handle;
    }
    for (const HWND handle : group) {
        Window* other = FindWin(handle);
        if (handle != button.handle && IsRadio(*other)) other->check = BST_UNCHECKED;
    }
}

UINT MostCheck(const Window& button)
{
    switch (button.style & ButtonType) {
    case CheckBox:
    case AutoCheckBox:
    case RadioButton:
    case AutoRadioButton: return BST_CHECKED;
    case ThreeState:
    case AutoThreeState: return BST_INDETERMINATE;
    default: return BST_UNCHECKED; // cannot be checked
    }
}

LRESULT ButtonProcedure(Window& button, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_GETDLGCODE: return DLGC_BUTTON;
    case WmSetFocus:
        if (button.style & BS_NOTIFY) Notify(button.handle, BN_SETFOCUS);
        return 0;
    case BM_GETCHECK: return static_cast<LRESULT>(button.check);
    case BM_SETCHECK: button.check = static_cast<UINT>(std::min<WPARAM>(wParam, MostCheck(button))); return 0;
    case BM_CLICK:
        if (IsUsable(button)) ClickButton(button.handle);
        return 0;
    default: return TextProcedure(button, message, wParam, lParam);
    }
}

LRESULT EditProcedure(Window& edit, UINT message, WPARAM wParam, LPARAM lParam)
{
    const HWND handle = edit.handle;
    switch (message) {
    case EM_SETLIMITTEXT: edit.limit = wParam; return 0;
    case WmSetFocus: Notify(handle, EN_SETFOCUS); return 0;
    case WmKillFocus: Notify(handle, EnKillFocus); return 0;
    case WM_SETTEXT: {
        const bool tells = !(edit.style & EsMultiline); // a multi-line edit sends no notification here
        const LRESULT result = TextProcedure(edit, message, wParam, lParam);
        if (tells) Notify(handle, EnUpdate);
        if (tells) Notify(handle, EnChange);
        return result;
    }
    default: return TextProcedure(edit, message, wParam, lParam);
    }
}

LRESULT ComboProcedure(Window& combo, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case CB_LIMITTEXT: combo.limit = wParam; return 1;
    case CB_GETEDITSEL: {
        const auto end = static_cast<DWORD>(combo.text.size()); // the caret is at the end
        if (wParam != 0) *reinterpret_cast<DWORD*>(wParam) = end;
        if (lParam != 0) *reinterpret_cast<DWORD*>(lParam) = end;
        return IsEditableCombo(combo) ? static_cast<LRESULT>(MAKEWPARAM(LOWORD(end), LOWORD(end))) : CB_ERR;
    }
    case WmSetFocus: Notify(combo.handle, CBN_SETFOCUS); return 0;
    case WmKillFocus: Notify(combo.handle, CbnKillFocus); return 0;
    case CB_GETDROPPEDCONTROLRECT: // the rectangle of the template, which includes the list
        return GetWindowRect(combo.handle, reinterpret_cast<RECT*>(lParam));
    case WM_SETTEXT:
        // The list keeps its selection; without an edit there is nothing to set.
        return IsEditableCombo(combo) ? TextProcedure(combo, message, wParam, lParam) : CB_ERR;
    default: return TextProcedure(combo, message, wParam, lParam);
    }
}

} // namespace

bool IsEditableCombo(const Window& control)
{
    return control.kind == Kind::Combo && (control.style & CbsType) != CbsDropDownList;
}

LRESULT Notify(HWND control, UINT code)
{
    const Window* found = FindWin(control);
    if (!found || !found->parent || found->destroying) return 0;
    if (found->kind == Kind::List && !(found->style & LbsNotify)) return 0;
    return Send(found->parent, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(found->id), static_cast<WORD>(code)),
                reinterpret_cast<LPARAM>(control));
}

// The action of a pressed button, and its notification.
void ClickButton(HWND button)
{
    Window* found = FindWin(button);
    if (!found) return;
    switch (found->style & ButtonType) {
    case AutoCheckBox: found->check = found->check == BST_UNCHECKED ? BST_CHECKED : BST_UNCHECKED; break;
    case AutoThreeState: found->check = (found->check + 1) % 3; break;
    case AutoRadioButton:
        UncheckGroup(*found);
        found->check = BST_CHECKED;
        break;
    case GroupBox: return;
    default: break;
    }
    Invalidate(*found, nullptr, false);
    Notify(button, BN_CLICKED);
}

LRESULT TextProcedure(Window& window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_SETTEXT:
        window.text = lParam ? reinterpret_cast<const wchar_t*>(lParam) : L"";
        if (window.parent) Invalidate(window, nullptr, true);
        return TRUE;
    case WM_GETTEXT: {
        if (wParam == 0) return 0;
        const size_t length = std::min<size_t>(window.text.size(), wParam - 1);
        wchar_t* const place = reinterpret_cast<wchar_t*>(lParam);
        window.text.copy(place, length);
        place[length] = 0;
        return static_cast<LRESULT>(length);
    }
    case WM_GETTEXTLENGTH: return static_cast<LRESULT>(window.text.size());
    default: window.ignoredMessages[message] = lParam; return 0;
    }
}

LRESULT ControlProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Window& control = *FindWin(window);
    if (message == WM_PAINT) {
        PaintControl(window);
        return 0;
    }
    if (control.kind == Kind::Combo || control.kind == Kind::List) {
        const ListMessage meaning = ListMessageOf(control.kind, message);
        if (meaning != ListMessage::None) {
            Invalidate(control, nullptr, false);
            return ListProcedure(control, meaning, wParam, lParam);
        }
    }
    switch (control.kind) {
    case Kind::List:
        if (message == WmSetFocus) Notify(window, LBN_SETFOCUS);
        return TextProcedure(control, message, wParam, lParam);
    case Kind::Button: return ButtonProcedure(control, message, wParam, lParam);
    case Kind::Edit: return EditProcedure(control, message, wParam, lParam);
    case Kind::Combo: return ComboProcedure(control, message, wParam, lParam);
    default: return TextProcedure(control, message, wParam, lParam);
    }
}

} // namespace memory
