// Reads "samples variables" and the values row by row; prints what the kernels compute with 17 digits,
// because a report shows six or twelve decimals only: "mean|sd|onepass-mean|onepass-variance j value", and
// for the last variable as purpose "code|constant|coefficient|error|r2|residual j value". Argument: classic
// or textbook. Built against the core library; see run.sh.
#include <cmath>
#include <cstdio>
#include <cstring>

#include "analysis/basic/descriptive/basic_statistics.h"
#include "analysis/basic/regression/regression.h"
#include "numeric/least_squares.h"
#include "numeric/numerics.h"
#include "report/screens.h"

struct Silent : Screens {
    void showUpper(const Report&) override {}
    void showLower(const Report&) override {}
    void showStatus(const Report&) override {}
    void showProgress() override {}
    ErrorCode setProgress(int) override { return success; }
    void hideProgress() override {}
    void alert(const char*, const char*) override {}
};

static void say(const char* what, Index j, double value) {
    std::printf("%s %td %.17g\n", what, j, value);
}

static void sayClassic(const DataMatrix& data, const MomentMatrices& moments) {
    const Index k = data.variables - 1;
    Silent screens;
    RegressionFit fit;
    if (fit.allocate(data.samples, k) != success) return;
    const RegressionData regression = {data.values.data(), data.samples, data.variables, moments};
    fit.count = static_cast<std::int32_t>(k);
    for (Index j = 0; j < k; ++j) fit.variables[j] = static_cast<std::int32_t>(j);
    say("code", 0, fitByCorrelations(screens, regression, 0.0, DeterminantTest::refuseNegative, fit));
    say("constant", 0, fit.constant);
    for (Index j = 0; j < k; ++j) {
        say("coefficient", j, fit.coefficients[j]);
        say("error", j, fit.errors[j]);
    }
    say("r2", 0, fit.determinations[0]);
    say("residual", 0, std::sqrt(fit.residualVariance));
}

static void sayTextbook(const DataMatrix& data) {
    const Index k = data.variables - 1;
    Block<std::int32_t> variables;
    LeastSquares fit;
    if (variables.allocate(k) != success) return;
    for (Index j = 0; j < k; ++j) variables[j] = static_cast<std::int32_t>(j);
    const ErrorCode code =
        fitLeastSquares({data.values.data(), data.samples, k + 1, variables.data(), k, k}, fit);
    say("code", 0, code);
    if (code != success) return;
    const double variance = fit.residualSum / static_cast<double>(data.samples - k - 1);
    say("constant", 0, fit.constant);
    for (Index j = 0; j < k; ++j) {
        say("coefficient", j, fit.coefficients[j]);
        say("error", j, std::sqrt(fit.inverse(j, j) * variance));
    }
    say("r2", 0, 1.0 - fit.residualSum / fit.totalSum);
    say("residual", 0, std::sqrt(variance));
}

int main(int count, char** arguments) {
    const bool textbook = count > 1 && std::strcmp(arguments[1], "textbook") == 0;
    const Numerics& numerics = textbook ? textbookNumerics : classicNumerics;
    DataMatrix data;
    if (std::scanf("%d %d", &data.samples, &data.variables) != 2) return 2;
    const Index p = data.variables;
    Block<double> values;
    if (values.allocate(data.samples * p) != success) return 1;
    for (double& value : values)
        if (std::scanf("%lf", &value) != 1) return 2;
    data.values = {values.data(), static_cast<std::size_t>(values.size())};
    Silent screens;
    BasicStatistics basic;
    MomentMatrices moments;
    if ((basic.allocate(p, data.samples) | moments.allocate(p)) != success) return 1;
    if (findBasicStatistics(screens, numerics, data, basic) != success) return 1;
    numerics.moments(data.values.data(), data.samples, data.variables, moments);
    for (Index j = 0; j < p; ++j) {
        say("mean", j, basic.mean[j]);
        say("sd", j, basic.standardDeviation[j]);
        say("onepass-mean", j, moments.means[j]);
        say("onepass-variance", j, moments.covariance(j, j));
    }
    if (p < 2) return 0;
    if (textbook) {
        sayTextbook(data);
    } else {
        sayClassic(data, moments);
    }
}
