#pragma once

#include <limits>

#include "data/text_list.h"
#include "numeric/matrix.h"

// A picture of a result as a plain description, which charts/chart_painter.h draws: what an analysis knows of
// it, without any pixel.

// A text of a chart, cut at its end.
struct ChartText {
    char text[120] = "";

    [[gnu::format(PRINTF_KIND, 2, 3)]] void set(const char* format, ...);
    bool isEmpty() const { return text[0] == '\0'; }
};

// What the samples are told apart by: of each sample the number of its group, from 0; -1 for none.
struct SampleGroups {
    static constexpr Index most = 10;

    Index count = 0; // 0: they are not told apart
    ChartText title;
    TextList names;
    Block<std::int32_t> groupOf; // samples

    [[nodiscard]] ErrorCode copyFrom(const SampleGroups& other);
};

struct ChartAxis {
    ChartText title;
    // Values that the axis holds besides those of the layers; it ends exactly there where none is beyond.
    double heldLeast = std::numeric_limits<double>::infinity();
    double heldMost = -std::numeric_limits<double>::infinity();
    bool isLogarithmic = false; // across alone
    TextList categories;        // up the chart: names of 1, 2, ... instead of numbers, the first one on top

    void hold(double value);
};

enum class LayerKind {
    points,
    arrows,    // from the origin
    line,      // through the points
    steps,     // y holds from its x on
    band,      // between lower and upper over x
    intervals, // across, from lower to upper with a mark at x, at the height y
};

// Points of one meaning. All arrays have the same size, or are empty where the kind does not need them.
struct ChartLayer {
    static constexpr int guide = -1; // a thin grey line

    LayerKind kind = LayerKind::points;
    Block<double> x, y, lower, upper;
    TextList labels;      // of points and arrows; empty: there are none
    ChartText name;       // in the legend; empty: it is not there; of samples only when they have no groups
    int style = 0;        // of charts/group_style.h, or guide
    int crowdedStyle = 0; // instead of it beside more than 4 groups of samples; 0: none
    bool isDashed = false;
    bool isOfSamples = false; // point s is sample s: marked by its group, labelled when the user wishes it

    Index size() const { return x.size(); }
};

// One step of a tree whose items count from 0: the cluster of item `first` goes into that of item `second`.
struct TreeMerge {
    std::int32_t first;
    std::int32_t second;
    double level;
};

struct ChartTree {
    TextList labels;         // of the items
    Block<TreeMerge> merges; // items - 1
    Index clusters = 0;      // that the tree is cut into; 0: it is not cut
};

enum class ChartKind { plane, tree, scatterMatrix };

struct Chart {
    static constexpr Index mostLayers = 24;

    ChartKind kind = ChartKind::plane;
    bool isDescribed = false;
    const char* refusal = nullptr; // why there is no such chart of this result
    ChartText title;
    SampleGroups groups;

    // A plane. `across` is the axis of a tree's levels, too.
    ChartAxis across, up;
    bool isEqualScale = false; // one unit is as long on both axes
    ChartLayer layers[mostLayers];
    Index layerCount = 0;

    ChartTree tree;

    // A scatter of each pair of columns.
    Matrix values; // samples x columns
    TextList names;

    // The next layer, with room for so many points in x and y; null when memory or layers run out.
    ChartLayer* addLayer(LayerKind kind, Index points);
    int styleOf(const ChartLayer& layer) const;
    // The same for a line between two points.
    [[nodiscard]] ErrorCode addGuide(double x0, double y0, double x1, double y1);
};
