#include "data/import/cell_reading.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>

#include "data/letter_case.h"
#include "data/number.h"
#include "data/word_list.h"

namespace {

// Longer ones are texts: no table has them, and every double is written in fewer.
constexpr std::size_t longestNumber = 400;

constexpr std::string_view usualMissing[] = {"NA",  "N/A",  "#N/A", "n/a", "NaN", "nan",
                                             "NAN", "null", "NULL", ".",   "?",   "-"};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

const char* skipDigits(const char* at, const char* last) {
    while (at < last && isDigit(*at)) ++at;
    return at;
}

// A blank, a no-break one (U+00A0) or a narrow one (U+202F): its length, 0 when there is none.
Index blankLength(const char* at, const char* last) {
    const std::string_view rest(at, static_cast<std::size_t>(last - at));
    if (rest.starts_with(' ')) return 1;
    if (rest.starts_with("\xC2\xA0")) return 2;
    return rest.starts_with("\xE2\x80\xAF") ? 3 : 0;
}

// The length of a sign, which can be U+2212.
Index signLength(const char* at, const char* last) {
    if (at == last) return 0;
    if (*at == '-' || *at == '+') return 1;
    return *at == '\xE2' &&
                   std::string_view(at, static_cast<std::size_t>(last - at)).starts_with("\xE2\x88\x92")
               ? 3
               : 0;
}

bool endsAsExponent(const char* at, const char* last) {
    if (at == last || (*at != 'e' && *at != 'E')) return false;
    ++at;
    if (at < last && (*at == '-' || *at == '+')) ++at;
    return at < last && skipDigits(at, last) == last;
}

// Digits in groups of three from `at` on, where the first group ends.
CellShape groupedShape(const char* first, const char* at, const char* last) {
    if (at - first < 1 || at - first > 3 || *first == '0') return CellShape::text;
    const Index blank = blankLength(at, last);
    const char mark = blank > 0 ? ' ' : *at;
    if (mark != ' ' && mark != ',' && mark != '.') return CellShape::text;
    Index groups = 0;
    while (at < last) {
        const Index width = mark == ' ' ? blankLength(at, last) : *at == mark ? 1 : 0;
        if (width == 0) break;
        if (skipDigits(at + width, last) - (at + width) != 3) return CellShape::text;
        at += width + 3;
        ++groups;
    }
    if (at == last && mark == ' ') return CellShape::spaced;
    if (at == last && groups > 1) return mark == ',' ? CellShape::thousandsComma : CellShape::thousandsPoint;
    if (at == last || (*at != '.' && *at != ',') || *at == mark) return CellShape::text;
    const char sign = *at;
    if (at + 1 == last || skipDigits(at + 1, last) != last) return CellShape::text;
    if (mark == ' ') return sign == '.' ? CellShape::spacedPoint : CellShape::spacedComma;
    return mark == ',' ? CellShape::thousandsComma : CellShape::thousandsPoint;
}

// A number of digits with at most one mark and an exponent, or one in groups.
CellShape numberShape(const char* at, const char* last, bool& hasExponent) {
    at += signLength(at, last);
    const char* const first = at;
    at = skipDigits(at, last);
    const Index whole = at - first;
    if (at == last) return whole > 0 ? CellShape::whole : CellShape::text;
    if (*at == '.' || *at == ',') {
        const char mark = *at;
        const char* const behind = skipDigits(at + 1, last);
        const Index decimals = behind - (at + 1);
        const bool isPoint = mark == '.';
        const bool isNumber = decimals > 0 || (isPoint && whole > 0);
        if (isNumber && behind == last) {
            const bool either = decimals == 3 && whole >= 1 && whole <= 3 && *first != '0';
            if (either) return isPoint ? CellShape::eitherPoint : CellShape::eitherComma;
            return isPoint ? CellShape::decimalPoint : CellShape::decimalComma;
        }
        if (isNumber && endsAsExponent(behind, last)) {
            hasExponent = true;
            return isPoint ? CellShape::decimalPoint : CellShape::decimalComma;
        }
    }
    if (whole > 0 && endsAsExponent(at, last)) {
        hasExponent = true;
        return CellShape::whole;
    }
    return groupedShape(first, at, last);
}

bool isNoValue(std::string_view cell) {
    for (const std::string_view error : {"#DIV/0!", "#VALUE!", "#REF!", "#NUM!", "#NAME?", "#NULL!"}) {
        if (cell == error) return true;
    }
    if (!cell.empty() && (cell[0] == '-' || cell[0] == '+')) cell.remove_prefix(1);
    return equalButCase(cell, "inf") || equalButCase(cell, "infinity");
}

bool isMonth(std::string_view text) {
    if (text.size() < 3) return false;
    for (const std::string_view month :
         {"jan", "feb", "mar", "apr", "may", "jun", "jul", "aug", "sep", "oct", "nov", "dec"}) {
        if (equalButCase(text.substr(0, 3), month)) return true;
    }
    return false;
}

// Hours and minutes, seconds and more behind them.
bool isTime(const char* at, const char* last) {
    const char* const colon = skipDigits(at, last);
    if (colon - at < 1 || colon - at > 2 || colon == last || *colon != ':') return false;
    const char* const behind = skipDigits(colon + 1, last);
    return behind - colon == 3 && (behind == last || std::strchr(":.+-Z aApP", *behind) != nullptr);
}

// Three parts between equal marks, one of them a year or a month's name, and perhaps a time.
bool isDate(std::string_view cell) {
    const char* at = cell.data();
    const char* const last = at + cell.size();
    if (at == last || !isDigit(*at)) return false;
    if (isTime(at, last)) return true;
    const char* const second = skipDigits(at, last);
    if (second == last || std::strchr("-/. ", *second) == nullptr) return false;
    const char mark = *second;
    const char* third = second + 1;
    while (third < last && *third != mark) ++third;
    if (third == last) return false;
    const char* const end = skipDigits(third + 1, last);
    const Index lengths[3] = {second - at, third - second - 1, end - third - 1};
    const bool named = isMonth({second + 1, static_cast<std::size_t>(lengths[1])});
    if (!named && (skipDigits(second + 1, third) != third || lengths[1] < 1 || lengths[1] > 2)) return false;
    const bool yearFirst = lengths[0] == 4 && lengths[2] >= 1 && lengths[2] <= 2;
    const bool yearLast = lengths[0] >= 1 && lengths[0] <= 2 && (lengths[2] == 4 || lengths[2] == 2);
    if (!yearFirst && !yearLast) return false;
    return end == last || ((*end == ' ' || *end == 'T') && isTime(end + 1, last));
}

// The form that the shape of a cell tells by itself.
NumberForm formOf(CellShape shape) {
    const bool comma = shape == CellShape::decimalComma || shape == CellShape::spacedComma ||
                       shape == CellShape::thousandsPoint;
    return {comma ? DecimalSign::comma : DecimalSign::point};
}

// A number beside a percent sign or the sign of a currency.
bool isAmount(std::string_view cell) {
    constexpr std::string_view signs[] = {"%", "$", "\xE2\x82\xAC", "\xC2\xA3", "\xC2\xA5"};
    for (const std::string_view sign : signs) {
        std::string_view rest = cell;
        if (rest.starts_with("-") && rest.substr(1).starts_with(sign)) rest.remove_prefix(1);
        if (rest.starts_with(sign)) {
            rest.remove_prefix(sign.size());
        } else if (rest.ends_with(sign)) {
            rest.remove_suffix(sign.size());
        } else {
            continue;
        }
        const char* first = rest.data();
        const char* last = first + rest.size();
        while (first < last && *first == ' ') ++first;
        while (last > first && last[-1] == ' ') --last;
        if (last - first >= 2 && last[-1] == '\xA0' && last[-2] == '\xC2') last -= 2;
        bool hasExponent = false;
        if (first < last && numberShape(first, last, hasExponent) != CellShape::text) return true;
    }
    return false;
}

} // namespace

