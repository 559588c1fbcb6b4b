#include "analysis/multivariate/discriminant/discriminant.h"

#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

namespace {

constexpr int command = 716;

struct DiscriminantSession : AnalysisSession {
    using AnalysisSession::analyse;
    using AnalysisSession::AnalysisSession;

    // Chooses the variable `group` (from 1).
    ErrorCode analyse(int group, const DiscriminantOptions& options) {
        return AnalysisSession::analyse(command, [=](AnalysisOptions& all) {
            all.purposes[0] = group;
            all.settings.discriminant = options;
        });
    }
    // Gives the values of a variable (from 0) in other units.
    void rescale(Index variable, double unit) {
        const DataMatrix& data = run.data.loaded;
        for (Index s = 0; s < data.samples; ++s) run.data.loadedValues[s * data.variables + variable] *= unit;
    }
};

const DiscriminantOptions plain = {0, 0, 0.05, 0, 0.1};
const std::vector<double> x = {1, 4, 9, 2, 5, 8, 3, 6, 7, 8}, threeGroups = {1, 2, 3, 1, 2, 3, 1, 2, 3, 3};

std::vector<double> threeGroupsBut(double fifth) {
    std::vector<double> groups = threeGroups;
    groups[4] = fifth;
    return groups;
}

} // namespace

// Expected: coefficients by solving the pooled covariance matrix, F of the steps by ratios of the
// determinants of residuals, Box's statistic from determinants, all by another program. Group 1 is the second
// in the file.
TEST(Discriminant, TwoGroups) {
    DiscriminantSession session(readTextFile("reference/data/crabs-sex.csv"));
    ASSERT_EQ(session.analyse(6, {1, 1, 0.05, 2.0, 0.1}), success);
    const struct {
        const char *title, *label;
        std::vector<double> values;
        double error;
    } rows[] = {
        // clang-format off
        {"sample number of each group", "group 1", {100}, 0},
        {"determinant of", "pooled", {0.495154946592}, 1e-11},
        {"box M", "chi.square", {190.703831628538}, 1e-8},
        {"stepwise", "RW", {18.400262, 2.797369e-05, 1, 198}, 1e-6},
        {"stepwise", "CL", {502.647299, 0, 1, 197}, 1e-6},
        {"stepwise", "CW", {4.196171, 4.184842e-02, 1, 196}, 1e-6},
        {"linear", "RW", {5.664898302}, 1e-9},
        {"linear", "CL", {-2.786455701}, 1e-9},
        {"linear", "CW", {0.765552516}, 1e-9},
        {"linear", "constant", {-10.578965601}, 1e-9},
        {"D2 stats", "mahalanobis", {11.740027318}, 1e-9},
        {"D2 stats", "error rate", {0.04333915}, 1e-8}, // upper normal tail of D / 2
        {"Hotelling", "f.value", {193.690686395}, 1e-8},
        {"Hotelling", "2nd.free", {196}, 0},
        {"bary-centre", "group 2", {-11.740027318 / 2}, 1e-9},
        {"prior group", "p.group 1", {95, 5}, 0},
        {"prior group", "p.group 2", {3, 97}, 0},
        // clang-format on
    };
    for (const auto& one : rows) expectNear(session.row(one.title, one.label), one.values, one.error);
    EXPECT_NEAR(session.row("discriminant score", "BM1").at(2),
                5.664898302 * 6.7 - 2.786455701 * 16.1 + 0.765552516 * 19 - 10.578965601, 1e-7);
    EXPECT_FALSE(session.run.graph.present);
    EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 15, 30, 50, 80, 100}));
    EXPECT_TRUE(session.shows("\n-- fisher's discriminant analysis model\n\n"));
    EXPECT_GT(session.failAllocations(command), 30);

    // In units in which the determinants are infinite, then 0.
    for (const double unit : {1e40, 1e-80}) {
        for (const Index variable : {0, 1, 2, 3, 4}) session.rescale(variable, unit);
        ASSERT_EQ(session.analyse(6, {1, 1, 0.05, 2.0, 0.1}), success);
        expectNear(session.row("box M", "chi.square"), {190.703831628538}, 1e-8);
        expectNear(session.row("D2 stats", "mahalanobis"), {11.740027318}, 1e-9);
    }
}

