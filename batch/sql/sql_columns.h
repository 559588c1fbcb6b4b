#pragma once

#include "batch/sql/sql_arguments.h"

// A column that a statement reads. Its name points into the arguments.
struct SqlColumn {
    enum Role { variable, purpose, group, leftOut };

    std::string_view name;
    Role role;
    double degree; // of a polynomial; 1 for none
};

// Lists the columns that the statement reads, in the order in which they were given, a purpose variable that
// was not given among them last; `group` gets the name of the group's column, which is none of them, and
// stays empty where the kind has none. False and a complaint when the names do not go together.
bool listColumns(const SqlCommand& command, Block<SqlColumn>& columns, std::string_view& group,
                 Complaint& complaint);
