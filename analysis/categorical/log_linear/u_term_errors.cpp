#include "analysis/categorical/log_linear/u_term_errors.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numeric/lu.h"

namespace {

constexpr int factored = 5; // percent of the run that the factor of the information takes, about

int shareOf(int percent, Index done, Index all) {
    return static_cast<int>(percent * done / all);
}

// What a level counts in a u-term's contrast at level `at`: d - 1 / levels for a factor of the term, else
// 1 / levels.
double weightOf(const ThreeWaySizes& sizes, FactorSet term, Index factor, Index at, Index level) {
    const double mean = 1.0 / static_cast<double>(sizes.levels[factor]);
    if (!hasFactor(term, factor)) return mean;
    return (at == level ? 1.0 : 0.0) - mean;
}

double errorOf(double variance) {
    if (!std::isfinite(variance)) return std::numeric_limits<double>::infinity();
    return std::sqrt(std::max(variance, 0.0));
}

// Four sums side by side, so that no product waits for the one before.
double dot(const double* a, const double* b, Index count) {
    double sums[4] = {};
    Index at = 0;
    for (; at + 4 <= count; at += 4) {
        for (Index s = 0; s < 4; ++s) sums[s] += a[at + s] * b[at + s];
    }
    for (; at < count; ++at) sums[0] += a[at] * b[at];
    return (sums[0] + sums[1]) + (sums[2] + sums[3]);
}

// Calls visit(term, levels, cell) for every cell of every term but the interaction of three.
template <class Visit> void visitTermCells(const ThreeWaySizes& sizes, Visit visit) {
    for (Index t = 0; t < uTermCount - 1; ++t) {
        Index cell = 0;
        visitCells(sizes, uTerms[t], [&](Index i, Index j, Index k) {
            const Index levels[3] = {i, j, k};
            visit(uTerms[t], levels, cell++);
        });
    }
}

// The variance of a term in the saturated model of one margin, which the term is part of.
double marginVariance(const Margins& observed, FactorSet margin, FactorSet term, const Index* at) {
    const ThreeWaySizes& sizes = observed.sizes;
    const MarginView counts = observed.view(margin);
    double sum = 0.0;
    visitCells(sizes, margin, [&](Index i, Index j, Index k) {
        const Index levels[3] = {i, j, k};
        double weight = 1.0;
        for (Index f = 0; f < 3; ++f) {
            if (hasFactor(margin, f)) weight *= weightOf(sizes, term, f, at[f], levels[f]);
        }
        if (weight != 0.0) sum += weight * weight / counts.at(i, j, k);
    });
    return sum;
}

// A decomposable model: covariances of the generators' saturated models less those of what each shares with
// the ones before it (Lauritzen 1996).
void estimateClosedForm(const Margins& observed, const Generators& generators, UTermEstimates& result) {
    visitTermCells(observed.sizes, [&](FactorSet term, const Index* at, Index cell) {
        double variance = 0.0;
        FactorSet seen = 0;
        for (Index g = 0; g < generators.count; ++g) {
            const FactorSet margin = generators.sets[g], shared = margin & seen;
            seen |= margin;
            if ((term & ~margin) == 0) variance += marginVariance(observed, margin, term, at);
            if ((term & ~shared) == 0) variance -= marginVariance(observed, shared, term, at);
        }
        result.errors[term][cell] = errorOf(variance);
    });
}

// The model without the interaction of three. In the slice of one level of A it is D = diag(m) of b x c cells
// with effects of its rows and columns, Z, of the slice's own, and the BC effects that all slices share. Z' D
// Z has the generalized inverse G; the information of the BC effects is S = sum of D - D Z G Z' D. A contrast
// with the weights W in a slice has the variance sum of r' G r + v' inv(S) v, where r = Z' W and
// v = sum of W - D Z G r, both of the cells without the last row and column, whose BC effects are 0.
struct SlicedModel {
    const ThreeWaySizes& sizes;
    const double* expected;
    UTermErrors& work;
    Index a, b, c, q;

    SlicedModel(const ThreeWaySizes& tableSizes, const double* cells, UTermErrors& scratch)
        : sizes(tableSizes), expected(cells), work(scratch), a(tableSizes.levels[0]), b(tableSizes.levels[1]),
          c(tableSizes.levels[2]), q(scratch.information.rows()) {}

    const double* slice(Index i) const { return expected + i * b * c; }
    double* inverse(Index i) const { return work.slices.row(i * (b + c)); }

    // G of a slice; the effect of its last column is 0.
    ErrorCode invertSlice(Index i) const {
        const double* const m = slice(i);
        Matrix& crossed = work.scratch;
        crossed.fill(0.0);
        for (Index j = 0; j < b; ++j) {
            for (Index k = 0; k < c; ++k) {
                const double count = m[j * c + k];
                crossed(j, j) += count;
                crossed(b + k, b + k) += count;
                crossed(j, b + k) = crossed(b + k, j) = count;
            }
        }
        double determinant = 0.0;
        return MatrixInverse(b + c - 1, b + c, crossed.data(), inverse(i), determinant);
    }

