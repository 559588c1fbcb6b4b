#include "analysis/basic/event_models/logistic_model.h"

#include <cmath>

#include "analysis/basic/event_models/event_charts.h"
#include "analysis/basic/event_models/event_data.h"
#include "analysis/basic/event_models/event_model_report.h"
#include "analysis/basic/event_models/event_options.h"
#include "analysis/basic/event_models/newton_raphson.h"
#include "analysis/run/run_report.h"
#include "report/tables.h"

namespace {

constexpr OptionField fields[] = {
    stateField(offsetof(AnalysisOptions, settings.logisticState), 5001),
    iterationsField(offsetof(AnalysisOptions, settings.logisticIterations), 5002, 5004),
    divisionField(offsetof(AnalysisOptions, settings.logisticDivision), 5003, 5005),
};

const char* refuse(const AnalysisOptions& options, std::uint32_t) {
    return options.settings.logisticState < 1 ? "please select one state variable" : nullptr;
}

// What a linear predictor says: the probability of the event and of its absence, neither by subtraction.
struct Odds {
    double with;
    double without;
};

Odds oddsOf(double predictor) {
    const double small = std::exp(-std::fabs(predictor));
    const double large = 1.0 / (1.0 + small);
    return predictor > 0.0 ? Odds{large, small * large} : Odds{small * large, large};
}

// Parameters: the slopes of the standardized covariates, then the constant.
class LogisticLikelihood : public LikelihoodModel {
public:
    explicit LogisticLikelihood(const EventData& events) : events_(events) {}

    double predictor(const double* parameters, Index sample) const {
        const double* row = events_.design.row(sample);
        const Index count = events_.design.columns();
        double sum = 0.0;
        for (Index j = 0; j < count; ++j) sum += parameters[j] * row[j];
        return sum;
    }

    void evaluate(const double* parameters, LikelihoodPoint& point) override {
        point.clear();
        for (Index s = 0; s < events_.samples; ++s) {
            const double sum = predictor(parameters, s);
            const Odds odds = oddsOf(sum);
            const bool event = events_.states[s] != 0;
            const double toward = event ? sum : -sum; // the logarithm of its odds is -ln(1 + exp(-toward))
            point.value -=
                toward > 0.0 ? std::log1p(std::exp(-toward)) : std::log1p(std::exp(toward)) - toward;
            point.add(events_.design.row(s), event ? odds.without : -odds.with, odds.with * odds.without);
        }
    }

private:
    const EventData& events_;
};

struct LogisticWork {
    LogisticLikelihood likelihood;
    NewtonRaphsonFit fit;
    EventCoefficients coefficients;
    Block<double> weights;       // of the parameters in the constant
    Index classified[2][2] = {}; // samples by state and estimated state

    explicit LogisticWork(const EventData& events) : likelihood(events) {}

