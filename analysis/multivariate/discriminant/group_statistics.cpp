#include "analysis/multivariate/discriminant/group_statistics.h"

#include <algorithm>
#include <cmath>

#include "data/categories.h"
#include "data/moments/working_moments.h"
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

// Adds the deviations from the means to sums (q).
void addDeviations(const double* x, const double* means, Index q, double* sums) {
    for (Index i = 0; i < q; ++i) sums[i] += x[i] - means[i];
}

// Moves the means of n samples by the sums of deviations from them, which become 0.
void shiftMeans(Index q, double n, double* sums, double* means) {
    for (Index i = 0; i < q; ++i) {
        means[i] += sums[i] / n;
        sums[i] = 0.0;
    }
}

// Moves all means by what is left of the deviations from them. The sums of products are zero before and
// after, and scratch in between.
void correctMeans(const DataMatrix& data, GroupStatistics& statistics) {
    const Index q = statistics.variables;
    for (Index s = 0; s < data.samples; ++s) {
        const double* x = data.row(s);
        const Index g = categoryOf(data, s, q);
        addDeviations(x, statistics.totalMeans.data(), q, statistics.totalSums.data());
        addDeviations(x, statistics.groupMeans.row(g), q, statistics.groupSums.row(g));
    }
    shiftMeans(q, data.samples, statistics.totalSums.data(), statistics.totalMeans.data());
    for (Index g = 0; g < statistics.groups; ++g) {
        shiftMeans(q, statistics.counts[g], statistics.groupSums.row(g), statistics.groupMeans.row(g));
    }
}

// Adds the products of a sample's deviations to a packed triangle.
void addProducts(const double* x, const double* means, Index q, double* packed) {
    for (Index i = 0; i < q; ++i) {
        const double deviation = x[i] - means[i];
        for (Index j = i; j < q; ++j) *packed++ += deviation * (x[j] - means[j]);
    }
}

// Adds a packed triangle to a whole square matrix.
void addPacked(const double* packed, Matrix& sums) {
    for (Index i = 0; i < sums.rows(); ++i) {
        sums(i, i) += *packed++;
        for (Index j = i + 1; j < sums.columns(); ++j) {
            sums(i, j) += *packed;
            sums(j, i) += *packed++;
        }
    }
}

// Room for the determinant of a covariance matrix, q x q each.
struct DeterminantWork {
    Matrix covariance, decomposed, inverse;
    Block<std::int32_t> permutation; // q

    [[nodiscard]] ErrorCode allocate(Index q) {
        return covariance.allocate(q, q) | decomposed.allocate(q, q) | inverse.allocate(q, q) |
               permutation.allocate(q);
    }
};

struct Determinant {
    double value;     // 0 or infinite beyond the range of double
    double logarithm; // of any regular matrix
};

// The determinant of the covariance matrix, whose sums of products stand in its place and are destroyed.
// Returns success, outOfMemory or singularMatrix.
ErrorCode covarianceDeterminant(double divisor, DeterminantWork& work, Determinant& determinant) {
    Matrix& covariance = work.covariance;
    for (double& value : covariance) value /= divisor;
    // By rounding alone a singular matrix has a determinant above 0 as often as not.
    ErrorCode code = invertRegular(covariance, work.decomposed, work.inverse);
    if (code != success) return code;

    const Index q = covariance.rows();
    double sign = 0.0;
    code = LuDecompose(q, q, covariance.data(), work.permutation.data(), sign);
    if (code == outOfMemory) return code;
    if (code == decompositionFailed) return singularMatrix;
    determinant = {sign, 0.0};
    for (Index i = 0; i < q; ++i) {
        const double pivot = covariance(i, i);
        determinant.value *= pivot;
        determinant.logarithm += std::log(std::fabs(pivot));
        if (pivot < 0.0) sign = -sign;
    }
    return sign > 0.0 ? success : singularMatrix;
}

// T and W from the packed sums.
void unpackSums(GroupStatistics& statistics) {
    addPacked(statistics.totalSums.data(), statistics.total);
    for (Index g = 0; g < statistics.groups; ++g) {
        addPacked(statistics.groupSums.row(g), statistics.within);
    }
}

} // namespace

ErrorCode GroupStatistics::allocate(const DataMatrix& data, Index groupCount) {
    groups = groupCount;
    variables = data.variables - 1;
    samples = data.samples;
    rows = data.rows();
    const Index packed = variables * (variables + 1) / 2;
    return counts.allocate(groups) | groupMeans.allocate(groups, variables) | totalMeans.allocate(variables) |
           groupSums.allocate(groups, packed) | totalSums.allocate(packed) |
           total.allocate(variables, variables) | within.allocate(variables, variables);
}

