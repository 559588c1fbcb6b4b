#include "analysis/multivariate/factor/factor_analysis.h"

#include <numeric>

#include "analysis/multivariate/factor/factor_extraction.h"
#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

namespace {

constexpr int principal = 714, likelihood = 715;

struct FactorSession : AnalysisSession {
    using AnalysisSession::AnalysisSession;

    ErrorCode analyse(int command, const FactorOptions& factor) {
        return AnalysisSession::analyse(command, [=](AnalysisOptions& all) { all.settings.factor = factor; });
    }
    std::vector<double> communalities() const {
        std::vector<double> values;
        const TextView& names = run.data.working.names;
        for (Index j = 0; j < names.size(); ++j)
            values.push_back(row("communality", std::string(names[j]).substr(0, 15))[0]);
        return values;
    }
};

const std::vector<double> a = {1, 2, 3, 4, 5, 6, 7, 9}, b = {2, 1, 4, 3, 7, 5, 8, 6};

} // namespace

// Expected: by likelihood from an independent fit by a quasi-Newton method in log uniquenesses, wherever it
// starts; principal factors from an independent loop over eigen decompositions with the same rule to stop.
// Those of the Swiss data end after 70 passes, with a communality above 1 that stands as it is.
TEST(FactorAnalysis, Communalities) {
    const struct {
        int command;
        const char* file;
        int factors;
        double error;
        std::vector<double> expected;
    } cases[] = {
        // clang-format off
        {likelihood, "mtcars", 3, 2e-6, {0.865062, 0.944510, 0.910215, 0.873219, 0.710007, 0.940413, 0.948534,
                                         0.776617, 0.791613, 0.875253, 0.842124}},
        {likelihood, "swiss", 1, 2e-6, {0.488335, 0.517595, 0.891622, 0.567038, 0.316248, 0.022120}},
        {likelihood, "USArrests", 1, 2e-6, {0.668461, 0.958463, 0.068576, 0.466348}},
        {principal, "mtcars", 3, 1e-9, {0.879790956, 0.957672707, 0.894719968, 0.867964299, 0.711506331,
                                        0.907994973, 0.948386829, 0.773499457, 0.814161704, 0.866433315, 0.865293664}},
        {principal, "swiss", 2, 1e-9, {1.111199774, 0.800262223, 0.820522369, 0.557455781, 0.255328967, 0.220245160}},
        // clang-format on
    };
    for (const auto& one : cases) {
        FactorSession session(readTextFile("reference/data/" + std::string(one.file) + ".csv"));
        for (int smc = one.command == likelihood ? 0 : 1; smc < 2; ++smc) {
            session.analyse(one.command, {one.factors, 1, smc, 1, 0, 0, 0});
            expectNear(session.communalities(), one.expected, one.error);
        }
    }
}

// Expected: independent passes over eigen decompositions to 1e-15; reference axes found by the same
// definition, each turned until no element moves by 1e-13, and their primary factors; likelihood by Newton's
// method on the gradient with differences for its derivatives.
TEST(FactorAnalysis, TextbookNumerics) {
    FactorSession swiss(readTextFile("reference/data/swiss.csv"));
    const FactorOptions options = {2, 0, 1, 1, 1, 2, 0};
    swiss.analyse(principal, options);
    EXPECT_STREQ(swiss.run.deviations,
                 "communality, loading, score of factors that are not at the end of the repetition, "
                 "loading, structure, correlation, score of the oblique rotation");
    swiss.run.numerics = &textbookNumerics;
    swiss.analyse(principal, options);
    EXPECT_STREQ(swiss.run.deviations, "");
    EXPECT_TRUE(swiss.shows("\n-- textbook numerics\n"));
    EXPECT_TRUE(swiss.shows("repetition\n-- communality of Fertility passes 1\n\n\tcommunality"));
    expectNear(
        swiss.communalities(),
        {1.114311256892, 0.800210803577, 0.820458232812, 0.557331282930, 0.255206755329, 0.219418955538},
        3e-9);
    expectNear(swiss.row("loading after", "Fertility"), {-0.030170, -1.072693}, 1e-6);
    expectNear(swiss.row("structure", "Fertility"), {0.587497, -1.055321}, 1e-6);
    expectNear(swiss.row("correlation", "factor 2"), {-0.575809, 1.0}, 1e-6);
    expectNear(swiss.row("score", "Courtelary"), {-0.477905, -1.102595}, 1e-6);

    FactorSession cars(readTextFile("reference/data/mtcars.csv"));
    cars.run.numerics = &textbookNumerics;
    cars.analyse(likelihood, {3, 0, 0, 0, 2, 0, 0});
    expectNear(cars.communalities(),
               {0.865061920027, 0.944509718667, 0.910214747408, 0.873219218195, 0.710006867602,
                0.940412719812, 0.948533996357, 0.776616596719, 0.791612901139, 0.875252942952,
                0.842124399962},
               2e-12);
}

