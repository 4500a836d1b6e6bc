// SPDX-License-Identifier: MIT
#include "tests/device/signatures.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "tests/device/callbacks.h"
#include "tests/device/fault.h"
#include "tests/device/messages.h"

namespace
{

constexpr uint32_t LongestStructure = 1024;

// The memory that one call borrows from the program, and the results that it gives back.
struct Borrowed {
    BorrowedTexts texts;
    std::vector<std::unique_ptr<std::array<std::byte, LongestStructure>>> structures;
    AfterCall after;
};

uint64_t SignExtended(uint32_t word)
{
    return static_cast<uint64_t>(int64_t{static_cast<int32_t>(word)});
}

// A text place begins as the program's memory is, so that what the platform leaves alone stays.
uint64_t TextPlace(GuestAddress address, uint32_t capacity, Borrowed& borrowed)
{
    if (address == 0) return 0;
    std::wstring& place = borrowed.texts.texts.emplace_back(LoadGuestText(address, capacity));
    if (capacity != 0) GuestBytes(address, 2 * capacity, Access::ReadWrite);
    borrowed.after.push_back([&place, address] {
        for (size_t i = 0; i < place.size(); ++i)
            StoreGuest(address + 2 * static_cast<uint32_t>(i), static_cast<uint16_t>(place[i]));
    });
    return reinterpret_cast<uintptr_t>(place.data());
}

uint64_t Structure(GuestAddress address, const StructureLayout& layout, bool isWritten, Borrowed& borrowed)
{
    if (address == 0) return 0;
    GuestBytes(address, layout.guestSize, isWritten ? Access::ReadWrite : Access::Read);
    auto& host = *borrowed.structures.emplace_back(
        std::make_unique<std::array<std::byte, LongestStructure>>(std::array<std::byte, LongestStructure>{}));
    void* const structure = host.data();
    StructureWalk reading(Direction::ToHost, address, &borrowed.texts);
    layout.walk(reading, structure);
    if (isWritten)
        borrowed.after.push_back([address, &layout, structure] {
            StructureWalk writing(Direction::ToGuest, address, nullptr);
            layout.walk(writing, structure);
        });
    return reinterpret_cast<uintptr_t>(structure);
}

uint64_t HandlePlace(GuestAddress address, Borrowed& borrowed)
{
    if (address == 0) return 0;
    auto& host = *borrowed.structures.emplace_back(
        std::make_unique<std::array<std::byte, LongestStructure>>(std::array<std::byte, LongestStructure>{}));
    auto* const handle = new (host.data()) uintptr_t(LoadGuest<uint32_t>(address));
    GuestBytes(address, 4, Access::ReadWrite);
    borrowed.after.push_back([address, handle] { StoreGuest(address, static_cast<uint32_t>(*handle)); });
    return reinterpret_cast<uintptr_t>(handle);
}

uint64_t Text(GuestAddress address, Borrowed& borrowed)
{
    if (address >> 16 == 0) return address;
    return reinterpret_cast<uintptr_t>(borrowed.texts.Keep(LoadGuestText(address)));
}

uint64_t Bytes(GuestAddress address, uint32_t size, Access access)
{
    return address == 0 ? 0 : reinterpret_cast<uintptr_t>(GuestBytes(address, size, access));
}

uint64_t Convert(const Argument& argument, uint32_t index, const GuestCall& caller, Borrowed& borrowed)
{
    const uint32_t word = caller.Word(index);
    const auto other = [&] { return caller.Word(argument.other); };
    switch (argument.kind) {
    case Kind::Number:
    case Kind::Message:
    case Kind::WParam:
    case Kind::LParam: return word;
    case Kind::Signed:
    case Kind::Handle: return SignExtended(word);
    case Kind::Null:
        if (word != 0) DeviceFault("argument " + std::to_string(index) + " is not null");
        return 0;
    case Kind::Text: return Text(word, borrowed);
    case Kind::CountedText:
        if (word == 0) return 0;
        return reinterpret_cast<uintptr_t>(
            borrowed.texts.Keep(other() == UINT32_MAX ? LoadGuestText(word) : LoadGuestText(word, other())));
    case Kind::TextPlace: return TextPlace(word, other(), borrowed);
    case Kind::TextPlaceInBytes: return TextPlace(word, other() / 2, borrowed);
    case Kind::TextPlaceForPath: return TextPlace(word, MAX_PATH, borrowed);
    case Kind::TextPlaceCountAt: return TextPlace(word, LoadGuest<uint32_t>(other()), borrowed);
    case Kind::Shared: return Bytes(word, argument.size, Access::ReadWrite);
    case Kind::SharedToRead: return Bytes(word, argument.size, Access::Read);
    case Kind::Bytes: return Bytes(word, other(), Access::ReadWrite);
    case Kind::BytesToRead: return Bytes(word, other(), Access::Read);
    case Kind::HandlePlace: return HandlePlace(word, borrowed);
    case Kind::Structure: return Structure(word, *argument.structure, true, borrowed);
    case Kind::StructureToRead: return Structure(word, *argument.structure, false, borrowed);
    case Kind::WindowProcedure: return reinterpret_cast<uintptr_t>(WindowProcedureFor(word));
    case Kind::ThreadProcedure: return reinterpret_cast<uintptr_t>(ThreadProcedureFor(word));
    }
    return 0;
}

// The two parameters that follow a message.
void ConvertMessage(uint32_t index, const GuestCall& caller, uint64_t* words, Borrowed& borrowed)
{
    WPARAM wParam;
    LPARAM lParam;
    MessageToHost(caller.Word(index), caller.Word(index + 1), caller.Word(index + 2), wParam, lParam,
                  borrowed.texts, borrowed.after);
    words[index + 1] = wParam;
    words[index + 2] = static_cast<uint64_t>(lParam);
}

} // namespace

uint64_t CallPlatform(const Signature& signature, const GuestCall& caller, FARPROC target)
{
    Borrowed borrowed;
    uint64_t words[MostArguments];
    for (uint32_t i = 0; i < signature.count; ++i)
        words[i] = Convert(signature.arguments[i], i, caller, borrowed);
    for (uint32_t i = 0; i < signature.count; ++i)
        if (signature.arguments[i].kind == Kind::Message) ConvertMessage(i, caller, words, borrowed);

    const uint64_t result = signature.call(words, target);
    for (const auto& step : borrowed.after) step();
    const bool fits = signature.result == Result::None || result <= UINT32_MAX ||
                      result == SignExtended(static_cast<uint32_t>(result));
    if (!fits) DeviceFault("the result does not fit into a register");
    return result;
}
