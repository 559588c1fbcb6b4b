#include "data/moments/read_moments.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "data/moments/engine_moments.h"
#include "data/moments/typed_moments.h"
#include "numeric/eigen.h"

namespace {

// Engines round their sums to doubles, each covariance by itself.
constexpr double engineRounding = 1e-9;

// The correlations of a group, 0 with a constant variable, and what is wrong with its covariances, up to a
// rounding of so much of a correlation.
ErrorCode findCorrelations(const MomentTable& table, Index group, double rounding, Matrix& correlations,
                           MomentsRefusal& refusal) {
    const Index p = table.variables;
    for (Index i = 0; i < p; ++i) {
        if (table.covariance(group, i, i) < 0.0)
            return refuseMoments(refusal, MomentsFault::negative, table.names[i]);
        correlations(i, i) = 1.0;
        for (Index j = 0; j < i; ++j) {
            const double size =
                std::sqrt(table.covariance(group, i, i)) * std::sqrt(table.covariance(group, j, j));
            const double covariance = table.covariance(group, i, j);
            if (std::fabs(covariance) > (1.0 + rounding) * size + std::numeric_limits<double>::min())
                return refuseMoments(refusal, MomentsFault::tooLarge, table.names[i], table.names[j]);
            correlations(i, j) = correlations(j, i) = size > 0.0 ? covariance / size : 0.0;
        }
    }
    return success;
}

// Rounded correlations can have eigenvalues that are as negative as rounding makes them.
ErrorCode checkDefinite(const MomentTable& table, double rounding, MomentsRefusal& refusal) {
    const Index p = table.variables;
    Matrix correlations, vectors;
    Block<double> values;
    ErrorCode code = correlations.allocate(p, p) | vectors.allocate(p, p) | values.allocate(p);
    for (Index g = 0; code == success && g < table.groups; ++g) {
        code = findCorrelations(table, g, rounding, correlations, refusal);
        if (code == success) code = SymmetricEigen(vectors, values, correlations);
        if (code != success || values[p - 1] >= -rounding * static_cast<double>(p)) continue;
        // The two variables that the impossible direction has most of.
        Index first = 0, second = p > 1 ? 1 : 0;
        const auto size = [&](Index i) { return std::fabs(vectors(i, p - 1)); };
        if (size(second) > size(first)) std::swap(first, second);
        for (Index i = 2; i < p; ++i) {
            if (size(i) > size(first)) {
                second = first;
                first = i;
            } else if (size(i) > size(second)) {
                second = i;
            }
        }
        code = refuseMoments(refusal, MomentsFault::notDefinite, table.names[first], table.names[second]);
    }
    return code;
}

ErrorCode checkCounts(const MomentTable& table, MomentsRefusal& refusal) {
    constexpr double most = std::numeric_limits<std::int32_t>::max();
    return table.samples() <= most && table.leftOut <= most
               ? success
               : refuseMoments(refusal, MomentsFault::tooManySamples);
}

} // namespace

ErrorCode readMoments(char* bytes, Index length, bool divisorIsN, MomentTable& table,
                      MomentsRefusal& refusal) {
    table = {};
    refusal = {};
    DelimitedCells cells;
    ErrorCode code = cells.divide(bytes, length, refusal);
    double rounding = engineRounding;
    if (code == success && isEngineHead(cells)) {
        code = readEngineMoments(cells, table, refusal);
    } else if (code == success) {
        code = readTypedMoments(cells, divisorIsN, table, rounding, refusal);
        rounding = std::max(rounding, engineRounding);
    }
    if (code == success) code = checkCounts(table, refusal);
    if (code == success) code = checkDefinite(table, rounding, refusal);
    if (code != success) table = {};
    return code;
}
