#include "analysis/multivariate/discriminant/group_statistics.h"

#include <algorithm>
#include <cmath>

#include "data/categories.h"
#include "numeric/distributions.h"
#include "numeric/lu.h"

namespace {

// Adds sample number n (from 1) to means (q) and a packed triangle.
void addSample(const double* x, Index q, double n, double* means, double* packed) {
    // A mean that the sample equals stays: rounding would make a constant variable vary.
    for (Index i = 0; i < q; ++i)
        if (x[i] != means[i]) means[i] = ((n - 1.0) * means[i] + x[i]) / n;
    if (n < 2.0) return;
    const double correction = n / (n - 1.0);
    for (Index i = 0; i < q; ++i) {
        const double deviation = (x[i] - means[i]) * correction;
        for (Index j = i; j < q; ++j) *packed++ += deviation * (x[j] - means[j]);
    }
}

// Adds a packed triangle to a full matrix.
void addPacked(Index q, const double* packed, double* full) {
    for (Index i = 0; i < q; ++i) {
        full[i * (q + 1)] += *packed++;
        for (Index j = i + 1; j < q; ++j) {
            full[i * q + j] += *packed;
            full[j * q + i] += *packed++;
        }
    }
}

// Room for the determinant of a covariance matrix, q x q each.
struct DeterminantWork {
    Block<double> covariance, decomposed, inverse;

    ErrorCode allocate(Index count) {
        return covariance.allocate(count) | decomposed.allocate(count) | inverse.allocate(count);
    }
};

// The determinant of the covariance matrix, whose sums of products stand in its place and are destroyed.
// Returns 0, outOfMemory or singularMatrix.
ErrorCode covarianceDeterminant(int q, double divisor, DeterminantWork& work, double& determinant) {
    for (double& value : work.covariance) value /= divisor;
    // By rounding alone a singular matrix has a determinant above 0 as often as not.
    ErrorCode code = invertRegular(q, work.covariance.data(), work.decomposed.data(), work.inverse.data());
    if (code != success) return code;
    code = MatrixDeterminant(q, q, work.covariance.data(), determinant);
    return code == success && !(determinant > 0.0) ? singularMatrix : code;
}

} // namespace

ErrorCode GroupStatistics::allocate(const DataMatrix& data, int groupCount) {
    groups = groupCount;
    variables = data.variables - 1;
    samples = data.samples;
    const Index g = groups;
    const Index q = variables;
    return counts.allocate(g) | groupMeans.allocate(g * q) | totalMeans.allocate(q) |
           groupSums.allocate(g * packedSize()) | totalSums.allocate(packedSize()) | total.allocate(q * q) |
           within.allocate(q * q);
}

void gatherGroups(const DataMatrix& data, GroupStatistics& statistics) {
    const Index q = statistics.variables;
    const Index packed = statistics.packedSize();
    for (std::int32_t i = 0; i < data.samples; ++i) {
        const double* x = data.values.data() + Index{i} * (q + 1);
        const Index g = categoryOf(data, i, statistics.variables);
        addSample(x, q, i + 1.0, statistics.totalMeans.data(), statistics.totalSums.data());
        addSample(x, q, ++statistics.counts[g], statistics.groupMeans.data() + g * q,
                  statistics.groupSums.data() + g * packed);
    }
    addPacked(q, statistics.totalSums.data(), statistics.total.data());
    for (Index g = 0; g < statistics.counts.size(); ++g) {
        addPacked(q, statistics.groupSums.data() + g * packed, statistics.within.data());
    }
}

ErrorCode BoxTest::allocate(int groups) {
    return determinants.allocate(groups + 1);
}

ErrorCode testBoxM(const GroupStatistics& statistics, BoxTest& test) {
    DeterminantWork work;
    if (work.allocate(statistics.within.size()) != success) return outOfMemory;
    const double within = statistics.samples - statistics.groups;
    std::copy(statistics.within.begin(), statistics.within.end(), work.covariance.begin());
    ErrorCode code = covarianceDeterminant(statistics.variables, within, work, test.determinants[0]);
    if (code != success) return code;

    double m = within * std::log(test.determinants[0]);
    double reciprocals = -1.0 / within;
    for (Index g = 0; g < statistics.counts.size(); ++g) {
        const double degrees = statistics.counts[g] - 1;
        std::fill(work.covariance.begin(), work.covariance.end(), 0.0);
        addPacked(statistics.variables, statistics.groupSums.data() + g * statistics.packedSize(),
                  work.covariance.data());
        code = covarianceDeterminant(statistics.variables, degrees, work, test.determinants[g + 1]);
        if (code != success) return code;
        m -= degrees * std::log(test.determinants[g + 1]);
        reciprocals += 1.0 / degrees;
    }
    const double q = statistics.variables;
    const double others = statistics.groups - 1;
    test.chiSquare = m * (1.0 - reciprocals * (2.0 * q * q + 3.0 * q - 1.0) / (6.0 * (q + 1.0) * others));
    test.degrees = q * (q + 1.0) * others / 2.0;
    return ChiSquareUpperProbability(1, &test.chiSquare, &test.degrees, &test.probability);
}
