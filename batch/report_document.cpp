#include "batch/report_document.h"

#include <algorithm>

#include "batch/given_arguments.h"
#include "report/json_report.h"
#include "report/markup_report.h"
#include "version.h"

namespace {

constexpr Index firstCapacity = 4096;

std::string_view firstLine(const TextBuffer& text) {
    const std::string_view all = text.view();
    return all.substr(0, all.find('\n'));
}

// The lines of a failure's text without the tabs before them and the empty ones around them.
void appendLines(std::string_view text, TextBuffer& lines) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const std::size_t start = line.find_first_not_of("\t ");
        if (start == std::string_view::npos) continue;
        if (lines.length() > 0) lines.append("\n");
        lines.append(line.substr(start));
    }
}

// The lists of texts that the facts of a run point into.
struct FactTexts {
    TextBuffer variables;
    TextBuffer excluded;
    TextBuffer arguments;

    ErrorCode allocate() {
        constexpr TextBuffer::Growth growing = TextBuffer::Growth::growing;
        return variables.allocate(firstCapacity, growing) | excluded.allocate(firstCapacity, growing) |
               arguments.allocate(firstCapacity, growing);
    }
    // Before they are pointed into; false without memory.
    bool join() {
        for (TextBuffer* text : {&variables, &excluded, &arguments}) {
            if (!text->join() || text->ranOutOfMemory()) return false;
        }
        return true;
    }
};

bool writeJson(const CommandLine& line, const AnalysisRun& run, const FileFacts& file, TextBuffer& document) {
    const DataSet& data = run.data;
    FactTexts texts;
    if (texts.allocate() != success) return false;
    long long missingCells = 0;
    for (std::int32_t col = 1; col < data.cells.cols; ++col) {
        addToList(data.useFlags[col] != 0 ? texts.variables : texts.excluded, data.cells.cell(0, col));
        missingCells += data.missing[col].count();
    }
    listArguments(line, texts.arguments);
    if (!texts.join()) return false;
    writeJsonReport({.program = programName,
                     .version = OMBRIVANTEL_VERSION,
                     .kind = kindWord(line),
                     .numerics = numericsWord(*run.numerics),
                     .file = file,
                     .samples = data.loaded.samples,
                     .variables = texts.variables.view(),
                     .excluded = texts.excluded.view(),
                     .missing = missingWord(line.missing),
                     .missingCells = missingCells,
                     .samplesLeftOut = data.leftOut,
                     .arguments = texts.arguments.view(),
                     .status = firstLine(run.report.status)},
                    *run.report.structure, document);
    return true;
}

bool writeReport(const CommandLine& line, const AnalysisRun& run, const FileFacts& file,
                 TextBuffer& document) {
    const ReportStructure& structure = *run.report.structure;
    switch (line.format) {
    case ReportFormat::text:
        break;
    case ReportFormat::json:
        return writeJson(line, run, file, document);
    case ReportFormat::markdown:
        writeMarkdownReport(structure, document);
        break;
    case ReportFormat::html:
        writeHtmlReport(structure, document);
        break;
    }
    return true;
}

bool writeFailure(const CommandLine& line, std::string_view status, const TextBuffer& shown,
                  TextBuffer& document) {
    TextBuffer whole, lines; // in one piece: lines are no longer than what they stand in
    const Index capacity = static_cast<Index>(shown.length()) + 1;
    if ((whole.allocate(capacity, TextBuffer::Growth::growing) |
         lines.allocate(capacity, TextBuffer::Growth::growing)) != success)
        return false;
    for (const std::string_view piece : shown) whole.append(piece);
    appendLines(whole.view(), lines);
    switch (line.format) {
    case ReportFormat::text:
        break;
    case ReportFormat::json:
        writeJsonFailure(status, lines.view(), document);
        break;
    case ReportFormat::markdown:
        writeMarkdownFailure(lines.view(), document);
        break;
    case ReportFormat::html:
        writeHtmlFailure(lines.view(), document);
        break;
    }
    return true;
}

} // namespace

const TextBuffer* makeDocument(const CommandLine& line, const AnalysisRun& run, const BatchFrontend& frontend,
                               bool succeeded, TextBuffer& document) {
    if (succeeded && line.scoresBySql) return &run.expressions.text;
    if (line.format == ReportFormat::text) return frontend.shown();
    const bool made =
        document.allocate(firstCapacity, TextBuffer::Growth::growing) == success &&
        (succeeded ? writeReport(line, run, frontend.file(), document)
                   : writeFailure(line, firstLine(run.report.status), *frontend.shown(), document));
    return made && !document.ranOutOfMemory() ? &document : nullptr;
}
