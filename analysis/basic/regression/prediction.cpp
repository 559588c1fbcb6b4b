#include "analysis/basic/regression/prediction.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "analysis/basic/regression/curve_model.h"
#include "analysis/basic/regression/regression_report.h"
#include "analysis/run/run_flow.h"
#include "analysis/run/run_report.h"
#include "numeric/lu.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

std::int32_t explanatoryCount(const AnalysisRun& run) {
    return std::max(run.data.working.variables - 1, 0);
}

bool isQuantification(const FittedModel& model) {
    return model.kind == quantification1Kind;
}

// Makes the interval matrix of a run that had no interval.
ErrorCode invertIntervalMatrix(FittedModel& model) {
    if (model.inverted) return success;
    const Index k = model.count;
    Matrix matrix;
    ErrorCode code = matrix.allocate(k, k);
    if (code != success) return code;
    std::copy_n(model.inverse.begin(), matrix.size(), matrix.begin());
    double determinant = 0.0;
    code = MatrixInverse(k, k, matrix.data(), model.inverse.data(), determinant);
    model.inverted = code == success;
    return code;
}

ErrorCode predictFromQuantities(const FittedModel& model, const PredictionEntry& entry,
                                Prediction& prediction) {
    double sum = model.constant;
    Index first = 0;
    for (Index v = 0; v < model.count; ++v) {
        const double value = entry.values[v];
        if (!(value >= 1.0 && value <= model.terms[v]) || value != std::trunc(value))
            return illegalCategoricalData;
        sum += model.quantities[first + static_cast<Index>(value) - 1];
        first += model.terms[v];
    }
    prediction = {};
    prediction.median = sum;
    return success;
}

ErrorCode predictFromRegression(AnalysisRun& run, const PredictionEntry& entry, Prediction& prediction) {
    FittedModel& model = run.data.model;
    const CurveModel& curve = *findCurveModel(model.kind);
    const Index count = model.count;
    Block<double> deviations;
    ErrorCode code = deviations.allocate(count);
    if (code != success) return code;
    double sum = model.constant;
    for (Index j = 0; j < count; ++j) {
        const Index column = model.variables[j];
        const double value = curve.explanatory(entry.values[column], model.degrees[column]);
        if (!std::isfinite(value)) return notFinite;
        sum += model.coefficients[j] * value;
        deviations[j] = value - model.means[j];
    }
    prediction = {};
    prediction.median = curve.response(sum);
    prediction.hasLimits = entry.alpha != 0.0;
    if (!prediction.hasLimits) return success;

    code = invertIntervalMatrix(model);
    if (code != success) return code;
    const std::int32_t samples = run.data.working.samples;
    const double t = run.numerics->tTwoSidedQuantile(samples - model.count - 1, entry.alpha);
    const double distance =
        (model.hasRoot ? distanceByRoot : distanceByInverse)(deviations.data(), count, model.inverse.data());
    const double halfWidth = intervalHalfWidth(distance, t, samples, model.residualVariance);
    prediction.infimum = curve.response(sum - halfWidth);
    prediction.supremum = curve.response(sum + halfWidth);
    if (prediction.infimum > prediction.supremum) std::swap(prediction.infimum, prediction.supremum);
    return success;
}

// Of the model's variables, in model order.
void writeValues(Report& report, const DataSet& data, const Settings& settings, const Block<double>& values) {
    constexpr const char* headings[] = {"value"};
    SetFormatsFromValues(report, values.data(), values.size(), settings.variableStringLength,
                         settings.sampleStringLength);
    writeCaption(report, "value of explanatory variables");
    WriteNamedHeader(report, headings, report.formats.nameLength);
    for (Index j = 0; j < values.size(); ++j) {
        WriteValueRow(report, &values[j], 1, 6, data.working.name(data.model.variables[j]), j + 1);
    }
    endTable(report);
}

void writeResponse(Report& report, const FittedModel& model, double alpha, const Prediction& prediction) {
    constexpr const char* headings[] = {"prediction"};
    constexpr const char* labels[] = {"median", "infimum", "supremum"};
    const double values[] = {prediction.median, prediction.infimum, prediction.supremum};
    SetFormatsFromValues(report, values, prediction.hasLimits ? 3 : 1);
    writeCaption(report, "prediction, infimum and supremum as effective coverage");
    if (!isQuantification(model)) writeCoverage(report, alpha);
    WriteNamedHeader(report, headings, report.formats.nameLength);
    for (int k = 0; k < 3; ++k) {
        startRow(report, k + 1, labels[k]);
        if (k == 0 || prediction.hasLimits) {
            writeValue(report, values[k], 6);
        } else {
            writeName(report, "");
        }
        endRow(report);
    }
    endTable(report);
}

} // namespace

ErrorCode startPrediction(const AnalysisRun& run, PredictionEntry& entry) {
    const Index count = explanatoryCount(run);
    entry.alpha = run.data.model.alpha;
    const ErrorCode code = entry.values.allocate(count);
    if (code == success) std::copy_n(run.data.model.startValues.data(), count, entry.values.data());
    return code;
}

ErrorCode computePrediction(AnalysisRun& run, const PredictionEntry& entry, Prediction& prediction) {
    if (isQuantification(run.data.model)) return predictFromQuantities(run.data.model, entry, prediction);
    return predictFromRegression(run, entry, prediction);
}

ErrorCode writePrediction(AnalysisRun& run, const PredictionEntry& entry, PredictionReport where) {
    const FittedModel& model = run.data.model;
    Prediction prediction;
    Block<double> values; // of the model's variables
    ErrorCode code = computePrediction(run, entry, prediction);
    if (code == success) code = values.allocate(model.count);
    if (code != success) return code;
    for (Index j = 0; j < values.size(); ++j) {
        values[j] = entry.values[model.variables[j]];
    }

    char option[fittedModelTitleSize + 16];
    std::snprintf(option, sizeof option, "-- due to %s", model.title.data());
    const ReportOpening opening = {.title = "prediction statistics", .option = option};
    if (where == PredictionReport::replacing) {
        openReport(run, opening);
    } else {
        continueReport(run, opening);
    }
    writeValues(run.report, run.data, run.options.settings, values);
    writeResponse(run.report, model, entry.alpha, prediction);
    return success;
}

ErrorCode runPrediction(Frontend& frontend, AnalysisRun& run) {
    if (run.data.model.kind == FittedModel::none) return success;
    PredictionEntry entry;
    ErrorCode code = startPrediction(run, entry);
    if (code != success) return reportResult(frontend, run, code);
    for (int page = 0; page < predictionPageCount(run);) {
        switch (frontend.enterPrediction(run, entry, page)) {
        case PredictionStep::next:
            ++page;
            break;
        case PredictionStep::back:
            page = std::max(page - 1, 0);
            break;
        case PredictionStep::cancelled:
            return success;
        }
    }
    code = writePrediction(run, entry, PredictionReport::replacing);
    if (code == success) closeReport(frontend, run.report);
    return reportResult(frontend, run, code);
}

int predictionPageCount(const AnalysisRun& run) {
    return explanatoryCount(run) / predictionPlaces + 1;
}

PredictionPlace predictionPlace(const AnalysisRun& run, PredictionEntry& entry, int page, int place) {
    const FittedModel& model = run.data.model;
    const Index at = Index{page} * predictionPlaces + place;
    if (at == 0) return {"alpha", !isQuantification(model), &entry.alpha, model.alpha};
    if (at > entry.values.size()) return {};
    return {run.data.working.name(at - 1), model.terms[at - 1] != 0, &entry.values[at - 1],
            model.startValues[at - 1]};
}
