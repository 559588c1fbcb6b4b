#include "analysis/multivariate/discriminant/discriminant_report.h"

#include <cstdio>

#include "analysis/run/run_report.h"
#include "data/categories.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

// Every column of this report has this width.
constexpr int width = 18;
constexpr int decimals = 12;

void writeCells(Report& report, const double* values, Index count, int places = decimals) {
    for (Index k = 0; k < count; ++k) writeCell(report, values[k], {width, places});
}

void writeRow(Report& report, int number, const char* label, const double* values, Index count,
              int places = decimals) {
    startRow(report, number, label);
    writeCells(report, values, count, places);
    endRow(report);
}

void writeTitle(Report& report, const char* title) {
    report.lower.appendFormat("\t%s\n", title);
}

struct RowName {
    char text[24];
};

RowName numbered(const char* prefix, Index index) {
    RowName name;
    std::snprintf(name.text, sizeof name.text, "%s %d", prefix, static_cast<int>(index) + 1);
    return name;
}

int numberOf(Index index) {
    return static_cast<int>(index) + 1;
}

// One row of `columns` values for each group.
void writeGroupRows(Report& report, Index groups, Index columns, const double* values) {
    for (Index g = 0; g < groups; ++g) {
        writeRow(report, numberOf(g), numbered("group", g).text, values + g * columns, columns);
    }
}

// One row of `columns` values for each selected variable.
void writeVariableRows(Report& report, const DataMatrix& data, const VariableSelection& selection,
                       Index columns, const double* values) {
    for (Index i = 0; i < selection.selected; ++i) {
        const char* name = data.name(selection.order[i]);
        writeRow(report, numberOf(i), name, values + i * columns, columns);
    }
}

void writeExplanatoryNames(Report& report, const DataMatrix& data) {
    startHeader(report);
    for (Index j = 0; j + 1 < data.variables; ++j) {
        writeText(report, data.name(j), width);
    }
    endRow(report);
}

void writeCounts(Report& report, const GroupStatistics& statistics) {
    writeTitle(report, "sample number of each group");
    startHeader(report, "group");
    writeText(report, "sample number", width);
    endRow(report);
    for (Index g = 0; g < statistics.counts.size(); ++g) {
        const double count = statistics.counts[g];
        writeRow(report, numberOf(g), numbered("group", g).text, &count, 1, 0);
    }
    report.lower.append("\n");
}

void writeMeans(Report& report, const DataMatrix& data, const GroupStatistics& statistics) {
    writeTitle(report, "mean value of each group");
    writeExplanatoryNames(report, data);
    writeGroupRows(report, statistics.counts.size(), statistics.variables, statistics.groupMeans.data());
    report.lower.append("\n");
}

void writePooledCovariance(Report& report, const DataMatrix& data, const GroupStatistics& statistics) {
    const Index q = statistics.variables;
    writeTitle(report, "covariance matrix");
    writeExplanatoryNames(report, data);
    for (Index i = 0; i < q; ++i) {
        startRow(report, numberOf(i), data.name(i));
        for (Index j = 0; j <= i; ++j) {
            writeCell(report, statistics.within[i * q + j] / (statistics.samples - statistics.groups),
                      {width, decimals});
        }
        endRow(report);
    }
    report.lower.append("\n");
}

void writeGroupCovariances(Report& report, const GroupStatistics& statistics) {
    writeTitle(report, "group covariance matrix");
    writeTitle(report, "compression of upper trigonometric matrix of covariance");
    startHeader(report);
    char name[64];
    for (int i = 1; i <= statistics.variables; ++i) {
        for (int j = i; j <= statistics.variables; ++j) {
            std::snprintf(name, sizeof name, "var%d & var%d", i, j);
            writeText(report, name, width);
        }
    }
    endRow(report);
    const Index packed = statistics.packedSize();
    for (Index g = 0; g < statistics.counts.size(); ++g) {
        startRow(report, numberOf(g), numbered("group", g).text);
        for (Index k = 0; k < packed; ++k) {
            writeCell(report, statistics.groupSums[g * packed + k] / (statistics.counts[g] - 1),
                      {width, decimals});
        }
        endRow(report);
    }
    report.lower.append("\n");
}

