#include "analysis/multivariate/factor_analysis.h"

#include "analysis/multivariate/factor_report.h"
#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

namespace {

constexpr int principal = 714;
constexpr int likelihood = 715;

using Change = std::function<void(FactorOptions&)>;

std::string dataFile(const std::string& name) {
    return readTextFile("reference/data/" + name + ".csv");
}

ErrorCode analyse(AnalysisSession& session, int command, const Change& change) {
    session.run.options.settings.expressGraph = 1;
    session.frontend.choose = [&change](AnalysisRun& run) {
        change(run.options.settings.factor);
        return true;
    };
    return session.analyse(command);
}

std::vector<double> communalities(const AnalysisSession& session) {
    std::vector<double> values;
    const DataMatrix& data = session.run.data.working;
    for (std::int32_t j = 0; j < data.variables; ++j) {
        const std::string name = data.names[static_cast<std::size_t>(j)].text;
        values.push_back(session.row("communality", name.substr(0, 15))[0]);
    }
    return values;
}

} // namespace

// Expected: uniquenesses of an independent fit by a quasi-Newton method in log uniquenesses.
TEST(MaximumLikelihood, ReachesTheOptimum) {
    const struct {
        const char* file;
        int factors;
        std::vector<double> expected;
    } cases[] = {
        {"mtcars",
         3,
         {0.865062, 0.944510, 0.910215, 0.873219, 0.710007, 0.940413, 0.948534, 0.776617, 0.791613, 0.875253,
          0.842124}},
        {"swiss", 1, {0.488335, 0.517595, 0.891622, 0.567038, 0.316248, 0.022120}},
        {"eight-tests", 2, {0.659906, 0.455098, 0.550222, 0.436871, 0.602360, 0.600131, 0.414740, 0.340375}},
        {"USArrests", 1, {0.668461, 0.958463, 0.068576, 0.466348}},
    };
    for (const auto& one : cases) {
        AnalysisSession session(dataFile(one.file));
        for (const int smc : {0, 1}) {
            analyse(session, likelihood, [&](FactorOptions& options) {
                options.factorNumber = one.factors;
                options.useSmc = smc;
                options.rotation = 0;
            });
            expectNear(communalities(session), one.expected, 2e-6);
        }
    }
}

// Expected: an independent loop over eigen decompositions with the same rule to stop.
TEST(PrincipalFactors, RepeatUntilTheCommunalitiesSettle) {
    AnalysisSession session(dataFile("mtcars"));
    const Change change = [](FactorOptions& options) { options.factorNumber = 3, options.rotation = 0; };
    ASSERT_EQ(analyse(session, principal, change), success);
    expectNear(communalities(session),
               {0.879790956, 0.957672707, 0.894719968, 0.867964299, 0.711506331, 0.907994973, 0.948386829,
                0.773499457, 0.814161704, 0.866433315, 0.865293664},
               1e-9);
    expectNear(session.row("sum square", "s.s.f.load"), {6.477315, 2.510694, 0.499415}, 1e-6);
    // 70 passes are the end where they do not settle; a communality above 1 stands as it is.
    AnalysisSession endless(dataFile("swiss"));
    ASSERT_EQ(analyse(endless, principal, [](FactorOptions& options) { options.factorNumber = 2; }), success);
    expectNear(communalities(endless),
               {1.111199774, 0.800262223, 0.820522369, 0.557455781, 0.255328967, 0.220245160}, 1e-9);
}

