#include "analysis/categorical/log_linear.h"

#include "analysis/categorical/log_linear_models.h"
#include "tests/support/analysis_session.h"

namespace {

constexpr int command = 724;
using Columns = std::vector<std::vector<double>>;

void setTable(AnalysisSession& session, const std::int32_t (&sizes)[3]) {
    session.run.options.settings.logLinear.dataMode = 1;
    std::copy_n(sizes, 3, session.run.options.settings.logLinear.categories);
}

// Independent fits by iterative proportional fitting with a tolerance of 1e-9 (the last model by hand).
struct PublishedTable {
    std::vector<double> cells;
    std::int32_t sizes[3];
    double chiSquares[18];
    std::int32_t freedom[18];
};
const PublishedTable hairEyeColor = {{32, 36, 11, 9, 10, 5, 3, 2, 53, 66, 50, 34, 25, 29, 15, 14,
                                      10, 16, 10, 7, 7,  7, 7, 7, 3,  4,  30, 64, 5,  5,  8,  8},
                                     {4, 4, 2},
                                     {6.761250, 11.763723, 18.327150, 156.677890, 19.856561, 158.207301,
                                      164.770728, 166.300140, 21.810339, 299.478982, 330.363119, 168.253917,
                                      307.571820, 331.892531, 309.525598, 333.846308, 473.164211, 475.117989},
                                     {9, 12, 12, 18, 15, 21, 21, 24, 16, 24, 24, 25, 27, 27, 28, 28, 30, 31}};
const PublishedTable admissions = {{512, 353, 120, 138, 53,  22,  89, 17, 202, 131, 94,  24,
                                    313, 207, 205, 279, 138, 351, 19, 8,  391, 244, 299, 317},
                                   {2, 2, 6},
                                   {20.204275, 1148.900899, 783.607006, 21.735507, 2004.221805, 1242.350306,
                                    877.056413, 2097.671212, 2163.744044, 1405.224378, 1107.084060,
                                    2257.193451, 2260.545284, 2327.698859, 2420.067523, 2487.221098,
                                    2490.572931, 2650.095169},
                                   {5, 10, 10, 6, 15, 11, 11, 16, 20, 12, 12, 21, 17, 17, 22, 22, 18, 23}};

TEST(LogLinear, AllModelsOfPublishedTables) {
    for (const PublishedTable* table : {&hairEyeColor, &admissions}) {
        AnalysisSession session(fileOf({table->cells}));
        setTable(session, table->sizes);
        ASSERT_EQ(session.analyse(command), success);
        std::vector<std::pair<double, std::size_t>> ranking;
        for (std::size_t m = 0; m < 18; ++m) {
            const double g2 = table->chiSquares[m], freedom = table->freedom[m], aic = g2 - 2 * freedom;
            expectNear(session.row("model list", logLinearModelTexts()[m]), {aic, g2, freedom}, 2e-6);
            ranking.emplace_back(aic, session.frontend.lower.find(logLinearModelTexts()[m]));
        }
        std::sort(ranking.begin(), ranking.end());
        for (std::size_t m = 1; m < 18; ++m) EXPECT_LT(ranking[m - 1].second, ranking[m].second);
    }
}

// Every term against the sum of its weights over all cells; those of the 2 x 2 x 2 table are plus and minus
// 1/8.
TEST(LogLinear, UTermsAreContrastsOfTheLogarithms) {
    for (const ThreeWaySizes sizes : {ThreeWaySizes{{2, 2, 2}}, {{3, 2, 4}}, {{2, 5, 3}}}) {
        std::vector<double> logs, inverses;
        for (std::size_t m = 0; m < sizes.cells(); ++m) {
            inverses.push_back(1 / (static_cast<double>(7 * m % 11) + 0.5));
            logs.push_back(-std::log(inverses[m]));
        }
        Margins logarithms, variances;
        UTermEstimates found;
        ASSERT_EQ(logarithms.allocate(sizes) | variances.allocate(sizes) | found.allocate(sizes, true),
                  success);
        logarithms.sum(logs.data());
        variances.sum(inverses.data());
        for (const FactorSet term : uTerms) {
            estimateUTerm(logarithms, variances, term, found);
            for (std::size_t at = 0; at < found.estimates[term].size(); ++at) {
                double estimate = 0.0, variance = 0.0;
                for (std::size_t cell = 0; cell < logs.size(); ++cell) {
                    double weight = 1.0;
                    std::size_t level = cell, termLevel = at; // of the last factor, then of those before it
                    for (std::size_t f = 3; f-- > 0; level /= sizes.levels[f]) {
                        const double n = static_cast<double>(sizes.levels[f]);
                        if ((term >> f & 1) == 0) {
                            weight /= n;
                        } else {
                            weight *=
                                (termLevel % sizes.levels[f] == level % sizes.levels[f] ? 1 : 0) - 1 / n;
                            termLevel /= sizes.levels[f];
                        }
                    }
                    estimate += weight * logs[cell];
                    variance += weight * weight * inverses[cell];
                }
                EXPECT_NEAR(found.estimates[term][at], estimate, 1e-13) << term << ' ' << at;
                EXPECT_NEAR(found.errors[term][at], std::sqrt(variance), 1e-13) << term << ' ' << at;
            }
        }
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
    for (const char* line :
         {"exp,   0.000000,   7.000000,   0.000000,   7.000000\n", ",        nan,        inf\n"}) {
        EXPECT_NE(session.frontend.lower.find(line), std::string::npos) << line;
    }
}

// Counted from samples or given as a table, with the models in either order: the same tables, but for the
// widths.
TEST(LogLinear, VariablesGiveTheTableThatTheyCount) {
    Columns samples(3);
    for (std::size_t cell = 0; cell < 24; ++cell) {
        const std::size_t levels[3] = {cell / 12 + 1, cell / 6 % 2 + 1, cell % 6 + 1},
                          end = samples[0].size();
        for (std::size_t f = 0; f < 3; ++f) {
            samples[f].resize(end + static_cast<std::size_t>(admissions.cells[cell]),
                              static_cast<double>(levels[f]));
        }
    }
    std::string tables[2];
    for (const bool counted : {false, true}) {
        AnalysisSession session(counted ? fileOf(samples) : fileOf({admissions.cells}));
        setTable(session, {2, 2, 6});
        session.run.options.settings.variableStringLength = 14; // room for all decimals
        LogLinearOptions& options = session.run.options.settings.logLinear;
        options.dataMode = counted ? 0 : 1;
        options.firstModel = counted ? 7 : 3;
        options.secondModel = counted ? 3 : 7;
        ASSERT_EQ(session.analyse(command), success);
        EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 5, 10, 20, 30, 40, 55, 70, 85, 100}));
        const std::size_t start = session.frontend.lower.find("\tmodel list");
        EXPECT_EQ(session.frontend.lower.substr(0, start),
                  std::string("\nthree way log linear analysis statistics\n-- due to ") +
                      (counted ? "categorical variable" : "contingency table") + " data\n\n");
        tables[counted] = session.frontend.lower.substr(start);
    }
    EXPECT_EQ(tables[0], tables[1]);
    const std::size_t selected = tables[0].find("selected\n");
    EXPECT_LT(tables[0].find("\n  8,", selected),
              tables[0].find("\n  4,", selected)); // the smaller one first
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
    refusals(
        {{9, 10}, {2, 7}, {7, 2}, {12, 10}, {2, 3}, {16, 15}, {14, 13}, {0, 3}, {3, 19}, {-8, 2000000000}},
        "first model and second one must be implicated relation");
    DataSet data;
    for (const OptionField& field : logLinearAnalysis.fields) {
        const bool size = field.type == OptionType::wholeNumber;
        chosen.dataMode = 0;
        EXPECT_EQ(logLinearAnalysis.isEnabled(options, field), !size);
        chosen.dataMode = 1;
        EXPECT_TRUE(logLinearAnalysis.isEnabled(options, field));
        if (!size) continue;
        for (const auto& [up, end] : {std::pair{true, 64}, {false, 2}}) {
            for (int click = 0; click < 100; ++click) spinOption(options, field, data, up);
            EXPECT_EQ(wholeOption(options, field), end);
        }
    }
}

