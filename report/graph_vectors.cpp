#include "report/graph_vectors.h"

#include <algorithm>
#include <cmath>

#include "report/graph_axes.h"

namespace {

constexpr double headAngle = 0.5;     // between an arm and the line, in radians
constexpr double farUnits = 1e6;      // times a direction: beyond any plot, exact in pixels
constexpr double longestPixels = 1e8; // of a vector: within the co-ordinates that every canvas takes
constexpr int nameGap = 4;
constexpr int nameRows = 8; // tried above and below the end of the vector
constexpr Index mostKept = 64;

struct Segment {
    Point from;
    Point to;
};

Point rounded(const double (&at)[2]) {
    return {static_cast<int>(std::lround(at[0])), static_cast<int>(std::lround(at[1]))};
}

bool overlap(const Box& a, const Box& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// Cuts a segment to a box, its edges included; false when they do not meet. Each edge narrows the stretch
// that is inside (Liang and Barsky, 1984).
bool clipSegment(const Box& box, double (&from)[2], double (&to)[2]) {
    const double low[2] = {static_cast<double>(box.left), static_cast<double>(box.top)};
    const double high[2] = {static_cast<double>(box.right), static_cast<double>(box.bottom)};
    double begin = 0.0, end = 1.0;
    for (int k = 0; k < 2; ++k) {
        const double along = to[k] - from[k];
        if (along == 0.0) {
            if (from[k] < low[k] || from[k] > high[k]) return false;
            continue;
        }
        const double enter = ((along > 0 ? low[k] : high[k]) - from[k]) / along;
        const double leave = ((along > 0 ? high[k] : low[k]) - from[k]) / along;
        begin = std::max(begin, enter);
        end = std::min(end, leave);
    }
    if (begin > end) return false;
    for (int k = 0; k < 2; ++k) {
        const double along = to[k] - from[k];
        if (end < 1.0) to[k] = from[k] + end * along;
        if (begin > 0.0) from[k] += begin * along;
    }
    return true;
}

// The same in pixels; a segment that does not meet the box stays as it is.
bool clip(const Box& box, Segment& segment) {
    double from[2] = {static_cast<double>(segment.from.x), static_cast<double>(segment.from.y)};
    double to[2] = {static_cast<double>(segment.to.x), static_cast<double>(segment.to.y)};
    if (!clipSegment(box, from, to)) return false;
    segment = {rounded(from), rounded(to)};
    return true;
}

bool crosses(const Box& box, Segment segment) {
    return clip(box, segment);
}

class VectorPainter {
public:
    VectorPainter(Canvas& canvas, const Graph& graph, const GraphLayout& layout)
        : canvas_(canvas), spec_(graph.spec),
          layout_(layout), pen_{vectorRed, layout.penWidth}, style_{layout.fontHeight, vectorRed} {}

    void drawVectorLines() {
        for (std::int32_t v = 0; v < spec_.vectorCount; ++v) {
            Segment segment;
            if (!place(v, segment)) continue;
            drawSegment(canvas_, segment.from, segment.to, pen_);
            drawHead(segment);
            if (segmentCount_ < mostKept) segments_[segmentCount_++] = segment;
        }
    }

    void drawNames() {
        const Box window = {0, 0, layout_.size.width, layout_.size.height};
        for (std::int32_t v = 0; v < spec_.vectorCount; ++v) {
            Segment segment;
            if (!place(v, segment)) continue;
            clip(window, segment);
            drawName(spec_.vectorNames[v], segment.to);
        }
    }

private:
    // Pixels that the vector goes to the right and down; false for one that is not drawn.
    bool direction(std::int32_t vector, double (&pixels)[2]) const {
        const Index series = spec_.seriesCount;
        const double* values = spec_.vectorValues.data() + Index{vector} * series;
        const double across = values[layout_.horizontal.series];
        const double up = values[layout_.vertical.series];
        if (!std::isfinite(across) || !std::isfinite(up)) return false;
        pixels[0] = across * layout_.horizontal.scale;
        pixels[1] = -up * layout_.vertical.scale;
        if (!(std::max(std::abs(pixels[0]), std::abs(pixels[1])) <= longestPixels)) {
            // Far out of any plot: shortened, in the same direction.
            const double larger = std::max(std::abs(across), std::abs(up));
            pixels[0] = across / larger * layout_.horizontal.scale;
            pixels[1] = -up / larger * layout_.vertical.scale;
            const double shorten = longestPixels / std::max(std::abs(pixels[0]), std::abs(pixels[1]));
            for (double& each : pixels) each *= shorten;
        }
        return pixels[0] != 0.0 || pixels[1] != 0.0;
    }

    bool place(std::int32_t vector, Segment& segment) const {
        double along[2];
        if (!direction(vector, along)) return false;
        const Point origin = layout_.origin;
        if (spec_.vectorOption != 0) {
            segment = {origin,
                       {origin.x + static_cast<int>(along[0]), origin.y + static_cast<int>(along[1])}};
            return true;
        }
        const double start[2] = {static_cast<double>(origin.x), static_cast<double>(origin.y)};
        const double longer = std::max(std::abs(along[0]), std::abs(along[1]));
        double from[2], to[2];
        for (int k = 0; k < 2; ++k) {
            const double far = along[k] / longer * farUnits;
            from[k] = start[k] - far;
            to[k] = start[k] + far;
        }
        if (!clipSegment(layout_.plot, from, to)) return false;
        segment = {rounded(from), rounded(to)};
        return true;
    }

    void drawHead(const Segment& segment) {
        const auto [fromX, fromY] = segment.from;
        const auto [x, y] = segment.to;
        const double length = std::hypot(x - fromX, y - fromY);
        const double arm = std::trunc(std::sqrt(32.0 * layout_.penWidth));
        if (length == 0.0) return;
        const double backX = (fromX - x) / length * arm;
        const double backY = (fromY - y) / length * arm;
        const double c = std::cos(headAngle), s = std::sin(headAngle);
        const Point head[] = {
            {x + static_cast<int>(std::lround(c * backX - s * backY)),
             y + static_cast<int>(std::lround(s * backX + c * backY))},
            {x, y},
            {x + static_cast<int>(std::lround(c * backX + s * backY)),
             y + static_cast<int>(std::lround(c * backY - s * backX))},
        };
        canvas_.drawLine(head, pen_);
    }

    // Beside the end, or where the vector leaves the window; inside the plot and to its right, where it
    // covers the fewest names and vectors.
    void drawName(const char* text, Point end) {
        char name[textSlotSize];
        fitText(canvas_, text, style_, layout_.size.width - 2, name);
        const Extent extent = canvas_.measure(name, style_);
        Box best = {};
        Index least = PTRDIFF_MAX;
        for (int k = 0; k < 2 * (2 * nameRows + 1) && least > 0; ++k) {
            const int row = (k / 2 + 1) / 2 * (k / 2 % 2 == 0 ? 1 : -1);
            const int left = k % 2 == 0 ? end.x + nameGap : end.x - nameGap - extent.width;
            const int top = end.y - extent.height / 2 + row * (extent.height / 2);
            const Box box = inside({left, top, left + extent.width, top + extent.height});
            const Index covered = countCovered(box) + (box.left != left || box.top != top ? 1 : 0);
            if (covered >= least) continue;
            least = covered;
            best = box;
        }
        canvas_.drawText({best.left, best.top}, name, style_);
        if (nameCount_ < mostKept) names_[nameCount_++] = best;
    }

    // Moved off the numbers at the left and the bottom, and always into the window.
    Box inside(const Box& box) const {
        const int width = box.right - box.left;
        const int height = box.bottom - box.top;
        const int left =
            std::max(std::min(std::max(box.left, layout_.plot.left + 1), layout_.size.width - 1 - width), 1);
        const int top =
            std::max(std::min(std::max(box.top, layout_.plot.top), layout_.plot.bottom - height), 1);
        return {left, top, left + width, top + height};
    }

    // A covered name is worse than a covered line.
    Index countCovered(const Box& box) const {
        Index count = 0;
        for (Index k = 0; k < nameCount_; ++k) count += overlap(box, names_[k]) ? 2 * mostKept : 0;
        for (Index k = 0; k < segmentCount_; ++k) count += crosses(box, segments_[k]) ? 2 : 0;
        return count;
    }

    Canvas& canvas_;
    const GraphSpec& spec_;
    const GraphLayout& layout_;
    const Pen pen_;
    const TextStyle style_;
    Segment segments_[mostKept] = {};
    Index segmentCount_ = 0;
    Box names_[mostKept] = {};
    Index nameCount_ = 0;
};

} // namespace

void drawVectors(Canvas& canvas, const Graph& graph, const GraphLayout& layout) {
    if (layout.horizontal.series < 0 || layout.vertical.series < 0) return;
    VectorPainter painter(canvas, graph, layout);
    painter.drawVectorLines();
    painter.drawNames();
}
