#pragma once

#include "numeric/growing_list.h"
#include "report/text_buffer.h"

// What a report is made of, for outputs other than its text: parts (the analysis, then each prediction) with
// a title, lines of options and tables; a table with a caption, notes, a head and rows; a row with a number,
// a label and cells. Texts are whole and without the blanks around them, and numbers have their full
// precision; beside that stands what the text of the report shows of them.

// A text of a structure, for as long as that has it.
struct StructureText {
    const char* first = "";
    Index length = 0;
    Index shownLength = 0; // so many bytes of it are printed

    std::string_view whole() const { return {first, static_cast<std::size_t>(length)}; }
    std::string_view shown() const { return {first, static_cast<std::size_t>(shownLength)}; }
};

struct StructureCell {
    enum class Kind { text, real, whole };

    Kind kind = Kind::text;
    double value = 0.0;
    StructureText text = {}; // of a number as it is printed
};

// The head of a table is a row whose cells are headings.
struct StructureRow {
    static constexpr Index unnumbered = -1;

    Index number = unnumbered; // 0 where it does not count
    StructureText mark = {};   // what is printed for the number
    StructureText label = {};
    Index firstCell = 0;
    Index cellCount = 0;
};

struct StructureTable {
    StructureText caption = {};
    Index firstNote = 0;
    Index noteCount = 0;
    bool hasHead = false; // the first row is the head
    Index firstRow = 0;
    Index rowCount = 0;
};

struct StructurePart {
    StructureText title = {};
    Index firstOption = 0;
    Index optionCount = 0;
    Index firstTable = 0;
    Index tableCount = 0;
};

// Filled by report/cells.h while a report is written. What no memory is left for is missing, and
// ranOutOfMemory tells so.
class ReportStructure {
public:
    [[nodiscard]] ErrorCode allocate();
    void clear();

    void addTitle(std::string_view title);
    void addOption(std::string_view line); // before any table
    // A line above a table; one that follows another without a row in between is a note.
    void addCaption(std::string_view text);
    void endTable() { tableIsOpen_ = false; }
    // A head begins a table unless a caption has; cells follow.
    void startHead(std::string_view label, int labelWidth);
    void startRow(Index number, std::string_view mark, std::string_view label, int labelWidth);
    // Of a text of which at most `width` bytes are printed.
    void addText(std::string_view text, int width);
    void addNumber(StructureCell::Kind kind, double value, std::string_view printed);

    bool ranOutOfMemory() const { return outOfMemory_ || texts_.ranOutOfMemory(); }

    std::span<const StructurePart> parts() const { return parts_.all(); }
    std::span<const StructureText> options(const StructurePart& part) const;
    std::span<const StructureTable> tables(const StructurePart& part) const;
    std::span<const StructureText> notes(const StructureTable& table) const;
    const StructureRow* head(const StructureTable& table) const;           // null when it has none
    std::span<const StructureRow> rows(const StructureTable& table) const; // without the head
    std::span<const StructureCell> cells(const StructureRow& row) const;

private:
    StructureText keep(std::string_view text, Index width);
    StructurePart* part();
    StructureTable* openTable();

    TextBuffer texts_;
    GrowingList<StructurePart> parts_;
    GrowingList<StructureText> lines_; // options and notes
    GrowingList<StructureTable> tables_;
    GrowingList<StructureRow> rows_;
    GrowingList<StructureCell> cells_;
    bool tableIsOpen_ = false;
    bool outOfMemory_ = false;
};
