#include "analysis/basic/event_models/weibull_model.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "analysis/basic/event_models/event_charts.h"
#include "analysis/basic/event_models/event_data.h"
#include "analysis/basic/event_models/event_model_report.h"
#include "analysis/basic/event_models/event_options.h"
#include "analysis/basic/event_models/newton_raphson.h"
#include "analysis/run/run_report.h"
#include "numeric/incomplete_gamma.h"
#include "report/tables.h"

namespace {

constexpr auto fields = survivalFields(offsetof(AnalysisOptions, settings.weibull), 5101);

const char* refuse(const AnalysisOptions& options, std::uint32_t) {
    return refuseSurvival(options.settings.weibull);
}

// The cumulative hazard of a sample is exp(a z + a0 + k u), z its standardized covariates and u the logarithm
// of its time less the mean of these. The parameters are (a, a0, k), in which the likelihood is concave; the
// exponential model has k = 1 and the parameters (a, a0).
class WeibullLikelihood : public LikelihoodModel {
public:
    WeibullLikelihood(const EventData& events, bool shaped) : events_(events), shaped_(shaped) {
        for (Index s = 0; s < events.samples; ++s) {
            if (events.states[s] != 0) logTimes_ += std::log(events.times[s]);
        }
    }

    double logHazard(const double* parameters, Index sample) const {
        const double* row = events_.design.row(sample);
        const Index linear = events_.design.columns() - 1;
        double sum = shaped_ ? parameters[linear] * row[linear] : row[linear];
        for (Index j = 0; j < linear; ++j) sum += parameters[j] * row[j];
        return sum;
    }

    void evaluate(const double* parameters, LikelihoodPoint& point) override {
        point.clear();
        for (Index s = 0; s < events_.samples; ++s) {
            const double logarithm = logHazard(parameters, s);
            const double hazard = std::exp(logarithm);
            const double event = events_.states[s];
            point.value += event * logarithm - hazard;
            point.add(events_.design.row(s), event - hazard, hazard);
        }
        point.value -= logTimes_;
        if (!shaped_) return;
        const Index last = events_.design.columns() - 1;
        const double shape = parameters[last];
        const double count = static_cast<double>(events_.events);
        point.value += count * std::log(shape);
        point.gradient[last] += count / shape;
        point.information(last, last) += count / (shape * shape);
    }

private:
    const EventData& events_;
    bool shaped_;
    double logTimes_ = 0.0; // of the events
};

// One of the two models.
struct SurvivalFit {
    WeibullLikelihood likelihood;
    NewtonRaphsonFit fit;
    EventCoefficients coefficients;
    double shape = 1.0;

    [[nodiscard]] ErrorCode allocate(Index parameters, Index count) {
        return fit.allocate(parameters) | coefficients.allocate(count);
    }

    double logHazard(Index sample) const { return likelihood.logHazard(fit.parameters.data(), sample); }
};

struct WeibullWork {
    SurvivalFit exponential, weibull;
    Block<double> weights; // of the parameters in a coefficient
    double meanLogTime = 0.0;

    explicit WeibullWork(const EventData& events)
        : exponential{.likelihood = {events, false}, .fit = {}, .coefficients = {}},
          weibull{.likelihood = {events, true}, .fit = {}, .coefficients = {}} {}

