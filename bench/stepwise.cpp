#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>

#include "analysis/basic/regression/stepwise_selection.h"
#include "bench/bench.h"

namespace {

// Columns of which the last depends on the first twentieth, with their moments.
struct SelectionData {
    Matrix values;
    MomentMatrices moments;

    [[nodiscard]] ErrorCode fill(Index samples, Index variables) {
        const ErrorCode code = values.allocate(samples, variables) | moments.allocate(variables);
        if (code != success) return code;
        std::mt19937 random(6);
        std::normal_distribution<double> normal;
        for (double& value : values) value = normal(random);
        for (Index i = 0; i < samples; ++i) {
            double* const row = values.row(i);
            for (Index j = 0; j < variables / 20; ++j) row[variables - 1] += 0.1 * row[j];
        }
        return MeanCovarianceCorrelation(values.data(), static_cast<std::int32_t>(samples),
                                         static_cast<std::int32_t>(variables), moments);
    }
};

// Seconds of a selection by the AIC, or less than 0.
double timeSelection(const SelectionData& data, int method, bool updates, StepwiseSelection& selection) {
    const RegressionData regressed = {data.values.data(), static_cast<std::int32_t>(data.values.rows()),
                                      static_cast<std::int32_t>(data.values.columns()), data.moments};
    if (selection.allocate(data.values.columns()) != success) return -1.0;
    const auto start = std::chrono::steady_clock::now();
    const ErrorCode code = selectVariables(classicNumerics, regressed, {method, 0, 2.0, 1.5, 0.0}, selection,
                                           {}, {.updates = updates});
    return code == success ? secondsSince(start) : -1.0;
}

Index countDifferences(const StepwiseSelection& a, const StepwiseSelection& b) {
    Index differences = std::max(a.stepCount, b.stepCount) - std::min(a.stepCount, b.stepCount);
    for (Index k = 0; k < std::min(a.stepCount, b.stepCount); ++k) {
        differences += a.steps[k].variable != b.steps[k].variable || a.steps[k].mark != b.steps[k].mark ||
                       std::fabs(a.steps[k].aic - b.steps[k].aic) > 1e-8;
    }
    return differences;
}

} // namespace

void benchStepwise() {
    constexpr const char* names[] = {"", "forward", "backward"};
    for (const int method : {1, 2}) {
        SelectionData data;
        StepwiseSelection updated, plain;
        if (data.fill(1000, 300) != success) return;
        const double seconds = timeSelection(data, method, true, updated);
        const double plainSeconds = timeSelection(data, method, false, plain);
        std::printf(
            "stepwise %s, 1000 x 300: %.3f s, an inverse a step %.2f s, %.0f times as long; %td of %td "
            "steps differ\n",
            names[method], seconds, plainSeconds, plainSeconds / seconds, countDifferences(updated, plain),
            plain.stepCount);
    }
    SelectionData large;
    StepwiseSelection selection;
    if (large.fill(2000, 1000) != success) return;
    const double seconds = timeSelection(large, 2, true, selection);
    std::printf("stepwise backward, 2000 x 1000: %.2f s, %td steps\n", seconds, selection.stepCount);
}
