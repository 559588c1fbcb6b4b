#pragma once

#include "analysis/run/saved_name.h"
#include "data/data_set.h"
#include "numeric/moments.h"
#include "report/sql_text.h"

// What an analysis would tell of samples that stand in a database: an expression of SQL over the variables,
// by their names, for each column that it keeps of the samples here (analysis/run/sample_columns.h). It is
// null where a variable is, and outside the domain of a function.
struct ScoreExpressions {
    bool areWanted = false; // by who starts the runs
    SqlDialect dialect = SqlDialect::standard;
    TextBuffer text; // a line for each, EXPRESSION as "NAME", with a comma behind all but the last
};

// Writes the expressions. Those that take a function write by it what stands in their place.
class ExpressionWriter {
public:
    ExpressionWriter(const DataSet& data, ScoreExpressions& expressions)
        : data_(data), text_(expressions.text), sql_(text_, expressions.dialect) {}

    SqlText& sql() { return sql_; }

    // The next expression, whose column has this name among those of the table.
    template <class Write> void add(const char* name, Write write) {
        if (text_.length() > 0) text_.append(",\n");
        write();
        sql_ << " as ";
        sql_.name(uniqueColumnName(data_.cells, name).text);
    }
    // A column of the working part, and a term of a sum: factor times the column, or its deviation from a
    // mean.
    SqlColumnValue variable(Index column) const { return {data_.working.name(column), false}; }
    void writeTerm(double factor, Index column) { sql_ << factor << " * " << variable(column); }
    void writeTerm(double factor, Index column, double mean) {
        sql_ << factor << " * (" << variable(column) << " - " << mean << ")";
    }

    // " / divisor", a null where that is 0.
    void divideBy(double divisor);

    // (constant + term(0) + term(1) + ...), in brackets of so many terms, as engines take expressions of a
    // limited depth.
    template <class Term> void sum(double constant, Index count, Term term) {
        constexpr Index mostInBrackets = 50;
        sql_ << "(";
        if (constant != 0.0 || count == 0) sql_ << constant << (count > 0 ? " + " : "");
        for (Index j = 0; j < count; ++j) {
            sql_ << (j % mostInBrackets > 0 ? " + " : j > 0 ? ") + (" : "(");
            term(j);
        }
        sql_ << (count > 0 ? "))" : ")");
    }
    // whole / (1 + exp(-value)); what exp cannot hold is passed by, as some engines fail there.
    template <class Write> void share(Index whole, Write value) {
        sql_ << "case when ";
        value();
        sql_ << " < " << -greatestExponent << " then 0e0 when ";
        value();
        sql_ << " > " << greatestExponent << " then " << whole << "e0 else " << whole << "e0 / (1e0 + exp(-";
        value();
        sql_ << ")) end";
    }
    // exp(value), null beyond the range of double.
    template <class Write> void exponential(Write value) {
        sql_ << "case when ";
        value();
        sql_ << " < " << -greatestExponent << " then 0e0 when ";
        value();
        sql_ << " <= " << greatestExponent << " then exp(";
        value();
        sql_ << ") end";
    }
    // "PREFIX1", ...: the sums of standardized variables, from column `first` on, by the columns of weights.
    void addScores(const char* prefix, const MomentMatrices& moments, Index first, const Matrix& weights);

private:
    static constexpr double greatestExponent = 709.78;

    const DataSet& data_;
    TextBuffer& text_;
    SqlText sql_;
};

// What a driver does once its report is written: keeps the expressions that write(writer) adds, if they are
// wanted. Returns success or outOfMemory.
template <class Write>
[[nodiscard]] ErrorCode keepExpressions(ScoreExpressions& expressions, const DataSet& data, Write write) {
    constexpr Index firstCapacity = 4096;
    if (!expressions.areWanted) return success;
    const ErrorCode code = expressions.text.allocate(firstCapacity, TextBuffer::Growth::growing);
    if (code != success) return code;
    ExpressionWriter writer(data, expressions);
    write(writer);
    if (expressions.text.length() > 0) expressions.text.append("\n");
    return expressions.text.ranOutOfMemory() ? outOfMemory : success;
}
