#pragma once

#include <cmath>

#include "tests/support/analysis_session.h"
#include "tests/support/cases.h"

// The program for kinds 1, 11 and 41..46 with a file of the reference data, or with a text that has line
// ends.
struct RegressionRun : AnalysisSession {
    explicit RegressionRun(const std::string& source, const std::string& purpose = "")
        : AnalysisSession(source.find('\n') != std::string::npos ? source
                                                                 : readTextFile("reference/data/" + source)) {
        if (!purpose.empty()) choosePurpose(purpose);
    }
    // The number of a variable of the loaded part, from 1.
    std::int32_t variable(const std::string& name) const {
        std::int32_t v = 0;
        while (v < run.data.loaded.variables && name != run.data.loaded.name(v)) ++v;
        return v + 1;
    }
    void choosePurpose(const std::string& name) {
        for (std::int32_t& flag : run.data.selectionFlags) flag = 0;
        run.data.selectionFlags[variable(name)] = 1;
    }
    RegressionOptions& options(std::int32_t kind) {
        return kind == 1 ? run.options.settings.regression : run.options.settings.curve;
    }
    ErrorCode runKind(std::int32_t kind) { return analyse(firstAnalysisCommand + kind); }

    const FittedModel& model() const { return run.data.model; }
    Index variables() const { return run.data.working.variables; }
    double value(Index sample, Index column) const { return run.data.working.at(sample, column); }
    // Measure, prediction, infimum, supremum, residual and standardized residual, as printed.
    std::vector<double> sample(Index number) const { return row("\tmesure", run.data.working.label(number)); }
};

inline void expectRelative(double actual, double expected, double relative) {
    EXPECT_NEAR(actual, expected, relative * std::fabs(expected));
}
