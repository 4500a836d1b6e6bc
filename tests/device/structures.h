// SPDX-License-Identifier: MIT
// The platform's structures whose layout on the device differs from the host's: by the size of a pointer or
// of a wide character. Each is described once, by its members in order; the description serves for reading,
// writing and measuring. Structures without such members have one layout and need no entry.
#pragma once

#include <array>
#include <cstring>
#include <deque>
#include <string>
#include <type_traits>

#include "headless.h"
#include "platform/platform.h"
#include "tests/device/callbacks.h"
#include "tests/device/fault.h"
#include "tests/device/memory.h"
#include "ui/shell_libraries.h"

// The host's copies of what a call's arguments point to, while the call runs.
struct BorrowedTexts {
    std::deque<std::wstring> texts;
    const wchar_t* Keep(std::wstring text) { return texts.emplace_back(std::move(text)).c_str(); }
};

enum class Direction : uint8_t { ToHost, ToGuest, Measure };

// Walks over the members of a structure, and moves each.
class StructureWalk
{
public:
    StructureWalk(Direction direction, GuestAddress address, BorrowedTexts* borrowed)
        : Way(direction), Start(address), Borrowed(borrowed)
    {
    }
    uint32_t Size() const { return (Offset + 3) & ~3u; }

    // A member that holds the structure's own size, which differs.
    void OwnSize(DWORD& member, uint32_t guestSize, uint32_t hostSize)
    {
        DWORD value = Way == Direction::ToGuest && member == hostSize ? guestSize : member;
        Move(value);
        if (Way == Direction::ToHost) member = value == guestSize ? hostSize : 0;
    }

    template <typename T> void operator()(T& member)
    {
        if constexpr (std::is_array_v<T>) {
            for (auto& element : member) (*this)(element);
        } else if constexpr (std::is_same_v<T, wchar_t>) {
            auto unit = static_cast<uint16_t>(member);
            Move(unit);
            if (Way == Direction::ToHost) member = static_cast<wchar_t>(unit);
        } else if constexpr (std::is_same_v<T, const wchar_t*>) {
            Text(member);
        } else if constexpr (std::is_same_v<T, WNDPROC>) {
            GuestAddress address = 0;
            Move(address);
            if (Way == Direction::ToHost) member = WindowProcedureFor(address);
        } else if constexpr (std::is_pointer_v<T>) {
            auto handle = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(member));
            Move(handle);
            if (Way == Direction::ToHost) member = reinterpret_cast<T>(static_cast<uintptr_t>(handle));
        } else if constexpr (std::is_same_v<T, WPARAM>) {
            auto word = static_cast<uint32_t>(member);
            Move(word);
            if (Way == Direction::ToHost) member = word;
        } else if constexpr (std::is_same_v<T, LPARAM>) {
            auto word = static_cast<int32_t>(member);
            Move(word);
            if (Way == Direction::ToHost) member = word;
        } else {
            static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= 4);
            Move(member);
        }
    }

    // A list of texts that an empty one ends.
    void TextList(const wchar_t*& member)
    {
        const GuestAddress place = Start + Aligned(4);
        Offset = Aligned(4) + 4;
        if (Way != Direction::ToHost) return;
        GuestAddress address = LoadGuest<GuestAddress>(place);
        std::wstring all;
        while (address != 0 && LoadGuest<uint16_t>(address) != 0) {
            const std::wstring text = LoadGuestText(address);
            all += text + L'\0';
            address += 2 * static_cast<uint32_t>(text.size() + 1);
        }
        member = address != 0 ? Borrowed->Keep(all + L'\0') : nullptr;
    }

    // A text that the call replaces; its capacity in characters is the member after it.
    void TextPlace(wchar_t*& member)
    {
        const GuestAddress place = Start + Aligned(4);
        Offset = Aligned(4) + 4;
        if (Way == Direction::Measure) return;
        const GuestAddress address = LoadGuest<GuestAddress>(place);
        const uint32_t capacity = LoadGuest<uint32_t>(place + 4);
        if (Way == Direction::ToGuest) {
            if (address != 0) StoreGuestText(address, member);
            return;
        }
        member = nullptr;
        if (address == 0) return;
        GuestBytes(address, 2 * capacity, Access::ReadWrite);
        std::wstring& text = Borrowed->texts.emplace_back(LoadGuestText(address));
        text.resize(capacity);
        member = text.data();
    }

    // Numbers of one layout that both sides see.
    template <typename T> void Shared(T*& member, uint32_t count)
    {
        if (Way == Direction::ToHost) {
            const GuestAddress address = LoadGuest<GuestAddress>(Start + Aligned(4));
            member = address == 0
                         ? nullptr
                         : reinterpret_cast<T*>(GuestBytes(address, count * static_cast<uint32_t>(sizeof(T)),
                                                           Access::ReadWrite));
        }
        Offset = Aligned(4) + 4;
    }

