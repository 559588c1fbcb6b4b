#include "batch/picture.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "analysis/run/sample_groups.h"
#include "batch/field_values.h"
#include "report/charts/chart_choices.h"
#include "report/charts/chart_painter.h"
#include "report/graph_painter.h"
#include "report/svg_canvas.h"

namespace {

constexpr const char* windowName = "window";
constexpr Index firstCapacity = 65'536;

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
    if (!parseNumbers(text, 'x', ChartChoices::leastSize, ChartChoices::mostSize, size)) return false;
    options.view.width = size[0];
    options.view.height = size[1];
    return options.isSized = true;
}

bool setName(const char* text, PictureOptions& options) {
    options.name = text;
    return true;
}

bool setColourBy(const char* text, PictureOptions& options) {
    options.colourBy = text;
    return true;
}

bool setLabels(const char*, PictureOptions& options) {
    return options.labels = true;
}

bool setEllipses(const char*, PictureOptions& options) {
    return options.ellipses = true;
}

bool setFontSize(const char* text, PictureOptions& options) {
    int size[1];
    if (!parseNumbers(text, ',', ChartChoices::leastFont, ChartChoices::mostFont, size)) return false;
    options.fontHeight = size[0];
    return true;
}

// Which pictures have an option.
enum class Scope { all, window, charts };

const struct {
    OptionText text;
    bool (*set)(const char* text, PictureOptions& options);
    Scope scope;
    unsigned wish; // that a chart has to take; 0: each takes it
} pictureOptions[] = {
    {{"--graph", "FILE.svg", "write the picture of the analysis to FILE.svg"}, setFile, Scope::all, 0},
    {{"--picture", "NAME", "which one; they are told below"}, setName, Scope::all, 0},
    {{"--size", "WxH", "pixels, 200x200 to 10000x10000 (window: 480x480, others: 800x600 or more)"},
     setSize,
     Scope::all,
     0},
    {{"--axes", "I,J", "the series across and up the picture, counted from 1 (1,2)"},
     setAxes,
     Scope::all,
     Picture::axes},
    {{"--numbering", nullptr, "number the items of the picture"}, setNumbering, Scope::window, 0},
    {{"--sized-vectors", nullptr, "vectors as long as they are, not lines across the picture"},
     setSizedVectors,
     Scope::window,
     0},
    {{"--highlight", "N", "the item in red, counted from 1"}, setHighlight, Scope::window, 0},
    {{"--colour-by", "NAME", "tell the samples apart by a variable of up to 10 values, also an excluded one"},
     setColourBy,
     Scope::charts,
     Picture::groups},
    {{"--ellipses", nullptr, "draw around each of these groups what holds 95 % of it"},
     setEllipses,
     Scope::charts,
     Picture::ellipses},
    {{"--labels", nullptr, "name the samples, as many as there is room for"},
     setLabels,
     Scope::charts,
     Picture::labels},
    {{"--font-size", "N", "the height of a line of text in pixels, 8 to 100 (16)"},
     setFontSize,
     Scope::charts,
     0},
};

bool hasWindow(const AnalysisKind& kind) {
    return kind.graph != GraphRule::never;
}

// Discriminant analysis and quantification 2 tell the samples apart by their group variable.
bool hasOwnGroups(const AnalysisKind& kind) {
    return kind.number == discriminantKind || kind.number == quantification2Kind;
}

// Whether a picture of the kind has an option of this scope, and of this wish unless it is 0.
bool isOfKind(Scope scope, unsigned wish, const AnalysisKind& kind) {
    const Pictures pictures = picturesOf(kind);
    const bool hasCharts = std::any_of(pictures.begin(), pictures.end(), [wish](const Picture& picture) {
        return wish == 0 || (picture.takes & wish) != 0;
    });
    return (scope != Scope::charts && hasWindow(kind)) || (scope != Scope::window && hasCharts);
}

