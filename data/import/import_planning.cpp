#include "data/import/import_planning.h"

#include <algorithm>

#include "data/import/import_findings.h"
#include "data/import/number_form.h"
#include "data/import/variable_names.h"
#include "data/word_list.h"

namespace {

Index findLabels(const ImportSurvey& survey, const ImportOptions& options) {
    if (options.labels == LabelColumn::none) return -1;
    if (options.labels == LabelColumn::first) return 0;
    for (Index j = 0; j < survey.form.width; ++j) {
        if (survey.wishes[j].labels) return j;
    }
    const ColumnSurvey& column = survey.columns[0];
    const ColumnWish& wish = survey.wishes[0];
    if (survey.form.isCornerless) return 0;
    if (survey.form.width < 2 || wish.dropped || wish.categories || column.filled() == 0) return -1;
    const bool different = survey.firstIsDifferent;
    if (column.numbers() < column.filled()) {
        return different || survey.names[0].empty() ? 0 : -1;
    }
    const bool whole = column.count(CellShape::whole) == survey.rows;
    return different && whole && isLabelName(survey.names[0]) ? 0 : -1;
}

// Decimal commas that divide cells make a header look too short: numbers then stand under the name of the
// labels.
bool checkCorner(const ImportSurvey& survey, const ImportOptions& options, ImportMessages& messages) {
    if (!survey.form.isCornerless || options.labels != LabelColumn::found || survey.form.width < 2)
        return true;
    const ColumnSurvey& labels = survey.columns[0];
    const ColumnSurvey& column = survey.columns[1];
    const char delimiter = survey.form.delimiter;
    // Numbers that count the rows are labels; others can be the beginnings of numbers that were divided.
    const bool isDivided = labels.numbers() == labels.filled() ? !survey.firstIsQuoted && !survey.firstCounts
                                                               : delimiter == ' ' && !survey.firstIsDifferent;
    if (isDivided && (delimiter == ',' || delimiter == ' ')) {
        messages.refuse(
            "the header has a name less than the rows have cells, and the first cells are no labels "
            "that differ (%s?): --labels first takes them so",
            delimiter == ',' ? "decimal commas between cells that are divided by commas"
                             : "blanks in numbers or texts");
        return false;
    }
    const bool areTexts = labels.numbers() < labels.filled(),
               areNumbers = column.numbers() == column.filled();
    if (survey.names[1].empty() || !isLabelName(survey.names[1]) || !areTexts || !areNumbers) return true;
    const Shown name = shown(survey.names[1]);
    messages.refuse(
        "the header has a name less than the rows have cells, and numbers stand under '%.*s' (decimal "
        "commas between cells that are divided by commas?): --labels first takes them so",
        name.length, name.text);
    return false;
}

// The line of the first cell that is neither number nor missing.
long long firstTextLine(const ColumnSurvey& column) {
    Index line = 0;
    for (const CellShape shape : {CellShape::text, CellShape::date}) {
        if (column.count(shape) == 0) continue;
        line = line == 0 ? column.firstLine(shape) : std::min(line, column.firstLine(shape));
    }
    return line;
}

// Refuses a cell that is a number in another form than the file's.
bool checkNumbers(const ColumnSurvey& column, Shown name, const NumberForm& form, ImportMessages& messages) {
    for (int k = 0; k < cellShapeCount; ++k) {
        const CellShape shape = static_cast<CellShape>(k);
        if (!isNumberShape(shape) || column.counts[k] == 0 || isReadable(shape, form)) continue;
        const Shown thousands =
            shown(wordOf(namesOf(ImportChoice::thousands).words, static_cast<int>(thousandsOf(form))));
        messages.refuse(
            "line %lld, column '%.*s': a number is written with other marks than --decimal %s and "
            "--thousands %.*s say",
            static_cast<long long>(column.firstLines[k]), name.length, name.text,
            form.decimal == DecimalSign::point ? "point" : "comma", thousands.length, thousands.text);
        return false;
    }
    return true;
}

constexpr const char* unitNames[numberUnitCount] = {"no sign",      "%",        "$",
                                                    "\xE2\x82\xAC", "\xC2\xA3", "\xC2\xA5"};

// Refuses numbers beside different signs; those of a currency may lack theirs.
bool checkUnits(const ColumnSurvey& column, Shown name, long long number, ImportMessages& messages) {
    int first = -1;
    for (int unit = numberUnitCount - 1; unit >= 0; --unit) {
        if (column.units[unit] == 0) continue;
        const bool isBare = unit == static_cast<int>(NumberUnit::none);
        if (first < 0 || (isBare && first != static_cast<int>(NumberUnit::percent))) {
            if (first < 0) first = unit;
            continue;
        }
        messages.refuse("column '%.*s': a number has %s beside it in line %lld and %s in line %lld: --drop "
                        "#%lld leaves the column out, --categories #%lld makes categories",
                        name.length, name.text, unitNames[first],
                        static_cast<long long>(column.unitLines[first]), unitNames[unit],
                        static_cast<long long>(column.unitLines[unit]), number, number);
        return false;
    }
    return true;
}

// Tells what numbers lose or may mean.
void tellNumbers(const ColumnSurvey& column, Shown name, ImportMessages& messages) {
    for (int unit = 1; unit < numberUnitCount; ++unit) {
        if (column.units[unit] == 0) continue;
        messages.warn("column '%.*s': %s beside numbers is left out, first in line %lld: 5 %s is read as 5",
                      name.length, name.text, unitNames[unit], static_cast<long long>(column.unitLines[unit]),
                      unitNames[unit]);
    }
    if (column.negated > 0) {
        messages.warn(
            "column '%.*s': numbers in parentheses or with a minus behind them are below 0: %lld, the first "
            "in line %lld",
            name.length, name.text, static_cast<long long>(column.negated),
            static_cast<long long>(column.negatedLine));
    }
    if (column.nines > 0 && column.nines == column.minus && column.nines < column.numbers()) {
        constexpr const char* nines = "999999999999";
        const int digits = static_cast<int>(std::min(column.ninesDigits, Index{12}));
        messages.note(
            "column '%.*s': -%.*s stands there %lld times, first in line %lld, and no other number is "
            "below 0: --na -%.*s makes it missing",
            name.length, name.text, digits, nines, static_cast<long long>(column.nines),
            static_cast<long long>(column.ninesLine), digits, nines);
    }
}

// Whether a text is a number and something else behind it, but no range as 20-29.
bool beginsWithNumber(std::string_view text) {
    if (text.starts_with('<') || text.starts_with('>') || text.starts_with('~')) text.remove_prefix(1);
    const std::size_t digits = std::min(text.find_first_not_of("0123456789.,"), text.size());
    text.remove_prefix(digits);
    while (text.starts_with(' ')) text.remove_prefix(1);
    const bool isRange =
        text.starts_with('-') || text.starts_with('+') || text.starts_with('/') || text.starts_with('\xE2');
    return digits > 0 && !isRange;
}

// Tells what is missing among texts, where a mark can be a text.
void tellMarks(const ColumnSurvey& column, Shown name, ImportMessages& messages) {
    if (column.marked == 0) return;
    messages.warn(
        "column '%.*s': cells such as '%s' are taken as missing, no category: %lld, the first in line %lld; "
        "--na none takes them as texts",
        name.length, name.text, column.mark, static_cast<long long>(column.marked),
        static_cast<long long>(column.markedLine));
}

// Warns of categories that are most likely measured.
void tellUnits(const ImportSurvey& survey, const ColumnSurvey& column, Shown name, long long number,
               ImportMessages& messages) {
    const Index count = survey.texts.count(column.texts);
    if (2 * count <= survey.rows || count < 2) return;
    for (Index k = 0; k < count; ++k) {
        if (!beginsWithNumber(survey.texts.text(column.texts, k))) return;
    }
    const Shown text = shown(survey.texts.text(column.texts, 0));
    messages.warn("column '%.*s': texts that begin with a number, as '%.*s', are categories: take away what "
                  "stands beside the numbers, or --drop #%lld leaves the column out",
                  name.length, name.text, text.length, text.text, number);
}

// What becomes of a column that is to be a variable; leftOut with a refusal where that is in doubt.
ColumnUse findUse(const ImportSurvey& survey, Index j, const NumberForm& form, ImportMessages& messages) {
    const ColumnSurvey& column = survey.columns[j];
    const Shown name = shown(survey.names[j]);
    const Index texts = column.count(CellShape::text), dates = column.count(CellShape::date);
    const Index lost = column.count(CellShape::noValue);
    const long long number = j + 1;
    const bool isListed = column.texts >= 0 && survey.texts.count(column.texts) <= mostCategories;
    if (survey.wishes[j].categories) {
        if (column.filled() > 0 && isListed) return ColumnUse::category;
        messages.refuse("--categories: column '%.*s' holds %s", name.length, name.text,
                        column.filled() == 0 ? "nothing" : "more than 64 different texts");
        return ColumnUse::leftOut;
    }
    if (lost > 0) {
        messages.warn("column '%.*s': cells without a finite number, which are missing now: %lld, the first "
                      "in line %lld",
                      name.length, name.text, static_cast<long long>(lost),
                      static_cast<long long>(column.firstLine(CellShape::noValue)));
    }
    if (column.filled() == lost) {
        if (lost > 0 || name.length > 0) {
            messages.warn("column '%.*s' (#%lld) holds nothing and is left out", name.length, name.text,
                          number);
        }
        return ColumnUse::leftOut;
    }
    if (texts == 0 && dates == 0) {
        const bool areNumbers =
            checkNumbers(column, name, form, messages) && checkUnits(column, name, number, messages);
        if (areNumbers) tellNumbers(column, name, messages);
        return areNumbers ? ColumnUse::number : ColumnUse::leftOut;
    }
    if (column.numbers() == 0 && texts == 0) {
        messages.warn("column '%.*s' (#%lld) holds dates or times and is left out", name.length, name.text,
                      number);
        return ColumnUse::leftOut;
    }
    if (!isListed) {
        messages.warn("column '%.*s' (#%lld) holds more than 64 different texts and is left out", name.length,
                      name.text, number);
        return ColumnUse::leftOut;
    }
    if (column.numbers() > 0) {
        const Shown text = shown(survey.texts.text(column.texts, 0));
        messages.refuse("line %lld, column '%.*s': '%.*s' is no number, as cells of the column are (%lld): "
                        "%s--na '%.*s' makes "
                        "it missing, --drop #%lld leaves the column out, --categories #%lld makes categories",
                        firstTextLine(column), name.length, name.text, text.length, text.text,
                        static_cast<long long>(column.numbers()),
                        texts <= survey.form.secondNames
                            ? "--rows fitting leaves out lines of units or second names, "
                            : "",
                        text.length, text.text, number, number);
        return ColumnUse::leftOut;
    }
    tellMarks(column, name, messages);
    tellUnits(survey, column, name, number, messages);
    return ColumnUse::category;
}

// Texts in one column alone are lines that something else divides, blanks for one.
bool checkDivision(const ImportSurvey& survey, const ImportOptions& options, ImportMessages& messages) {
    const bool isFound = options.delimiter == Delimiter::found && !survey.form.namesDelimiter;
    if (!isFound || survey.form.width != 1 || survey.columns[0].numbers() > 0) return true;
    messages.refuse("no comma, semicolon, tab or bar divides the lines into cells: --delimiter comma takes "
                    "each as one, --delimiter blank divides them at blanks");
    return false;
}

bool checkRows(const ImportSurvey& survey, const ImportOptions& options, ImportMessages& messages) {
    const PassedOver& passed = survey.passedOver;
    if (passed.odd > 0 && options.oddRows == OddRows::refused) {
        messages.refuse("line %lld has %lld cells, a row of the table %lld: --rows fitting leaves out such "
                        "rows (%lld)%s",
                        static_cast<long long>(passed.firstOdd), static_cast<long long>(passed.firstOddCells),
                        static_cast<long long>(survey.form.width), static_cast<long long>(passed.odd),
                        passed.shorter == passed.odd ? ", filled takes the cells that lack as missing" : "");
        return false;
    }
    if (survey.rows == 0) messages.refuse("there are no rows of data in the file");
    return survey.rows > 0;
}

// The widest cell of a column as it is written, with its comma.
Index widthOf(const ColumnSurvey& column, ColumnUse use) {
    if (use == ColumnUse::leftOut) return 0;
    if (use == ColumnUse::category) return 3;
    return std::clamp(column.widest, Index{2}, textSlotLength) + 1;
}

// A line of the table that would be too long is refused with the columns that fit.
bool checkWidth(const ImportSurvey& survey, const ImportPlan& plan, ImportMessages& messages) {
    Index names = 5, cells = textSlotLength; // "label"
    long long fitting = 0, first = 0;        // columns from 1
    Index variable = 0;
    for (Index j = 0; j < survey.form.width; ++j) {
        if (!isVariable(plan.uses[j])) continue;
        names += std::ssize(std::string_view(plan.names[variable++])) + 1;
        cells += widthOf(survey.columns[j], plan.uses[j]);
        if (first == 0) first = j + 1;
        if (std::max(names, cells) <= longestTableLine) fitting = j + 1;
    }
    if (names <= longestTableLine && std::min(cells, survey.widestRow + textSlotLength) <= longestTableLine)
        return true;
    messages.refuse(
        "the table is too wide: a line of it holds at most %lld characters; --keep #%lld-#%lld takes "
        "the columns that fit",
        static_cast<long long>(longestTableLine), first, fitting);
    return false;
}

} // namespace

