#include "analysis/multivariate/canonical/canonical_correlation.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "analysis/multivariate/canonical/canonical_variates.h"
#include "analysis/run/build_picture.h"
#include "analysis/run/run_report.h"
#include "analysis/run/textbook_deviation.h"
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

unsigned momentNeeds(const AnalysisOptions&) {
    return needsCount;
}

// Success or outOfMemory.
ErrorCode noteDeviations(AnalysisRun& run, const CanonicalVariates& variates) {
    if (run.numerics->textbook) return success;
    const Index m = variates.pairs;
    const CanonicalTests& tests = variates.tests;
    CanonicalTests textbook;
    const ErrorCode code = textbook.allocate(m);
    if (code != success) return code;

    findCanonicalTests(textbookNumerics, {run.data.working.samples, variates.q1, variates.q2},
                       variates.squares, textbook);
    if (anyDeviates(tests.chiSquare, textbook.chiSquare, m)) noteDeviation(run, "chi.square");
    if (anyDeviates(tests.chiProbability, textbook.chiProbability, m)) noteDeviation(run, "chi.prob");
    if (deviates(tests.raoF, textbook.raoF)) noteDeviation(run, "f.value");
    if (deviates(tests.raoProbability, textbook.raoProbability)) noteDeviation(run, "f.probability");
    if (deviates(tests.raoFreedom2, textbook.raoFreedom2)) noteDeviation(run, "deg.free.2");
    return success;
}

void writeStatistics(Report& report, const CanonicalVariates& variates) {
    const CanonicalTests& tests = variates.tests;
    const struct {
        const char* label;
        const Block<double>& values;
        int slot;
    } rows[] = {
        {"eigen", variates.squares, 6},        {"correlation", variates.correlations, 6},
        {"wilks.l", tests.wilks, 6},           {"chi.square", tests.chiSquare, 6},
        {"chi.prob", tests.chiProbability, 6}, {"deg.free", tests.freedom, 0},
    };
    writeCaption(report, "eigen value, correlation, wilks lambda, chi square, chi prob, degree of freedom");
    startHeader(report);
    writeText(report, "all", report.formats.nameLength);
    for (Index k = 1; k < variates.pairs; ++k) {
        writeText(report, numberedName("factor", k).text, report.formats.nameLength);
    }
    endRow(report);
    Index number = 0;
    for (const auto& row : rows) {
        SetFormatsFromValues(report, row.values.data(), variates.pairs);
        WriteValueRow(report, row.values.data(), variates.pairs, row.slot, row.label, ++number);
    }
    endTable(report);
}

// Degrees of freedom are shown with decimals where they have some.
CellFormat freedomFormat(double freedom) {
    return std::isfinite(freedom) && std::trunc(freedom) != freedom ? wideCell : wideCount;
}

void writeRao(Report& report, const CanonicalTests& tests) {
    writeCaption(report, "rao stats as f.value, f.probability, degree of freedom 1 and 2");
    writeCellRow(report, 1, "f.value", tests.raoF, wideCell);
    writeCellRow(report, 2, "f.probability", tests.raoProbability, wideCell);
    writeCellRow(report, 3, "deg.free.1", tests.raoFreedom1, wideCount);
    writeCellRow(report, 4, "deg.free.2", tests.raoFreedom2, freedomFormat(tests.raoFreedom2));
    endTable(report);
}

void writeRedundancy(Report& report, const CanonicalVariates& variates) {
    const Matrix& redundancy = variates.redundancy;
    writeCaption(report, "redundancy coefficient of variables");
    WritePrefixedHeader(report, variates.pairs, "factor", "total", report.formats.nameLength);
    SetFormatsFromValues(report, redundancy);
    WriteValueRow(report, redundancy.row(0), redundancy.columns(), 6, "explanatory", 1);
    WriteValueRow(report, redundancy.row(1), redundancy.columns(), 6, "purpose", 2);
    endTable(report);
}

void writeMatrix(Report& report, const char* caption, const Matrix& matrix, const RowLabels& names) {
    SetFormatsFromValues(report, matrix);
    writeCaption(report, caption);
    WriteFactorTable(report, matrix, matrix.columns(), names);
}

void writeReport(AnalysisRun& run, const CanonicalVariates& variates) {
    const TextView& names = run.data.working.names;
    const RowLabels explanatory(names), purpose(names, variates.q1);
    Report& report = run.report;
    openReport(run, {.title = "canonical correlation analysis statistics", .isSpaced = false});
    writeStatistics(report, variates);
    writeRao(report, variates.tests);
    writeRedundancy(report, variates);
    writeMatrix(report, "weight coefficient matrix of explanatory variables", variates.explanatoryWeights,
                explanatory);
    writeMatrix(report, "weight coefficient matrix of purpose variables", variates.purposeWeights, purpose);
    endTable(report);
    writeMatrix(report, "structure matrix of explanatory variables", variates.explanatoryStructure,
                explanatory);
    writeMatrix(report, "structure matrix of purpose variables", variates.purposeStructure, purpose);
    endTable(report);
}

