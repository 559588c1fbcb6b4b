#include "analysis/multivariate/discriminant.h"

#include "analysis/multivariate/discriminant_report.h"
#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

namespace {

constexpr int command = 716;

// Chooses the variable `group` (from 1).
ErrorCode analyse(
    AnalysisSession& session, int group,
    const std::function<void(DiscriminantOptions&)>& change = [](auto&) {}) {
    session.run.options.settings.expressGraph = 1;
    session.frontend.choose = [=](AnalysisRun& run) {
        run.options.purposes[0] = group;
        change(run.options.settings.discriminant);
        return true;
    };
    return session.analyse(command);
}

bool reports(const AnalysisSession& session, const char* text) {
    return session.frontend.lower.find(text) != std::string::npos;
}

const std::vector<double> threeGroups = {1, 2, 3, 1, 2, 3, 1, 2, 3, 3};

} // namespace

// Deviations 1, -1 and 2, 0, -2 about the group means 2 and 5; about the total mean 3.8: -0.8,
// -2.8, 3.2, 1.2, -0.8.
TEST(GroupStatistics, SumsAboutGroupAndTotalMeans) {
    DataMatrix data;
    data.samples = 5;
    data.variables = 3;
    const double values[] = {3, 10, 1, 1, 30, 1, 7, 5, 2, 5, 5, 2, 3, 5, 2};
    ASSERT_EQ(data.values.allocate(15), success);
    std::copy(std::begin(values), std::end(values), data.values.begin());
    GroupStatistics statistics;
    ASSERT_EQ(statistics.allocate(data, 2), success);
    gatherGroups(data, statistics);
    const auto near = [](const Block<double>& block, const std::vector<double>& expected) {
        expectNear({block.begin(), block.end()}, expected, 1e-12);
    };
    near(statistics.groupMeans, {2, 20, 5, 5});
    near(statistics.totalMeans, {3.8, 11});
    near(statistics.groupSums, {2, -20, 200, 8, 0, 0});
    near(statistics.within, {10, -20, -20, 200});
    near(statistics.total, {20.8, -74, -74, 470});
    EXPECT_EQ(statistics.counts[1], 3);
}

// Expected: coefficients by solving the pooled covariance matrix, F of the steps by ratios of the
// determinants of residuals, Box's statistic from determinants, all by another program. Group 1 is the second
// in the file.
TEST(Discriminant, TwoGroups) {
    AnalysisSession session(readTextFile("reference/data/crabs-sex.csv"));
    ASSERT_EQ(analyse(session, 6), success);
    const auto row = [&](const char* title, const char* label) { return session.row(title, label); };
    expectNear(row("sample number of each group", "group 1"), {100}, 0);
    expectNear(row("determinant of", "pooled"), {0.495154946592}, 1e-11);
    expectNear(row("determinant of", "group 1"), {0.219492794735}, 1e-11);
    expectNear(row("determinant of", "group 2"), {0.154284379258}, 1e-11);
    expectNear(row("box M", "chi.square"), {190.703831628538}, 1e-8);
    expectNear(row("box M", "chi.free"), {15}, 0);
    expectNear(row("stepwise", "RW"), {18.400262, 2.797369e-05, 1, 198}, 1e-6);
    expectNear(row("stepwise", "CL"), {502.647299, 0, 1, 197}, 1e-6);
    expectNear(row("stepwise", "CW"), {4.196171, 4.184842e-02, 1, 196}, 1e-6);
    expectNear(row("linear", "RW"), {5.664898302}, 1e-9);
    expectNear(row("linear", "CL"), {-2.786455701}, 1e-9);
    expectNear(row("linear", "CW"), {0.765552516}, 1e-9);
    expectNear(row("linear", "constant"), {-10.578965601}, 1e-9);
    expectNear(row("D2 stats", "mahalanobis"), {11.740027318}, 1e-9);
    expectNear(row("D2 stats", "error rate"), {0.04333915}, 1e-8); // upper normal tail of D / 2
    expectNear(row("Hotelling", "f.value"), {193.690686395}, 1e-8);
    expectNear(row("Hotelling", "2nd.free"), {196}, 0);
    expectNear(row("bary-centre", "group 2"), {-11.740027318 / 2}, 1e-9);
    expectNear(row("prior group", "p.group 1"), {95, 5}, 0);
    expectNear(row("prior group", "p.group 2"), {3, 97}, 0);
    const std::vector<double> first = row("discriminant score", "BM1");
    ASSERT_EQ(first.size(), 3u);
    EXPECT_NEAR(first[2], 5.664898302 * 6.7 - 2.786455701 * 16.1 + 0.765552516 * 19 - 10.578965601, 1e-7);
    EXPECT_FALSE(session.run.graph.present);
    EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 15, 30, 50, 80, 100}));
    EXPECT_TRUE(reports(session, "\n-- fisher's discriminant analysis model\n\n"));
}

