#include "analysis/basic/prediction.h"

#include "tests/support/regression_run.h"

namespace {

struct Fitted : RegressionRun {
    Fitted(std::int32_t kind, const std::string& source, const std::string& purpose, RegressionOptions choice)
        : RegressionRun(source, purpose) {
        options(kind) = choice;
        EXPECT_EQ(runKind(kind), success);
    }
    PredictionEntry entryOfSample(std::size_t number) const {
        PredictionEntry entry;
        EXPECT_EQ(startPrediction(run, entry), success);
        for (std::size_t v = 0; v < entry.values.size(); ++v) entry.values[v] = value(number, v);
        return entry;
    }
};

constexpr RegressionOptions allVariables = {0, 0, 2.0, 1.5, 0.05};
constexpr RegressionOptions backward = {2, 0, 2.0, 1.5, 0.05};

// n + 1 columns without order.
std::string randomFile(int n) {
    std::vector<std::vector<double>> columns(static_cast<std::size_t>(n) + 1);
    unsigned number = 7;
    for (auto& column : columns) {
        while (column.size() < columns.size() + 4)
            column.push_back((number = number * 1103515245 + 12345) >> 16 & 1023);
    }
    return fileOf(columns);
}

} // namespace

TEST(Prediction, OfATrainingRowIsTheSampleTable) {
    const struct {
        std::int32_t kind;
        const char* file;
        const char* purpose;
    } cases[] = {{1, "swiss.csv", "Fertility"},       {41, "stackloss.csv", "stack.loss"},
                 {42, "stackloss.csv", "stack.loss"}, {43, "longley.csv", "Employed"},
                 {44, "mtcars.csv", "mpg"},           {45, "boston.csv", "nox"},
                 {46, "USArrests.csv", "UrbanPop"},   {11, "survey-y.csv", "y"}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.kind);
        const bool categories = each.kind == 11;
        Fitted run(each.kind, each.file, each.purpose, backward);
        for (const std::size_t number : {0, 1, 9}) {
            const std::vector<double> row = run.sample(number);
            Prediction prediction;
            ASSERT_EQ(computePrediction(run.run, run.entryOfSample(number), prediction), success);
            EXPECT_NEAR(prediction.median, row[1], categories ? 6e-4 : 2e-5);
            EXPECT_NE(prediction.hasLimits, categories);
            EXPECT_NEAR(prediction.infimum, categories ? 0.0 : row[2], 2e-5);
            EXPECT_NEAR(prediction.supremum, categories ? 0.0 : row[3], 2e-5);
        }
    }
}

TEST(Prediction, MakesTheIntervalThatTheRunHadNot) {
    for (const std::int32_t kind : {1, 42}) {
        RegressionOptions options = allVariables;
        Fitted with(kind, "stackloss.csv", "stack.loss", options);
        options.alpha = 0.0;
        Fitted without(kind, "stackloss.csv", "stack.loss", options);
        PredictionEntry entry = without.entryOfSample(3);
        Prediction actual, expected;
        ASSERT_EQ(computePrediction(without.run, entry, actual), success);
        EXPECT_FALSE(actual.hasLimits);
        entry.alpha = 0.1;
        ASSERT_EQ(computePrediction(with.run, entry, expected), success);
        for (int time = 0; time < 2; ++time) {
            ASSERT_EQ(computePrediction(without.run, entry, actual), success);
            EXPECT_DOUBLE_EQ(actual.infimum, expected.infimum);
            EXPECT_DOUBLE_EQ(actual.supremum, expected.supremum);
        }
        entry.alpha = 1.0;
        ASSERT_EQ(computePrediction(with.run, entry, actual), success);
        EXPECT_TRUE(actual.hasLimits && actual.infimum == actual.median);
    }
}

TEST(Prediction, RefusesValuesThatTheModelCannotTake) {
    Fitted involution(42, "stackloss.csv", "stack.loss", backward);
    ASSERT_EQ(involution.model().count, 2); // without Acid.Conc.
    Fitted quantification(11, "survey-y.csv", "y", backward);
    const struct {
        Fitted& run;
        std::size_t variable;
        double value;
        ErrorCode code;
    } cases[] = {{involution, 0, 0.0, notFinite},
                 {involution, 0, -1.0, notFinite},
                 {involution, 0, NAN, notFinite},
                 {involution, 2, -1.0, success},
                 {quantification, 1, 3.0, success},
                 {quantification, 1, 4.0, illegalCategoricalData},
                 {quantification, 1, 0.0, illegalCategoricalData},
                 {quantification, 1, 1.5, illegalCategoricalData},
                 {quantification, 1, NAN, illegalCategoricalData}};
    for (const auto& each : cases) {
        PredictionEntry entry;
        ASSERT_EQ(startPrediction(each.run.run, entry), success);
        entry.values[each.variable] = each.value;
        Prediction prediction;
        EXPECT_EQ(computePrediction(each.run.run, entry, prediction), each.code) << each.value;
    }
}

