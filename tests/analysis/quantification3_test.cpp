#include "analysis/categorical/quantification3.h"

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
    const std::vector<double> eigen = {0.2087727, 0.02222661, 0.002598439};
    expectNear(session.row(tests, "eigen"), {0, eigen[0], eigen[1], eigen[2]}, 1e-6);
    expectNear(session.row(tests, "c.ratio"), {0, 0.893727, 0.988876, 1}, 1e-6);
    expectNear(session.row(tests, "chi.free"), {9, 5, 3, 1}, 0);
    std::vector<double> chiSquares = {138.289842};
    for (const double value : eigen) chiSquares.push_back(-(592 - 1 - 3.5) * std::log(1 - value));
    expectNear(session.row(tests, "chi.square"), chiSquares, 1e-4);
    expectNear(session.row("cramer relation", "cramer r.c."), {138.289842 / 592 / 3}, 1e-9);
}

// The same of the indicators of v1 and v2.
TEST(Quantification3, CategoricalVariables) {
    AnalysisSession session(
        fileOf({{1, 2, 3, 1, 2, 3, 1, 2, 3, 2, 1, 3}, {1, 1, 2, 2, 1, 2, 2, 2, 1, 1, 1, 2}}));
    session.run.options.quantification3Count = 3;
    ASSERT_EQ(session.analyse(command), success);
    const double root = std::sqrt(1.5);
    expectWeights(session, {{"3 (  3)", {-root, 1, -root}},
                            {"1 (  1)", {0, -2, 0}},
                            {"2 (  5)", {-1, 0, 1}},
                            {"s2", {1.325640, 0.707107, 0.206588}}});
    const char* tests = "chi square test";
    expectNear(session.row(tests, "eigen"), {0, 0.704124, 0.5, 0.295876}, 1e-6);
    expectNear(session.row(tests, "chi.square"),
               {36, 18.267230, -15 * std::log(0.5), -15 * std::log(1 - 0.295876)}, 1e-5);
    const char* redundancy = "cramer relation";
    expectNear(session.row(redundancy, "Re(X/Y)"), {0.0681818182}, 1e-9);
    expectNear(session.row(redundancy, "Re(Y/X)"), {0.0777777778}, 1e-9);
    expectNear(session.row(redundancy, "cramer r.c."), {1.5 / 3}, 1e-9);
    EXPECT_EQ(session.frontend.percentages, (std::vector<int>{0, 10, 25, 40, 55, 70, 85, 100}));
}

TEST(Quantification3, OddTables) {
    const struct {
        std::vector<std::vector<double>> columns;
        std::vector<double> eigen, chiSquare, redundancy;
    } cases[] = {
        // Rows and columns that answer each other: eigenvalue 1, no chi-square. Re = 2 (1 - 1/2) / (2 - 1).
        {{{1, 0}, {0, 1}}, {0, 1}, {2, 0}, {1}},
        {{{2, 1}, {1, 2}}, {0, 1 / 9.0}, {6 / 9.0, -3.5 * std::log(8 / 9.0)}, {1 / 27.0}},
        // A row and a column of zeros change nothing but the counts of rows and columns.
        {{{2, 1, 0}, {1, 2, 0}, {0, 0, 0}}, {0, 1 / 9.0}, {6 / 9.0, -2.5 * std::log(8 / 9.0)}, {1 / 27.0}},
        {{{0, 0}, {0, 0}}, {0}, {0}, {0}},
        {{{5, 7}}, {0}, {0}, {0}},
        {{{-3, -1}, {-2, -2}}, {0}, {0}, {0}},
    };
    for (const auto& one : cases) {
        AnalysisSession session(fileOf(one.columns));
        useCrossData(session);
        ASSERT_EQ(session.analyse(command), success);
        expectNear(session.row("chi square test", "eigen"), one.eigen, 1e-6);
        expectNear(session.row("chi square test", "chi.square"), one.chiSquare, 1e-6);
        expectNear(session.row("cramer relation", "Re(X/Y)"), one.redundancy, 1e-9);
    }
    AnalysisSession session(fileOf(cases[2].columns));
    useCrossData(session);
    ASSERT_EQ(session.analyse(command), success);
    expectNear(session.row("(column data)", "category 3"), {0}, 0);
    expectNear(session.row("(row data)", "s3"), {0}, 0);
}

TEST(Quantification3, Codes) {
    const std::vector<double> two = {1, 2, 1, 2};
    const struct {
        std::vector<std::vector<double>> columns;
        int data;
        ErrorCode code;
    } cases[] = {
        {{two, two}, 0, tooFewSamples},
        {{two}, 0, success},
        {{{1, 2, 4, 1}}, 0, illegalCategoricalData},
        {{two, two}, 1, success},
        {{two, {1, 2, INFINITY, 1}}, 1, eigenNotConvergent},
        {{two, {1, 2, 1e300, 1}}, 1, eigenNotConvergent},
    };
    for (const auto& one : cases) {
        std::string text = fileOf(one.columns);
        if (const std::size_t at = text.find("inf"); at != std::string::npos) text.replace(at, 3, "1e999");
        AnalysisSession session(text);
        session.run.options.quantification3Data = one.data;
        EXPECT_EQ(session.analyse(command), one.code) << text;
    }
}

// The arrows keep 1..p; what is typed prints at least one factor and at most those there are.
TEST(Quantification3, FactorNumber) {
    AnalysisSession session(readTextFile("reference/data/haireye-cross.csv"));
    const OptionField& field = quantification3.fields[1];
    std::int32_t& count = session.run.options.quantification3Count;
    EXPECT_EQ(count, 2);
    for (int k = 0; k < 5; ++k) spinOption(session.run.options, field, session.run.data, true);
    EXPECT_EQ(count, 4);
    for (int k = 0; k < 5; ++k) spinOption(session.run.options, field, session.run.data, false);
    EXPECT_EQ(count, 1);
    for (const auto& [asked, printed] : {std::pair(-7, 1U), std::pair(2, 2U), std::pair(2147483647, 3U)}) {
        useCrossData(session, asked);
        ASSERT_EQ(session.analyse(command), success);
        EXPECT_EQ(session.row("(row data)", "Red").size(), printed);
    }
}

TEST(Quantification3, FailingAllocations) {
    AnalysisSession session(fileOf({{1, 2, 1, 2, 1}, {1, 1, 2, 2, 1}}));
    ErrorCode code = success;
    EXPECT_GT(
        failEachAllocation([&] { code = session.analyse(command); }, [&] { EXPECT_EQ(code, outOfMemory); }),
        12);
}
