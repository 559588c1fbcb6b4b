#include "data/import/table_writer.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace {

constexpr Index pieceSize = 1 << 17;

// Lines on their way to the sink.
class LineBuffer {
public:
    [[nodiscard]] ErrorCode allocate(Index longestLine) { return bytes_.allocate(pieceSize + longestLine); }

    // Where the next cell goes: there is always room for a line.
    char* at() { return bytes_.data() + length_; }
    void advance(Index count) { length_ += count; }
    void put(std::string_view text) {
        std::memcpy(at(), text.data(), text.size());
        length_ += std::ssize(text);
    }
    bool endLine(TableSink& sink) {
        *at() = '\n';
        ++length_;
        return length_ < pieceSize || flush(sink);
    }
    bool flush(TableSink& sink) {
        const Index length = length_;
        length_ = 0;
        return length == 0 || sink.write({bytes_.data(), static_cast<std::size_t>(length)});
    }

private:
    Block<char> bytes_;
    Index length_ = 0;
};

// What the writing itself finds.
struct Written {
    Index rows = 0;
    Index cutLabels = 0;
    Index lackingLabels = 0;
};

bool isPlainNumber(std::string_view cell, const NumberForm& form) {
    return form.decimal == DecimalSign::point && !form.thousandsMark && !form.thousandsSpace &&
           cell.size() < textSlotSize && cell[0] != '+' && cell[0] != '\xE2';
}

// False when the cell is not what the survey found.
bool writeCell(std::string_view cell, const MissingTexts& missing, const ImportSurvey& survey, Index column,
               const ImportPlan& plan, LineBuffer& lines) {
    if (missing.has(cell)) {
        lines.put("NA");
        return true;
    }
    if (plan.uses[column] == ColumnUse::category) {
        const Index category = survey.texts.find(survey.columns[column].texts, cell);
        if (category < 0 && shapeOf(cell) != CellShape::noValue) return false;
        if (category < 0) {
            lines.put("NA");
        } else {
            lines.advance(std::to_chars(lines.at(), lines.at() + 8, category + 1).ptr - lines.at());
        }
        return true;
    }
    const CellShape shape = shapeOf(cell);
    if (shape == CellShape::noValue) {
        lines.put("NA");
        return true;
    }
    if (!isReadable(shape, plan.numbers)) return false;
    if (isPlainNumber(cell, plan.numbers)) {
        lines.put(cell);
        return true;
    }
    NumberText number;
    writeNumber(cell, plan.numbers, number);
    lines.put({number.text, static_cast<std::size_t>(number.length)});
    return true;
}

void writeLabel(const ImportRecord& record, const ImportPlan& plan, LineBuffer& lines, Written& written) {
    const std::string_view label =
        plan.labelColumn >= 0 ? record.cells[plan.labelColumn].text : std::string_view();
    TableText text;
    cleanLabel(label, plan.target, written.rows, text);
    written.cutLabels += text.isCut;
    written.lackingLabels += text.lacks;
    lines.put(text.view());
}

void tellWritten(const Written& written, ImportMessages& messages) {
    if (written.cutLabels > 0) {
        messages.note("%lld labels are shortened to 62 bytes and end in ~ and the number of the sample",
                      static_cast<long long>(written.cutLabels));
    }
    if (written.lackingLabels > 0) {
        messages.warn("%lld labels have characters that the encoding of the table lacks; ? stands for them",
                      static_cast<long long>(written.lackingLabels));
    }
}

} // namespace

ErrorCode writeTable(ByteSource& source, const ImportOptions& options, const ImportSurvey& survey,
                     const ImportPlan& plan, Index mostRows, TableSink& sink, ImportMessages& messages) {
    LineBuffer lines;
    TableRows rows;
    MissingTexts missing;
    ErrorCode code = missing.set(options);
    if (code == success) code = lines.allocate((plan.variables + 1) * Index{textSlotSize} + 1);
    if (code == success) code = rows.open(source, survey.form);
    if (code != success) return code;
    lines.put("label");
    for (Index k = 0; k < plan.variables; ++k) {
        lines.put(",");
        lines.put(plan.names[k]);
    }
    const Index expected = std::min(mostRows, survey.rows);
    bool sinks = lines.endLine(sink), same = true;
    Written written;
    ImportRecord record;
    while (sinks && same && written.rows < expected && rows.next(record)) {
        if (rows.isHeader()) continue;
        ++written.rows;
        writeLabel(record, plan, lines, written);
        for (Index j = 0; same && j < survey.form.width; ++j) {
            if (plan.uses[j] != ColumnUse::number && plan.uses[j] != ColumnUse::category) continue;
            lines.put(",");
            same = writeCell(record.cells[j].text, missing, survey, j, plan, lines);
        }
        sinks = lines.endLine(sink);
    }
    if (same && written.rows < expected) same = false;
    if (sinks && same) sinks = lines.flush(sink);
    if (!same) messages.refuse("the file changed while it was read");
    if (!sinks) messages.refuse("the table cannot be written");
    if (!same || !sinks) return illegalData;
    tellWritten(written, messages);
    return success;
}

bool writeCodebook(const ImportSurvey& survey, const ImportPlan& plan, TableSink& sink) {
    bool sinks = sink.write("variable,category,text\n");
    Index variable = 0;
    for (Index j = 0; j < survey.form.width; ++j) {
        if (plan.uses[j] != ColumnUse::number && plan.uses[j] != ColumnUse::category) continue;
        const char* const name = plan.names[variable++];
        if (plan.uses[j] == ColumnUse::number) continue;
        const std::int32_t list = survey.columns[j].texts;
        for (Index k = 0; sinks && k < survey.texts.count(list); ++k) {
            TableText text;
            cleanText(survey.texts.text(list, k), plan.target, textSlotSize - 1, text);
            char line[200];
            const int length = std::snprintf(line, sizeof line, "%s,%lld,%s\n", name,
                                             static_cast<long long>(k) + 1, text.text);
            sinks = sink.write({line, static_cast<std::size_t>(length)});
        }
    }
    return sinks;
}
