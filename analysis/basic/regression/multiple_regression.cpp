#include "analysis/basic/regression/multiple_regression.h"

#include "analysis/basic/regression/regression_analysis.h"

namespace {

const std::array fields = regressionFields(offsetof(AnalysisOptions, settings.regression));

} // namespace

const Analysis multipleRegression = regressionAnalysis<&Settings::regression>(fields);