CellShape shapeOf(std::string_view cell) {
    bool hasExponent = false;
    const CellShape shape = cell.size() <= longestNumber
                                ? numberShape(cell.data(), cell.data() + cell.size(), hasExponent)
                                : CellShape::text;
    if (shape != CellShape::text) {
        // Only a long number or one with an exponent can be beyond the range.
        if (cell.size() < 300 && !hasExponent) return shape;
        PlainNumber number;
        writeNumber(cell, formOf(shape), number);
        return number.length > 0 && std::isfinite(parseNumber(number.text)) ? shape : CellShape::noValue;
    }
    if (isNoValue(cell)) return CellShape::noValue;
    if (isDate(cell)) return CellShape::date;
    return isAmount(cell) ? CellShape::amount : CellShape::text;
}

ThousandsMark thousandsOf(const NumberForm& form) {
    if (form.decimal == DecimalSign::found) return ThousandsMark::found;
    if (form.thousandsMark) {
        return form.decimal == DecimalSign::point ? ThousandsMark::comma : ThousandsMark::point;
    }
    return form.thousandsSpace ? ThousandsMark::space : ThousandsMark::none;
}

bool isReadable(CellShape shape, const NumberForm& form) {
    const bool point = form.decimal == DecimalSign::point;
    switch (shape) {
    case CellShape::whole:
        return true;
    case CellShape::decimalPoint:
        return point;
    case CellShape::decimalComma:
        return !point;
    case CellShape::eitherPoint:
        return point || form.thousandsMark;
    case CellShape::eitherComma:
        return !point || form.thousandsMark;
    case CellShape::thousandsPoint:
        return !point && form.thousandsMark;
    case CellShape::thousandsComma:
        return point && form.thousandsMark;
    case CellShape::spaced:
        return form.thousandsSpace;
    case CellShape::spacedPoint:
        return form.thousandsSpace && point;
    case CellShape::spacedComma:
        return form.thousandsSpace && !point;
    default:
        return false;
    }
}

