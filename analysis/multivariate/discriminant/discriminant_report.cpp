#include "analysis/multivariate/discriminant/discriminant_report.h"

#include <cstdio>

#include "analysis/run/run_report.h"
#include "data/categories.h"
#include "report/tables.h"

namespace {

// The first `columns` values of a row of a matrix.
std::span<const double> firstOf(const double* row, Index columns) {
    return {row, row + columns};
}

// The first `columns` values of the row of each group.
void writeGroupRows(Report& report, const Matrix& values, Index columns) {
    for (Index g = 0; g < values.rows(); ++g) {
        writeCells(report, g + 1, numberedName("group", g).text, firstOf(values.row(g), columns), wideCell);
    }
}

// The first `columns` values of the row of each selected variable.
void writeVariableRows(Report& report, const DataMatrix& data, const VariableSelection& selection,
                       const Matrix& values, Index columns) {
    for (Index i = 0; i < values.rows(); ++i) {
        const char* name = data.name(selection.order[i]);
        writeCells(report, i + 1, name, firstOf(values.row(i), columns), wideCell);
    }
}

void writeExplanatoryNames(Report& report, const DataMatrix& data, Index variables) {
    startHeader(report);
    for (Index j = 0; j < variables; ++j) writeText(report, data.name(j), wideCell.width);
    endRow(report);
}

void writeCounts(Report& report, const GroupStatistics& statistics) {
    writeCaption(report, "sample number of each group");
    startHeader(report, "group");
    writeText(report, "sample number", wideCount.width);
    endRow(report);
    for (Index g = 0; g < statistics.groups; ++g) {
        WriteIntegerRow(report, &statistics.counts[g], wideCount.width, numberedName("group", g).text, g + 1);
    }
    endTable(report);
}

void writeMeans(Report& report, const DataMatrix& data, const GroupStatistics& statistics) {
    writeCaption(report, "mean value of each group");
    writeExplanatoryNames(report, data, statistics.variables);
    writeGroupRows(report, statistics.groupMeans, statistics.variables);
    endTable(report);
}

void writePooledCovariance(Report& report, const DataMatrix& data, const GroupStatistics& statistics) {
    writeCaption(report, "covariance matrix");
    writeExplanatoryNames(report, data, statistics.variables);
    for (Index i = 0; i < statistics.variables; ++i) {
        startRow(report, i + 1, data.name(i));
        for (Index j = 0; j <= i; ++j) {
            writeCell(report, statistics.within(i, j) / statistics.withinFreedom(), wideCell);
        }
        endRow(report);
    }
    endTable(report);
}

void writeGroupCovariances(Report& report, const GroupStatistics& statistics) {
    writeCaption(report, "group covariance matrix");
    writeCaption(report, "compression of upper trigonometric matrix of covariance");
    startHeader(report);
    char name[64];
    for (Index i = 1; i <= statistics.variables; ++i) {
        for (Index j = i; j <= statistics.variables; ++j) {
            std::snprintf(name, sizeof name, "var%td & var%td", i, j);
            writeText(report, name, wideCell.width);
        }
    }
    endRow(report);
    for (Index g = 0; g < statistics.groups; ++g) {
        startRow(report, g + 1, numberedName("group", g).text);
        for (const double sum : firstOf(statistics.groupSums.row(g), statistics.groupSums.columns())) {
            writeCell(report, sum / (statistics.counts[g] - 1), wideCell);
        }
        endRow(report);
    }
    endTable(report);
}

void writeBox(Report& report, const BoxTest& box) {
    constexpr const char* headings[] = {"determinant"};
    writeCaption(report, "box M test : determinant of covariance matrix of each group");
    WriteNamedHeader(report, headings, wideCell.width);
    writeCellRow(report, 1, "pooled", box.determinants[0], wideCell);
    for (Index g = 1; g < box.determinants.size(); ++g) {
        writeCellRow(report, g + 1, numberedName("group", g - 1).text, box.determinants[g], wideCell);
    }
    endTable(report);
    writeCaption(report, "box M test : chi square probabilities");
    writeCellRow(report, 1, "chi.square", box.chiSquare, wideCell);
    writeCellRow(report, 2, "chi.prob", box.probability, wideCell);
    writeCellRow(report, 3, "chi.free", box.freedom, wideCount);
    endTable(report);
}

void writeSelection(Report& report, const DataMatrix& data, const VariableSelection& selection) {
    constexpr const char* headings[] = {"f.value", "f.prob", "1st.free", "2nd.free"};
    writeCaption(report,
                 "variables selected due to stepwise of forward selection due to f stats equal wilks-lamda");
    WriteNamedHeader(report, headings, wideCell.width);
    for (Index i = 0; i < selection.selected; ++i) {
        startRow(report, i + 1, data.name(selection.order[i]));
        writeCell(report, selection.f[i], wideCell);
        writeCell(report, selection.probability[i], wideCell);
        writeCell(report, selection.firstFreedom[i], wideCount);
        writeCell(report, selection.secondFreedom[i], wideCount);
        endRow(report);
    }
    endTable(report);
}

void writeFisher(Report& report, const DataMatrix& data, const DiscriminantResult& result) {
    const DiscriminantFunctions& functions = result.functions;
    writeCaption(report, "linear discriminant coefficient");
    writeVariableRows(report, data, result.selection, functions.coefficients, 1);
    writeCellRow(report, 0, "constant", functions.constants[0], wideCell);
    endTable(report);
    writeCaption(report, "mahalanobis D2 stats, error rate of plug-in method");
    writeCellRow(report, 1, "mahalanobis", functions.mahalanobis, wideCell);
    writeCellRow(report, 2, "error rate", functions.errorRate, wideCell);
    endTable(report);
    writeCaption(report, "f stats equal Hotelling T2 of canonical vector");
    writeCellRow(report, 1, "f.value", functions.hotellingF, wideCell);
    writeCellRow(report, 2, "f.prob", functions.hotellingProbability, wideCell);
    writeCellRow(report, 3, "1st.free", functions.hotellingFreedom[0], wideCount);
    writeCellRow(report, 4, "2nd.free", functions.hotellingFreedom[1], wideCount);
    endTable(report);
    constexpr const char* headings[] = {"b.centre"};
    writeCaption(report, "bary-centre of group in discrimiinant space");
    WriteNamedHeader(report, headings, wideCell.width);
    writeGroupRows(report, functions.centroids, 1);
    endTable(report);
}

void writeRoots(Report& report, const DiscriminantFunctions& functions) {
    const Index dimensions = functions.dimensions;
    writeCaption(report, "eigen value and chi square stats of Bartlett");
    WriteVectorHeader(report, dimensions, wideCell.width);
    writeCells(report, 1, "eigen", firstOf(functions.eigenvalues.begin(), dimensions), wideCell);
    writeCells(report, 2, "chi square", functions.chiSquare, wideCell);
    writeCells(report, 3, "chi prob", functions.probability, wideCell);
    writeCells(report, 4, "chi free", functions.freedom, wideCount);
    endTable(report);
}

void writeCanonical(Report& report, const DataMatrix& data, const DiscriminantResult& result, double alpha) {
    const DiscriminantFunctions& functions = result.functions;
    const Index vectors = functions.vectors;
    writeCaptionFormat(report, "vector number in case of canonical alpha is %s",
                       numberText(alpha, 5, 3).text);
    startRow(report, 1, "vector");
    writeInteger(report, vectors, wideCount.width);
    endRow(report);
    endTable(report);
    writeCaption(report, "canonical discriminant coefficient");
    WriteVectorHeader(report, vectors, wideCell.width);
    writeVariableRows(report, data, result.selection, functions.coefficients, vectors);
    writeCells(report, 0, "constant", firstOf(functions.constants.begin(), vectors), wideCell);
    endTable(report);
    writeCaption(report, "standardized canonical discriminant coefficient");
    WriteVectorHeader(report, vectors, wideCell.width);
    writeVariableRows(report, data, result.selection, functions.standardized, vectors);
    endTable(report);
    writeRoots(report, functions);
    writeCaption(report, "bary-centre of group in canonical discrimiinant space");
    WriteVectorHeader(report, vectors, wideCell.width);
    writeGroupRows(report, functions.centroids, vectors);
    endTable(report);
}

void writeClassification(Report& report, const DiscriminantFunctions& functions, Index groups) {
    writeCaption(report, "number of discriminated group from prior group");
    WritePrefixedHeader(report, groups, "d.group", "", wideCount.width);
    const std::int32_t* count = functions.crossed.begin();
    for (Index prior = 0; prior < groups; ++prior) {
        startRow(report, prior + 1, numberedName("p.group", prior).text);
        for (Index g = 0; g < groups; ++g) writeInteger(report, *count++, wideCount.width);
        endRow(report);
    }
    endTable(report);
}

void writeScores(Report& report, const DataMatrix& data, const DiscriminantFunctions& functions) {
    const Index vectors = functions.vectors;
    writeCaption(report, "discriminant score");
    startHeader(report);
    writeText(report, "p.group", wideCount.width);
    writeText(report, "d.group", wideCount.width);
    for (Index v = 0; v < vectors; ++v) writeText(report, numberedName("vector", v).text, wideCell.width);
    endRow(report);
    for (Index s = 0; s < data.samples; ++s) {
        startRow(report, s + 1, data.label(s));
        writeInteger(report, categoryOf(data, s, data.variables - 1) + 1, wideCount.width);
        writeInteger(report, functions.assigned[s] + 1, wideCount.width);
        for (const double score : firstOf(functions.scores.row(s), vectors)) {
            writeCell(report, score, wideCell);
        }
        endRow(report);
    }
    endTable(report);
}

} // namespace

