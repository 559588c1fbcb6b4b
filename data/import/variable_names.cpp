#include "data/import/variable_names.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "data/import/text_hash.h"
#include "data/number.h"

namespace {

constexpr Index longestName = textSlotSize - 1;

// Whether one of the first `count` names is that one.
bool isTaken(const Block<std::uint64_t>& hashes, Index count, std::string_view name) {
    const std::uint64_t hash = hashOf(name);
    for (Index k = 0; k < count; ++k) {
        if (hashes[k] == hash) return true;
    }
    return false;
}

// Whether the names would pass for a sample: all are numbers, and not whole ones that rise, as years do.
bool lookLikeSample(const ImportSurvey& survey, const ImportPlan& plan) {
    double last = 0.0;
    bool rise = true;
    for (Index j = 0; j < survey.form.width; ++j) {
        if (plan.uses[j] != ColumnUse::number && plan.uses[j] != ColumnUse::category) continue;
        TableText name;
        cleanText(survey.names[j], plan.target, longestName, name);
        if (!isNumber(name.text)) return false;
        const double value = parseNumber(name.text);
        rise = rise && value > last && value < 1e9 && value == std::floor(value);
        last = value;
    }
    return !rise;
}

} // namespace

ErrorCode nameVariables(const ImportSurvey& survey, ImportPlan& plan, ImportMessages& messages) {
    Block<std::uint64_t> hashes;
    if (plan.names.allocate(plan.variables) != success || hashes.allocate(plan.variables) != success) {
        return outOfMemory;
    }
    // Of many alike the number goes on from the last one given; a table that is too wide is refused anyway.
    Index variable = 0, suffix = 2, cut = 0, renamed = 0, lacking = 0;
    const bool isPrefixed = lookLikeSample(survey, plan);
    if (isPrefixed) messages.note("names that are numbers have a V before them");
    for (Index j = 0; j < survey.form.width; ++j) {
        if (plan.uses[j] != ColumnUse::number && plan.uses[j] != ColumnUse::category) continue;
        char numbered[100];
        std::snprintf(numbered, sizeof numbered, "V%lld", static_cast<long long>(j) + 1);
        std::string_view source = survey.names[j];
        TableText name;
        cleanText(source, plan.target, longestName, name);
        if (isPrefixed) std::snprintf(numbered, sizeof numbered, "V%s", name.text);
        if (name.length == 0 || isPrefixed) {
            source = numbered;
            cleanText(source, plan.target, longestName, name);
        }
        cut += name.isCut;
        lacking += name.lacks;
        bool taken = variable < 4096 && isTaken(hashes, variable, name.view());
        renamed += taken;
        for (suffix = 2; taken; ++suffix) {
            char end[24];
            const int length = std::snprintf(end, sizeof end, ".%lld", static_cast<long long>(suffix));
            cleanText(source, plan.target, longestName - length, name);
            std::memcpy(name.text + name.length, end, static_cast<std::size_t>(length) + 1);
            name.length += length;
            taken = isTaken(hashes, variable, name.view());
        }
        hashes[variable] = hashOf(name.view());
        plan.names.set(variable++, name.text);
    }
    if (cut > 0) messages.note("names shortened to 62 bytes: %lld", static_cast<long long>(cut));
    if (renamed > 0) {
        messages.note("names numbered because others have them: %lld", static_cast<long long>(renamed));
    }
    if (lacking > 0) {
        messages.warn("names with characters that the encoding of the table lacks, which ? stands for: %lld",
                      static_cast<long long>(lacking));
    }
    return success;
}
