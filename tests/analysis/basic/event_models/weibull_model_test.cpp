#include "analysis/basic/event_models/weibull_model.h"

#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

namespace {

constexpr int weibull = 741, hazard = 742;
using Columns = std::vector<std::vector<double>>;

// Both survival models read their data alike.
TEST(SurvivalModels, CodesInTheirOrder) {
    const std::vector<double> y = {1, 0, 1, 1, 0, 1}, t = {4, 2, 7, 1, 5, 3}, x = {2, 5, 3, 4, 1, 2},
                              ones(6, 1.0), none(6, 0.0);
    const std::vector<double> zeroTime = {4, 2, 7, 1, 5, 0}, endless = {4, 2, 1e300, 1, 5, 3},
                              huge = {2, 1e300, 3, 4, 1, 2}, group = {1, 0, 0, 1, 0, 1};
    const std::tuple<const char*, Columns, ErrorCode, ErrorCode> cases[] = {
        {"nobody censored", {ones, t, x}, success, success},
        {"no covariate", {none, zeroTime}, noEffectiveVariable, noEffectiveVariable},
        {"few for the one", {{0, 0, 0}, {0, 1, 2}, {1, 1, 1}}, tooFewSamples, illegalDivisionalValue},
        {"few for both", {{0}, {0}, {1}}, tooFewSamples, tooFewSamples},
        {"nobody with the event", {none, zeroTime, ones}, illegalDivisionalValue, illegalDivisionalValue},
        {"time 0", {y, zeroTime, ones}, invalidPurposeVariable, invalidPurposeVariable},
        {"constant", {y, t, ones}, illegalData, illegalData},
        {"a deviation without end", {y, t, huge}, notFinite, notFinite},
        {"a group without events", {group, t, group}, newtonRaphsonNotConvergent, newtonRaphsonNotConvergent},
        {"one time for all", {y, ones, x}, newtonRaphsonNotConvergent, success},
        // One sample has all of the cumulative hazard, so that the information has rank 1.
        {"a time beyond all others", {y, endless, x}, newtonRaphsonSingular, success},
    };
    for (const auto& [name, columns, weibullCode, hazardCode] : cases) {
        AnalysisSession session(fileOf(columns));
        EXPECT_EQ(session.analyse(weibull), weibullCode) << name;
        EXPECT_EQ(session.analyse(hazard), hazardCode) << name;
    }
    for (const char* cells : {"1,1e999,3", "1,2,-1e999"}) {
        AnalysisSession session(std::string("l,y,t,x\na,") + cells +
                                "\nb,0,7,2\nc,1,7,2\nd,0,7,2\ne,1,7,2\n");
        EXPECT_EQ(session.analyse(weibull), notFinite);
        EXPECT_EQ(session.analyse(hazard), notFinite);
    }
}

TEST(SurvivalModels, FailingAllocations) {
    AnalysisSession session(readTextFile("reference/data/ovarian.csv"));
    session.failAllocations(weibull);
    EXPECT_EQ(session.analyse(weibull), success);
    EXPECT_TRUE(session.isTheSameByTextbook(weibull));
    session.run.options.settings.weibull.timeColumn = 9; // there is no such column
    EXPECT_EQ(session.analyse(weibull), noEffectiveVariable);
}

} // namespace