TEST(LogLinear, CodesOfUnfitData) {
    const Columns cube = {{1, 2, 3, 4, 5, 6, 7, 8}};
    const auto with = [&](double cell) { return Columns{{1, 2, 3, 4, 5, 6, 7, cell}}; };
    const struct {
        Columns columns;
        std::int32_t mode, a, b, c;
        ErrorCode code;
    } cases[] = {
        {cube, 1, 2, 2, 2, success},
        {{{1, 2, 3, 4}, {5, 6, 7, 8}}, 1, 2, 2, 2, success},
        {cube, 1, 2, 2, 3, illegalCategoryNumber},
        {cube, 1, 1, 2, 4, illegalCategoryNumber},
        {cube, 1, -2, -2, 2, illegalCategoryNumber},
        {cube, 1, 2000000000, 2000000000, 2000000000, illegalCategoryNumber},
        {with(2147483647.9), 1, 2, 2, 2, success},
        {with(2147483648), 1, 2, 2, 2, notFinite},
        {with(-0.25), 1, 2, 2, 2, notFinite},
        {{{0, 0.9, 0, 0, 0.5, 0, 0, 0}}, 1, 2, 2, 2, notFinite}, // nobody
        {cube, 0, 2, 2, 2, illegalVariableNumber},
        {{{1, 2, 1, 2, 1}, {1, 1, 2, 2, 1}, {1, 1, 1, 1, 3}}, 0, 2, 2, 2, tooFewSamples},
        {{{1, 2, 1, 2, 1, 1}, {1, 1, 2, 2, 1, 1}, {1, 1, 1, 1, 3, 1}}, 0, 2, 2, 2, illegalCategoricalData},
        {{{1, 2, 1, 2, 1, 1}, {1, 1, 2, 2, 1, 1}, {1, 1, 1, 1, 2, 1}}, 0, 0, 0, 0, success},
    };
    for (const auto& c : cases) {
        AnalysisSession session(fileOf(c.columns));
        setTable(session, {c.a, c.b, c.c});
        session.run.options.settings.logLinear.dataMode = c.mode;
        EXPECT_EQ(session.analyse(command), c.code) << &c - cases;
    }
    AnalysisSession session(fileOf(cube));
    setTable(session, {2, 2, 2});
    ErrorCode code = success;
    failEachAllocation([&] { code = session.analyse(command); }, [&] { EXPECT_EQ(code, outOfMemory); });
    EXPECT_EQ(code, success);
}

} // namespace
