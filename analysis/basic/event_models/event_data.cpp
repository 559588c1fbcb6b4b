#include "analysis/basic/event_models/event_data.h"

#include <cmath>

#include "numeric/moments.h"

namespace {

double valueAt(const DataMatrix& data, Index sample, std::int32_t column) {
    return data.values[sample * data.variables + (column - 1)];
}

ErrorCode checkSamples(const DataMatrix& data, const EventColumns& columns, EventData& events) {
    for (Index s = 0; s < events.samples; ++s) {
        if (valueAt(data, s, columns.state) > columns.division) ++events.events;
    }
    if (events.events == 0 || (columns.time == 0 && events.events == data.samples))
        return illegalDivisionalValue;
    for (Index s = 0; columns.time != 0 && s < events.samples; ++s) {
        if (!(valueAt(data, s, columns.time) > 0.0)) return invalidPurposeVariable;
    }
    return allFinite(data.values.data(), data.count()) ? success : notFinite;
}

ErrorCode allocate(bool timed, EventData& events) {
    return events.columns.allocate(events.covariates) | events.states.allocate(events.samples) |
           events.times.allocate(timed ? events.samples : 0) | events.means.allocate(events.covariates) |
           events.deviations.allocate(events.covariates) |
           events.design.allocate(events.samples * events.width);
}

void copySamples(const DataMatrix& data, const EventColumns& columns, EventData& events) {
    Index count = 0;
    for (std::int32_t column = 1; column <= data.variables; ++column) {
        if (column != columns.state && column != columns.time) events.columns[count++] = column;
    }
    for (Index s = 0; s < events.samples; ++s) {
        events.states[s] = valueAt(data, s, columns.state) > columns.division ? 1 : 0;
        if (columns.time != 0) events.times[s] = valueAt(data, s, columns.time);
        double* row = events.design.data() + s * events.width;
        for (Index j = 0; j < events.covariates; ++j) row[j] = valueAt(data, s, events.columns[j]);
    }
}

void centre(EventData& events) {
    const double count = static_cast<double>(events.samples);
    for (Index s = 0; s < events.samples; ++s) {
        const double* row = events.design.data() + s * events.width;
        for (Index j = 0; j < events.covariates; ++j) events.means[j] += row[j];
    }
    for (double& mean : events.means) mean /= count;
    for (Index s = 0; s < events.samples; ++s) {
        double* row = events.design.data() + s * events.width;
        for (Index j = 0; j < events.covariates; ++j) {
            row[j] -= events.means[j];
            events.deviations[j] += row[j] * row[j];
        }
    }
    for (double& deviation : events.deviations) deviation = std::sqrt(deviation / count);
}

void standardize(EventData& events) {
    for (Index s = 0; s < events.samples; ++s) {
        double* row = events.design.data() + s * events.width;
        for (Index j = 0; j < events.covariates; ++j) row[j] /= events.deviations[j];
    }
}

} // namespace

ErrorCode takeEventData(const DataMatrix& data, const EventColumns& columns, Index added, EventData& events) {
    const std::int32_t taken = columns.time != 0 ? 2 : 1;
    if (data.variables <= taken || columns.state < 1 || columns.state > data.variables || columns.time < 0 ||
        columns.time > data.variables || columns.state == columns.time) {
        return noEffectiveVariable;
    }
    events.samples = data.samples;
    events.covariates = (data.variables - taken);
    events.width = events.covariates + added;
    if (events.samples < events.width + 1) return tooFewSamples;
    ErrorCode code = checkSamples(data, columns, events);
    if (code == success) code = allocate(columns.time != 0, events);
    if (code != success) return code;

    copySamples(data, columns, events);
    centre(events);
    if (!allFinite(events.means.data(), events.covariates) ||
        !allFinite(events.deviations.data(), events.covariates)) {
        return notFinite;
    }
    if (anyDeviationBelow(events.deviations.data(), static_cast<int>(events.covariates), leastDeviation)) {
        return illegalData;
    }
    standardize(events);
    return success;
}