private:
    uint32_t Aligned(uint32_t alignment) const { return (Offset + alignment - 1) & ~(alignment - 1); }

    template <typename T> void Move(T& value)
    {
        Offset = Aligned(alignof(T));
        if (Way == Direction::ToHost) value = LoadGuest<T>(Start + Offset);
        if (Way == Direction::ToGuest) StoreGuest(Start + Offset, value);
        Offset += static_cast<uint32_t>(sizeof value);
    }

    // A text that the call only reads, or the number of a resource.
    void Text(const wchar_t*& member)
    {
        const GuestAddress place = Start + Aligned(4);
        Offset = Aligned(4) + 4;
        if (Way != Direction::ToHost) return;
        const GuestAddress address = LoadGuest<GuestAddress>(place);
        member = address >> 16 == 0 ? reinterpret_cast<const wchar_t*>(static_cast<uintptr_t>(address))
                                    : Borrowed->Keep(LoadGuestText(address));
    }

    Direction Way;
    GuestAddress Start;
    uint32_t Offset = 0;
    BorrowedTexts* Borrowed;
};

// ---- The structures -----------------------------------------------------------------------------------

template <typename... Members> void WalkAll(StructureWalk& walk, Members&... members)
{
    (walk(members), ...);
}

inline void Walk(StructureWalk& walk, MSG& s)
{
    WalkAll(walk, s.hwnd, s.message, s.wParam, s.lParam, s.time, s.pt);
}
inline void Walk(StructureWalk& walk, PAINTSTRUCT& s)
{
    WalkAll(walk, s.hdc, s.fErase, s.rcPaint, s.fRestore, s.fIncUpdate, s.rgbReserved);
}
inline void Walk(StructureWalk& walk, WNDCLASSW& s)
{
    WalkAll(walk, s.style, s.lpfnWndProc, s.cbClsExtra, s.cbWndExtra, s.hInstance, s.hIcon, s.hCursor,
            s.hbrBackground, s.lpszMenuName, s.lpszClassName);
}
inline void Walk(StructureWalk& walk, OSVERSIONINFOW& s)
{
    walk.OwnSize(s.dwOSVersionInfoSize, 276, sizeof s);
    WalkAll(walk, s.dwMajorVersion, s.dwMinorVersion, s.dwBuildNumber, s.dwPlatformId, s.szCSDVersion);
}
inline void Walk(StructureWalk& walk, COMMPROP& s)
{
    WalkAll(walk, s.wPacketLength, s.wPacketVersion, s.dwServiceMask, s.dwReserved1, s.dwMaxTxQueue,
            s.dwMaxRxQueue, s.dwMaxBaud, s.dwProvSubType, s.dwProvCapabilities, s.dwSettableParams,
            s.dwSettableBaud, s.wSettableData, s.wSettableStopParity, s.dwCurrentTxQueue, s.dwCurrentRxQueue,
            s.dwProvSpec1, s.dwProvSpec2, s.wcProvChar);
}
inline void Walk(StructureWalk& walk, LOGFONTW& s)
{
    WalkAll(walk, s.lfHeight, s.lfWidth, s.lfEscapement, s.lfOrientation, s.lfWeight, s.lfItalic,
            s.lfUnderline, s.lfStrikeOut, s.lfCharSet, s.lfOutPrecision, s.lfClipPrecision, s.lfQuality,
            s.lfPitchAndFamily, s.lfFaceName);
}
inline void Walk(StructureWalk& walk, OPENFILENAMEW& s) // without the host's last three members
{
    walk.OwnSize(s.lStructSize, 76, sizeof s);
    WalkAll(walk, s.hwndOwner, s.hInstance);
    walk.TextList(s.lpstrFilter);
    WalkAll(walk, s.lpstrCustomFilter, s.nMaxCustFilter, s.nFilterIndex);
    walk.TextPlace(s.lpstrFile);
    WalkAll(walk, s.nMaxFile, s.lpstrFileTitle, s.nMaxFileTitle, s.lpstrInitialDir, s.lpstrTitle, s.Flags,
            s.nFileOffset, s.nFileExtension, s.lpstrDefExt, s.lCustData, s.lpfnHook, s.lpTemplateName);
}
inline void Walk(StructureWalk& walk, CHOOSECOLORW& s)
{
    walk.OwnSize(s.lStructSize, 36, sizeof s);
    WalkAll(walk, s.hwndOwner, s.hInstance, s.rgbResult);
    walk.Shared(s.lpCustColors, 16);
    WalkAll(walk, s.Flags, s.lCustData, s.lpfnHook, s.lpTemplateName);
}
inline void Walk(StructureWalk& walk, DRAWITEMSTRUCT& s)
{
    WalkAll(walk, s.CtlType, s.CtlID, s.itemID, s.itemAction, s.itemState, s.hwndItem, s.hDC, s.rcItem,
            s.itemData);
}
inline void Walk(StructureWalk& walk, ShellInitDialog& s)
{
    WalkAll(walk, s.mask, s.dialog, s.flags);
}
inline void Walk(StructureWalk& walk, ShellMenuBar& s)
{
    walk.OwnSize(s.size, 36, sizeof s);
    WalkAll(walk, s.parent, s.flags, s.menu, s.instance, s.bitmap, s.bitmapCount, s.bar, s.background);
}
inline void Walk(StructureWalk& walk, ShellActivateInfo& s)
{
    walk.OwnSize(s.size, 12, sizeof s);
    WalkAll(walk, s.lastFocus, s.flags);
}

