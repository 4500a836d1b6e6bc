// SPDX-License-Identifier: MIT
#include "driver.h"

#include <sddl.h>

#include <algorithm>
#include <fstream>
#include <memory>

namespace
{

constexpr UINT AnswerMs = 5000; // after this time, a window that does not answer is reported as hanging

// ---- Words --------------------------------------------------------------------------------------------

long long Number(const std::wstring& word)
{
    size_t used = 0;
    const long long value = std::stoll(word, &used, 0);
    if (used != word.size()) throw Refused("not a number");
    return value;
}

HWND Window(const std::wstring& word)
{
    const HWND window = reinterpret_cast<HWND>(Number(word));
    if (!IsWindow(window)) throw Refused("no such window");
    return window;
}

Json Done()
{
    return Json::object();
}

long long Id(HWND window)
{
    return reinterpret_cast<long long>(window);
}

// ---- Windows and controls -----------------------------------------------------------------------------

LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    DWORD_PTR result = 0;
    if (!SendMessageTimeoutW(window, message, wParam, lParam, SMTO_BLOCK, AnswerMs, &result))
        throw Refused("the window does not answer");
    return LRESULT(result);
}

std::wstring ClassOf(HWND window)
{
    wchar_t name[256] = {};
    return {name, size_t(GetClassNameW(window, name, 256))};
}

std::wstring TextOf(HWND window)
{
    std::wstring text(size_t(Send(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    const LRESULT length = Send(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(size_t(length));
    return text;
}

Json Rectangle(const RECT& r)
{
    return Json::array({r.left, r.top, r.right, r.bottom});
}

RECT ClientOnScreen(HWND window)
{
    RECT client = {};
    GetClientRect(window, &client);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&client), 2);
    return client;
}

// Properties of every window that can be read without the program that owns it, because it may be busy.
Json Members(HWND window)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    RECT outer = {};
    GetWindowRect(window, &outer);
    return {
        {"window", Id(window)},
        {"class", Utf8(ClassOf(window))},
        {"process", process},
        {"owner", Id(GetWindow(window, GW_OWNER))},
        {"visible", IsWindowVisible(window) != 0},
        {"enabled", IsWindowEnabled(window) != 0},
        {"iconic", IsIconic(window) != 0},
        {"foreground", GetForegroundWindow() == window},
        {"style", GetWindowLongW(window, GWL_STYLE)},
        {"exstyle", GetWindowLongW(window, GWL_EXSTYLE)},
        {"outer", Rectangle(outer)},
        {"client", Rectangle(ClientOnScreen(window))},
    };
}

BOOL CALLBACK Collect(HWND window, LPARAM list)
{
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

// Visible top-level windows, front to back.
Json ListWindows(const Words&)
{
    std::vector<HWND> windows;
    EnumWindows(Collect, reinterpret_cast<LPARAM>(&windows));
    Json elements = Json::array();
    for (const HWND window : windows) {
        if (!IsWindowVisible(window)) continue;
        wchar_t title[256] = {};
        GetWindowTextW(window, title, 256);
        Json members = Members(window);
        members["text"] = Utf8(title);
        elements.push_back(members);
    }
    return {{"windows", elements}};
}

Json ListControls(const Words& words)
{
    std::vector<HWND> controls;
    EnumChildWindows(Window(words[1]), Collect, reinterpret_cast<LPARAM>(&controls));
    Json elements = Json::array();
    for (const HWND control : controls) {
        Json members = Members(control);
        members["id"] = GetDlgCtrlID(control);
        members["text"] = Utf8(TextOf(control));
        if (ClassOf(control) == L"Button") members["checked"] = Send(control, BM_GETCHECK, 0, 0);
        elements.push_back(members);
    }
    return {{"controls", elements}};
}

Json SetText(const Words& words)
{
    Send(Window(words[1]), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(words[2].c_str()));
    return Done();
}

// Presses a button like a user: not while the button or its window is disabled.
Json Click(const Words& words)
{
    const HWND button = Window(words[1]);
    if (!IsWindowVisible(button)) throw Refused("the button is not visible");
    if (!IsWindowEnabled(button)) throw Refused("the button is disabled");
    if (!IsWindowEnabled(GetAncestor(button, GA_ROOT))) throw Refused("the window of the button is disabled");
    PostMessageW(button, BM_CLICK, 0, 0);
    return Done();
}

// ---- Lists --------------------------------------------------------------------------------------------

struct ListMessages {
    const wchar_t* className;
    UINT count, textLength, text, selection, select;
    WORD changed;
};
constexpr ListMessages ListKinds[] = {
    {L"ComboBox", CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT, CB_GETCURSEL, CB_SETCURSEL, CBN_SELCHANGE},
    {L"ListBox", LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT, LB_GETCURSEL, LB_SETCURSEL, LBN_SELCHANGE},
};

const ListMessages& KindOf(HWND list)
{
    for (const ListMessages& kind : ListKinds)
        if (ClassOf(list) == kind.className) return kind;
    throw Refused("not a list");
}

Json ListItems(const Words& words)
{
    const HWND list = Window(words[1]);
    const ListMessages& kind = KindOf(list);
    Json items = Json::array();
    const LRESULT count = Send(list, kind.count, 0, 0);
    for (WPARAM i = 0; LRESULT(i) < count; i++) {
        std::wstring text(size_t(Send(list, kind.textLength, i, 0)) + 1, L'\0');
        text.resize(size_t(Send(list, kind.text, i, reinterpret_cast<LPARAM>(text.data()))));
        items.push_back(Utf8(text));
    }
    return {{"items", items}, {"selection", int(Send(list, kind.selection, 0, 0))}};
}

// Selects an item by its index and notifies the dialog, as if the user had chosen it.
Json Select(const Words& words)
{
    const HWND list = Window(words[1]);
    const ListMessages& kind = KindOf(list);
    if (Send(list, kind.select, WPARAM(Number(words[2])), 0) < 0) throw Refused("no such item");
    Send(GetParent(list), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), kind.changed), Id(list));
    return Done();
}

