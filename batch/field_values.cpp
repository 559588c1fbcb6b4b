#include "batch/field_values.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "batch/file_system.h"
#include "batch/nearest_word.h"
#include "data/moments/moment_names.h"
#include "data/number.h"
#include "data/word_list.h"

namespace {

bool isWithin(const OptionField& field, double value) {
    switch (field.range) {
    case OptionRange::any:
        return true;
    case OptionRange::arrows:
        return value >= field.least && value <= field.most;
    case OptionRange::level:
        return value >= 0.0 && value < 1.0;
    }
    return false;
}

bool isWholeNumber(const OptionField& field, const char* text) {
    if (!isNumber(text) || std::strspn(text, "+-0123456789") != std::strlen(text)) return false;
    const double value = parseNumber(text);
    return value >= std::numeric_limits<std::int32_t>::min() &&
           value <= std::numeric_limits<std::int32_t>::max() && isWithin(field, value);
}

// The place of a text in a list, from 1.
bool isListPlace(const OptionField& field, const char* text) {
    return isWholeNumber(field, text) && parseNumber(text) >= 1.0 &&
           parseNumber(text) <= static_cast<double>(field.choices.size());
}

bool isRealNumber(const OptionField& field, const char* text) {
    return isNumber(text) && std::isfinite(parseNumber(text)) && isWithin(field, parseNumber(text));
}

// The index of a word among the choices, or -1.
int findChoice(const OptionField& field, const char* word) {
    for (std::size_t k = 0; k < field.choices.size(); ++k) {
        if (std::strcmp(field.choices[k], word) == 0) return static_cast<int>(k);
    }
    return -1;
}

void append(char* text, std::size_t size, std::string_view piece) {
    const std::size_t used = std::strlen(text);
    std::snprintf(text + used, size - used, "%.*s", static_cast<int>(piece.size()), piece.data());
}

std::int32_t findName(const CellTable& cells, std::string_view name) {
    for (std::int32_t col = 1; col < cells.cols; ++col) {
        if (name == cells.cell(0, col)) return col;
    }
    return 0;
}

// Appends which numbers the field takes, where it does not take all.
void describeRange(const OptionField& field, char* text, std::size_t size) {
    const std::size_t used = std::strlen(text);
    switch (field.range) {
    case OptionRange::any:
        return;
    case OptionRange::arrows:
        std::snprintf(text + used, size - used, " (%g to %g)", field.least, field.most);
        return;
    case OptionRange::level:
        append(text, size, " (0 to below 1)");
        return;
    }
}

// "; the variables are a, b, c"
void appendVariables(const DataSet& data, Complaint& complaint) {
    const DataMatrix& loaded = data.loaded;
    for (std::int32_t v = 0; v < loaded.variables; ++v) {
        complaint.add("%s%s", v == 0 ? "; the variables are " : ", ", loaded.name(v));
    }
}

} // namespace

bool isFieldValue(const OptionField& field, const char* text) {
    switch (field.type) {
    case OptionType::flag:
        return false;
    case OptionType::choice:
        return findChoice(field, text) >= 0;
    case OptionType::listedChoice:
        return isListPlace(field, text);
    case OptionType::wholeNumber:
        return isWholeNumber(field, text);
    case OptionType::real:
        return isRealNumber(field, text);
    case OptionType::variable:
    case OptionType::variables:
        return text[0] != '\0';
    }
    return false;
}

void complainOfValue(OptionFields fields, std::string_view name, const char* text, Complaint& complaint) {
    char values[400] = "";
    for (const OptionField& field : fields) {
        if (field.name == nullptr || name != field.name) continue;
        if (values[0] != '\0') append(values, sizeof values, "|");
        const std::size_t used = std::strlen(values);
        describeValue(field, values + used, sizeof values - used);
    }
    complaint.say("--%.*s takes %s, not '%.200s'", static_cast<int>(name.size()), name.data(), values, text);
    NearestWord nearest(text);
    for (const OptionField& field : fields) {
        if (field.name == nullptr || name != field.name || field.type != OptionType::choice) continue;
        for (const char* choice : field.choices) nearest.offer(choice);
    }
    nearest.suggest(complaint);
}

std::int32_t columnNumber(std::string_view name, std::int32_t most) {
    if (!name.starts_with('#')) return 0;
    std::int32_t number = 0;
    for (const char digit : name.substr(1)) {
        if (digit < '0' || digit > '9') return 0;
        number = 10 * number + (digit - '0');
        if (number > most) return 0;
    }
    return number;
}

