#include "analysis/basic/event_models/logistic_model.h"

#include "tests/support/analysis_session.h"

namespace {

constexpr int command = 740;
using Columns = std::vector<std::vector<double>>;

// One covariate of two values: the slope is the log odds ratio of the fourfold table, its variance the sum of
// the reciprocal counts; a shift and a scale of the covariate change nothing else.
TEST(Logistic, FourfoldTableByHand) {
    Columns columns(2);
    const int counts[2][2] = {{9, 3}, {4, 14}}; // by covariate and state
    for (const auto& [x, y] : {std::pair{0, 0}, {0, 1}, {1, 0}, {1, 1}}) {
        for (int n = 0; n < counts[x][y]; ++n) {
            columns[0].push_back(y);
            columns[1].push_back(1e6 + 1000 * x);
        }
    }
    AnalysisSession session(fileOf(columns));
    ASSERT_EQ(session.analyse(command), success);
    const double ratio = std::log(14.0 * 9 / (4 * 3)), variance = 1 / 9.0 + 1 / 3.0 + 1 / 4.0 + 1 / 14.0;
    const std::vector<double> row = session.row("coefficient", "v2");
    expectNear({row[0] * 1000, row[1] * 1000, row[2]}, {ratio, std::sqrt(variance), ratio * ratio / variance},
               1e-8);
    expectNear(session.row("classification", "state 0"), {9, 4}, 0);
    expectNear(session.row("classification", "state 1"), {3, 14}, 0);
    expectNear(session.row("state, prob", "s1"), {0, 0.25, -std::sqrt(3 / 9.0)}, 1e-9);
    expectNear(session.row("state, prob", "s10"), {1, 0.25, std::sqrt(9 / 3.0)}, 1e-9);
    EXPECT_TRUE(session.isTheSameByTextbook(command));
}

TEST(Logistic, CodesInTheirOrder) {
    const std::vector<double> y = {0, 0, 1, 0, 1, 1}, x = {2, 5, 3, 4, 1, 2}, ones(6, 1.0), halves(6, 0.5);
    const std::tuple<const char*, Columns, ErrorCode> cases[] = {
        {"no covariate", {ones}, noEffectiveVariable},
        {"few samples", {{1, 1, 1}, {1, 1, 1}, {2, 2, 2}}, tooFewSamples},
        {"all with the event", {ones, ones}, illegalDivisionalValue},
        {"nobody with the event", {halves, ones}, illegalDivisionalValue},
        {"constant", {y, ones}, illegalData},
        {"separated", {y, {1, 2, 4, 3, 5, 6}}, newtonRaphsonNotConvergent},
        {"separated but for a tie", {y, {1, 2, 4, 4, 5, 6}}, newtonRaphsonNotConvergent},
        {"a group without events", {y, {1, 1, 0, 0, 0, 0}}, newtonRaphsonNotConvergent},
        {"twice the same", {y, x, x}, newtonRaphsonSingular},
    };
    for (const auto& [name, columns, code] : cases) {
        EXPECT_EQ(AnalysisSession(fileOf(columns)).analyse(command), code) << name;
    }
    for (const char* cells : {"1,1e999\nb,0,0", "1,7\nb,0,-1e999"}) {
        const std::string text = std::string("l,y,x\na,") + cells + "\nc,1,7\nd,0,7\ne,1,7\n";
        EXPECT_EQ(AnalysisSession(text).analyse(command), notFinite);
    }
    AnalysisSession session(fileOf({y, x}));
    session.run.options.settings.logisticIterations = 2;
    EXPECT_EQ(session.analyse(command), newtonRaphsonNotConvergent);
    session.run.options.settings.logisticIterations = 100;
    session.failAllocations(command);
    EXPECT_EQ(session.analyse(command), success);
    session.run.options.settings.logisticState = 3; // a column that is not there
    EXPECT_EQ(session.analyse(command), noEffectiveVariable);
}

} // namespace