    // Adds D - D Z G Z' D of a slice to the lower triangle of S.
    void addInformation(Index i) const {
        const double* const m = slice(i);
        const double* const g = inverse(i);
        const Index stride = b + c;
        for (Index row = 0; row < q; ++row) {
            const Index j = row / (c - 1), k = row % (c - 1);
            const double* const ofRow = g + j * stride;
            const double* const ofColumn = g + (b + k) * stride;
            const double count = m[j * c + k];
            double* const out = work.information.row(row);
            out[row] += count;
            for (Index to = 0; to <= row; ++to) {
                const Index j2 = to / (c - 1), k2 = to % (c - 1);
                const double covariance = ofRow[j2] + ofRow[b + k2] + ofColumn[j2] + ofColumn[b + k2];
                out[to] -= count * m[j2 * c + k2] * covariance;
            }
        }
    }

    // S into its lower factor; a singular one leaves what is not finite.
    ErrorCode factor(Screens& screens) const {
        for (Index row = 0; row < q; ++row) {
            const ErrorCode code = screens.setProgress(modelsBegun + shareOf(factored, row, q));
            if (code != success) return code;
            double* const out = work.information.row(row);
            for (Index to = 0; to <= row; ++to) {
                const double* const other = work.information.row(to);
                const double sum = out[to] - dot(out, other, to);
                out[to] = to < row ? sum / other[to] : std::sqrt(sum);
            }
        }
        return success;
    }

    double sharedVariance() const {
        double sum = 0.0;
        for (Index row = 0; row < q; ++row) {
            const double* const factorRow = work.information.row(row);
            const double value = work.weights[row] - dot(factorRow, work.weights.data(), row);
            work.weights[row] = value / factorRow[row];
            sum += work.weights[row] * work.weights[row];
        }
        return sum;
    }

    // The weights of a cell are products of one for each factor, so that all slices have r in proportion.
    double variance(FactorSet term, const Index* at) const {
        const auto weight = [&](Index f, Index level) { return weightOf(sizes, term, f, at[f], level); };
        const double ofRows = hasFactor(term, 2) ? 0.0 : 1.0, ofColumns = hasFactor(term, 1) ? 0.0 : 1.0;
        const double ofSlices = hasFactor(term, 0) ? 0.0 : 1.0;
        double* const r = work.sums.data();
        double* const gr = work.product.data();
        for (Index j = 0; j < b; ++j) r[j] = weight(1, j) * ofRows;
        for (Index k = 0; k < c; ++k) r[b + k] = weight(2, k) * ofColumns;
        double* out = work.weights.data();
        for (Index j = 0; j < b - 1; ++j) {
            for (Index k = 0; k < c - 1; ++k) *out++ = ofSlices * weight(1, j) * weight(2, k);
        }
        double sum = 0.0;
        for (Index i = 0; i < a; ++i) {
            const double ofSlice = weight(0, i);
            const double* const g = inverse(i);
            double own = 0.0;
            for (Index s = 0; s < b + c; ++s) {
                gr[s] = dot(g + s * (b + c), r, b + c);
                own += r[s] * gr[s];
            }
            sum += ofSlice * ofSlice * own;
            const double* m = slice(i);
            out = work.weights.data();
            for (Index j = 0; j < b - 1; ++j, m += c) {
                for (Index k = 0; k < c - 1; ++k) *out++ -= ofSlice * m[k] * (gr[j] + gr[b + k]);
            }
        }
        return sum + sharedVariance();
    }
};

ErrorCode estimateSliced(Screens& screens, const ThreeWaySizes& sizes, const double* expected,
                         UTermErrors& work, UTermEstimates& result) {
    const SlicedModel model(sizes, expected, work);
    work.slices.fill(0.0);
    work.information.fill(0.0);
    for (Index i = 0; i < model.a; ++i) {
        ErrorCode code = screens.setProgress(modelsBegun);
        if (code == success) code = model.invertSlice(i);
        if (code != success) return code;
        model.addInformation(i);
    }
    ErrorCode code = model.factor(screens);
    Index done = 0, cells = 0;
    visitTermCells(sizes, [&](FactorSet, const Index*, Index) { ++cells; });
    visitTermCells(sizes, [&](FactorSet term, const Index* at, Index cell) {
        if (code != success) return;
        result.errors[term][cell] = errorOf(model.variance(term, at));
        code = screens.setProgress(modelsBegun + factored +
                                   shareOf(modelsEstimated - modelsBegun - factored, ++done, cells));
    });
    return code;
}

} // namespace

ErrorCode UTermErrors::allocate(const ThreeWaySizes& sizes, bool noInteraction) {
    if (!noInteraction) return success;
    const auto [a, b, c] = sizes.levels;
    const Index shared = (b - 1) * (c - 1);
    return slices.allocate(a * (b + c), b + c) | information.allocate(shared, shared) |
           scratch.allocate(b + c, b + c) | weights.allocate(shared) | sums.allocate(b + c) |
           product.allocate(b + c);
}

ErrorCode UTermErrors::estimate(Screens& screens, const Margins& observed, Index model,
                                const double* expected, UTermEstimates& result) {
    if (!hasClosedForm(model)) return estimateSliced(screens, observed.sizes, expected, *this, result);
    estimateClosedForm(observed, generatorsOf(model), result);
    return success;
}
