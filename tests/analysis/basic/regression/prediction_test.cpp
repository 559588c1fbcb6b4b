#include "analysis/basic/regression/prediction.h"

#include "tests/support/regression_run.h"

namespace {

struct Fitted : RegressionRun {
    Fitted(std::int32_t kind, const std::string& source, const std::string& purpose,
           const RegressionOptions& choice)
        : RegressionRun(source, purpose) {
        options(kind) = choice;
        EXPECT_EQ(runKind(kind), success);
    }
    PredictionEntry entryOfSample(Index number) const {
        PredictionEntry entry;
        EXPECT_EQ(startPrediction(run, entry), success);
        for (Index v = 0; v < entry.values.size(); ++v) entry.values[v] = value(number, v);
        return entry;
    }
    Prediction predict(const PredictionEntry& entry, ErrorCode code = success) {
        Prediction prediction;
        EXPECT_EQ(computePrediction(run, entry, prediction), code);
        return prediction;
    }
};

constexpr RegressionOptions allVariables = {0, 0, 2.0, 1.5, 0.05};
constexpr RegressionOptions backward = {2, 0, 2.0, 1.5, 0.05};

} // namespace

TEST(Prediction, OfATrainingRowIsTheSampleTable) {
    const std::tuple<std::int32_t, const char*, const char*> cases[] = {
        {1, "swiss.csv", "Fertility"},       {41, "stackloss.csv", "stack.loss"},
        {42, "stackloss.csv", "stack.loss"}, {43, "longley.csv", "Employed"},
        {44, "mtcars.csv", "mpg"},           {45, "boston.csv", "nox"},
        {46, "USArrests.csv", "UrbanPop"},   {11, "survey-y.csv", "y"}};
    for (const auto& [kind, file, purpose] : cases) {
        SCOPED_TRACE(kind);
        const bool categories = kind == 11;
        Fitted run(kind, file, purpose, backward);
        for (const Index number : {0, 9}) {
            const std::vector<double> row = run.sample(number);
            const Prediction prediction = run.predict(run.entryOfSample(number));
            EXPECT_NE(prediction.hasLimits, categories);
            expectNear({prediction.median, prediction.infimum, prediction.supremum},
                       {row[1], categories ? 0.0 : row[2], categories ? 0.0 : row[3]},
                       categories ? 6e-4 : 2e-5);
        }
    }
}

TEST(Prediction, MakesTheIntervalThatTheRunHadNot) {
    for (const std::int32_t kind : {1, 42}) {
        Fitted with(kind, "stackloss.csv", "stack.loss", allVariables);
        Fitted without(kind, "stackloss.csv", "stack.loss", {0, 0, 2.0, 1.5, 0.0});
        PredictionEntry entry = without.entryOfSample(3);
        EXPECT_FALSE(without.predict(entry).hasLimits);
        without.frontend.enter = [](const AnalysisRun&, PredictionEntry& asked, int) {
            asked.alpha = 0.5;
            return PredictionStep::next;
        };
        ErrorCode code = success;
        failEachAllocation([&] { code = runPrediction(without.frontend, without.run); },
                           [&] { EXPECT_EQ(code, outOfMemory); });
        EXPECT_EQ(code, success);
        entry.alpha = 0.1;
        const Prediction actual = without.predict(entry), expected = with.predict(entry);
        EXPECT_DOUBLE_EQ(actual.infimum, expected.infimum);
        EXPECT_DOUBLE_EQ(actual.supremum, expected.supremum);
        entry.alpha = 1.0;
        const Prediction narrow = with.predict(entry);
        EXPECT_TRUE(narrow.hasLimits && narrow.infimum == narrow.median);
    }
}

TEST(Prediction, RefusesValuesThatTheModelCannotTake) {
    Fitted involution(42, "stackloss.csv", "stack.loss", backward);
    Fitted quantification(11, "survey-y.csv", "y", backward);
    const std::tuple<Fitted&, Index, std::vector<double>, ErrorCode> cases[] = {
        {involution, 0, {0.0, -1.0, NAN}, notFinite},
        {involution, 2, {-1.0}, success}, // not in the model
        {quantification, 1, {3.0}, success},
        {quantification, 1, {4.0, 0.0, 1.5, NAN}, illegalCategoricalData}};
    for (const auto& [run, variable, values, code] : cases) {
        PredictionEntry entry;
        ASSERT_EQ(startPrediction(run.run, entry), success);
        for (const double value : values) {
            entry.values[variable] = value;
            run.predict(entry, code);
        }
    }
}

TEST(Prediction, PagesHaveTenPlaces) {
    Fitted run(1, "mtcars.csv", "hp", backward);
    PredictionEntry entry;
    ASSERT_EQ(startPrediction(run.run, entry), success);
    std::string places; // and a mark where a value can be entered
    for (int k = 0; k < 12; ++k) {
        const PredictionPlace place = predictionPlace(run.run, entry, k / 10, k % 10);
        places += std::string(place.name) + (place.isEnabled ? "* " : " ");
    }
    EXPECT_EQ(places, "alpha* mpg cyl disp* drat wt* qsec vs am gear carb*  ");
    EXPECT_EQ(*predictionPlace(run.run, entry, 0, 0).value, 0.05);
    EXPECT_NEAR(*predictionPlace(run.run, entry, 1, 0).value, 2.8125, 1e-12); // the mean
    for (const auto& [variables, pages] : {std::pair{9, 1}, {10, 2}, {19, 2}, {20, 3}}) {
        run.run.data.working.variables = variables + 1;
        EXPECT_EQ(predictionPageCount(run.run), pages);
    }
    Fitted quantification(11, "survey-y.csv", "y", backward);
    ASSERT_EQ(startPrediction(quantification.run, entry), success);
    EXPECT_FALSE(predictionPlace(quantification.run, entry, 0, 0).isEnabled);
    const PredictionPlace category = predictionPlace(quantification.run, entry, 0, 5);
    EXPECT_TRUE(category.isEnabled && *category.value == 1.0);
}

TEST(Prediction, PagesCanBeTurnedBack) {
    using enum PredictionStep;
    Fitted run(1, "mtcars.csv", "hp", backward);
    const std::string report = run.frontend.lower;
    for (const PredictionStep last : {cancelled, next}) {
        const PredictionStep steps[] = {back, next, back, next, last};
        int step = 0;
        run.frontend.takeLog();
        run.frontend.enter = [&](const AnalysisRun&, PredictionEntry& entry, int) {
            if (step == 0) entry.values[2] = 123.0;
            EXPECT_EQ(entry.values[2], 123.0);
            return steps[step++];
        };
        EXPECT_EQ(runPrediction(run.frontend, run.run), success);
        const std::string pages = "page 0 page 0 page 1 page 0 page 1";
        EXPECT_EQ(run.frontend.takeLog(), last == next ? pages + " lower status" : pages);
        EXPECT_EQ(run.frontend.lower == report, last == cancelled);
    }
}
