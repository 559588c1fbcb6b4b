#include "analysis/basic/regression/regression_expressions.h"

#include <cmath>

#include "analysis/basic/regression/sql_transformation.h"
#include "analysis/run/kind_number.h"

namespace {

class RegressionExpressions {
public:
    RegressionExpressions(const AnalysisRun& run, const RegressionResult& result, ExpressionWriter& writer);

    void addAll();

private:
    enum class Limit { lower, upper };

    bool hasLimits() const { return fit_.alpha != 0.0; }
    bool isShare() const { return kind_ == logisticCurve1Kind || kind_ == logisticCurve2Kind; }
    Index whole() const { return kind_ == logisticCurve1Kind ? 1 : 100; }
    bool isLogarithm() const { return kind_ == involutionCurveKind || kind_ == exponentialCurveKind; }

    void writeTransformed(Index column);
    void writeLinear();
    void writeDistance();
    void writeHalfWidth();
    void writeLimit(Limit limit);
    void writeInverseLimit(Limit limit);
    // `value` writes one on the scale of the linear model.
    template <class Write> void writeResponse(Write value) {
        if (isShare()) {
            writer_.share(whole(), value);
        } else if (isLogarithm()) {
            writer_.exponential(value);
        } else if (kind_ == inverseCurveKind) {
            sql_ << "1e0 / nullif(";
            value();
            sql_ << ", 0e0)";
        } else {
            value();
        }
    }

    std::int32_t kind_;
    const RegressionResult& result_;
    const RegressionFit& fit_;
    Index purpose_;
    double unexplained_;     // 1/N + 1 of the variance of a prediction
    double halfWidth_ = 0.0; // where that and the distance are 1
    ExpressionWriter& writer_;
    SqlText& sql_;
};

RegressionExpressions::RegressionExpressions(const AnalysisRun& run, const RegressionResult& result,
                                             ExpressionWriter& writer)
    : kind_(run.kind), result_(result), fit_(result.fit), purpose_(run.data.working.variables - 1),
      unexplained_(1.0 / run.data.working.samples + 1.0), writer_(writer), sql_(writer.sql()) {
    const double freedom = static_cast<double>(run.data.working.samples - fit_.count - 1);
    if (hasLimits()) {
        halfWidth_ = run.numerics->tTwoSidedQuantile(freedom, fit_.alpha) * std::sqrt(fit_.residualVariance);
    }
}

void RegressionExpressions::writeTransformed(Index column) {
    const SqlTransformation transformation(kind_, column == purpose_, result_.degrees[column]);
    const SqlColumnValue variable = writer_.variable(column);
    if (!transformation.changes()) {
        sql_ << variable;
        return;
    }
    sql_ << "case when ";
    transformation.writeCondition(sql_, variable);
    sql_ << " then ";
    transformation.writeValue(sql_, variable);
    sql_ << " end";
}

void RegressionExpressions::writeLinear() {
    writer_.sum(fit_.constant, fit_.count, [&](Index j) {
        sql_ << fit_.coefficients[j] << " * ";
        writeTransformed(fit_.variables[j]);
    });
}

// By the root M each row's sum is squared; by the symmetric M itself what is above the diagonal counts twice.
void RegressionExpressions::writeDistance() {
    const Matrix& m = fit_.intervalMatrix;
    const auto isZero = [&](Index i, Index j) { return fit_.hasRoot ? m(i, j) == 0.0 : j < i; };
    const auto weight = [&](Index i, Index j) {
        return fit_.hasRoot || i == j ? m(i, j) : m(i, j) + m(j, i);
    };
    const auto writeDeviation = [&](Index j) {
        sql_ << "(";
        writeTransformed(fit_.variables[j]);
        sql_ << " - " << result_.regressedMoments().means[fit_.variables[j]] << ")";
    };
    const auto writeRow = [&](Index i) {
        Index first = 0, end = fit_.count; // triangular matrices have zeros before or behind
        while (first + 1 < end && isZero(i, first)) ++first;
        while (first + 1 < end && isZero(i, end - 1)) --end;
        writer_.sum(0.0, end - first, [&](Index j) {
            sql_ << weight(i, first + j) << " * ";
            writeDeviation(first + j);
        });
    };
    writer_.sum(unexplained_, fit_.count, [&](Index i) {
        if (fit_.hasRoot) {
            sql_ << "power(";
            writeRow(i);
            sql_ << ", 2e0)";
        } else {
            writeDeviation(i);
            sql_ << " * ";
            writeRow(i);
        }
    });
}

void RegressionExpressions::writeHalfWidth() {
    sql_ << halfWidth_ << " * sqrt(";
    writeDistance();
    sql_ << ")";
}

// Of the interval on the scale of the linear model, through a response that rises.
void RegressionExpressions::writeLimit(Limit limit) {
    if (kind_ == inverseCurveKind) return writeInverseLimit(limit);
    writeResponse([&] {
        sql_ << "(";
        writeLinear();
        sql_ << (limit == Limit::lower ? " - " : " + ");
        writeHalfWidth();
        sql_ << ")";
    });
}

// The inverse falls, but for an interval with 0 in it.
void RegressionExpressions::writeInverseLimit(Limit limit) {
    const auto writeEnd = [&](const char* sign) {
        sql_ << " then 1e0 / nullif(";
        writeLinear();
        sql_ << sign;
        writeHalfWidth();
        sql_ << ", 0e0) ";
    };
    const auto writeCase = [&](const char* comparison) {
        sql_ << "when abs(";
        writeLinear();
        sql_ << ")" << comparison;
        writeHalfWidth();
    };
    const bool isLower = limit == Limit::lower;
    sql_ << "case ";
    writeCase(" > ");
    writeEnd(isLower ? " + " : " - ");
    writeCase(" <= ");
    writeEnd(isLower ? " - " : " + ");
    sql_ << "end";
}

void RegressionExpressions::addAll() {
    const auto writePrediction = [&] { writeResponse([&] { writeLinear(); }); };
    writer_.add("prediction", writePrediction);
    writer_.add("residual", [&] {
        sql_ << writer_.variable(purpose_) << " - ";
        writePrediction();
    });
    writer_.add("s.residual", [&] {
        sql_ << "(";
        writeTransformed(purpose_);
        sql_ << " - ";
        writeLinear();
        sql_ << ")";
        writer_.divideBy(std::sqrt(fit_.residualVariance));
    });
    if (!hasLimits()) return;
    writer_.add("infimum", [&] { writeLimit(Limit::lower); });
    writer_.add("supremum", [&] { writeLimit(Limit::upper); });
}

} // namespace

ErrorCode keepRegressionExpressions(AnalysisRun& run, const RegressionResult& result) {
    return keepExpressions(run.expressions, run.data, [&](ExpressionWriter& writer) {
        RegressionExpressions(run, result, writer).addAll();
    });
}
