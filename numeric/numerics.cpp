#include "numeric/numerics.h"

#include <cmath>
#include <numbers>

#include "numeric/beta.h"
#include "numeric/chi_square_distribution.h"
#include "numeric/distributions.h"
#include "numeric/f_distribution.h"
#include "numeric/normal_distribution.h"
#include "numeric/two_pass_moments.h"

namespace {

bool anyAbsoluteConstant(const MomentMatrices& moments) {
    return anyDeviationBelow(moments.sds, leastDeviation);
}

// The error function takes |z| / sqrt 2 as it is divided here: reports depend on this value.
double classicNormalTail(double z) {
    return ComplementaryErrorFunction(std::fabs(z) / std::numbers::sqrt2);
}

ErrorCode classicRankTail(double r, double df, double tieFactor, double& out) {
    out = 0.0;
    if (!(tieFactor > 0.0)) return success;
    // Divided by the tie factor, not by (1 + r)(1 - r): reports depend on this value.
    const double t2 = r * r * df / tieFactor;
    std::uint32_t flag = 0;
    out = IncompleteBeta(0.5 * df, 0.5, df / (df + t2), flag);
    return static_cast<ErrorCode>(flag);
}

// A deviation of this share of the mean keeps seven digits of the sixteen that a value has.
constexpr double leastRelativeDeviation = 1e-9;

bool anyRelativeConstant(const MomentMatrices& moments) {
    for (Index v = 0; v < moments.sds.size(); ++v)
        if (moments.sds[v] <= leastRelativeDeviation * std::fabs(moments.means[v])) return true;
    return false;
}

ErrorCode textbookFTails(Index n, const double* f, const double* numerator, const double* denominator,
                         double* out) {
    for (Index i = 0; i < n; ++i) out[i] = fTail(f[i], numerator[i], denominator[i]);
    return success;
}

ErrorCode textbookChiSquareTails(Index n, const double* chiSquares, const double* df, double* out) {
    // Without degrees of freedom there is nothing to test.
    for (Index i = 0; i < n; ++i) out[i] = df[i] <= 0.0 ? 1.0 : chiSquareTail(chiSquares[i], df[i]);
    return success;
}

ErrorCode textbookRankTail(double r, double df, double tieFactor, double& out) {
    out = tieFactor > 0.0 ? rankCorrelationTail(r, df) : 0.0;
    return success;
}

} // namespace

const Numerics classicNumerics = {
    .remark = nullptr,
    .textbook = false,
    .iterationTolerance = 0.0,
    .moments = MeanCovarianceCorrelation,
    .anyConstant = anyAbsoluteConstant,
    .fTails = FUpperProbability,
    .chiSquareTails = ChiSquareUpperProbability,
    .normalTwoSidedTail = classicNormalTail,
    .normalUpperQuantile = NormalUpperQuantile,
    .tTwoSidedTail = TTwoSidedProbability,
    .tTwoSidedQuantile = TInverse,
    .rankCorrelationTail = classicRankTail,
};

const Numerics textbookNumerics = {
    .remark = "textbook numerics",
    .textbook = true,
    .iterationTolerance = 1e-10,
    .moments = twoPassMoments,
    .anyConstant = anyRelativeConstant,
    .fTails = textbookFTails,
    .chiSquareTails = textbookChiSquareTails,
    .normalTwoSidedTail = normalTwoSidedTail,
    .normalUpperQuantile = normalUpperQuantile,
    .tTwoSidedTail = tTwoSidedTail,
    .tTwoSidedQuantile = tTwoSidedQuantile,
    .rankCorrelationTail = textbookRankTail,
};

const Numerics* findNumerics(std::string_view name) {
    if (name == "classic") return &classicNumerics;
    return name == "textbook" ? &textbookNumerics : nullptr;
}
