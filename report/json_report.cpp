#include "report/json_report.h"

#include <charconv>
#include <chrono>
#include <cmath>

#include "report/file_text.h"

namespace {

constexpr const char* outerIndent = "  ";

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

// A member of an object that stands on a line of its own, behind this indent; others follow.
void appendMember(TextBuffer& document, const char* indent, const char* key, std::string_view text) {
    appendKey(document, indent, key);
    appendJsonText(document, text);
    document.append(",\n");
}

void appendMember(TextBuffer& document, const char* indent, const char* key,
                  std::span<const StructureText> texts) {
    appendKey(document, indent, key);
    document.append("[");
    appendList(document, texts, ", ",
               [&](const StructureText& text) { appendJsonText(document, text.whole()); });
    document.append("],\n");
}

// The last member: objects on lines of their own.
template <class Items, class Write>
void appendObjects(TextBuffer& document, const char* indent, const char* key, const Items& items,
                   Write write) {
    appendKey(document, indent, key);
    document.append(items.empty() ? "[" : "[\n");
    appendList(document, items, ",\n", write);
    if (!items.empty()) {
        document.append("\n");
        document.append(indent);
    }
    document.append("]\n");
}

// A list of texts with a NUL behind each.
void appendListMember(TextBuffer& document, const char* key, std::string_view texts) {
    const char* before = "[";
    appendKey(document, outerIndent, key);
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
    appendKey(document, outerIndent, "file");
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
    appendMember(document, outerIndent, "program", facts.program);
    appendMember(document, outerIndent, "version", facts.version);
    appendMember(document, outerIndent, "kind", facts.kind);
    appendMember(document, outerIndent, "numerics", facts.numerics);
    appendFile(document, facts.file);
    document.appendFormat("  \"samples\": %lld,\n", facts.samples);
    appendListMember(document, "variables", facts.variables);
    appendListMember(document, "excluded", facts.excluded);
    appendKey(document, outerIndent, "missing");
    document.append("{\"policy\": ");
    appendJsonText(document, facts.missing);
    document.appendFormat(", \"cells\": %lld, \"samples_left_out\": %lld},\n", facts.missingCells,
                          facts.samplesLeftOut);
    appendListMember(document, "arguments", facts.arguments);
    appendMember(document, outerIndent, "status", facts.status);
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

void appendTable(TextBuffer& document, const ReportStructure& structure, const StructureTable& table) {
    constexpr const char* indent = "          ";
    const StructureRow* const head = structure.head(table);
    document.append("        {\n");
    appendMember(document, indent, "caption", table.caption.whole());
    appendMember(document, indent, "notes", structure.notes(table));
    appendMember(document, indent, "label", head != nullptr ? head->label.whole() : "");
    appendKey(document, indent, "columns");
    document.append("[");
    if (head != nullptr) {
        appendList(document, structure.cells(*head), ", ",
                   [&](const StructureCell& cell) { appendJsonText(document, cell.text.whole()); });
    }
    document.append("],\n");
    appendObjects(document, indent, "rows", structure.rows(table),
                  [&](const StructureRow& row) { appendRow(document, structure, row); });
    document.append("        }");
}

void appendPart(TextBuffer& document, const ReportStructure& structure, const StructurePart& part) {
    constexpr const char* indent = "      ";
    document.append("    {\n");
    appendMember(document, indent, "title", part.title.whole());
    appendMember(document, indent, "options", structure.options(part));
    appendObjects(document, indent, "tables", structure.tables(part),
                  [&](const StructureTable& table) { appendTable(document, structure, table); });
    document.append("    }");
}

} // namespace

void writeJsonReport(const ReportFacts& facts, const ReportStructure& structure, TextBuffer& document) {
    document.append("{\n");
    appendFacts(document, facts);
    appendObjects(document, outerIndent, "reports", structure.parts(),
                  [&](const StructurePart& part) { appendPart(document, structure, part); });
    document.append("}\n");
}

void writeJsonFailure(std::string_view status, std::string_view failure, TextBuffer& document) {
    document.append("{\n");
    appendMember(document, outerIndent, "status", status);
    appendKey(document, outerIndent, "error");
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
