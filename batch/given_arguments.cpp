#include "batch/given_arguments.h"

#include <cstring>

#include "batch/assignments.h"
#include "batch/field_values.h"
#include "report/cells.h"
#include "report/report_facts.h"

namespace {

void addOption(TextBuffer& texts, const char* name, std::string_view value) {
    texts.append("--");
    addToList(texts, name);
    addToList(texts, value);
}

// An option whose value was given; none for null.
void addOption(TextBuffer& texts, const char* name, const char* value) {
    if (value != nullptr) addOption(texts, name, std::string_view(value));
}

void addOption(TextBuffer& texts, const char* name, const Block<const char*>& values) {
    for (const char* value : values) addOption(texts, name, value);
}

void addWidth(TextBuffer& texts, const char* name, int width) {
    if (width > 0) addOption(texts, name, numberText(width, 0, 0).text);
}

void addFields(TextBuffer& texts, const CommandLine& line) {
    const OptionFields fields = line.kind->analysis->fields;
    for (std::size_t index = 0; index < fields.size(); ++index) {
        const char* const value = line.values[index];
        if (fields[index].type != OptionType::flag) {
            addOption(texts, fields[index].name, value);
        } else if (value != nullptr) {
            texts.append(std::strcmp(value, flagOn) == 0 ? "--" : "--no-");
            addToList(texts, fields[index].name);
        }
    }
    for (const AssignmentOption& option : assignmentOptions()) {
        addOption(texts, option.name, line.*option.texts);
    }
}

} // namespace

void listArguments(const CommandLine& line, TextBuffer& texts) {
    addToList(texts, kindWord(line));
    if (line.kind != nullptr) addFields(texts, line);
    addOption(texts, "exclude", line.excludes);
    addWidth(texts, "variable-width", line.variableWidth);
    addWidth(texts, "label-width", line.labelWidth);
    if (line.numerics != nullptr) addOption(texts, "numerics", numericsWord(*line.numerics));
    addOption(texts, "path", line.shownPath);
    if (line.missing != MissingPolicy::zero) addOption(texts, "missing", missingWord(line.missing));
    if (line.strict) addToList(texts, "--strict");
    if (line.hasDivisor) addOption(texts, "divisor", divisorWord(line.divisorIsN));
    if (line.isMoments) return addOption(texts, "moments", line.file);
    if (line.file[0] == '-') addToList(texts, "--");
    addToList(texts, line.file);
}
