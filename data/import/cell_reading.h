#pragma once

#include <cstdint>
#include <string_view>

#include "data/import/import_options.h"
#include "data/text_slot.h"
#include "numeric/growing_list.h"

// What a cell can be. "1,171" has three digits behind its only mark: a thousand or a decimal.
enum class CellShape : std::uint8_t {
    missing,
    whole,          // 171
    decimalPoint,   // 64.5
    decimalComma,   // 64,5
    eitherPoint,    // 1.171
    eitherComma,    // 1,171
    thousandsPoint, // 1.171.000 and 1.171,5
    thousandsComma, // 1,171,000 and 1,171.5
    spaced,         // 1 171, 1'171
    spacedPoint,    // 1 171.5
    spacedComma,    // 1 171,5
    noValue,        // inf, #DIV/0!, a number beyond the range of a double
    date,           // 2026-11-21, 21.11.2026 10:30, 10:30
    text,
};
constexpr int cellShapeCount = 14;

constexpr bool isNumberShape(CellShape shape) {
    return shape >= CellShape::whole && shape <= CellShape::spacedComma;
}

// What a number stands beside.
enum class NumberUnit : std::uint8_t { none, percent, dollar, euro, pound, yen };
constexpr int numberUnitCount = 6;

// How a number is written besides its shape.
struct NumberDress {
    NumberUnit unit = NumberUnit::none;
    bool isMinus = false;
    bool isNegated = false; // by (5) or 5-
    bool isPlain = true;    // the program's reader takes it, the decimal sign and thousands aside
};

// What a cell is, missing aside; that of the number alone where that has a dress. Blanks around it are gone
// already.
CellShape shapeOf(std::string_view cell, NumberDress& dress);
inline CellShape shapeOf(std::string_view cell) {
    NumberDress dress;
    return shapeOf(cell, dress);
}

// How numbers are written: the decimal sign and the thousands marks that may stand in them.
struct NumberForm {
    DecimalSign decimal = DecimalSign::point;
    bool thousandsMark = false;  // the comma or point that is no decimal sign
    bool thousandsSpace = false; // a blank, also a no-break one, or an apostrophe
};

// The thousands mark of a form; found where its decimal sign is not decided.
ThousandsMark thousandsOf(const NumberForm& form);

// Whether a cell of that shape is a number in that form.
bool isReadable(CellShape shape, const NumberForm& form);

// A number as the program reads it.
struct PlainNumber {
    char text[textSlotSize];
    Index length;
};

// Writes the digits of a cell as they stand, with a decimal point and without thousands; more than 62
// characters are rounded to the nearest double.
void writeNumber(std::string_view cell, const NumberForm& form, PlainNumber& number);

// The texts that mean a missing cell. Each points into the options.
class MissingTexts {
public:
    // The usual ones and those of the options.
    [[nodiscard]] ErrorCode set(const ImportOptions& options);
    bool has(std::string_view cell) const {
        if (cell.empty()) return true;
        return mayBegin_[static_cast<unsigned char>(cell[0])] && find(cell);
    }

private:
    void clear();
    [[nodiscard]] ErrorCode add(std::string_view text);
    bool find(std::string_view cell) const;

    GrowingList<std::string_view> texts_;
    bool hasNumbers_ = false;
    bool mayBegin_[256] = {};
};
