#include "data/import/import_choice.h"

#include <cstdio>

namespace {

// In the order of ImportChoice.
constexpr ImportChoiceNames choiceNames[importChoiceCount] = {
    {"--encoding", "encoding", "utf-8|utf-16|windows-1252"},
    {"--delimiter", "delimiter", "comma|semicolon|tab|bar"},
    {"--decimal", "decimal sign", "point|comma"},
    {"--thousands", "thousands", "none|comma|point|space"},
    {"--header", "header", "yes|no"},
    {"--labels", "labels", "first|none"},
    {"--rows", "rows", "all|fitting"},
    {"--na", "missing", nullptr},
    {"--keep", "keep", nullptr},
    {"--drop", "drop", nullptr},
    {"--categories", "categories", nullptr},
};

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

std::string_view wordOf(std::string_view words, int number) {
    for (; number > 1 && !words.empty(); --number) {
        const std::size_t bar = words.find('|');
        words.remove_prefix(bar == std::string_view::npos ? words.size() : bar + 1);
    }
    return words.substr(0, words.find('|'));
}

int findWord(std::string_view words, std::string_view word) {
    for (int number = 1;; ++number) {
        const std::string_view each = wordOf(words, number);
        if (each.empty() || each == word) return each.empty() ? 0 : number;
    }
}

int chosenWord(const ImportOptions& options, ImportChoice choice) {
    switch (choice) {
    case ImportChoice::encoding:
        return static_cast<int>(options.encoding);
    case ImportChoice::delimiter:
        return static_cast<int>(options.delimiter);
    case ImportChoice::decimal:
        return static_cast<int>(options.decimal);
    case ImportChoice::thousands:
        return static_cast<int>(options.thousands);
    case ImportChoice::header:
        return static_cast<int>(options.header);
    case ImportChoice::labels:
        return static_cast<int>(options.labels);
    case ImportChoice::oddRows:
        return static_cast<int>(options.oddRows) + 1;
    default:
        return 0;
    }
}

void chooseWord(ImportOptions& options, ImportChoice choice, int number) {
    switch (choice) {
    case ImportChoice::encoding:
        options.encoding = static_cast<TextEncoding>(number);
        break;
    case ImportChoice::delimiter:
        options.delimiter = static_cast<Delimiter>(number);
        break;
    case ImportChoice::decimal:
        options.decimal = static_cast<DecimalSign>(number);
        break;
    case ImportChoice::thousands:
        options.thousands = static_cast<ThousandsMark>(number);
        break;
    case ImportChoice::header:
        options.header = static_cast<HeaderRow>(number);
        break;
    case ImportChoice::labels:
        options.labels = static_cast<LabelColumn>(number);
        break;
    case ImportChoice::oddRows:
        options.oddRows = static_cast<OddRows>(number - 1);
        break;
    default:
        break;
    }
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
