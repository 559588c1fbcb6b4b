#include "analysis/basic/event_models/event_model_report.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "analysis/run/run_report.h"
#include "numeric/incomplete_gamma.h"
#include "report/tables.h"

void openEventReport(AnalysisRun& run, const char* title, const EventColumns& columns,
                     std::initializer_list<Index> iterations) {
    const DataMatrix& data = run.data.working;
    char time[100] = "", counts[64] = "", option[720];
    if (columns.time != 0)
        std::snprintf(time, sizeof time, "time variable is %s, ", data.name(columns.time - 1));
    for (const Index count : iterations) {
        const std::size_t used = std::strlen(counts);
        std::snprintf(counts + used, sizeof counts - used, "%s%td", used > 0 ? " and " : "", count);
    }
    std::snprintf(option, sizeof option, "-- state variable is %s, %sdivisional value is %s, %s iterations",
                  data.name(columns.state - 1), time, numberText(columns.division, 0, 6).text, counts);
    openReport(run, {.title = title, .option = option});
}

void writeCoefficients(Report& report, const DataMatrix& data, const EventData& events,
                       const EventCoefficients& coefficients, const char* ratio) {
    const char* headings[] = {"coefficient", "s.error", "wald.chi", "chi.prob", ratio};
    WriteNamedHeader(report, std::span(headings, ratio != nullptr ? 5 : 4), wideCell.width);
    for (Index j = 0; j < coefficients.values.size(); ++j) {
        const bool constant = j == events.covariates;
        const double value = coefficients.values[j];
        const double root = value / coefficients.errors[j];
        startRow(report, constant ? 0 : j + 1, constant ? "constant" : data.name(events.covariateColumns[j]));
        writeCell(report, value, wideCell);
        writeCell(report, coefficients.errors[j], wideCell);
        writeCell(report, root * root, wideCell);
        writeCell(report, ChiSquareUpperTail(root * root, 1.0), wideCell);
        if (ratio != nullptr) writeCell(report, std::exp(value), wideCell);
        endRow(report);
    }
    endTable(report);
}

void writeLikelihoodHeader(Report& report) {
    constexpr const char* headings[] = {"log.likelihood", "AIC"};
    WriteNamedHeader(report, headings, wideCell.width);
}

void writeLikelihoodRow(Report& report, Index number, const char* label, double likelihood,
                        Index parameters) {
    const double values[] = {likelihood, -2.0 * likelihood + 2.0 * static_cast<double>(parameters)};
    writeCells(report, number, label, values, wideCell);
}

void writeLikelihoodRatio(Report& report, double null, double fitted, Index covariates) {
    const double chiSquare = 2.0 * (fitted - null);
    constexpr const char* headings[] = {"chi.square", "deg.free", "chi.prob"};
    writeCaption(report, "likelihood ratio chi square, degree of freedom, chi prob");
    WriteNamedHeader(report, headings, wideCell.width);
    startRow(report, 1, "model");
    writeCell(report, chiSquare, wideCell);
    writeInteger(report, covariates, wideCount.width);
    writeCell(report, ChiSquareUpperTail(chiSquare, static_cast<double>(covariates)), wideCell);
    endRow(report);
    endTable(report);
}