// Expected: eigenvalues and first eigenvector of W^-1 (T - W) by another program, in any units of the petals'
// length; alpha keeps the first vector only.
TEST(Discriminant, CanonicalVectorsAsManyAsAlphaSays) {
    DiscriminantSession session(readTextFile("reference/data/iris-group.csv"));
    for (const double unit : {1e-7, 1e14, 1e2, 1e-9}) { // 1 in the end
        session.rescale(2, unit);
        ASSERT_EQ(session.analyse(5, {0, 1, 1e-9, 0.0, 0.001}),
                  graphNotBuilt); // a single vector has no graph
        expectNear(session.row("canonical alpha", "vector"), {1}, 0);
        expectNear(session.row("eigen value", "eigen"), {30.149809498, 0.285374708}, 1e-9);
        EXPECT_NEAR(std::fabs(session.row("standardized canonical", "Petal.Length").at(0)), 0.672980265,
                    1e-9);
        expectNear(session.row("prior group", "p.group 3"), {0, 2, 48}, 0);
    }
    expectNear(session.row("eigen value", "chi square"), {538.719327429, 36.653340507}, 1e-8);
    EXPECT_NEAR(std::fabs(session.row("bary-centre", "group 1").at(0)), 7.361936, 1e-6);
    EXPECT_EQ(session.row("discriminant score", "s1").size(), 3u);
    EXPECT_FALSE(session.shows("box M") || session.shows("Sepal.Length,        "));

    ASSERT_EQ(session.analyse(5, {0, 1, 1e-7, 0.0, 0.001}), success);
    const GraphSpec& spec = session.run.graph.spec;
    EXPECT_STREQ(spec.seriesNames[1], "vector 2");
    EXPECT_NEAR(spec.values[3], session.row("discriminant score", "s2")[3], 1e-11);
    EXPECT_GT(session.failAllocations(command, {outOfMemory, graphNotBuilt}), 30);
}

// Expected: R's lda with equal priors and pchisq. The first root alone, which is all that is significant,
// would put one sample of group 1 and one of group 3 elsewhere; a great mean costs no digits.
TEST(Discriminant, TextbookNumericsClassifyByAllRoots) {
    const DiscriminantOptions options = {1, 0, 0.05, 0, 0.1};
    for (const double shift : {0.0, 1e9}) {
        std::vector<std::vector<double>> columns = {
            {4, 11, 9, 10, 5, 11, 11, 8, 12, 4, 12, 9, 7, 5, 13, 6, 13, 12},
            {3, 1, 4, 1, 5, 9, 2, 6, 5, 3, 5, 8, 9, 7, 9, 3, 2, 3},
            {5, 2, 8, 1, 9, 3, 7, 4, 6, 2, 8, 5, 1, 9, 3, 6, 4, 7}};
        for (auto& column : columns)
            for (double& value : column) value += shift;
        columns.push_back({1, 2, 3, 1, 2, 3, 1, 2, 3, 1, 2, 3, 1, 2, 3, 1, 2, 3});
        DiscriminantSession session(fileOf(columns));
        if (shift == 0.0) {
            ASSERT_EQ(session.analyse(4, options), graphNotBuilt);
            EXPECT_STREQ(session.run.deviations, "chi.prob of box M, chi prob of Bartlett, d.group");
            expectNear(session.row("prior group", "p.group 1"), {4, 2, 0}, 0);
        }
        session.run.numerics = &textbookNumerics;
        ASSERT_EQ(session.analyse(4, options), graphNotBuilt);
        EXPECT_STREQ(session.run.deviations, "");
        EXPECT_TRUE(session.shows("-- textbook numerics\n-- canonical"));
        expectNear(session.row("box M", "chi.square"), {18.91444035493}, 1e-9);
        expectNear(session.row("box M", "chi.prob"), {0.09061427638022}, 1e-11);
        expectNear(session.row("canonical alpha", "vector"), {1}, 0);
        expectNear(session.row("eigen value", "eigen"), {1.496760584476, 0.08828951855573}, 1e-10);
        expectNear(session.row("eigen value", "chi prob"), {0.02969857158557, 0.553081172487}, 1e-10);
        expectNear(session.row("prior group", "p.group 1"), {5, 1, 0}, 0);
        expectNear(session.row("prior group", "p.group 3"), {0, 2, 4}, 0);
        EXPECT_GT(session.failAllocations(command, {outOfMemory, graphNotBuilt}), 30);
    }
}

