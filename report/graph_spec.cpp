#include "report/graph_spec.h"

#include <algorithm>
#include <cmath>

namespace {

bool keepsVectors(GraphKind kind) {
    return kind >= GraphKind::plainScatter;
}

GraphCode checkSeries(const GraphSpec& spec) {
    const std::int32_t count = spec.seriesCount;
    if (spec.kind > GraphKind::labelledBiplot) return GraphCode::kindUnknown;
    if (count > static_cast<std::int32_t>(mostSeries)) return GraphCode::seriesWrong;
    switch (spec.kind) {
    case GraphKind::bars:
        return count == 1 ? GraphCode::built : GraphCode::seriesWrong;
    case GraphKind::line:
    case GraphKind::plainScatter:
    case GraphKind::scatter:
        return count == 2 ? GraphCode::built : GraphCode::seriesWrong;
    case GraphKind::lineOnTwoAxes:
        return count == 3 ? GraphCode::built : GraphCode::seriesWrong;
    case GraphKind::lineOnThreeAxes:
        return count >= 3 ? GraphCode::built : GraphCode::seriesWrong;
    default:
        return count >= 2 ? GraphCode::built : GraphCode::seriesTooFew;
    }
}

template <class T> ErrorCode copyBlock(const Block<T>& from, Block<T>& to) {
    const ErrorCode code = to.allocate(from.size());
    if (code == success) std::copy(from.begin(), from.end(), to.begin());
    return code;
}

ErrorCode copySpec(const GraphSpec& from, GraphSpec& to) {
    to.width = from.width;
    to.height = from.height;
    to.kind = from.kind;
    to.seriesCount = from.seriesCount;
    to.itemCount = from.itemCount;
    to.vectorOption = from.vectorOption;
    to.numbering = from.numbering;
    std::copy(std::begin(from.rangeGroups), std::end(from.rangeGroups), to.rangeGroups);
    ErrorCode code = to.seriesNames.copy(from.seriesNames) | to.itemLabels.copy(from.itemLabels) |
                     copyBlock(from.values, to.values);
    if (from.numbering != 0) code |= to.numberLabels.copy(from.numberLabels);
    if (from.kind == GraphKind::labelledBiplot) code |= to.kind8Labels.copy(from.kind8Labels);
    if (keepsVectors(from.kind)) {
        to.vectorCount = from.vectorCount;
        code |= to.vectorNames.copy(from.vectorNames) | copyBlock(from.vectorValues, to.vectorValues);
    }
    return code;
}

void findRanges(Graph& graph) {
    const GraphSpec& spec = graph.spec;
    const Index series = spec.seriesCount;
    for (Index k = 0; k < series; ++k) {
        double least = 0.0, most = 0.0;
        for (Index i = 0; i < spec.itemCount; ++i) {
            const double value = spec.values[i * series + k];
            if (!std::isfinite(value)) continue;
            least = std::min(least, value);
            most = std::max(most, value);
        }
        graph.minimum[k] = least;
        graph.maximum[k] = most;
        for (Index t = 0; t < k; ++t) {
            if ((spec.rangeGroups[k] & spec.rangeGroups[t]) == 0) continue;
            graph.minimum[k] = graph.minimum[t] = std::min(graph.minimum[k], graph.minimum[t]);
            graph.maximum[k] = graph.maximum[t] = std::max(graph.maximum[k], graph.maximum[t]);
        }
    }
}

} // namespace

ErrorCode GraphSpec::allocate(Index series, Index items, Index vectors) {
    seriesCount = static_cast<std::int32_t>(series);
    itemCount = items;
    vectorCount = static_cast<std::int32_t>(vectors);
    return seriesNames.allocate(series) | itemLabels.allocate(items) | values.allocate(items * series) |
           numberLabels.allocate(items) | vectorNames.allocate(vectors) |
           vectorValues.allocate(vectors * series);
}

GraphCode initGraph(const GraphSpec& spec, Graph& graph) {
    releaseGraph(graph);
    GraphCode code = checkSeries(spec);
    if (code == GraphCode::built && copySpec(spec, graph.spec) != success) code = GraphCode::kindUnknown;
    if (code != GraphCode::built) {
        releaseGraph(graph);
        return code;
    }
    findRanges(graph);
    graph.present = true;
    return GraphCode::built;
}

void releaseGraph(Graph& graph) {
    graph = {};
}

ErrorCode buildGraph(Screens& screens, const GraphSpec& spec, Graph& graph) {
    switch (initGraph(spec, graph)) {
    case GraphCode::built:
        return success;
    case GraphCode::seriesWrong:
        screens.alert("failed to initialize graph struct cause illegal variable number", "alert");
        break;
    case GraphCode::seriesTooFew:
        screens.alert("failed to initialize and graph struct cause too few vector number", "alert");
        break;
    default:
        screens.alert("failed to initialize and registred graph struct", "alert");
        break;
    }
    return graphNotBuilt;
}