// Of the pictures of a kind, the one that it has by default first.
void writeNames(const AnalysisKind& kind, const char* separator, char (&names)[128]) {
    std::snprintf(names, sizeof names, "%s", hasWindow(kind) ? windowName : "");
    for (const Picture& picture : picturesOf(kind)) {
        const std::size_t used = std::strlen(names);
        std::snprintf(names + used, sizeof names - used, "%s%s", used > 0 ? separator : "", picture.name);
    }
}

void complainOfName(const char* name, const AnalysisKind& kind, Complaint& complaint) {
    char names[128];
    writeNames(kind, ", ", names);
    complaint.say("there is no picture '%.200s' of '%s'; there is: %s", name, kind.batchName, names);
}

// By its name, or the first one when an option that only charts have, or nothing else, asks for it.
bool chooseChart(PictureOptions& options, const AnalysisKind& kind, Complaint& complaint) {
    const Pictures pictures = picturesOf(kind);
    if (options.name != nullptr) {
        for (const Picture& picture : pictures) {
            if (std::strcmp(picture.name, options.name) == 0) options.chart = &picture;
        }
        const bool isWindow = hasWindow(kind) && std::strcmp(options.name, windowName) == 0;
        if (options.chart == nullptr && !isWindow) complainOfName(options.name, kind, complaint);
    } else if (!pictures.empty() && (!hasWindow(kind) || options.ofCharts != nullptr)) {
        options.chart = &pictures[0];
    }
    return !complaint.any();
}

// Whether the picture has all options that were given.
void checkScopes(const PictureOptions& options, const AnalysisKind& kind, Complaint& complaint) {
    if (options.chart == nullptr) {
        if (options.ofCharts != nullptr)
            complaint.say("%s: the picture '%s' has no such option", options.ofCharts, windowName);
        return;
    }
    const char* const name = options.chart->name;
    if (options.ofWindow != nullptr) {
        complaint.say("%s: the picture '%s' has no such option", options.ofWindow, name);
        return;
    }
    for (const auto& option : pictureOptions) {
        if ((options.wishes & option.wish) == 0 || (options.chart->takes & option.wish) != 0) continue;
        complaint.say("%s: the picture '%s' has no such option", option.text.name, name);
        return;
    }
    if (options.ellipses && options.colourBy == nullptr && !hasOwnGroups(kind))
        complaint.say("--ellipses needs --colour-by NAME");
}

bool wishForGroups(const char* variable, AnalysisRun& run, Complaint& complaint) {
    const std::int32_t column = findColumn(run.data.cells, variable);
    if (column == 0) {
        complaint.say("--colour-by: there is no variable '%.200s'", variable);
        return false;
    }
    switch (findGroups(run.data, column, run.pictureWish.groups)) {
    case GroupSearch::found:
        break;
    case GroupSearch::tooMany:
        complaint.say("--colour-by: '%.200s' has more than %td values", variable, SampleGroups::most);
        break;
    case GroupSearch::none:
        complaint.say("--colour-by: '%.200s' has no values", variable);
        break;
    case GroupSearch::noMemory:
        complaint.say("no memory for --colour-by");
        break;
    }
    return !complaint.any();
}

ErrorCode drawWantedChart(const PictureOptions& options, const Chart& chart, TextBuffer& document) {
    ChartChoices choices = {
        .fontHeight = options.fontHeight, .labels = options.labels, .ellipses = options.ellipses};
    if (options.isSized) choices.size = {options.view.width, options.view.height};
    const ChartView view = viewOf(chart, choices);
    SvgCanvas canvas(document, view.size);
    ChartShortage shortage;
    const ErrorCode code = drawChart(canvas, chart, view, shortage);
    if (shortage.labels > 0) {
        std::fprintf(stderr, "note : the picture has no room for %td of %td labels\n", shortage.labels,
                     shortage.ofLabels);
    }
    canvas.finish();
    return code;
}

} // namespace

