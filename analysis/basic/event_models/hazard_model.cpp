#include "analysis/basic/event_models/hazard_model.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/basic/event_models/event_charts.h"
#include "analysis/basic/event_models/event_data.h"
#include "analysis/basic/event_models/event_model_report.h"
#include "analysis/basic/event_models/event_options.h"
#include "analysis/basic/event_models/newton_raphson.h"
#include "analysis/run/run_report.h"
#include "analysis/run/score_graph.h"
#include "report/tables.h"

namespace {

constexpr auto fields = survivalFields(offsetof(AnalysisOptions, settings.hazard), 5201);

const char* refuse(const AnalysisOptions& options, std::uint32_t) {
    return refuseSurvival(options.settings.hazard);
}

// The samples from the latest time to the earliest, so that the sample at i and all before it, and those of
// the same time after it, are at risk at its time.
struct RiskOrder {
    Block<Index> order;         // samples
    Matrix covariates;          // samples x covariates, standardized
    Block<double> times;        // samples
    Block<std::int32_t> states; // samples

    [[nodiscard]] ErrorCode allocate(const EventData& events) {
        return order.allocate(events.samples) | covariates.allocate(events.samples, events.covariates) |
               times.allocate(events.samples) | states.allocate(events.samples);
    }
};

void sortByTime(const EventData& events, RiskOrder& risk) {
    for (Index i = 0; i < events.samples; ++i) risk.order[i] = i;
    const double* times = events.times.data();
    std::sort(risk.order.begin(), risk.order.end(), [times](Index a, Index b) {
        if (times[a] != times[b]) return times[a] > times[b];
        return a < b;
    });
    for (Index i = 0; i < events.samples; ++i) {
        const Index s = risk.order[i];
        std::copy_n(events.design.row(s), events.covariates, risk.covariates.row(i));
        risk.times[i] = events.times[s];
        risk.states[i] = events.states[s];
    }
}

// Over those at risk: the sum of exp(predictor), the covariates' means with these weights, and the sums of
// products of their deviations from the means (lower triangle), so that a covariate that is the same for all
// at risk has none at all. The weights are divided by exp(shift), the largest of them: none overflows.
struct RiskSums {
    double shift = 0.0;
    double total = 0.0;
    Block<double> means; // covariates
    Matrix products;     // covariates x covariates

    [[nodiscard]] ErrorCode allocate(Index count) {
        return means.allocate(count) | products.allocate(count, count);
    }

    void clear() {
        shift = -std::numeric_limits<double>::infinity();
        total = 0.0;
        std::fill(means.begin(), means.end(), 0.0);
        products.fill(0.0);
    }

    void add(double predictor, const double* row) {
        if (predictor > shift) rescale(predictor);
        const double weight = std::exp(predictor - shift);
        const double before = total;
        const Index count = means.size();
        total += weight;
        const double share = weight / total;
        for (Index i = 0; i < count; ++i) {
            const double weighted = share * before * (row[i] - means[i]);
            double* line = products.row(i);
            for (Index j = 0; j <= i; ++j) line[j] += weighted * (row[j] - means[j]);
        }
        for (Index i = 0; i < count; ++i) {
            means[i] = before > 0.0 ? means[i] + share * (row[i] - means[i]) : row[i];
        }
    }

private:
    void rescale(double predictor) {
        const double factor = std::exp(shift - predictor);
        shift = predictor;
        total *= factor;
        for (double& sum : products) sum *= factor;
    }
};

// One distinct time with events.
struct EventTime {
    double time;
    Index atRisk;
    Index events;
    double cumulativeHazard;
};

double predictorOf(const double* parameters, const double* row, Index count) {
    double sum = 0.0;
    for (Index j = 0; j < count; ++j) sum += parameters[j] * row[j];
    return sum;
}

class PartialLikelihood : public LikelihoodModel {
public:
    explicit PartialLikelihood(const RiskOrder& risk) : risk_(risk) {}

