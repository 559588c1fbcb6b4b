#include "report/charts/tree_layout.h"

#include <algorithm>
#include <utility>

namespace {

// Makes a node of each merge. `least` has the first item below each node.
void joinNodes(const ChartTree& tree, Index* nodeOf, Index* least, TreeLayout& layout) {
    const Index items = layout.items();
    for (Index i = 0; i < items; ++i) {
        layout.nodes[i] = {.parts = {-1, -1}, .place = 0.0, .level = 0.0, .cluster = -1};
        nodeOf[i] = least[i] = i;
    }
    for (Index s = 0; s < tree.merges.size(); ++s) {
        const TreeMerge& merge = tree.merges[s];
        Index above = nodeOf[merge.first], below = nodeOf[merge.second];
        if (least[above] > least[below]) std::swap(above, below);
        const Index node = items + s;
        layout.nodes[node] = {.parts = {above, below}, .place = 0.0, .level = merge.level, .cluster = -1};
        least[node] = least[above];
        nodeOf[merge.second] = node;
    }
}

// Visits the tree from its last node, upper parts first; `stack` has room for all nodes.
void orderItems(Index* stack, TreeLayout& layout) {
    const Index items = layout.items();
    Index height = 0, row = 0;
    stack[height++] = layout.nodes.size() - 1;
    while (height > 0) {
        const Index node = stack[--height];
        if (node < items) {
            layout.nodes[node].place = static_cast<double>(row);
            layout.order[row++] = node;
        } else {
            stack[height++] = layout.nodes[node].parts[1];
            stack[height++] = layout.nodes[node].parts[0];
        }
    }
}

void placeMerges(TreeLayout& layout) {
    for (Index node = layout.items(); node < layout.nodes.size(); ++node) {
        TreeLayout::Node& merge = layout.nodes[node];
        merge.place = (layout.nodes[merge.parts[0]].place + layout.nodes[merge.parts[1]].place) / 2.0;
    }
}

// The nodes below the cut that no merge below it takes up are clusters; `numbers` has room for all nodes.
void cut(const ChartTree& tree, Index* numbers, TreeLayout& layout) {
    const Index items = layout.items(), clusters = std::min(tree.clusters, items);
    if (clusters < 1) return;
    const Index end = 2 * items - clusters; // the nodes before it are below the cut
    double below = 0.0, above = layout.nodes[layout.nodes.size() - 1].level;
    for (Index node = items; node < layout.nodes.size(); ++node) {
        const double level = layout.nodes[node].level;
        if (node < end) {
            below = std::max(below, level);
        } else {
            above = std::min(above, level);
        }
    }
    layout.hasCutLevel = clusters > 1 && below < above;
    layout.cutLevel = below + (above - below) / 2.0;

    for (Index node = layout.nodes.size(); node-- > 0;) {
        TreeLayout::Node& each = layout.nodes[node];
        if (each.cluster < 0 && node < end) each.cluster = node;
        if (node < items) continue;
        for (const Index part : each.parts) layout.nodes[part].cluster = each.cluster;
    }
    // From the number of its topmost node to one by rows.
    std::fill_n(numbers, layout.nodes.size(), Index{-1});
    Index count = 0;
    for (const Index item : layout.order) {
        Index& number = numbers[layout.nodes[item].cluster];
        if (number < 0) number = count++;
    }
    for (TreeLayout::Node& node : layout.nodes) {
        if (node.cluster >= 0) node.cluster = numbers[node.cluster];
    }
}

} // namespace

ErrorCode layOutTree(const ChartTree& tree, TreeLayout& layout) {
    const Index items = tree.labels.size(), nodes = items + tree.merges.size();
    Block<Index> scratch, least;
    const ErrorCode code = layout.nodes.allocate(nodes) | layout.order.allocate(items) |
                           scratch.allocate(nodes) | least.allocate(nodes);
    if (code != success || items == 0) return code;
    joinNodes(tree, scratch.data(), least.data(), layout);
    orderItems(scratch.data(), layout);
    placeMerges(layout);
    cut(tree, scratch.data(), layout);
    return success;
}