std::int32_t findColumn(const CellTable& cells, std::string_view name) {
    std::int32_t column = findName(cells, name);
    if (column != 0) return column;
    // The command line is UTF-8, a file that another program wrote on this system need not be.
    char given[4 * textSlotSize], converted[textSlotSize];
    if (name.size() < sizeof given) {
        std::snprintf(given, sizeof given, "%.*s", static_cast<int>(name.size()), name.data());
        if (writeInCodePage(given, converted, sizeof converted)) column = findName(cells, converted);
        if (column != 0) return column;
    }
    if (cells.isOfEngine) {
        const TextView names = TextView::every(cells.texts.places(), cells.cols - 1, 1, 1);
        column = static_cast<std::int32_t>(findNameButCase(names, name)) + 1;
        if (column != 0) return column;
    }
    return columnNumber(name, cells.cols - 1);
}

std::int32_t findVariable(const DataSet& data, std::string_view name) {
    const std::int32_t column = findColumn(data.cells, name);
    if (column == 0 || data.useFlags[column] == 0) return 0;
    std::int32_t variable = 0;
    for (std::int32_t col = 1; col <= column; ++col) variable += data.useFlags[col];
    return variable;
}

std::int32_t requireVariable(const char* option, std::string_view name, const DataSet& data,
                             Complaint& complaint) {
    const std::int32_t variable = findVariable(data, name);
    if (variable == 0) {
        complaint.say("--%s: there is no variable '%.*s'", option, static_cast<int>(name.size()),
                      name.data());
        NearestWord nearest(name);
        for (std::int32_t v = 0; v < data.loaded.variables; ++v) nearest.offer(data.loaded.name(v));
        if (!nearest.suggest(complaint)) appendVariables(data, complaint);
    }
    return variable;
}

bool setField(const OptionField& field, const char* text, const DataSet& data, AnalysisOptions& options,
              Complaint& complaint) {
    switch (field.type) {
    case OptionType::flag:
        wholeOption(options, field) = std::strcmp(text, flagOn) == 0 ? 1 : 0;
        return true;
    case OptionType::choice:
        wholeOption(options, field) = findChoice(field, text);
        return true;
    case OptionType::listedChoice:
        wholeOption(options, field) = static_cast<std::int32_t>(parseNumber(text)) - 1;
        return true;
    case OptionType::wholeNumber:
    case OptionType::real:
        typeOption(options, field, text);
        return true;
    case OptionType::variable:
    case OptionType::variables:
        break;
    }
    for (int k = 0; k < field.count; ++k) wholeOption(options, field, k) = 0;
    int used = 0;
    const auto choose = [&](std::string_view name) {
        const std::int32_t variable = requireVariable(field.name, name, data, complaint);
        if (variable == 0) return false;
        if (used == field.count) {
            complaint.say("--%s takes at most %d variables", field.name, field.count);
            return false;
        }
        wholeOption(options, field, used++) = variable;
        return true;
    };
    return field.type == OptionType::variables ? forEachNamed(text, choose) : choose(text);
}

bool isChosen(const OptionField& field, const DataSet& data, AnalysisOptions& options) {
    const bool isVariable = field.type == OptionType::variable || field.type == OptionType::variables;
    const std::int32_t chosen = wholeOption(options, field);
    return !isVariable || (chosen >= 1 && chosen <= data.loaded.variables) || data.loaded.variables == 0;
}

void complainOfMissing(const OptionField& field, const DataSet& data, Complaint& complaint) {
    char value[40];
    describeValue(field, value, sizeof value);
    complaint.say("--%s %s is needed", field.name, value);
    appendVariables(data, complaint);
}

void describeValue(const OptionField& field, char* text, std::size_t size) {
    text[0] = '\0';
    switch (field.type) {
    case OptionType::flag:
        return;
    case OptionType::choice:
        for (const char* choice : field.choices) {
            if (text[0] != '\0') append(text, size, "|");
            append(text, size, choice);
        }
        return;
    case OptionType::listedChoice:
        std::snprintf(text, size, "N (1 to %d)", static_cast<int>(field.choices.size()));
        return;
    case OptionType::wholeNumber:
    case OptionType::real:
        append(text, size, field.type == OptionType::real ? "X" : "N");
        describeRange(field, text, size);
        return;
    case OptionType::variable:
        append(text, size, "NAME");
        return;
    case OptionType::variables:
        append(text, size, "NAME[,NAME...]");
        return;
    }
}
