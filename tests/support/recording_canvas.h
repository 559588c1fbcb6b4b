#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "report/graph_painter.h"

// Keeps what is drawn. Every character is half as wide as its line is high.
class RecordingCanvas : public Canvas {
public:
    struct Line {
        std::vector<Point> points;
        Pen pen;
        bool operator==(const Line&) const = default;
    };
    struct Text {
        std::string text;
        Box box;
        TextStyle style;
    };
    std::vector<Line> lines;
    std::vector<std::pair<Box, Color>> boxes;
    std::vector<Text> texts;
    std::vector<Line> polygons;
    std::vector<std::pair<Point, Color>> circles;

    void drawLine(std::span<const Point> points, const Pen& pen) override {
        lines.push_back({{points.begin(), points.end()}, pen});
    }
    void fillBox(const Box& box, Color color) override { boxes.emplace_back(box, color); }
    void fillPolygon(std::span<const Point> corners, Color color) override {
        polygons.push_back({{corners.begin(), corners.end()}, {color}});
    }
    void fillCircle(Point centre, int, Color color) override { circles.emplace_back(centre, color); }
    void drawUpright(Point at, const char* text, const TextStyle& style) override {
        const Extent extent = measure(text, style);
        texts.push_back({text, {at.x, at.y, at.x + extent.height, at.y + extent.width}, style});
    }
    void drawText(Point at, const char* text, const TextStyle& style) override {
        const Extent extent = measure(text, style);
        texts.push_back({text, {at.x, at.y, at.x + extent.width, at.y + extent.height}, style});
    }
    Extent measure(const char* text, const TextStyle& style) override {
        return {static_cast<int>(std::strlen(text)) * style.height / 2, style.height};
    }

    bool hasLine(const std::vector<Point>& points, const Pen& pen) const {
        return std::count(lines.begin(), lines.end(), Line{points, pen}) == 1;
    }
    // What is not inside a picture of this size, texts by their whole box; empty when all is.
    std::string outside(Extent size) const {
        std::string found;
        const auto check = [&](const std::string& what, Point at) {
            if (at.x >= 0 && at.y >= 0 && at.x <= size.width && at.y <= size.height) return;
            found += what + " at " + std::to_string(at.x) + "," + std::to_string(at.y) + "\n";
        };
        for (const auto* all : {&lines, &polygons})
            for (const Line& line : *all)
                for (const Point at : line.points) check("line", at);
        for (const auto& [at, color] : circles) check("circle", at);
        for (const auto& [box, color] : boxes)
            check("box", {box.left, box.top}), check("box", {box.right, box.bottom});
        for (const auto& [text, box, style] : texts)
            check(text, {box.left, box.top}), check(text, {box.right, box.bottom});
        return found;
    }
    const Text* find(const std::string& text) const {
        for (const Text& each : texts) {
            if (each.text == text) return &each;
        }
        return nullptr;
    }
};

inline RecordingCanvas paint(const GraphSpec& spec, const GraphView& view) {
    Graph graph;
    EXPECT_EQ(initGraph(spec, graph), GraphCode::built);
    RecordingCanvas canvas;
    drawGraph(canvas, graph, view);
    return canvas;
}
