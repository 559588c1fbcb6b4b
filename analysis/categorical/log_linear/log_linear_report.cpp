#include "analysis/categorical/log_linear/log_linear_report.h"

#include <cstdio>

#include "analysis/run/run_report.h"
#include "report/tables.h"

namespace {

void writeLabelCell(Report& report, const char* label) {
    writeText(report, label, report.formats.labelWidth);
}

void writeModelHeader(Report& report) {
    report.lower.appendFormat("  n,%46s", "model");
    for (const char* label : {"AIC", "chi.s", "freedom"}) writeLabelCell(report, label);
    endRow(report);
}

void writeModel(Report& report, const LogLinearResult& result, int model) {
    startRow(report, model + 1, logLinearModelTexts()[static_cast<std::size_t>(model)], 46);
    writeValue(report, result.aic[model], 6);
    writeValue(report, result.chiSquares[model], 6);
    report.lower.append(",");
    report.lower.appendInteger(result.freedom[model], report.formats.labelWidth);
    endRow(report);
}

// What stands before the numbers of a u-term: its number and letters, then its levels line by line.
void writeTermLetters(Report& report, int term) {
    report.lower.appendFormat("%3d", term + 1);
    for (int f = 0; f < 3; ++f) {
        const char letter[] = {(uTerms[term] >> f & 1U) != 0 ? "ijk"[f] : ' ', '\0'};
        report.lower.appendFormat(",%4s", letter);
    }
}

void writeTermLevels(Report& report, int term, const Index (&levels)[3]) {
    report.lower.append("   ");
    for (int f = 0; f < 3; ++f) {
        if ((uTerms[term] >> f & 1U) != 0) {
            report.lower.appendFormat(",%4d", static_cast<int>(levels[f]) + 1);
        } else {
            report.lower.append(",    ");
        }
    }
}

constexpr const char* termNames[uTermCount] = {"uA(i)",   "uB(j)",   "uC(k)",    "uAB(ij)",
                                               "uAC(ik)", "uBC(jk)", "uABC(ijk)"};

// Calls `write` with the cell of each level combination of a term, the first index slowest.
template <class Write>
void writeTermLines(Report& report, const ThreeWaySizes& sizes, int term, Write write) {
    Index counts[3];
    for (int f = 0; f < 3; ++f) counts[f] = (uTerms[term] >> f & 1U) != 0 ? sizes.levels[f] : 1;
    Index cell = 0;
    for (Index i = 0; i < counts[0]; ++i) {
        for (Index j = 0; j < counts[1]; ++j) {
            for (Index k = 0; k < counts[2]; ++k) {
                writeTermLevels(report, term, {i, j, k});
                write(cell++);
                endRow(report);
            }
        }
    }
}

void writeSaturatedTerm(Report& report, const LogLinearResult& result, int term) {
    writeTermLetters(report, term);
    char standardized[32];
    std::snprintf(standardized, sizeof standardized, "std.%s", termNames[term]);
    for (const char* label : {termNames[term], "std.e.", static_cast<const char*>(standardized)}) {
        writeLabelCell(report, label);
    }
    endRow(report);
    const double* estimates = result.saturated.estimates[uTerms[term]].data();
    const double* errors = result.saturated.errors[uTerms[term]].data();
    writeTermLines(report, result.sizes, term, [&](Index cell) {
        writeValue(report, estimates[cell], 6);
        writeValue(report, errors[cell], 6);
        writeValue(report, estimates[cell] / errors[cell], 6);
    });
}

// The models' numbers over their columns: a name cell and empty ones each.
void writeTableHeader(Report& report, const LogLinearResult& result) {
    const Index columns = result.sizes.levels[2];
    char name[32];
    report.lower.append("  n,    ,    ,    ");
    for (const SelectedModel& each : result.selected) {
        std::snprintf(name, sizeof name, "LLM(%2d)", each.model + 1);
        writeName(report, name);
        for (Index k = 1; k < columns; ++k) writeName(report, "");
    }
    report.lower.append("\n   ,    ,    ,    ");
    for (int model = 0; model < 2; ++model) {
        for (Index k = 0; k < columns; ++k) {
            std::snprintf(name, sizeof name, "C%d", static_cast<int>(k) + 1);
            writeName(report, name);
        }
    }
    endRow(report);
}

// The counts of one A and B level, then what each model expects and leaves.
void writeTableRows(Report& report, const LogLinearResult& result, Index first) {
    const Index columns = result.sizes.levels[2];
    const std::int32_t* observed = result.observed.data() + first;
    for (int model = 0; model < 2; ++model) {
        for (Index k = 0; k < columns; ++k) {
            report.lower.append(",");
            report.lower.appendInteger(observed[k], report.formats.width);
        }
    }
    report.lower.append("\n   ,    ,    , exp");
    for (const SelectedModel& each : result.selected) {
        for (Index k = 0; k < columns; ++k) writeValue(report, each.expected[first + k], 6);
    }
    report.lower.append("\n   ,    ,    , res");
    for (const SelectedModel& each : result.selected) {
        for (Index k = 0; k < columns; ++k) writeValue(report, observed[k] - each.expected[first + k], 6);
    }
    endRow(report);
}

void writeTable(Report& report, const LogLinearResult& result) {
    const auto [a, b, c] = result.sizes.levels;
    writeTableHeader(report, result);
    char row[32], column[32];
    for (Index i = 0; i < a; ++i) {
        std::snprintf(row, sizeof row, "A%d", static_cast<int>(i) + 1);
        for (Index j = 0; j < b; ++j) {
            std::snprintf(column, sizeof column, "B%d", static_cast<int>(j) + 1);
            if (j == 0) {
                report.lower.appendFormat("%3d,%4s,%4s, obs", static_cast<int>(i) + 1, row, column);
            } else {
                report.lower.appendFormat("   ,    ,%4s, obs", column);
            }
            writeTableRows(report, result, (i * b + j) * c);
        }
    }
}

void writeSelectedTerms(Report& report, const LogLinearResult& result) {
    report.lower.append("  n,    ,    ,    ");
    char name[32];
    for (const SelectedModel& each : result.selected) {
        std::snprintf(name, sizeof name, "LLM(%2d)", each.model + 1);
        writeLabelCell(report, name);
        writeLabelCell(report, "");
    }
    endRow(report);
    for (int term = 0; term < uTermCount - 1; ++term) {
        writeTermLetters(report, term);
        for (int model = 0; model < 2; ++model) {
            writeLabelCell(report, termNames[term]);
            writeLabelCell(report, "std.e.");
        }
        endRow(report);
        writeTermLines(report, result.sizes, term, [&](Index cell) {
            for (const SelectedModel& each : result.selected) {
                writeValue(report, each.terms.estimates[uTerms[term]][cell], 6);
                writeValue(report, each.terms.errors[uTerms[term]][cell], 6);
            }
        });
    }
}

} // namespace