TEST(Prediction, PagesHaveTenPlaces) {
    for (const auto& [variables, pages] : {std::pair{8, 1}, {9, 1}, {10, 2}, {18, 2}, {19, 2}, {20, 3}}) {
        EXPECT_EQ(predictionPageCount(Fitted(1, randomFile(variables), "v1", allVariables).run), pages)
            << variables;
    }

    Fitted run(1, randomFile(11), "v4", {3, 1, 1.01, 1.0, 0.25});
    PredictionEntry entry;
    ASSERT_EQ(startPrediction(run.run, entry), success);
    const PredictionPlace alpha = predictionPlace(run.run, entry, 0, 0);
    EXPECT_STREQ(alpha.name, "alpha");
    EXPECT_TRUE(alpha.isEnabled && *alpha.value == 0.25);
    int enabled = 0;
    for (int k = 0; k < 11; ++k) {
        const PredictionPlace place = predictionPlace(run.run, entry, (k + 1) / 10, (k + 1) % 10);
        EXPECT_EQ(place.name, "v" + std::to_string(k < 3 ? k + 1 : k + 2));
        double mean = 0.0;
        for (std::size_t i = 0; i < 16; ++i) mean += run.value(i, static_cast<std::size_t>(k)) / 16;
        EXPECT_NEAR(*place.value, mean, 1e-9);
        const std::int32_t* const end = run.model().variables.begin() + run.model().count;
        EXPECT_EQ(place.isEnabled, std::find(run.model().variables.begin(), end, k) != end) << k;
        enabled += place.isEnabled ? 1 : 0;
    }
    EXPECT_TRUE(enabled > 0 && enabled < 11);
    EXPECT_EQ(predictionPlace(run.run, entry, 1, 2).value, nullptr);

    Fitted quantification(11, "survey-y.csv", "y", backward);
    ASSERT_EQ(startPrediction(quantification.run, entry), success);
    EXPECT_FALSE(predictionPlace(quantification.run, entry, 0, 0).isEnabled);
    EXPECT_TRUE(predictionPlace(quantification.run, entry, 0, 5).isEnabled);
    EXPECT_EQ(*predictionPlace(quantification.run, entry, 0, 5).value, 1.0);
}

TEST(Prediction, CommandAsksPageByPage) {
    RegressionRun run(randomFile(12), "v1");
    const auto logOfPrediction = [&](ErrorCode expected) {
        run.frontend.takeLog();
        EXPECT_EQ(runPrediction(run.frontend, run.run), expected);
        return run.frontend.takeLog();
    };
    EXPECT_EQ(logOfPrediction(success), ""); // nothing is fitted
    run.options(1) = {0, 0, 2.0, 1.0, 0.0};
    ASSERT_EQ(run.runKind(1), success);
    const std::string report = run.frontend.lower;
    run.frontend.enter = [](const AnalysisRun&, PredictionEntry&, int page) { return page == 0; };
    EXPECT_EQ(logOfPrediction(success), "page page");
    EXPECT_EQ(run.run.report.lower.text(), report);

    run.frontend.enter = [](const AnalysisRun&, PredictionEntry& entry, int page) {
        entry.values[static_cast<std::size_t>(page)] = 100.0 + page;
        return true;
    };
    EXPECT_EQ(logOfPrediction(success), "page page lower status");
    EXPECT_EQ(run.frontend.lower.find("\nprediction statistics\n-- due to multiple regression analysis\n\n"),
              0U);
    EXPECT_EQ(run.frontend.status, "status : prediction statistics");
    EXPECT_EQ(run.row("value of explanatory", "v2"), (std::vector<double>{100}));
    EXPECT_EQ(run.row("value of explanatory", "v3"), (std::vector<double>{101}));
    EXPECT_NE(run.frontend.lower.find("\n  2,        infimum,           \n"), std::string::npos);

    run.frontend.enter = [](const AnalysisRun&, PredictionEntry& entry, int) {
        entry.values[0] = INFINITY;
        return true;
    };
    EXPECT_EQ(logOfPrediction(notFinite), "page page lower status");
    EXPECT_EQ(run.frontend.status, "error : detected nan, ind or inf cause inept source data.");

    // An analysis that fails and an exclusion make the model invalid.
    run.options(1) = {3, 1, 1e9, 1.0, 0.0};
    EXPECT_EQ(run.runKind(1), noEffectiveVariable);
    EXPECT_EQ(logOfPrediction(success), "");
    run.options(1).method = 0;
    ASSERT_EQ(run.runKind(1), success);
    applyExclusion(run.frontend, run.run, {3});
    EXPECT_EQ(logOfPrediction(success), "");
}

TEST(Prediction, FailingAllocationsGiveCode4) {
    for (const std::int32_t kind : {1, 11}) {
        Fitted run(kind, "survey-y.csv", "y", {0, 0, 2.0, 1.5, 0.0});
        run.frontend.enter = [](const AnalysisRun&, PredictionEntry& entry, int) {
            entry.alpha = 0.5;
            return true;
        };
        ErrorCode code = success;
        failEachAllocation([&] { code = runPrediction(run.frontend, run.run); },
                           [&] { EXPECT_EQ(code, outOfMemory) << kind; });
        EXPECT_EQ(code, success);
    }
}
