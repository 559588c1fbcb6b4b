#include <cmath>
#include <functional>

#include "report/charts/chart_painter.h"
#include "report/charts/ellipse.h"
#include "report/charts/label_placement.h"
#include "report/charts/tree_layout.h"
#include "tests/support/graph_samples.h"
#include "tests/support/recording_canvas.h"

namespace {

bool areApart(const Box& a, const Box& b) {
    return a.right <= b.left || b.right <= a.left || a.bottom <= b.top || b.bottom <= a.top;
}

void fill(Block<double>& values, const std::function<double(double)>& value) {
    for (Index i = 0; i < values.size(); ++i) values[i] = value(static_cast<double>(i));
}

// A cloud that is dense enough for labels to meet.
ChartLayer& addCloud(Chart& chart, Index count) {
    ChartLayer& layer = *chart.addLayer(LayerKind::points, count);
    fill(layer.x, [](double i) { return 5.0 * std::sin(i * 1.7) + std::cos(i * 3.1); });
    fill(layer.y, [](double i) { return 100.0 * std::cos(i * 2.3); });
    EXPECT_EQ(layer.labels.allocate(count), success);
    setNumbered(layer.labels, "sample ");
    layer.isOfSamples = true;
    return layer;
}

void setGroups(Chart& chart, Index samples, Index count) {
    ASSERT_EQ(chart.groups.names.allocate(count) | chart.groups.groupOf.allocate(samples), success);
    for (Index s = 0; s < samples; ++s) chart.groups.groupOf[s] = static_cast<std::int32_t>(s % count);
    setNumbered(chart.groups.names, "group ");
    chart.groups.count = count;
}

RecordingCanvas draw(const Chart& chart, const ChartView& view, ChartShortage& shortage) {
    RecordingCanvas canvas;
    EXPECT_EQ(drawChart(canvas, chart, view, shortage), success);
    EXPECT_EQ(canvas.outside(view.size), "");
    return canvas;
}

RecordingCanvas draw(const Chart& chart, const ChartView& view = {}) {
    ChartShortage shortage;
    return draw(chart, view, shortage);
}

// Items 0 to 3: {1, 3} at 1, {0, 2} at 2, all at 5.
void describeTree(ChartTree& tree, Index clusters) {
    setTexts(tree.labels, {"a", "b", "c", "d"});
    ASSERT_EQ(tree.merges.allocate(3), success);
    tree.merges[0] = {1, 3, 1.0};
    tree.merges[1] = {0, 2, 2.0};
    tree.merges[2] = {2, 3, 5.0};
    tree.clusters = clusters;
}

} // namespace

TEST(Chart, HasAMarkForEachSampleThatIsThere) {
    Chart chart;
    ChartLayer& cloud = addCloud(chart, 100);
    cloud.y[7] = NAN;
    cloud.x[8] = INFINITY;
    EXPECT_EQ(draw(chart).circles.size(), 98U);
    // In ten groups by shape and colour: circles are those of the first, samples 0, 10, ..., and its key.
    setGroups(chart, 100, 10);
    const RecordingCanvas canvas = draw(chart, {.ellipses = true});
    EXPECT_EQ(canvas.circles.size(), 11U);
    for (int g = 1; g <= 10; ++g) EXPECT_NE(canvas.find("group " + std::to_string(g)), nullptr);
}

TEST(Chart, KeepsLabelsApartAndCountsWhatIsLeftOut) {
    for (const Index count : {20, 400}) {
        Chart chart;
        addCloud(chart, count);
        ChartShortage shortage;
        const RecordingCanvas canvas = draw(chart, {.labels = true}, shortage);
        std::vector<Box> boxes;
        for (const auto& text : canvas.texts) {
            if (text.text.rfind("sample", 0) == 0) boxes.push_back(text.box);
        }
        EXPECT_EQ(static_cast<Index>(boxes.size()) + shortage.labels, count);
        EXPECT_EQ(shortage.labels > 0, count == 400);
        for (std::size_t a = 0; a < boxes.size(); ++a) {
            for (std::size_t b = 0; b < a; ++b) ASSERT_TRUE(areApart(boxes[a], boxes[b])) << a << ' ' << b;
            for (const auto& [at, color] : canvas.circles)
                ASSERT_TRUE(areApart(boxes[a], {at.x - 2, at.y - 2, at.x + 3, at.y + 3})) << a;
        }
    }
}