// One pass from communalities of 1 is a principal component analysis: all components reproduce the
// correlations, whatever is requested beyond them.
TEST(PrincipalFactors, OnePassFromOneIsComponents) {
    const std::vector<double> r = {1, 0.5, 0.2, 0.5, 1, 0.3, 0.2, 0.3, 1};
    for (const int requested : {3, 7}) {
        FactorModel model;
        ASSERT_EQ(model.allocate(3, requested), success);
        ASSERT_EQ(extractPrincipalFactors(3, r.data(), false, model), success);
        ASSERT_EQ(model.kept, 3);
        for (std::size_t i = 0; i < 9; ++i) {
            const double* a = model.loadings.data();
            const std::size_t j = i / 3 * 3, k = i % 3 * 3;
            EXPECT_NEAR(a[j] * a[k] + a[j + 1] * a[k + 1] + a[j + 2] * a[k + 2], r[i], 1e-14);
        }
        EXPECT_NEAR(model.communality[1], 1.0, 1e-14);
    }
    // Communalities of 0: the matrix of correlations alone has one positive root, r (p - 1), when they are
    // equal.
    const std::vector<double> equal = {1, 0.4, 0.4, 0.4, 1, 0.4, 0.4, 0.4, 1};
    FactorModel model;
    ASSERT_EQ(model.allocate(3, 3), success);
    std::fill(model.communality.begin(), model.communality.end(), 0.0);
    ASSERT_EQ(extractPrincipalFactors(3, equal.data(), false, model), success);
    EXPECT_EQ(model.kept, 1);
    EXPECT_NEAR(model.sumsOfSquares[0], 0.8, 1e-14);
    EXPECT_NEAR(model.communality[0], 0.8 / 3, 1e-14);
}

// The covariance of a standardised variable with a regression score is the variable's loading, rotated or
// not.
TEST(FactorAnalysis, ScoresGiveTheLoadingsBack) {
    AnalysisSession session(dataFile("mtcars"));
    for (const int command : {principal, likelihood}) {
        for (int rotation = 0; rotation < 3; ++rotation) {
            for (int criterion = 0; criterion < 3; ++criterion) {
                ASSERT_EQ(analyse(session, command,
                                  [&](FactorOptions& options) {
                                      options = {2, criterion != 1, 1, 1, rotation, criterion, criterion};
                                  }),
                          success);
                const GraphSpec& spec = session.run.graph.spec;
                const DataMatrix& data = session.run.data.working;
                const auto n = static_cast<std::size_t>(data.samples),
                           p = static_cast<std::size_t>(data.variables);
                for (std::size_t j = 0; j < p; ++j) {
                    double sum = 0, squares = 0, products[2] = {};
                    for (std::size_t i = 0; i < n; ++i) {
                        const double x = data.values[i * p + j];
                        sum += x, squares += x * x;
                        for (std::size_t k = 0; k < 2; ++k) products[k] += x * spec.values[2 * i + k];
                    }
                    const double count = static_cast<double>(n);
                    const double deviation = std::sqrt(squares / count - sum * sum / count / count);
                    for (std::size_t k = 0; k < 2; ++k) {
                        EXPECT_NEAR(products[k] / count / deviation, spec.vectorValues[2 * j + k], 1e-9);
                    }
                }
            }
        }
    }
}

// Rotations keep each variable's sum of squares; Kaiser's division does not show in it.
TEST(FactorAnalysis, OrthogonalRotationKeepsTheCommunalities) {
    AnalysisSession session(dataFile("eight-tests"));
    ASSERT_EQ(analyse(session, likelihood, [](FactorOptions& options) { options = {2, 1, 1, 1, 2, 0, 0}; }),
              success);
    const std::vector<double> expected = communalities(session);
    const GraphSpec& spec = session.run.graph.spec;
    for (std::size_t j = 0; j < expected.size(); ++j) {
        EXPECT_NEAR(std::hypot(spec.vectorValues[2 * j], spec.vectorValues[2 * j + 1]),
                    std::sqrt(expected[j]), 1e-9);
    }
    EXPECT_NE(
        session.frontend.lower.find("\n-- orthogonal rotation due to varimax criterion, use SMC, repetition, "
                                    "standardized\n\n"),
        std::string::npos);
    EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 15, 25, 30, 40, 60, 80, 100}));
    EXPECT_STREQ(spec.seriesNames[1].text, "factor 2");
    EXPECT_STREQ(spec.vectorNames[1].text, "shapes");
    EXPECT_STREQ(spec.itemLabels[1].text, "p2");
}

