#include "data/moments/engine_moments.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "data/letter_case.h"
#include "data/moments/moment_names.h"
#include "data/number.h"

namespace {

enum class Column { group, place, count, leftOut, name, mean, greatest, covariance };

// What a column holds: of the variable i, or of i and j (from 0).
struct ColumnRole {
    Column column = Column::count;
    Index i = 0;
    Index j = 0;
};

// What stands behind a prefix in any case; null without it.
const char* behind(const char* text, std::string_view prefix) {
    const std::string_view all(text);
    return all.size() > prefix.size() && equalButCase(all.substr(0, prefix.size()), prefix)
               ? text + prefix.size()
               : nullptr;
}

// Whether there is one row for each variable.
bool hasRowForEach(const DelimitedCells& cells) {
    for (Index c = 0; c < cells.cells(0); ++c) {
        if (equalButCase(cells.cell(0, c), "mean")) return true;
    }
    return false;
}

class EngineReader {
public:
    EngineReader(const DelimitedCells& cells, MomentTable& table, MomentsRefusal& refusal)
        : cells_(cells), table_(table), refusal_(refusal), isTall_(hasRowForEach(cells)) {}

    ErrorCode read() {
        if (roles_.allocate(cells_.cells(0)) != success) return outOfMemory;
        takeGroupColumn();
        ErrorCode code = isTall_ ? takeTallHead() : takeWideHead();
        if (code == success) code = countGroups();
        if (code == success)
            code = table_.allocate(groups_, variables_) | seen_.allocate(pairRows() * variables_);
        for (Index row = 1; code == success && row < cells_.rows(); ++row) code = takeRow(row);
        if (code == success) code = requireAll();
        table_.hasCounts = table_.hasMeans = table_.hasDeviations = true;
        return code;
    }

private:
    ErrorCode refuse(MomentsFault fault, const char* name = "", const char* other = "") {
        return refuseMoments(refusal_, fault, name, other);
    }
    ColumnRole& role(Index column) { return roles_[column]; }
    Index pairRows() const { return groups_ * variables_; }
    char& seen(Index group, Index i, Index j) {
        return seen_[(group * variables_ + std::max(i, j)) * variables_ + std::min(i, j)];
    }

    void takeGroupColumn() {
        const bool isFirst = equalButCase(cells_.cell(0, 0), "n") || equalButCase(cells_.cell(0, 0), "i");
        table_.isGrouped = !isFirst;
        if (isFirst) return;
        role(0).column = Column::group;
        std::snprintf(table_.groupName, sizeof table_.groupName, "%s", cells_.cell(0, 0));
        firstColumn_ = 1;
    }

    // The columns that both forms have; false for any other.
    bool takeCommon(Index column, bool& hasCount) {
        const char* const head = cells_.cell(0, column);
        if (equalButCase(head, "n")) {
            role(column).column = Column::count;
            hasCount = true;
            return true;
        }
        role(column).column = Column::leftOut;
        return equalButCase(head, "left_out");
    }

    ErrorCode takeWideHead() {
        bool hasCount = false;
        const Index columns = cells_.cells(0);
        Index characters = 0;
        for (Index c = firstColumn_; c < columns; ++c) {
            const char* const name = behind(cells_.cell(0, c), "mean_");
            if (name == nullptr) continue;
            ++variables_;
            characters += std::ssize(std::string_view(name));
        }
        if (variables_ == 0) return refuse(MomentsFault::noVariables);
        if (table_.names.allocate(variables_, characters) != success) return outOfMemory;
        Index variable = 0;
        for (Index c = firstColumn_; c < columns; ++c) {
            const char* const name = behind(cells_.cell(0, c), "mean_");
            if (name == nullptr) continue;
            role(c) = {Column::mean, variable, 0};
            const ErrorCode code = takeName(variable++, name);
            if (code != success) return code;
        }
        Block<char> taken; // of greatest sizes
        if (taken.allocate(variables_) != success) return outOfMemory;
        for (Index c = firstColumn_; c < columns; ++c) {
            const char* const head = cells_.cell(0, c);
            if (behind(head, "mean_") != nullptr || takeCommon(c, hasCount)) continue;
            const char* const greatest = behind(head, "max_");
            const char* const pair = behind(head, "cov_");
            if (greatest != nullptr) {
                const Index i = findNameButCase(table_.names, greatest);
                if (i < 0) return refuse(MomentsFault::unknownColumn, head);
                if (taken[i]++ != 0) return refuse(MomentsFault::columnTwice, head);
                role(c) = {Column::greatest, i, 0};
            } else if (pair != nullptr) {
                role(c).column = Column::covariance;
                if (!findPair(pair, role(c))) return refuse(MomentsFault::unknownPair, head);
            } else {
                return refuse(MomentsFault::unknownColumn, head);
            }
        }
        return hasCount ? checkColumnsOnce() : refuse(MomentsFault::noCount);
    }

