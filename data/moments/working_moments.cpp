#include "data/moments/working_moments.h"

#include <algorithm>
#include <cmath>

namespace {

// Whether a working variable tells the groups, so that it has no moments.
bool isGroupVariable(const DataMatrix& data, Index variable) {
    return data.columns[variable] > data.moments->variables;
}

} // namespace

ErrorCode findMoments(const Numerics& numerics, const DataMatrix& data, MomentMatrices& moments) {
    if (data.moments == nullptr) {
        return numerics.moments(data.values.data(), data.samples, data.variables, moments);
    }
    const Index p = data.variables;
    copyGroupMoments(data, 0, p, moments.means.data(), moments.covariance.data());
    for (Index i = 0; i < p; ++i) {
        moments.sds[i] = std::sqrt(moments.covariance(i, i));
        for (Index j = 0; j <= i; ++j) {
            moments.correlation(i, j) = moments.covariance(i, j) / moments.sds[i] / moments.sds[j];
            moments.correlation(j, i) = moments.correlation(i, j);
        }
    }
    return success;
}

double greatestOfMoments(const DataMatrix& data) {
    const MomentTable& table = *data.moments;
    double greatest = 0.0;
    for (Index v = 0; v < data.variables; ++v) {
        if (isGroupVariable(data, v)) {
            greatest = std::max(greatest, static_cast<double>(table.groups));
            continue;
        }
        for (Index g = 0; g < table.groups; ++g)
            greatest = std::max(greatest, table.greatest(g, data.columns[v] - 1));
    }
    return greatest;
}

void copyGroupMoments(const DataMatrix& data, Index group, Index count, double* means, double* covariances) {
    const MomentTable& table = *data.moments;
    for (Index i = 0; i < count; ++i) {
        means[i] = table.means(group, data.columns[i] - 1);
        for (Index j = 0; j < count; ++j)
            *covariances++ = table.covariance(group, data.columns[i] - 1, data.columns[j] - 1);
    }
}