    [[nodiscard]] ErrorCode allocate(const EventData& events) {
        const Index count = events.covariates + 1;
        return exponential.allocate(count, count) | weibull.allocate(count + 1, count) |
               weights.allocate(count + 1);
    }
};

// Completes the design by the constant and u, and starts the exponential model without covariates.
void start(EventData& events, WeibullWork& work) {
    for (const double time : events.times) work.meanLogTime += std::log(time);
    work.meanLogTime /= static_cast<double>(events.samples);
    double sum = 0.0;
    for (Index s = 0; s < events.samples; ++s) {
        double* added = events.design.row(s) + events.covariates;
        added[0] = 1.0;
        added[1] = std::log(events.times[s]) - work.meanLogTime;
        sum += std::exp(added[1]);
    }
    work.exponential.fit.parameters[events.covariates] = std::log(static_cast<double>(events.events) / sum);
}

ErrorCode fit(Screens& screens, const EventData& events, Index limit, WeibullWork& work) {
    SurvivalFit& exponential = work.exponential;
    SurvivalFit& weibull = work.weibull;
    const ErrorCode code =
        newtonRaphson(exponential.likelihood, events.covariates, limit, exponential.fit, {&screens, 10, 50});
    if (code != success) return code;
    const Index shape = events.covariates + 1;
    for (Index j = 0; j < shape; ++j) weibull.fit.parameters[j] = exponential.fit.parameters[j];
    weibull.fit.parameters[shape] = 1.0;
    return newtonRaphson(weibull.likelihood, events.covariates, limit, weibull.fit, {&screens, 10, 100});
}

// ln s on the scale of the data; its weights are the derivatives by the parameters, k included.
void takeCoefficients(const EventData& events, WeibullWork& work, SurvivalFit& model) {
    const Index covariates = events.covariates;
    const NewtonRaphsonFit& fitted = model.fit;
    const bool shaped = fitted.parameters.size() > covariates + 1;
    if (shaped) model.shape = fitted.parameters[covariates + 1];
    const double k = model.shape;
    double* weights = work.weights.data();
    double constant = work.meanLogTime - fitted.parameters[covariates] / k;
    double byShape = fitted.parameters[covariates] / (k * k);
    for (Index j = 0; j < covariates; ++j) {
        const double unit = -1.0 / (k * events.deviations[j]);
        const double slope = fitted.parameters[j] * unit;
        for (double& weight : work.weights) weight = 0.0;
        weights[j] = unit;
        if (shaped) weights[covariates + 1] = -slope / k;
        model.coefficients.values[j] = slope;
        model.coefficients.errors[j] = fitted.standardError(weights);
        constant -= slope * events.means[j];
        byShape += slope * events.means[j] / k;
    }
    for (Index j = 0; j < covariates; ++j) weights[j] = events.means[j] / (k * events.deviations[j]);
    weights[covariates] = -1.0 / k;
    weights[covariates + 1] = byShape;
    model.coefficients.values[covariates] = constant;
    model.coefficients.errors[covariates] = fitted.standardError(weights);
}

ErrorCode compute(Screens& screens, EventData& events, Index limit, WeibullWork& work) {
    start(events, work);
    ErrorCode code = screens.setProgress(10);
    if (code == success) code = fit(screens, events, limit, work);
    if (code != success) return code;
    takeCoefficients(events, work, work.exponential);
    takeCoefficients(events, work, work.weibull);
    return screens.setProgress(100);
}

void writeShape(Report& report, const WeibullWork& work) {
    constexpr const char* headings[] = {"shape", "s.error", "chi.square", "chi.prob"};
    const NewtonRaphsonFit& fitted = work.weibull.fit;
    const Index last = fitted.parameters.size() - 1;
    const double chiSquare = 2.0 * (fitted.likelihood - work.exponential.fit.likelihood);
    const double values[] = {work.weibull.shape, std::sqrt(fitted.covariance(last, last)), chiSquare,
                             ChiSquareUpperTail(chiSquare, 1.0)};
    writeCaption(report, "shape of weibull model, standard error, likelihood ratio chi square, chi prob");
    WriteNamedHeader(report, headings, wideCell.width);
    writeCells(report, 1, "shape", values, wideCell);
    endTable(report);
}

void writeFits(Report& report, const WeibullWork& work) {
    const NewtonRaphsonFit& exponential = work.exponential.fit;
    const NewtonRaphsonFit& weibull = work.weibull.fit;
    writeCaption(report, "log likelihood, AIC");
    writeLikelihoodHeader(report);
    writeLikelihoodRow(report, 1, "exponential", exponential.likelihood, exponential.parameters.size());
    writeLikelihoodRow(report, 2, "weibull", weibull.likelihood, weibull.parameters.size());
    endTable(report);
}

// The probability to survive the sample's own time.
double survivalOf(const SurvivalFit& model, Index sample) {
    return std::exp(-std::exp(model.logHazard(sample)));
}

// The time that half survive, and the probability to survive the sample's own.
void writeSurvival(Report& report, const SurvivalFit& model, double time, Index sample) {
    const double logHalf = std::log(std::numbers::ln2); // of the cumulative hazard at the median
    const double logMedian = std::log(time) - (model.logHazard(sample) - logHalf) / model.shape;
    writeCell(report, std::exp(logMedian), wideCell);
    writeCell(report, survivalOf(model, sample), wideCell);
}

void writeSamples(Report& report, const DataMatrix& data, const EventData& events, const WeibullWork& work) {
    constexpr const char* headings[] = {"time", "state", "e.median", "e.survival", "w.median", "w.survival"};
    writeCaption(report, "time, state, median survival time and survival probability of exponential and "
                         "weibull model");
    WriteNamedHeader(report, headings, wideCell.width);
    for (Index s = 0; s < events.samples; ++s) {
        startRow(report, s + 1, data.label(s));
        writeCell(report, events.times[s], wideCell);
        writeInteger(report, events.states[s], wideCount.width);
        writeSurvival(report, work.exponential, events.times[s], s);
        writeSurvival(report, work.weibull, events.times[s], s);
        endRow(report);
    }
    endTable(report);
}

void writeReport(AnalysisRun& run, const EventData& events, const WeibullWork& work) {
    const DataMatrix& data = run.data.working;
    Report& report = run.report;
    openEventReport(run, "exponential weibull model statistics", events.columns,
                    {work.exponential.fit.iterations, work.weibull.fit.iterations});
    writeCaption(report, "exponential model : coefficient, standard error, wald chi square, chi prob");
    writeCoefficients(report, data, events, work.exponential.coefficients, nullptr);
    writeCaption(report, "weibull model : coefficient, standard error, wald chi square, chi prob");
    writeCoefficients(report, data, events, work.weibull.coefficients, nullptr);
    writeShape(report, work);
    writeFits(report, work);
    writeSamples(report, data, events, work);
}

// The predictor is ln s, at whose time the cumulative hazard is 1.
ErrorCode keepSurvival(AnalysisRun& run, const EventData& events, const WeibullWork& work) {
    const struct {
        const char* predictor;
        const char* survival;
        const SurvivalFit& fit;
    } models[] = {{"e.predictor", "e.survival", work.exponential},
                  {"w.predictor", "w.survival", work.weibull}};
    return keepColumns(run.columns, events.samples, 4, [&](SampleColumns& columns) {
        for (const auto& model : models) {
            columns.add(model.predictor, [&](Index s) {
                return std::log(events.times[s]) - model.fit.logHazard(s) / model.fit.shape;
            });
            columns.add(model.survival, [&](Index s) { return survivalOf(model.fit, s); });
        }
    });
}

// What the picture is made of.
struct WeibullCharts {
    const EventData& events;
    const WeibullWork& work;
};

// Of a sample whose covariates are the means.
ErrorCode addModelSurvival(const WeibullCharts& charts, const SurvivalFit& model, const char* name, int style,
                           double end, Chart& chart) {
    constexpr Index points = 64;
    ChartLayer* const layer = chart.addLayer(LayerKind::line, points + 1);
    if (layer == nullptr) return outOfMemory;
    layer->name.set("%s", name);
    layer->style = style;
    layer->y[0] = 1.0;
    const double constant = model.fit.parameters[charts.events.covariates];
    for (Index k = 1; k <= points; ++k) {
        layer->x[k] = end * static_cast<double>(k) / points;
        const double u = std::log(layer->x[k]) - charts.work.meanLogTime;
        layer->y[k] = std::exp(-std::exp(constant + model.shape * u));
    }
    return success;
}

ErrorCode describeSurvival(const AnalysisRun& run, const WeibullCharts& charts, Chart& chart) {
    const Block<double>& times = charts.events.times;
    const double end = *std::max_element(times.begin(), times.end());
    startSurvivalChart(run, charts.events, "survival models", chart);
    ErrorCode code = success;
    if (chart.groups.count == 0) {
        code = addModelSurvival(charts, charts.work.exponential, "exponential", 1, end, chart) |
               addModelSurvival(charts, charts.work.weibull, "weibull", 0, end, chart);
    }
    return code == success ? addEmpiricalSurvival(charts.events, chart) : code;
}

constexpr Picture pictures[] = {
    {"survival", "survival over time: of both models at the means, and of the data; by groups, of the data",
     Picture::groups | Picture::curves, describeResult<WeibullCharts, describeSurvival>},
};

ErrorCode runWeibullModel(Screens& screens, AnalysisRun& run) {
    const SurvivalOptions& options = run.options.settings.weibull;
    const EventColumns columns = {options.stateColumn, options.timeColumn, options.division};
    EventData events;
    ErrorCode code = takeEventData(run.data.working, columns, 2, events);
    if (code != success) return code;
    WeibullWork work(events);
    code = work.allocate(events);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, events, options.iterations, work);
    screens.hideProgress();
    if (code != success) return code;

    writeReport(run, events, work);
    code = keepSurvival(run, events, work);
    if (code == success) code = buildPicture<WeibullCharts>(run, {events, work});
    if (code != success) return code;
    closeReport(screens, run.report);
    return success;
}

} // namespace

const Analysis weibullModel = {
    .fields = fields, .driver = runWeibullModel, .refuse = refuse, .pictures = pictures};
