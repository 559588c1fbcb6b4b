#include "data/import/number_form.h"

#include <algorithm>

namespace {

// Cells of one kind in all columns of numbers, and the first line with one.
struct Evidence {
    Index count = 0;
    long long line = 0;

    void add(const ColumnSurvey& column, CellShape shape) {
        if (column.count(shape) == 0) return;
        count += column.count(shape);
        const long long first = column.firstLine(shape);
        line = line == 0 ? first : std::min(line, first);
    }
    explicit operator bool() const { return count > 0; }
};

struct Marks {
    Evidence points, commas;             // decimal signs
    Evidence eitherPoints, eitherCommas; // decimal signs or thousands marks
    Evidence thousandPoints, thousandCommas, spaces;
};

Marks collect(const ImportSurvey& survey, Index labelColumn) {
    Marks marks;
    for (Index j = 0; j < survey.form.width; ++j) {
        const ColumnSurvey& column = survey.columns[j];
        const ColumnWish& wish = survey.wishes[j];
        if (j == labelColumn || wish.isOut() || wish.categories) continue;
        if (column.count(CellShape::text) + column.count(CellShape::date) > 0) continue;
        marks.points.add(column, CellShape::decimalPoint);
        marks.points.add(column, CellShape::spacedPoint);
        marks.points.add(column, CellShape::thousandsComma);
        marks.commas.add(column, CellShape::decimalComma);
        marks.commas.add(column, CellShape::spacedComma);
        marks.commas.add(column, CellShape::thousandsPoint);
        marks.eitherPoints.add(column, CellShape::eitherPoint);
        marks.eitherCommas.add(column, CellShape::eitherComma);
        marks.thousandPoints.add(column, CellShape::thousandsPoint);
        marks.thousandCommas.add(column, CellShape::thousandsComma);
        marks.spaces.add(column, CellShape::spaced);
        marks.spaces.add(column, CellShape::spacedPoint);
        marks.spaces.add(column, CellShape::spacedComma);
    }
    return marks;
}

// The decimal sign; `found` with a refusal when nothing tells it.
DecimalSign findDecimal(const ImportSurvey& survey, const ImportOptions& options, const Marks& marks,
                        ImportMessages& messages) {
    if (options.decimal != DecimalSign::found) return options.decimal;
    if (options.thousands == ThousandsMark::comma) return DecimalSign::point;
    if (options.thousands == ThousandsMark::point) return DecimalSign::comma;
    if (marks.points && marks.commas) {
        messages.refuse(
            "line %lld has a decimal point, line %lld a decimal comma: --decimal point or --decimal "
            "comma says which",
            marks.points.line, marks.commas.line);
        return DecimalSign::found;
    }
    if (marks.points) return DecimalSign::point;
    if (marks.commas) return DecimalSign::comma;
    const bool points = static_cast<bool>(marks.eitherPoints), commas = static_cast<bool>(marks.eitherCommas);
    const bool noThousands = options.thousands != ThousandsMark::found;
    // Who separates cells by commas or blanks writes points, and who separates them by semicolons has often
    // to.
    if (points && !commas && (noThousands || survey.form.delimiter == ',' || survey.form.delimiter == ' '))
        return DecimalSign::point;
    if (commas && !points && (noThousands || survey.form.delimiter == ';')) return DecimalSign::comma;
    if (!points && !commas) return DecimalSign::point;
    const Evidence& doubt = commas ? marks.eitherCommas : marks.eitherPoints;
    messages.refuse(
        "line %lld: three digits behind a %s can be decimals or follow a thousand: --decimal %s or "
        "--thousands %s says which",
        doubt.line, commas ? "comma" : "point", commas ? "comma" : "point", commas ? "comma" : "point");
    return DecimalSign::found;
}

} // namespace

bool findNumberForm(const ImportSurvey& survey, const ImportOptions& options, Index labelColumn,
                    NumberForm& form, ImportMessages& messages) {
    const Marks marks = collect(survey, labelColumn);
    form.decimal = findDecimal(survey, options, marks, messages);
    if (form.decimal == DecimalSign::found) return false;
    const bool point = form.decimal == DecimalSign::point;
    const Evidence& sure = point ? marks.thousandCommas : marks.thousandPoints;
    const Evidence& likely = point ? marks.eitherCommas : marks.eitherPoints;
    const char* const name = point ? "comma" : "point";
    switch (options.thousands) {
    case ThousandsMark::found:
        form.thousandsMark = sure || likely;
        form.thousandsSpace = static_cast<bool>(marks.spaces);
        if (likely && !sure) {
            messages.note(
                "line %lld: three digits behind a %s follow a thousand, as the decimal sign is a %s: "
                "--decimal %s says otherwise",
                likely.line, name, point ? "point" : "comma", name);
        }
        break;
    case ThousandsMark::none:
        break;
    case ThousandsMark::space:
        form.thousandsSpace = true;
        break;
    case ThousandsMark::comma:
    case ThousandsMark::point:
        if (point == (options.thousands == ThousandsMark::point)) {
            messages.refuse("the decimal sign and the thousands mark cannot both be a %s",
                            point ? "point" : "comma");
            return false;
        }
        form.thousandsMark = true;
        break;
    }
    return true;
}
