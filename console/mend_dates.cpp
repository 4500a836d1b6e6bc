// SPDX-License-Identifier: MIT
#include "console/mend_dates.h"

#include <charconv>
#include <cstdio>
#include <optional>
#include <utility>
#include <vector>

namespace console
{

namespace
{

constexpr size_t NameLength = 6; // "$GPRMC"

struct DatedKind {
    std::string_view name;
    size_t field; // index of the date, or of its day; field 0 is the name
};
constexpr DatedKind DatedKinds[] = {{"RMC", 9}, {"ZDA", 2}};

std::optional<int32_t> Digits(std::string_view text, size_t count)
{
    int32_t value = 0;
    if (text.size() != count || text.find_first_not_of("0123456789") != text.npos) return {};
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// Year, month and day as written; no value if one of them is not a number.
std::optional<Date> ReadDate(std::optional<int32_t> year, std::optional<int32_t> month,
                             std::optional<int32_t> day)
{
    if (!year || !month || !day) return {};
    const Date date{*year, *month, *day};
    if (!IsDate(date)) return {};
    return date;
}

std::string Format(const char* format, int32_t a, int32_t b, int32_t c)
{
    char text[48];
    std::snprintf(text, sizeof text, format, a, b, c);
    return text;
}

std::vector<std::string> SplitFields(std::string_view body)
{
    std::vector<std::string> fields;
    for (size_t from = 0;;) {
        const size_t comma = std::min(body.find(',', from), body.size());
        fields.emplace_back(body.substr(from, comma - from));
        if (comma == body.size()) return fields;
        from = comma + 1;
    }
}

std::string JoinFields(const std::vector<std::string>& fields)
{
    std::string body;
    for (const std::string& field : fields) body += (&field == fields.data() ? "" : ",") + field;
    return body;
}

uint8_t ChecksumOf(std::string_view body)
{
    uint8_t checksum = 0;
    for (const char c : body) checksum = static_cast<uint8_t>(checksum ^ static_cast<uint8_t>(c));
    return checksum;
}

// True if the fields had a wrong date, which is then corrected.
bool MendRmc(std::vector<std::string>& fields, size_t at, const std::function<Date(const Date&)>& correct)
{
    const std::string& field = fields[at];
    if (field.size() != 6) return false;
    const auto year = Digits(field.substr(4), 2);
    // GPS began in 1980.
    const auto date = ReadDate(year ? std::optional(*year + (*year < 80 ? 2000 : 1900)) : std::nullopt,
                               Digits(field.substr(2, 2), 2), Digits(field.substr(0, 2), 2));
    if (!date) return false;
    const Date right = correct(*date);
    if (right == *date) return false;
    fields[at] = Format("%02d%02d%02d", right.day, right.month, right.year % 100);
    return true;
}

bool MendZda(std::vector<std::string>& fields, size_t at, const std::function<Date(const Date&)>& correct)
{
    if (fields.size() < at + 3) return false;
    const auto date = ReadDate(Digits(fields[at + 2], 4), Digits(fields[at + 1], 2), Digits(fields[at], 2));
    if (!date) return false;
    const Date right = correct(*date);
    if (right == *date) return false;
    fields[at] = Format("%02d", right.day, 0, 0);
    fields[at + 1] = Format("%02d", right.month, 0, 0);
    fields[at + 2] = Format("%04d", right.year, 0, 0);
    return true;
}

} // namespace

std::string MendSentence(std::string_view sentence, const std::function<Date(const Date&)>& correct)
{
    const std::string unchanged(sentence);
    if (sentence.size() < NameLength || sentence[0] != '$' || !sentence.ends_with("\r\n")) return unchanged;
    std::string_view body = sentence.substr(1, sentence.size() - 3);
    const size_t star = body.find('*');
    const bool hasChecksum = star != body.npos;
    if (hasChecksum) {
        const std::string_view digits = body.substr(star + 1);
        unsigned given = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), given, 16);
        body = body.substr(0, star);
        if (digits.size() != 2 || error != std::errc() || end != digits.data() + 2 ||
            given != ChecksumOf(body))
            return unchanged;
    }
    std::vector<std::string> fields = SplitFields(body);
    bool mended = false;
    for (const DatedKind& kind : DatedKinds) {
        if (fields[0].size() != NameLength - 1 || !fields[0].ends_with(kind.name) ||
            fields.size() <= kind.field)
            continue;
        mended =
            kind.name == "RMC" ? MendRmc(fields, kind.field, correct) : MendZda(fields, kind.field, correct);
    }
    if (!mended) return unchanged;
    const std::string newBody = JoinFields(fields);
    char checksum[8] = "";
    if (hasChecksum) std::snprintf(checksum, sizeof checksum, "*%02X", ChecksumOf(newBody));
    return "$" + newBody + checksum + "\r\n";
}

bool DateMender::MayBecomeDated() const
{
    if (held_.size() > MostHeld) return false;
    if (held_.size() < NameLength) return true;
    for (const DatedKind& kind : DatedKinds)
        if (held_.substr(3, 3) == kind.name) return true;
    return false;
}

std::string DateMender::Feed(std::span<const uint8_t> bytes)
{
    std::string out;
    for (const uint8_t byte : bytes) {
        const char c = static_cast<char>(byte);
        const bool starts = c == '$';
        if (starts) out += Finish();
        if (!starts && held_.empty()) {
            out += c;
            continue;
        }
        held_ += c;
        const bool isText = (byte >= 0x20 && byte <= 0x7E) || c == '\r' || c == '\n';
        if (c == '\n') {
            out += MendSentence(held_, correct_);
            held_.clear();
        } else if (!isText || !MayBecomeDated()) {
            out += Finish();
        }
    }
    return out;
}

std::string DateMender::Finish()
{
    return std::exchange(held_, {});
}

} // namespace console
