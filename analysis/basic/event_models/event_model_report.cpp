#include "analysis/basic/event_models/event_model_report.h"

#include <cmath>

#include "analysis/run/run_report.h"
#include "numeric/incomplete_gamma.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

const char* columnName(const DataSet& data, std::int32_t column) {
    return data.working.name(column - 1);
}

} // namespace

void writeEventStart(AnalysisRun& run, const char* title, const EventColumns& columns) {
    const Settings& settings = run.options.settings;
    Report& report = run.report;
    report.status.clear();
    report.status.append("status : ");
    report.status.append(title);
    report.lower.clear();
    report.lower.appendFormat("\n%s\n-- state variable is %s, ", title, columnName(run.data, columns.state));
    if (columns.time != 0)
        report.lower.appendFormat("time variable is %s, ", columnName(run.data, columns.time));
    report.lower.append("divisional value is ");
    report.lower.appendNumber(columns.division, 0, 6);
    SetFormatsFromData(report, run.data, settings.variableStringLength, settings.sampleStringLength);
}

void writeEventHeader(Report& report, std::span<const char* const> names) {
    WriteNamedHeader(report, names.data(), static_cast<int>(names.size()), eventColumnWidth);
}

void writeEventValue(Report& report, double value) {
    writeCell(report, value, {eventColumnWidth, eventDecimals});
}

void writeEventCount(Report& report, double value) {
    writeCell(report, value, {eventColumnWidth, 0});
}

void writeCoefficients(Report& report, const DataSet& data, const EventData& events,
                       const EventCoefficients& coefficients, const char* ratio) {
    const char* names[] = {"coefficient", "s.error", "wald.chi", "chi.prob", ratio};
    writeEventHeader(report, std::span(names, ratio != nullptr ? 5 : 4));
    for (Index j = 0; j < coefficients.values.size(); ++j) {
        const bool constant = j == events.covariates;
        const char* name = constant ? "constant" : columnName(data, events.columns[j]);
        const double value = coefficients.values[j];
        const double root = value / coefficients.errors[j];
        startRow(report, constant ? 0 : static_cast<int>(j) + 1, name);
        writeEventValue(report, value);
        writeEventValue(report, coefficients.errors[j]);
        writeEventValue(report, root * root);
        writeEventValue(report, ChiSquareUpperTail(root * root, 1.0));
        if (ratio != nullptr) writeEventValue(report, std::exp(value));
        endRow(report);
    }
    report.lower.append("\n");
}

void writeLikelihoodHeader(Report& report) {
    constexpr const char* names[] = {"log.likelihood", "AIC"};
    writeEventHeader(report, names);
}

void writeLikelihoodRow(Report& report, int number, const char* label, double likelihood, Index parameters) {
    startRow(report, number, label);
    writeEventValue(report, likelihood);
    writeEventValue(report, -2.0 * likelihood + 2.0 * static_cast<double>(parameters));
    endRow(report);
}

void writeLikelihoodRatio(Report& report, double null, double fitted, Index covariates) {
    const double chiSquare = 2.0 * (fitted - null);
    const double freedom = static_cast<double>(covariates);
    constexpr const char* names[] = {"chi.square", "deg.free", "chi.prob"};
    report.lower.append("\tlikelihood ratio chi square, degree of freedom, chi prob\n");
    writeEventHeader(report, names);
    startRow(report, 1, "model");
    writeEventValue(report, chiSquare);
    writeEventCount(report, freedom);
    writeEventValue(report, ChiSquareUpperTail(chiSquare, freedom));
    endRow(report);
    report.lower.append("\n");
}
