// SPDX-License-Identifier: MIT
// The options of commands that correct dates, and their notes about it.
#pragma once

#include <string>

#include "console/dates.h"
#include "console/options.h"
#include "console/output.h"
#include "console/parser.h"
#include "console/result.h"

namespace console
{

struct CorrectionOptions {
    bool wanted = false;
    bool isChoice = false; // the command corrects dates only if that is wanted
    std::string reference; // as typed

    // Adds --correct-dates and --reference; `otherwise` describes the reference that is used without
    // --reference.
    void Define(Parser& parser, const std::string& otherwise)
    {
        parser.Flag("--correct-dates", wanted, "correct dates that lie whole 1024 weeks back");
        isChoice = true;
        DefineReference(parser, otherwise);
    }

    void DefineReference(Parser& parser, const std::string& otherwise)
    {
        parser
            .Option("--reference", reference,
                    "date that a corrected one must be near, YYYY-MM-DD; else " + otherwise)
            .TypeName("DATE");
    }

    // The reference from the options; without one, `otherwise`. Throws Failure of the kind Usage.
    Reference ReferenceOr(const Reference& otherwise) const
    {
        if (reference.empty()) return otherwise;
        if (isChoice && !wanted) Fail(FailureKind::Usage, "--reference is for --correct-dates: give both");
        if (const auto date = ParseDate(reference)) return {*date, ReferenceKind::Given};
        Fail(FailureKind::Usage, "\"" + reference + "\" is no date: YYYY-MM-DD, from 1980 on");
    }

    Reference ReferenceOrClock() const { return ReferenceOr({Today(), ReferenceKind::Clock}); }
};

// Notes why dates are corrected, or why not: with the first correction, and again when the reason changes.
class CorrectionNotes
{
public:
    explicit CorrectionNotes(Output& output) : output_(output) {}

    void Take(const Correction& correction)
    {
        if (correction.reason == reason_) return;
        reason_ = correction.reason;
        output_.Note("dates: " + reason_);
    }

private:
    Output& output_;
    std::string reason_;
};

} // namespace console