// Expected: eigenvectors of W^-1 (T - W) scaled to a pooled variance of 1, by another program; alpha keeps
// the first.
TEST(Discriminant, CanonicalVectorsAsManyAsAlphaSays) {
    AnalysisSession session(readTextFile("reference/data/iris-group.csv"));
    const auto one = [](DiscriminantOptions& options) { options = {0, 1, 1e-9, 0.0, 0.001}; };
    ASSERT_EQ(analyse(session, 5, one), graphNotBuilt); // a single vector has no graph
    expectNear(session.row("canonical alpha", "vector"), {1}, 0);
    expectNear(session.row("eigen value", "eigen"), {30.149809498, 0.285374708}, 1e-9);
    expectNear(session.row("eigen value", "chi square"), {538.719327429, 36.653340507}, 1e-8);
    expectNear(session.row("eigen value", "chi free"), {6, 2}, 0);
    std::vector<double> coefficients, expected = {3.174222, 1.563854, -2.010528}, centroids;
    for (const char* name : {"Petal.Width", "Petal.Length", "Sepal.Width"}) {
        coefficients.push_back(session.row("canonical discriminant coefficient", name).at(0));
    }
    const double sign = coefficients[0] < 0 ? -1 : 1;
    for (double& coefficient : coefficients) coefficient *= sign;
    expectNear(coefficients, expected, 1e-6);
    EXPECT_NEAR(sign * session.row("standardized canonical", "Petal.Length")[0], 1.563854 * 0.430334, 1e-5);
    for (const char* group : {"group 1", "group 2", "group 3"}) {
        centroids.push_back(sign * session.row("bary-centre", group).at(0));
    }
    expectNear(centroids, {-7.361936, 1.764815, 5.597121}, 1e-6);
    EXPECT_EQ(session.row("discriminant score", "s1").size(), 3u);
    EXPECT_FALSE(reports(session, "box M"));
    EXPECT_FALSE(reports(session, "Sepal.Length,        "));

    ASSERT_EQ(analyse(session, 5, [](DiscriminantOptions& options) { options.canonAlpha = 1e-7; }), success);
    expectNear(session.row("prior group", "p.group 2"), {0, 48, 2}, 0);
    const GraphSpec& spec = session.run.graph.spec;
    EXPECT_STREQ(spec.seriesNames[1].text, "vector 2");
    EXPECT_NEAR(spec.values[3], session.row("discriminant score", "s2")[3], 1e-11);
}

// The group means lie on a line and the groups have the same spread: the nearest centroid is decided by v1
// alone, and the order of the columns and of the samples does not matter to the classes.
TEST(Discriminant, GroupVariableMayStandAnywhere) {
    const std::vector<double> x = {1, 4, 9, 2, 5, 8, 3, 6, 7, 8}, noise = {1, 1, 1, -1, -1, -1, 2, 2, 2, -2};
    std::vector<std::string> classes;
    for (const int group : {1, 2, 3}) {
        std::vector<std::vector<double>> columns = {x, noise};
        columns.insert(columns.begin() + group - 1, threeGroups);
        AnalysisSession session(fileOf(columns));
        ASSERT_NE(analyse(session, group,
                          [](DiscriminantOptions& options) {
                              options = {0, 0, 0.05, 0, 0.1};
                          }),
                  singularMatrix);
        const std::size_t at = session.frontend.lower.find("\tnumber of discriminated");
        classes.push_back(
            session.frontend.lower.substr(at, session.frontend.lower.find("\tdiscriminant score") - at));
        expectNear(session.row("prior group", "p.group 3"), {0, 0, 4}, 0);
    }
    EXPECT_EQ(classes[0], classes[1]);
    EXPECT_EQ(classes[0], classes[2]);
}

// An F to enter that no variable reaches: the later stages have no variable, and everyone goes to group 1.
TEST(Discriminant, NoVariableEnters) {
    const std::vector<double> x = {1, 4, 9, 2, 5, 8, 3, 6, 7, 8};
    const auto none = [](DiscriminantOptions& options) { options.testBoxM = 0, options.fIn = 1e6; };
    AnalysisSession three(fileOf({x, threeGroups}));
    EXPECT_EQ(analyse(three, 2, none), graphNotBuilt);
    EXPECT_TRUE(reports(three, "  1,         vector,                 0\n"));
    EXPECT_TRUE(reports(three, "space\n  n,               \n  1,        group 1\n"));
    expectNear(three.row("prior group", "p.group 3"), {4, 0, 0}, 0);

    AnalysisSession two(fileOf({x, {1, 2, 2, 1, 2, 2, 1, 2, 2, 2}}));
    EXPECT_EQ(analyse(two, 2, none), success);
    expectNear(two.row("D2 stats", "mahalanobis"), {0}, 0);
    expectNear(two.row("D2 stats", "error rate"), {0.5}, 1e-7);
    expectNear(two.row("Hotelling", "f.value"), {0}, 0);
    expectNear(two.row("Hotelling", "f.prob"), {1}, 0);
    expectNear(two.row("Hotelling", "1st.free"), {0}, 0);
    expectNear(two.row("prior group", "p.group 2"), {7, 0}, 0);
}

