#pragma once

#include "batch/sql/sql_columns.h"

// Writes the statement whose result is the file of moments of these columns, of transformed ones for a curve:
// one row, or one for each group where `group` is not empty, its number first. Its columns are n, left_out,
// then for each column mean_NAME, for each max_NAME (the greatest size), and cov_I_J (divisor n) of columns I
// and J <= I, counted from 1. Where these would be too many for an engine, or their names too long, there is
// a row for each column I instead: i (after the group), n, left_out, name, mean, max, cov_1 to cov_P, null
// above I.
void writeMomentStatement(const SqlCommand& command, const Block<SqlColumn>& columns, std::string_view group,
                          SqlText& sql);