ErrorCode LogLinearResult::allocate(const ThreeWaySizes& tableSizes) {
    sizes = tableSizes;
    ErrorCode code = observed.allocate(sizes.cells()) | saturated.allocate(sizes, true);
    for (SelectedModel& each : selected) {
        code |= each.expected.allocate(sizes.cells()) | each.terms.allocate(sizes, false);
    }
    return code;
}

void writeLogLinearTables(Report& report, const LogLinearResult& result) {
    report.lower.append("\tmodel list sorted, AIC value, chi square, freedom\n");
    writeModelHeader(report);
    for (const double model : result.ranking) writeModel(report, result, static_cast<int>(model));
    report.lower.append("\n\testimated u-terms under saturated models -- main effects, two and three factors "
                        "interactions\n");
    for (int term = 0; term < uTermCount; ++term) writeSaturatedTerm(report, result, term);
    report.lower.append("\n\tlog linear models selected\n");
    writeModelHeader(report);
    for (const SelectedModel& each : result.selected) writeModel(report, result, each.model);
    report.lower.append("\n\tfrequency contingency cross table observed, expected and residual\n");
    writeTable(report, result);
    report.lower.append(
        "\n\testimated u-terms of selected models -- main effects and two factors interactions\n");
    writeSelectedTerms(report, result);
    report.lower.append("\n");
}
