#pragma once

#include <string_view>

#include "report/text_buffer.h"

// What engines write each in a way of its own; the standard is that of SQL:2003.
enum class SqlDialect { standard, duckdb, postgresql, spark, trino };

// What `--dialect` takes (data/word_list.h), in this order.
constexpr const char* dialectWords = "standard|duckdb|postgresql|spark|trino";

// A column as it stands in an expression: by its name, or as a number of double precision made of it.
struct SqlColumnValue {
    std::string_view name;
    bool isDouble; // it is one by itself
};

// A statement, or a part of one, as it is written down.
class SqlText {
public:
    SqlText(TextBuffer& text, SqlDialect dialect) : text_(text), dialect_(dialect) {}

    // A piece of it, with names in double quotes, which become those of the engine.
    SqlText& operator<<(std::string_view piece);
    SqlText& operator<<(Index number);
    // To its last bit and with an exponent, without which engines would take it for a decimal; a negative one
    // in brackets, one that is not finite as a null.
    SqlText& operator<<(double number);
    SqlText& operator<<(const SqlColumnValue& value);

    // What the user wrote, as it stands.
    void verbatim(std::string_view text) { text_.append(text); }
    // The name of a column whatever characters it has, or of what is computed from it, as "mean_height".
    void name(std::string_view column) { name("", column); }
    void name(std::string_view what, std::string_view column);
    // A text in quotes.
    void quoted(std::string_view characters);
    // The type of numbers of double precision.
    std::string_view doubleType() const;
    // Behind a select of so many columns: the engine computes them once for each row. Without it PostgreSQL
    // puts what they are computed from wherever they are used, and computes it there again, hundreds of
    // times.
    void computeOnce(Index columns);

private:
    char nameQuote() const { return dialect_ == SqlDialect::spark ? '`' : '"'; }
    void doubling(char quote, std::string_view characters);

    TextBuffer& text_;
    SqlDialect dialect_;
};