ErrorCode DiscriminantResult::allocate(const DataMatrix& data, Index groups) {
    return statistics.allocate(data, groups) | box.allocate(groups) | selection.allocate(data.variables - 1);
}

void writeDiscriminantReport(AnalysisRun& run, const DiscriminantResult& result) {
    const DiscriminantOptions& options = run.options.settings.discriminant;
    const DataMatrix& data = run.data.working;
    const bool isFisher = result.statistics.groups == 2;
    Report& report = run.report;
    openReport(run, {.title = "discriminant analysis statistics",
                     .option = isFisher ? "-- fisher's discriminant analysis model"
                                        : "-- canonical discriminant analysis model"});
    writeCounts(report, result.statistics);
    writeMeans(report, data, result.statistics);
    writePooledCovariance(report, data, result.statistics);
    writeGroupCovariances(report, result.statistics);
    if (options.testBoxM != 0) writeBox(report, result.box);
    if (options.forwardSelection != 0) writeSelection(report, data, result.selection);
    if (isFisher) {
        writeFisher(report, data, result);
    } else {
        writeCanonical(report, data, result, options.canonAlpha);
    }
    if (data.moments != nullptr) return; // there are no samples to classify
    writeClassification(report, result.functions, result.statistics.groups);
    writeScores(report, data, result.functions);
}
