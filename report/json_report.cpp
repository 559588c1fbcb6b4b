#include "report/json_report.h"

#include <charconv>
#include <chrono>
#include <cmath>

#include "report/file_text.h"

namespace {

// Calls `write` with each item, commas between.
template <class Items, class Write>
void appendList(TextBuffer& document, const Items& items, const char* separator, Write write) {
    const char* before = "";
    for (const auto& item : items) {
        document.append(before);
        write(item);
        before = separator;
    }
}

void appendKey(TextBuffer& document, const char* indent, const char* key) {
    document.append(indent);
    document.append("\"");
    document.append(key);
    document.append("\": ");
}

void appendMember(TextBuffer& document, const char* key, std::string_view text) {
    appendKey(document, "  ", key);
    appendJsonText(document, text);
    document.append(",\n");
}

void appendListMember(TextBuffer& document, const char* key, std::string_view texts) {
    const char* before = "[";
    appendKey(document, "  ", key);
    if (texts.empty()) document.append(before);
    while (!texts.empty()) {
        const std::size_t end = texts.find('\0');
        document.append(before);
        appendJsonText(document, texts.substr(0, end));
        texts.remove_prefix(end + 1);
        before = ", ";
    }
    document.append("],\n");
}

void appendTexts(TextBuffer& document, std::span<const StructureText> texts) {
    document.append("[");
    appendList(document, texts, ", ",
               [&](const StructureText& text) { appendJsonText(document, text.whole()); });
    document.append("]");
}

// ISO 8601 in UTC.
void appendTime(TextBuffer& document, long long seconds) {
    using namespace std::chrono;
    const sys_seconds time{std::chrono::seconds(seconds)};
    const sys_days day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(time - day);
    document.appendFormat("\"%04d-%02u-%02uT%02d:%02d:%02dZ\"", static_cast<int>(date.year()),
                          static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                          static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                          static_cast<int>(clock.seconds().count()));
}

void appendFile(TextBuffer& document, const FileFacts& file) {
    appendKey(document, "  ", "file");
    document.append("{\"path\": ");
    appendJsonText(document, file.path);
    document.append(", \"size\": ");
    if (file.isKnown) {
        document.appendInteger(file.size, 0);
        document.append(", \"modified\": ");
        appendTime(document, file.modified);
    } else {
        document.append("null, \"modified\": null");
    }
    document.append("},\n");
}

void appendFacts(TextBuffer& document, const ReportFacts& facts) {
    appendMember(document, "program", facts.program);
    appendMember(document, "version", facts.version);
    appendMember(document, "kind", facts.kind);
    appendMember(document, "numerics", facts.numerics);
    appendFile(document, facts.file);
    document.appendFormat("  \"samples\": %lld,\n", facts.samples);
    appendListMember(document, "variables", facts.variables);
    appendListMember(document, "excluded", facts.excluded);
    document.appendFormat(
        "  \"missing\": {\"policy\": \"%s\", \"cells\": %lld, \"samples_left_out\": %lld},\n", facts.missing,
        facts.missingCells, facts.samplesLeftOut);
    appendListMember(document, "arguments", facts.arguments);
    appendMember(document, "status", facts.status);
}

void appendCell(TextBuffer& document, const StructureCell& cell) {
    if (cell.kind == StructureCell::Kind::real) {
        appendJsonNumber(document, cell.value);
    } else if (cell.kind == StructureCell::Kind::whole) {
        document.append(cell.text.whole());
    } else if (cell.text.length > 0) {
        appendJsonText(document, cell.text.whole());
    } else {
        document.append("null");
    }
}

void appendRow(TextBuffer& document, const ReportStructure& structure, const StructureRow& row) {
    document.append("            {\"number\": ");
    if (row.number == StructureRow::unnumbered) {
        document.append("null");
    } else {
        document.appendInteger(row.number, 0);
    }
    document.append(", \"label\": ");
    appendJsonText(document, row.label.whole());
    document.append(", \"values\": [");
    appendList(document, structure.cells(row), ", ",
               [&](const StructureCell& cell) { appendCell(document, cell); });
    document.append("]}");
}

void appendHead(TextBuffer& document, const ReportStructure& structure, const StructureRow* head) {
    appendKey(document, "          ", "label");
    appendJsonText(document, head != nullptr ? head->label.whole() : "");
    document.append(",\n");
    appendKey(document, "          ", "columns");
    document.append("[");
    if (head != nullptr) {
        appendList(document, structure.cells(*head), ", ",
                   [&](const StructureCell& cell) { appendJsonText(document, cell.text.whole()); });
    }
    document.append("],\n");
}

void appendTable(TextBuffer& document, const ReportStructure& structure, const StructureTable& table) {
    const std::span<const StructureRow> rows = structure.rows(table);
    document.append("        {\n");
    appendKey(document, "          ", "caption");
    appendJsonText(document, table.caption.whole());
    document.append(",\n");
    appendKey(document, "          ", "notes");
    appendTexts(document, structure.notes(table));
    document.append(",\n");
    appendHead(document, structure, structure.head(table));
    appendKey(document, "          ", "rows");
    document.append(rows.empty() ? "[" : "[\n");
    appendList(document, rows, ",\n", [&](const StructureRow& row) { appendRow(document, structure, row); });
    document.append(rows.empty() ? "]\n        }" : "\n          ]\n        }");
}

void appendPart(TextBuffer& document, const ReportStructure& structure, const StructurePart& part) {
    const std::span<const StructureTable> tables = structure.tables(part);
    document.append("    {\n");
    appendKey(document, "      ", "title");
    appendJsonText(document, part.title.whole());
    document.append(",\n");
    appendKey(document, "      ", "options");
    appendTexts(document, structure.options(part));
    document.append(",\n");
    appendKey(document, "      ", "tables");
    document.append(tables.empty() ? "[" : "[\n");
    appendList(document, tables, ",\n",
               [&](const StructureTable& table) { appendTable(document, structure, table); });
    document.append(tables.empty() ? "]\n    }" : "\n      ]\n    }");
}

} // namespace

void writeJsonReport(const ReportFacts& facts, const ReportStructure& structure, TextBuffer& document) {
    document.append("{\n");
    appendFacts(document, facts);
    appendKey(document, "  ", "reports");
    document.append("[\n");
    appendList(document, structure.parts(), ",\n",
               [&](const StructurePart& part) { appendPart(document, structure, part); });
    document.append("\n  ]\n}\n");
}

void writeJsonFailure(std::string_view status, std::string_view failure, TextBuffer& document) {
    document.append("{\n");
    appendMember(document, "status", status);
    appendKey(document, "  ", "error");
    appendJsonText(document, failure);
    document.append("\n}\n");
}

void appendJsonText(TextBuffer& document, std::string_view text) {
    document.append("\"");
    while (!text.empty()) {
        const char32_t character = takeFileCharacter(text);
        if (character < ' ') {
            document.appendFormat("\\u%04x", static_cast<unsigned>(character));
            continue;
        }
        if (character == '"' || character == '\\') document.append("\\");
        appendCharacter(document, character);
    }
    document.append("\"");
}

void appendJsonNumber(TextBuffer& document, double value) {
    char digits[numberSize];
    if (std::isfinite(value)) {
        const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
        document.append({digits, static_cast<std::size_t>(end - digits)});
        // A zero without a point is a whole number to many readers, and those have no sign of it.
        if (value == 0.0 && std::signbit(value)) document.append(".0");
    } else {
        appendJsonText(document, formatNumber(value, 0, digits));
    }
}
