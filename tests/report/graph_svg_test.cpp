#include <cstdlib>
#include <fstream>

#include "report/svg_canvas.h"
#include "tests/support/graph_samples.h"
#include "tests/support/recording_canvas.h"
#include "tests/support/whole_text.h"

namespace {

std::size_t count(const std::string& text, const std::string& word) {
    std::size_t found = 0;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) ++found;
    return found;
}

} // namespace

TEST(SvgCanvas, EscapesTextsAndKeepsTheirStyle) {
    TextBuffer document;
    ASSERT_EQ(document.allocate(64, TextBuffer::Growth::growing), success);
    SvgCanvas canvas(document, {200, 100});
    // Bytes of Windows-1252: the euro sign, an e with an accent, one that means nothing; a control character.
    canvas.drawText({3, 10}, "a<b>&\"\x80\xE9\x81\x01", {14, {255, 0, 16}, true, true});
    canvas.finish();
    const std::string text = wholeText(document);
    EXPECT_EQ(count(text, ">a&#60;b&#62;&#38;&#34;&#8364;&#233;&#65533;&#65533;</text>"), 1U) << text;
    EXPECT_EQ(count(text, "fill=\"#ff0010\" font-style=\"italic\" text-decoration=\"underline\""), 1U)
        << text;
    // Ten digits of 0.556 of a size of 14 / 1.117.
    EXPECT_EQ(canvas.measure("0123456789", {14}).width, 70);
}

// With a folder in OMBRIVANTEL_GRAPH_SAMPLES the documents are written there as kind-0.svg and so on.
TEST(SvgCanvas, WritesAllThatIsDrawn) {
    const char* const folder = std::getenv("OMBRIVANTEL_GRAPH_SAMPLES");
    for (std::uint32_t kind = 0; kind <= 8; ++kind) {
        GraphSpec spec;
        describeSample(spec, kind);
        Graph graph;
        ASSERT_EQ(initGraph(spec, graph), GraphCode::built);
        TextBuffer document;
        ASSERT_EQ(document.allocate(64, TextBuffer::Growth::growing), success);
        SvgCanvas canvas(document, {480, 480});
        GraphView view;
        view.highlighted = 13;
        drawGraph(canvas, graph, view);
        canvas.finish();
        EXPECT_EQ(count(wholeText(document), "<polyline points="), paint(spec, view).lines.size());
        if (folder == nullptr) continue;
        std::ofstream file(std::string(folder) + "/kind-" + std::to_string(kind) + ".svg", std::ios::binary);
        file << wholeText(document) << std::flush;
        EXPECT_TRUE(file.good());
    }
}
