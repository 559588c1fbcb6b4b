#pragma once

#include "data/text_list.h"
#include "report/screens.h"

// By number; the series that each needs are checked by initGraph.
enum class GraphKind : std::uint32_t {
    bars = 0,
    line = 1,
    lineOnTwoAxes = 2,
    lineOnThreeAxes = 3,
    plainScatter = 4, // 4 to 8: a scatter of two chosen series
    plainBiplot = 5,  // with vectors
    scatter = 6,      // with a band for the lists above the plot
    biplot = 7,
    labelledBiplot = 8, // with texts of its own
};

constexpr std::uint32_t mostSeries = 64;

// What an analysis hands to the graph window: itemCount items (rows) in seriesCount series (columns), and
// vectorCount vectors with co-ordinates in the same series. All matrices are row-major.
struct GraphSpec {
    std::uint32_t width = 480;
    std::uint32_t height = 480;
    GraphKind kind = GraphKind::biplot; // of every analysis
    TextList seriesNames;
    TextList itemLabels;
    Block<double> values; // items x series
    std::int32_t seriesCount = 0;
    Index itemCount = 0;
    std::uint32_t rangeGroups[mostSeries] = {}; // series whose masks share a bit have one common range
    TextList numberLabels;
    std::uint32_t numbering = 0; // non-zero: the items are also listed by number
    TextList kind8Labels;
    TextList vectorNames;
    Block<double> vectorValues; // vectors x series
    std::int32_t vectorCount = 0;
    std::uint32_t vectorOption = 0; // 0 lines through the origin, else vectors from the origin to their end

    // Zero-filled arrays of these sizes; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index series, Index items, Index vectors);
};

// The graph that the window shows: a copy of a description with the range of each series.
struct Graph {
    GraphSpec spec;
    double minimum[mostSeries] = {};
    double maximum[mostSeries] = {};
    bool present = false;
};

// What came of initGraph.
enum class GraphCode : std::int32_t { built = 0, seriesWrong = 1, seriesTooFew = 2, kindUnknown = 4 };

// Copies and validates a description. Every range contains 0; values that are not finite take no part in it.
// Returns built, with the graph, or why there is none; kindUnknown when memory runs out, too.
[[nodiscard]] GraphCode initGraph(const GraphSpec& spec, Graph& graph);

void releaseGraph(Graph& graph);

// Hands an analysis's description over. Tells a failure in a message box and returns graphNotBuilt then.
[[nodiscard]] ErrorCode buildGraph(Screens& screens, const GraphSpec& spec, Graph& graph);
