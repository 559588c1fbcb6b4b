#include "analysis/categorical/association/association.h"

#include <cstdio>
#include <span>

#include "analysis/categorical/association/association_measures.h"
#include "analysis/run/run_report.h"
#include "data/category_cross_table.h"
#include "report/category_rows.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

constexpr std::int32_t orderScale = 0;

constexpr const char* scales[] = {"order", "nominal"};

const OptionField fields[] = {
    {.type = OptionType::choice,
     .name = "scale",
     .help = "whether the categories have an order",
     .offset = offsetof(AnalysisOptions, settings.association.scale),
     .control = 3001,
     .choices = scales},
};

// The pairs (0,1), (0,2), ... (1,2), ... of variables, in this order.
struct AssociationWork {
    std::int32_t scale = orderScale;
    CategoryLayout layout;
    CategoryCrossTable crossTable;
    Block<std::int32_t> marginal; // frequency of each category
    Block<ChiSquareFamily> chiSquares;
    Block<double> lambda;
    Block<double> gamma;
    Block<double> tau;

    ErrorCode allocate() {
        const Index variables = layout.first.size();
        const Index pairs = variables * (variables - 1) / 2;
        return crossTable.allocate(layout) | marginal.allocate(layout.totalCategories) |
               chiSquares.allocate(pairs) | lambda.allocate(pairs) | gamma.allocate(pairs) |
               tau.allocate(pairs);
    }
};

void count(const DataMatrix& data, AssociationWork& work) {
    fillCrossTable(data, work.layout, work.crossTable);
    for (std::int32_t g = 0; g < work.layout.totalCategories; ++g) {
        work.marginal[g] = work.crossTable.at(g, g);
    }
}

// Calls measure(pair, table) for the table of each pair of variables.
template <class Measure>
void forEachPair(const DataMatrix& data, const AssociationWork& work, Measure measure) {
    const CategoryLayout& layout = work.layout;
    const Index stride = layout.totalCategories;
    Index pair = 0;
    for (Index i = 0; i < layout.first.size(); ++i) {
        for (Index j = i + 1; j < layout.first.size(); ++j, ++pair) {
            const Index row = layout.first[i];
            const Index column = layout.first[j];
            measure(pair, ContingencyTable{work.crossTable.counts.data() + row * stride + column, stride,
                                           work.marginal.data() + row, work.marginal.data() + column,
                                           layout.categoryCount[i], layout.categoryCount[j], data.samples});
        }
    }
}

// Without memory for its scratch the stage leaves zeros, and the run goes on: reports depend on this.
void measureOrder(const DataMatrix& data, AssociationWork& work) {
    Block<std::int32_t> below;
    if (below.allocate(work.layout.totalCategories) != success) return;
    forEachPair(data, work, [&](Index pair, const ContingencyTable& table) {
        const OrderedPairs pairs = countOrderedPairs(table, below.data());
        work.gamma[pair] = goodmanKruskalGamma(pairs);
        work.tau[pair] = twiceKendallTau(pairs);
    });
}

void compute(Screens& screens, const DataMatrix& data, AssociationWork& work) {
    count(data, work);
    screens.setProgress(30);
    forEachPair(data, work, [&](Index pair, const ContingencyTable& table) {
        work.chiSquares[pair] = chiSquareFamily(table);
    });
    screens.setProgress(60);
    forEachPair(data, work, [&](Index pair, const ContingencyTable& table) {
        work.lambda[pair] = goodmanKruskalLambda(table);
    });
    screens.setProgress(90);
    if (work.scale == orderScale) measureOrder(data, work);
    screens.setProgress(100);
}

void writeCrossTable(Report& report, const DataSet& data, const AssociationWork& work) {
    constexpr int width = 5;
    report.lower.append("\tcross table of category\n");
    writeNumberedHeader(report, work.layout.totalCategories, width);
    writeCategoryRows(report, work.layout, data.working.names, [&](Index g) {
        for (std::int32_t c = 0; c <= static_cast<std::int32_t>(g); ++c) {
            report.lower.append(",");
            report.lower.appendInteger(work.crossTable.at(static_cast<std::int32_t>(g), c), width);
        }
    });
    report.lower.append("\n");
}

constexpr int measureWidth = 12;

void writeMeasure(Report& report, double value) {
    writeCell(report, value, {measureWidth, 6});
}

// A row for each pair with the cells that writeCells(pair) adds.
template <class WriteCells>
void writePairs(Report& report, Index variables, std::span<const char* const> headings,
                WriteCells writeCells) {
    WriteNamedHeader(report, headings.data(), static_cast<int>(headings.size()), measureWidth);
    char label[40];
    Index pair = 0;
    for (Index i = 1; i <= variables; ++i) {
        for (Index j = i + 1; j <= variables; ++j, ++pair) {
            std::snprintf(label, sizeof label, "var%2d - var%2d", static_cast<int>(i), static_cast<int>(j));
            startRow(report, static_cast<int>(pair + 1), label);
            writeCells(pair);
            endRow(report);
        }
    }
    report.lower.append("\n");
}

void writeAccordance(Report& report, const AssociationWork& work) {
    report.lower.append("\tchi square, accordance coefficients -- root mean square contingency phi, "
                        "coefficient of contingency c\n"
                        "\tassociation measures -- cramer's v, tschuprow's t, goodman-kruskul's lamda\n");
    const char* const headings[] = {"chi.s", "r.m.c.phi", "c.c.c", "cr.v", "ts.t", "g.k.lamda"};
    writePairs(report, work.layout.first.size(), headings, [&](Index pair) {
        const ChiSquareFamily& family = work.chiSquares[pair];
        writeMeasure(report, family.chiSquare);
        writeMeasure(report, family.phi);
        writeMeasure(report, family.contingency);
        writeMeasure(report, family.cramer);
        writeMeasure(report, family.tschuprow);
        writeMeasure(report, work.lambda[pair]);
    });
}

void writeOrder(Report& report, const AssociationWork& work) {
    report.lower.append(
        "\tassociation measures -- goodman-kruskul's gamma, kendall's tau, -- in case of order scale\n");
    const char* const headings[] = {"g.k.gamma", "k.tau"};
    writePairs(report, work.layout.first.size(), headings, [&](Index pair) {
        writeMeasure(report, work.gamma[pair]);
        writeMeasure(report, work.tau[pair]);
    });
}

void writeReport(Screens& screens, AnalysisRun& run, const AssociationWork& work) {
    const Settings& settings = run.options.settings;
    const char* scale = work.scale == orderScale ? "order" : "nominal";
    Report& report = run.report;
    report.lower.clear();
    report.lower.appendFormat("\nassociation measures analysis statistics\n-- %s scale data\n\n", scale);
    report.status.clear();
    report.status.appendFormat("status : association measures analysis statistics -- %s scale data", scale);

    SetFormatsFromData(report, run.data, settings.variableStringLength, settings.sampleStringLength);
    writeCrossTable(report, run.data, work);
    writeAccordance(report, work);
    if (work.scale == orderScale) writeOrder(report, work);
    closeReport(screens, report);
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    const DataMatrix& data = run.data.working;
    AssociationWork work;
    work.scale = run.options.settings.association.scale;
    ErrorCode code = CategoricalCheck(data, data.variables, work.layout);
    if (code == success) code = work.allocate();
    if (code != success) return code;

    startProgress(screens, run.report);
    compute(screens, data, work);
    screens.hideProgress();
    writeReport(screens, run, work);
    return success;
}

} // namespace

const Analysis associationAnalysis = {.fields = fields, .driver = run};
