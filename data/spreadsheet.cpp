#include "data/spreadsheet.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "data/doubts.h"

namespace {

// No spreadsheet has more. A sheet that goes on and on is cut here, so that a scan always ends.
constexpr std::int32_t mostRows = 1'048'576;
constexpr std::int32_t mostColumns = 16'384;

// A cell's text without its line end.
LinkCode requestText(Workbook& workbook, std::int32_t row, std::int32_t col, CellReply& reply) {
    char item[32];
    std::snprintf(item, sizeof item, "R%dC%d", row, col);
    reply = {};
    const LinkCode code = workbook.requestCell(item, reply);
    reply.text[std::strcspn(reply.text, "\r\n")] = '\0';
    return code;
}

bool isEmpty(const CellReply& reply) {
    return reply.text[0] == '\0';
}

LinkCode requireCells(Workbook& workbook) {
    CellReply reply;
    const LinkCode code = requestText(workbook, 1, 1, reply);
    return code == LinkCode::done && isEmpty(reply) ? LinkCode::emptySheet : code;
}

// Rows down to the first empty cell of column A, without the comments.
LinkCode countRows(Workbook& workbook, std::int32_t& rows) {
    rows = 0;
    for (std::int32_t row = 1; row <= mostRows; ++row) {
        CellReply reply;
        const LinkCode code = requestText(workbook, row, 1, reply);
        if (code != LinkCode::done) return code;
        if (isEmpty(reply)) break;
        if (!isComment(reply.text)) ++rows;
    }
    return LinkCode::done;
}

// Cells of one row before its first empty one; none when there is a comment mark among them.
LinkCode countCells(Workbook& workbook, std::int32_t row, std::int32_t& cells) {
    for (cells = 0; cells < mostColumns; ++cells) {
        CellReply reply;
        const LinkCode code = requestText(workbook, row, cells + 1, reply);
        if (code != LinkCode::done) return code;
        if (isComment(reply.text)) cells = 0;
        if (isComment(reply.text) || isEmpty(reply)) break;
    }
    return LinkCode::done;
}

} // namespace

void putReply(CellReply& reply, const char* bytes, std::size_t count) {
    const char* const end = std::find(bytes, bytes + std::min(count, CellReply::size), '\0');
    const char* const first = std::find_if(bytes, end, [](char each) { return each != ' '; });
    *std::copy(first, end, reply.text) = '\0';
}

LinkCode measureSheet(Workbook& workbook, SheetSize& size) {
    LinkCode code = requireCells(workbook);
    // Rows first: without any there is no header to look for in what may be a million blank rows.
    if (code == LinkCode::done) code = countRows(workbook, size.rows);
    if (code == LinkCode::done && size.rows == 0) code = LinkCode::emptySheet;
    size.cols = 0;
    for (std::int32_t row = 1; code == LinkCode::done && size.cols == 0; ++row) {
        code = row <= mostRows ? countCells(workbook, row, size.cols) : LinkCode::emptySheet;
    }
    return code;
}

LinkCode fetchSheet(Workbook& workbook, const SheetSize& size, TextList& cells,
                    void (*showPercent)(void* context, int percent), void* context) {
    const LinkCode first = requireCells(workbook);
    if (first != LinkCode::done) return first;
    Index cell = 0;
    std::int32_t sheetRow = 0;
    for (std::int32_t row = 0; row < size.rows; ++row) {
        CellReply reply;
        do {
            if (++sheetRow > mostRows) return LinkCode::noData;
            const LinkCode code = requestText(workbook, sheetRow, 1, reply);
            if (code != LinkCode::done) return code;
        } while (isComment(reply.text));
        if (cell == 0) {
            cells.setReplaceable(cell++, reply.text);
        } else {
            cells.set(cell++, reply.text);
        }
        for (std::int32_t col = 2; col <= size.cols; ++col) {
            const LinkCode code = requestText(workbook, sheetRow, col, reply);
            if (code != LinkCode::done) return code;
            cells.set(cell++, reply.text);
        }
        showPercent(context, static_cast<int>((row + 1) * 100LL / size.rows));
    }
    return LinkCode::done;
}
