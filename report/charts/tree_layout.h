#pragma once

#include "report/charts/chart.h"

// Where the lines of a tree stand. Nodes count the items first, then the merges in their order.
struct TreeLayout {
    struct Node {
        Index parts[2]; // the nodes below it, -1 of an item
        double place;   // in rows from the top; of a merge in the middle between its parts
        double level;   // 0 of an item
        Index cluster;  // that it lies in, from 0 by rows from the top; -1 above the cut
    };
    Block<Node> nodes;
    Block<Index> order; // the item of each row
    bool hasCutLevel = false;
    double cutLevel = 0.0; // between the last merge below the cut and the first one above it

    Index items() const { return order.size(); }
};

// Puts the items into rows so that no lines cross, of two parts the one with the first item on top. Returns
// success or outOfMemory.
[[nodiscard]] ErrorCode layOutTree(const ChartTree& tree, TreeLayout& layout);
