// SPDX-License-Identifier: MIT
#include "tests/unit/sirf/sirf_test.h"

#include <algorithm>

#include "sirf/message_decoder.h"
#include "ui/dialog_support.h"

namespace
{

constexpr const wchar_t* PlainClass = L"StandIn";

HWND MakeWindow(const wchar_t* className, const wchar_t* text, DWORD style, HWND parent, int id)
{
    return CreateWindowExW(0, className, text, style, 0, 0, 10, 10, parent,
                           reinterpret_cast<HMENU>(static_cast<intptr_t>(id)), nullptr, nullptr);
}

HWND MakeTopWindow()
{
    WNDCLASSW plain = {};
    plain.lpszClassName = PlainClass;
    plain.lpfnWndProc = DefWindowProcW;
    RegisterClassW(&plain);
    return MakeWindow(PlainClass, L"", 0, nullptr, 0);
}

} // namespace

std::vector<uint8_t> Hex(std::string_view text)
{
    std::string digits;
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits), [](char c) { return c != ' '; });
    std::vector<uint8_t> bytes;
    for (size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
    return bytes;
}

std::string HexText(std::string_view text)
{
    const std::vector<uint8_t> bytes = Hex(text);
    return {bytes.begin(), bytes.end()};
}

Payload& Payload::At(size_t offset, std::string_view hex)
{
    const std::vector<uint8_t> put = Hex(hex);
    std::copy(put.begin(), put.end(), bytes.begin() + static_cast<ptrdiff_t>(offset));
    return *this;
}

std::string Frame(const Payload& payload)
{
    unsigned sum = 0;
    for (const uint8_t b : payload.bytes) sum += b;
    std::string frame = "\xA0\xA2";
    const auto put = [&](size_t value) {
        frame += static_cast<char>(value >> 8);
        frame += static_cast<char>(value & 0xFF);
    };
    put(payload.bytes.size());
    frame.append(payload.bytes.begin(), payload.bytes.end());
    put(sum & 0x7FFF);
    return frame + "\xB0\xB3";
}

void SirfTest::Decode(const Payload& payload)
{
    std::vector<uint8_t> buffer(SirfBufferSize, BufferRest);
    std::copy(payload.bytes.begin(), payload.bytes.end(), buffer.begin());
    SirfMessageDecoder(buffer.data(), static_cast<uint32_t>(payload.bytes.size()));
}

void SirfTest::OpenDialog(DialogKind kind, const Controls& controls)
{
    constexpr DWORD ThreeStateBox = 6;
    Dialog = MakeTopWindow();
    for (const int control : controls.texts) MakeWindow(L"EDIT", L"?", WS_CHILD, Dialog, control);
    for (const int control : controls.boxes) {
        MakeWindow(L"BUTTON", L"", WS_CHILD | ThreeStateBox, Dialog, control);
        SendDlgItemMessageW(Dialog, control, BM_SETCHECK, BST_INDETERMINATE, 0);
    }
    for (const List& list : controls.lists) {
        MakeWindow(L"COMBOBOX", L"", WS_CHILD, Dialog, list.control);
        for (int i = 0; i < list.entries; ++i)
            SendDlgItemMessageW(Dialog, list.control, ListMessages.addString, 0,
                                reinterpret_cast<LPARAM>(L"entry"));
        SendDlgItemMessageW(Dialog, list.control, ListMessages.setSelection,
                            static_cast<WPARAM>(list.entries - 1), 0);
    }
    PublishDialog(kind, Dialog);
}

void SirfTest::OpenAnotherKind(DialogKind kind)
{
    WithdrawDialog();
    PublishDialog(kind, Dialog);
}
