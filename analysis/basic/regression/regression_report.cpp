#include "analysis/basic/regression/regression_report.h"

#include <cmath>
#include <cstdio>

#include "analysis/run/run_report.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

constexpr CellFormat processCell = {12, stepDecimals};
constexpr int sampleWidth = 12;
constexpr int sampleSlot = 6;
// Of a limit that was not computed; wider than the others, so that spreadsheets find it in the same place.
constexpr int missingLimitWidth = 15;

constexpr const char* methodNames[] = {"", "forward regression in/out", "backward regression out/in",
                                       "forward selection in", "backward elimination out"};
constexpr const char* criterionNames[] = {"AIC value", "f value"};
constexpr const char* markNames[] = {"none", "in", "out"};

void writeDegrees(Report& report, const DataMatrix& data, const RegressionResult& result) {
    constexpr const char* headings[] = {"degree"};
    const TableFormats ofData = report.formats;
    SetFormatsFromValues(report, result.degrees.data(), data.variables - 1);
    writeCaption(report, "degree of terms");
    WriteNamedHeader(report, headings, report.formats.nameLength);
    for (Index v = 0; v < data.variables - 1; ++v) {
        WriteValueRow(report, &result.degrees[v], 1, 6, data.name(v), v + 1);
    }
    endTable(report);
    report.formats = ofData;
}

void writeProcess(Report& report, const DataMatrix& data, const RegressionOptions& options,
                  const StepwiseSelection& selection) {
    constexpr const char* headings[] = {"variable", "in/out", "m.c.det", "f.value", "AIC"};
    writeCaptionFormat(report, "process of %s due to %s", methodNames[options.method],
                       criterionNames[options.criterion == 1 ? 1 : 0]);
    WriteNamedHeader(report, headings, processCell.width);
    report.formats.width = processCell.width; // names are cut to their own length
    for (Index k = 0; k < selection.stepCount; ++k) {
        const SelectionStep& step = selection.steps[k];
        char label[32];
        std::snprintf(label, sizeof label, "%td step", k + 1);
        startRow(report, k + 1, label);
        writeName(report, data.name(step.variable));
        writeText(report, markNames[static_cast<int>(step.mark)], processCell.width);
        for (const double value : {step.determination, step.f, step.aic}) {
            writeCell(report, value, processCell);
        }
        endRow(report);
    }
    endTable(report);
}

void writeCoefficients(Report& report, const DataMatrix& data, const RegressionFit& fit) {
    constexpr const char* headings[] = {"p.r.coefficient", "s.error", "f.value", "f.probability"};
    writeCaption(report, "partial regression coefficient, standard error, f value, f prob");
    WriteNamedHeader(report, headings, wideCell.width);
    for (Index j = 0; j < fit.count; ++j) {
        const double values[] = {fit.coefficients[j], fit.errors[j], fit.fValues[j], fit.fProbabilities[j]};
        writeCells(report, j + 1, data.name(fit.variables[j]), values, wideCell);
    }
    writeCellRow(report, 0, "constant", fit.constant, wideCell);
    endTable(report);
}

// The table of the determinations follows without an empty line.
void writeStandardized(Report& report, const DataMatrix& data, const RegressionFit& fit) {
    constexpr const char* headings[] = {"s.p.r.coefficient", "p.c.coefficient"};
    writeCaption(report, "standard partial regression coefficient, partial correlation coefficient");
    WriteNamedHeader(report, headings, wideCell.width);
    for (Index j = 0; j < fit.count; ++j) {
        const double values[] = {fit.standardized[j], fit.partial[j]};
        writeCells(report, j + 1, data.name(fit.variables[j]), values, wideCell);
    }
}

// Of a determination. Adjusting can take more than there is; nothing is left then.
double correlationOf(double determination, bool isAdjusted) {
    return isAdjusted && determination < 0.0 ? 0.0 : std::sqrt(determination);
}

