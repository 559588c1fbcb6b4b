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

// Those of databases, of spreadsheets in other languages, and the dashes U+2013 and U+2014 among them.
constexpr std::string_view usualMissing[] = {
    "NA", "N/A", "#N/A", "n/a",  "NaN", "nan",  "NAN",    "null",   "NULL",         ".",
    "?",  "-",   "\\N",  "<NA>", "#NV", "#N/D", "(null)", "[NULL]", "\xE2\x80\x93", "\xE2\x80\x94"};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

const char* skipDigits(const char* at, const char* last) {
    while (at < last && isDigit(*at)) ++at;
    return at;
}

// A blank, a no-break one (U+00A0) or a narrow one (U+202F), or an apostrophe (also U+2019): its length, 0
// when there is none.
Index blankLength(const char* at, const char* last) {
    const std::string_view rest(at, static_cast<std::size_t>(last - at));
    if (rest.starts_with(' ') || rest.starts_with('\'')) return 1;
    if (rest.starts_with("\xC2\xA0")) return 2;
    return rest.starts_with("\xE2\x80\xAF") || rest.starts_with("\xE2\x80\x99") ? 3 : 0;
}

// The minus U+2212, or the dash U+2013 in its place.
bool beginsWithMinus(std::string_view text) {
    return text.starts_with("\xE2\x88\x92") || text.starts_with("\xE2\x80\x93");
}

// The length of a sign.
Index signLength(const char* at, const char* last) {
    if (at == last) return 0;
    if (*at == '-' || *at == '+') return 1;
    return *at == '\xE2' && beginsWithMinus({at, static_cast<std::size_t>(last - at)}) ? 3 : 0;
}

bool isDoubleMark(char c) {
    return c == 'd' || c == 'D';
}

// Fortran's D, for an exponent of double precision, stands behind a decimal sign.
bool endsAsExponent(const char* at, const char* last, bool behindSign) {
    if (at == last || (*at != 'e' && *at != 'E' && !(behindSign && isDoubleMark(*at)))) return false;
    ++at;
    if (at < last && (*at == '-' || *at == '+')) ++at;
    return at < last && skipDigits(at, last) == last;
}

// Digits in groups of three from `at` on, where the first group ends; of two before the last one where commas
// stand between, as in India.
CellShape groupedShape(const char* first, const char* at, const char* last) {
    if (at - first < 1 || at - first > 3 || *first == '0') return CellShape::text;
    const Index blank = blankLength(at, last);
    const char mark = blank > 0 ? ' ' : *at;
    if (mark != ' ' && mark != ',' && mark != '.') return CellShape::text;
    Index groups = 0, pairs = 0;
    while (at < last) {
        const Index width = mark == ' ' ? blankLength(at, last) : *at == mark ? 1 : 0;
        if (width == 0) break;
        const Index digits = skipDigits(at + width, last) - (at + width);
        const bool isPair = digits == 2 && mark == ',' && pairs == groups;
        if (digits != 3 && !isPair) return CellShape::text;
        if (isPair) ++pairs;
        at += width + digits;
        ++groups;
    }
    if (pairs > 0 && pairs != groups - 1) return CellShape::text;
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
        if (isNumber && endsAsExponent(behind, last, true)) {
            hasExponent = true;
            return isPoint ? CellShape::decimalPoint : CellShape::decimalComma;
        }
    }
    if (whole > 0 && endsAsExponent(at, last, false)) {
        hasExponent = true;
        return CellShape::whole;
    }
    return groupedShape(first, at, last);
}