void writeNumber(std::string_view cell, const NumberForm& form, PlainNumber& number) {
    const char sign = form.decimal == DecimalSign::comma ? ',' : '.';
    char digits[longestNumber + 2];
    std::size_t length = 0;
    if (cell.starts_with("\xE2\x88\x92")) {
        digits[length++] = '-';
        cell.remove_prefix(3);
    }
    if (cell.starts_with('+')) cell.remove_prefix(1);
    for (const char c : cell) {
        if (length == longestNumber) break;
        if (isDigit(c) || c == '-' || c == '+' || c == 'e' || c == 'E') digits[length++] = c;
        if (c == sign) digits[length++] = '.';
    }
    digits[length] = '\0';
    if (length < sizeof number.text) {
        std::memcpy(number.text, digits, length + 1);
        number.length = static_cast<Index>(length);
        return;
    }
    const auto [end, error] = std::to_chars(number.text, std::end(number.text) - 1, parseNumber(digits));
    *end = '\0';
    number.length = end - number.text;
}

void MissingTexts::clear() {
    texts_.clear();
    hasNumbers_ = false;
    std::memset(mayBegin_, 0, sizeof mayBegin_);
}

ErrorCode MissingTexts::add(std::string_view text) {
    if (text.empty()) return success;
    if (!texts_.add(text)) return outOfMemory;
    mayBegin_[static_cast<unsigned char>(text[0])] = true;
    if (isNumberShape(shapeOf(text))) {
        hasNumbers_ = true;
        for (const char c : {'-', '+', '.', '0', '1', '2', '3', '4', '5', '6', '7', '8', '9'}) {
            mayBegin_[static_cast<unsigned char>(c)] = true;
        }
    }
    return success;
}

ErrorCode MissingTexts::set(const ImportOptions& options) {
    clear();
    for (const std::string_view usual : usualMissing) {
        if (add(usual) != success) return outOfMemory;
    }
    for (const char* list : options.missing) {
        const bool added = forEachNamed(list, [&](std::string_view text) {
            if (text != "none") return add(text) == success;
            clear();
            return true;
        });
        if (!added) return outOfMemory;
    }
    return success;
}

bool MissingTexts::find(std::string_view cell) const {
    for (const std::string_view text : texts_.all()) {
        if (text == cell) return true;
    }
    if (!hasNumbers_) return false;
    // A number means what it is worth: -999 is -999.0 and -999,00, too.
    const CellShape shape = shapeOf(cell);
    if (!isNumberShape(shape)) return false;
    PlainNumber number;
    writeNumber(cell, formOf(shape), number);
    const double value = parseNumber(number.text);
    for (const std::string_view text : texts_.all()) {
        const CellShape textShape = shapeOf(text);
        if (!isNumberShape(textShape)) continue;
        PlainNumber named;
        writeNumber(text, formOf(textShape), named);
        if (parseNumber(named.text) == value) return true;
    }
    return false;
}
