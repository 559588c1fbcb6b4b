#include "analysis/basic/weibull_model.h"

#include "tests/support/analysis_session.h"

namespace {

constexpr int weibull = 741, hazard = 742;
using Columns = std::vector<std::vector<double>>;

// State, time with ties between events and censored samples, two covariates.
const Columns samples = {{1, 0, 1, 1, 1, 0, 1, 1, 0, 1, 1, 1},
                         {5, 8, 8, 12, 3, 20, 8, 15, 12, 7, 20, 9},
                         {2, 3, 5, 1, 4, 2, 3, 1, 5, 4, 1, 2},
                         {10, 14, 9, 12, 15, 11, 8, 13, 10, 12, 9, 14}};

// Independent maximisation of the likelihood of (constant, slopes, k) with symbolic derivatives.
TEST(Weibull, AgreesWithAnIndependentMaximisation) {
    AnalysisSession session(fileOf(samples));
    ASSERT_EQ(session.analyse(weibull), success);
    const std::tuple<const char*, const char*, double, double> coefficients[] = {
        {"exponential model :", "v3", -0.094663118067049, 0.23001957740659},
        {"exponential model :", "v4", -0.067688893848401, 0.17159352506078},
        {"exponential model :", "constant", 3.640688105266489, 2.15512621772130},
        {"weibull model :", "v3", -0.146525532863753, 0.098582318710892},
        {"weibull model :", "v4", -0.094453294387503, 0.084614342859362},
        {"weibull model :", "constant", 4.000225209376915, 1.066419167906423},
    };
    for (const auto& [title, label, value, error] : coefficients) {
        const double root = value / error, tail = std::erfc(std::fabs(root) / std::sqrt(2.0));
        expectNear(session.row(title, label), {value, error, root * root, tail}, 1e-10);
    }
    const double exponential = -32.68467405932, fitted = -29.43680972078;
    const double gain = fitted - exponential;
    expectNear(session.row("s.error,        chi.square", "shape"),
               {2.342753978601848, 0.654109483692714, 2 * gain, std::erfc(std::sqrt(gain))}, 1e-9);
    expectNear(session.row("log likelihood", "exponential"), {exponential, 6 - 2 * exponential}, 1e-9);
    expectNear(session.row("log likelihood", "weibull"), {fitted, 8 - 2 * fitted}, 1e-9);
    const std::vector<double> sixth = session.row("time, state", "s6"); // censored
    expectNear({sixth[0], sixth[1], sixth[4], sixth[5]}, {20, 0, 12.326391015260, 0.1160118314351}, 1e-6);
}

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
        {"a deviation without end", {y, t, huge}, newtonRaphsonSingular, newtonRaphsonSingular},
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

TEST(SurvivalModels, OptionRules) {
    AnalysisSession session(fileOf(samples));
    AnalysisOptions& options = session.run.options;
    SurvivalOptions& chosen = options.settings.weibull;
    const auto refusal = [&](std::int32_t state, std::int32_t time) {
        chosen.stateColumn = state;
        chosen.timeColumn = time;
        const char* const text = weibullModel.refuse(options, 0);
        return std::string(text == nullptr ? "" : text);
    };
    EXPECT_EQ(refusal(0, 0), "please select one state variable");
    EXPECT_EQ(refusal(0, 2), "please select one state variable");
    EXPECT_EQ(refusal(1, 0), "please select one time variable");
    EXPECT_EQ(refusal(2, 2), "state and time variable must be different");
    EXPECT_EQ(refusal(1, 9), "");
    EXPECT_EQ(session.analyse(weibull), noEffectiveVariable); // there is no such column
    EXPECT_EQ(refusal(1, 2), "");
    session.failAllocations(weibull);
    EXPECT_EQ(session.analyse(weibull), success);
}

} // namespace
