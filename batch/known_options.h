#pragma once

#include <cstdio>

#include "batch/assignments.h"
#include "batch/common_options.h"
#include "batch/field_values.h"
#include "batch/saved_columns.h"
#include "batch/score_sql.h"

// An option as it is typed.
struct KnownOption {
    char name[48] = "";   // with "--"
    char value[400] = ""; // what it takes, words with "|" between them; empty for a flag
    const char* help = "";
};

inline KnownOption knownOption(const char* dashes, const char* name, const char* value, const char* help) {
    KnownOption option;
    std::snprintf(option.name, sizeof option.name, "%s%s", dashes, name);
    std::snprintf(option.value, sizeof option.value, "%s", value != nullptr ? value : "");
    option.help = help;
    return option;
}

inline KnownOption knownOption(const OptionText& text) {
    return knownOption("", text.name, text.value, text.help);
}

// Calls `use` with every option that a kind takes, null: the summary. A name can come twice, with other
// words.
template <class Use> void forEachOption(const AnalysisKind* kind, Use use) {
    if (kind != nullptr) {
        for (const OptionField& field : kind->analysis->fields) {
            if (field.name == nullptr) continue;
            char value[400];
            describeValue(field, value, sizeof value);
            use(knownOption("--", field.name, value, field.help));
            if (field.type == OptionType::flag) use(knownOption("--no-", field.name, nullptr, field.help));
        }
        for (const AssignmentOption& each : assignmentOptions()) {
            if (each.isTakenBy(*kind)) use(knownOption("--", each.name, assignmentUsage, each.help));
        }
        if (numbersClusters(kind)) use(knownOption(clustersOption));
        if (kind->hasSampleColumns) use(knownOption(saveOption));
        if (hasExpressions(kind)) {
            for (const OptionText& text : scoreOptions) use(knownOption(text));
        }
        for (std::size_t k = 0; pictureOption(*kind, k) != nullptr; ++k) {
            use(knownOption(*pictureOption(*kind, k)));
        }
    }
    for (const OptionText& text : commonOptions()) use(knownOption(text));
}
