#pragma once

#include <cstddef>

#include "data/cell_table.h"

// The spreadsheet link.
constexpr ErrorCode ddeNotInitialized = 1;
constexpr ErrorCode ddeNotLinked = 2;
constexpr ErrorCode ddeServiceKept = 4;
constexpr ErrorCode ddeTopicKept = 8;
constexpr ErrorCode ddeNotDisconnected = 16;
constexpr ErrorCode ddeNoService = 32;
constexpr ErrorCode ddeNotExited = 64;
constexpr ErrorCode ddeNotInitiated = 256; // there is no conversation, or it was lost
constexpr ErrorCode ddeNoData = 512;       // a request failed
constexpr ErrorCode ddeEmptySheet = 1024;

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

    // Begins the conversation about the workbook at `path`. Success does not promise that there is one: the
    // requests tell.
    virtual ErrorCode connectWorkbook(const char* path) = 0;
    // Asks for the cell with a name like "R12C3". ddeNotInitiated without a conversation, ddeNoData when the
    // request fails.
    virtual ErrorCode requestCell(const char* item, CellReply& reply) = 0;
    // Ends it: ddeNoService when there was none, else the sum of ddeServiceKept, ddeTopicKept and
    // ddeNotDisconnected.
    virtual ErrorCode disconnectWorkbook() = 0;
};

// Rows and columns of the table in a sheet, header and labels included.
struct SheetSize {
    std::int32_t rows = 0;
    std::int32_t cols = 0;
};

// Finds the table in the sheet. Its columns end before the first empty cell of the header, its rows before
// the first empty cell in column A; rows that begin ";" or "//" are comments. Returns success (both counts
// are then at least 1), ddeEmptySheet, or the code of a request that failed.
[[nodiscard]] ErrorCode measureSheet(Workbook& workbook, SheetSize& size);

// Fills `cells`, which has size.rows x size.cols zero slots, from the sheet: texts up to their line end and
// of at most 62 characters. Calls showPercent(context, percent) after each row. Returns success,
// ddeEmptySheet, ddeNoData when rows have become comments since they were counted, or the code of a
// request that failed.
[[nodiscard]] ErrorCode fetchSheet(Workbook& workbook, const SheetSize& size, Block<TextSlot>& cells,
                                   void (*showPercent)(void* context, int percent), void* context);