// The group means lie on a line and the groups have the same spread: the nearest centroid is decided by x
// alone, and the order of the columns does not matter to the classes.
TEST(Discriminant, GroupVariableMayStandAnywhere) {
    std::string classes[4];
    for (const int group : {1, 2, 3}) {
        std::vector<std::vector<double>> columns = {x, {1, 1, 1, -1, -1, -1, 2, 2, 2, -2}};
        columns.insert(columns.begin() + group - 1, threeGroups);
        DiscriminantSession session(fileOf(columns));
        ASSERT_NE(session.analyse(group, plain), singularMatrix);
        const std::string& report = session.frontend.lower;
        const std::size_t at = report.find("\tnumber of discriminated");
        classes[group] = report.substr(at, report.find("\tdiscriminant score") - at);
        EXPECT_EQ(classes[group], classes[1]);
        expectNear(session.row("prior group", "p.group 3"), {0, 0, 4}, 0);
    }
}

// An F to enter that no variable reaches: the later stages have no variable, and everyone goes to group 1.
TEST(Discriminant, NoVariableEnters) {
    const DiscriminantOptions none = {0, 1, 0.05, 1e6, 0.1};
    DiscriminantSession three(fileOf({x, threeGroups})), two(fileOf({x, {1, 2, 2, 1, 2, 2, 1, 2, 2, 2}}));
    EXPECT_EQ(three.analyse(2, none), graphNotBuilt);
    EXPECT_TRUE(three.shows("  1,         vector,                 0\n"));
    EXPECT_TRUE(three.shows("space\n  n,               \n  1,        group 1\n"));
    expectNear(three.row("prior group", "p.group 3"), {4, 0, 0}, 0);

    EXPECT_EQ(two.analyse(2, none), success);
    for (const auto& [label, value] :
         {std::pair{"mahalanobis", 0.0}, {"error rate", 0.5}, {"f.value", 0}, {"f.prob", 1}, {"1st.free", 0}})
        expectNear(two.row("D2 stats", label), {value}, 1e-7);
    expectNear(two.row("prior group", "p.group 2"), {7, 0}, 0);
}

// Equal candidates: the first in the order enters. A constant one has no F and is passed over.
TEST(VariableSelection, TiesAndConstants) {
    const std::vector<double> twin = {1, 2, 9, 2, 5, 8, 3, 6, 7, 8};
    DiscriminantSession session(fileOf({std::vector<double>(10, 1.0), twin, twin, threeGroups}));
    EXPECT_EQ(session.analyse(4, {0, 1, 0.05, 2.0, 0.1}), graphNotBuilt);
    EXPECT_TRUE(session.shows("2nd.free\n  1,             v2,"));
    EXPECT_TRUE(session.shows(",                 7\n\n\tvector number")); // the only row
}

TEST(Discriminant, Codes) {
    const std::vector<double> y = {3, 1, 4, 1, 5, 9, 2, 6, 5, 3}, two = {1, 2, 1, 2, 1, 2, 1, 2, 1, 2};
    std::vector<double> sum(10);
    for (std::size_t i = 0; i < 10; ++i) sum[i] = 0.1 * x[i] + 0.7 * y[i];
    const DiscriminantOptions all = {1, 1, 0.05, 0, 0.1}, box = {1, 0, 0.05, 0, 0.1};
    const std::tuple<std::vector<std::vector<double>>, DiscriminantOptions, ErrorCode> cases[] = {
        {{x, threeGroupsBut(1.5)}, all, illegalGroupVariable},
        {{x, threeGroupsBut(5)}, all, illegalGroupVariable},
        {{threeGroupsBut(5)}, all, illegalGroupVariable},
        {{threeGroups}, all, noEffectiveVariable},
        {{x, threeGroupsBut(4)}, box, singularMatrix}, // Box: a group of one sample
        {{x, x, two}, plain, singularMatrix},
        {{x, std::vector<double>(10, 0.1), threeGroups}, plain, singularMatrix},
        {{x, y, {1, 1, 2, 2, 2, 2, 2, 2, 2, 2}}, box, singularMatrix}, // two samples of two variables
        {{x, y, sum, threeGroups}, plain, singularMatrix},
        {{x, y, two}, box, success},
    };
    for (const auto& [columns, options, code] : cases) {
        DiscriminantSession session(fileOf(columns));
        EXPECT_EQ(session.analyse(static_cast<int>(columns.size()), options), code) << session.frontend.lower;
    }
    DiscriminantSession lone(fileOf({x, threeGroupsBut(4)}));
    EXPECT_EQ(lone.analyse(2, plain), graphNotBuilt);
    EXPECT_TRUE(lone.shows("\n  4,        group 4,               nan\n")); // no covariance of one sample
}
