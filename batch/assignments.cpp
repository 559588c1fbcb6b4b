#include "batch/assignments.h"

#include <cmath>

#include "batch/field_values.h"
#include "data/number.h"

namespace {

bool asksDegrees(const AnalysisKind& kind) {
    return !kind.analysis->firstFields.empty();
}

bool predicts(const AnalysisKind& kind) {
    return kind.enablesPrediction;
}

const AssignmentOption repeatable[] = {
    {"degree", "the power that a variable is raised to (1)", asksDegrees, &CommandLine::degrees},
    {"predict", "append the prediction for these values (the mean, or category 1, of the others)", predicts,
     &CommandLine::predictions},
};

// The slot of a variable: the one that it has, or the first free one; slotCount when there is none.
int findSlot(const AnalysisOptions& options, std::int32_t variable) {
    int slot = 0;
    while (slot < AnalysisOptions::slotCount && options.slotColumns[slot] != variable &&
           options.slotColumns[slot] != 0) {
        ++slot;
    }
    return slot;
}

} // namespace

bool takeAssignment(std::string_view& rest, Assignment& assignment) {
    const std::string_view piece = rest.substr(0, rest.find(','));
    const std::size_t equals = piece.rfind('=');
    if (equals == std::string_view::npos || equals == 0) return false;
    assignment.name = piece.substr(0, equals);
    const char* const number = piece.data() + equals + 1;
    const char* end = nullptr;
    assignment.value = parseNumber(number, &end);
    if (end == number) return false;
    while (*end == ' ') ++end;
    if (end != piece.data() + piece.size() || !std::isfinite(assignment.value)) return false;
    rest.remove_prefix(piece.size());
    return true;
}

std::span<const AssignmentOption> assignmentOptions() {
    return repeatable;
}

bool isAssignmentList(const char* text) {
    return forEachAssignment(text, [](const Assignment&) { return true; });
}

bool applyDegrees(const CommandLine& line, const DataSet& data, AnalysisOptions& options,
                  Complaint& complaint) {
    for (const char* text : line.degrees) {
        const bool applied = forEachAssignment(text, [&](const Assignment& degree) {
            const std::int32_t variable = requireVariable("degree", degree.name, data, complaint);
            if (variable == 0) return false;
            const int slot = findSlot(options, variable);
            if (slot == AnalysisOptions::slotCount) {
                complaint.say("--degree takes at most %d variables", AnalysisOptions::slotCount);
                return false;
            }
            options.slotColumns[slot] = variable;
            options.slotDegrees[slot] = degree.value;
            return true;
        });
        if (!applied) return false;
    }
    return true;
}

bool checkPredictions(const CommandLine& line, const DataSet& data, const AnalysisOptions& options,
                      Complaint& complaint) {
    for (const char* text : line.predictions) {
        const bool known = forEachAssignment(text, [&](const Assignment& value) {
            const std::int32_t variable = requireVariable("predict", value.name, data, complaint);
            if (variable != 0 && variable == options.purposes[0]) {
                complaint.say("--predict: '%.*s' is the purpose variable",
                              static_cast<int>(value.name.size()), value.name.data());
            }
            return !complaint.any();
        });
        if (!known) return false;
    }
    return true;
}

void flagPredicted(const CommandLine& line, const DataSet& data, Block<std::int32_t>& flags) {
    for (const char* text : line.predictions) {
        forEachAssignment(text, [&](const Assignment& value) {
            flags[findColumn(data.cells, value.name)] = 1;
            return true;
        });
    }
}

void enterValues(const char* text, const DataSet& data, PredictionEntry& entry) {
    forEachAssignment(text, [&](const Assignment& value) {
        const std::int32_t column = otherColumnOf(data, findVariable(data, value.name));
        entry.values[column] = value.value;
        return true;
    });
}
