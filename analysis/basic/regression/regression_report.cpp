#include "analysis/basic/regression/regression_report.h"

#include <cmath>
#include <cstdio>

#include "analysis/run/run_report.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

constexpr int processWidth = 12;
constexpr int coefficientWidth = 18;
constexpr int coefficientDecimals = 12;
constexpr int sampleWidth = 12;
constexpr int sampleSlot = 6;

constexpr const char* methodNames[] = {"", "forward regression in/out", "backward regression out/in",
                                       "forward selection in", "backward elimination out"};
constexpr const char* criterionNames[] = {"AIC value", "f value"};
constexpr const char* markNames[] = {"none", "in", "out"};

// What every table reads.
struct Tables {
    Report& report;
    const DataMatrix& data;
    const RegressionResult& result;
    int nameLength;
    int labelLength;

    const char* nameOf(std::int32_t column) const { return data.name(column); }
    const char* modelName(std::int32_t place) const { return nameOf(result.fit.variables[place]); }
};

template <int count> void writeHeader(Report& report, const char* const (&names)[count], int width) {
    WriteNamedHeader(report, names, count, width);
}

void writeCoefficient(Report& report, double value) {
    writeCell(report, value, {coefficientWidth, coefficientDecimals});
}

void writeDegrees(const Tables& tables) {
    Report& report = tables.report;
    report.lower.append("\tdegree of terms\n");
    writeHeader(report, {"degree"}, tables.nameLength);
    for (std::int32_t v = 0; v < tables.data.variables - 1; ++v) {
        const double* degree = tables.result.degrees.data() + v;
        WriteValueRow(report, degree, 1, 6, tables.nameOf(v), v + 1);
    }
    report.lower.append("\n");
}

void writeProcess(const Tables& tables, const RegressionOptions& options) {
    Report& report = tables.report;
    report.lower.appendFormat("\tprocess of %s due to %s\n", methodNames[options.method],
                              criterionNames[options.criterion == 1 ? 1 : 0]);
    writeHeader(report, {"variable", "in/out", "m.c.det", "f.value", "AIC"}, processWidth);
    const StepwiseSelection& selection = tables.result.selection;
    for (std::int32_t k = 0; k < selection.stepCount; ++k) {
        const SelectionStep& step = selection.steps[k];
        char label[32];
        std::snprintf(label, sizeof label, "%d step", k + 1);
        startRow(report, k + 1, label);
        report.lower.appendFormat(",%*.*s,%*s", processWidth, tables.nameLength, tables.nameOf(step.variable),
                                  processWidth, markNames[static_cast<int>(step.mark)]);
        for (const double value : {step.determination, step.f, step.aic}) {
            writeCell(report, value, {processWidth, 6});
        }
        endRow(report);
    }
    report.lower.append("\n");
}

void writeCoefficients(const Tables& tables) {
    Report& report = tables.report;
    const RegressionFit& fit = tables.result.fit;
    report.lower.append("\tpartial regression coefficient, standard error, f value, f prob\n");
    writeHeader(report, {"p.r.coefficient", "s.error", "f.value", "f.probability"}, coefficientWidth);
    for (std::int32_t k = 0; k < fit.count; ++k) {
        const Index j = k;
        startRow(report, k + 1, tables.modelName(k));
        for (const double value :
             {fit.coefficients[j], fit.errors[j], fit.fValues[j], fit.fProbabilities[j]}) {
            writeCoefficient(report, value);
        }
        endRow(report);
    }
    startRow(report, 0, "constant");
    writeCoefficient(report, fit.constant);
    endRow(report);
    report.lower.append("\n");
}

void writeStandardized(const Tables& tables) {
    Report& report = tables.report;
    const RegressionFit& fit = tables.result.fit;
    report.lower.append("\tstandard partial regression coefficient, partial correlation coefficient\n");
    writeHeader(report, {"s.p.r.coefficient", "p.c.coefficient"}, coefficientWidth);
    for (std::int32_t k = 0; k < fit.count; ++k) {
        const Index j = k;
        startRow(report, k + 1, tables.modelName(k));
        writeCoefficient(report, fit.standardized[j]);
        writeCoefficient(report, fit.partial[j]);
        endRow(report);
    }
}

