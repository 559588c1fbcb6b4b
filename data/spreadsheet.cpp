#include "data/spreadsheet.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

// No spreadsheet has more. A sheet that goes on and on is cut here, so that a scan always ends.
constexpr std::int32_t mostRows = 1'048'576;
constexpr std::int32_t mostColumns = 16'384;

// A cell's text without its line end.
ErrorCode requestText(Workbook& workbook, std::int32_t row, std::int32_t col, CellReply& reply) {
    char item[32];
    std::snprintf(item, sizeof item, "R%dC%d", row, col);
    reply = {};
    const ErrorCode code = workbook.requestCell(item, reply);
    reply.text[std::strcspn(reply.text, "\r\n")] = '\0';
    return code;
}

bool isEmpty(const CellReply& reply) {
    return reply.text[0] == '\0';
}

bool isComment(const CellReply& reply) {
    return reply.text[0] == ';' || std::strncmp(reply.text, "//", 2) == 0;
}

void store(const CellReply& reply, TextSlot& slot) {
    std::snprintf(slot.text, textSlotSize, "%.*s", static_cast<int>(textSlotSize - 1), reply.text);
}

ErrorCode requireCells(Workbook& workbook) {
    CellReply reply;
    const ErrorCode code = requestText(workbook, 1, 1, reply);
    return code == success && isEmpty(reply) ? ddeEmptySheet : code;
}

// Rows down to the first empty cell of column A, without the comments.
ErrorCode countRows(Workbook& workbook, std::int32_t& rows) {
    rows = 0;
    for (std::int32_t row = 1; row <= mostRows; ++row) {
        CellReply reply;
        const ErrorCode code = requestText(workbook, row, 1, reply);
        if (code != success) return code;
        if (isEmpty(reply)) break;
        if (!isComment(reply)) ++rows;
    }
    return success;
}

// Cells of one row before its first empty one; none when there is a comment mark among them.
ErrorCode countCells(Workbook& workbook, std::int32_t row, std::int32_t& cells) {
    for (cells = 0; cells < mostColumns; ++cells) {
        CellReply reply;
        const ErrorCode code = requestText(workbook, row, cells + 1, reply);
        if (code != success) return code;
        if (isComment(reply)) cells = 0;
        if (isComment(reply) || isEmpty(reply)) break;
    }
    return success;
}

} // namespace

void putReply(CellReply& reply, const char* bytes, std::size_t count) {
    const char* const end = std::find(bytes, bytes + std::min(count, CellReply::size), '\0');
    const char* const first = std::find_if(bytes, end, [](char each) { return each != ' '; });
    *std::copy(first, end, reply.text) = '\0';
}

ErrorCode measureSheet(Workbook& workbook, SheetSize& size) {
    ErrorCode code = requireCells(workbook);
    // Rows first: without any there is no header to look for in what may be a million blank rows.
    if (code == success) code = countRows(workbook, size.rows);
    if (code == success && size.rows == 0) code = ddeEmptySheet;
    size.cols = 0;
    for (std::int32_t row = 1; code == success && size.cols == 0; ++row) {
        code = row <= mostRows ? countCells(workbook, row, size.cols) : ddeEmptySheet;
    }
    return code;
}

ErrorCode fetchSheet(Workbook& workbook, const SheetSize& size, Block<TextSlot>& cells,
                     void (*showPercent)(void* context, int percent), void* context) {
    const ErrorCode first = requireCells(workbook);
    if (first != success) return first;
    TextSlot* slot = cells.data();
    std::int32_t sheetRow = 0;
    for (std::int32_t row = 0; row < size.rows; ++row) {
        CellReply reply;
        do {
            if (++sheetRow > mostRows) return ddeNoData;
            const ErrorCode code = requestText(workbook, sheetRow, 1, reply);
            if (code != success) return code;
        } while (isComment(reply));
        store(reply, *slot++);
        for (std::int32_t col = 2; col <= size.cols; ++col) {
            const ErrorCode code = requestText(workbook, sheetRow, col, reply);
            if (code != success) return code;
            store(reply, *slot++);
        }
        showPercent(context, static_cast<int>((row + 1) * 100LL / size.rows));
    }
    return success;
}