    [[nodiscard]] ErrorCode allocate(Index covariates) { return sums_.allocate(covariates); }

    void evaluate(const double* parameters, LikelihoodPoint& point) override {
        const Index count = risk_.covariates.columns();
        point.clear();
        visitTimes(parameters, [&](Index first, Index end) {
            Index events = 0;
            for (Index i = first; i < end; ++i) {
                if (risk_.states[i] == 0) continue;
                const double* row = risk_.covariates.row(i);
                ++events;
                point.value += predictorOf(parameters, row, count);
                for (Index j = 0; j < count; ++j) point.gradient[j] += row[j];
            }
            if (events > 0) addRisk(static_cast<double>(events), point);
        });
    }

    // The baseline hazard of each event time, from the latest to the earliest: events over those at risk
    // (Breslow 1974). Returns how many there are.
    Index findEventTimes(const double* parameters, EventTime* found) {
        Index count = 0;
        visitTimes(parameters, [&](Index first, Index end) {
            Index events = 0;
            for (Index i = first; i < end; ++i) events += risk_.states[i];
            if (events == 0) return;
            const double hazard = static_cast<double>(events) * std::exp(-sums_.shift) / sums_.total;
            found[count++] = {risk_.times[first], end, events, hazard};
        });
        return count;
    }

private:
    // Calls `visit` with the samples of each distinct time once all who are at risk then are in the sums.
    template <class Visit> void visitTimes(const double* parameters, Visit visit) {
        sums_.clear();
        const Index samples = risk_.covariates.rows();
        const Index count = risk_.covariates.columns();
        for (Index first = 0; first < samples;) {
            Index end = first;
            for (; end < samples && risk_.times[end] == risk_.times[first]; ++end) {
                const double* row = risk_.covariates.row(end);
                sums_.add(predictorOf(parameters, row, count), row);
            }
            visit(first, end);
            first = end;
        }
    }

    // What so many events at a time take from the likelihood, its gradient and information.
    void addRisk(double events, LikelihoodPoint& point) const {
        point.value -= events * (sums_.shift + std::log(sums_.total));
        for (Index i = 0; i < sums_.means.size(); ++i) {
            point.gradient[i] -= events * sums_.means[i];
            const double* products = sums_.products.row(i);
            double* information = point.information.row(i);
            for (Index j = 0; j <= i; ++j) information[j] += events * products[j] / sums_.total;
        }
    }

    const RiskOrder& risk_;
    RiskSums sums_;
};

struct HazardWork {
    RiskOrder risk;
    PartialLikelihood likelihood{risk};
    NewtonRaphsonFit fit;
    EventCoefficients coefficients;
    Block<EventTime> eventTimes; // as many as events, from the earliest on
    Index timeCount = 0;         // distinct ones
    Block<double> hazards;       // samples: the cumulative baseline hazard at their time