// Whatever the values, sizes and letters.
TEST(Chart, StaysInsideThePicture) {
    const std::pair<const char*, std::function<double(double)>> values[] = {
        {"plain", [](double i) { return i - 3.0; }},  {"constant", [](double) { return 7.0; }},
        {"zero", [](double) { return 0.0; }},         {"tiny", [](double i) { return 1e-300 * i; }},
        {"huge", [](double i) { return 1e299 * i; }}, {"near", [](double i) { return 1e12 + 1e-3 * i; }},
        {"not a number", [](double) { return NAN; }}, {"infinite", [](double i) { return 1.0 / (i - 2.0); }},
    };
    for (const auto& [name, value] : values) {
        for (const int font : {8, 16, 60}) {
            for (const Extent size : {Extent{800, 600}, Extent{200, 200}, Extent{200, 1000}}) {
                SCOPED_TRACE(testing::Message()
                             << name << ' ' << font << ' ' << size.width << 'x' << size.height);
                Chart chart;
                for (const LayerKind kind : {LayerKind::band, LayerKind::line, LayerKind::steps,
                                             LayerKind::arrows, LayerKind::points, LayerKind::intervals}) {
                    ChartLayer& layer = *chart.addLayer(kind, 9);
                    ASSERT_EQ(layer.lower.allocate(9) | layer.upper.allocate(9), success);
                    for (Block<double>* block : {&layer.x, &layer.y, &layer.lower, &layer.upper})
                        fill(*block, value);
                    layer.name.set("a rather long name of a layer");
                }
                chart.title.set("a title that has a great many letters in it");
                chart.across.title.set("%s", chart.title.text);
                chart.up.title.set("%s", chart.title.text);
                draw(chart, {.size = size, .fontHeight = font, .labels = true});
                chart.across.isLogarithmic = chart.isEqualScale = true;
                draw(chart, {.size = size, .fontHeight = font});

                Chart other;
                describeTree(other.tree, 2);
                other.kind = ChartKind::tree;
                for (TreeMerge& merge : other.tree.merges) merge.level = value(merge.level);
                draw(other, {.size = size, .fontHeight = font});

                Chart matrix;
                matrix.kind = ChartKind::scatterMatrix;
                setTexts(matrix.names, {"first", "second", "third"});
                ASSERT_EQ(matrix.values.allocate(9, 3), success);
                for (Index i = 0; i < matrix.values.size(); ++i)
                    matrix.values.data()[i] = value(static_cast<double>(i % 9));
                draw(matrix, {.size = size, .fontHeight = font});
            }
        }
    }
}

TEST(Chart, HasRoundNumbersAtItsAxes) {
    const struct {
        double least, most;
        bool isLogarithmic;
        int room;
        std::vector<const char*> texts;
    } cases[] = {
        {0.0, 1.0, false, 6, {"0", "0.2", "0.4", "0.6", "0.8", "1.0"}},
        {1785.0, 1975.0, false, 5, {"1800", "1850", "1900", "1950"}},
        {-3.1, 2.9, false, 4, {"-2", "0", "2"}},
        {0.3, 30.0, true, 10, {"0.5", "1", "2", "5", "10", "20"}},
        {0.001, 1e5, true, 10, {"0.001", "0.01", "0.1", "1", "10", "100", "1000", "10000", "100000"}},
    };
    for (const auto& each : cases) {
        ChartTicks ticks;
        findTicks({.least = each.least, .most = each.most, .isLogarithmic = each.isLogarithmic}, each.room,
                  ticks);
        ASSERT_EQ(ticks.count, static_cast<int>(each.texts.size())) << each.least;
        for (int k = 0; k < ticks.count; ++k) {
            EXPECT_STREQ(ticks.ticks[k].text, each.texts[static_cast<std::size_t>(k)]);
            EXPECT_NEAR(ticks.ticks[k].value, std::atof(ticks.ticks[k].text), 1e-9 * each.most);
        }
    }
}

