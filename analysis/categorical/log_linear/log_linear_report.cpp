#include "analysis/categorical/log_linear/log_linear_report.h"

#include <cstdio>

#include "report/cells.h"

namespace {

constexpr int modelWidth = 46;
constexpr int levelWidth = 4; // of the cells that say where a row stands

constexpr const char* termNames[uTermCount] = {"uA(i)",   "uB(j)",   "uC(k)",    "uAB(ij)",
                                               "uAC(ik)", "uBC(jk)", "uABC(ijk)"};

struct CellText {
    char text[32];
};

// "A1", "A2", ... of a level from 0.
CellText levelName(char factor, Index level) {
    CellText name;
    std::snprintf(name.text, sizeof name.text, "%c%td", factor, level + 1);
    return name;
}

CellText modelName(const SelectedLogLinearModel& selected) {
    CellText name;
    std::snprintf(name.text, sizeof name.text, "LLM(%2td)", selected.model + 1);
    return name;
}

// What a cell says of factor f in a u-term: its letter or its level (from 0), nothing for a factor that is
// not in the term.
CellText letterIn(FactorSet term, Index f) {
    return {{hasFactor(term, f) ? "ijk"[f] : '\0', '\0'}};
}

CellText levelIn(FactorSet term, Index f, Index level) {
    CellText text = {};
    if (hasFactor(term, f)) std::snprintf(text.text, sizeof text.text, "%td", level + 1);
    return text;
}

void writeHeading(Report& report, const char* heading) {
    writeText(report, heading, report.formats.labelWidth);
}

void writeLevel(Report& report, const char* text) {
    writeText(report, text, levelWidth);
}

void writeModelHeader(Report& report) {
    startHeader(report, "model", modelWidth);
    for (const char* heading : {"AIC", "chi.s", "freedom"}) writeHeading(report, heading);
    endRow(report);
}

void writeModel(Report& report, const LogLinearResult& result, Index model) {
    startRow(report, model + 1, logLinearModelTexts().data()[model], modelWidth);
    writeValue(report, result.aic[model], 6);
    writeValue(report, result.chiSquares[model], 6);
    writeInteger(report, result.freedom[model], report.formats.labelWidth);
    endRow(report);
}

void writeModelList(Report& report, const LogLinearResult& result) {
    writeModelHeader(report);
    for (const double model : result.ranking) writeModel(report, result, static_cast<Index>(model));
    endTable(report);
}

void writeSelectedModels(Report& report, const LogLinearResult& result) {
    writeModelHeader(report);
    for (const SelectedLogLinearModel& each : result.selected) writeModel(report, result, each.model);
    endTable(report);
}

// The line over the numbers of a u-term; headings follow.
void startTerm(Report& report, Index term) {
    startRow(report, term + 1, letterIn(uTerms[term], 0).text, levelWidth);
    for (Index f = 1; f < 3; ++f) writeLevel(report, letterIn(uTerms[term], f).text);
}

// A line for each level combination of a term, the first index slowest, with the values that `write` adds for
// its cell.
template <class Write>
void writeTermLines(Report& report, const ThreeWaySizes& sizes, FactorSet term, Write write) {
    Index cell = 0;
    visitCells(sizes, term, [&](Index i, Index j, Index k) {
        startUnnumberedRow(report, levelIn(term, 0, i).text, levelWidth);
        writeLevel(report, levelIn(term, 1, j).text);
        writeLevel(report, levelIn(term, 2, k).text);
        write(cell++);
        endRow(report);
    });
}

void writeSaturatedTerm(Report& report, const LogLinearResult& result, Index term) {
    CellText standardized;
    std::snprintf(standardized.text, sizeof standardized.text, "std.%s", termNames[term]);
    startTerm(report, term);
    writeHeading(report, termNames[term]);
    writeHeading(report, "std.e.");
    writeHeading(report, standardized.text);
    endRow(report);
    const Block<double>& estimates = result.saturated.estimates[uTerms[term]];
    const Block<double>& errors = result.saturated.errors[uTerms[term]];
    writeTermLines(report, result.sizes, uTerms[term], [&](Index cell) {
        writeValue(report, estimates[cell], 6);
        writeValue(report, errors[cell], 6);
        writeValue(report, estimates[cell] / errors[cell], 6);
    });
}

void writeSaturatedTerms(Report& report, const LogLinearResult& result) {
    for (Index term = 0; term < uTermCount; ++term) writeSaturatedTerm(report, result, term);
    endTable(report);
}

// Three empty cells; headings follow.
void startLevelHeader(Report& report) {
    startHeader(report, "", levelWidth);
    for (Index f = 1; f < 3; ++f) writeLevel(report, "");
}

// A row that goes on with the levels above it; values follow.
void startTableRow(Report& report, const char* levelB, const char* content) {
    startUnnumberedRow(report, "", levelWidth);
    writeLevel(report, levelB);
    writeLevel(report, content);
}

// The models' numbers over their columns: a name cell and empty ones each.
void writeTableHeader(Report& report, const LogLinearResult& result) {
    const Index columns = result.sizes.levels[2];
    startLevelHeader(report);
    for (const SelectedLogLinearModel& each : result.selected) {
        writeName(report, modelName(each).text);
        for (Index k = 1; k < columns; ++k) writeName(report, "");
    }
    endRow(report);
    startTableRow(report, "", "");
    for (Index model = 0; model < 2; ++model) {
        for (Index k = 0; k < columns; ++k) writeName(report, levelName('C', k).text);
    }
    endRow(report);
}

// The counts of one A and B level, whose cells begin at `first`, then what each model expects and leaves.
void writeTableRows(Report& report, const LogLinearResult& result, Index first) {
    const Index columns = result.sizes.levels[2];
    const std::int32_t* observed = result.observed.data() + first;
    for (Index model = 0; model < 2; ++model) {
        for (Index k = 0; k < columns; ++k) writeInteger(report, observed[k], report.formats.width);
    }
    endRow(report);
    startTableRow(report, "", "exp");
    for (const SelectedLogLinearModel& each : result.selected) {
        for (Index k = 0; k < columns; ++k) writeValue(report, each.expected[first + k], 6);
    }
    endRow(report);
    startTableRow(report, "", "res");
    for (const SelectedLogLinearModel& each : result.selected) {
        for (Index k = 0; k < columns; ++k) writeValue(report, observed[k] - each.expected[first + k], 6);
    }
    endRow(report);
}

void writeTable(Report& report, const LogLinearResult& result) {
    const auto [a, b, c] = result.sizes.levels;
    Index first = 0;
    writeTableHeader(report, result);
    for (Index i = 0; i < a; ++i) {
        for (Index j = 0; j < b; ++j, first += c) {
            if (j == 0) {
                startRow(report, i + 1, levelName('A', i).text, levelWidth);
                writeLevel(report, levelName('B', j).text);
                writeLevel(report, "obs");
            } else {
                startTableRow(report, levelName('B', j).text, "obs");
            }
            writeTableRows(report, result, first);
        }
    }
    endTable(report);
}

void writeSelectedTerms(Report& report, const LogLinearResult& result) {
    startLevelHeader(report);
    for (const SelectedLogLinearModel& each : result.selected) {
        writeHeading(report, modelName(each).text);
        writeHeading(report, "");
    }
    endRow(report);
    for (Index term = 0; term < uTermCount - 1; ++term) {
        startTerm(report, term);
        for (Index model = 0; model < 2; ++model) {
            writeHeading(report, termNames[term]);
            writeHeading(report, "std.e.");
        }
        endRow(report);
        writeTermLines(report, result.sizes, uTerms[term], [&](Index cell) {
            for (const SelectedLogLinearModel& each : result.selected) {
                writeValue(report, each.terms.estimates[uTerms[term]][cell], 6);
                writeValue(report, each.terms.errors[uTerms[term]][cell], 6);
            }
        });
    }
    endTable(report);
}

} // namespace

ErrorCode LogLinearResult::allocate(const ThreeWaySizes& tableSizes) {
    sizes = tableSizes;
    ErrorCode code = observed.allocate(sizes.cells()) | saturated.allocate(sizes, true);
    for (SelectedLogLinearModel& each : selected) {
        code |= each.expected.allocate(sizes.cells()) | each.terms.allocate(sizes, false);
    }
    return code;
}

void writeLogLinearTables(Report& report, const LogLinearResult& result) {
    writeCaption(report, "model list sorted, AIC value, chi square, freedom");
    writeModelList(report, result);
    writeCaption(report, "estimated u-terms under saturated models -- main effects, two and three factors "
                         "interactions");
    writeSaturatedTerms(report, result);
    writeCaption(report, "log linear models selected");
    writeSelectedModels(report, result);
    writeCaption(report, "frequency contingency cross table observed, expected and residual");
    writeTable(report, result);
    writeCaption(report, "estimated u-terms of selected models -- main effects and two factors interactions");
    writeSelectedTerms(report, result);
}
