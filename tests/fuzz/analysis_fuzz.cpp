#include "analysis/basic/regression/prediction.h"
#include "analysis/run/run_flow.h"
#include "analysis/run/saved_table.h"
#include "batch/given_moments.h"
#include "data/moments/read_moments.h"
#include "report/charts/chart_painter.h"
#include "report/json_report.h"
#include "report/markup_report.h"
#include "report/structure.h"
#include "tests/fuzz/choices.h"
#include "tests/fuzz/require.h"
#include "tests/support/csv_text.h"
#include "tests/support/recording_canvas.h"
#include "tests/support/recording_frontend.h"

namespace {

// Whoever opens a file gets this text.
struct OneFile : RecordingFrontend {
    std::string text;

    FileCode readTable(const char*, CellTable& cells, ReadingNotes& notes) override {
        return readText(text, cells, notes);
    }
    FileCode readMoments(const char*, MomentTable& moments, ReadingNotes& notes) override {
        const ErrorCode code = ::readMoments(text.data(), std::ssize(text), false, moments, notes.moments);
        return code == success ? FileCode::done : FileCode::malformed;
    }
};

// What a user does to the controls of a field: nothing where a blank stands, or no byte.
void set(const OptionField& field, Choices& choices, const DataSet& data, AnalysisOptions& options) {
    static constexpr const char* typed[] = {"",    "0",    "1",    "2",     "3",    "4",      "7",
                                            "-1",  "0.05", "0.5",  "0.95",  "1.5",  "100",    "-0.5",
                                            "nan", "1e-9", "-1e9", "1e300", "1e99", "5e-324", "99999999999"};
    for (int k = 0; k < field.count; ++k) {
        const int draw = choices.left > 0 ? choices.next() : ' ';
        if (draw == ' ') continue;
        const bool isTyped = field.type == OptionType::wholeNumber || field.type == OptionType::real;
        const int limit = field.type == OptionType::flag ? 2
                          : field.choices.size() > 0     ? static_cast<int>(field.choices.size())
                                                         : data.loaded.variables + 1;
        if (!isTyped) wholeOption(options, field, k) = draw % limit;
        if (isTyped && draw < 200) typeOption(options, field, typed[draw % std::ssize(typed)]);
        for (int click = 200; isTyped && click < draw; ++click)
            spinOption(options, field, data, draw % 2 == 0);
    }
}

// Whether the dialog, or the command line for moments, takes what was chosen.
bool isTaken(const AnalysisKind& kind, const AnalysisRun& run) {
    const Analysis& analysis = *kind.analysis;
    if (analysis.refuse != nullptr && analysis.refuse(run.options, 0) != nullptr) return false;
    if (leavesTableRowsOut(run.data, analysis, run.options)) return false;
    CommandLine line;
    Complaint complaint;
    line.kind = &kind;
    line.isMoments = true;
    return !run.takesMoments || (checkMomentOptions(line, complaint) &&
                                 checkMomentFields(line, run.data, run.options, complaint) &&
                                 lackingMoments(line, run.data, run.options) == nullptr);
}

void drawResults(const AnalysisRun& run, Choices& choices) {
    for (const Chart& chart : run.charts) {
        if (!chart.isDescribed || chart.refusal != nullptr) continue;
        RecordingCanvas canvas;
        ChartShortage shortage;
        const ChartView view = {.size = {800, 200 + 50 * choices.below(9)}, .labels = true, .ellipses = true};
        require(drawChart(canvas, chart, view, shortage) == success);
        requireNone(canvas.outside(view.size));
    }
    RecordingCanvas canvas;
    drawGraph(canvas, run.graph, {});
}

} // namespace

// The first line chooses a kind and its options, the rest is a data file: it is analysed, or refused.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    OneFile frontend;
    Choices file = {bytes, size};
    const std::string header = file.line();
    frontend.text.assign(reinterpret_cast<const char*>(file.bytes), file.left);
    frontend.text.reserve(file.left + 1); // which reading moments needs
    Choices choices = {reinterpret_cast<const std::uint8_t*>(header.data()), header.size()};
    const AnalysisKind& asked = analysisKinds()[(choices.next() - 'A' + 256U) % 256 % analysisKinds().size()];
    const int ways = choices.next();

    AnalysisRun run;
    Settings settings;
    setDefaultSettings(settings);
    run.takesMoments = ways / 4 % 8 == 1;
    // All of these are of samples.
    run.columns.areWanted = run.pictureWish.isOfAll = !run.takesMoments;
    settings.expressGraph = !run.takesMoments;
    startOptions(run.options, settings);
    ReportStructure structure;
    require((allocateReport(run.report, TextBuffer::Growth::growing) | structure.allocate()) == success);
    run.report.structure = &structure;
    run.options.clusterCount = 2;
    run.numerics = ways % 2 == 0 ? &classicNumerics : &textbookNumerics;
    run.data.policy = ways / 2 % 2 == 0 ? MissingPolicy::zero : MissingPolicy::omit;
    if (!loadDataFile(frontend, run).isLoaded()) return 0;
    if (!run.takesMoments) showLoadedData(frontend, run);

    frontend.choose = [&](AnalysisRun& chosen) {
        const AnalysisKind& kind = *findKind(chosen.kind);
        for (const OptionFields fields : {kind.analysis->firstFields, kind.analysis->fields}) {
            for (const OptionField& field : fields) set(field, choices, chosen.data, chosen.options);
        }
        return isTaken(kind, chosen);
    };
    const ErrorCode code = runAnalysisCommand(frontend, settings, run, firstAnalysisCommand + asked.number);
    const bool isDone = code == success || code == graphNotBuilt; // of which an alert tells
    require(frontend.status.empty() || isDone == (frontend.status.rfind("error", 0) != 0));
    if (!isDone) return 0;
    drawResults(run, choices);
    TextBuffer table, document;
    require(document.allocate(4000, TextBuffer::Growth::growing) == success);
    if (run.columns.count > 0) require(writeSavedTable(run, table) == success);
    if (run.data.model.kind != FittedModel::none) static_cast<void>(runPrediction(frontend, run));
    writeJsonReport(ReportFacts(), structure, document);
    writeHtmlReport(structure, document);
    return 0;
}