// Four points with variances 2/3 and 8/3 (divisor 3) along the axes, and some that are not in the group: the
// half-axes are the roots of these times -2 ln 0.05.
TEST(Chart, DrawsTheEllipseOfAGroup) {
    const double x[] = {4.0, 2.0, 3.0, 3.0, 90.0}, y[] = {-1.0, -1.0, 1.0, -3.0, 80.0};
    const char isIn[] = {1, 1, 1, 1, 0}, areTwo[] = {1, 1, 0, 0, 0}, areOnALine[] = {1, 1, 0, 0, 0};
    ChartEllipse ellipse;
    ASSERT_TRUE(findEllipse(x, y, isIn, 5, ellipse));
    double across = 0.0, up = 0.0;
    for (int quarter = 0; quarter < 4; ++quarter) {
        double px = 0.0, py = 0.0;
        ellipse.point(quarter * std::acos(0.0), px, py);
        across = std::fmax(across, px - 3.0);
        up = std::fmax(up, py + 1.0);
    }
    EXPECT_NEAR(across, std::sqrt(-2.0 * std::log(0.05) * 2.0 / 3.0), 1e-12);
    EXPECT_NEAR(up, 2.0 * across, 1e-12);
    EXPECT_FALSE(findEllipse(x, y, areTwo, 5, ellipse));
    EXPECT_FALSE(findEllipse(x, y, areOnALine, 2, ellipse));
}

TEST(Chart, DrawsMergesOfATreeAtTheirLevels) {
    Chart chart;
    chart.kind = ChartKind::tree;
    describeTree(chart.tree, 2);
    TreeLayout layout;
    ASSERT_EQ(layOutTree(chart.tree, layout), success);
    // a and c, then b and d; the last merge is in the middle, above the cut between 2 and 5.
    const Index order[] = {0, 2, 1, 3}, clusters[] = {0, 1, 0, 1, 1, 0, -1};
    const double places[] = {0.0, 2.0, 1.0, 3.0, 2.5, 0.5, 1.5};
    for (Index k = 0; k < 4; ++k) EXPECT_EQ(layout.order[k], order[k]) << k;
    for (Index k = 0; k < 7; ++k) {
        EXPECT_EQ(layout.nodes[k].place, places[k]) << k;
        EXPECT_EQ(layout.nodes[k].cluster, clusters[k]) << k;
    }
    EXPECT_TRUE(layout.hasCutLevel);
    EXPECT_EQ(layout.cutLevel, 3.5);

    // The greatest x of each bracket is in proportion to its level, the least is that of level 0.
    const RecordingCanvas canvas = draw(chart);
    std::vector<std::pair<int, int>> brackets;
    for (const auto& line : canvas.lines) {
        if (line.points.size() == 4) brackets.emplace_back(line.points[0].x, line.points[1].x);
    }
    ASSERT_EQ(brackets.size(), 2U);
    const int zero = brackets[0].first, one = brackets[0].second - zero;
    EXPECT_NEAR(brackets[1].second - zero, 2 * one, 2);
    int farthest = 0;
    for (const auto& line : canvas.lines) {
        if (line.pen.width > 1) farthest = std::max(farthest, line.points.back().x - zero);
    }
    EXPECT_NEAR(farthest, 5 * one, 4);
    const auto *first = canvas.find("a"), *second = canvas.find("c");
    ASSERT_TRUE(first != nullptr && second != nullptr);
    EXPECT_LT(first->box.bottom, second->box.top + 1);
}
