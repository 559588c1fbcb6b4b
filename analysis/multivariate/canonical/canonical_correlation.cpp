#include "analysis/multivariate/canonical/canonical_correlation.h"

#include <algorithm>
#include <cstdio>

#include "analysis/multivariate/canonical/canonical_variates.h"
#include "analysis/run/run_report.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

const OptionField fields[] = {
    {.type = OptionType::variables,
     .name = "purpose",
     .help = "the variables of one group; all others form the other group",
     .offset = offsetof(AnalysisOptions, purposes),
     .control = 2301,
     .count = AnalysisOptions::purposeCount},
};

const char* refuse(const AnalysisOptions& options, std::uint32_t) {
    const auto isChosen = [](std::int32_t variable) { return variable != 0; };
    const bool any = std::any_of(std::begin(options.purposes), std::end(options.purposes), isChosen);
    return any ? nullptr : "please select at least one purpose variable";
}

void writeStatistics(Report& report, const CanonicalVariates& variates) {
    report.lower.append(
        "\teigen value, correlation, wilks lambda, chi square, chi prob, degree of freedom\n");
    startHeader(report);
    writeText(report, "all", report.formats.nameLength);
    for (int k = 2; k <= variates.pairs; ++k) {
        char name[textSlotSize];
        std::snprintf(name, sizeof name, "factor %d", k);
        writeText(report, name, report.formats.nameLength);
    }
    endRow(report);

    const struct {
        const char* label;
        const Block<double>& values;
        int slot;
    } rows[] = {
        {"eigen", variates.squares, 6},           {"correlation", variates.correlations, 6},
        {"wilks.l", variates.wilks, 6},           {"chi.square", variates.chiSquare, 6},
        {"chi.prob", variates.chiProbability, 6}, {"deg.free", variates.freedom, 0},
    };
    int number = 0;
    for (const auto& row : rows) {
        SetFormatsFromValues(report, row.values.data(), variates.correlations.size());
        WriteValueRow(report, row.values.data(), variates.pairs, row.slot, row.label, ++number);
    }
    report.lower.append("\n");
}

void writeRao(Report& report, const CanonicalVariates& variates) {
    const struct {
        const char* label;
        double value;
        int decimals;
    } rows[] = {
        {"f.value", variates.raoF, 12},
        {"f.probability", variates.raoProbability, 12},
        {"deg.free.1", variates.raoFreedom1, 0},
        {"deg.free.2", variates.raoFreedom2, 0},
    };
    report.lower.append("\trao stats as f.value, f.probability, degree of freedom 1 and 2\n");
    int number = 0;
    for (const auto& row : rows) {
        startRow(report, ++number, row.label);
        writeCell(report, row.value, {18, row.decimals});
        endRow(report);
    }
    report.lower.append("\n");
}

void writeRedundancy(Report& report, const CanonicalVariates& variates) {
    report.lower.append("\tredundancy coefficient of variables\n");
    WritePrefixedHeader(report, variates.pairs, "factor", "total", report.formats.nameLength);
    SetFormatsFromValues(report, variates.redundancy.data(), variates.redundancy.size());
    WriteValueRow(report, variates.redundancy.data(), variates.pairs + 1, 6, "explanatory", 1);
    WriteValueRow(report, &variates.redundancy[variates.redundancy.size() / 2], variates.pairs + 1, 6,
                  "purpose", 2);
    report.lower.append("\n");
}

void writeMatrix(Report& report, const char* title, const Block<double>& matrix, int rows, int pairs,
                 const RowLabels& names) {
    SetFormatsFromValues(report, matrix.data(), matrix.size());
    report.lower.append(title);
    WriteFactorTable(report, rows, pairs, matrix.data(), pairs, names);
}

void writeReport(Screens& screens, AnalysisRun& run, const CanonicalVariates& variates) {
    const Settings& settings = run.options.settings;
    const TextList& names = run.data.working.names;
    const int q1 = variates.q1, q2 = variates.q2, m = variates.pairs;
    Report& report = run.report;
    report.lower.clear();
    report.lower.append("\ncanonical correlation analysis statistics\n");
    report.status.clear();
    report.status.append("status : canonical correlation analysis statistics");

    SetFormatsFromData(report, run.data, settings.variableStringLength, settings.sampleStringLength);
    writeStatistics(report, variates);
    writeRao(report, variates);
    writeRedundancy(report, variates);
    writeMatrix(report, "\tweight coefficient matrix of explanatory variables\n", variates.explanatoryWeights,
                q1, m, names);
    writeMatrix(report, "\tweight coefficient matrix of purpose variables\n", variates.purposeWeights, q2, m,
                RowLabels(names, q1));
    report.lower.append("\n");
    writeMatrix(report, "\tstructure matrix of explanatory variables\n", variates.explanatoryStructure, q1, m,
                names);
    writeMatrix(report, "\tstructure matrix of purpose variables\n", variates.purposeStructure, q2, m,
                RowLabels(names, q1));
    report.lower.append("\n");
    closeReport(screens, report);
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    reorderWorkingBySelection(run.data);
    if (run.data.otherCount == 0 || run.data.selectedCount == 0) return noEffectiveVariable;
    CanonicalVariates variates;
    ErrorCode code = variates.allocate(run.data.otherCount, run.data.selectedCount);
    if (code != success) return code;

    startProgress(screens, run.report);
    code = findCanonicalVariates(screens, run.data.working, variates);
    screens.hideProgress();
    if (code != success) return code;
    writeReport(screens, run, variates);
    return success;
}

} // namespace

const Analysis canonicalCorrelation = {
    .fields = fields, .driver = run, .refuse = refuse, .ownPurposes = &AnalysisRun::canonicalPurposes};
