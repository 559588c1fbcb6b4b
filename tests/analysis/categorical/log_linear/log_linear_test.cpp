#include "analysis/categorical/log_linear/log_linear.h"

#include "analysis/categorical/log_linear/log_linear_models.h"
#include "tests/support/analysis_session.h"

namespace {

constexpr int command = 724;
using Columns = std::vector<std::vector<double>>;

void setTable(AnalysisSession& session, const std::int32_t (&sizes)[3]) {
    session.run.options.settings.logLinear.dataMode = 1;
    std::copy_n(sizes, 3, session.run.options.settings.logLinear.categories);
}

// Independent fits by iterative proportional fitting with a tolerance of 1e-9 (the last model by hand).
const std::vector<double> admissions = {512, 353, 120, 138, 53,  22,  89, 17, 202, 131, 94,  24,
                                        313, 207, 205, 279, 138, 351, 19, 8,  391, 244, 299, 317};
const double chiSquares[18] = {20.204275,   1148.900899, 783.607006,  21.735507,   2004.221805, 1242.350306,
                               877.056413,  2097.671212, 2163.744044, 1405.224378, 1107.084060, 2257.193451,
                               2260.545284, 2327.698859, 2420.067523, 2487.221098, 2490.572931, 2650.095169};
const double freedoms[18] = {5, 10, 10, 6, 15, 11, 11, 16, 20, 12, 12, 21, 17, 17, 22, 22, 18, 23};

TEST(LogLinear, AllModelsOfAPublishedTable) {
    AnalysisSession session(fileOf({admissions}));
    setTable(session, {2, 2, 6});
    ASSERT_EQ(session.analyse(command), success);
    std::vector<std::pair<double, std::size_t>> ranking;
    for (std::size_t m = 0; m < 18; ++m) {
        const double aic = chiSquares[m] - 2 * freedoms[m];
        expectNear(session.row("model list", logLinearModelTexts()[m]), {aic, chiSquares[m], freedoms[m]},
                   2e-6);
        ranking.emplace_back(aic, session.frontend.lower.find(logLinearModelTexts()[m]));
    }
    std::sort(ranking.begin(), ranking.end());
    for (std::size_t m = 1; m < 18; ++m) EXPECT_LT(ranking[m - 1].second, ranking[m].second);
}

TEST(TextbookLogLinear, Deviations) {
    AnalysisSession session(fileOf({admissions}));
    setTable(session, {2, 2, 6});
    session.run.options.settings.logLinear.firstModel = 0;
    session.run.options.settings.logLinear.secondModel = 3;
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_STREQ(session.run.deviations, "exp and res of LLM( 1), std.e. of selected models");
    session.failAllocations(command);
}

// Without the margin AB(1,1) nothing of the first models can be told, and the fitting ends all the same; the
// second table has its zeros where the fit without the interaction of three never arrives.
TEST(TextbookLogLinear, EmptyCells) {
    const std::vector<double> tables[] = {{0, 0, 3, 4, 5, 6, 7, 8}, {0, 2, 3, 4, 5, 6, 7, 0}};
    for (const auto& table : tables) {
        AnalysisSession session(fileOf({table}));
        setTable(session, {2, 2, 2});
        session.run.options.settings.logLinear.secondModel = 1;
        session.run.numerics = &textbookNumerics;
        EXPECT_EQ(session.analyse(command), success);
        EXPECT_EQ(session.shows(",        nan,        inf,        nan,        inf\n"), &table == tables);
    }
}

// All samples in one cell: quotients of empty margins are 0, and what such a table says of its terms is not
// finite.
TEST(LogLinear, EmptyMargins) {
    AnalysisSession session(fileOf({{0, 7, 0, 0, 0, 0, 0, 0}}));
    setTable(session, {2, 2, 2});
    ASSERT_EQ(session.analyse(command), success);
    expectNear(session.row("model list", logLinearModelTexts()[7]), {-8, 0, 4}, 1e-9);
    expectNear(session.row("model list", logLinearModelTexts()[17]),
               {2 * 7 * std::log(8.0) - 14, 2 * 7 * std::log(8.0), 7}, 1e-6);
    EXPECT_TRUE(session.shows("exp,   0.000000,   7.000000,   0.000000,   7.000000\n"));
    EXPECT_TRUE(session.shows(",        nan,        inf\n"));
}

TEST(LogLinear, OptionRules) {
    AnalysisOptions options = {};
    LogLinearOptions& chosen = options.settings.logLinear;
    const auto refusals = [&](std::initializer_list<std::pair<int, int>> numbers, const char* refusal) {
        for (const auto& [first, second] : numbers) {
            chosen.firstModel = first - 1;
            chosen.secondModel = second - 1;
            EXPECT_STREQ(logLinearAnalysis.refuse(options, 0), refusal) << first << ' ' << second;
        }
    };
    refusals({{1, 18}, {18, 1}, {2, 5}, {9, 5}, {15, 9}, {4, 11}, {13, 6}}, nullptr);
    refusals({{5, 5}, {99, 99}}, "first model and second one must be different");
    refusals({{9, 10}, {2, 7}, {7, 2}, {2, 3}, {16, 15}, {14, 13}, {0, 3}, {3, 19}, {-8, 2000000000}},
             "first model and second one must be implicated relation");
}

TEST(LogLinear, CodesOfUnfitData) {
    const Columns cube = {{1, 2, 3, 4, 5, 6, 7, 8}};
    const auto with = [&](double cell) { return Columns{{1, 2, 3, 4, 5, 6, 7, cell}}; };
    const struct {
        Columns columns;
        std::int32_t mode, a, b, c;
        ErrorCode code;
    } cases[] = {
        {{{1, 2, 3, 4}, {5, 6, 7, 8}}, 1, 2, 2, 2, success},
        {cube, 1, 2, 2, 3, illegalCategoryNumber},
        {cube, 1, 1, 2, 4, illegalCategoryNumber},
        {cube, 1, -2, -2, 2, illegalCategoryNumber},
        {cube, 1, 2000000000, 2000000000, 2000000000, illegalCategoryNumber},
        {{std::vector<double>(256, 2.0)}, 1, 2, 2, 64, success},
        {{std::vector<double>(260, 2.0)}, 1, 2, 2, 65, illegalCategoryNumber},
        {with(2147483647.9), 1, 2, 2, 2, success},
        {with(2147483648), 1, 2, 2, 2, notFinite},
        {with(-0.25), 1, 2, 2, 2, notFinite},
        {{{0, 0.9, 0, 0, 0.5, 0, 0, 0}}, 1, 2, 2, 2, notFinite}, // nobody
        {cube, 0, 2, 2, 2, illegalVariableNumber},
        {{{1, 2, 1, 2, 1}, {1, 1, 2, 2, 1}, {1, 1, 1, 1, 3}}, 0, 2, 2, 2, tooFewSamples},
        {{{1, 2, 1, 2, 1, 1}, {1, 1, 2, 2, 1, 1}, {1, 1, 1, 1, 3, 1}}, 0, 2, 2, 2, illegalCategoricalData},
        {{{1, 2, 1, 2, 1, 1}, {1, 1, 2, 2, 1, 1}, {1, 1, 1, 1, 2, 1}}, 0, 0, 0, 0, success},
        {cube, 1, 2, 2, 2, success},
    };
    for (const auto& c : cases) {
        AnalysisSession session(fileOf(c.columns));
        setTable(session, {c.a, c.b, c.c});
        session.run.options.settings.logLinear.dataMode = c.mode;
        EXPECT_EQ(session.analyse(command), c.code) << &c - cases;
    }
}

} // namespace