// The variates of a group whose first variable is column `first` of the data, by weights for standardized
// variables, from column `at` on.
void fillVariates(const DataMatrix& data, const MomentMatrices& moments, Index first, const Matrix& weights,
                  Index at, Matrix& variates) {
    for (Index s = 0; s < data.samples; ++s) {
        double* sums = variates.row(s) + at;
        for (Index i = 0; i < weights.rows(); ++i) {
            const Index v = first + i;
            const double standardized = (data.at(s, v) - moments.means[v]) / moments.sds[v];
            for (Index k = 0; k < weights.columns(); ++k) sums[k] += weights(i, k) * standardized;
        }
    }
}

// What the pictures are made of: pairs of variates beside each other, x for the explanatory variables.
struct CanonicalCharts {
    const CanonicalVariates& found;
    const Matrix& variates; // samples x 2 pairs, those of x first
};

ErrorCode describeVariates(const AnalysisRun& run, const CanonicalCharts& charts, Chart& chart) {
    const Index pair = run.pictureWish.axes[0], pairs = charts.found.pairs;
    if (pair >= pairs) {
        chart.refusal = "--axes: there are fewer pairs of variates";
        return success;
    }
    chart.title.set("canonical correlation %td: %.3f", pair + 1, charts.found.correlations[pair]);
    chart.across.title.set("variate x%td of the explanatory variables", pair + 1);
    chart.up.title.set("variate y%td of the purpose variables", pair + 1);
    ChartLayer* const layer = chart.addLayer(LayerKind::points, charts.variates.rows());
    if (layer == nullptr) return outOfMemory;
    layer->isOfSamples = true;
    for (Index s = 0; s < layer->size(); ++s) {
        layer->x[s] = charts.variates(s, pair);
        layer->y[s] = charts.variates(s, pairs + pair);
    }
    return layer->labels.copy(run.data.working.labels);
}

constexpr Picture pictures[] = {
    {"variates", "the samples on the first variates of both sides, or on pair I of --axes I,I", Picture::map,
     describeResult<CanonicalCharts, describeVariates>},
};

// Keeps the variates as columns and draws them, whichever is wanted. Success or outOfMemory.
ErrorCode useVariates(AnalysisRun& run, const CanonicalVariates& found) {
    if (!run.columns.areWanted && run.pictureWish.pictures.empty()) return success;
    const DataMatrix& data = run.data.working;
    Matrix variates;
    const Index m = found.pairs;
    ErrorCode code = variates.allocate(data.samples, 2 * m);
    if (code != success) return code;
    fillVariates(data, found.moments, 0, found.explanatoryWeights, 0, variates);
    fillVariates(data, found.moments, found.q1, found.purposeWeights, m, variates);
    code = keepColumns(run.columns, data.samples, 2 * m, [&](SampleColumns& columns) {
        char name[32];
        for (Index k = 0; k < 2 * m; ++k) {
            std::snprintf(name, sizeof name, "variate %c%td", k < m ? 'x' : 'y', k % m + 1);
            columns.add(name, [&](Index s) { return variates(s, k); });
        }
    });
    return code == success ? buildPicture<CanonicalCharts>(run, {found, variates}) : code;
}

ErrorCode keepVariateExpressions(AnalysisRun& run, const CanonicalVariates& found) {
    return keepExpressions(run.expressions, run.data, [&](ExpressionWriter& writer) {
        writer.addScores("variate x", found.moments, 0, found.explanatoryWeights);
        writer.addScores("variate y", found.moments, found.q1, found.purposeWeights);
    });
}

ErrorCode runCanonicalCorrelation(Screens& screens, AnalysisRun& run) {
    if (reorderWorkingBySelection(run.data) != success) return outOfMemory;
    if (run.data.otherCount == 0 || run.data.selectedCount == 0) return noEffectiveVariable;
    CanonicalVariates variates;
    ErrorCode code = variates.allocate(run.data.otherCount, run.data.selectedCount);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = findCanonicalVariates(screens, *run.numerics, run.data.working, variates);
    screens.hideProgress();
    if (code == success) code = noteDeviations(run, variates);
    if (code != success) return code;

    writeReport(run, variates);
    code = useVariates(run, variates);
    if (code == success) code = keepVariateExpressions(run, variates);
    if (code != success) return code;
    closeReport(screens, run.report);
    return success;
}

} // namespace

const Analysis canonicalCorrelation = {.fields = fields,
                                       .driver = runCanonicalCorrelation,
                                       .refuse = refuse,
                                       .momentNeeds = momentNeeds,
                                       .ownPurposes = &AnalysisRun::canonicalPurposes,
                                       .hasExpressions = true,
                                       .pictures = pictures};