void writeDeterminations(Report& report, const RegressionFit& fit) {
    constexpr const char* headings[] = {"m.c.determination", "m.c.coefficient", "f.value", "f.probability"};
    constexpr const char* labels[RegressionFit::determinationCount] = {"model value", "adjusted",
                                                                       "re-adjusted"};
    writeCaption(report, "multiple coefficient of determination, multiple correlation coefficient, f value, "
                         "f probability");
    WriteNamedHeader(report, headings, wideCell.width);
    for (int k = 0; k < RegressionFit::determinationCount; ++k) {
        startRow(report, k + 1, labels[k]);
        writeCell(report, fit.determinations[k], wideCell);
        writeCell(report, correlationOf(fit.determinations[k], k > 0), wideCell);
        if (k == 0) {
            writeCell(report, fit.fValues[fit.count], wideCell);
            writeCell(report, fit.fProbabilities[fit.count], wideCell);
        }
        endRow(report);
    }
    endTable(report);
}

void writeLimits(Report& report, const RegressionResult& result, Index sample) {
    if (result.fit.alpha != 0.0) {
        writeValue(report, result.infima[sample], sampleSlot);
        writeValue(report, result.suprema[sample], sampleSlot);
    } else {
        writeText(report, "", missingLimitWidth);
        writeText(report, "", missingLimitWidth);
    }
}

void writeSamples(Report& report, const DataMatrix& data, const RegressionResult& result) {
    constexpr const char* headings[] = {"measure",  "prediction", "infimum",
                                        "supremum", "residual",   "s.residual"};
    const Block<double>& residuals = result.fit.standardizedResiduals;
    const int labelWidth = report.formats.labelWidth;
    writeCaption(report,
                 "mesure, prediction, infimum and supremum as effective coverage, standardized residual");
    writeCoverage(report, result.fit.alpha);
    WriteNamedHeader(report, headings, sampleWidth);

    const TableFormats residualFormats =
        formatsForMagnitude(largestMagnitude(residuals.data(), residuals.size()), sampleWidth, labelWidth);
    const CellFormat residualCell = {residualFormats.width, residualFormats.decimals[sampleSlot]};
    SetFormatsFromValues(report, result.predictions.data(), result.predictions.size(), sampleWidth,
                         labelWidth);
    for (Index s = 0; s < data.samples; ++s) {
        const double measure = data.at(s, data.variables - 1);
        startRow(report, s + 1, data.label(s));
        writeValue(report, measure, sampleSlot);
        writeValue(report, result.predictions[s], sampleSlot);
        writeLimits(report, result, s);
        writeValue(report, measure - result.predictions[s], sampleSlot);
        writeCell(report, residuals[s], residualCell);
        endRow(report);
    }
    endTable(report);
}

void openRegressionReport(AnalysisRun& run, const CurveModel& model) {
    if (model.name == nullptr) {
        openReport(run, {.title = "multiple regression analysis statistics", .isSpaced = false});
        return;
    }
    char option[64];
    std::snprintf(option, sizeof option, "-- %s curve", model.name);
    openReport(run, {.title = "non-linear multiple regression analysis statistics", .option = option});
}

} // namespace

void writeRegressionReport(AnalysisRun& run, const RegressionOptions& options,
                           const RegressionResult& result) {
    Report& report = run.report;
    const DataMatrix& data = run.data.working;
    openRegressionReport(run, result.model);
    if (result.model.hasDegrees) writeDegrees(report, data, result);
    if (isStepwise(options)) writeProcess(report, data, options, result.selection);
    writeCoefficients(report, data, result.fit);
    writeStandardized(report, data, result.fit);
    writeDeterminations(report, result.fit);
    if (data.moments == nullptr) writeSamples(report, data, result);
}

void writeCoverage(Report& report, double alpha) {
    char text[64 + numberSize]; // an alpha can have 300 digits
    std::snprintf(text, sizeof text, "-- effective coverage due to alpha is %s",
                  numberText(alpha, 0, 6).text);
    writeCaption(report, text);
}
