#include "report/structure.h"

#include <algorithm>

#include "report/file_text.h"

namespace {

constexpr Index firstTextCapacity = 4096;

std::string_view withoutBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

ErrorCode ReportStructure::allocate() {
    return texts_.allocate(firstTextCapacity, TextBuffer::Growth::growing);
}

void ReportStructure::clear() {
    texts_.clear();
    parts_.clear();
    lines_.clear();
    tables_.clear();
    rows_.clear();
    cells_.clear();
    tableIsOpen_ = false;
    outOfMemory_ = false;
}

StructureText ReportStructure::keep(std::string_view text, Index width) {
    const std::string_view kept = withoutBlanks(text);
    const Index before = kept.empty() ? 0 : kept.data() - text.data();
    const std::size_t room = static_cast<std::size_t>(std::max<Index>(width - before, 0));
    const std::string_view shown = withoutBlanks(kept.substr(0, wholeCharacters(kept, room)));
    const char* const first = texts_.append(kept);
    if (first == nullptr) return {}; // texts_ tells so
    return {first, std::ssize(kept), std::ssize(shown)};
}

// The part that is being written, without a title when none was; null without memory.
StructurePart* ReportStructure::part() {
    if (parts_.size() == 0) addTitle("");
    return parts_.size() > 0 ? &parts_.last() : nullptr;
}

void ReportStructure::addTitle(std::string_view title) {
    tableIsOpen_ = false;
    outOfMemory_ |= !parts_.add({.title = keep(title, std::ssize(title)),
                                 .firstOption = lines_.size(),
                                 .firstTable = tables_.size()});
}

void ReportStructure::addOption(std::string_view line) {
    StructurePart* const owner = part();
    if (owner == nullptr || !lines_.add(keep(line, std::ssize(line)))) {
        outOfMemory_ = true;
        return;
    }
    ++owner->optionCount;
}

// The table that is being written, a new one when none is open; null without memory.
StructureTable* ReportStructure::openTable() {
    if (tableIsOpen_) return &tables_.last();
    StructurePart* const owner = part();
    if (owner == nullptr || !tables_.add({.firstNote = lines_.size(), .firstRow = rows_.size()})) {
        outOfMemory_ = true;
        return nullptr;
    }
    ++owner->tableCount;
    tableIsOpen_ = true;
    return &tables_.last();
}

void ReportStructure::addCaption(std::string_view text) {
    if (tableIsOpen_ && tables_.last().rowCount > 0) endTable();
    const bool isNote = tableIsOpen_;
    StructureTable* const table = openTable();
    if (table == nullptr) return;
    const StructureText line = keep(text, std::ssize(text));
    if (!isNote) {
        table->caption = line;
    } else if (lines_.add(line)) {
        ++table->noteCount;
    } else {
        outOfMemory_ = true;
    }
}

void ReportStructure::startHead(std::string_view label, int labelWidth) {
    if (tableIsOpen_ && tables_.last().rowCount > 0) endTable();
    startRow(StructureRow::unnumbered, "n", label, labelWidth);
    if (tableIsOpen_) tables_.last().hasHead = true;
}

void ReportStructure::startRow(Index number, std::string_view mark, std::string_view label, int labelWidth) {
    StructureTable* const table = openTable();
    if (table == nullptr) return;
    const bool added = rows_.add({.number = number,
                                  .mark = keep(mark, std::ssize(mark)),
                                  .label = keep(label, labelWidth),
                                  .firstCell = cells_.size()});
    outOfMemory_ |= !added;
    if (added) ++table->rowCount;
}

void ReportStructure::addText(std::string_view text, int width) {
    const bool added = cells_.add({.text = keep(text, width)});
    outOfMemory_ |= !added;
    if (added && rows_.size() > 0) ++rows_.last().cellCount;
}

void ReportStructure::addNumber(StructureCell::Kind kind, double value, std::string_view printed) {
    const bool added = cells_.add({kind, value, keep(printed, std::ssize(printed))});
    outOfMemory_ |= !added;
    if (added && rows_.size() > 0) ++rows_.last().cellCount;
}

std::span<const StructureText> ReportStructure::options(const StructurePart& part) const {
    return lines_.part(part.firstOption, part.optionCount);
}

std::span<const StructureTable> ReportStructure::tables(const StructurePart& part) const {
    return tables_.part(part.firstTable, part.tableCount);
}

std::span<const StructureText> ReportStructure::notes(const StructureTable& table) const {
    return lines_.part(table.firstNote, table.noteCount);
}

const StructureRow* ReportStructure::head(const StructureTable& table) const {
    return table.hasHead ? rows_.part(table.firstRow, 1).data() : nullptr;
}

std::span<const StructureRow> ReportStructure::rows(const StructureTable& table) const {
    const Index heads = table.hasHead ? 1 : 0;
    return rows_.part(table.firstRow + heads, table.rowCount - heads);
}

std::span<const StructureCell> ReportStructure::cells(const StructureRow& row) const {
    return cells_.part(row.firstCell, row.cellCount);
}
