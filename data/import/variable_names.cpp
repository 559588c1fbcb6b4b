#include "data/import/variable_names.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "data/import/text_hash.h"
#include "data/number.h"

namespace {

// A name that is given, and the number that the next variable of that name gets or one of those below it.
struct GivenName {
    std::uint64_t hash;
    Index nextNumber;
};

// That of one of the first `count` variables; null where it is free.
GivenName* findGiven(Block<GivenName>& given, Index count, std::string_view name) {
    GivenName* const end = given.data() + count;
    const std::uint64_t hash = hashOf(name);
    GivenName* const found =
        std::find_if(given.data(), end, [hash](const GivenName& each) { return each.hash == hash; });
    return found != end ? found : nullptr;
}

// Whether the names would pass for a sample: all are numbers, and not whole ones that rise, as years do.
bool lookLikeSample(const ImportSurvey& survey, const ImportPlan& plan) {
    double last = 0.0;
    bool rise = true;
    for (Index j = 0; j < survey.form.width; ++j) {
        if (!isVariable(plan.uses[j])) continue;
        TableText name;
        cleanText(survey.names[j], plan.target, textSlotLength, name);
        if (!isNumber(name.text)) return false;
        const double value = parseNumber(name.text);
        rise = rise && value > last && value < 1e9 && value == std::floor(value);
        last = value;
    }
    return !rise;
}

} // namespace

ErrorCode nameVariables(const ImportSurvey& survey, ImportPlan& plan, ImportMessages& messages) {
    Block<GivenName> given;
    if (plan.names.allocate(plan.variables) != success || given.allocate(plan.variables) != success) {
        return outOfMemory;
    }
    Index variable = 0, cut = 0, renamed = 0, lacking = 0;
    const bool isPrefixed = lookLikeSample(survey, plan);
    if (isPrefixed) messages.note("names that are numbers have a V before them");
    for (Index j = 0; j < survey.form.width; ++j) {
        if (!isVariable(plan.uses[j])) continue;
        char numbered[100];
        std::snprintf(numbered, sizeof numbered, "V%lld", static_cast<long long>(j) + 1);
        std::string_view source = survey.names[j];
        TableText name;
        cleanText(source, plan.target, textSlotLength, name);
        if (isPrefixed) std::snprintf(numbered, sizeof numbered, "V%s", name.text);
        if (name.length == 0 || isPrefixed) {
            source = numbered;
            cleanText(source, plan.target, textSlotLength, name);
        }
        cut += name.isCut;
        lacking += name.lacks;
        // A table of more variables is refused for its width, whatever their names.
        GivenName* const same =
            variable < CategoryTexts::mostLists ? findGiven(given, variable, name.view()) : nullptr;
        renamed += same != nullptr;
        for (bool isFree = same == nullptr; !isFree;
             isFree = findGiven(given, variable, name.view()) == nullptr) {
            char end[24];
            const int length =
                std::snprintf(end, sizeof end, ".%lld", static_cast<long long>(same->nextNumber++));
            cleanText(source, plan.target, textSlotLength - length, name);
            std::memcpy(name.text + name.length, end, static_cast<std::size_t>(length) + 1);
            name.length += length;
        }
        given[variable] = {hashOf(name.view()), 2};
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
