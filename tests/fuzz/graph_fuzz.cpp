#include <vector>

#include "report/charts/chart_choices.h"
#include "report/charts/chart_painter.h"
#include "report/graph_axes.h"
#include "tests/fuzz/choices.h"
#include "tests/fuzz/require.h"
#include "tests/support/recording_canvas.h"

namespace {

void setTexts(Choices& choices, TextList& texts, Index count) {
    require(texts.allocate(count) == success);
    for (Index i = 0; i < count; ++i) texts.set(i, choices.line().c_str());
}

void setNumbers(Choices& choices, std::span<double> numbers) {
    for (double& number : numbers) number = choices.number();
}

void tryGraph(Choices& choices) {
    GraphSpec spec;
    const int series = choices.below(70), items = choices.below(40), vectors = choices.below(8);
    require(spec.allocate(series, items, vectors) == success);
    spec.kind = static_cast<GraphKind>(choices.below(10));
    spec.numbering = choices.next() % 2;
    spec.vectorOption = choices.next() % 2;
    for (std::uint32_t& mask : spec.rangeGroups) mask = choices.next() % 4U;
    setNumbers(choices, {spec.values.data(), static_cast<std::size_t>(spec.values.size())});
    setNumbers(choices, {spec.vectorValues.data(), static_cast<std::size_t>(spec.vectorValues.size())});
    GraphView view = {5 * choices.next(), 5 * choices.next()};
    for (int& each : view.series) each = choices.below(std::max(series, 1));
    view.highlighted = choices.next();
    setTexts(choices, spec.seriesNames, series);
    for (TextList* const each : {&spec.itemLabels, &spec.numberLabels, &spec.kind8Labels})
        setTexts(choices, *each, items);
    setTexts(choices, spec.vectorNames, vectors);

    Graph graph;
    RecordingCanvas canvas;
    require((initGraph(spec, graph) == GraphCode::built) == graph.present);
    drawGraph(canvas, graph, view);
    if (view.width < 200 || view.height < 200) return;
    // Vectors end where they end, and items are numbered where they are.
    std::erase_if(canvas.lines, [](const auto& line) { return line.pen.color == vectorRed; });
    std::erase_if(canvas.texts, [](const auto& text) {
        return text.style.color == numberBlue || text.style.color == highlightRed;
    });
    requireNone(canvas.outside({view.width, view.height}));
}

// Each merge takes two of the clusters that are still there.
void setTree(Choices& choices, ChartTree& tree) {
    std::vector<std::int32_t> there(static_cast<std::size_t>(2 + choices.below(30)));
    for (std::size_t i = 0; i < there.size(); ++i) there[i] = static_cast<std::int32_t>(i);
    tree.clusters = choices.below(33);
    setTexts(choices, tree.labels, std::ssize(there));
    require(tree.merges.allocate(std::ssize(there) - 1) == success);
    for (TreeMerge& merge : tree.merges) {
        const auto take = [&] { return there.begin() + choices.below(static_cast<int>(there.size())); };
        std::iter_swap(take(), there.end() - 1);
        merge.first = there.back();
        there.pop_back();
        merge.second = *take();
        merge.level = choices.number();
    }
}

void setLayers(Choices& choices, Chart& chart, int samples) {
    for (int layers = choices.below(6); layers > 0; --layers) {
        ChartLayer& layer = *chart.addLayer(static_cast<LayerKind>(choices.below(6)), samples);
        require((layer.lower.allocate(samples) | layer.upper.allocate(samples)) == success);
        for (Block<double>* const each : {&layer.x, &layer.y, &layer.lower, &layer.upper})
            setNumbers(choices, {each->data(), static_cast<std::size_t>(samples)});
        const int ways = choices.next();
        layer.isOfSamples = ways % 2 == 1;
        layer.isDashed = ways / 2 % 2 == 1;
        layer.style = ways / 4 % 12 - 1;
        layer.crowdedStyle = ways / 64;
        layer.name.set("%s", choices.line().c_str());
        if (layer.kind == LayerKind::points || layer.kind == LayerKind::arrows)
            setTexts(choices, layer.labels, samples);
    }
}

void tryChart(Choices& choices) {
    Chart chart;
    const int samples = choices.below(30), ways = choices.next(), groups = choices.below(11);
    chart.kind = static_cast<ChartKind>(choices.below(3));
    chart.isEqualScale = ways % 2 == 1;
    chart.across.isLogarithmic = ways / 2 % 4 == 1;
    const ChartView view = viewOf(chart, {.size = {200 + 4 * choices.next(), 200 + 4 * choices.next()},
                                          .fontHeight = 8 + choices.below(93),
                                          .labels = ways / 32 % 2 == 1,
                                          .ellipses = ways / 64 % 2 == 1});
    for (ChartText* const text : {&chart.title, &chart.across.title, &chart.up.title, &chart.groups.title})
        text->set("%s", choices.line().c_str());
    chart.groups.count = groups;
    setTexts(choices, chart.groups.names, groups);
    require(chart.groups.groupOf.allocate(samples) == success);
    for (std::int32_t& group : chart.groups.groupOf) group = choices.below(groups + 1) - 1;
    if (chart.kind == ChartKind::plane) setLayers(choices, chart, samples);
    if (chart.kind == ChartKind::tree) setTree(choices, chart.tree);
    if (chart.kind == ChartKind::scatterMatrix) {
        const int columns = 1 + choices.below(12);
        setTexts(choices, chart.names, columns);
        require(chart.values.allocate(samples, columns) == success);
        setNumbers(choices, {chart.values.data(), static_cast<std::size_t>(chart.values.size())});
    }
    RecordingCanvas canvas;
    ChartShortage shortage;
    require(drawChart(canvas, chart, view, shortage) == success);
    requireNone(canvas.outside(view.size));
    require(shortage.labels <= shortage.ofLabels);
}

} // namespace

// Any description of a graph or chart is drawn inside its picture.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Choices choices = {bytes, size};
    choices.next() % 2 == 0 ? tryGraph(choices) : tryChart(choices);
    return 0;
}
