#include "batch/sql/sql_transformation.h"

#include <cmath>
#include <limits>

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

SqlTransformation::SqlTransformation(const AnalysisKind& kind, const SqlColumn& column) {
    const bool isPurpose = column.role == SqlColumn::purpose;
    switch (kind.number) {
    case degreesCurveKind:
        if (isPurpose || column.degree == 1.0) return;
        form_ = power;
        degree_ = column.degree;
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
        whole_ = kind.number == logisticCurve1Kind ? 1 : 100;
        return;
    default:
        return;
    }
}

void SqlTransformation::writeCondition(SqlText& sql, Index cell) const {
    switch (form_) {
    case none:
        sql << "abs(\"v" << cell << "\") <= " << greatest;
        return;
    case power:
        // With a fraction it takes no negative number.
        if (isWhole(degree_)) {
            sql << "abs(\"v" << cell << "\") <= " << greatestOfPower(degree_);
        } else {
            sql << "\"v" << cell << "\" between 0 and " << greatestOfPower(degree_);
        }
        return;
    case logarithm:
        sql << "\"v" << cell << "\" > 0 and \"v" << cell << "\" <= " << greatest;
        return;
    case reciprocal:
        sql << "abs(\"v" << cell << "\") between " << leastOfReciprocal << " and " << greatest;
        return;
    case logit:
        sql << "\"v" << cell << "\" > 0 and \"v" << cell << "\" < " << whole_;
        return;
    }
}

void SqlTransformation::writeValue(SqlText& sql, Index cell) const {
    switch (form_) {
    case none:
        sql << "\"v" << cell << "\"";
        return;
    case power:
        if (degree_ > 1.0)
            sql << "case when abs(\"v" << cell << "\") < " << leastOfPower(degree_) << " then 0 else ";
        sql << "power(\"v" << cell << "\", " << degree_ << ")" << (degree_ > 1.0 ? " end" : "");
        return;
    case logarithm:
        sql << "ln(\"v" << cell << "\")";
        return;
    case reciprocal:
        sql << "1 / \"v" << cell << "\"";
        return;
    case logit:
        sql << "ln(\"v" << cell << "\" / (" << whole_ << " - \"v" << cell << "\"))";
        return;
    }
}
