#include "analysis/categorical/quantification/quantification3.h"

#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

namespace {

constexpr int command = 723;

void useCrossData(AnalysisSession& session, int factors = 99) {
    session.run.options.quantification3Data = 1;
    session.run.options.quantification3Count = factors;
}

// Compares rows of weights. A factor may have the other sign than expected, in all rows alike.
void expectWeights(const AnalysisSession& session,
                   const std::vector<std::pair<std::string, std::vector<double>>>& rows) {
    std::vector<double> signs;
    for (const auto& [label, expected] : rows) {
        std::vector<double> values = session.row("weight coefficient", label);
        ASSERT_EQ(values.size(), expected.size());
        for (std::size_t f = 0; f < values.size(); ++f) {
            if (signs.size() == f) signs.push_back(values[f] * expected[f] < 0 ? -1 : 1);
            values[f] *= signs[f];
        }
        expectNear(values, expected, 1.01e-6);
    }
}

} // namespace

// Hair and eyes of 592 students: expected from the singular values and vectors of the standardized residuals.
TEST(Quantification3, CrossDataIsCorrespondenceAnalysis) {
    AnalysisSession session(readTextFile("reference/data/haireye-cross.csv"));
    useCrossData(session);
    ASSERT_EQ(session.analyse(command), success);
    expectWeights(session, {{"category 1", {-1.0771283, 0.5924202, -0.4239598}},
                            {"category 4", {0.3540108, -2.2741218, -1.7184430}},
                            {"Black", {-1.1042772, 1.4409170, -1.0889497}},
                            {"Blond", {1.8282287, 0.4667063, -0.3180920}}});
    const char* tests = "chi square test";
    const std::vector<double> eigen = {0, 0.2087727, 0.02222661, 0.002598439};
    std::vector<double> chiSquares = {138.289842};
    for (std::size_t k = 1; k < 4; ++k) chiSquares.push_back(-(592 - 1 - 3.5) * std::log(1 - eigen[k]));
    expectNear(session.row(tests, "eigen"), eigen, 1e-6);
    expectNear(session.row(tests, "c.ratio"), {0, 0.893727, 0.988876, 1}, 1e-6);
    expectNear(session.row(tests, "chi.free"), {9, 5, 3, 1}, 0);
    expectNear(session.row(tests, "chi.square"), chiSquares, 1e-4);
    expectNear(session.row("cramer relation", "cramer r.c."), {138.289842 / 592 / 3}, 1e-9);
}

// Expected: the same of the indicators of v1 and v2.
TEST(Quantification3, CategoricalVariables) {
    AnalysisSession session(
        fileOf({{1, 2, 3, 1, 2, 3, 1, 2, 3, 2, 1, 3}, {1, 1, 2, 2, 1, 2, 2, 2, 1, 1, 1, 2}}));
    ASSERT_EQ(session.analyse(command), success);
    expectNear(session.row("cramer relation", "Re(X/Y)"), {0.0681818182}, 1e-9);
    expectNear(session.row("cramer relation", "Re(Y/X)"), {0.0777777778}, 1e-9);
    EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 10, 25, 40, 55, 70, 85, 100}));
    EXPECT_GT(session.failAllocations(command), 12);
}

TEST(Quantification3, OddTables) {
    const struct {
        std::vector<std::vector<double>> columns;
        std::vector<double> eigen, chiSquare, redundancy;
    } cases[] = {
        {{{0, 0}, {0, 0}}, {0}, {0}, {0}},
        {{{5, 7}}, {0}, {0}, {0}},
        {{{-3, -1}, {-2, -2}}, {0}, {0}, {0}},
        // Rows and columns that answer each other: eigenvalue 1, no chi-square. Re = 2 (1 - 1/2) / (2 - 1).
        {{{1, 0}, {0, 1}}, {0, 1}, {2, 0}, {1}},
        {{{2, 1}, {1, 2}}, {0, 1 / 9.0}, {6 / 9.0, -3.5 * std::log(8 / 9.0)}, {1 / 27.0}},
        // A row and a column of zeros change nothing but the counts of rows and columns.
        {{{2, 1, 0}, {1, 2, 0}, {0, 0, 0}}, {0, 1 / 9.0}, {6 / 9.0, -2.5 * std::log(8 / 9.0)}, {1 / 27.0}},
    };
    for (const auto& one : cases) {
        AnalysisSession session(fileOf(one.columns));
        useCrossData(session);
        ASSERT_EQ(session.analyse(command), success);
        expectNear(session.row("chi square test", "eigen"), one.eigen, 1e-6);
        expectNear(session.row("chi square test", "chi.square"), one.chiSquare, 1e-6);
        expectNear(session.row("cramer relation", "Re(X/Y)"), one.redundancy, 1e-9);
        if (one.columns.size() < 3) continue;
        expectNear(session.row("(column data)", "category 3"), {0}, 0);
        expectNear(session.row("(row data)", "s3"), {0}, 0);
    }
}