// ---- Moving one, its type forgotten -------------------------------------------------------------------

struct StructureLayout {
    uint32_t hostSize;
    void (*walk)(StructureWalk&, void* structure);
    uint32_t
        guestSize; // known from the system's documentation; what the members add up to is checked against it
};

template <typename S>
inline constexpr void (*WalkOf)(StructureWalk&, void*) =
    [](StructureWalk& walk, void* s) { Walk(walk, *static_cast<S*>(s)); };

inline constexpr StructureLayout MsgLayout = {sizeof(MSG), WalkOf<MSG>, 28};
inline constexpr StructureLayout PaintLayout = {sizeof(PAINTSTRUCT), WalkOf<PAINTSTRUCT>, 64};
inline constexpr StructureLayout WindowClassLayout = {sizeof(WNDCLASSW), WalkOf<WNDCLASSW>, 40};
inline constexpr StructureLayout VersionLayout = {sizeof(OSVERSIONINFOW), WalkOf<OSVERSIONINFOW>, 276};
inline constexpr StructureLayout PortPropertiesLayout = {sizeof(COMMPROP), WalkOf<COMMPROP>, 64};
inline constexpr StructureLayout FontLayout = {sizeof(LOGFONTW), WalkOf<LOGFONTW>, 92};
inline constexpr StructureLayout SaveDialogLayout = {sizeof(OPENFILENAMEW), WalkOf<OPENFILENAMEW>, 76};
inline constexpr StructureLayout ChooseColorLayout = {sizeof(CHOOSECOLORW), WalkOf<CHOOSECOLORW>, 36};
inline constexpr StructureLayout DrawItemLayout = {sizeof(DRAWITEMSTRUCT), WalkOf<DRAWITEMSTRUCT>, 48};
inline constexpr StructureLayout ShellInitDialogLayout = {sizeof(ShellInitDialog), WalkOf<ShellInitDialog>,
                                                          12};
inline constexpr StructureLayout ShellMenuBarLayout = {sizeof(ShellMenuBar), WalkOf<ShellMenuBar>, 36};
inline constexpr StructureLayout ShellActivateLayout = {sizeof(ShellActivateInfo), WalkOf<ShellActivateInfo>,
                                                        12};
inline constexpr const StructureLayout* StructureLayouts[] = {
    &MsgLayout,          &PaintLayout,        &WindowClassLayout, &VersionLayout,  &PortPropertiesLayout,
    &FontLayout,         &SaveDialogLayout,   &ChooseColorLayout, &DrawItemLayout, &ShellInitDialogLayout,
    &ShellMenuBarLayout, &ShellActivateLayout};
