#include "data/import/import_findings.h"

#include <cstdio>

#include "data/word_list.h"

namespace {

void tellForm(const ImportSurvey& survey, const ImportPlan& plan, ImportMessages& messages) {
    const ImportForm& form = survey.form;
    if (form.notUtf8Line > 0 && form.encoding == TextEncoding::windows1252) {
        messages.note("line %lld is no UTF-8", static_cast<long long>(form.notUtf8Line));
    }
    if (form.namesDelimiter) messages.note("line 1 names the delimiter");
    if (form.namesLine > 0) {
        messages.note("the comment in line %lld holds the names", static_cast<long long>(form.namesLine));
    }
    char labels[200];
    if (plan.labelColumn < 0) {
        std::snprintf(labels, sizeof labels, "samples numbered");
    } else {
        const Shown name = shown(survey.names[plan.labelColumn]);
        const bool isNamed = name.length > 0;
        std::snprintf(labels, sizeof labels, "labels from column %lld%s%.*s%s",
                      static_cast<long long>(plan.labelColumn) + 1, isNamed ? " '" : "", name.length,
                      name.text, isNamed ? "'" : "");
    }
    const ImportOptions found = foundOptions(survey, plan);
    const auto word = [&found](ImportChoice choice) {
        return shown(wordOf(namesOf(choice).words, chosenWord(found, choice)));
    };
    const Shown encoding = word(ImportChoice::encoding), delimiter = word(ImportChoice::delimiter);
    const Shown decimal = word(ImportChoice::decimal), thousands = word(ImportChoice::thousands);
    const Shown header = word(ImportChoice::header);
    messages.note(
        "read with --encoding %.*s --delimiter %.*s --decimal %.*s --thousands %.*s --header %.*s, %s",
        encoding.length, encoding.text, delimiter.length, delimiter.text, decimal.length, decimal.text,
        thousands.length, thousands.text, header.length, header.text, labels);
}

void tellPassedOver(const PassedOver& passed, ImportMessages& messages) {
    if (passed.comments > 0) {
        messages.note("comments left out: %lld, the first in line %lld",
                      static_cast<long long>(passed.comments), static_cast<long long>(passed.firstComment));
    }
    if (passed.blanks > 0) {
        messages.note("blank lines between rows: %lld, the first is line %lld",
                      static_cast<long long>(passed.blanks), static_cast<long long>(passed.firstBlank));
    }
    if (passed.secondNames > 0) {
        messages.warn("lines below the names without numbers, as units or second names, left out: %lld, the "
                      "first is line %lld",
                      static_cast<long long>(passed.secondNames),
                      static_cast<long long>(passed.firstSecondName));
    }
    if (passed.filled > 0) {
        messages.warn("rows that lack cells at the end, which are missing now: %lld, the first in line %lld",
                      static_cast<long long>(passed.filled), static_cast<long long>(passed.firstFilled));
    }
    if (passed.odd > 0) {
        messages.warn("rows of another length left out: %lld, the first in line %lld",
                      static_cast<long long>(passed.odd), static_cast<long long>(passed.firstOdd));
    }
}

// Rows that may be no samples.
void tellDoubtfulRows(const ImportSurvey& survey, const ImportPlan& plan, ImportMessages& messages) {
    if (survey.totalLine > 0 && !survey.isCut && plan.labelColumn == 0) {
        messages.warn(
            "line %lld: one of the last rows is called a sum or a mean of the others, but counts as a "
            "sample: take it out of the file if it is none",
            static_cast<long long>(survey.totalLine));
    }
    if (survey.labelRows > 0) {
        messages.warn(
            "rows that are empty behind their first cell: %lld, the first in line %lld: --rows fitting "
            "leaves them out",
            static_cast<long long>(survey.labelRows), static_cast<long long>(survey.firstLabelRow));
    }
}

// One line a variable: "sex: 1 female, 2 male".
void tellCategories(const ImportSurvey& survey, const ImportPlan& plan, ImportMessages& messages) {
    Index variable = 0;
    for (Index j = 0; j < survey.form.width; ++j) {
        if (!isVariable(plan.uses[j])) continue;
        const char* const name = plan.names[variable++];
        if (plan.uses[j] == ColumnUse::number) continue;
        char line[1800];
        std::size_t length = 0;
        const std::int32_t list = survey.columns[j].texts;
        for (Index k = 0; k < survey.texts.count(list); ++k) {
            const std::string_view text = survey.texts.text(list, k);
            const std::size_t room = sizeof line - length;
            if (text.size() + 40 > room) {
                std::snprintf(line + length, room, ", ...");
                break;
            }
            length += static_cast<std::size_t>(std::snprintf(line + length, room, "%s%lld = %.*s",
                                                             k > 0 ? ", " : "", static_cast<long long>(k) + 1,
                                                             static_cast<int>(text.size()), text.data()));
        }
        messages.note("categories of '%s': %s", name, line);
    }
}

} // namespace

ImportOptions foundOptions(const ImportSurvey& survey, const ImportPlan& plan) {
    ImportOptions found;
    found.encoding = survey.form.encoding;
    found.delimiter = delimiterOf(survey.form.delimiter);
    found.decimal = plan.numbers.decimal;
    found.thousands = thousandsOf(plan.numbers);
    found.header = survey.form.hasHeader ? HeaderRow::present : HeaderRow::absent;
    if (plan.labelColumn != undecidedColumn) {
        found.labels = plan.labelColumn < 0    ? LabelColumn::none
                       : plan.labelColumn == 0 ? LabelColumn::first
                                               : LabelColumn::named;
    }
    return found;
}

void tellFindings(const ImportSurvey& survey, const ImportPlan& plan, ImportMessages& messages) {
    tellForm(survey, plan, messages);
    messages.note("samples: %lld, variables: %lld", static_cast<long long>(survey.rows),
                  static_cast<long long>(plan.variables));
    tellPassedOver(survey.passedOver, messages);
    tellDoubtfulRows(survey, plan, messages);
    tellCategories(survey, plan, messages);
}