    [[nodiscard]] ErrorCode allocate(Index parameters) {
        return fit.allocate(parameters) | coefficients.allocate(parameters) | weights.allocate(parameters);
    }
};

// Completes the design by the constant, and starts the model without covariates.
void start(EventData& events, NewtonRaphsonFit& fit) {
    for (Index s = 0; s < events.samples; ++s) events.design(s, events.covariates) = 1.0;
    const double share = static_cast<double>(events.events) / static_cast<double>(events.samples);
    fit.parameters[events.covariates] = std::log(share / (1.0 - share));
}

// To the scale of the data.
void takeCoefficients(const EventData& events, LogisticWork& work) {
    const Index covariates = events.covariates;
    const NewtonRaphsonFit& fit = work.fit;
    double constant = fit.parameters[covariates];
    work.weights[covariates] = 1.0;
    for (Index j = 0; j < covariates; ++j) {
        const double deviation = events.deviations[j];
        work.coefficients.values[j] = fit.parameters[j] / deviation;
        work.coefficients.errors[j] = std::sqrt(fit.covariance(j, j)) / deviation;
        work.weights[j] = -events.means[j] / deviation;
        constant += work.weights[j] * fit.parameters[j];
    }
    work.coefficients.values[covariates] = constant;
    work.coefficients.errors[covariates] = fit.standardError(work.weights.data());
}

void classify(const EventData& events, LogisticWork& work) {
    for (Index s = 0; s < events.samples; ++s) {
        const Odds odds = oddsOf(work.likelihood.predictor(work.fit.parameters.data(), s));
        ++work.classified[events.states[s]][odds.with > 0.5 ? 1 : 0];
    }
}

ErrorCode compute(Screens& screens, EventData& events, Index limit, LogisticWork& work) {
    start(events, work.fit);
    ErrorCode code = screens.setProgress(10);
    if (code == success)
        code = newtonRaphson(work.likelihood, events.covariates, limit, work.fit, {&screens, 10, 100});
    if (code != success) return code;
    takeCoefficients(events, work);
    classify(events, work);
    return screens.setProgress(100);
}

void writeDevianceRow(Report& report, Index number, const char* label, double likelihood, Index parameters) {
    const double deviance = -2.0 * likelihood;
    const double values[] = {likelihood, deviance, deviance + 2.0 * static_cast<double>(parameters)};
    writeCells(report, number, label, values, wideCell);
}

void writeFit(Report& report, const EventData& events, const NewtonRaphsonFit& fit) {
    constexpr const char* headings[] = {"log.likelihood", "deviance", "AIC"};
    writeCaption(report, "log likelihood, deviance, AIC");
    WriteNamedHeader(report, headings, wideCell.width);
    writeDevianceRow(report, 1, "null model", fit.startLikelihood, 1);
    writeDevianceRow(report, 2, "fitted model", fit.likelihood, events.covariates + 1);
    endTable(report);
    writeLikelihoodRatio(report, fit.startLikelihood, fit.likelihood, events.covariates);
}

void writeClassification(Report& report, const LogisticWork& work) {
    constexpr const char* headings[] = {"estimated 0", "estimated 1"};
    constexpr const char* labels[] = {"state 0", "state 1"};
    writeCaption(report, "classification of samples");
    WriteNamedHeader(report, headings, report.formats.nameLength);
    for (Index state = 0; state < 2; ++state) {
        startRow(report, state + 1, labels[state]);
        for (const Index count : work.classified[state]) writeInteger(report, count, report.formats.width);
        endRow(report);
    }
    endTable(report);
}

// Pearson's residual (y - p) / sqrt(p (1 - p)) is the root of the odds against what happened.
void writeSamples(Report& report, const DataMatrix& data, const EventData& events, const LogisticWork& work) {
    constexpr const char* headings[] = {"state", "probability", "s.residual"};
    writeCaption(report, "state, probability, standardized residual");
    WriteNamedHeader(report, headings, wideCell.width);
    for (Index s = 0; s < events.samples; ++s) {
        const double predictor = work.likelihood.predictor(work.fit.parameters.data(), s);
        const bool event = events.states[s] != 0;
        startRow(report, s + 1, data.label(s));
        writeInteger(report, events.states[s], wideCount.width);
        writeCell(report, oddsOf(predictor).with, wideCell);
        writeCell(report, event ? std::exp(-predictor / 2.0) : -std::exp(predictor / 2.0), wideCell);
        endRow(report);
    }
    endTable(report);
}

void writeReport(AnalysisRun& run, const EventData& events, const LogisticWork& work) {
    const DataMatrix& data = run.data.working;
    Report& report = run.report;
    openEventReport(run, "multiple logistic model statistics", events.columns, {work.fit.iterations});
    writeCaption(report, "coefficient, standard error, wald chi square, chi prob, odds ratio");
    writeCoefficients(report, data, events, work.coefficients, "odds.ratio");
    writeFit(report, events, work.fit);
    writeClassification(report, work);
    writeSamples(report, data, events, work);
}

ErrorCode keepProbabilities(AnalysisRun& run, const LogisticWork& work) {
    return keepColumns(run.columns, run.data.working.samples, 1, [&](SampleColumns& columns) {
        columns.add("probability", [&](Index s) {
            return oddsOf(work.likelihood.predictor(work.fit.parameters.data(), s)).with;
        });
    });
}

ErrorCode keepProbabilityExpression(AnalysisRun& run, const EventData& events, const NewtonRaphsonFit& fit) {
    return keepExpressions(run.expressions, run.data, [&](ExpressionWriter& writer) {
        const auto writePredictor = [&] {
            writer.sum(fit.parameters[events.covariates], events.covariates, [&](Index j) {
                writer.writeTerm(fit.parameters[j] / events.deviations[j], events.covariateColumns[j],
                                 events.means[j]);
            });
        };
        writer.add("probability", [&] { writer.share(1, writePredictor); });
    });
}

constexpr Picture pictures[] = {
    {"odds", "odds ratios with their intervals", 0, describeResult<RatioChart, describeRatios>},
};

ErrorCode runLogisticModel(Screens& screens, AnalysisRun& run) {
    const Settings& settings = run.options.settings;
    const EventColumns columns = {settings.logisticState, 0, settings.logisticDivision};
    EventData events;
    ErrorCode code = takeEventData(run.data.working, columns, 1, events);
    if (code != success) return code;
    LogisticWork work(events);
    code = work.allocate(events.design.columns());
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, events, settings.logisticIterations, work);
    screens.hideProgress();
    if (code != success) return code;

    writeReport(run, events, work);
    code = keepProbabilities(run, work);
    if (code == success) code = keepProbabilityExpression(run, events, work.fit);
    if (code == success) {
        code = buildPicture<RatioChart>(run, {events, work.coefficients, "logistic model", "odds ratio"});
    }
    if (code != success) return code;
    closeReport(screens, run.report);
    return success;
}

} // namespace

const Analysis logisticModel = {.fields = fields,
                                .driver = runLogisticModel,
                                .refuse = refuse,
                                .hasExpressions = true,
                                .pictures = pictures};
