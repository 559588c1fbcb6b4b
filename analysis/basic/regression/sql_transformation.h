#pragma once

#include <cstdint>

#include "report/sql_text.h"

// How an engine computes a variable that a curve takes transformed, by the formulas of curve_model.cpp.
class SqlTransformation {
public:
    // Of a kind of analysis: of its purpose variable, or of another one, which is raised to the power
    // `degree` where the curve has powers. One that is no curve changes nothing.
    SqlTransformation(std::int32_t kind, bool isPurpose, double degree);

    bool changes() const { return form_ != none; }

    // When the transformation takes the number `value`, and what it makes of it is finite: a condition that
    // holds neither for a null nor for what is not finite.
    void writeCondition(SqlText& sql, const SqlColumnValue& value) const;
    // The transformed number.
    void writeValue(SqlText& sql, const SqlColumnValue& value) const;

private:
    enum Form { none, power, logarithm, reciprocal, logit };

    Form form_ = none;
    double degree_ = 1.0; // of a power
    Index whole_ = 1;     // what a logit takes shares of
};
