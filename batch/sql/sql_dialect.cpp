#include "batch/sql/sql_dialect.h"

#include <charconv>

SqlText& SqlText::operator<<(std::string_view piece) {
    for (const char& c : piece) {
        const char written = c == '"' ? nameQuote() : c;
        text_.append({&written, 1});
    }
    return *this;
}

SqlText& SqlText::operator<<(Index number) {
    text_.appendInteger(number, 0);
    return *this;
}

SqlText& SqlText::operator<<(double number) {
    char digits[40];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    text_.append({digits, static_cast<std::size_t>(end - digits)});
    return *this;
}

void SqlText::doubling(char quote, std::string_view characters) {
    for (const char& c : characters) {
        if (c == quote) text_.append({&c, 1});
        text_.append({&c, 1});
    }
}

void SqlText::name(std::string_view what, std::string_view column) {
    const char quote = nameQuote();
    text_.append({&quote, 1});
    text_.append(what);
    doubling(quote, column);
    text_.append({&quote, 1});
}

void SqlText::quoted(std::string_view characters) {
    text_.append("'");
    if (dialect_ == SqlDialect::spark) {
        for (const char& c : characters) {
            if (c == '\'' || c == '\\') text_.append("\\");
            text_.append({&c, 1});
        }
    } else {
        doubling('\'', characters);
    }
    text_.append("'");
}

std::string_view SqlText::doubleType() const {
    return dialect_ == SqlDialect::spark ? "double" : "double precision";
}

void SqlText::computeOnce(Index columns) {
    if (dialect_ == SqlDialect::postgresql) *this << " offset 0";
    if (dialect_ != SqlDialect::standard) return;
    // No row is added.
    *this << " union all select null";
    for (Index k = 1; k < columns; ++k) *this << ", null";
    *this << " where 1 = 0";
}
