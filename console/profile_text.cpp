// SPDX-License-Identifier: MIT
#include "console/profile_text.h"

#include <sstream>

namespace console
{

std::vector<ProfileEntry> ParseProfile(const std::string& text, const std::string& name)
{
    // Editors and shells of Windows write such files.
    constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
        Fail(FailureKind::Usage, name + " is UTF-16: save it as UTF-8");
    std::vector<ProfileEntry> entries;
    std::istringstream lines(text.substr(text.starts_with(ByteOrderMark) ? ByteOrderMark.size() : 0));
    std::string line;
    for (size_t number = 1; std::getline(lines, line); ++number) {
        std::istringstream words(line);
        std::string word;
        if (!(words >> word) || word[0] == '#') continue;
        try {
            ProfileEntry entry = {&FindSetting(word), {}};
            for (const ProfileEntry& other : entries)
                if (other.setting == entry.setting) Fail(FailureKind::Usage, word + " is there twice");
            std::vector<std::string> assignments;
            while (words >> word) assignments.push_back(word);
            if (assignments.empty()) Fail(FailureKind::Usage, word + ": no KEY=VALUE");
            entry.values = ParseKeyValues(*entry.setting, assignments);
            entries.push_back(std::move(entry));
        } catch (const Failure& failure) {
            Fail(failure.kind, Printable(name + ", line " + std::to_string(number) + ": " + failure.message));
        }
    }
    if (entries.empty()) Fail(FailureKind::Usage, name + ": no setting in it");
    return entries;
}

} // namespace console
