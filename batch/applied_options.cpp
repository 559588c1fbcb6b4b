#include "batch/applied_options.h"

#include <string_view>

#include "batch/assignments.h"
#include "batch/field_values.h"
#include "batch/nearest_word.h"
#include "data/word_list.h"

namespace {

// Puts the columns of a list of names into the slots from `slot` on.
bool exclude(std::string_view names, int& slot, DataSet& data, Complaint& complaint) {
    return forEachNamed(names, [&](std::string_view name) {
        const std::int32_t column = findColumn(data.cells, name);
        if (column == 0) {
            complaint.say("--exclude: there is no variable '%.*s' in the file", static_cast<int>(name.size()),
                          name.data());
            NearestWord nearest(name);
            for (std::int32_t col = 1; col < data.cells.cols; ++col) nearest.offer(data.cells.cell(0, col));
            nearest.suggest(complaint);
            return false;
        }
        if (slot == ExclusionList::slotCount) {
            complaint.say("--exclude takes at most %d variables", ExclusionList::slotCount);
            return false;
        }
        data.exclusion.slots[slot++] = column;
        return true;
    });
}

} // namespace

bool applyExcludes(const CommandLine& line, DataSet& data, Complaint& complaint) {
    int slot = 0;
    for (const char* names : line.excludes) {
        if (!exclude(names, slot, data, complaint)) return false;
    }
    return true;
}

bool applyFields(const CommandLine& line, const DataSet& data, AnalysisOptions& options,
                 Complaint& complaint) {
    const Analysis& analysis = *line.kind->analysis;
    std::uint32_t given = 0;
    for (std::size_t index = 0; index < analysis.fields.size(); ++index) {
        const OptionField& field = analysis.fields[index];
        if (line.values[index] != nullptr) {
            given |= 1U << index;
            if (!setField(field, line.values[index], data, options, complaint)) return false;
        } else if (!isChosen(field, data, options)) {
            complainOfMissing(field, data, complaint);
            return false;
        }
    }
    if (!applyDegrees(line, data, options, complaint)) return false;
    // Without variables there is nothing to choose, which the run tells.
    if (data.loaded.variables == 0) options.purposes[0] = 1;
    const char* refusal = analysis.refuse != nullptr ? analysis.refuse(options, given) : nullptr;
    if (refusal != nullptr) complaint.say("%s", refusal);
    return refusal == nullptr;
}
