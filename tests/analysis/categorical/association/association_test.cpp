#include "analysis/categorical/association/association.h"

#include <random>

#include "analysis/categorical/association/association_measures.h"
#include "tests/support/analysis_session.h"

namespace {

constexpr int command = 720;

struct Table {
    std::vector<std::int32_t> counts, rowTotals, columnTotals;
    ContingencyTable view;

    Table(std::int32_t rows, std::int32_t columns, const std::vector<std::int32_t>& cells)
        : counts(cells), rowTotals(static_cast<std::size_t>(rows)),
          columnTotals(static_cast<std::size_t>(columns)) {
        std::int32_t samples = 0;
        for (std::size_t at = 0; at < counts.size(); ++at) {
            rowTotals[at / columnTotals.size()] += counts[at];
            columnTotals[at % columnTotals.size()] += counts[at];
            samples += counts[at];
        }
        view = {counts.data(), std::ssize(columnTotals), rowTotals.data(), columnTotals.data(), rows, columns,
                samples};
    }
    template <class Count = std::int32_t> OrderedPairs<Count> pairs() const {
        std::int32_t below[mostCategories];
        return countOrderedPairs<Count>(view, below);
    }
};

} // namespace

// Eyes and hair of 6,800 men (Goodman and Kruskal 1954, who give lambda as .2076), chi-square and its family
// from an independent computation. Job satisfaction by income (Agresti 2007): 1,331 concordant and 849
// discordant pairs, gamma 0.221, tau-b 0.152.
TEST(AssociationMeasures, KnownTables) {
    const Table eyes(3, 4, {1768, 807, 189, 47, 946, 1387, 746, 53, 115, 438, 288, 16});
    const ChiSquareFamily family = chiSquareFamily<std::int32_t>(eyes.view);
    expectNear({family.chiSquare, family.phi, family.contingency, family.cramer, family.tschuprow},
               {1073.507564281902, 0.397327018277, 0.369248236600, 0.280952628973, 0.253869358459}, 1e-9);
    EXPECT_DOUBLE_EQ(goodmanKruskalLambda(eyes.view), (3593 + 3954 - 3132 - 2829) / (13600.0 - 3132 - 2829));

    const OrderedPairs<std::int32_t> pairs =
        Table(4, 4, {1, 3, 10, 6, 2, 3, 10, 7, 1, 6, 14, 12, 0, 1, 9, 11}).pairs();
    EXPECT_TRUE(pairs.concordant == 1331 && pairs.discordant == 849);
    EXPECT_DOUBLE_EQ(goodmanKruskalGamma(pairs), 482 / 2180.0);
    EXPECT_NEAR(twiceKendallTau(pairs), 2 * 0.152352151347, 1e-12);
}

TEST(AssociationMeasures, PairsAsCountedOneByOne) {
    std::mt19937 random(3);
    for (const auto& [rows, columns] : {std::pair(64, 64), std::pair(2, 5), std::pair(7, 2)}) {
        const auto width = static_cast<std::size_t>(columns);
        std::vector<std::int32_t> cells(static_cast<std::size_t>(rows) * width), plain(4);
        for (std::int32_t& cell : cells) cell = static_cast<std::int32_t>(random() % 5);
        for (std::size_t i = 0; i < cells.size(); ++i) {
            for (std::size_t j = i + 1; j < cells.size(); ++j) {
                const bool sameRow = i / width == j / width, sameColumn = i % width == j % width;
                plain[sameRow ? 2 : sameColumn ? 3 : i % width < j % width ? 0 : 1] += cells[i] * cells[j];
            }
        }
        const OrderedPairs<std::int32_t> fast = Table(rows, columns, cells).pairs();
        EXPECT_EQ((std::vector{fast.concordant, fast.discordant, fast.tiedRow, fast.tiedColumn}), plain);
    }
}

