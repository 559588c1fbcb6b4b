#include "batch/picture.h"

#include <cstdlib>
#include <iterator>

#include "report/graph_painter.h"
#include "report/svg_canvas.h"

namespace {

constexpr int leastSize = 200;
constexpr int mostSize = 10'000;
constexpr std::size_t firstCapacity = 65'536;

// The whole numbers of a text, with this character between two of them; false for anything else.
bool parseNumbers(const char* text, char separator, int least, int most, std::span<int> numbers) {
    for (std::size_t k = 0; k < numbers.size(); ++k) {
        if (k > 0 && *text++ != separator) return false;
        if (*text < '0' || *text > '9') return false;
        char* end = nullptr;
        const long value = std::strtol(text, &end, 10);
        if (value < least || value > most) return false;
        numbers[k] = static_cast<int>(value);
        text = end;
    }
    return *text == '\0';
}

bool setFile(const char* text, PictureOptions& options) {
    options.file = text;
    return text[0] != '\0';
}

bool setNumbering(const char*, PictureOptions& options) {
    return options.numbering = true;
}

bool setSizedVectors(const char*, PictureOptions& options) {
    return options.sizedVectors = true;
}

bool setAxes(const char* text, PictureOptions& options) {
    int numbers[2];
    if (!parseNumbers(text, ',', 1, static_cast<int>(mostSeries), numbers)) return false;
    for (int k = 0; k < 2; ++k) options.view.series[k] = numbers[k] - 1;
    return true;
}

bool setHighlight(const char* text, PictureOptions& options) {
    int number[1];
    if (!parseNumbers(text, ',', 1, INT32_MAX, number)) return false;
    options.view.highlighted = static_cast<std::uint32_t>(number[0]);
    return true;
}

bool setSize(const char* text, PictureOptions& options) {
    int size[2];
    if (!parseNumbers(text, 'x', leastSize, mostSize, size)) return false;
    options.view.width = size[0];
    options.view.height = size[1];
    return true;
}

const struct {
    OptionText text;
    bool (*set)(const char* text, PictureOptions& options);
} pictureOptions[] = {
    {{"--graph", "FILE.svg", "write the picture of the analysis to FILE.svg"}, setFile},
    {{"--numbering", nullptr, "number the items of the picture"}, setNumbering},
    {{"--sized-vectors", nullptr, "vectors as long as they are, not lines across the picture"},
     setSizedVectors},
    {{"--axes", "I,J", "the series across and up the picture, counted from 1 (1,2)"}, setAxes},
    {{"--highlight", "N", "the item in red, counted from 1"}, setHighlight},
    {{"--size", "WxH", "pixels, 200x200 to 10000x10000 (480x480)"}, setSize},
};

} // namespace

PictureOption findPictureOption(std::string_view name) {
    for (const auto& [text, set] : pictureOptions) {
        if (name == text.name) return text.value != nullptr ? PictureOption::value : PictureOption::flag;
    }
    return PictureOption::none;
}

bool setPictureOption(std::string_view name, const char* value, PictureOptions& options,
                      Complaint& complaint) {
    for (const auto& [text, set] : pictureOptions) {
        if (name != text.name) continue;
        options.given = text.name;
        if (set(value, options)) return true;
        complaint.say("%s takes %s (%s), not '%.200s'", text.name, text.value != nullptr ? text.value : "",
                      text.help, value != nullptr ? value : "");
    }
    return false;
}

bool checkPictureOptions(const PictureOptions& options, const AnalysisKind* kind, Complaint& complaint) {
    if (options.given == nullptr) return true;
    if (kind == nullptr || kind->graph == GraphRule::never) {
        complaint.say("%s: there is no picture of '%s'", options.given,
                      kind == nullptr ? "summary" : kind->batchName);
    } else if (options.file == nullptr) {
        complaint.say("%s needs --graph FILE.svg", options.given);
    }
    return !complaint.any();
}

const OptionText* pictureOption(std::size_t place) {
    return place < std::size(pictureOptions) ? &pictureOptions[place].text : nullptr;
}

void printPictureHelp(std::FILE* file) {
    for (const auto& option : pictureOptions) printOption(file, option.text);
}

const char* refusePicture(const PictureOptions& options, const AnalysisKind& kind, const Graph& graph) {
    if (!graph.present) {
        switch (kind.graph) {
        case GraphRule::threeGroups:
            return "there is no picture of fewer than 3 groups";
        case GraphRule::threeVariables:
            return "there is no picture of fewer than 3 variables";
        default:
            return "there is no picture of this run";
        }
    }
    const GraphView& view = options.view;
    for (const int series : {view.series[0], view.series[1]}) {
        if (series >= graph.spec.seriesCount) return "--axes: the picture has fewer series";
    }
    return view.highlighted > graph.spec.itemCount ? "--highlight: the picture has fewer items" : nullptr;
}

ErrorCode drawPicture(const PictureOptions& options, const Graph& graph, TextBuffer& document) {
    const ErrorCode code = document.allocate(firstCapacity, TextBuffer::Growth::growing);
    if (code != success) return code;
    SvgCanvas canvas(document, {options.view.width, options.view.height});
    drawGraph(canvas, graph, options.view);
    canvas.finish();
    return document.ranOutOfMemory() ? outOfMemory : success;
}