TEST(FactorAnalysis, Codes) {
    const std::vector<double> a = {1, 2, 3, 4, 5, 6, 7, 9}, b = {2, 1, 4, 3, 7, 5, 8, 6},
                              c = {5, 1, 2, 8, 1, 9, 2, 4}, level(8, 3.0),
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
        AnalysisSession session(fileOf(one.columns));
        for (const int command : {principal, likelihood}) {
            session.frontend.takeLog();
            const ErrorCode code = analyse(session, command, [&](FactorOptions& options) {
                options = {one.factors, 1, one.smc, 1, one.rotation, 0, 0};
            });
            const ErrorCode expected = command == principal ? one.byPrincipal : one.byLikelihood;
            // One factor or none has no graph.
            EXPECT_EQ(code, expected == success && !session.run.graph.present ? graphNotBuilt : expected)
                << one.factors << " of " << one.columns.size();
            const std::string log = session.frontend.takeLog();
            EXPECT_EQ(log.find("progress") != std::string::npos, log.find("hidden") != std::string::npos);
            if (one.factors > 0 || code != graphNotBuilt) continue;
            EXPECT_NE(session.frontend.lower.find("\tfactor loading before rotation\n  n,               \n"),
                      std::string::npos);
        }
    }
}

// Without squared multiple correlations a copied variable shows at the score coefficients.
TEST(FactorAnalysis, CopiedVariableHasNoScores) {
    const std::vector<double> a = {1, 2, 3, 4, 5, 6, 7, 9}, b = {2, 1, 4, 3, 7, 5, 8, 6};
    AnalysisSession session(fileOf({a, b, a}));
    EXPECT_EQ(analyse(session, principal, [](FactorOptions& options) { options = {1, 1, 0, 1, 0, 0, 0}; }),
              singularMatrix);
    EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 15, 25, 40, 60}));
}

TEST(FactorAnalysis, OptionsDependOnTheRotation) {
    AnalysisOptions options = {};
    const OptionFields fields = factorAnalysis.fields;
    const auto enabled = [&](int field) {
        return factorAnalysis.isEnabled(options, fields[static_cast<std::size_t>(field)]);
    };
    const struct {
        std::int32_t rotation;
        bool oblique, orthogonal;
    } cases[] = {{0, false, false}, {1, true, false}, {2, false, true}, {-7, false, false}};
    for (const auto& one : cases) {
        options.settings.factor.rotation = one.rotation;
        EXPECT_TRUE(enabled(0));
        EXPECT_EQ(enabled(5), one.oblique);
        EXPECT_EQ(enabled(6), one.orthogonal);
        // A criterion on the command line is refused by the other rotation only.
        EXPECT_EQ(factorAnalysis.refuse(options, 1U << 5) != nullptr, one.rotation == 2);
        EXPECT_EQ(factorAnalysis.refuse(options, 1U << 6) != nullptr, one.rotation == 1);
        EXPECT_EQ(factorAnalysis.refuse(options, 0), nullptr);
    }
    // Ten variables open with 2 factors, and the arrows reach twice that.
    DataSet data;
    data.working.variables = 10;
    options.settings.factor.factorNumber = 3;
    spinOption(options, fields[0], data, true);
    spinOption(options, fields[0], data, true);
    EXPECT_EQ(options.settings.factor.factorNumber, 4);
}

TEST(FactorAnalysis, FailingAllocations) {
    AnalysisSession session(dataFile("eight-tests"));
    for (const int command : {principal, likelihood}) {
        ErrorCode code = success;
        const long long count = failEachAllocation(
            [&] {
                code = analyse(session, command,
                               [](FactorOptions& options) { options = {2, 1, 1, 0, 1, 0, 0}; });
            },
            // The copy of the graph tells its own failure.
            [&] { EXPECT_TRUE(code == outOfMemory || code == graphNotBuilt); });
        EXPECT_GT(count, 40);
    }
}
