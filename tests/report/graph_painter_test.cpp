#include <cfloat>
#include <cmath>

#include "report/graph_axes.h"
#include "tests/support/graph_samples.h"
#include "tests/support/recording_canvas.h"

namespace {

// At 480 x 500: 96 and 95 pixels a unit around (240, 260), pens 2 wide, the plot from (48, 70) to (432, 450).
constexpr GraphView plainView = {480, 500};

void describeSquare(GraphSpec& spec, std::uint32_t kind, std::initializer_list<double> vectors = {}) {
    describeGraph(spec, kind, 2, 3, vectors.size() / 2);
    const double values[] = {-2, -2, 2, 2, 1, -0.5};
    std::copy(std::begin(values), std::end(values), spec.values.data());
    std::copy(vectors.begin(), vectors.end(), spec.vectorValues.data());
}

bool overlap(const Box& a, const Box& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

bool isInside(Point point, const GraphView& view) {
    return point.x >= 0 && point.y >= 0 && point.x <= view.width && point.y <= view.height;
}

std::vector<Point> diamond(int x, int y, int s) {
    return {{x, y - s}, {x - s, y}, {x, y + s}, {x + s, y}, {x, y - s}};
}

} // namespace

TEST(GraphScatter, MarksNumbersAndHighlights) {
    GraphSpec spec;
    describeSquare(spec, 6);
    spec.numbering = 1;
    GraphView view = plainView;
    view.highlighted = 3;
    const RecordingCanvas canvas = paint(spec, view);
    EXPECT_TRUE(canvas.hasLine(diamond(48, 450, 2), {black, 2}));
    EXPECT_TRUE(canvas.hasLine(diamond(432, 70, 2), {black, 2}));
    EXPECT_TRUE(canvas.hasLine(diamond(336, 307, 2), {highlightRed, 4}));
    EXPECT_FALSE(canvas.hasLine(diamond(336, 307, 2), {black, 2}));
    EXPECT_EQ(canvas.texts.back().text, "3");
    EXPECT_EQ(canvas.texts.back().style, (TextStyle{14, highlightRed, true, true}));
    EXPECT_EQ(canvas.texts.back().box.left, 340);
    EXPECT_EQ(canvas.texts.back().box.top, 311);
    const auto& other = canvas.texts[canvas.texts.size() - 3];
    EXPECT_EQ(other.text, "1");
    EXPECT_EQ(other.style, (TextStyle{14, numberBlue}));
    EXPECT_EQ(other.box.left, 52);

    spec.numbering = 0;
    EXPECT_EQ(paint(spec, view).texts.size(), canvas.texts.size() - 3);
}

TEST(GraphScatter, LinesOfVectorsCrossThePlot) {
    GraphSpec spec;
    describeSquare(spec, 7, {0.5, 0, 0, 0, -1e308, 1.5e308, NAN, 1});
    const RecordingCanvas canvas = paint(spec, plainView);
    const Pen pen = {vectorRed, 2};
    // Arms of trunc(sqrt(32 * 2)) = 8 pixels, 0.5 radians from the line: 7.02 back and 3.84 aside.
    EXPECT_TRUE(canvas.hasLine({{48, 260}, {432, 260}}, pen));
    EXPECT_TRUE(canvas.hasLine({{425, 256}, {432, 260}, {425, 264}}, pen));
    // 96 to the left while 142.5 up, so 128 while 190; the names of the zero vector and the one that is not
    // finite are not drawn.
    EXPECT_TRUE(canvas.hasLine({{368, 450}, {112, 70}}, pen));
    EXPECT_EQ(std::count_if(canvas.lines.begin(), canvas.lines.end(),
                            [&](const auto& line) { return line.pen == pen; }),
              4);
    EXPECT_TRUE(canvas.find("vector 1") && canvas.find("vector 3") && !canvas.find("vector 2") &&
                !canvas.find("vector 4"));
    EXPECT_LE(canvas.find("vector 1")->box.right, 480);
    for (const std::uint32_t kind : {4U, 6U}) {
        spec.kind = GraphKind{kind};
        EXPECT_EQ(paint(spec, plainView).find("vector 1"), nullptr);
    }
}

TEST(GraphScatter, SizedVectorsEndWhereTheyEnd) {
    GraphSpec spec;
    describeSquare(spec, 8, {0.505, -1, 4, 0});
    spec.vectorOption = 1;
    const RecordingCanvas canvas = paint(spec, plainView);
    // trunc(96 * 0.505) = 48; the second one ends outside the window, its name inside.
    EXPECT_TRUE(canvas.hasLine({{240, 260}, {288, 355}}, {vectorRed, 2}));
    EXPECT_TRUE(canvas.hasLine({{240, 260}, {624, 260}}, {vectorRed, 2}));
    EXPECT_TRUE(canvas.hasLine({{617, 256}, {624, 260}, {617, 264}}, {vectorRed, 2}));
    EXPECT_LE(canvas.find("vector 2")->box.right, 480);
    EXPECT_EQ(std::count_if(canvas.lines.begin(), canvas.lines.end(),
                            [](const auto& line) { return line.pen.color == vectorRed; }),
              4);
}

TEST(GraphLines, BarsStandOnTheZeroLine) {
    GraphSpec spec;
    describeGraph(spec, 0, 1, 4);
    const double values[] = {3, -1, NAN, 1};
    std::copy(std::begin(values), std::end(values), spec.values.data());
    GraphView view = {480, 480};
    view.highlighted = 4;
    const RecordingCanvas canvas = paint(spec, view);
    // Slots of 96 pixels, bars of trunc(67.2); -1..3 in 384 pixels.
    ASSERT_EQ(canvas.boxes.size(), 3U);
    const int expected[3][4] = {{62, 48, 129, 336}, {158, 336, 225, 432}, {350, 240, 417, 336}};
    for (std::size_t k = 0; k < 3; ++k) {
        const auto& [box, color] = canvas.boxes[k];
        const int got[] = {box.left, box.top, box.right, box.bottom};
        EXPECT_TRUE(std::equal(got, got + 4, expected[k])) << k;
        EXPECT_EQ(color == highlightRed, k == 2);
    }
    EXPECT_EQ(canvas.find("item 1")->box.top, 440);
    EXPECT_EQ(canvas.find("item 2")->box.top, 454);
}

TEST(GraphLines, JoinItemsInOrderOnTheirAxes) {
    GraphSpec spec;
    describeGraph(spec, 2, 3, 4);
    const double values[] = {0, 0, 4, 1, 2, INFINITY, 2, 4, 1, 4, 1, 2};
    std::copy(std::begin(values), std::end(values), spec.values.data());
    const RecordingCanvas canvas = paint(spec, {480, 480});
    EXPECT_TRUE(canvas.hasLine({{48, 432}, {144, 240}}, {lineColors[0], 2}));
    EXPECT_TRUE(canvas.hasLine({{240, 48}, {432, 336}}, {lineColors[0], 2}));
    // Broken where it is not finite.
    EXPECT_TRUE(canvas.hasLine({{240, 336}, {432, 240}}, {lineColors[1], 2}));
    EXPECT_FALSE(canvas.hasLine({{48, 48}, {240, 336}}, {lineColors[1], 2}));
    EXPECT_EQ(canvas.find("series 2")->style.color, lineColors[0]);
    EXPECT_EQ(canvas.find("series 3")->style.color, lineColors[1]);
}

TEST(GraphPainter, TextsStayInTheWindowAndApart) {
    for (std::uint32_t kind = 0; kind <= 8; ++kind) {
        GraphSpec spec;
        describeSample(spec, kind);
        for (const GraphView& view :
             {GraphView{200, 200}, GraphView{480, 480}, GraphView{1000, 700}, GraphView{300, 900}}) {
            SCOPED_TRACE(testing::Message()
                         << "kind " << kind << " at " << view.width << " x " << view.height);
            const RecordingCanvas canvas = paint(spec, view);
            for (const auto& a : canvas.texts) {
                if (a.style.color == numberBlue) continue; // items go where they are
                EXPECT_TRUE(isInside({a.box.left, a.box.top}, view) &&
                            isInside({a.box.right, a.box.bottom}, view))
                    << a.text;
                if (view.width < 480) continue;
                for (const auto& b : canvas.texts) {
                    EXPECT_FALSE(&a < &b && b.style.color != numberBlue && overlap(a.box, b.box))
                        << a.text << ", " << b.text;
                }
            }
        }
    }
}

TEST(GraphPainter, DrawsWhatCanBeDrawnOfAnything) {
    const double wild[] = {NAN, INFINITY, -INFINITY, DBL_MAX, -DBL_MAX, 5e-324, 0.0, -1e-300, 1.0, 1e300};
    std::size_t turn = 0;
    for (std::uint32_t kind = 0; kind <= 8; ++kind) {
        for (const int size : {0, 1, 9, 40, 200, 1000}) {
            GraphSpec spec;
            describeSample(spec, kind);
            spec.vectorOption = turn % 2;
            for (double& value : spec.values) value = wild[turn++ * 7 % 11 % std::size(wild)];
            for (double& value : spec.vectorValues) value = wild[turn++ * 7 % 11 % std::size(wild)];
            GraphView view = {size, size};
            view.highlighted = 1000;
            const RecordingCanvas canvas = paint(spec, view);
            EXPECT_EQ(canvas.lines.empty(), size < (kind == 3 || kind >= 5 ? 40 : 1));
            for (const auto& line : canvas.lines) {
                if (spec.vectorOption != 0 && line.pen.color == vectorRed) continue; // ends where it ends
                for (const Point& point : line.points)
                    EXPECT_TRUE(size < 200 || isInside(point, view))
                        << kind << " " << size << ": " << point.x << "," << point.y;
            }
        }
    }
    RecordingCanvas canvas;
    drawGraph(canvas, Graph(), {});
    EXPECT_TRUE(canvas.lines.empty());
}