ErrorCode planImport(const ImportSurvey& survey, const ImportOptions& options, ImportPlan& plan,
                     ImportMessages& messages) {
    plan.target = {options.written, options.codePage};
    if (!checkRows(survey, options, messages)) return illegalData;
    if (!checkDivision(survey, options, messages)) return illegalData;
    plan.labelColumn = findLabels(survey, options);
    if (!checkCorner(survey, options, messages)) return illegalData;
    if (!findNumberForm(survey, options, plan.labelColumn, plan.numbers, messages)) return illegalData;
    if (plan.uses.allocate(survey.form.width) != success) return outOfMemory;
    plan.variables = 0;
    for (Index j = 0; j < survey.form.width; ++j) {
        if (j == plan.labelColumn) plan.uses[j] = ColumnUse::labels;
        if (j == plan.labelColumn || survey.wishes[j].isOut()) continue;
        plan.uses[j] = findUse(survey, j, plan.numbers, messages);
        if (messages.refused()) return illegalData;
        plan.variables += plan.uses[j] != ColumnUse::leftOut;
    }
    if (plan.variables == 0) {
        messages.refuse("no column of numbers or categories is left");
        return illegalData;
    }
    if (nameVariables(survey, plan, messages) != success) return outOfMemory;
    if (!checkWidth(survey, plan, messages)) return illegalData;
    tellFindings(survey, plan, messages);
    return success;
}