// ---- Sizes of texts -----------------------------------------------------------------------------------

// The font of the program's dialogs, in which the controls draw their texts.
HFONT DialogFont(HDC dc)
{
    constexpr int Points = 8, PointsPerInch = 72;
    return CreateFontW(-MulDiv(Points, GetDeviceCaps(dc, LOGPIXELSY), PointsPerInch), 0, 0, 0, FW_DONTCARE,
                       FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                       PROOF_QUALITY, FF_DONTCARE, L"MS Shell Dlg");
}

// Width and height in pixels of a text in a dialog. A width of 0 leaves it in one line; otherwise it is
// wrapped between words, and the answer is wider if a word has no room.
Json TextSize(const Words& words)
{
    const int width = int(Number(words[1]));
    RECT r = {0, 0, width, 0};
    const HDC dc = GetDC(nullptr);
    const HFONT font = DialogFont(dc);
    const HGDIOBJ before = SelectObject(dc, font);
    const int drawn = DrawTextW(dc, words[2].c_str(), int(words[2].size()), &r,
                                DT_CALCRECT | (width ? DT_WORDBREAK : DT_SINGLELINE));
    SelectObject(dc, before);
    DeleteObject(font);
    ReleaseDC(nullptr, dc);
    if (!drawn) throw Refused("the text cannot be measured");
    return {{"width", r.right - r.left}, {"height", r.bottom - r.top}};
}

// ---- Messages and keys --------------------------------------------------------------------------------

Json Post(const Words& words)
{
    if (!PostMessageW(Window(words[1]), UINT(Number(words[2])), WPARAM(Number(words[3])),
                      LPARAM(Number(words[4]))))
        throw Refused("PostMessage failed");
    return Done();
}

Json SendAndWait(const Words& words)
{
    return {{"result", Send(Window(words[1]), UINT(Number(words[2])), WPARAM(Number(words[3])),
                            LPARAM(Number(words[4])))}};
}

// The control that has the focus in the program of a window, 0 none.
Json Focus(const Words& words)
{
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    if (!GetGUIThreadInfo(GetWindowThreadProcessId(Window(words[1]), nullptr), &info))
        throw Refused("the focus cannot be asked for");
    return {{"focus", Id(info.hwndFocus)}};
}

// Presses and releases a key of the keyboard; the control with the input focus gets it.
Json Key(const Words& words)
{
    INPUT input[2] = {};
    for (INPUT& i : input) {
        i.type = INPUT_KEYBOARD;
        i.ki.wVk = WORD(Number(words[1]));
        i.ki.wScan = WORD(MapVirtualKeyW(i.ki.wVk, MAPVK_VK_TO_VSC));
    }
    input[1].ki.dwFlags = KEYEVENTF_KEYUP;
    if (SendInput(2, input, sizeof input[0]) != 2) throw Refused("SendInput failed");
    return Done();
}

// ---- Menus: another program's menu cannot be read, its resource can -----------------------------------

void CollectMenu(HMENU menu, const std::wstring& path, Json& items)
{
    for (int i = 0; i < GetMenuItemCount(menu); i++) {
        wchar_t text[128] = {};
        GetMenuStringW(menu, UINT(i), text, 128, MF_BYPOSITION);
        if (const HMENU popup = GetSubMenu(menu, i)) {
            CollectMenu(popup, path + text + L"/", items);
        } else {
            items.push_back(
                {{"id", GetMenuItemID(menu, i)}, {"text", Utf8(text)}, {"path", Utf8(path + text)}});
        }
    }
}

