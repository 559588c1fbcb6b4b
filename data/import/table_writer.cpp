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

bool arePlainNumbers(const ColumnSurvey& column, const NumberForm& form) {
    return form.decimal == DecimalSign::point && !form.thousandsMark && !form.thousandsSpace &&
           column.widest < Index{textSlotSize} && column.dressed == 0;
}

void writeCategory(std::string_view cell, const ImportSurvey& survey, const ColumnSurvey& column,
                   LineBuffer& lines) {
    const Index category = survey.texts.find(column.texts, cell);
    if (category < 0) {
        lines.put("NA"); // no finite number among the texts
    } else {
        lines.advance(std::to_chars(lines.at(), lines.at() + 8, category + 1).ptr - lines.at());
    }
}

// What is no finite number is so in columns alone where the survey found it.
void writeNumberCell(std::string_view cell, const ColumnSurvey& column, const NumberForm& form,
                     LineBuffer& lines) {
    if (column.count(CellShape::noValue) > 0 && shapeOf(cell) == CellShape::noValue) {
        lines.put("NA");
    } else if (arePlainNumbers(column, form)) {
        lines.put(cell);
    } else {
        PlainNumber number;
        writeNumber(cell, form, number);
        lines.put({number.text, static_cast<std::size_t>(number.length)});
    }
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
        messages.note("labels shortened to 62 bytes, which end in ~ and the number of the sample: %lld",
                      static_cast<long long>(written.cutLabels));
    }
    if (written.lackingLabels > 0) {
        messages.warn("labels with characters that the encoding of the table lacks, which ? stands for: %lld",
                      static_cast<long long>(written.lackingLabels));
    }
}

} // namespace

ErrorCode writeTable(ByteSource& source, const ImportOptions& options, const ImportSurvey& survey,
                     const ImportPlan& plan, Index mostRows, TableSink& sink, ImportMessages& messages) {
    LineBuffer lines;
    ImportRows rows;
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
    bool sinks = lines.endLine(sink);
    Written written;
    ImportRecord record;
    while (sinks && written.rows < expected && rows.next(record)) {
        if (rows.isHeader()) continue;
        ++written.rows;
        writeLabel(record, plan, lines, written);
        for (Index j = 0; j < survey.form.width; ++j) {
            const ColumnUse use = plan.uses[j];
            if (!isVariable(use)) continue;
            lines.put(",");
            const std::string_view cell = record.cells[j].text;
            if (missing.has(cell)) {
                lines.put("NA");
            } else if (use == ColumnUse::category) {
                writeCategory(cell, survey, survey.columns[j], lines);
            } else {
                writeNumberCell(cell, survey.columns[j], plan.numbers, lines);
            }
        }
        sinks = lines.endLine(sink);
    }
    // To the end of the file, so that all of it is compared.
    const bool isWhole = expected == survey.rows && !survey.isCut;
    const bool isMore = isWhole && sinks && rows.next(record);
    if (rows.fault() == RecordFault::noMemory) return outOfMemory;
    const bool same = written.rows == expected && !isMore && (!isWhole || rows.checksum() == survey.checksum);
    if (sinks && same) sinks = lines.flush(sink);
    if (!sinks) {
        messages.refuse("the table cannot be written");
    } else if (!same) {
        messages.refuse("the file changed while it was read");
    }
    if (!same || !sinks) return illegalData;
    tellWritten(written, messages);
    return success;
}

bool writeCodebook(const ImportSurvey& survey, const ImportPlan& plan, TableSink& sink) {
    bool sinks = sink.write("variable,category,text\n");
    Index variable = 0;
    for (Index j = 0; j < survey.form.width; ++j) {
        if (!isVariable(plan.uses[j])) continue;
        const char* const name = plan.names[variable++];
        if (plan.uses[j] == ColumnUse::number) continue;
        const std::int32_t list = survey.columns[j].texts;
        for (Index k = 0; sinks && k < survey.texts.count(list); ++k) {
            char line[1000]; // a name, a number and a text of 200 bytes
            int length = std::snprintf(line, sizeof line, "%s,%lld,", name, static_cast<long long>(k) + 1);
            length += static_cast<int>(quoteText(survey.texts.text(list, k), plan.target, line + length));
            line[length++] = '\n';
            sinks = sink.write({line, static_cast<std::size_t>(length)});
        }
    }
    return sinks;
}
