#include "analysis/categorical/log_linear/log_linear_report.h"

#include <cstdio>

#include "report/tables.h"

namespace {

void writeLabelCell(Report& report, const char* label) {
    report.lower.append(",");
    WriteLabel(report, label);
}

void writeModelHeader(Report& report) {
    report.lower.appendFormat("  n,%46s", "model");
    for (const char* label : {"AIC", "chi.s", "freedom"}) writeLabelCell(report, label);
    WriteRowEnd(report);
}

void writeModel(Report& report, const LogLinearResult& result, int model) {
    report.lower.appendFormat("%3d,%46s", model + 1, logLinearModelTexts()[static_cast<std::size_t>(model)]);
    WriteValue(report, result.aic[model], 6);
    WriteValue(report, result.chiSquares[model], 6);
    report.lower.append(",");
    report.lower.appendInteger(result.freedom[model], report.formats.labelWidth);
    WriteRowEnd(report);
}

// What stands before the numbers of a u-term: its number and letters, then its levels line by line.
void writeTermLetters(Report& report, int term) {
    report.lower.appendFormat("%3d", term + 1);
    for (int f = 0; f < 3; ++f) {
        const char letter[] = {(uTerms[term] >> f & 1U) != 0 ? "ijk"[f] : ' ', '\0'};
        report.lower.appendFormat(",%4s", letter);
    }
}

void writeTermLevels(Report& report, int term, const std::size_t (&levels)[3]) {
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
    std::size_t counts[3];
    for (int f = 0; f < 3; ++f) counts[f] = (uTerms[term] >> f & 1U) != 0 ? sizes.levels[f] : 1;
    std::size_t cell = 0;
    for (std::size_t i = 0; i < counts[0]; ++i) {
        for (std::size_t j = 0; j < counts[1]; ++j) {
            for (std::size_t k = 0; k < counts[2]; ++k) {
                writeTermLevels(report, term, {i, j, k});
                write(cell++);
                WriteRowEnd(report);
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
    WriteRowEnd(report);
    const double* estimates = result.saturated.estimates[uTerms[term]].data();
    const double* errors = result.saturated.errors[uTerms[term]].data();
    writeTermLines(report, result.sizes, term, [&](std::size_t cell) {
        WriteValue(report, estimates[cell], 6);
        WriteValue(report, errors[cell], 6);
        WriteValue(report, estimates[cell] / errors[cell], 6);
    });
}

// The models' numbers over their columns: a name cell and empty ones each.
void writeTableHeader(Report& report, const LogLinearResult& result) {
    const std::size_t columns = result.sizes.levels[2];
    char name[32];
    report.lower.append("  n,    ,    ,    ");
    for (const SelectedModel& each : result.selected) {
        std::snprintf(name, sizeof name, "LLM(%2d)", each.model + 1);
        WriteName(report, name);
        for (std::size_t k = 1; k < columns; ++k) WriteName(report, "");
    }
    report.lower.append("\n   ,    ,    ,    ");
    for (int model = 0; model < 2; ++model) {
        for (std::size_t k = 0; k < columns; ++k) {
            std::snprintf(name, sizeof name, "C%d", static_cast<int>(k) + 1);
            WriteName(report, name);
        }
    }
    WriteRowEnd(report);
}

// The counts of one A and B level, then what each model expects and leaves.
void writeTableRows(Report& report, const LogLinearResult& result, std::size_t first) {
    const std::size_t columns = result.sizes.levels[2];
    const std::int32_t* observed = result.observed.data() + first;
    for (int model = 0; model < 2; ++model) {
        for (std::size_t k = 0; k < columns; ++k) {
            report.lower.append(",");
            report.lower.appendInteger(observed[k], report.formats.width);
        }
    }
    report.lower.append("\n   ,    ,    , exp");
    for (const SelectedModel& each : result.selected) {
        for (std::size_t k = 0; k < columns; ++k) WriteValue(report, each.expected[first + k], 6);
    }
    report.lower.append("\n   ,    ,    , res");
    for (const SelectedModel& each : result.selected) {
        for (std::size_t k = 0; k < columns; ++k)
            WriteValue(report, observed[k] - each.expected[first + k], 6);
    }
    WriteRowEnd(report);
}

void writeTable(Report& report, const LogLinearResult& result) {
    const auto [a, b, c] = result.sizes.levels;
    writeTableHeader(report, result);
    char row[32], column[32];
    for (std::size_t i = 0; i < a; ++i) {
        std::snprintf(row, sizeof row, "A%d", static_cast<int>(i) + 1);
        for (std::size_t j = 0; j < b; ++j) {
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
    WriteRowEnd(report);
    for (int term = 0; term < uTermCount - 1; ++term) {
        writeTermLetters(report, term);
        for (int model = 0; model < 2; ++model) {
            writeLabelCell(report, termNames[term]);
            writeLabelCell(report, "std.e.");
        }
        WriteRowEnd(report);
        writeTermLines(report, result.sizes, term, [&](std::size_t cell) {
            for (const SelectedModel& each : result.selected) {
                WriteValue(report, each.terms.estimates[uTerms[term]][cell], 6);
                WriteValue(report, each.terms.errors[uTerms[term]][cell], 6);
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