bool isNoValue(std::string_view cell) {
    // A spreadsheet's error, in any language, or a number that a column is too narrow to show.
    if (cell.starts_with('#') && cell.size() > 2 && cell.size() < 20) {
        if (cell.ends_with('!') || cell.ends_with('?')) return true;
        if (cell.find_first_not_of('#') == std::string_view::npos) return true;
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

constexpr struct {
    std::string_view sign;
    NumberUnit unit;
} unitSigns[] = {{"%", NumberUnit::percent},
                 {"$", NumberUnit::dollar},
                 {"\xE2\x82\xAC", NumberUnit::euro},
                 {"\xC2\xA3", NumberUnit::pound},
                 {"\xC2\xA5", NumberUnit::yen}};

void trimBlanks(std::string_view& text) {
    for (const std::string_view blank : {" ", "\xC2\xA0", "\xE2\x80\xAF"}) {
        while (text.starts_with(blank)) text.remove_prefix(blank.size());
        while (text.ends_with(blank)) text.remove_suffix(blank.size());
    }
}

// Takes off the first sign of a unit before or behind a number.
void takeUnit(std::string_view& number, NumberUnit& unit) {
    for (const auto& each : unitSigns) {
        if (number.starts_with(each.sign)) {
            number.remove_prefix(each.sign.size());
        } else if (number.ends_with(each.sign)) {
            number.remove_suffix(each.sign.size());
        } else {
            continue;
        }
        unit = each.unit;
        trimBlanks(number);
        return;
    }
}

// Whether a cell that is no number by itself begins or ends as a dressed one.
bool mayBeDressed(std::string_view cell) {
    const char last = cell.back();
    if (last == '%' || last == ')' || last == '-' || last == '$') return true;
    if (std::string_view("$%(+-").find(cell[0]) != std::string_view::npos) return true;
    return cell[0] == '\xE2' || cell[0] == '\xC2' || last == '\xAC' || last == '\xA3' || last == '\xA5';
}

// A number without what it is dressed in: a unit, and a minus that stands before or behind that, or is
// written as parentheses.
std::string_view undress(std::string_view cell, NumberDress& dress) {
    std::string_view number = cell;
    bool isMinus = false;
    takeUnit(number, dress.unit);
    if (number.size() > 2 && number.front() == '(' && number.back() == ')') {
        number = number.substr(1, number.size() - 2);
        dress.isNegated = true;
    } else if (const Index sign = signLength(number.data(), number.data() + number.size()); sign > 0) {
        isMinus = number.front() != '+';
        number.remove_prefix(static_cast<std::size_t>(sign));
    } else if (number.ends_with('-')) {
        number.remove_suffix(1);
        dress.isNegated = true;
    }
    trimBlanks(number);
    if (dress.unit == NumberUnit::none) takeUnit(number, dress.unit);
    dress.isPlain = false;
    // A minus that the rest begins with is a second one.
    const bool isNumber = !number.empty() && (isDigit(number[0]) || number[0] == '.' || number[0] == ',');
    if (!isNumber) return {};
    dress.isMinus = isMinus || dress.isNegated;
    return number;
}

} // namespace

CellShape shapeOf(std::string_view cell, NumberDress& dress) {
    bool hasExponent = false;
    CellShape shape = CellShape::text;
    dress = {};
    if (cell.size() <= longestNumber && !cell.empty()) {
        shape = numberShape(cell.data(), cell.data() + cell.size(), hasExponent);
        dress.isPlain = cell[0] != '+' && cell[0] != '\xE2' &&
                        !(hasExponent && cell.find_first_of("dD") != std::string_view::npos);
        if (shape == CellShape::text && mayBeDressed(cell)) {
            const std::string_view number = undress(cell, dress);
            if (!number.empty()) {
                shape = numberShape(number.data(), number.data() + number.size(), hasExponent);
            }
        }
        if (shape == CellShape::text) dress = {};
    }
    if (shape != CellShape::text) {
        // Only a long number or one with an exponent can be beyond the range.
        if (cell.size() < 300 && !hasExponent) return shape;
        PlainNumber number;
        writeNumber(cell, formOf(shape), number);
        return number.length > 0 && std::isfinite(parseNumber(number.text)) ? shape : CellShape::noValue;
    }
    if (isNoValue(cell)) return CellShape::noValue;
    return isDate(cell) ? CellShape::date : CellShape::text;
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
    NumberDress dress;
    cell = undress(cell, dress);
    if (dress.isMinus) digits[length++] = '-';
    for (const char c : cell) {
        if (length == longestNumber) break;
        if (isDigit(c) || c == '-' || c == '+' || c == 'e' || c == 'E') digits[length++] = c;
        if (isDoubleMark(c)) digits[length++] = 'e';
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
