#include "data/moments/delimited_cells.h"

#include <algorithm>
#include <cstring>

#include "data/byte_source.h"
#include "data/doubts.h"

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

// Takes the cell that begins at `at` and ends it; null where its quotes do not end. `at` is left at what
// stands behind the cell: a comma, a newline or the end.
const char* takeCell(char*& at, const char* end, char& behind, long long& line) {
    while (at < end && isBlank(*at)) ++at;
    char* const first = at;
    char* last = at; // of the text that is kept, which quotes shorten
    if (at < end && *at == '"') {
        for (++at;; ++at) {
            if (at >= end) return nullptr;
            if (*at == '"' && !(at + 1 < end && at[1] == '"')) break;
            if (*at == '"') ++at;
            if (*at == '\n') ++line;
            *last++ = *at;
        }
        ++at;
        while (at < end && *at != ',' && *at != '\n') ++at;
    } else {
        while (at < end && *at != ',' && *at != '\n') ++at;
        last = at;
        while (last > first && isBlank(last[-1])) --last;
    }
    behind = at < end ? *at : '\n';
    *last = '\0';
    return first;
}

} // namespace

ErrorCode DelimitedCells::divide(char* bytes, Index length, MomentsRefusal& refusal) {
    cells_.clear();
    rows_.clear();
    if (std::memchr(bytes, '\0', static_cast<std::size_t>(length)) != nullptr)
        return refuseMoments(refusal, MomentsFault::notText);
    char* at = bytes;
    const char* const end = bytes + length;
    if (std::string_view(at, static_cast<std::size_t>(length)).starts_with(byteOrderMark))
        at += byteOrderMark.size();
    for (long long line = 1; at < end; ++line) {
        char* const next = std::find(at, bytes + length, '\n');
        const bool isEmpty = std::all_of(at, next, isBlank);
        if (isEmpty || isComment({at, static_cast<std::size_t>(next - at)})) {
            at = next + 1;
            continue;
        }
        Row row = {cells_.size(), 0, line};
        for (char behind = ','; behind == ','; ++at) {
            const char* const cell = takeCell(at, end, behind, line);
            refusal.line = row.line;
            if (cell == nullptr) return refuseMoments(refusal, MomentsFault::openQuotes);
            if (!cells_.add(cell)) return outOfMemory;
            ++row.count;
        }
        if (!rows_.add(row)) return outOfMemory;
    }
    refusal.line = 0;
    return rows_.size() > 1 ? success : refuseMoments(refusal, MomentsFault::empty);
}
