#pragma once

#include "data/text_list.h"
#include "report/screens.h"

constexpr std::uint32_t mostSeries = 64;

// What an analysis hands to the graph window: itemCount items (rows) in seriesCount series (columns), and
// vectorCount vectors with co-ordinates in the same series. All matrices are row-major.
struct GraphSpec {
    std::uint32_t width = 480;
    std::uint32_t height = 480;
    std::uint32_t kind =
        7; // 0 bars, 1..3 lines, 4..8 scatter; with vectors 5, 7 and 8; every analysis uses 7
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

// Results of initGraph besides success.
constexpr ErrorCode graphSeriesWrong = 1;
constexpr ErrorCode graphSeriesTooFew = 2;
constexpr ErrorCode graphKindUnknown = 4;

// Copies and validates a description. Every range contains 0; values that are not finite take no part in it.
// Returns success or one of the codes above; graphKindUnknown when memory runs out, too.
ErrorCode initGraph(const GraphSpec& spec, Graph& graph);

void releaseGraph(Graph& graph);

// Hands an analysis's description over. Tells a failure in a message box and returns graphNotBuilt then.
[[nodiscard]] ErrorCode buildGraph(Screens& screens, const GraphSpec& spec, Graph& graph);
