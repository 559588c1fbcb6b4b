#include "analysis/multivariate/discriminant/discriminant_expressions.h"

#include <cstdio>

namespace {

class DiscriminantExpressions {
public:
    DiscriminantExpressions(const DiscriminantResult& result, ExpressionWriter& writer)
        : functions_(result.functions), selection_(result.selection), groups_(result.statistics.groups),
          writer_(writer), sql_(writer.sql()) {}

    void addAll();

private:
    // constant + the sum of the selected variables, coefficient(j) of each.
    template <class Coefficient> void writeSum(double constant, Coefficient coefficient) {
        writer_.sum(constant, selection_.selected,
                    [&](Index j) { writer_.writeTerm(coefficient(j), selection_.order[j]); });
    }
    void writeScore(Index function, double origin) {
        writeSum(functions_.constants[function] - origin,
                 [&](Index j) { return functions_.coefficients(j, function); });
    }
    void writeDistance(Index group);
    void writeDifference(Index group, Index other);
    void writeNearestGroup();

    const DiscriminantFunctions& functions_;
    const VariableSelection& selection_;
    Index groups_;
    ExpressionWriter& writer_;
    SqlText& sql_;
};

void DiscriminantExpressions::writeDistance(Index group) {
    writer_.sum(0.0, functions_.classifying, [&](Index v) {
        sql_ << "power(";
        writeScore(v, functions_.centroids(group, v));
        sql_ << ", 2e0)";
    });
    // The variance of Fisher's score is the distance of the two groups.
    if (groups_ == 2) writer_.divideBy(functions_.mahalanobis);
}

// Half of what the squared distance from a group is more than that from another: squares of scores cancel, so
// that it is linear in the variables.
void DiscriminantExpressions::writeDifference(Index group, Index other) {
    const auto weigh = [&](auto value) {
        double sum = 0.0;
        for (Index v = 0; v < functions_.classifying; ++v) {
            sum += (functions_.centroids(other, v) - functions_.centroids(group, v)) * value(v);
        }
        return sum;
    };
    const double constant = weigh([&](Index v) {
        const double middle = 0.5 * (functions_.centroids(group, v) + functions_.centroids(other, v));
        return functions_.constants[v] - middle;
    });
    writeSum(constant,
             [&](Index j) { return weigh([&](Index v) { return functions_.coefficients(j, v); }); });
}

// Each group is compared with those behind it: one before it was farther than some of these.
void DiscriminantExpressions::writeNearestGroup() {
    sql_ << "case ";
    for (Index g = 0; g + 1 < groups_; ++g) {
        for (Index other = g + 1; other < groups_; ++other) {
            sql_ << (other == g + 1 ? "when " : " and ");
            writeDifference(g, other);
            sql_ << " <= 0e0";
        }
        sql_ << " then " << g + 1 << " ";
    }
    // A row that lacks a variable has no group.
    sql_ << "when ";
    writeDifference(groups_ - 2, groups_ - 1);
    sql_ << " > 0e0 then " << groups_ << " end";
}

void DiscriminantExpressions::addAll() {
    char name[32];
    for (Index v = 0; v < functions_.vectors; ++v) {
        std::snprintf(name, sizeof name, "score %td", v + 1);
        writer_.add(name, [&] { writeScore(v, 0.0); });
    }
    for (Index g = 0; g < groups_; ++g) {
        std::snprintf(name, sizeof name, "distance %td", g + 1);
        writer_.add(name, [&] { writeDistance(g); });
    }
    writer_.add("d.group", [&] { writeNearestGroup(); });
}

} // namespace

ErrorCode keepDiscriminantExpressions(AnalysisRun& run, const DiscriminantResult& result) {
    return keepExpressions(run.expressions, run.data, [&](ExpressionWriter& writer) {
        DiscriminantExpressions(result, writer).addAll();
    });
}
