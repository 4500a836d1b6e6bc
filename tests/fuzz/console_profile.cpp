// SPDX-License-Identifier: MIT
// Profiles of the console program: the input is a profile's text.
#include <cstdlib>

#include "console/profile_text.h"
#include "tests/fuzz/input.h"

using namespace console;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    try {
        for (const ProfileEntry& entry : ParseProfile(text, "profile")) {
            if (!entry.setting) std::abort();
            for (const KeyValue& value : entry.values)
                if (ValueText(*entry.setting, value.key, value.value).empty()) std::abort();
        }
    } catch (const Failure& failure) {
        if (failure.kind != FailureKind::Usage || failure.message.empty()) std::abort();
    }
    return 0;
}