// Textbook numerics tell a small deviation from a constant.
TEST(FactorAnalysis, LeastDeviation) {
    std::vector<double> small = {5, 1, 2, 8, 1, 9, 2, 4}, level(8, 0.1);
    for (double& value : small) value *= 1e-6;
    for (const bool constant : {false, true}) {
        FactorSession session(fileOf({a, b, constant ? level : small}));
        EXPECT_EQ(session.analyse(principal, {1, 1, 1, 1, 0, 0, 0}), illegalData);
        session.run.numerics = &textbookNumerics;
        EXPECT_EQ(session.analyse(principal, {1, 1, 1, 1, 0, 0, 0}), constant ? illegalData : graphNotBuilt);
    }
}

TEST(FactorAnalysis, Codes) {
    const std::vector<double> c = {5, 1, 2, 8, 1, 9, 2, 4}, level(8, 3.0),
                              huge = {1e200, 2, -1e200, 4, 5, 6, 7, 8};
    const struct {
        std::vector<std::vector<double>> columns;
        int factors, smc, rotation;
        ErrorCode byPrincipal, byLikelihood;
    } cases[] = {
        {{a, b, c}, 1, 1, 1, success, success},
        {{a, level, huge}, 1, 1, 1, notFinite, notFinite},
        {{a, level, c}, 1, 1, 1, illegalData, illegalData},
        {{a, b, c, a}, 5, 1, 1, singularMatrix, singularMatrix},
        {{a, b, c}, 2, 0, 0, success, singularFactorMatrix}, // more parameters than correlations
        {{a, b, c}, 4, 0, 0, success, singularFactorMatrix}, // more factors than variables
        {{a, b, c}, 0, 1, 2, success, success},              // no factor
        {{a, b, c}, -2000000000, 1, 1, success, success},
        {{a, b, c}, 2000000000, 1, 1, outOfMemory, outOfMemory},
    };
    for (const auto& one : cases) {
        FactorSession session(fileOf(one.columns));
        for (const int command : {principal, likelihood}) {
            const ErrorCode code = session.analyse(command, {one.factors, 1, one.smc, 1, one.rotation, 0, 0});
            const ErrorCode expected = command == principal ? one.byPrincipal : one.byLikelihood;
            // One factor or none has no graph.
            EXPECT_EQ(code, expected == success && !session.run.graph.present ? graphNotBuilt : expected)
                << one.factors << " of " << one.columns.size();
            EXPECT_EQ(session.shows("\tfactor loading before rotation\n  n,               \n"),
                      one.factors <= 0);
        }
    }
    // Without squared multiple correlations a copied variable shows at the score coefficients.
    FactorSession copied(fileOf({a, b, a}));
    EXPECT_EQ(copied.analyse(principal, {1, 1, 0, 1, 0, 0, 0}), singularMatrix);
    EXPECT_EQ(copied.frontend.percentages, (std::vector<int>{0, 15, 25, 40, 60}));
}

TEST(FactorAnalysis, OptionsDependOnTheRotation) {
    AnalysisOptions options = {};
    const OptionFields fields = factorAnalysis.fields;
    for (const int rotation : {0, 1, 2, -7}) {
        options.settings.factor.rotation = rotation;
        EXPECT_TRUE(factorAnalysis.isEnabled(options, fields[0]));
        EXPECT_EQ(factorAnalysis.isEnabled(options, fields[5]), rotation == 1);
        EXPECT_EQ(factorAnalysis.isEnabled(options, fields[6]), rotation == 2);
        // A criterion on the command line is refused by the other rotation only.
        EXPECT_EQ(factorAnalysis.refuse(options, 1U << 5) != nullptr, rotation == 2);
        EXPECT_EQ(factorAnalysis.refuse(options, 1U << 6) != nullptr, rotation == 1);
        EXPECT_EQ(factorAnalysis.refuse(options, 0), nullptr);
    }
}

TEST(FactorAnalysis, FailingAllocations) {
    FactorSession session(readTextFile("reference/data/eight-tests.csv"));
    for (const int command : {principal, likelihood}) {
        session.analyse(command, {2, 1, 1, 1, 1, 0, 0});
        // The copy of the graph tells its own failure.
        EXPECT_GT(session.failAllocations(command, {outOfMemory, graphNotBuilt}), 40);
    }
}