void writeBox(Report& report, const BoxTest& box) {
    const char* const heading[] = {"determinant"};
    writeTitle(report, "box M test : determinant of covariance matrix of each group");
    WriteNamedHeader(report, heading, 1, width);
    writeRow(report, 1, "pooled", &box.determinants[0], 1);
    for (Index g = 1; g < box.determinants.size(); ++g) {
        writeRow(report, numberOf(g), numbered("group", g - 1).text, &box.determinants[g], 1);
    }
    report.lower.append("\n");
    writeTitle(report, "box M test : chi square probabilities");
    writeRow(report, 1, "chi.square", &box.chiSquare, 1);
    writeRow(report, 2, "chi.prob", &box.probability, 1);
    writeRow(report, 3, "chi.free", &box.degrees, 1, 0);
    report.lower.append("\n");
}

void writeSelection(Report& report, const DataMatrix& data, const VariableSelection& selection) {
    const char* const headings[] = {"f.value", "f.prob", "1st.free", "2nd.free"};
    writeTitle(report,
               "variables selected due to stepwise of forward selection due to f stats equal wilks-lamda");
    WriteNamedHeader(report, headings, 4, width);
    for (Index i = 0; i < selection.selected; ++i) {
        startRow(report, numberOf(i), data.name(selection.order[i]));
        writeCells(report, &selection.f[i], 1);
        writeCells(report, &selection.probability[i], 1);
        writeCells(report, &selection.firstDegrees[i], 1, 0);
        writeCells(report, &selection.secondDegrees[i], 1, 0);
        endRow(report);
    }
    report.lower.append("\n");
}

void writeFisher(Report& report, const DataMatrix& data, const DiscriminantResult& result) {
    const DiscriminantFunctions& functions = result.functions;
    writeTitle(report, "linear discriminant coefficient");
    writeVariableRows(report, data, result.selection, 1, functions.coefficients.data());
    writeRow(report, 0, "constant", functions.constants.data(), 1);
    report.lower.append("\n");
    writeTitle(report, "mahalanobis D2 stats, error rate of plug-in method");
    writeRow(report, 1, "mahalanobis", &functions.mahalanobis, 1);
    writeRow(report, 2, "error rate", &functions.errorRate, 1);
    report.lower.append("\n");
    writeTitle(report, "f stats equal Hotelling T2 of canonical vector");
    writeRow(report, 1, "f.value", &functions.hotellingF, 1);
    writeRow(report, 2, "f.prob", &functions.hotellingProbability, 1);
    writeRow(report, 3, "1st.free", &functions.hotellingDegrees[0], 1, 0);
    writeRow(report, 4, "2nd.free", &functions.hotellingDegrees[1], 1, 0);
    report.lower.append("\n");
    const char* const heading[] = {"b.centre"};
    writeTitle(report, "bary-centre of group in discrimiinant space");
    WriteNamedHeader(report, heading, 1, width);
    writeGroupRows(report, 2, 1, functions.centroids.data());
    report.lower.append("\n");
}

