#pragma once

#include "analysis/run/frontend.h"

// Prediction from the model that the last run kept (FittedModel).

// The entry that a prediction starts from: the means of the variables (the first category of each in a
// quantification) and the alpha of the run. Returns success or outOfMemory.
[[nodiscard]] ErrorCode startPrediction(const AnalysisRun& run, PredictionEntry& entry);

struct Prediction {
    double median = 0.0; // on the scale of the purpose variable, as are the limits
    double infimum = 0.0;
    double supremum = 0.0;
    bool hasLimits = false;
};

// Computes a prediction from the model, without which it may not be called. Values of variables outside the
// model do not matter. Makes the model's interval matrix when the entry is the first to need it. Returns
// success; illegalCategoricalData for a value that is no category; notFinite for a transformed value that is
// not finite; outOfMemory; singularMatrix where the interval matrix cannot be made.
[[nodiscard]] ErrorCode computePrediction(AnalysisRun& run, const PredictionEntry& entry,
                                          Prediction& prediction);

// Writes the report of a prediction into the lower text, behind what is there or instead of it, and the
// status, or leaves both alone and returns a code of computePrediction.
enum class PredictionReport { replacing, appended };
[[nodiscard]] ErrorCode writePrediction(AnalysisRun& run, const PredictionEntry& entry,
                                        PredictionReport where);

// The "Prediction" command: asks for the values page by page, then replaces the lower text by the report.
// Cancelling a page changes nothing, and without a model nothing happens. Returns the reported code.
ErrorCode runPrediction(Frontend& frontend, AnalysisRun& run);

// The pages on which the values are entered. Each has ten places; the first place of all is alpha, the
// variables follow in working order.
constexpr int predictionPlaces = 10;

int predictionPageCount(const AnalysisRun& run);

struct PredictionPlace {
    const char* name = ""; // empty: nothing is shown here
    bool isEnabled = false;
    double* value = nullptr; // in the entry
    double proposed = 0.0;   // what the entry began with
};
PredictionPlace predictionPlace(const AnalysisRun& run, PredictionEntry& entry, int page, int place);
