// SPDX-License-Identifier: MIT
// The address space of the emulated device: 32-bit addresses, each region backed by memory of the host.
// Reading or writing outside a region, or writing to one that is read-only, is a DeviceFault, whoever does
// it.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

using GuestAddress = uint32_t;

enum class Access : uint8_t { Read, ReadWrite, ReadExecute };

constexpr uint32_t PageBytes = 0x1000;
constexpr uint8_t FreshByte = 0xDD; // what memory holds that nobody has written

// Zero-filled memory at the address. Address and size are multiples of a page.
uint8_t* MapMemory(GuestAddress address, uint32_t size, Access access);

// Lets the program see `size` bytes of the host's memory, of which it may write all; returns where. They stay
// the host's: UnmapHostMemory must come before they are freed.
GuestAddress MapHostMemory(void* memory, uint32_t size);
void UnmapHostMemory(GuestAddress address);

// True for an address that lies in one of the pages of MapHostMemory but beside the memory itself.
bool IsBesideHostMemory(GuestAddress address);

void UnmapAllMemory();

// The host's view of `size` bytes.
uint8_t* GuestBytes(GuestAddress address, uint32_t size, Access access);

template <typename T> T LoadGuest(GuestAddress address)
{
    T value;
    std::memcpy(&value, GuestBytes(address, sizeof value, Access::Read), sizeof value);
    return value;
}
template <typename T> void StoreGuest(GuestAddress address, T value)
{
    std::memcpy(GuestBytes(address, sizeof value, Access::ReadWrite), &value, sizeof value);
}

// Text of 16-bit characters, up to its terminator or of a given length.
std::wstring LoadGuestText(GuestAddress address);
std::wstring LoadGuestText(GuestAddress address, uint32_t length);
void StoreGuestText(GuestAddress address, std::wstring_view text); // with a terminator
std::string LoadGuestNarrowText(GuestAddress address);

// ---- The heap: fresh memory is full of FreshByte, freed memory is again, and is not given out twice ----

GuestAddress AllocateGuest(uint32_t size); // 4-byte aligned and no more, as the system's own
void FreeGuest(GuestAddress address);      // 0, or what AllocateGuest has returned and nobody has freed
bool IsAllocatedGuest(GuestAddress address);
uint32_t GuestAllocationCount();
