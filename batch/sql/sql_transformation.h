#pragma once

#include "analysis/run/analysis_kind.h"
#include "batch/sql/sql_columns.h"

// How a statement computes a column that an analysis takes transformed, by the formulas of its curve
// (analysis/basic/regression/curve_model.h).
class SqlTransformation {
public:
    SqlTransformation(const AnalysisKind& kind, const SqlColumn& column);

    // When the transformation takes the number in the column `cell`, and its value is finite: a condition
    // that holds neither for a null nor for what is not finite.
    void writeCondition(SqlText& sql, Index cell) const;
    // The transformed number.
    void writeValue(SqlText& sql, Index cell) const;

private:
    enum Form { none, power, logarithm, reciprocal, logit };

    Form form_ = none;
    double degree_ = 1.0; // of a power
    Index whole_ = 1;     // what a logit takes shares of
};
