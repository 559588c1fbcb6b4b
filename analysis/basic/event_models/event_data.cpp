#include "analysis/basic/event_models/event_data.h"

#include <cmath>

#include "numeric/moments.h"

namespace {

double stateOf(const DataMatrix& data, const EventColumns& columns, Index sample) {
    return data.at(sample, columns.state - 1);
}

double timeOf(const DataMatrix& data, const EventColumns& columns, Index sample) {
    return data.at(sample, columns.time - 1);
}

ErrorCode checkSamples(const DataMatrix& data, EventData& events) {
    const EventColumns& columns = events.columns;
    for (Index s = 0; s < events.samples; ++s) {
        if (stateOf(data, columns, s) > columns.division) ++events.events;
    }
    if (events.events == 0 || (columns.time == 0 && events.events == events.samples))
        return illegalDivisionalValue;
    for (Index s = 0; columns.time != 0 && s < events.samples; ++s) {
        if (!(timeOf(data, columns, s) > 0.0)) return invalidPurposeVariable;
    }
    return allFinite(data.values.data(), data.count()) ? success : notFinite;
}

ErrorCode allocate(Index parameters, EventData& events) {
    return events.covariateColumns.allocate(events.covariates) | events.states.allocate(events.samples) |
           events.times.allocate(events.columns.time != 0 ? events.samples : 0) |
           events.means.allocate(events.covariates) | events.deviations.allocate(events.covariates) |
           events.design.allocate(events.samples, parameters);
}

void copySamples(const DataMatrix& data, EventData& events) {
    const EventColumns& columns = events.columns;
    Index count = 0;
    for (Index v = 0; v < data.variables; ++v) {
        if (v + 1 != columns.state && v + 1 != columns.time) events.covariateColumns[count++] = v;
    }
    for (Index s = 0; s < events.samples; ++s) {
        events.states[s] = stateOf(data, columns, s) > columns.division ? 1 : 0;
        if (columns.time != 0) events.times[s] = timeOf(data, columns, s);
        const double* from = data.row(s);
        double* row = events.design.row(s);
        for (Index j = 0; j < events.covariates; ++j) row[j] = from[events.covariateColumns[j]];
    }
}

void centre(EventData& events) {
    const double count = static_cast<double>(events.samples);
    for (Index s = 0; s < events.samples; ++s) {
        const double* row = events.design.row(s);
        for (Index j = 0; j < events.covariates; ++j) events.means[j] += row[j];
    }
    for (double& mean : events.means) mean /= count;
    for (Index s = 0; s < events.samples; ++s) {
        double* row = events.design.row(s);
        for (Index j = 0; j < events.covariates; ++j) {
            row[j] -= events.means[j];
            events.deviations[j] += row[j] * row[j];
        }
    }
    for (double& deviation : events.deviations) deviation = std::sqrt(deviation / count);
}

void standardize(EventData& events) {
    for (Index s = 0; s < events.samples; ++s) {
        double* row = events.design.row(s);
        for (Index j = 0; j < events.covariates; ++j) row[j] /= events.deviations[j];
    }
}

} // namespace

ErrorCode takeEventData(const DataMatrix& data, const EventColumns& columns, Index added, EventData& events) {
    const Index taken = columns.time != 0 ? 2 : 1;
    if (data.variables <= taken || columns.state < 1 || columns.state > data.variables || columns.time < 0 ||
        columns.time > data.variables || columns.state == columns.time) {
        return noEffectiveVariable;
    }
    events.columns = columns;
    events.samples = data.samples;
    events.covariates = data.variables - taken;
    const Index parameters = events.covariates + added;
    if (events.samples < parameters + 1) return tooFewSamples;
    ErrorCode code = checkSamples(data, events);
    if (code == success) code = allocate(parameters, events);
    if (code != success) return code;

    copySamples(data, events);
    centre(events);
    if (!allFinite(events.means) || !allFinite(events.deviations)) return notFinite;
    if (anyDeviationBelow(events.deviations, leastDeviation)) return illegalData;
    standardize(events);
    return success;
}
