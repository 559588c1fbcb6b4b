#include "analysis/run/repeat_command.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace {

// What the command prompt takes as it stands.
bool isPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::strchr("._:\\/-+,=#", c) != nullptr;
}

// The names of variables and what stands between them.
class Word {
public:
    void append(std::string_view piece) {
        fits_ = fits_ && length_ + piece.size() < sizeof text_;
        if (!fits_) return;
        piece.copy(text_ + length_, piece.size());
        length_ += piece.size();
    }
    // A column of the cell table by its name, or by its number when the name is not the first of its kind or
    // has characters that a command line spoils.
    void appendColumn(const CellTable& cells, std::int32_t column) {
        const std::string_view name = cells.cell(0, column);
        bool isNamed = !name.empty();
        for (const char c : name)
            isNamed = isNamed && c >= ' ' && c <= '~' && c != '"' && c != '%' && c != ',';
        for (std::int32_t before = 1; before < column; ++before) {
            isNamed = isNamed && name != cells.cell(0, before);
        }
        if (isNamed) {
            append(name);
        } else {
            append("#");
            appendNumber(column);
        }
    }
    template <class Number> void appendNumber(Number number) {
        char digits[40];
        const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
        append({digits, static_cast<std::size_t>(end - digits)});
    }
    const char* text() const { return fits_ ? text_ : nullptr; }
    bool isEmpty() const { return length_ == 0; }

private:
    char text_[1200] = "";
    std::size_t length_ = 0;
    bool fits_ = true;
};

class Command {
public:
    explicit Command(AnalysisRun& run) : run_(run) { run.repeating[0] = '\0'; }

    void add(const char* word) {
        fits_ = fits_ && word != nullptr && appendQuoted(run_.repeating, sizeof run_.repeating, word);
        if (!fits_) run_.repeating[0] = '\0';
    }
    void add(const char* name, const Word& value) {
        if (value.isEmpty()) return;
        add(name);
        add(value.text());
    }

private:
    AnalysisRun& run_;
    bool fits_ = true;
};

bool isFirstValue(const OptionField& field, AnalysisOptions& options, AnalysisOptions& first) {
    if (field.type == OptionType::real) return realOption(options, field) == realOption(first, field);
    return field.mostOfData == nullptr && wholeOption(options, field) == wholeOption(first, field);
}

void addField(const OptionField& field, AnalysisRun& run, AnalysisOptions& first, Command& command) {
    char name[60];
    const std::int32_t whole = field.type != OptionType::real ? wholeOption(run.options, field) : 0;
    const bool isOff = field.type == OptionType::flag && whole == 0;
    std::snprintf(name, sizeof name, "--%s%s", isOff ? "no-" : "", field.name);
    Word value;
    switch (field.type) {
    case OptionType::variable:
    case OptionType::variables:
        for (int k = 0; k < field.count; ++k) {
            const std::int32_t variable = wholeOption(run.options, field, k);
            if (variable < 1 || variable > run.data.loaded.variables) continue;
            if (!value.isEmpty()) value.append(",");
            value.appendColumn(run.data.cells, cellColumnOf(run.data, variable));
        }
        return command.add(name, value);
    case OptionType::flag:
        if (!isFirstValue(field, run.options, first)) command.add(name);
        return;
    case OptionType::choice:
        if (whole >= 0 && whole < static_cast<std::int32_t>(field.choices.size()))
            value.append(field.choices[static_cast<std::size_t>(whole)]);
        break;
    case OptionType::listedChoice:
        value.appendNumber(whole + 1);
        break;
    case OptionType::wholeNumber:
        value.appendNumber(whole);
        break;
    case OptionType::real:
        value.appendNumber(realOption(run.options, field));
        break;
    }
    if (!isFirstValue(field, run.options, first)) command.add(name, value);
}

void addDegrees(const AnalysisRun& run, Command& command) {
    Word degrees;
    for (int k = 0; k < AnalysisOptions::slotCount; ++k) {
        const std::int32_t variable = run.options.slotColumns[k];
        if (variable < 1 || variable > run.data.loaded.variables) continue;
        if (!degrees.isEmpty()) degrees.append(",");
        degrees.appendColumn(run.data.cells, cellColumnOf(run.data, variable));
        degrees.append("=");
        degrees.appendNumber(run.options.slotDegrees[k]);
    }
    command.add("--degree", degrees);
}

void addExclusions(const DataSet& data, Command& command) {
    Word names;
    for (std::int32_t column = 1; column < data.cells.cols; ++column) {
        if (data.useFlags[column] != 0) continue;
        if (!names.isEmpty()) names.append(",");
        names.appendColumn(data.cells, column);
    }
    command.add("--exclude", names);
}

void addWidth(const char* name, std::int32_t width, std::int32_t first, Command& command) {
    if (width == first) return;
    Word value;
    value.appendNumber(width);
    command.add(name, value);
}

} // namespace

bool appendQuoted(char* command, std::size_t size, const char* word) {
    const std::string_view text = word;
    bool isQuoted = text.empty();
    std::size_t percents = 0;
    for (const char c : text) {
        isQuoted = isQuoted || !isPlain(c);
        percents += c == '%' ? 1U : 0U;
    }
    std::size_t used = std::strlen(command);
    const auto append = [&](std::string_view piece) {
        if (used + piece.size() >= size) return false;
        piece.copy(command + used, piece.size());
        used += piece.size();
        command[used] = '\0';
        return true;
    };
    bool fits = (used == 0 || append(" ")) && (!isQuoted || append("\""));
    for (const char& c : text) {
        // A pair would be the name of a variable of the system, which stands between quotes as well.
        fits = fits && (c == '%' && percents > 1 ? append("\"^%\"") : append({&c, 1}));
    }
    // A backslash before the closing quote would make it a character.
    if (isQuoted && text.ends_with('\\')) fits = fits && append("\\");
    return fits && (!isQuoted || append("\""));
}

void writeRepeatCommand(AnalysisRun& run, const AnalysisKind& kind) {
    Command command(run);
    if (run.isLinked) return;
    Settings settings;
    setDefaultSettings(settings);
    AnalysisOptions first;
    startOptions(first, settings);
    const Analysis& analysis = *kind.analysis;
    command.add(kind.batchName);
    for (const OptionField& field : analysis.fields) {
        const bool isUsed = analysis.isEnabled == nullptr || analysis.isEnabled(run.options, field);
        if (field.name != nullptr && isUsed) addField(field, run, first, command);
    }
    if (!analysis.firstFields.empty()) addDegrees(run, command);
    addExclusions(run.data, command);
    const Settings& set = run.options.settings;
    addWidth("--variable-width", set.variableStringLength, settings.variableStringLength, command);
    addWidth("--label-width", set.sampleStringLength, settings.sampleStringLength, command);
    if (run.numerics->textbook) {
        command.add("--numerics");
        command.add("textbook");
    }
    if (run.data.policy != MissingPolicy::zero) {
        command.add("--missing");
        command.add(run.data.policy == MissingPolicy::omit ? "omit" : "fail");
    }
    command.add(run.data.path);
}
