#include "analysis/basic/regression/curve_model.h"

#include <cmath>

#include "analysis/run/kind_number.h"

namespace {

// Of an explanatory variable.
double keepVariable(double x, double) {
    return x;
}
double power(double x, double degree) {
    return std::pow(x, degree);
}
double logarithm(double x, double) {
    return std::log(x);
}

bool any(double) {
    return true;
}
bool isPositive(double x) {
    return x > 0.0;
}
bool isShare(double y) {
    return y > 0.0 && y < 1.0;
}
bool isPercentage(double y) {
    return y > 0.0 && y < 100.0;
}

// Of the purpose variable, and back.
double keepPurpose(double y) {
    return y;
}
double naturalLogarithm(double y) {
    return std::log(y);
}
double exponential(double value) {
    return std::exp(value);
}
double reciprocal(double y) {
    return 1.0 / y;
}
double logitOfShare(double y) {
    return std::log(y / (1.0 - y));
}
double shareOfLogit(double value) {
    return 1.0 / (1.0 + std::exp(-value));
}
double logitOfPercentage(double y) {
    return std::log(y / (100.0 - y));
}
double percentageOfLogit(double value) {
    return 100.0 / (1.0 + std::exp(-value));
}

const CurveModel models[] = {
    {multipleRegressionKind, nullptr, keepVariable, any, false, keepPurpose, any, keepPurpose},
    {degreesCurveKind, "convert degrees of polynomial terms", power, any, true, keepPurpose, any,
     keepPurpose},
    {involutionCurveKind, "involution", logarithm, isPositive, false, naturalLogarithm, isPositive,
     exponential},
    {exponentialCurveKind, "exponential", keepVariable, any, false, naturalLogarithm, isPositive,
     exponential},
    {inverseCurveKind, "inverse", keepVariable, any, false, reciprocal, isPositive, reciprocal},
    {logisticCurve1Kind, "logistic 1", keepVariable, any, false, logitOfShare, isShare, shareOfLogit},
    {logisticCurve2Kind, "logistic 2", keepVariable, any, false, logitOfPercentage, isPercentage,
     percentageOfLogit},
};

} // namespace

bool CurveModel::changesExplanatory(double degree) const {
    return explanatory != keepVariable && !(hasDegrees && degree == 1.0);
}

bool CurveModel::changesPurpose() const {
    return purpose != keepPurpose;
}

const CurveModel* findCurveModel(std::int32_t kind) {
    for (const CurveModel& model : models) {
        if (model.kind == kind) return &model;
    }
    return nullptr;
}