// Expected: the sums of squared shares by R, and chisq.test; of the table of zeros and ones for categorical
// variables.
TEST(Quantification3, TextbookNumericsMeasureAssociation) {
    const struct {
        std::vector<std::vector<double>> columns;
        bool isCross;
        std::vector<double> association; // Re(X/Y), Re(Y/X), cramer r.c.
    } cases[] = {
        {{{3, 1, 2}, {1, 2, 3}, {2, 2, 4}}, true, {0.0439276485788, 0.0420875420875, 0.2130032168076}},
        {{{1, 0}, {0, 1}}, true, {1, 1, 1}},
        {{{1, 2, 3}, {2, 4, 6}}, true, {0, 0, 0}},                              // independent
        {{{2, 1, 0}, {1, 2, 0}, {0, 0, 0}}, true, {1 / 9.0, 1 / 9.0, 1 / 3.0}}, // nothing in the last ones
        {{{0, 0}, {0, 0}}, true, {0, 0, 0}},
        {{{5, 7}}, true, {0, 0, 0}},
        {{{-3, -1}, {-2, -2}}, true, {0, 0, 0}},
        {{{1, 2, 3, 1, 2, 3, 1, 2, 3, 2, 1, 3}, {1, 1, 2, 2, 1, 2, 2, 2, 1, 1, 1, 2}},
         false,
         {0.136363636364, 0.368421052632, 0.612372435696}},
    };
    for (const auto& one : cases) {
        AnalysisSession session(fileOf(one.columns));
        if (one.isCross) useCrossData(session);
        session.run.numerics = &textbookNumerics;
        ASSERT_EQ(session.analyse(command), success);
        const char* const labels[] = {"Re(X/Y)", "Re(Y/X)", "cramer r.c."};
        for (std::size_t i = 0; i < 3; ++i)
            expectNear(session.row("cramer relation", labels[i]), {one.association[i]}, 1e-9);
    }
    AnalysisSession session(fileOf(cases[0].columns));
    useCrossData(session);
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_STREQ(session.run.deviations, "Re(X/Y), Re(Y/X), cramer r.c., chi.prob");
    session.run.numerics = &textbookNumerics;
    ASSERT_EQ(session.analyse(command), success);
    EXPECT_NEAR(session.row("chi square test", "chi.prob")[0], 0.76977080388, 1e-6); // 4 degrees of freedom
    EXPECT_GT(session.failAllocations(command), 12);
}

TEST(Quantification3, Codes) {
    const std::string two = "l,v,w\na,1,1\nb,2,2\nc,1,1\nd,2,", one = "l,v\na,1\nb,2\nc,2\nd,";
    const std::tuple<std::string, int, ErrorCode> cases[] = {
        {two + "2", 0, tooFewSamples},          {one + "1", 0, success},
        {one + "4", 0, illegalCategoricalData}, {two + "2", 1, success},
        {two + "1e999", 1, eigenNotConvergent}, {two + "1e300", 1, eigenNotConvergent}};
    for (const auto& [text, data, code] : cases) {
        AnalysisSession session(text + "\n");
        session.run.options.quantification3Data = data;
        EXPECT_EQ(session.analyse(command), code) << text;
    }
}

// Prints at least one factor and at most those there are.
TEST(Quantification3, FactorNumber) {
    AnalysisSession session(readTextFile("reference/data/haireye-cross.csv"));
    std::int32_t& count = session.run.options.quantification3Count;
    EXPECT_EQ(count, 2);
    for (const auto& [asked, printed] : {std::pair(-7, 1U), std::pair(2, 2U), std::pair(2147483647, 3U)}) {
        useCrossData(session, asked);
        ASSERT_EQ(session.analyse(command), success);
        EXPECT_EQ(session.row("(row data)", "Red").size(), printed);
    }
}
