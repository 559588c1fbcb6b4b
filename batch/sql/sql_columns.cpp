#include "batch/sql/sql_columns.h"

#include <algorithm>

#include "batch/assignments.h"
#include "batch/field_values.h"
#include "batch/nearest_word.h"
#include "batch/sql/sql_kind.h"
#include "data/text_slot.h"
#include "data/word_list.h"

namespace {

constexpr Index longestName = static_cast<Index>(textSlotSize) - 1;

bool add(std::string_view name, SqlColumn::Role role, Block<SqlColumn>& columns, Complaint& complaint) {
    const auto isAlike = [&](const SqlColumn& column) { return column.name == name; };
    if (name.empty()) {
        complaint.say("--columns: a name is empty");
    } else if (std::ssize(name) > longestName) {
        complaint.say("the name '%.*s' has more than %d bytes",
                      static_cast<int>(std::min(std::ssize(name), Index{200})), name.data(),
                      static_cast<int>(longestName));
    } else if (std::any_of(columns.begin(), columns.end(), isAlike)) {
        complaint.say("--columns: '%.*s' stands there twice", static_cast<int>(name.size()), name.data());
    } else if (columns.grow(columns.size() + 1) != success) {
        complaint.say("no memory for --columns");
    } else {
        columns[columns.size() - 1] = {name, role, 1.0};
    }
    return !complaint.any();
}

// The column of this name, or of the number in "#3"; null when there is none.
SqlColumn* find(std::string_view name, Block<SqlColumn>& columns) {
    for (SqlColumn& column : columns) {
        if (column.name == name) return &column;
    }
    const Index number = columnNumber(name, static_cast<std::int32_t>(columns.size()));
    return number > 0 ? &columns[number - 1] : nullptr;
}

SqlColumn* require(const char* option, std::string_view name, Block<SqlColumn>& columns,
                   Complaint& complaint) {
    SqlColumn* const found = find(name, columns);
    if (found == nullptr) {
        complaint.say("--%s: there is no column '%.*s'", option,
                      static_cast<int>(std::min(std::ssize(name), Index{200})), name.data());
        NearestWord nearest(name);
        for (const SqlColumn& column : columns) nearest.offer(column.name);
        nearest.suggest(complaint);
    }
    return found;
}

// Gives a column its role, one that is not yet among the columns, too.
bool giveRole(const char* option, std::string_view name, SqlColumn::Role role, Block<SqlColumn>& columns,
              Complaint& complaint) {
    SqlColumn* const found = find(name, columns);
    if (found == nullptr) return add(name, role, columns, complaint);
    if (found->role == SqlColumn::leftOut) {
        complaint.say("--%s: '%.*s' is left out by --exclude", option, static_cast<int>(name.size()),
                      name.data());
        return false;
    }
    found->role = role;
    return true;
}

bool givePurposes(const CommandLine& line, Block<SqlColumn>& columns, Complaint& complaint) {
    const char* const names = givenValue(line, "purpose");
    if (names == nullptr) {
        if (reductionOf(*line.kind) == Reduction::curveMoments) complaint.say("--purpose NAME is needed");
        return !complaint.any();
    }
    return forEachNamed(names, [&](std::string_view name) {
        return giveRole("purpose", name, SqlColumn::purpose, columns, complaint);
    });
}

bool giveGroup(const CommandLine& line, Block<SqlColumn>& columns, Complaint& complaint) {
    if (reductionOf(*line.kind) != Reduction::groupedMoments) return true;
    const char* const name = givenValue(line, "group");
    if (name != nullptr) return giveRole("group", name, SqlColumn::group, columns, complaint);
    complaint.say("--group NAME is needed");
    return false;
}

bool giveDegrees(const CommandLine& line, Block<SqlColumn>& columns, Complaint& complaint) {
    for (const char* text : line.degrees) {
        const bool given = forEachAssignment(text, [&](const Assignment& degree) {
            SqlColumn* const column = require("degree", degree.name, columns, complaint);
            if (column == nullptr) return false;
            if (!(degree.value > 0.0)) {
                complaint.say("--degree: '%.*s' has no positive power", static_cast<int>(degree.name.size()),
                              degree.name.data());
                return false;
            }
            column->degree = degree.value;
            return true;
        });
        if (!given) return false;
    }
    return true;
}

bool exclude(const CommandLine& line, Block<SqlColumn>& columns, Complaint& complaint) {
    for (const char* names : line.excludes) {
        const bool known = forEachNamed(names, [&](std::string_view name) {
            SqlColumn* const column = require("exclude", name, columns, complaint);
            if (column != nullptr) column->role = SqlColumn::leftOut;
            return column != nullptr;
        });
        if (!known) return false;
    }
    return true;
}

} // namespace

bool listColumns(const SqlCommand& command, Block<SqlColumn>& columns, std::string_view& group,
                 Complaint& complaint) {
    for (const char* names : command.columns) {
        const bool added = forEachNamed(
            names, [&](std::string_view name) { return add(name, SqlColumn::variable, columns, complaint); });
        if (!added) return false;
    }
    const CommandLine& line = command.line;
    if (!exclude(line, columns, complaint) || !givePurposes(line, columns, complaint) ||
        !giveGroup(line, columns, complaint) || !giveDegrees(line, columns, complaint)) {
        return false;
    }
    Index kept = 0;
    for (const SqlColumn& column : columns) {
        if (column.role == SqlColumn::group) group = column.name;
        if (column.role == SqlColumn::variable || column.role == SqlColumn::purpose) columns[kept++] = column;
    }
    if (kept == 0) complaint.say("--columns: no column is left");
    if (columns.grow(kept) != success) complaint.say("no memory for --columns"); // as few as are left
    return !complaint.any();
}
