#include "data/import/import_preview.h"

#include <algorithm>
#include <utility>

#include "data/import/import_findings.h"
#include "data/import/import_planning.h"
#include "data/import/table_writer.h"

namespace {

// Of a file whose cells are not understood.
constexpr Index mostRawColumns = 50;

// Puts the cells of lines into a table.
class PreviewSink : public TableSink {
public:
    explicit PreviewSink(CellTable& cells) : cells_(cells) {}

    bool write(std::string_view piece) override {
        for (const char c : piece) {
            if (c == ',' || c == '\n') {
                if (cell_ < cells_.texts.size()) cells_.texts.set(cell_++, {text_, length_});
                length_ = 0;
            } else if (length_ + 1 < textSlotSize) {
                text_[length_++] = c;
            }
        }
        return true;
    }

private:
    CellTable& cells_;
    Index cell_ = 0;
    char text_[textSlotSize] = {};
    std::size_t length_ = 0;
};

ErrorCode allocateCells(CellTable& cells, Index rows, Index cols) {
    if (cells.texts.allocate(rows * cols) != success) return outOfMemory;
    cells.rows = static_cast<std::int32_t>(rows);
    cells.cols = static_cast<std::int32_t>(cols);
    return success;
}

// What is found, and where nothing is what is said.
void takeWords(const ImportSurvey& survey, const ImportOptions& options, const ImportPlan& plan,
               ImportPreview& preview) {
    const ImportOptions known = foundOptions(survey, plan);
    for (int k = 0; k < wordChoiceCount; ++k) {
        const ImportChoice choice = static_cast<ImportChoice>(k);
        preview.words[k] = chosenWord(known, choice);
        if (preview.words[k] == 0) preview.words[k] = chosenWord(options, choice);
    }
    preview.words[static_cast<int>(ImportChoice::oddRows)] = chosenWord(options, ImportChoice::oddRows);
    preview.labelColumn = std::max(plan.labelColumn, Index{-1});
}

void putCell(std::string_view text, const TextTarget& target, CellTable& cells, Index cell) {
    TableText cleaned;
    cleanText(text, target, textSlotLength, cleaned);
    cells.texts.set(cell, cleaned.text);
}

// The first rows as they stand in the file, as far as they can be divided into cells.
ErrorCode showRawRows(ByteSource& source, const ImportSurvey& survey, const TextTarget& target,
                      Index mostRows, CellTable& cells) {
    ImportRows rows;
    ImportRecord record;
    const Index cols = std::min(survey.form.width, mostRawColumns);
    if (cols == 0) return success;
    if (allocateCells(cells, mostRows + 1, cols) != success) return outOfMemory;
    for (Index j = 0; j < std::min(cols, survey.names.count); ++j) {
        putCell(survey.names[j], target, cells, j);
    }
    cells.rows = 1;
    const ErrorCode code = rows.open(source, survey.form);
    while (code == success && cells.rows <= mostRows && rows.next(record)) {
        if (rows.isHeader()) continue;
        for (Index j = 0; j < cols; ++j) {
            putCell(record.cells[j].text, target, cells, cells.rows * cols + j);
        }
        ++cells.rows;
    }
    return code == outOfMemory || rows.fault() == RecordFault::noMemory ? outOfMemory : success;
}

ErrorCode showReadRows(ByteSource& source, const ImportOptions& options, const ImportSurvey& survey,
                       const ImportPlan& plan, Index mostRows, CellTable& cells, ImportMessages& messages) {
    const Index rows = std::min(mostRows, survey.rows);
    if (allocateCells(cells, rows + 1, plan.variables + 1) != success) return outOfMemory;
    PreviewSink sink(cells);
    return writeTable(source, options, survey, plan, rows, sink, messages);
}

} // namespace

ErrorCode previewImport(ByteSource& source, const ImportOptions& options, const PreviewLimits& limits,
                        ImportPreview& preview, ImportMessages& messages) {
    preview = {};
    ImportSurvey survey;
    ImportPlan plan;
    const Index surveyed = std::max(limits.shownRows, limits.surveyedRows);
    ErrorCode code = surveyImport(source, options, surveyed, survey, messages);
    if (code == success) code = planImport(survey, options, plan, messages);
    if (code != outOfMemory) takeWords(survey, options, plan, preview);
    if (code == success) {
        code = showReadRows(source, options, survey, plan, limits.shownRows, preview.cells, messages);
    }
    preview.isDecided = code == success;
    preview.isWhole = !survey.isCut;
    if (code == illegalData) {
        preview.cells = {};
        const TextTarget target = {options.written, options.codePage};
        if (showRawRows(source, survey, target, limits.shownRows, preview.cells) != success)
            code = outOfMemory;
    }
    messages.finish();
    if (messages.ranOutOfMemory()) code = outOfMemory;
    if (code == outOfMemory) {
        preview = {};
    } else {
        preview.names = std::move(survey.names);
    }
    return code;
}
