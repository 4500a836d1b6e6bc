// SPDX-License-Identifier: MIT
// The console program reads a receiver's answers: the first byte chooses a setting, the rest is a
// payload.
#include <cstdlib>

#include "console/setting_names.h"
#include "tests/fuzz/input.h"

using namespace console;

namespace
{

void Require(bool holds)
{
    if (!holds) std::abort();
}

// The printed text is accepted as input with the same meaning; a value outside its range may be refused.
void ReadBack(const Setting& setting, const SettingValues& values)
{
    const std::string text = SettingText(setting, values);
    std::vector<std::string> assignments;
    for (size_t from = text.find(' '); from != text.npos;) {
        const size_t end = text.find(' ', from + 1);
        assignments.push_back(text.substr(from + 1, end == text.npos ? end : end - from - 1));
        from = end;
    }
    Require(assignments.size() == setting.keys.size());
    try {
        const std::vector<KeyValue> read = ParseKeyValues(setting, assignments);
        Require(read.size() == setting.keys.size());
        for (const KeyValue& each : read) Require(each.value == values[each.key]);
    } catch (const Failure& failure) {
        Require(failure.kind == FailureKind::Usage && !failure.message.empty());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    const Setting& setting = Settings()[input.Below(Settings().size())];
    const std::string payload = input.Rest();
    SettingValues values{};
    if (!ReadAnswer(*setting.layout, reinterpret_cast<const uint8_t*>(payload.data()),
                    static_cast<uint32_t>(payload.size()), Signs::Kept, values))
        return 0;
    Require(!SettingJson(setting, values).dump(-1, ' ', false, Json::error_handler_t::strict).empty());
    ReadBack(setting, values);
    return 0;
}
