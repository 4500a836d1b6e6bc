// SPDX-License-Identifier: MIT
// The options of commands that correct dates.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "console/dates.h"
#include "console/options.h"
#include "console/result.h"

namespace console
{

struct CorrectionOptions {
    bool wanted = false;
    std::string reference; // as typed

    // Adds --correct-dates and --reference; `otherwise` describes the reference that is taken without the
    // latter.
    void Define(CLI::App& app, const std::string& otherwise)
    {
        app.add_flag("--correct-dates", wanted, "correct dates that lie whole 1024 weeks back");
        DefineReference(app, otherwise);
    }

    void DefineReference(CLI::App& app, const std::string& otherwise)
    {
        app.add_option("--reference", reference,
                       "date that a corrected one must be near, YYYY-MM-DD; else " + otherwise)
            ->type_name("DATE");
    }

    // The reference given, else the other one. Throws Failure of the kind Usage.
    Reference ReferenceOr(const Reference& otherwise) const
    {
        if (reference.empty()) return otherwise;
        if (const auto date = ParseDate(reference)) return {*date, ReferenceKind::Given};
        Fail(FailureKind::Usage, "\"" + reference + "\" is no date: YYYY-MM-DD, from 1980 on");
    }

    Reference ReferenceOrClock() const { return ReferenceOr({Today(), ReferenceKind::Clock}); }
};

} // namespace console