Json ListMenu(const Words& words)
{
    const std::unique_ptr<std::remove_pointer_t<HMODULE>, decltype(&FreeLibrary)> program(
        LoadLibraryExW(words[1].c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE), FreeLibrary);
    if (!program) throw Refused("the program's file cannot be loaded");
    const HMENU menu = LoadMenuW(program.get(), MAKEINTRESOURCEW(Number(words[2])));
    if (!menu) throw Refused("no such menu");
    Json items = Json::array();
    CollectMenu(menu, L"", items);
    DestroyMenu(menu);
    return {{"items", items}};
}

// ---- Registry (numbers under the machine's root) ------------------------------------------------------

Json GetValue(const Words& words)
{
    DWORD value = 0;
    DWORD size = sizeof value;
    const LSTATUS status = RegGetValueW(HKEY_LOCAL_MACHINE, words[1].c_str(), words[2].c_str(),
                                        RRF_RT_REG_DWORD, nullptr, &value, &size);
    return {{"value", status == ERROR_SUCCESS ? Json(int32_t(value)) : Json()}};
}

Json SetValue(const Words& words)
{
    const DWORD value = DWORD(Number(words[3]));
    const LSTATUS status = RegSetKeyValueW(HKEY_LOCAL_MACHINE, words[1].c_str(), words[2].c_str(), REG_DWORD,
                                           &value, sizeof value);
    if (status != ERROR_SUCCESS) throw Refused("the value cannot be written");
    return Done();
}

Json DeleteKey(const Words& words)
{
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, words[1].c_str());
    return Done();
}

// The rights of users on a key, in the security descriptor language.
Json KeyAccess(const Words& words)
{
    HKEY key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, words[1].c_str(), 0, READ_CONTROL, &key) != ERROR_SUCCESS)
        throw Refused("no such key");
    BYTE descriptor[1024];
    DWORD size = sizeof descriptor;
    const LSTATUS status = RegGetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor, &size);
    RegCloseKey(key);
    LPWSTR text = nullptr;
    if (status != ERROR_SUCCESS ||
        !ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor, SDDL_REVISION_1,
                                                              DACL_SECURITY_INFORMATION, &text, nullptr))
        throw Refused("the key's security cannot be read");
    const Json answer = {{"access", Utf8(text)}};
    LocalFree(text);
    return answer;
}

// ---- The page -----------------------------------------------------------------------------------------

Json Page(const Words& words)
{
    Json lines = Json::array();
    for (const std::wstring& line : ReadPage(Window(words[1]), int(Number(words[2]))))
        lines.push_back(Utf8(line));
    return {{"lines", lines}};
}

// Paints one black pixel into a window, without help of its program.
Json Dot(const Words& words)
{
    const HWND window = Window(words[1]);
    const HDC dc = GetDC(window);
    SetPixel(dc, int(Number(words[2])), int(Number(words[3])), RGB(0, 0, 0));
    ReleaseDC(window, dc);
    return Done();
}

} // namespace

// ---- The table ----------------------------------------------------------------------------------------

const Command& FindCommand(const std::wstring& name)
{
    static constexpr Command commands[] = {
        {L"windows", 0, ListWindows},   // visible top-level windows, front to back
        {L"controls", 1, ListControls}, // WINDOW
        {L"set-text", 2, SetText},      // CONTROL TEXT
        {L"click", 1, Click},           // BUTTON
        {L"items", 1, ListItems},       // LIST
        {L"select", 2, Select},         // LIST INDEX
        {L"text-size", 2, TextSize},    // WIDTH TEXT
        {L"post", 4, Post},             // WINDOW MESSAGE WPARAM LPARAM
        {L"send", 4, SendAndWait},      // WINDOW MESSAGE WPARAM LPARAM
        {L"focus", 1, Focus},           // WINDOW
        {L"key", 1, Key},               // VIRTUAL-KEY
        {L"menu", 2, ListMenu},         // FILE RESOURCE
        {L"get-value", 2, GetValue},    // KEY NAME
        {L"set-value", 3, SetValue},    // KEY NAME VALUE
        {L"delete-key", 1, DeleteKey},  // KEY
        {L"key-access", 1, KeyAccess},  // KEY
        {L"page", 2, Page},             // WINDOW LINES
        {L"dot", 3, Dot},               // WINDOW X Y
    };
    for (const Command& command : commands)
        if (name == command.name) return command;
    throw Refused("no such command");
}
