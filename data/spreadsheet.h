#pragma once

#include <cstddef>

#include "data/cell_table.h"

// What came of the spreadsheet link; ending a conversation can give several of them, combined by |.
enum class LinkCode : std::int32_t {
    done = 0,
    notInitialized = 1,
    notLinked = 2,
    serviceKept = 4,
    topicKept = 8,
    notDisconnected = 16,
    noService = 32,
    notExited = 64,
    notInitiated = 256, // there is no conversation, or it was lost
    noData = 512,       // a request failed
    emptySheet = 1024,
};

constexpr LinkCode operator|(LinkCode a, LinkCode b) {
    return static_cast<LinkCode>(static_cast<std::int32_t>(a) | static_cast<std::int32_t>(b));
}
constexpr bool holds(LinkCode codes, LinkCode code) {
    return (static_cast<std::int32_t>(codes) & static_cast<std::int32_t>(code)) != 0;
}

// The text that a spreadsheet answers for one cell, with its line end if it has one.
struct CellReply {
    static constexpr std::size_t size = 64;
    char text[size + 1];
};

// Takes over the first 64 of `count` bytes, up to a NUL and without leading spaces.
void putReply(CellReply& reply, const char* bytes, std::size_t count);

// A workbook that is open in a spreadsheet program, and the conversation with it.
class Workbook {
public:
    virtual ~Workbook() = default;

    // Begins the conversation about the workbook at `path`. `done` does not promise that there is one: the
    // requests tell.
    virtual LinkCode connectWorkbook(const char* path) = 0;
    // Asks for the cell with a name like "R12C3". notInitiated without a conversation, noData when the
    // request fails.
    virtual LinkCode requestCell(const char* item, CellReply& reply) = 0;
    // Ends it: noService when there was none, else the sum of serviceKept, topicKept and
    // notDisconnected.
    virtual LinkCode disconnectWorkbook() = 0;
};

// Rows and columns of the table in a sheet, header and labels included.
struct SheetSize {
    std::int32_t rows = 0;
    std::int32_t cols = 0;
};

// Finds the table in the sheet. Its columns end before the first empty cell of the header, its rows before
// the first empty cell in column A; rows that begin ";" or "//" are comments. Returns done (both counts
// are then at least 1), emptySheet, or the code of a request that failed.
[[nodiscard]] LinkCode measureSheet(Workbook& workbook, SheetSize& size);

// Fills `cells`, which has room for size.rows x size.cols texts, from the sheet: texts up to their line end
// and of at most 62 characters. Calls showPercent(context, percent) after each row. Returns done,
// emptySheet, noData when rows have become comments since they were counted, or the code of a
// request that failed.
[[nodiscard]] LinkCode fetchSheet(Workbook& workbook, const SheetSize& size, TextList& cells,
                                  void (*showPercent)(void* context, int percent), void* context);
