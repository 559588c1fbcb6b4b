#include "analysis/run/option_field.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include "data/number.h"

namespace {

void* valueOf(AnalysisOptions& options, const OptionField& field) {
    return reinterpret_cast<char*>(&options) + field.offset;
}

// Digits to the first other character, as far as 32 bits reach.
std::int32_t parseWhole(const char* text) {
    while (*text == ' ' || *text == '\t') ++text;
    const bool negative = *text == '-';
    if (negative || *text == '+') ++text;
    std::int64_t value = 0;
    for (; *text >= '0' && *text <= '9' && value <= std::numeric_limits<std::int32_t>::max(); ++text) {
        value = 10 * value + (*text - '0');
    }
    value = std::min<std::int64_t>(value, std::numeric_limits<std::int32_t>::max());
    return static_cast<std::int32_t>(negative ? -value : value);
}

} // namespace

std::int32_t& wholeOption(AnalysisOptions& options, const OptionField& field, int index) {
    return static_cast<std::int32_t*>(valueOf(options, field))[index];
}

double& realOption(AnalysisOptions& options, const OptionField& field) {
    return *static_cast<double*>(valueOf(options, field));
}

double variableCount(const DataSet& data) {
    return data.loaded.variables;
}

void showReal(double value, char (&text)[optionTextSize]) {
    std::snprintf(text, sizeof text, "%5.3lf", value);
}

void showOption(AnalysisOptions& options, const OptionField& field, char (&text)[optionTextSize]) {
    if (field.type == OptionType::real) {
        showReal(realOption(options, field), text);
    } else {
        std::snprintf(text, sizeof text, "%5d", wholeOption(options, field));
    }
}

void typeOption(AnalysisOptions& options, const OptionField& field, const char* text) {
    if (field.type == OptionType::real) {
        realOption(options, field) = parseNumber(text);
    } else {
        wholeOption(options, field) = parseWhole(text);
    }
}

void spinOption(AnalysisOptions& options, const OptionField& field, const DataSet& data, bool up) {
    const double most = field.mostOfData != nullptr ? field.mostOfData(data) : field.most;
    const bool real = field.type == OptionType::real;
    const double value = real ? realOption(options, field) : wholeOption(options, field);
    if (up ? !(value < most) : !(value > field.least)) return;
    const double spun = up ? value + field.step : value - field.step;
    if (real) {
        realOption(options, field) = spun;
    } else {
        wholeOption(options, field) = static_cast<std::int32_t>(spun);
    }
}
