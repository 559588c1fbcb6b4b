#pragma once

#include "analysis/multivariate/factor/factor_extraction.h"
#include "analysis/multivariate/factor/factor_rotation.h"
#include "analysis/run/analysis_run.h"
#include "report/screens.h"

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
    Block<double> rotated;              // p x kept: loadings, the pattern of an oblique rotation
    Block<double> rotatedSumsOfSquares; // kept
    ObliqueRotation oblique;
    Block<double> scores; // samples x kept

    // Room for all requested factors. Returns 0 or outOfMemory.
    ErrorCode allocate(int p, int samples, int requested);

    const double* finalLoadings() const {
        return rotation == Rotation::none ? model.loadings.data() : rotated.data();
    }
};

// Replaces the lower text and the status, and shows them.
void writeFactorReport(Screens& screens, AnalysisRun& run, const char* title, const FactorResult& result);
