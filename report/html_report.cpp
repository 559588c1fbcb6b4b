#include "report/markup_report.h"

#include "report/file_text.h"

namespace {

constexpr const char* pageStart = "<!DOCTYPE html>\n"
                                  "<html lang=\"en\">\n"
                                  "<head>\n"
                                  "<meta charset=\"utf-8\">\n"
                                  "<title>";
// A dendrogram stands on its lines.
constexpr const char* styles = "</title>\n"
                               "<style>\n"
                               "body { font-family: sans-serif; }\n"
                               "caption p { margin: 0; font-weight: normal; }\n"
                               "table { border-collapse: collapse; margin: 1.5em 0; }\n"
                               "caption { font-weight: bold; text-align: left; padding: 0.3em 0; }\n"
                               "th, td { text-align: right; padding: 0.1em 0.6em; font-weight: normal; }\n"
                               "td { font-family: monospace; white-space: pre; }\n"
                               "td.text { text-align: left; }\n"
                               "thead th { border-bottom: 1px solid; }\n"
                               "</style>\n"
                               "</head>\n"
                               "<body>\n";
constexpr const char* pageEnd = "</body>\n</html>\n";

void appendElement(TextBuffer& document, const char* start, std::string_view text, const char* end) {
    document.append(start);
    appendHtmlText(document, text);
    document.append(end);
}

void appendHead(TextBuffer& document, const ReportStructure& structure, const StructureRow& head) {
    document.append("<thead>\n<tr>");
    appendElement(document, "<th>", head.mark.shown(), "</th>");
    appendElement(document, "<th>", head.label.shown(), "</th>");
    for (const StructureCell& cell : structure.cells(head)) {
        appendElement(document, "<th scope=\"col\">", cell.text.shown(), "</th>");
    }
    document.append("</tr>\n</thead>\n");
}

void appendRow(TextBuffer& document, const ReportStructure& structure, const StructureRow& row) {
    document.append("<tr>");
    appendElement(document, "<td>", row.mark.shown(), "</td>");
    appendElement(document, "<th scope=\"row\">", row.label.shown(), "</th>");
    for (const StructureCell& cell : structure.cells(row)) {
        const bool isText = cell.kind == StructureCell::Kind::text;
        appendElement(document, isText ? "<td class=\"text\">" : "<td>", cell.text.shown(), "</td>");
    }
    document.append("</tr>\n");
}

// The caption of a table with its notes; of one without rows they stand in its place.
void appendCaption(TextBuffer& document, const ReportStructure& structure, const StructureTable& table,
                   const char* start, const char* end) {
    if (table.caption.length == 0) return;
    appendElement(document, start, table.caption.whole(), end);
    for (const StructureText& note : structure.notes(table)) {
        appendElement(document, "<p>", note.whole(), "</p>\n");
    }
}

void appendTable(TextBuffer& document, const ReportStructure& structure, const StructureTable& table) {
    if (table.rowCount == 0) {
        appendCaption(document, structure, table, "<p>", "</p>\n");
        return;
    }
    document.append("<table>\n");
    if (table.caption.length > 0) {
        document.append("<caption>");
        appendCaption(document, structure, table, "", "\n");
        document.append("</caption>\n");
    }
    const StructureRow* const head = structure.head(table);
    if (head != nullptr) appendHead(document, structure, *head);
    document.append("<tbody>\n");
    for (const StructureRow& row : structure.rows(table)) appendRow(document, structure, row);
    document.append("</tbody>\n</table>\n");
}

void appendPage(TextBuffer& document, std::string_view title) {
    document.append(pageStart);
    appendHtmlText(document, title);
    document.append(styles);
}

} // namespace

void writeHtmlReport(const ReportStructure& structure, TextBuffer& document) {
    const std::span<const StructurePart> parts = structure.parts();
    appendPage(document, parts.empty() ? "" : parts.front().title.whole());
    for (const StructurePart& part : parts) {
        appendElement(document, "<h1>", part.title.whole(), "</h1>\n");
        for (const StructureText& line : structure.options(part)) {
            appendElement(document, "<p>", line.whole(), "</p>\n");
        }
        for (const StructureTable& table : structure.tables(part)) appendTable(document, structure, table);
    }
    document.append(pageEnd);
}

void writeHtmlFailure(std::string_view failure, TextBuffer& document) {
    appendPage(document, "error");
    appendElement(document, "<p>", failure, "</p>\n");
    document.append(pageEnd);
}

void appendHtmlText(TextBuffer& document, std::string_view text) {
    while (!text.empty()) {
        const char32_t character = withoutControls(takeFileCharacter(text));
        switch (character) {
        case '<':
            document.append("&lt;");
            break;
        case '>':
            document.append("&gt;");
            break;
        case '&':
            document.append("&amp;");
            break;
        case '"':
            document.append("&quot;");
            break;
        default:
            appendCharacter(document, character);
        }
    }
}