    ErrorCode takeTallHead() {
        bool hasCount = false;
        for (Index c = firstColumn_; c < cells_.cells(0); ++c) {
            const char* const head = cells_.cell(0, c);
            const char* const place = behind(head, "cov_");
            if (equalButCase(head, "i")) {
                role(c).column = Column::place;
            } else if (equalButCase(head, "name")) {
                role(c).column = Column::name;
            } else if (equalButCase(head, "mean")) {
                role(c).column = Column::mean;
            } else if (equalButCase(head, "max")) {
                role(c).column = Column::greatest;
            } else if (place != nullptr && placeNumber(place) > 0) {
                role(c) = {Column::covariance, 0, placeNumber(place) - 1};
                ++variables_;
            } else if (!takeCommon(c, hasCount)) {
                return refuse(MomentsFault::unknownColumn, head);
            }
        }
        if (variables_ == 0) return refuse(MomentsFault::noVariables);
        for (Index c = 0; c < cells_.cells(0); ++c) {
            if (role(c).column == Column::covariance && role(c).j >= variables_)
                return refuse(MomentsFault::unknownPair, cells_.cell(0, c));
        }
        if (table_.names.allocate(variables_) != success) return outOfMemory;
        return hasCount ? checkColumnsOnce() : refuse(MomentsFault::noCount);
    }

    // Each count, size and covariance stands in one column.
    ErrorCode checkColumnsOnce() {
        for (Index c = 0; c < cells_.cells(0); ++c) {
            const ColumnRole& each = role(c);
            if (each.column == Column::covariance) continue; // of them the rows tell
            for (Index d = 0; d < c; ++d) {
                if (role(d).column == each.column && role(d).i == each.i)
                    return refuse(MomentsFault::columnTwice, cells_.cell(0, c));
            }
        }
        return success;
    }

    ErrorCode takeName(Index variable, const char* name) {
        if (std::string_view(name).size() >= textSlotSize) return refuse(MomentsFault::nameTooLong, name);
        for (Index i = 0; i < variable; ++i) {
            if (std::string_view(table_.names[i]) == name) return refuse(MomentsFault::variableTwice, name);
        }
        table_.names.set(variable, name);
        return success;
    }

    // "3_1", or two names with "_" between them where only one place of it has names on both sides.
    bool findPair(std::string_view text, ColumnRole& pair) const {
        Index found = 0;
        for (const bool byNumber : {true, false}) {
            for (std::size_t at = text.find('_'); at != std::string_view::npos && found < 2;
                 at = text.find('_', at + 1)) {
                const std::string_view first = text.substr(0, at), second = text.substr(at + 1);
                const Index i = byNumber ? placeNumber(first) - 1 : findNameButCase(table_.names, first);
                const Index j = byNumber ? placeNumber(second) - 1 : findNameButCase(table_.names, second);
                if (i < 0 || j < 0 || i >= variables_ || j >= variables_) continue;
                pair.i = i;
                pair.j = j;
                ++found;
            }
            if (found > 0) break;
        }
        return found == 1;
    }

    // Groups are numbered from 1; the rows of samples without a group hold what was left out.
    ErrorCode countGroups() {
        groups_ = 1;
        if (!table_.isGrouped) return success;
        for (Index row = 1; row < cells_.rows(); ++row) {
            const char* const cell = cells_.cell(row, 0);
            double value = 0.0;
            if (cell[0] == '\0') continue;
            refusal_.line = cells_.line(row);
            if (!readNumber(cell, value) || value != std::floor(value) || !(value >= 1.0 && value < 1e6))
                return refuse(MomentsFault::wrongGroup, cell);
            groups_ = std::max(groups_, static_cast<Index>(value));
        }
        refusal_.line = 0;
        // More groups than rows cannot be without gaps.
        char last[32];
        std::snprintf(last, sizeof last, "%td", groups_);
        return groups_ < cells_.rows() ? success : refuse(MomentsFault::wrongGroup, last);
    }

    ErrorCode takeNumber(Index row, Index column, double& value) {
        const char* const cell = cells_.cell(row, column);
        if (readNumber(cell, value) && std::isfinite(value)) return success;
        refusal_.cell = column + 1;
        return refuse(MomentsFault::notNumber, cell, cells_.cell(0, column));
    }

    ErrorCode takeRow(Index row) {
        refusal_.line = cells_.line(row);
        if (cells_.cells(row) != cells_.cells(0)) return refuse(MomentsFault::wrongCells);
        Index group = 0, variable = 0;
        double count = 0.0, leftOut = 0.0, value = 0.0;
        ErrorCode code = takeCounts(row, count, leftOut);
        if (code != success) return code;
        const bool isFirstOfVariables = !isTall_ || placeOf(row) == 1;
        if (isFirstOfVariables) table_.leftOut += leftOut;
        if (table_.isGrouped) {
            const char* const cell = cells_.cell(row, 0);
            if (cell[0] == '\0' && count == 0.0) return success; // samples of no group
            if (!readNumber(cell, value)) return refuse(MomentsFault::wrongGroup, cell);
            group = static_cast<Index>(value) - 1;
        }
        if (!(count >= 1.0) || count != std::floor(count)) return refuseCount(row);
        if (isTall_) {
            variable = placeOf(row) - 1;
            if (hasOtherPlace(row)) return refuse(MomentsFault::wrongVariable, nameOf(row));
            code = takeTallName(group, variable, nameOf(row));
            if (code != success) return code;
        }
        if (table_.counts[group] != 0.0 && (!isTall_ || table_.counts[group] != count)) {
            return table_.isGrouped || isTall_ ? refuse(MomentsFault::wrongGroup, cells_.cell(row, 0))
                                               : refuse(MomentsFault::rowsTooMany);
        }
        table_.counts[group] = count;
        return takeMoments(row, group, variable);
    }