    [[nodiscard]] ErrorCode allocate(const EventData& events) {
        return risk.allocate(events) | likelihood.allocate(events.covariates) |
               fit.allocate(events.covariates) | coefficients.allocate(events.covariates) |
               eventTimes.allocate(events.events) | hazards.allocate(events.samples);
    }
};

void takeCoefficients(const EventData& events, HazardWork& work) {
    for (Index j = 0; j < events.covariates; ++j) {
        const double variance = work.fit.covariance(j, j);
        work.coefficients.values[j] = work.fit.parameters[j] / events.deviations[j];
        work.coefficients.errors[j] = std::sqrt(variance) / events.deviations[j];
    }
}

void findBaseline(HazardWork& work) {
    work.timeCount = work.likelihood.findEventTimes(work.fit.parameters.data(), work.eventTimes.data());
    EventTime* times = work.eventTimes.data();
    std::reverse(times, times + work.timeCount);
    for (Index e = 1; e < work.timeCount; ++e) times[e].cumulativeHazard += times[e - 1].cumulativeHazard;
    Index passed = 0;
    for (Index i = work.risk.times.size(); i-- > 0;) {
        while (passed < work.timeCount && times[passed].time <= work.risk.times[i]) ++passed;
        work.hazards[work.risk.order[i]] = passed > 0 ? times[passed - 1].cumulativeHazard : 0.0;
    }
}

ErrorCode compute(Screens& screens, const EventData& events, Index limit, HazardWork& work) {
    sortByTime(events, work.risk);
    ErrorCode code = screens.setProgress(10);
    if (code == success)
        code = newtonRaphson(work.likelihood, events.covariates, limit, work.fit, {&screens, 10, 100});
    if (code != success) return code;
    takeCoefficients(events, work);
    findBaseline(work);
    return screens.setProgress(100);
}

void writeFit(Report& report, const NewtonRaphsonFit& fit) {
    writeCaption(report, "log partial likelihood, AIC");
    writeLikelihoodHeader(report);
    writeLikelihoodRow(report, 1, "null model", fit.startLikelihood, 0);
    writeLikelihoodRow(report, 2, "fitted model", fit.likelihood, fit.parameters.size());
    endTable(report);
    writeLikelihoodRatio(report, fit.startLikelihood, fit.likelihood, fit.parameters.size());
}

void writeBaseline(Report& report, const HazardWork& work) {
    constexpr const char* headings[] = {"time", "at.risk", "events", "cum.hazard", "survival"};
    writeCaption(report, "baseline survival");
    WriteNamedHeader(report, headings, wideCell.width);
    for (Index e = 0; e < work.timeCount; ++e) {
        const EventTime& at = work.eventTimes[e];
        startRow(report, e + 1, numberedName("event", e).text);
        writeCell(report, at.time, wideCell);
        writeInteger(report, at.atRisk, wideCount.width);
        writeInteger(report, at.events, wideCount.width);
        writeCell(report, at.cumulativeHazard, wideCell);
        writeCell(report, std::exp(-at.cumulativeHazard), wideCell);
        endRow(report);
    }
    endTable(report);
}

double predictorOfSample(const EventData& events, const HazardWork& work, Index sample) {
    return predictorOf(work.fit.parameters.data(), events.design.row(sample), events.covariates);
}

void writeSamples(Report& report, const DataMatrix& data, const EventData& events, const HazardWork& work) {
    constexpr const char* headings[] = {"time", "state", "risk.score", "m.residual"};
    writeCaption(report, "time, state, risk score, martingale residual");
    WriteNamedHeader(report, headings, wideCell.width);
    for (Index s = 0; s < events.samples; ++s) {
        const double score = std::exp(predictorOfSample(events, work, s));
        startRow(report, s + 1, data.label(s));
        writeCell(report, events.times[s], wideCell);
        writeInteger(report, events.states[s], wideCount.width);
        writeCell(report, score, wideCell);
        writeCell(report, events.states[s] - work.hazards[s] * score, wideCell);
        endRow(report);
    }
    endTable(report);
}

void writeReport(AnalysisRun& run, const EventData& events, const HazardWork& work) {
    const DataMatrix& data = run.data.working;
    Report& report = run.report;
    openEventReport(run, "propotional hazard model statistics", events.columns, {work.fit.iterations});
    writeCaption(report, "coefficient, standard error, wald chi square, chi prob, hazard ratio");
    writeCoefficients(report, data, events, work.coefficients, "hazard.ratio");
    writeFit(report, work.fit);
    writeBaseline(report, work);
    writeSamples(report, data, events, work);
}

// The event times in three series, with one empty vector.
ErrorCode buildSurvivalGraph(Screens& screens, AnalysisRun& run, const HazardWork& work) {
    if (run.options.settings.expressGraph == 0) return success;
    constexpr const char* series[] = {"time", "survival", "cumulative hazard"};
    GraphSpec spec;
    const ErrorCode code = spec.allocate(std::size(series), work.timeCount, 1);
    if (code != success) return code;
    for (Index k = 0; k < std::ssize(series); ++k) spec.seriesNames.set(k, series[k]);
    double* value = spec.values.data();
    for (Index e = 0; e < work.timeCount; ++e) {
        const EventTime& at = work.eventTimes[e];
        spec.itemLabels.set(e, numberedName("event", e).text);
        spec.numberLabels.setFormat(e, "%td", e + 1);
        *value++ = at.time;
        *value++ = std::exp(-at.cumulativeHazard);
        *value++ = at.cumulativeHazard;
    }
    if (run.everyGraphTakesPreferences) takeGraphPreferences(run.options.settings, spec);
    return buildGraph(screens, spec, run.graph);
}

// The predictor is 0 at the means of the covariates, as the baseline is.
ErrorCode keepSurvival(AnalysisRun& run, const EventData& events, const HazardWork& work) {
    return keepColumns(run.columns, events.samples, 2, [&](SampleColumns& columns) {
        columns.add("predictor", [&](Index s) { return predictorOfSample(events, work, s); });
        columns.add("survival", [&](Index s) {
            return std::exp(-work.hazards[s] * std::exp(predictorOfSample(events, work, s)));
        });
    });
}

// What the pictures are made of.
struct HazardCharts {
    const EventData& events;
    const HazardWork& work;
};

// The baseline beside what the data say.
ErrorCode describeSurvival(const AnalysisRun& run, const HazardCharts& charts, Chart& chart) {
    const HazardWork& work = charts.work;
    Block<double> times, survivals;
    ErrorCode code = times.allocate(work.timeCount) | survivals.allocate(work.timeCount);
    if (code != success) return code;
    for (Index e = 0; e < work.timeCount; ++e) {
        times[e] = work.eventTimes[e].time;
        survivals[e] = std::exp(-work.eventTimes[e].cumulativeHazard);
    }
    startSurvivalChart(run, charts.events, "proportional hazards", chart);
    const bool hasGroups = chart.groups.count > 0;
    const double end = *std::max_element(charts.events.times.begin(), charts.events.times.end());
    if (!hasGroups)
        code = addSurvivalSteps("model at the means", 0, times.data(), survivals.data(), work.timeCount, end,
                                chart);
    return code == success ? addEmpiricalSurvival(charts.events, chart) : code;
}

ErrorCode describeHazardRatios(const AnalysisRun& run, const HazardCharts& charts, Chart& chart) {
    return describeRatios(
        run, {charts.events, charts.work.coefficients, "proportional hazards", "hazard ratio"}, chart);
}

constexpr Picture pictures[] = {
    {"survival", "survival over time: of the model at the means, and of the data; by groups, of the data",
     Picture::groups | Picture::curves, describeResult<HazardCharts, describeSurvival>},
    {"ratios", "hazard ratios with their intervals", 0, describeResult<HazardCharts, describeHazardRatios>},
};

ErrorCode runHazardModel(Screens& screens, AnalysisRun& run) {
    const SurvivalOptions& options = run.options.settings.hazard;
    const EventColumns columns = {options.stateColumn, options.timeColumn, options.division};
    EventData events;
    ErrorCode code = takeEventData(run.data.working, columns, 0, events);
    if (code != success) return code;
    HazardWork work;
    code = work.allocate(events);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, events, options.iterations, work);
    screens.hideProgress();
    if (code != success) return code;

    writeReport(run, events, work);
    code = keepSurvival(run, events, work);
    if (code == success) code = buildPicture<HazardCharts>(run, {events, work});
    if (code != success) return code;
    closeReport(screens, run.report);
    return buildSurvivalGraph(screens, run, work);
}

} // namespace

const Analysis hazardModel = {
    .fields = fields, .driver = runHazardModel, .refuse = refuse, .pictures = pictures};
