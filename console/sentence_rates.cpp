// SPDX-License-Identifier: MIT
#include "console/sentence_rates.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "console/options.h"

namespace console
{

namespace
{

// More kinds than any receiver sends; further names, which come from transmission errors, are not kept.
constexpr size_t MostKinds = 512;

constexpr const char* Kinds[] = {"GGA", "GLL", "GSA", "GSV", "RMC", "VTG", "MSS", "USER8", "ZDA", "USER10"};
static_assert(std::size(Kinds) == NmeaRateCount);

} // namespace

std::span<const char* const> SentenceKinds()
{
    return Kinds;
}

std::optional<unsigned> FindSentenceKind(const std::string& name)
{
    std::string upper = name;
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    for (unsigned kind = 0; kind < NmeaRateCount; ++kind)
        if (upper == Kinds[kind]) return kind;
    return {};
}

NmeaRates ParseNmeaRates(const std::string& text)
{
    NmeaRates rates = {};
    std::array<bool, NmeaRateCount> isGiven = {};
    for (size_t start = 0; start <= text.size();) {
        const size_t comma = std::min(text.find(',', start), text.size());
        const Assignment assignment = ParseAssignment(text.substr(start, comma - start));
        const auto kind = FindSentenceKind(assignment.name);
        if (!kind) Fail(FailureKind::Usage, "--rates: no sentence \"" + assignment.name + "\"");
        if (isGiven[*kind]) Fail(FailureKind::Usage, "--rates: " + assignment.name + " is given twice");
        isGiven[*kind] = true;
        rates[*kind] =
            static_cast<uint8_t>(ParseWhole(assignment.value, 0, 255, "--rates: " + assignment.name));
        start = comma + 1;
    }
    if (!AnyIsOn(rates))
        Fail(FailureKind::Usage, "--rates: no sentence is on, so the receiver could not be heard");
    return rates;
}

bool AnyIsOn(const NmeaRates& rates)
{
    return rates != NmeaRates{};
}

std::optional<double> Arrivals::Interval() const
{
    if (count < 2) return {};
    const double seconds = std::chrono::duration<double>(last - first).count() / (count - 1);
    return std::round(seconds * 10) / 10;
}

bool KindOrder::operator()(const std::string& a, const std::string& b) const
{
    const auto isNumber = [](const std::string& kind) {
        return std::isdigit(static_cast<unsigned char>(kind[0]));
    };
    if (isNumber(a) && isNumber(b) && a.size() != b.size()) return a.size() < b.size();
    return a < b;
}

ArrivalCounter::ArrivalCounter()
{
    listener_.sentence = [this](const Sentence& sentence) {
        const bool isContinued = sentence.Kind() == "GSV" && sentence.Field(2) != "1";
        if (sentence.hadChecksum && !isContinued && !sentence.Kind().empty())
            Count(Printable(sentence.Kind()));
    };
    listener_.message = [this](const Message& message) { Count(std::to_string(message.Id())); };
}

void ArrivalCounter::Count(const std::string& kind)
{
    if (table.size() >= MostKinds && !table.contains(kind)) return;
    Arrivals& arrivals = table[kind];
    const Clock::time_point now = Clock::now();
    if (arrivals.count++ == 0) arrivals.first = arrivals.last = now;
    arrivals.longestGap = std::max(arrivals.longestGap, now - arrivals.last);
    arrivals.last = now;
}

ArrivalTable MeasureRates(Session& session, Duration time)
{
    ArrivalCounter counter;
    session.WaitFor({}, time);
    return counter.table;
}

NmeaRates RatesFrom(const ArrivalTable& table)
{
    constexpr double OnceIsEvery = 10;
    NmeaRates rates = {};
    for (unsigned kind = 0; kind < NmeaRateCount; ++kind) {
        const auto found = table.find(Kinds[kind]);
        if (found == table.end()) continue;
        const double seconds = found->second.Interval().value_or(OnceIsEvery);
        rates[kind] = static_cast<uint8_t>(std::clamp(std::round(seconds), 1.0, 255.0));
    }
    return rates;
}

} // namespace console