    ErrorCode takeCounts(Index row, double& count, double& leftOut) {
        for (Index c = 0; c < cells_.cells(0); ++c) {
            if (role(c).column != Column::count && role(c).column != Column::leftOut) continue;
            const bool isLeftOut = role(c).column == Column::leftOut;
            if (isLeftOut && cells_.cell(row, c)[0] == '\0') continue;
            const ErrorCode code = takeNumber(row, c, isLeftOut ? leftOut : count);
            if (code != success) return code;
        }
        return success;
    }

    ErrorCode refuseCount(Index row) {
        for (Index c = 0; c < cells_.cells(0); ++c) {
            if (role(c).column == Column::count) return refuse(MomentsFault::badCount, cells_.cell(row, c));
        }
        return refuse(MomentsFault::noCount);
    }

    // The rows of a group are in the order of the variables, from 1.
    Index placeOf(Index row) const { return (row - 1) % variables_ + 1; }

    bool hasOtherPlace(Index row) const {
        for (Index c = 0; c < cells_.cells(0); ++c) {
            if (roles_[c].column == Column::place && placeNumber(cells_.cell(row, c)) != placeOf(row))
                return true;
        }
        return false;
    }

    const char* nameOf(Index row) const {
        for (Index c = 0; c < cells_.cells(0); ++c) {
            if (roles_[c].column == Column::name) return cells_.cell(row, c);
        }
        return "";
    }

    // Names come with the rows of the first group; those of the others have the same.
    ErrorCode takeTallName(Index group, Index variable, const char* name) {
        const char* const known = table_.names[variable];
        if (known[0] != '\0') {
            return std::string_view(known) == name && !(group == 0 && table_.groups == 1)
                       ? success
                       : refuse(MomentsFault::wrongVariable, name);
        }
        return takeName(variable, name);
    }

    ErrorCode takeMoments(Index row, Index group, Index variable) {
        for (Index c = firstColumn_; c < cells_.cells(0); ++c) {
            const ColumnRole& each = role(c);
            const Index i = isTall_ ? variable : each.i, j = each.j;
            const bool isPair = each.column == Column::covariance;
            if (!isPair && each.column != Column::mean && each.column != Column::greatest) continue;
            if (isTall_ && isPair && j > i && cells_.cell(row, c)[0] == '\0') continue;
            double value = 0.0;
            const ErrorCode code = takeNumber(row, c, value);
            if (code != success) return code;
            if (each.column == Column::mean) table_.means(group, i) = value;
            if (each.column == Column::greatest) table_.greatest(group, i) = std::fabs(value);
            if (!isPair || (isTall_ && j > i)) continue;
            if (seen(group, i, j)++ != 0) return refuse(MomentsFault::columnTwice, cells_.cell(0, c));
            table_.covariance(group, i, j) = table_.covariance(group, j, i) = value;
        }
        return success;
    }

    ErrorCode requireAll() {
        refusal_.line = 0;
        char text[32];
        for (Index g = 0; g < groups_; ++g) {
            std::snprintf(text, sizeof text, "%td", g + 1);
            if (table_.counts[g] == 0.0) return refuse(MomentsFault::wrongGroup, text);
            for (Index i = 0; i < variables_; ++i) {
                if (isTall_ && table_.names[i][0] == '\0') {
                    std::snprintf(text, sizeof text, "%td", i + 1);
                    return refuse(MomentsFault::wrongVariable, text);
                }
                for (Index j = 0; j <= i; ++j) {
                    if (seen(g, i, j) == 0)
                        return refuse(MomentsFault::missingPair, table_.names[i], table_.names[j]);
                }
            }
        }
        return success;
    }

    const DelimitedCells& cells_;
    MomentTable& table_;
    MomentsRefusal& refusal_;
    bool isTall_;
    Index firstColumn_ = 0;
    Index variables_ = 0;
    Index groups_ = 1;
    Block<ColumnRole> roles_; // of each column
    Block<char> seen_;        // how often a covariance stands in the file
};

} // namespace

bool isEngineHead(const DelimitedCells& cells) {
    if (cells.cell(0, 0)[0] == '\0') return false; // the corner of a matrix
    for (Index c = 0; c < cells.cells(0); ++c) {
        const char* const head = cells.cell(0, c);
        if (behind(head, "mean_") != nullptr || behind(head, "cov_") != nullptr) return true;
    }
    return false;
}

ErrorCode readEngineMoments(const DelimitedCells& cells, MomentTable& table, MomentsRefusal& refusal) {
    return EngineReader(cells, table, refusal).read();
}