void writeDeterminations(const Tables& tables) {
    Report& report = tables.report;
    const RegressionFit& fit = tables.result.fit;
    constexpr const char* labels[RegressionFit::determinationCount] = {"model value", "adjusted",
                                                                       "re-adjusted"};
    report.lower.append("\tmultiple coefficient of determination, multiple correlation coefficient, f value, "
                        "f probability\n");
    writeHeader(report, {"m.c.determination", "m.c.coefficient", "f.value", "f.probability"},
                coefficientWidth);
    for (int k = 0; k < RegressionFit::determinationCount; ++k) {
        startRow(report, k + 1, labels[k]);
        writeCoefficient(report, fit.determinations[k]);
        writeCoefficient(report, std::sqrt(fit.determinations[k]));
        if (k == 0) {
            writeCoefficient(report, fit.fValues[fit.count]);
            writeCoefficient(report, fit.fProbabilities[fit.count]);
        }
        endRow(report);
    }
    report.lower.append("\n");
}

void writeSamples(const Tables& tables) {
    Report& report = tables.report;
    const RegressionResult& result = tables.result;
    const RegressionFit& fit = result.fit;
    const Index samples = tables.data.samples;
    report.lower.append(
        "\tmesure, prediction, infimum and supremum as effective coverage, standardized residual\n");
    report.lower.append("\t-- effective coverage due to alpha is ");
    report.lower.appendNumber(fit.alpha, 0, 6);
    report.lower.append("\n");
    writeHeader(report, {"measure", "prediction", "infimum", "supremum", "residual", "s.residual"},
                sampleWidth);

    const double* const residuals = fit.standardizedResiduals.data();
    const TableFormats residualFormats =
        formatsForMagnitude(largestMagnitude(residuals, samples), sampleWidth, tables.labelLength);
    SetFormatsFromValues(report, result.predictions.data(), samples, sampleWidth, tables.labelLength);
    const Index stride = tables.data.variables;
    for (Index i = 0; i < samples; ++i) {
        const double measure = tables.data.values[i * stride + stride - 1];
        startRow(report, static_cast<int>(i) + 1, tables.data.label(i));
        writeValue(report, measure, sampleSlot);
        writeValue(report, result.predictions[i], sampleSlot);
        if (fit.alpha != 0.0) {
            writeValue(report, result.infima[i], sampleSlot);
            writeValue(report, result.suprema[i], sampleSlot);
        } else {
            report.lower.append(",               ,               ");
        }
        writeValue(report, measure - result.predictions[i], sampleSlot);
        writeCell(report, residuals[i], {residualFormats.width, residualFormats.decimals[sampleSlot]});
        endRow(report);
    }
    report.lower.append("\n");
}

void writeTitle(Report& report, const CurveModel& model) {
    report.lower.clear();
    report.status.clear();
    if (model.name == nullptr) {
        report.lower.append("\nmultiple regression analysis statistics\n");
        report.status.append("status : multiple regression analysis statistics");
        return;
    }
    report.lower.append("\nnon-linear multiple regression analysis statistics\n");
    report.lower.appendFormat("-- %s curve\n\n", model.name);
    report.status.append("status : non-linear multiple regression analysis statistics");
}

} // namespace

void writeRegressionReport(Screens& screens, AnalysisRun& run, const RegressionOptions& options,
                           const RegressionResult& result) {
    const Settings& settings = run.options.settings;
    const Tables tables = {run.report, run.data.working, result, settings.variableStringLength,
                           settings.sampleStringLength};
    writeTitle(run.report, result.model);
    SetFormatsFromData(run.report, run.data, tables.nameLength, tables.labelLength);
    if (result.model.hasDegrees) writeDegrees(tables);
    if (isStepwise(options)) writeProcess(tables, options);
    writeCoefficients(tables);
    writeStandardized(tables);
    writeDeterminations(tables);
    writeSamples(tables);
    screens.showLower(run.report);
    screens.showStatus(run.report);
}
