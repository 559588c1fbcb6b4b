#include "report/sql_text.h"

#include <charconv>
#include <cmath>

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
    if (!std::isfinite(number)) return *this << "cast(null as " << doubleType() << ")";
    char digits[40];
    const char* const end =
        std::to_chars(digits, digits + sizeof digits, number, std::chars_format::scientific).ptr;
    const std::string_view written(digits, static_cast<std::size_t>(end - digits));
    const std::size_t mantissa = written.find('e');
    const char* const exponent = digits + mantissa + 1; // with its sign
    int power = 0;
    std::from_chars(exponent + 1, end, power);
    const bool isNegative = std::signbit(number);
    if (isNegative) text_.append("(");
    text_.append(written.substr(0, mantissa));
    text_.append(*exponent == '-' ? "e-" : "e");
    text_.appendInteger(power, 0);
    if (isNegative) text_.append(")");
    return *this;
}

SqlText& SqlText::operator<<(const SqlColumnValue& value) {
    if (!value.isDouble) *this << "cast(";
    name(value.name);
    return value.isDouble ? *this : *this << " as " << doubleType() << ")";
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
