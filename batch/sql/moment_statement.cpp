#include "batch/sql/moment_statement.h"

#include <algorithm>
#include <cstdio>

#include "analysis/basic/regression/sql_transformation.h"

namespace {

// With more columns, the list of covariances would pass what engines take (1,600 in PostgreSQL).
constexpr Index mostInOneRow = 50;
// The names of the result begin with five characters of their own, and PostgreSQL keeps 63 of each.
constexpr Index longestWithPrefix = 58;

bool fitsIntoOneRow(const Block<SqlColumn>& columns) {
    const auto isShort = [](const SqlColumn& column) { return std::ssize(column.name) <= longestWithPrefix; };
    return columns.size() <= mostInOneRow && std::all_of(columns.begin(), columns.end(), isShort);
}

// A column of the cells as numbers.
struct Cell {
    char name[24];

    explicit Cell(Index number) { std::snprintf(name, sizeof name, "v%td", number); }
    SqlColumnValue value() const { return {name, true}; }
};

// The parts of the statement. Each select stands in the one above it, from the table outwards: "v1", ... are
// the cells as numbers, "counts" is 1 where the whole row counts, "x1", ... are the transformed columns, null
// in a row that does not count, so that every aggregate passes over the same rows; "g" is the group.
class MomentStatement {
public:
    MomentStatement(const SqlCommand& command, const Block<SqlColumn>& columns, std::string_view group,
                    SqlText& sql)
        : command_(command), columns_(columns), group_(group), sql_(sql) {}

    void writeOneRow();
    void writeRows();

private:
    bool isGrouped() const { return !group_.empty(); }
    SqlTransformation transformationOf(Index number) const {
        const SqlColumn& column = columns_[number - 1];
        return {command_.line.kind->number, column.role == SqlColumn::purpose, column.degree};
    }
    // Calls `write` with each number of a column from 1, with a text between.
    template <class Write> void forEachColumn(std::string_view between, Write write) {
        for (Index i = 1; i <= columns_.size(); ++i) {
            if (i > 1) sql_ << between;
            write(i, columns_[i - 1].name);
        }
    }

    void writeCells();
    void writeCountedRows();
    void writeUsed();
    void writeResultGroup();

    const SqlCommand& command_;
    const Block<SqlColumn>& columns_;
    std::string_view group_;
    SqlText& sql_;
};

void MomentStatement::writeCells() {
    sql_ << "      select ";
    if (isGrouped()) {
        sql_.name(group_);
        sql_ << " as \"g\",\n        ";
    }
    forEachColumn(",\n        ", [&](Index i, std::string_view name) {
        sql_ << "cast(";
        sql_.name(name);
        sql_ << " as " << sql_.doubleType() << ") as \"v" << i << "\"";
    });
    writeFrom(command_, "\n      ", sql_);
}

void MomentStatement::writeCountedRows() {
    sql_ << "    select " << (isGrouped() ? "\"g\", " : "");
    forEachColumn(", ", [&](Index i, std::string_view) { sql_ << "\"v" << i << "\""; });
    sql_ << ",\n      case when " << (isGrouped() ? "\"g\" is not null\n        and " : "");
    forEachColumn("\n        and ", [&](Index i, std::string_view) {
        transformationOf(i).writeCondition(sql_, Cell(i).value());
    });
    sql_ << " then 1 end as \"counts\"\n    from (\n";
    writeCells();
    sql_ << "    ) as \"cells\"";
    sql_.computeOnce(columns_.size() + (isGrouped() ? 2 : 1));
    sql_ << "\n";
}

void MomentStatement::writeUsed() {
    sql_ << "  select " << (isGrouped() ? "\"g\",\n    " : "");
    forEachColumn(",\n    ", [&](Index i, std::string_view) {
        sql_ << "case when \"counts\" = 1 then ";
        transformationOf(i).writeValue(sql_, Cell(i).value());
        sql_ << " end as \"x" << i << "\"";
    });
    sql_ << "\n  from (\n";
    writeCountedRows();
    sql_ << "  ) as \"counted\"";
    sql_.computeOnce(columns_.size() + (isGrouped() ? 1 : 0));
    sql_ << "\n";
}

// The group under its own name.
void MomentStatement::writeResultGroup() {
    if (!isGrouped()) return;
    sql_ << "\"g\" as ";
    sql_.name(group_);
    sql_ << ",\n  ";
}

void MomentStatement::writeOneRow() {
    sql_ << "select ";
    writeResultGroup();
    sql_ << "count(\"x1\") as \"n\",\n  count(*) - count(\"x1\") as \"left_out\",\n  ";
    forEachColumn(",\n  ", [&](Index i, std::string_view name) {
        sql_ << "avg(\"x" << i << "\") as ";
        sql_.name("mean_", name);
    });
    sql_ << ",\n  ";
    forEachColumn(",\n  ", [&](Index i, std::string_view name) {
        sql_ << "max(abs(\"x" << i << "\")) as ";
        sql_.name("max_", name);
    });
    sql_ << ",\n  ";
    forEachColumn(",\n  ", [&](Index i, std::string_view) {
        for (Index j = 1; j <= i; ++j) {
            sql_ << (j > 1 ? ", " : "") << "covar_pop(\"x" << i << "\", \"x" << j << "\") as \"cov_" << i
                 << "_" << j << "\"";
        }
    });
    sql_ << "\nfrom (\n";
    writeUsed();
    sql_ << ") as \"used\"\n" << (isGrouped() ? "group by \"g\"\norder by 1\n" : "");
}

// Each row is taken once for every column: "i" is its number, "y" its value.
void MomentStatement::writeRows() {
    sql_ << "with \"numbered_columns\" (\"i\", \"name\") as (values\n  ";
    forEachColumn(",\n  ", [&](Index i, std::string_view name) {
        sql_ << "(" << i << ", ";
        sql_.quoted(name);
        sql_ << ")";
    });
    sql_ << "\n)\nselect ";
    writeResultGroup();
    sql_ << "\"i\",\n  count(\"y\") as \"n\",\n  count(*) - count(\"y\") as \"left_out\",\n  \"name\",\n"
            "  avg(\"y\") as \"mean\",\n  max(abs(\"y\")) as \"max\",\n  ";
    forEachColumn(",\n  ", [&](Index j, std::string_view) {
        sql_ << "case when \"i\" >= " << j << " then covar_pop(\"y\", \"x" << j << "\") end as \"cov_" << j
             << "\"";
    });
    const std::string_view group = isGrouped() ? "\"g\", " : "";
    sql_ << "\nfrom (\n  select " << group << "\"i\", \"name\",\n    ";
    forEachColumn(", ", [&](Index i, std::string_view) { sql_ << "\"x" << i << "\""; });
    sql_ << ",\n    case \"i\"";
    forEachColumn("", [&](Index i, std::string_view) { sql_ << " when " << i << " then \"x" << i << "\""; });
    sql_ << " end as \"y\"\n  from (\n";
    writeUsed();
    sql_ << "  ) as \"used\"\n  cross join \"numbered_columns\"";
    sql_.computeOnce(columns_.size() + (isGrouped() ? 4 : 3));
    sql_ << "\n) as \"taken\"\ngroup by " << group << "\"i\", \"name\"\norder by 1"
         << (isGrouped() ? ", 2\n" : "\n");
}

} // namespace

void writeMomentStatement(const SqlCommand& command, const Block<SqlColumn>& columns, std::string_view group,
                          SqlText& sql) {
    MomentStatement statement(command, columns, group, sql);
    if (fitsIntoOneRow(columns)) {
        statement.writeOneRow();
    } else {
        statement.writeRows();
    }
}
