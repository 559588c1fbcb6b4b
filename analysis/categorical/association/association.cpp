#include "analysis/categorical/association/association.h"

#include <array>
#include <cstdio>
#include <span>

#include "analysis/categorical/association/association_measures.h"
#include "analysis/run/run_report.h"
#include "data/category_cross_table.h"
#include "report/category_rows.h"
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

    // For the layout that is there. Returns success or outOfMemory.
    [[nodiscard]] ErrorCode allocate() {
        const Index variables = layout.first.size();
        const Index pairs = variables * (variables - 1) / 2;
        return crossTable.allocate(layout) | marginal.allocate(layout.totalCategories) |
               chiSquares.allocate(pairs) | lambda.allocate(pairs) | gamma.allocate(pairs) |
               tau.allocate(pairs);
    }
};

void count(const DataMatrix& data, AssociationWork& work) {
    fillCrossTable(data, work.layout, work.crossTable);
    for (Index g = 0; g < work.marginal.size(); ++g) work.marginal[g] = work.crossTable.at(g, g);
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

// Without memory for its scratch the stage leaves zeros, and the run goes on.
template <class Count>
void measureOrder(const DataMatrix& data, double (*tau)(const OrderedPairs<Count>&), AssociationWork& work) {
    Block<std::int32_t> below;
    if (below.allocate(work.layout.totalCategories) != success) return;
    forEachPair(data, work, [&](Index pair, const ContingencyTable& table) {
        const OrderedPairs<Count> pairs = countOrderedPairs<Count>(table, below.data());
        work.gamma[pair] = goodmanKruskalGamma(pairs);
        work.tau[pair] = tau(pairs);
    });
}

// The measures of ordered categories come with the tau of the same numerics.
template <class Count>
ErrorCode compute(Screens& screens, const DataMatrix& data, double (*tau)(const OrderedPairs<Count>&),
                  AssociationWork& work) {
    count(data, work);
    ErrorCode code = screens.setProgress(30);
    if (code != success) return code;
    forEachPair(data, work, [&](Index pair, const ContingencyTable& table) {
        work.chiSquares[pair] = chiSquareFamily<Count>(table);
    });
    code = screens.setProgress(60);
    if (code != success) return code;
    forEachPair(data, work, [&](Index pair, const ContingencyTable& table) {
        work.lambda[pair] = goodmanKruskalLambda(table);
    });
    code = screens.setProgress(90);
    if (code != success) return code;
    if (work.scale == orderScale) measureOrder(data, tau, work);
    return screens.setProgress(100);
}

// Where nothing wraps, either width of counts gives the same bits; without untied pairs there is no gamma.
void noteDeviations(AnalysisRun& run, const AssociationWork& work) {
    if (run.numerics->textbook) return;
    const bool isOrder = work.scale == orderScale;
    bool chiSquareDiffers = false, gammaDiffers = false, tauDiffers = false;
    std::int32_t below[mostCategories];
    forEachPair(run.data.working, work, [&](Index pair, const ContingencyTable& table) {
        const ChiSquareFamily family = chiSquareFamily<std::int64_t>(table);
        chiSquareDiffers = chiSquareDiffers || work.chiSquares[pair].chiSquare != family.chiSquare ||
                           work.chiSquares[pair].cramer != family.cramer;
        if (!isOrder) return;
        const OrderedPairs<std::int64_t> pairs = countOrderedPairs<std::int64_t>(table, below);
        if (pairs.concordant + pairs.discordant == 0) return;
        gammaDiffers = gammaDiffers || work.gamma[pair] != goodmanKruskalGamma(pairs);
        tauDiffers = tauDiffers || work.tau[pair] != kendallTauB(pairs);
    });
    if (chiSquareDiffers) noteDeviation(run, "chi.s, r.m.c.phi, c.c.c, cr.v, ts.t");
    if (gammaDiffers) noteDeviation(run, "g.k.gamma");
    if (tauDiffers) noteDeviation(run, "k.tau");
}

constexpr int countWidth = 5;
constexpr CellFormat measureCell = {12, 6};

void writeCrossTable(Report& report, const DataSet& data, const AssociationWork& work) {
    writeCaption(report, "cross table of category");
    writeNumberedHeader(report, work.layout.totalCategories, countWidth);
    writeCategoryRows(report, work.layout, data.working.names, [&](Index g) {
        for (Index h = 0; h <= g; ++h) writeInteger(report, work.crossTable.at(g, h), countWidth);
    });
    endTable(report);
}

// A row for each pair with the numbers that valuesOf(pair) returns.
template <class ValuesOf>
void writePairs(Report& report, Index variables, std::span<const char* const> headings, ValuesOf valuesOf) {
    WriteNamedHeader(report, headings, measureCell.width);
    char label[64];
    Index pair = 0;
    for (Index i = 1; i <= variables; ++i) {
        for (Index j = i + 1; j <= variables; ++j, ++pair) {
            std::snprintf(label, sizeof label, "var%2td - var%2td", i, j);
            writeCells(report, pair + 1, label, valuesOf(pair), measureCell);
        }
    }
    endTable(report);
}

void writeAccordance(Report& report, const DataSet& data, const AssociationWork& work) {
    writeCaption(report, "chi square, accordance coefficients -- root mean square contingency phi, "
                         "coefficient of contingency c");
    writeCaption(report, "association measures -- cramer's v, tschuprow's t, goodman-kruskul's lamda");
    constexpr const char* headings[] = {"chi.s", "r.m.c.phi", "c.c.c", "cr.v", "ts.t", "g.k.lamda"};
    writePairs(report, data.working.variables, headings, [&](Index pair) {
        const ChiSquareFamily& family = work.chiSquares[pair];
        return std::array{family.chiSquare, family.phi,       family.contingency,
                          family.cramer,    family.tschuprow, work.lambda[pair]};
    });
}

void writeOrder(Report& report, const DataSet& data, const AssociationWork& work) {
    writeCaption(report,
                 "association measures -- goodman-kruskul's gamma, kendall's tau, -- in case of order scale");
    constexpr const char* headings[] = {"g.k.gamma", "k.tau"};
    writePairs(report, data.working.variables, headings, [&](Index pair) {
        return std::array{work.gamma[pair], work.tau[pair]};
    });
}

constexpr ReportOpening ofOrder = {.title = "association measures analysis statistics",
                                   .option = "-- order scale data",
                                   .status = "association measures analysis statistics -- order scale data"};
constexpr ReportOpening ofNominal = {.title = "association measures analysis statistics",
                                     .option = "-- nominal scale data",
                                     .status =
                                         "association measures analysis statistics -- nominal scale data"};

void writeReport(AnalysisRun& run, const AssociationWork& work) {
    Report& report = run.report;
    openReport(run, work.scale == orderScale ? ofOrder : ofNominal);
    writeCrossTable(report, run.data, work);
    writeAccordance(report, run.data, work);
    if (work.scale == orderScale) writeOrder(report, run.data, work);
}

ErrorCode runAssociationAnalysis(Screens& screens, AnalysisRun& run) {
    const DataMatrix& data = run.data.working;
    AssociationWork work;
    work.scale = run.options.settings.association.scale;
    ErrorCode code = CategoricalCheck(data, data.variables, work.layout);
    if (code == success) code = work.allocate();
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) {
        code = run.numerics->textbook ? compute(screens, data, kendallTauB, work)
                                      : compute(screens, data, twiceKendallTau, work);
    }
    screens.hideProgress();
    if (code != success) return code;

    noteDeviations(run, work);
    writeReport(run, work);
    closeReport(screens, run.report);
    return success;
}

} // namespace

const Analysis associationAnalysis = {.fields = fields, .driver = runAssociationAnalysis};
