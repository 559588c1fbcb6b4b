#pragma once

#include "batch/complaint.h"
#include "batch/sql/sql_columns.h"

// Writes the statement that counts the samples of each cell of a table of categories, of which the result is
// a data file: for log-linear models a row for each pair of categories of the first two columns, the second
// one's faster, and a column for each of the third; for quantification 3 a row for each value of the first
// column, which is its label, and a column for each category of the second. Rows with another category, or
// none, are not counted. False and a complaint when the columns or the numbers of categories do not fit.
bool writeCountStatement(const SqlCommand& command, const Block<SqlColumn>& columns, SqlText& sql,
                         Complaint& complaint);