void writeCanonical(Report& report, const DataMatrix& data, double alpha, const DiscriminantResult& result) {
    const DiscriminantFunctions& functions = result.functions;
    const Index vectors = functions.vectors;
    const Index dimensions = functions.dimensions;
    const double count = functions.vectors;
    report.lower.append("\tvector number in case of canonical alpha is ");
    report.lower.appendNumber(alpha, 5, 3);
    report.lower.append("\n");
    writeRow(report, 1, "vector", &count, 1, 0);
    report.lower.append("\n");
    writeTitle(report, "canonical discriminant coefficient");
    WriteVectorHeader(report, functions.vectors, width);
    writeVariableRows(report, data, result.selection, vectors, functions.coefficients.data());
    writeRow(report, 0, "constant", functions.constants.data(), vectors);
    report.lower.append("\n");
    writeTitle(report, "standardized canonical discriminant coefficient");
    WriteVectorHeader(report, functions.vectors, width);
    writeVariableRows(report, data, result.selection, vectors, functions.standardized.data());
    report.lower.append("\n");
    writeTitle(report, "eigen value and chi square stats of Bartlett");
    WriteVectorHeader(report, functions.dimensions, width);
    writeRow(report, 1, "eigen", functions.eigenvalues.data(), dimensions);
    writeRow(report, 2, "chi square", functions.chiSquare.data(), dimensions);
    writeRow(report, 3, "chi prob", functions.probability.data(), dimensions);
    writeRow(report, 4, "chi free", functions.degrees.data(), dimensions, 0);
    report.lower.append("\n");
    writeTitle(report, "bary-centre of group in canonical discrimiinant space");
    WriteVectorHeader(report, functions.vectors, width);
    writeGroupRows(report, result.statistics.counts.size(), vectors, functions.centroids.data());
    report.lower.append("\n");
}

void writeClassification(Report& report, const DiscriminantFunctions& functions, Index groups) {
    writeTitle(report, "number of discriminated group from prior group");
    WritePrefixedHeader(report, static_cast<int>(groups), "d.group", "", width);
    for (Index g = 0; g < groups; ++g) {
        startRow(report, numberOf(g), numbered("p.group", g).text);
        for (Index to = 0; to < groups; ++to) {
            writeCell(report, functions.crossed[g * groups + to], {width, 0});
        }
        endRow(report);
    }
    report.lower.append("\n");
}

void writeScores(Report& report, const DataMatrix& data, const DiscriminantFunctions& functions) {
    const Index vectors = functions.vectors;
    writeTitle(report, "discriminant score");
    startHeader(report);
    writeText(report, "p.group", width);
    writeText(report, "d.group", width);
    for (Index v = 0; v < vectors; ++v) writeText(report, numbered("vector", v).text, width);
    endRow(report);
    for (std::int32_t s = 0; s < data.samples; ++s) {
        const Index i = s;
        startRow(report, s + 1, data.label(i));
        writeCell(report, categoryOf(data, s, data.variables - 1) + 1, {width, 0});
        writeCell(report, functions.assigned[i] + 1, {width, 0});
        writeCells(report, functions.scores.data() + i * vectors, vectors);
        endRow(report);
    }
    report.lower.append("\n");
}

} // namespace

ErrorCode DiscriminantResult::allocate(const DataMatrix& data, int groups) {
    const ErrorCode code = statistics.allocate(data, groups) | box.allocate(groups);
    return code | selection.allocate(statistics.variables) | functions.allocate(statistics);
}

void writeDiscriminantReport(Screens& screens, AnalysisRun& run, const DiscriminantResult& result) {
    const Settings& settings = run.options.settings;
    const DataMatrix& data = run.data.working;
    const bool isFisher = result.statistics.groups == 2;
    Report& report = run.report;
    report.lower.clear();
    report.lower.append("\ndiscriminant analysis statistics\n");
    report.lower.appendFormat("-- %s discriminant analysis model\n\n", isFisher ? "fisher's" : "canonical");
    report.status.clear();
    report.status.append("status : discriminant analysis statistics");

    SetFormatsFromData(report, run.data, settings.variableStringLength, settings.sampleStringLength);
    writeCounts(report, result.statistics);
    writeMeans(report, data, result.statistics);
    writePooledCovariance(report, data, result.statistics);
    writeGroupCovariances(report, result.statistics);
    if (settings.discriminant.testBoxM != 0) writeBox(report, result.box);
    if (settings.discriminant.forwardSelection != 0) writeSelection(report, data, result.selection);
    if (isFisher) {
        writeFisher(report, data, result);
    } else {
        writeCanonical(report, data, settings.discriminant.canonAlpha, result);
    }
    writeClassification(report, result.functions, result.statistics.counts.size());
    writeScores(report, data, result.functions);
    closeReport(screens, report);
}
