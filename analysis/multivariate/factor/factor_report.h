#pragma once

#include "analysis/multivariate/factor/factor_extraction.h"
#include "analysis/multivariate/factor/factor_rotation.h"
#include "analysis/run/analysis_run.h"

enum class Rotation { none, oblique, orthogonal };

// In the order of the options' indices.
inline constexpr const char* obliqueCriteria[] = {"covarimin", "biquartimin", "quartimin"};
inline constexpr const char* orthogonalCriteria[] = {"varimax", "biquartimax", "quartimax"};

// The index of the criterion in use; a settings file may hold any number.
int criterionOf(const FactorOptions& options, Rotation rotation);

// What a factor analysis found.
struct FactorResult {
    FactorModel model;
    Rotation rotation = Rotation::none;
    Matrix rotated;                     // p x factors: loadings, the pattern of an oblique rotation
    Block<double> rotatedSumsOfSquares; // of each factor
    ObliqueRotation oblique;            // of reference axes, by textbook numerics of primary factors
    double turnLeft = 0.0;              // the sine by which an orthogonal rotation would go on
    Matrix scores;                      // samples x factors

    // Zero-filled arrays for so many factors; the model keeps its own. Returns success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index p, Index samples, Index factors);

    const Matrix& finalLoadings() const { return rotation == Rotation::none ? model.loadings : rotated; }
};

// Replaces the lower text and the status: communalities, loadings with their sums of squares, what the
// rotation made of them, and the scores of the samples. Textbook numerics add lines for a communality above 1
// and for a repetition that has not come to its end.
void writeFactorReport(AnalysisRun& run, const char* title, const FactorResult& result);
