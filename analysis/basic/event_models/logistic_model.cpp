#include "analysis/basic/event_models/logistic_model.h"

#include <cmath>

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
        const double* row = events_.design.data() + sample * events_.width;
        double sum = 0.0;
        for (Index j = 0; j < events_.width; ++j) sum += parameters[j] * row[j];
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
            point.add(events_.design.data() + s * events_.width, event ? odds.without : -odds.with,
                      odds.with * odds.without);
        }
    }

private:
    const EventData& events_;
};

struct LogisticWork {
    NewtonRaphsonFit fit;
    EventCoefficients coefficients;
    Block<double> weights;        // of the parameters in the constant
    double classified[2][2] = {}; // by state and estimated state

    ErrorCode allocate(Index count) {
        return fit.allocate(count) | coefficients.allocate(count) | weights.allocate(count);
    }
};

void start(EventData& events, NewtonRaphsonFit& fit) {
    for (Index s = 0; s < events.samples; ++s) events.design[s * events.width + events.covariates] = 1.0;
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
        work.coefficients.errors[j] = std::sqrt(fit.covariance[j * events.width + j]) / deviation;
        work.weights[j] = -events.means[j] / deviation;
        constant += work.weights[j] * fit.parameters[j];
    }
    work.coefficients.values[covariates] = constant;
    work.coefficients.errors[covariates] = fit.standardError(work.weights.data());
}

void classify(const EventData& events, const LogisticLikelihood& model, LogisticWork& work) {
    for (Index s = 0; s < events.samples; ++s) {
        const Odds odds = oddsOf(model.predictor(work.fit.parameters.data(), s));
        ++work.classified[events.states[s]][odds.with > 0.5 ? 1 : 0];
    }
}

void writeDevianceRow(Report& report, int number, const char* label, double likelihood, Index parameters) {
    startRow(report, number, label);
    writeEventValue(report, likelihood);
    writeEventValue(report, -2.0 * likelihood);
    writeEventValue(report, -2.0 * likelihood + 2.0 * static_cast<double>(parameters));
    endRow(report);
}

void writeFit(Report& report, const EventData& events, const NewtonRaphsonFit& fit) {
    constexpr const char* names[] = {"log.likelihood", "deviance", "AIC"};
    report.lower.append("\tlog likelihood, deviance, AIC\n");
    writeEventHeader(report, names);
    writeDevianceRow(report, 1, "null model", fit.startLikelihood, 1);
    writeDevianceRow(report, 2, "fitted model", fit.likelihood, events.covariates + 1);
    report.lower.append("\n");
    writeLikelihoodRatio(report, fit.startLikelihood, fit.likelihood, events.covariates);
}

void writeClassification(Report& report, const LogisticWork& work) {
    constexpr const char* names[] = {"estimated 0", "estimated 1"};
    report.lower.append("\tclassification of samples\n");
    WriteNamedHeader(report, names, 2, report.formats.nameLength);
    WriteValueRow(report, work.classified[0], 2, 0, "state 0", 1);
    WriteValueRow(report, work.classified[1], 2, 0, "state 1", 2);
    report.lower.append("\n");
}

// Pearson's residual (y - p) / sqrt(p (1 - p)) is the root of the odds against what happened.
void writeSamples(Report& report, const DataMatrix& data, const EventData& events,
                  const LogisticLikelihood& model, const NewtonRaphsonFit& fit) {
    constexpr const char* names[] = {"state", "probability", "s.residual"};
    report.lower.append("\tstate, probability, standardized residual\n");
    writeEventHeader(report, names);
    for (Index s = 0; s < events.samples; ++s) {
        const double predictor = model.predictor(fit.parameters.data(), s);
        const bool event = events.states[s] != 0;
        startRow(report, static_cast<int>(s) + 1, data.label(s));
        writeEventCount(report, events.states[s]);
        writeEventValue(report, oddsOf(predictor).with);
        writeEventValue(report, event ? std::exp(-predictor / 2.0) : -std::exp(predictor / 2.0));
        endRow(report);
    }
    report.lower.append("\n");
}

void writeReport(Screens& screens, AnalysisRun& run, const EventColumns& columns, const EventData& events,
                 const LogisticLikelihood& model, const LogisticWork& work) {
    Report& report = run.report;
    writeEventStart(run, "multiple logistic model statistics", columns);
    report.lower.appendFormat(", %d iterations\n\n", work.fit.iterations);
    report.lower.append("\tcoefficient, standard error, wald chi square, chi prob, odds ratio\n");
    writeCoefficients(report, run.data, events, work.coefficients, "odds.ratio");
    writeFit(report, events, work.fit);
    writeClassification(report, work);
    writeSamples(report, run.data.working, events, model, work.fit);
    closeReport(screens, report);
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    const Settings& settings = run.options.settings;
    const EventColumns columns = {settings.logisticState, 0, settings.logisticDivision};
    EventData events;
    ErrorCode code = takeEventData(run.data.working, columns, 1, events);
    if (code != success) return code;
    LogisticWork work;
    code = work.allocate(events.width);
    if (code != success) return code;

    startProgress(screens, run.report);
    LogisticLikelihood model(events);
    start(events, work.fit);
    screens.setProgress(10);
    code = newtonRaphson(model, events.covariates, settings.logisticIterations, work.fit);
    screens.setProgress(100);
    screens.hideProgress();
    if (code != success) return code;
    takeCoefficients(events, work);
    classify(events, model, work);
    writeReport(screens, run, columns, events, model, work);
    return success;
}

} // namespace

const Analysis logisticModel = {.fields = fields, .driver = run, .refuse = refuse};
