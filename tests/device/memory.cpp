// SPDX-License-Identifier: MIT
#include "tests/device/memory.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <sys/mman.h>

#include "tests/device/fault.h"
#include "tests/device/processor.h"

namespace
{

constexpr GuestAddress HeapStart = 0x30000000, HostStart = 0x50000000, HostEnd = 0x70000000;
constexpr uint32_t HeapBytes = 0x1000000;

struct Unmap {
    uint32_t size = 0;
    void operator()(uint8_t* memory) const { munmap(memory, size); }
};

struct Region {
    uint32_t size;
    uint8_t* bytes;
    Access access;
    std::unique_ptr<uint8_t, Unmap> own;       // empty: the host's
    GuestAddress pagesStart = 0, pagesEnd = 0; // of the host's memory
};

std::map<GuestAddress, Region> Regions; // by first address
std::map<GuestAddress, uint32_t> Allocations;
GuestAddress HeapNext = HeapStart, HostNext = HostStart;

const Region* FindRegion(GuestAddress address, uint32_t size)
{
    auto found = Regions.upper_bound(address);
    if (found == Regions.begin()) return nullptr;
    --found;
    const uint32_t offset = address - found->first;
    return offset <= found->second.size && size <= found->second.size - offset ? &found->second : nullptr;
}

std::string Hex(uint32_t value)
{
    char text[16];
    std::snprintf(text, sizeof text, "%#x", value);
    return text;
}

uint32_t PageRound(uint32_t size)
{
    return (size + PageBytes - 1) & ~(PageBytes - 1);
}

} // namespace

uint8_t* MapMemory(GuestAddress address, uint32_t size, Access access)
{
    void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) DeviceFault("no memory for a region");
    uint32_t rights = UC_PROT_READ;
    if (access == Access::ReadWrite) rights |= UC_PROT_WRITE;
    if (access == Access::ReadExecute) rights |= UC_PROT_EXEC;
    Check(uc_mem_map_ptr(Processor, address, size, rights, memory), "mapping memory");
    uint8_t* const bytes = static_cast<uint8_t*>(memory);
    Regions[address] = {size, bytes, access, {bytes, Unmap{size}}};
    return bytes;
}

GuestAddress MapHostMemory(void* memory, uint32_t size)
{
    const auto place = reinterpret_cast<uintptr_t>(memory);
    const uintptr_t page = place & ~uintptr_t{PageBytes - 1};
    const uint32_t offset = static_cast<uint32_t>(place - page), mapped = PageRound(offset + size);
    if (HostEnd - HostNext < mapped) DeviceFault("too much of the host's memory is mapped");
    Check(uc_mem_map_ptr(Processor, HostNext, mapped, UC_PROT_READ | UC_PROT_WRITE,
                         reinterpret_cast<void*>(page)),
          "mapping the host's memory");
    const GuestAddress address = HostNext + offset;
    Regions[address] = {
        size, static_cast<uint8_t*>(memory), Access::ReadWrite, {nullptr, {}}, HostNext, HostNext + mapped};
    HostNext += mapped + PageBytes;
    return address;
}

void UnmapHostMemory(GuestAddress address)
{
    const auto found = Regions.find(address);
    if (found == Regions.end()) DeviceFault("memory of the host is unmapped that was not mapped");
    const Region& region = found->second;
    Check(uc_mem_unmap(Processor, region.pagesStart, region.pagesEnd - region.pagesStart), "unmapping");
    Regions.erase(found);
}

bool IsBesideHostMemory(GuestAddress address)
{
    return address >= HostStart && address < HostEnd && !FindRegion(address, 1);
}

void UnmapAllMemory()
{
    Regions.clear();
    Allocations.clear();
    HeapNext = HeapStart;
    HostNext = HostStart;
}

uint8_t* GuestBytes(GuestAddress address, uint32_t size, Access access)
{
    const Region* region = FindRegion(address, size);
    if (!region)
        DeviceFault("the system is handed " + Hex(address) + ", which is not " + std::to_string(size) +
                    " bytes of memory");
    if (access == Access::ReadWrite && region->access != Access::ReadWrite)
        DeviceFault("the system is to write to read-only memory at " + Hex(address));
    return region->bytes + (address - std::prev(Regions.upper_bound(address))->first);
}

std::wstring LoadGuestText(GuestAddress address)
{
    std::wstring text;
    for (;; address += 2) {
        const uint16_t unit = LoadGuest<uint16_t>(address);
        if (unit == 0) return text;
        text += static_cast<wchar_t>(unit);
    }
}

std::wstring LoadGuestText(GuestAddress address, uint32_t length)
{
    std::wstring text;
    for (uint32_t i = 0; i < length; ++i) text += static_cast<wchar_t>(LoadGuest<uint16_t>(address + 2 * i));
    return text;
}

void StoreGuestText(GuestAddress address, std::wstring_view text)
{
    for (const wchar_t character : text) {
        StoreGuest(address, static_cast<uint16_t>(character));
        address += 2;
    }
    StoreGuest(address, uint16_t{0});
}

std::string LoadGuestNarrowText(GuestAddress address)
{
    std::string text;
    while (const char character = LoadGuest<char>(address++)) text += character;
    return text;
}

GuestAddress AllocateGuest(uint32_t size)
{
    if (!Regions.contains(HeapStart))
        std::memset(MapMemory(HeapStart, HeapBytes, Access::ReadWrite), FreshByte, HeapBytes);
    const GuestAddress address = HeapNext + 4; // 4 modulo 8
    HeapNext += (size + 4 + 7) & ~7u;
    if (HeapNext > HeapStart + HeapBytes) DeviceFault("the heap is full");
    Allocations[address] = size;
    return address;
}

void FreeGuest(GuestAddress address)
{
    if (address == 0) return;
    const auto found = Allocations.find(address);
    if (found == Allocations.end())
        DeviceFault("memory is freed that was not allocated, or was freed before: " + Hex(address));
    std::memset(GuestBytes(address, found->second, Access::ReadWrite), FreshByte, found->second);
    Allocations.erase(found);
}

bool IsAllocatedGuest(GuestAddress address)
{
    return Allocations.contains(address);
}

uint32_t GuestAllocationCount()
{
    return static_cast<uint32_t>(Allocations.size());
}
