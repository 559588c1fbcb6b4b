#include "batch/sql/count_statement.h"

#include <cstring>

#include "batch/sql/sql_kind.h"
#include "data/categories.h"
#include "data/number.h"

namespace {

// The number of categories in a value of this option.
bool readCategories(const char* option, const char* text, Index& count, Complaint& complaint) {
    if (text == nullptr) {
        complaint.say("--%s N is needed, the number of categories", option);
        return false;
    }
    const double value = isNumber(text) ? parseNumber(text) : 0.0;
    count = value >= 2.0 && value <= mostCategories ? static_cast<Index>(value) : 0;
    if (static_cast<double>(count) == value && count > 0) return true;
    complaint.say("--%s takes N (2 to %d), not '%.200s'", option, static_cast<int>(mostCategories), text);
    return false;
}

void writeCounts(std::string_view name, Index categories, SqlText& sql) {
    for (Index k = 1; k <= categories; ++k) {
        sql << ",\n  count(case when " << name << " = " << k << " then 1 end) as \"C" << k << "\"";
    }
}

// Every row of the table is there, also one that no sample is in.
void writeThreeWay(const SqlCommand& command, const Block<SqlColumn>& columns, const Index (&sizes)[3],
                   SqlText& sql) {
    sql << "with \"rows_of_counts\" (\"label\", \"i\", \"j\") as (values";
    for (Index i = 1; i <= sizes[0]; ++i) {
        for (Index j = 1; j <= sizes[1]; ++j) {
            sql << (i + j > 2 ? ",\n  " : "\n  ") << "('A" << i << ".B" << j << "', " << i << ", " << j
                << ")";
        }
    }
    sql << "\n)\nselect \"label\"";
    writeCounts("\"c\"", sizes[2], sql);
    sql << "\nfrom \"rows_of_counts\" left join (\n  select ";
    for (Index f = 0; f < 3; ++f) {
        const char letter[] = {static_cast<char>('a' + f), '\0'};
        sql << (f > 0 ? ", " : "") << "cast(";
        sql.name(columns[f].name);
        sql << " as " << sql.doubleType() << ") as \"" << letter << "\"";
    }
    writeFrom(command, "\n  ", sql);
    sql << ") as \"cells\" on \"a\" = \"i\" and \"b\" = \"j\"\ngroup by \"i\", \"j\", \"label\"\n"
           "order by \"i\", \"j\"\n";
}

void writeCross(const SqlCommand& command, const Block<SqlColumn>& columns, Index categories, SqlText& sql) {
    sql << "select \"r\" as \"label\"";
    writeCounts("\"c\"", categories, sql);
    sql << "\nfrom (\n  select ";
    sql.name(columns[0].name);
    sql << " as \"r\", cast(";
    sql.name(columns[1].name);
    sql << " as " << sql.doubleType() << ") as \"c\"";
    writeFrom(command, "\n  ", sql);
    sql << ") as \"cells\"\nwhere \"r\" is not null and \"c\" in (";
    for (Index k = 1; k <= categories; ++k) sql << (k > 1 ? ", " : "") << k;
    sql << ")\ngroup by \"r\"\norder by 1\n";
}

} // namespace

bool writeCountStatement(const SqlCommand& command, const Block<SqlColumn>& columns, SqlText& sql,
                         Complaint& complaint) {
    const CommandLine& line = command.line;
    const bool isThreeWay = reductionOf(*line.kind) == Reduction::threeWayCounts;
    const char* const data = givenValue(line, "data");
    if (data != nullptr && std::strcmp(data, "variable") == 0) {
        complaint.say("sql: %s --data variable needs the samples themselves", line.kind->batchName);
        return false;
    }
    const Index wanted = isThreeWay ? 3 : 2;
    if (columns.size() != wanted) {
        complaint.say("sql: %s takes %d columns, not %d", line.kind->batchName, static_cast<int>(wanted),
                      static_cast<int>(columns.size()));
        return false;
    }
    Index sizes[3] = {};
    if (!isThreeWay) {
        if (!readCategories("categories", command.categories, sizes[0], complaint)) return false;
        writeCross(command, columns, sizes[0], sql);
        return true;
    }
    constexpr const char* options[] = {"a", "b", "c"};
    for (Index f = 0; f < 3; ++f) {
        if (!readCategories(options[f], givenValue(line, options[f]), sizes[f], complaint)) return false;
    }
    writeThreeWay(command, columns, sizes, sql);
    return true;
}
