#include "analysis/basic/regression/sql_transformation.h"

#include <cmath>
#include <limits>

#include "analysis/run/kind_number.h"

namespace {

constexpr double greatest = std::numeric_limits<double>::max();
constexpr double leastOfReciprocal =
    std::numeric_limits<double>::min(); // that of a smaller one may be infinite

// The greatest size of which the power is finite, a little less for the rounding of the engine's own
// function.
double greatestOfPower(double degree) {
    if (degree <= 1.0) return greatest;
    return std::pow(greatest, 1.0 / degree) * (1.0 - 1e-13);
}

// The least size of which the power is no less than the least normal number: some engines fail where it
// becomes 0, so it is 0 below.
double leastOfPower(double degree) {
    return std::pow(std::numeric_limits<double>::min(), 1.0 / degree) * (1.0 + 1e-13);
}

bool isWhole(double degree) {
    return degree == std::trunc(degree);
}

} // namespace

SqlTransformation::SqlTransformation(std::int32_t kind, bool isPurpose, double degree) {
    switch (kind) {
    case degreesCurveKind:
        if (isPurpose || degree == 1.0) return;
        form_ = power;
        degree_ = degree;
        return;
    case involutionCurveKind:
        form_ = logarithm;
        return;
    case exponentialCurveKind:
        if (isPurpose) form_ = logarithm;
        return;
    case inverseCurveKind:
        if (isPurpose) form_ = reciprocal;
        return;
    case logisticCurve1Kind:
    case logisticCurve2Kind:
        if (isPurpose) form_ = logit;
        whole_ = kind == logisticCurve1Kind ? 1 : 100;
        return;
    default:
        return;
    }
}

void SqlTransformation::writeCondition(SqlText& sql, const SqlColumnValue& value) const {
    switch (form_) {
    case none:
        sql << "abs(" << value << ") <= " << greatest;
        return;
    case power:
        // With a fraction it takes no negative number.
        if (isWhole(degree_)) {
            sql << "abs(" << value << ") <= " << greatestOfPower(degree_);
        } else {
            sql << value << " between 0 and " << greatestOfPower(degree_);
        }
        return;
    case logarithm:
        sql << value << " > 0 and " << value << " <= " << greatest;
        return;
    case reciprocal:
        sql << "abs(" << value << ") between " << leastOfReciprocal << " and " << greatest;
        return;
    case logit:
        sql << value << " > 0 and " << value << " < " << whole_;
        return;
    }
}

void SqlTransformation::writeValue(SqlText& sql, const SqlColumnValue& value) const {
    switch (form_) {
    case none:
        sql << value;
        return;
    case power:
        if (degree_ > 1.0)
            sql << "case when abs(" << value << ") < " << leastOfPower(degree_) << " then 0 else ";
        sql << "power(" << value << ", " << degree_ << ")" << (degree_ > 1.0 ? " end" : "");
        return;
    case logarithm:
        sql << "ln(" << value << ")";
        return;
    case reciprocal:
        sql << "1 / " << value;
        return;
    case logit:
        sql << "ln(" << value << " / (" << whole_ << " - " << value << "))";
        return;
    }
}