// The same tables, whose 40,000 x 60,000 pairs all agree; of 2^31 samples, half of the pairs do,
// some 1.15e18.
TEST(AssociationMeasures, WideCountsDoNotWrap) {
    using Wide = std::int64_t;
    const ChiSquareFamily family = chiSquareFamily<Wide>(Table(2, 2, {30000, 20000, 20000, 30000}).view);
    expectNear({family.chiSquare, family.phi, family.contingency, family.cramer, family.tschuprow},
               {4000, 0.2, std::sqrt(1 / 26.0), 0.2, 0.2}, 1e-12);

    const OrderedPairs<Wide> pairs = Table(2, 2, {40000, 0, 0, 60000}).pairs<Wide>();
    EXPECT_EQ(pairs.concordant, 2400000000);
    EXPECT_EQ(goodmanKruskalGamma(pairs), 1.0);
    EXPECT_EQ(kendallTauB(pairs), 1.0);
    const Table most(2, 2, {1 << 30, 0, 0, (1 << 30) - 1});
    EXPECT_EQ(kendallTauB(most.pairs<Wide>()), 1.0);
    EXPECT_NEAR(chiSquareFamily<Wide>(most.view).cramer, 1.0, 1e-12);
}

TEST(Association, ScaleAndSingleVariable) {
    AnalysisSession session(fileOf({{1, 1, 2, 2, 3, 3}, {1, 1, 2, 2, 1, 2}})), single(fileOf({{1, 2, 1, 2}}));
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_TRUE(session.shows("-- order scale data\n\n") && session.shows("g.k.gamma"));
    EXPECT_STREQ(session.run.deviations, "k.tau");
    EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 30, 60, 90, 100}));
    // Without memory for its scratch the order stage leaves zeros, and the run succeeds.
    ErrorCode code = success;
    int zeros = 0;
    const auto analyse = [&] { code = session.analyse(command); };
    for (const Numerics* numerics : {&textbookNumerics, &classicNumerics}) {
        session.run.numerics = numerics;
        failEachAllocation(analyse, [&] {
            if (code == outOfMemory) return;
            EXPECT_EQ(code, success);
            expectNear(session.row("order scale\n", "var 1 - var 2"), {0, 0}, 0);
            ++zeros;
        });
    }
    EXPECT_EQ(zeros, 2 * 2); // alone, and with all after it

    session.run.options.settings.association.scale = 1;
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_TRUE(session.shows("-- nominal scale data\n\n") && !session.shows("g.k.gamma"));

    ASSERT_EQ(single.analyse(command), success); // no pairs: headings only
    EXPECT_TRUE(single.frontend.lower.ends_with("in case of order scale\n"
                                                "  n,               ,   g.k.gamma,       k.tau\n\n"));
}

TEST(CategoricalCheck, WholeNumbersFrom1WithoutGaps) {
    std::vector<double> upTo64, upTo65 = {65};
    for (int k = 1; k <= 64; ++k) upTo64.push_back(k), upTo65.push_back(k);
    const std::vector<double> columns[] = {
        {2, 1, 3, 2},        upTo64, // the legal ones
        {1, 2, 4, 1},        upTo65, {1, 1, 1, 1}, {0, 1, 2, 1},     {1, 1.5, 2, 1},      {1, 2, 65, 1},
        {-1, 1, 2, 1},       {},     {2, 3, 2, 3}, {1, 2, 1e300, 1}, {1, 2, INFINITY, 1}, {1, 2, NAN, 1},
        {1, 2 + 1e-15, 2, 1}};
    for (const std::vector<double>& column : columns) {
        const ColumnMatrix data = matrixOf({column});
        const bool legal = &column < columns + 2;
        CategoryLayout layout;
        std::int32_t groups = 0;
        EXPECT_EQ(CategoricalCheck(data, 1, layout), legal ? success : illegalCategoricalData);
        EXPECT_EQ(checkGroupVariable(data, 0, groups), legal ? success : illegalGroupVariable);
    }
}