void gatherGroups(const DataMatrix& data, GroupStatistics& statistics) {
    const Index q = statistics.variables;
    for (std::int32_t s = 0; s < data.samples; ++s) {
        const double* x = data.row(s);
        const Index g = categoryOf(data, s, q);
        addSample(x, q, s + 1.0, statistics.totalMeans.data(), statistics.totalSums.data());
        addSample(x, q, ++statistics.counts[g], statistics.groupMeans.row(g), statistics.groupSums.row(g));
    }
    unpackSums(statistics);
}

void gatherGroupsInPasses(const DataMatrix& data, GroupStatistics& statistics) {
    const Index q = statistics.variables;
    // From the first samples on, so that a constant variable has no deviations.
    std::copy_n(data.row(0), q, statistics.totalMeans.data());
    for (Index s = 0; s < data.samples; ++s) {
        const Index g = categoryOf(data, s, q);
        if (statistics.counts[g]++ == 0) std::copy_n(data.row(s), q, statistics.groupMeans.row(g));
    }
    correctMeans(data, statistics);
    correctMeans(data, statistics);
    for (Index s = 0; s < data.samples; ++s) {
        const double* x = data.row(s);
        const Index g = categoryOf(data, s, q);
        addProducts(x, statistics.totalMeans.data(), q, statistics.totalSums.data());
        addProducts(x, statistics.groupMeans.row(g), q, statistics.groupSums.row(g));
    }
    unpackSums(statistics);
}

void takeGroupMoments(const DataMatrix& data, GroupStatistics& statistics) {
    const Index q = statistics.variables;
    double* const totalMeans = statistics.totalMeans.data();
    Matrix& covariance = statistics.within; // scratch
    for (Index g = 0; g < statistics.groups; ++g) {
        const double count = data.moments->counts[g];
        copyGroupMoments(data, g, q, statistics.groupMeans.row(g), covariance.data());
        statistics.counts[g] = static_cast<std::int32_t>(count);
        double* packed = statistics.groupSums.row(g);
        for (Index i = 0; i < q; ++i) {
            totalMeans[i] += count / static_cast<double>(statistics.samples) * statistics.groupMeans(g, i);
            for (Index j = i; j < q; ++j) *packed++ = count * covariance(i, j);
        }
    }
    covariance.fill(0.0);
    // The sums about the total means are those about the group's, and the products of both means' distances.
    for (Index g = 0; g < statistics.groups; ++g) {
        const double* means = statistics.groupMeans.row(g);
        const double* within = statistics.groupSums.row(g);
        double* packed = statistics.totalSums.data();
        for (Index i = 0; i < q; ++i) {
            for (Index j = i; j < q; ++j)
                *packed++ += *within++ +
                             statistics.counts[g] * (means[i] - totalMeans[i]) * (means[j] - totalMeans[j]);
        }
    }
    unpackSums(statistics);
}

ErrorCode BoxTest::allocate(Index groups) {
    return determinants.allocate(groups + 1);
}

ErrorCode testBoxM(const Numerics& numerics, const GroupStatistics& statistics, BoxTest& test) {
    DeterminantWork work;
    if (work.allocate(statistics.variables) != success) return outOfMemory;
    const double within = statistics.withinFreedom();
    std::copy(statistics.within.begin(), statistics.within.end(), work.covariance.begin());
    Determinant determinant;
    ErrorCode code = covarianceDeterminant(within, work, determinant);
    if (code != success) return code;
    test.determinants[0] = determinant.value;

    double m = within * determinant.logarithm;
    double reciprocals = -1.0 / within;
    for (Index g = 0; g < statistics.groups; ++g) {
        const double freedom = statistics.counts[g] - 1;
        work.covariance.fill(0.0);
        addPacked(statistics.groupSums.row(g), work.covariance);
        code = covarianceDeterminant(freedom, work, determinant);
        if (code != success) return code;
        test.determinants[g + 1] = determinant.value;
        m -= freedom * determinant.logarithm;
        reciprocals += 1.0 / freedom;
    }
    const double q = static_cast<double>(statistics.variables);
    const double others = static_cast<double>(statistics.groups - 1);
    test.chiSquare = m * (1.0 - reciprocals * (2.0 * q * q + 3.0 * q - 1.0) / (6.0 * (q + 1.0) * others));
    test.freedom = q * (q + 1.0) * others / 2.0;
    return numerics.chiSquareTails(1, &test.chiSquare, &test.freedom, &test.probability);
}
