#pragma once

#include "analysis/multivariate/discriminant/discriminant_report.h"

// Keeps the scores, the squared distances from the groups and the assigned group as expressions, if they are
// wanted. Returns success or outOfMemory.
[[nodiscard]] ErrorCode keepDiscriminantExpressions(AnalysisRun& run, const DiscriminantResult& result);