PictureOption findPictureOption(std::string_view name) {
    for (const auto& option : pictureOptions) {
        if (name == option.text.name)
            return option.text.value != nullptr ? PictureOption::value : PictureOption::flag;
    }
    return PictureOption::none;
}

bool setPictureOption(std::string_view name, const char* value, PictureOptions& options,
                      Complaint& complaint) {
    for (const auto& option : pictureOptions) {
        if (name != option.text.name) continue;
        options.given = option.text.name;
        options.wishes |= option.wish;
        if (option.scope == Scope::window) options.ofWindow = option.text.name;
        if (option.scope == Scope::charts) options.ofCharts = option.text.name;
        if (option.set(value, options)) return true;
        complaint.say("%s takes %s (%s), not '%.200s'", option.text.name,
                      option.text.value != nullptr ? option.text.value : "", option.text.help,
                      value != nullptr ? value : "");
    }
    return false;
}

bool checkPictureOptions(PictureOptions& options, const AnalysisKind* kind, Complaint& complaint) {
    if (options.given == nullptr) return true;
    if (kind == nullptr || (!hasWindow(*kind) && picturesOf(*kind).empty())) {
        complaint.say("%s: there is no picture of '%s'", options.given,
                      kind == nullptr ? "summary" : kind->batchName);
    } else if (options.file == nullptr) {
        complaint.say("%s needs --graph FILE.svg", options.given);
    } else if (chooseChart(options, *kind, complaint)) {
        checkScopes(options, *kind, complaint);
    }
    return !complaint.any();
}

bool wishForPicture(const PictureOptions& options, AnalysisRun& run, Complaint& complaint) {
    PictureWish& wish = run.pictureWish;
    if (options.chart != nullptr) wish.pictures = {options.chart, 1};
    for (int k = 0; k < 2; ++k) wish.axes[k] = options.view.series[k];
    return options.colourBy == nullptr || wishForGroups(options.colourBy, run, complaint);
}

const OptionText* pictureOption(const AnalysisKind& kind, std::size_t place) {
    for (const auto& option : pictureOptions) {
        if (isOfKind(option.scope, option.wish, kind) && place-- == 0) return &option.text;
    }
    return nullptr;
}

void printPictureHelp(std::FILE* file, const AnalysisKind& kind) {
    for (const auto& option : pictureOptions) {
        if (!isOfKind(option.scope, option.wish, kind)) continue;
        OptionText text = option.text;
        char names[128];
        writeNames(kind, "|", names);
        if (option.set == setName) text.value = names;
        printOption(file, text);
    }
    std::fprintf(file, "\npictures, the first one unless an option asks for another:\n");
    if (hasWindow(kind)) {
        printUsageLine(file, windowName, "as the window shows it");
        std::fprintf(file, "\n");
    }
    for (const Picture& picture : picturesOf(kind)) {
        printUsageLine(file, picture.name, picture.help);
        std::fprintf(file, "\n");
    }
}

const char* refusePicture(const PictureOptions& options, const AnalysisKind& kind, const AnalysisRun& run) {
    if (options.chart != nullptr) {
        const Chart& chart = run.charts[0];
        if (chart.isDescribed) return nullptr;
        return chart.refusal != nullptr ? chart.refusal : "there is no such picture of this run";
    }
    const Graph& graph = run.graph;
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

ErrorCode drawPicture(const PictureOptions& options, const AnalysisRun& run, TextBuffer& document) {
    ErrorCode code = document.allocate(firstCapacity, TextBuffer::Growth::growing);
    if (code != success) return code;
    if (options.chart != nullptr) {
        code = drawWantedChart(options, run.charts[0], document);
    } else {
        SvgCanvas canvas(document, {options.view.width, options.view.height});
        drawGraph(canvas, run.graph, options.view);
        canvas.finish();
    }
    return document.ranOutOfMemory() ? outOfMemory : code;
}