// Equal candidates: the first in the order enters. A constant one has no F and is passed over.
TEST(VariableSelection, TiesAndConstants) {
    const std::vector<double> x = {1, 2, 9, 2, 5, 8, 3, 6, 7, 8}, level(10, 1.0);
    AnalysisSession session(fileOf({level, x, x, threeGroups}));
    session.run.options.settings.discriminant = {0, 1, 0.05, 2.0, 0.1};
    EXPECT_EQ(analyse(session, 4), graphNotBuilt);
    EXPECT_TRUE(reports(session, "2nd.free\n  1,             v2,"));
    EXPECT_TRUE(reports(session, ",                 7\n\n\tvector number")); // the only row
}

TEST(Discriminant, Codes) {
    const std::vector<double> x = {1, 4, 9, 2, 5, 8, 3, 6, 7, 8}, y = {3, 1, 4, 1, 5, 9, 2, 6, 5, 3},
                              two = {1, 2, 1, 2, 1, 2, 1, 2, 1, 2};
    const auto changed = [&](double value) {
        std::vector<double> groups = threeGroups;
        groups[4] = value;
        return groups;
    };
    const struct {
        std::vector<std::vector<double>> columns;
        DiscriminantOptions options;
        ErrorCode code;
    } cases[] = {
        {{x, changed(1.5)}, {1, 1, 0.05, 0, 0.1}, illegalGroupVariable},
        {{x, changed(0)}, {1, 1, 0.05, 0, 0.1}, illegalGroupVariable},
        {{x, changed(65)}, {1, 1, 0.05, 0, 0.1}, illegalGroupVariable},
        {{x, changed(5)}, {1, 1, 0.05, 0, 0.1}, illegalGroupVariable},
        {{changed(5)}, {1, 1, 0.05, 0, 0.1}, illegalGroupVariable},
        {{threeGroups}, {1, 1, 0.05, 0, 0.1}, noEffectiveVariable},
        {{x, changed(4)}, {1, 0, 0.05, 0, 0.1}, singularMatrix}, // Box: a group of one sample
        {{x, changed(4)}, {0, 0, 0.05, 0, 0.1}, graphNotBuilt},
        {{x, x, two}, {0, 0, 0.05, 0, 0.1}, singularMatrix},
        {{x, std::vector<double>(10, 3.0), threeGroups}, {0, 0, 0.05, 0, 0.1}, singularMatrix},
        {{x, y, two}, {1, 0, 0.05, 0, 0.1}, success},
    };
    for (const auto& one : cases) {
        AnalysisSession session(fileOf(one.columns));
        const int group = static_cast<int>(one.columns.size());
        EXPECT_EQ(analyse(session, group, [&](DiscriminantOptions& options) { options = one.options; }),
                  one.code)
            << session.frontend.lower;
        const std::string log = session.frontend.takeLog();
        EXPECT_EQ(log.find("progress") != std::string::npos, log.find("hidden") != std::string::npos);
    }
    AnalysisSession lone(fileOf({x, changed(4)}));
    analyse(lone, 2, [](DiscriminantOptions& options) { options = {0, 0, 0.05, 0, 0.1}; });
    EXPECT_TRUE(reports(lone, "\n  4,        group 4,               nan\n")); // no covariance of one sample
}

TEST(Discriminant, OptionsOfTheSelection) {
    AnalysisOptions options = {};
    EXPECT_STREQ(discriminantAnalysis.refuse(options, 0), "please select at least one purpose variable");
    options.purposes[0] = 1;
    EXPECT_EQ(discriminantAnalysis.refuse(options, 0), nullptr);
    for (const int selection : {0, 1}) {
        options.settings.discriminant.forwardSelection = selection;
        std::string enabled;
        for (const OptionField& field : discriminantAnalysis.fields) {
            if (discriminantAnalysis.isEnabled(options, field)) enabled += std::string(field.name) + " ";
        }
        EXPECT_EQ(enabled, selection != 0 ? "group box-m forward-selection canon-alpha f-in f-in-prob "
                                          : "group box-m forward-selection canon-alpha ");
    }
}

TEST(Discriminant, FailingAllocations) {
    for (const auto& [file, group] : {std::pair("iris-group", 5), std::pair("crabs-sex", 6)}) {
        AnalysisSession session(readTextFile("reference/data/" + std::string(file) + ".csv"));
        ErrorCode code = success;
        const long long count =
            failEachAllocation([&] { code = analyse(session, group); },
                               [&] { EXPECT_TRUE(code == outOfMemory || code == graphNotBuilt); });
        EXPECT_GT(count, 30);
    }
}
