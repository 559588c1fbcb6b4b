#include "data/import/import_choice.h"

#include <cstdio>
#include <type_traits>

namespace {

// In the order of ImportChoice.
constexpr ImportChoiceNames choiceNames[importChoiceCount] = {
    {"--encoding", "encoding", "utf-8|utf-16|windows-1252"},
    {"--delimiter", "delimiter", "comma|semicolon|tab|bar|blank"},
    {"--decimal", "decimal sign", "point|comma"},
    {"--thousands", "thousands", "none|comma|point|space"},
    {"--header", "header", "yes|no"},
    {"--labels", "labels", "first|none"},
    {"--rows", "rows", "all|fitting|filled"},
    {"--na", "missing", nullptr},
    {"--keep", "keep", nullptr},
    {"--drop", "drop", nullptr},
    {"--categories", "categories", nullptr},
};

// Calls `visit` with what the options hold of a choice of words.
template <class Options, class Visit> void visitWords(Options& options, ImportChoice choice, Visit visit) {
    switch (choice) {
    case ImportChoice::encoding:
        return visit(options.encoding);
    case ImportChoice::delimiter:
        return visit(options.delimiter);
    case ImportChoice::decimal:
        return visit(options.decimal);
    case ImportChoice::thousands:
        return visit(options.thousands);
    case ImportChoice::header:
        return visit(options.header);
    case ImportChoice::labels:
        return visit(options.labels);
    case ImportChoice::oddRows:
        return visit(options.oddRows);
    default:
        return;
    }
}

// The number of the word that the value 0 stands for: no word where that is `found`.
int wordOfZero(ImportChoice choice) {
    return choice == ImportChoice::oddRows ? 1 : 0;
}

Block<const char*>& textsOf(ImportOptions& options, ImportChoice choice) {
    switch (choice) {
    case ImportChoice::missing:
        return options.missing;
    case ImportChoice::keeps:
        return options.keeps;
    case ImportChoice::drops:
        return options.drops;
    default:
        return options.categories;
    }
}

} // namespace

const ImportChoiceNames& namesOf(ImportChoice choice) {
    return choiceNames[static_cast<int>(choice)];
}

int chosenWord(const ImportOptions& options, ImportChoice choice) {
    int number = 0;
    visitWords(options, choice, [&](const auto& value) { number = static_cast<int>(value); });
    return number + wordOfZero(choice);
}

void chooseWord(ImportOptions& options, ImportChoice choice, int number) {
    visitWords(options, choice, [&](auto& value) {
        value = static_cast<std::remove_reference_t<decltype(value)>>(number - wordOfZero(choice));
    });
}

void chooseLabelColumn(ImportOptions& options, Index column, char (&name)[24]) {
    std::snprintf(name, sizeof name, "#%lld", static_cast<long long>(column) + 1);
    options.labels = LabelColumn::named;
    options.labelName = name;
}

ErrorCode chooseText(ImportOptions& options, ImportChoice choice, const char* text) {
    Block<const char*>& texts = textsOf(options, choice);
    const ErrorCode code = texts.allocate(*text != '\0' ? 1 : 0);
    if (texts.size() > 0) texts[0] = text;
    return code;
}
