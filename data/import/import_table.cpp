#include "data/import/import_table.h"

#include <algorithm>
#include <limits>

#include "data/import/import_planning.h"
#include "data/import/table_writer.h"

namespace {

// Rows that a preview is found out from, at least.
constexpr Index previewRows = 1000;

// Puts the cells of lines into a table.
class PreviewSink : public TableSink {
public:
    explicit PreviewSink(CellTable& cells) : cells_(cells) {}

    bool write(std::string_view piece) override {
        for (const char c : piece) {
            if (c == ',' || c == '\n') {
                ++cell_;
                length_ = 0;
            } else if (cell_ < cells_.cells.size() && length_ + 1 < textSlotSize) {
                cells_.cells[cell_].text[length_++] = c;
            }
        }
        return true;
    }

private:
    CellTable& cells_;
    Index cell_ = 0;
    std::size_t length_ = 0;
};

} // namespace

ErrorCode importTable(ByteSource& source, const ImportOptions& options, TableSink& sink,
                      ImportMessages& messages, TableSink* codebook) {
    ImportSurvey survey;
    ImportPlan plan;
    constexpr Index all = std::numeric_limits<Index>::max();
    ErrorCode code = surveyImport(source, options, all, survey, messages);
    if (code == success) code = planImport(survey, options, plan, messages);
    if (code == success) code = writeTable(source, options, survey, plan, all, sink, messages);
    if (code == success && codebook != nullptr && !writeCodebook(survey, plan, *codebook)) {
        messages.refuse("the codebook cannot be written");
        code = illegalData;
    }
    messages.finish();
    return messages.ranOutOfMemory() ? outOfMemory : code;
}

ErrorCode previewImport(ByteSource& source, const ImportOptions& options, Index mostRows, CellTable& cells,
                        ImportMessages& messages) {
    cells = {};
    ImportSurvey survey;
    ImportPlan plan;
    ErrorCode code = surveyImport(source, options, std::max(mostRows, previewRows), survey, messages);
    if (code == success) code = planImport(survey, options, plan, messages);
    if (code != success) return code;
    const Index rows = std::min(mostRows, survey.rows);
    if (cells.cells.allocate((rows + 1) * (plan.variables + 1)) != success) return outOfMemory;
    cells.rows = static_cast<std::int32_t>(rows + 1);
    cells.cols = static_cast<std::int32_t>(plan.variables + 1);
    PreviewSink sink(cells);
    code = writeTable(source, options, survey, plan, mostRows, sink, messages);
    messages.finish();
    if (messages.ranOutOfMemory()) code = outOfMemory;
    if (code != success) cells = {};
    return code;
}
