#include "analysis/run/score_graph.h"

#include <algorithm>

namespace {

void nameSeries(const ScoreGraph& scores, GraphSpec& spec) {
    for (Index k = 0; k < spec.seriesNames.size(); ++k) {
        if (scores.seriesNames != nullptr) {
            spec.seriesNames.set(k, scores.seriesNames[k]);
        } else {
            spec.seriesNames.setFormat(k, "%s %td", scores.seriesPrefix, k + 1);
        }
    }
}

void placeItems(const ScoreGraph& scores, GraphSpec& spec) {
    const Index series = spec.seriesNames.size();
    for (Index i = 0; i < spec.itemCount; ++i) {
        spec.numberLabels.setFormat(i, "%td", scores.numbers != nullptr ? Index{scores.numbers[i]} : i + 1);
        std::copy_n(scores.scores->row(i), series, spec.values.data() + i * series);
    }
}

void placeVectors(const ScoreGraph& scores, GraphSpec& spec) {
    if (scores.vectors == nullptr) return;
    const Index series = spec.seriesNames.size();
    for (Index v = 0; v < spec.vectorNames.size(); ++v) {
        spec.vectorNames.set(v, scores.vectorNames[v]);
        std::copy_n(scores.vectors->row(v), series, spec.vectorValues.data() + v * series);
    }
}

} // namespace

void takeGraphPreferences(const Settings& settings, GraphSpec& spec) {
    spec.numbering = static_cast<std::uint32_t>(settings.scatterNumbering);
    spec.vectorOption = static_cast<std::uint32_t>(settings.vectorSizing);
}

ErrorCode buildScoreGraph(Screens& screens, AnalysisRun& run, const ScoreGraph& scores) {
    const Settings& settings = run.options.settings;
    if (settings.expressGraph == 0) return success;
    const DataMatrix& data = run.data.working;
    const Index vectors = scores.vectors != nullptr ? scores.vectors->rows() : 1;
    GraphSpec spec;
    const ErrorCode code = spec.allocate(std::max<Index>(scores.seriesCount, 0), data.samples, vectors) |
                           spec.itemLabels.copy(data.labels);
    if (code != success) return code;
    if (scores.takesPreferences || run.everyGraphTakesPreferences) takeGraphPreferences(settings, spec);
    nameSeries(scores, spec);
    placeItems(scores, spec);
    placeVectors(scores, spec);
    return buildGraph(screens, spec, run.graph);
}
