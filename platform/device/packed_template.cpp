// SPDX-License-Identifier: MIT
#include "platform/device/packed_template.h"

size_t UnpackTemplate(const uint8_t* packed, uint8_t (&unpacked)[LargestTemplate])
{
    const auto takeWord = [&] {
        packed += 2;
        return static_cast<uint32_t>(packed[-2] | packed[-1] << 8);
    };
    constexpr uint32_t GroupEnd = 0x100; // lies above the flags that are left
    const size_t size = takeWord();
    if (size > LargestTemplate) return 0;
    uint32_t flags = 1;
    for (size_t done = 0; done < size; flags >>= 1) {
        if (flags == 1) flags = GroupEnd | *packed++;
        if (flags & 1) {
            unpacked[done++] = *packed++;
            continue;
        }
        const uint32_t repeat = takeWord();
        const size_t distance = (repeat & ((1u << RepeatDistanceBits) - 1)) + 1;
        const size_t count = (repeat >> RepeatDistanceBits) + ShortestRepeat;
        if (distance > done || count > size - done) return 0;
        for (const size_t end = done + count; done < end; ++done) unpacked[done] = unpacked[done - distance];
    }
    return size;
}
