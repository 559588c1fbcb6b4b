#include "report/markup_report.h"

#include <algorithm>

#include "report/file_text.h"

namespace {

void appendParagraph(TextBuffer& document, std::string_view text) {
    document.append("\n");
    appendMarkdownText(document, text);
    document.append("\n");
}

void appendCell(TextBuffer& document, std::string_view text) {
    document.append(" ");
    appendMarkdownText(document, text);
    document.append(" |");
}

// Readers of Markdown drop the cells that stand beyond the head, so each row is as wide as the widest.
void appendRow(TextBuffer& document, const ReportStructure& structure, const StructureRow& row, Index width) {
    document.append("|");
    appendCell(document, row.mark.shown());
    appendCell(document, row.label.shown());
    for (const StructureCell& cell : structure.cells(row)) appendCell(document, cell.text.shown());
    for (Index k = row.cellCount; k < width; ++k) appendCell(document, "");
    document.append("\n");
}

void appendTable(TextBuffer& document, const ReportStructure& structure, const StructureTable& table) {
    if (table.caption.length > 0) {
        document.append("\n**");
        appendMarkdownText(document, table.caption.whole());
        document.append("**\n");
    }
    for (const StructureText& note : structure.notes(table)) appendParagraph(document, note.whole());
    if (table.rowCount == 0) return;

    const StructureRow* const head = structure.head(table);
    Index width = head != nullptr ? head->cellCount : 0;
    for (const StructureRow& row : structure.rows(table)) width = std::max(width, row.cellCount);
    document.append("\n");
    appendRow(document, structure, head != nullptr ? *head : StructureRow(), width);
    document.append("| ---: | ---: |");
    for (Index k = 0; k < width; ++k) document.append(" ---: |");
    document.append("\n");
    for (const StructureRow& row : structure.rows(table)) appendRow(document, structure, row, width);
}

} // namespace

void writeMarkdownReport(const ReportStructure& structure, TextBuffer& document) {
    for (const StructurePart& part : structure.parts()) {
        document.append(&part == structure.parts().data() ? "# " : "\n# ");
        appendMarkdownText(document, part.title.whole());
        document.append("\n");
        for (const StructureText& line : structure.options(part)) appendParagraph(document, line.whole());
        for (const StructureTable& table : structure.tables(part)) appendTable(document, structure, table);
    }
}

void writeMarkdownFailure(std::string_view failure, TextBuffer& document) {
    appendMarkdownText(document, failure);
    document.append("\n");
}

void appendMarkdownText(TextBuffer& document, std::string_view text) {
    constexpr std::u32string_view marks = U"\\`*_[]<>|&~#$";
    while (!text.empty()) {
        const char32_t character = withoutControls(takeFileCharacter(text));
        if (marks.find(character) != std::u32string_view::npos) document.append("\\");
        appendCharacter(document, character);
    }
}
