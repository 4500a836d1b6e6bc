// SPDX-License-Identifier: MIT
#include "tests/device/messages.h"

#include <algorithm>

namespace
{

enum class Parameter : uint8_t {
    Number,
    Index,          // -1 has a meaning
    Text,           // may be null
    TextPlace,      // for a text, its capacity in the other parameter
    WholeTextPlace, // for a text of any length
    RectanglePlace, // for a rectangle
    DrawItem,       // to a DRAWITEMSTRUCT
    NumberPlace     // for one number, may be null
};

struct Row {
    UINT message;
    Parameter wParam, lParam;
};

constexpr Row Rows[] = {
    {WM_SETTEXT, Parameter::Number, Parameter::Text},
    {WM_GETTEXT, Parameter::Number, Parameter::TextPlace},
    {WM_DRAWITEM, Parameter::Number, Parameter::DrawItem},
    {WM_SETTINGCHANGE, Parameter::Number, Parameter::Text},
    {CB_ADDSTRING, Parameter::Number, Parameter::Text},
    {CB_INSERTSTRING, Parameter::Index, Parameter::Text},
    {CB_DELETESTRING, Parameter::Index, Parameter::Number},
    {CB_SETCURSEL, Parameter::Index, Parameter::Number},
    {CB_GETLBTEXT, Parameter::Index, Parameter::WholeTextPlace},
    {CB_GETLBTEXTLEN, Parameter::Index, Parameter::Number},
    {CB_GETDROPPEDCONTROLRECT, Parameter::Number, Parameter::RectanglePlace},
    {CB_GETEDITSEL, Parameter::NumberPlace, Parameter::NumberPlace},
    {LB_ADDSTRING, Parameter::Number, Parameter::Text},
    {LB_INSERTSTRING, Parameter::Index, Parameter::Text},
    {LB_DELETESTRING, Parameter::Index, Parameter::Number},
    {LB_SETCURSEL, Parameter::Index, Parameter::Number},
    {LB_GETTEXT, Parameter::Index, Parameter::WholeTextPlace},
    {LB_GETTEXTLEN, Parameter::Index, Parameter::Number},
};
constexpr Row Plain = {0, Parameter::Number, Parameter::Number};

constexpr uint32_t LongestText = 4096;

const Row& RowOf(UINT message)
{
    const auto* row = std::find_if(std::begin(Rows), std::end(Rows),
                                   [&](const Row& candidate) { return candidate.message == message; });
    return row == std::end(Rows) ? Plain : *row;
}

// Room of the host's for a text that goes to the program afterwards.
LPARAM TextPlace(GuestAddress address, uint32_t capacity, BorrowedTexts& borrowed, AfterCall& after)
{
    if (address == 0) return 0;
    std::wstring& place = borrowed.texts.emplace_back(capacity, L'\0');
    if (capacity != 0) after.push_back([&place, address] { StoreGuestText(address, place.c_str()); });
    return reinterpret_cast<LPARAM>(place.data());
}

LPARAM SharedPlace(GuestAddress address, uint32_t size)
{
    return address == 0 ? 0 : reinterpret_cast<LPARAM>(GuestBytes(address, size, Access::ReadWrite));
}

} // namespace

void MessageToHost(UINT message, uint32_t guestW, uint32_t guestL, WPARAM& wParam, LPARAM& lParam,
                   BorrowedTexts& borrowed, AfterCall& after)
{
    const Row& row = RowOf(message);
    wParam = guestW;
    lParam = static_cast<int32_t>(guestL);
    if (row.wParam == Parameter::Index) wParam = static_cast<WPARAM>(intptr_t{static_cast<int32_t>(guestW)});
    if (row.wParam == Parameter::NumberPlace) wParam = static_cast<WPARAM>(SharedPlace(guestW, 4));
    switch (row.lParam) {
    case Parameter::Text:
        if (guestL != 0) lParam = reinterpret_cast<LPARAM>(borrowed.Keep(LoadGuestText(guestL)));
        break;
    case Parameter::TextPlace: lParam = TextPlace(guestL, guestW, borrowed, after); break;
    case Parameter::WholeTextPlace: lParam = TextPlace(guestL, LongestText, borrowed, after); break;
    case Parameter::NumberPlace: lParam = SharedPlace(guestL, 4); break;
    case Parameter::RectanglePlace: lParam = SharedPlace(guestL, sizeof(RECT)); break;
    case Parameter::DrawItem:
        if (guestL != 0) DeviceFault("the program sends a message that only the system sends");
        break;
    case Parameter::Number:
    case Parameter::Index: break;
    }
}

void MessageToGuest(UINT message, WPARAM wParam, LPARAM lParam, uint32_t& guestW, uint32_t& guestL,
                    AfterCall& after)
{
    const Row& row = RowOf(message);
    guestW = static_cast<uint32_t>(wParam);
    guestL = static_cast<uint32_t>(lParam);
    if (lParam == 0) return;
    switch (row.lParam) {
    case Parameter::Text: {
        const std::wstring text = reinterpret_cast<const wchar_t*>(lParam);
        const GuestAddress copy = AllocateGuest(2 * static_cast<uint32_t>(text.size() + 1));
        StoreGuestText(copy, text);
        after.push_back([copy] { FreeGuest(copy); });
        guestL = copy;
        break;
    }
    case Parameter::TextPlace: {
        const GuestAddress copy = AllocateGuest(2 * guestW + 2);
        StoreGuestText(copy, L"");
        after.push_back([copy, lParam] {
            const std::wstring text = LoadGuestText(copy);
            std::copy_n(text.c_str(), text.size() + 1, reinterpret_cast<wchar_t*>(lParam));
            FreeGuest(copy);
        });
        guestL = copy;
        break;
    }
    case Parameter::DrawItem: {
        const GuestAddress copy = AllocateGuest(DrawItemLayout.guestSize);
        StructureWalk writing(Direction::ToGuest, copy, nullptr);
        Walk(writing, *reinterpret_cast<DRAWITEMSTRUCT*>(lParam));
        after.push_back([copy] { FreeGuest(copy); });
        guestL = copy;
        break;
    }
    case Parameter::WholeTextPlace:
    case Parameter::RectanglePlace:
    case Parameter::NumberPlace:
        DeviceFault("the program's window gets a control's message " + std::to_string(message));
    case Parameter::Number:
    case Parameter::Index: break;
    }
}
