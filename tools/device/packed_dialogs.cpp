// SPDX-License-Identifier: MIT
#include "packed_dialogs.h"

#include "platform/device/packed_template.h"

#include <algorithm>

namespace device
{

namespace
{

struct Repeat {
    size_t distance = 0, count = 0;
};

// The longest sequence before `start` that is repeated there; of equally long ones, the nearest.
Repeat LongestRepeatAt(std::span<const uint8_t> bytes, size_t start)
{
    Repeat longest;
    const size_t most = std::min<size_t>(LongestRepeat, bytes.size() - start);
    for (size_t distance = 1; distance <= std::min<size_t>(start, 1u << RepeatDistanceBits); ++distance) {
        size_t count = 0;
        while (count < most && bytes[start + count] == bytes[start + count - distance]) ++count;
        if (count > longest.count) longest = {distance, count};
    }
    return longest;
}

} // namespace

Bytes PackTemplate(std::span<const uint8_t> dialogTemplate)
{
    if (dialogTemplate.size() > LargestTemplate) throw Refusal("a dialog's template is too large");
    Bytes packed;
    Append(packed, static_cast<uint16_t>(dialogTemplate.size()));
    size_t flags = 0, flag = 8; // position of the group's flags, and the next flag
    for (size_t done = 0; done < dialogTemplate.size(); ++flag) {
        if (flag == 8) {
            flag = 0;
            flags = packed.size();
            packed.push_back(0);
        }
        const Repeat repeat = LongestRepeatAt(dialogTemplate, done);
        if (repeat.count >= ShortestRepeat) {
            Append(packed, static_cast<uint16_t>((repeat.distance - 1) | (repeat.count - ShortestRepeat)
                                                                             << RepeatDistanceBits));
            done += repeat.count;
        } else {
            packed[flags] = static_cast<uint8_t>(packed[flags] | 1u << flag);
            packed.push_back(dialogTemplate[done++]);
        }
    }
    return packed;
}

} // namespace device
