#include <cfloat>
#include <cmath>

#include "report/graph_axes.h"
#include "tests/support/graph_samples.h"
#include "tests/support/recording_canvas.h"

namespace {

GraphLayout layOut(std::uint32_t kind, std::initializer_list<std::initializer_list<double>> rows, int width,
                   int height) {
    GraphSpec spec;
    describeGraph(spec, kind, std::ssize(*rows.begin()), std::ssize(rows));
    double* value = spec.values.data();
    for (const auto& row : rows) value = std::copy(row.begin(), row.end(), value);
    Graph graph;
    EXPECT_EQ(initGraph(spec, graph), GraphCode::built);
    GraphView view;
    view.width = width;
    view.height = height;
    return layOutGraph(graph, view);
}

} // namespace

TEST(GraphLayout, AxesEndAtMultiplesOfTheStep) {
    const struct {
        double minimum, maximum, step, bottom, top;
        const char* last; // number at the top
    } cases[] = {
        {0, 100, 10, 0, 100, "100"},      {-3, 4, 1, -3, 4, "4"},
        {-0.5, 12, 2, -2, 12, "12"},      {0, 24, 2.5, 0, 25, "25.0"},
        {0, 4.2, 0.5, 0, 4.5, "4.5"},     {-26, 0, 5, -30, 0, "0"},
        {-1, 100, 20, -20, 100, "100"},   {0, 2.2, 0.25, 0, 2.25, "2.25"},
        {0, 3e-7, 5e-8, 0, 3e-7, "3e-7"}, {-1e6, 1.1e6, 2.5e5, -1e6, 1.25e6, "1.25e6"},
        {0, 1, 0.1, 0, 1, "1.0"},
    };
    for (const auto& test : cases) {
        Axis axis;
        setAxisRange(axis, test.minimum, test.maximum);
        EXPECT_NEAR(axis.step / test.step, 1.0, 1e-12) << test.maximum;
        EXPECT_NEAR(axis.bottom, test.bottom, 1e-9 * axis.step) << test.maximum;
        EXPECT_NEAR(axis.top, test.top, 1e-9 * axis.step) << test.maximum;
        char text[tickTextSize];
        writeTickNumber(axis, tickRange(axis).last, text);
        EXPECT_STREQ(text, test.last);
    }
    // A range of one step has two ticks.
    const TickRange ticks = tickRange({0, 0.3, 0.0, 0.3, 1.0});
    EXPECT_EQ(ticks.first, 0);
    EXPECT_EQ(ticks.last, 1);
}

TEST(GraphLayout, AnyRangeHasAnAxis) {
    const double ends[] = {0.0, 5e-324, 1e-310, 1e-299, 1.0, 1e308, DBL_MAX};
    for (const double below : ends) {
        for (const double above : ends) {
            SCOPED_TRACE(testing::Message() << -below << " to " << above);
            const GraphLayout layout = layOut(4, {{-below, above}, {above, -below}}, 480, 480);
            for (const Axis& axis : {layout.horizontal, layout.vertical}) {
                EXPECT_TRUE(std::isnormal(axis.step) && std::isfinite(axis.scale) && axis.scale > 0);
                EXPECT_TRUE(axis.bottom <= 0 && axis.top >= 0 && axis.top <= DBL_MAX &&
                            axis.bottom >= -DBL_MAX);
                const TickRange ticks = tickRange(axis);
                EXPECT_LE(ticks.last - ticks.first, 18); // twice the largest double
            }
            EXPECT_TRUE(layout.origin.x >= 48 && layout.origin.x <= 432);
            EXPECT_LE(layout.origin.x + pixelOffset(above, layout.horizontal), 432);
            EXPECT_GE(layout.origin.y - pixelOffset(above, layout.vertical), 48);
        }
    }
}

TEST(GraphLayout, MarginsPensAndBandFollowFromSizeAndKind) {
    const struct {
        std::uint32_t kind;
        int width, height, left, top, right, bottom, tick, pen, font;
    } cases[] = {{4, 200, 200, 20, 20, 180, 180, 4, 1, 12},
                 {7, 479, 700, 47, 90, 432, 630, 9, 1, 12},
                 {3, 480, 480, 48, 68, 432, 432, 9, 2, 14},
                 {1, 1000, 959, 100, 95, 900, 864, 19, 2, 14},
                 {6, 1205, 960, 120, 116, 1085, 864, 19, 3, 16}};
    for (const auto& test : cases) {
        const GraphLayout layout = test.kind == 3 ? layOut(3, {{0, 0, 0}}, test.width, test.height)
                                                  : layOut(test.kind, {{0, 0}}, test.width, test.height);
        const int got[] = {layout.plot.left,  layout.plot.top, layout.plot.right, layout.plot.bottom,
                           layout.tickLength, layout.penWidth, layout.fontHeight};
        const int expected[] = {test.left, test.top, test.right, test.bottom, test.tick, test.pen, test.font};
        EXPECT_TRUE(std::equal(std::begin(got), std::end(got), expected)) << test.width;
        EXPECT_EQ(layout.secondVertical.series, test.kind == 3 ? 2 : -1);
    }
}

TEST(GraphLayout, ZeroLinesOfTwoVerticalAxesMeet) {
    // A quarter and three quarters of 384 pixels below zero: 1.5 ranges in all, 64 pixels a unit.
    for (const double sign : {1.0, -1.0}) {
        const GraphLayout layout = layOut(2, {{0, -sign, sign}, {1, 3 * sign, -3 * sign}}, 480, 480);
        EXPECT_DOUBLE_EQ(layout.vertical.scale, 64);
        EXPECT_DOUBLE_EQ(layout.secondVertical.scale, 64);
        EXPECT_EQ(layout.origin.y, 240);
    }
    // Shares of 0.5 and 6/11 are near enough.
    const GraphLayout near = layOut(2, {{0, -1, -5}, {1, 1, 6}}, 480, 480);
    EXPECT_DOUBLE_EQ(near.vertical.scale, 192);
    EXPECT_EQ(near.origin.y, 240);
}
