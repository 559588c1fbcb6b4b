#include "batch/sql/sql_arguments.h"

#include <cstring>

#include "batch/arguments.h"
#include "batch/known_options.h"
#include "batch/nearest_word.h"
#include "batch/sql/sql_kind.h"

namespace {

constexpr OptionText options[] = {
    {"--columns", "NAME[,NAME...]", "the columns to analyse, in this order; may be repeated"},
    {"--table", "TABLE", "the table that they stand in, as it is written behind FROM"},
    {"--where", "TEXT", "take the rows alone for which this condition holds"},
    dialectOption,
    {"--categories", "N", "of quant3: the second column holds the categories 1 to N"},
    {"--output", "FILE", "write the statement to FILE; -: standard output"},
};

Match takeSqlOption(const Option& option, Arguments& arguments, SqlCommand& command, Complaint& complaint) {
    if (option.name == "--columns") return takeRepeated(option, arguments, command.columns, complaint);
    const TextOption texts[] = {
        {"--table", command.table}, {"--where", command.where}, {"--categories", command.categories}};
    return takeText(option, texts, arguments, complaint);
}

bool parseKind(const char* word, CommandLine& line, Complaint& complaint) {
    if (word == nullptr) {
        complaint.say("sql: for which analysis?");
        return false;
    }
    line.kind = requireKind(word, {}, complaint);
    if (line.kind != nullptr && reductionOf(*line.kind) == Reduction::none)
        complaint.say("sql: %s needs the samples themselves", line.kind->batchName);
    return !complaint.any();
}

} // namespace

bool parseSql(int count, char* const* argumentTexts, SqlCommand& command, Complaint& complaint) {
    Arguments arguments(count, argumentTexts, 2);
    const char* const word = arguments.next();
    if (word != nullptr && isHelp(word)) return command.help = true;
    if (!parseKind(word, command.line, complaint)) return false;
    while (const char* argument = arguments.next()) {
        if (isHelp(argument)) return command.help = true;
        if (std::strncmp(argument, "--", 2) != 0 || argument[2] == '\0') {
            complaint.say("sql reads no file: '%.200s'", argument);
            return false;
        }
        const Option option = splitOption(argument);
        Match match = takeSqlOption(option, arguments, command, complaint);
        if (match == Match::none) match = takeAnalysisOption(option, arguments, command.line, complaint);
        if (match == Match::none) {
            NearestWord nearest(option.name);
            for (const OptionText& known : options) nearest.offer(known.name);
            forEachOption(command.line.kind, [&](const KnownOption& known) { nearest.offer(known.name); });
            complainOfOption(option, nearest, complaint);
        }
        if (match != Match::taken) return false;
    }
    if (command.columns.size() == 0) {
        complaint.say("--columns NAME[,NAME...] is needed");
    } else if (command.table == nullptr || command.table[0] == '\0') {
        complaint.say("--table TABLE is needed");
    }
    if (command.where != nullptr && command.where[0] == '\0') command.where = nullptr;
    return !complaint.any();
}

void writeFrom(const SqlCommand& command, std::string_view indent, SqlText& sql) {
    sql << indent << "from ";
    sql.verbatim(command.table);
    if (command.where != nullptr) {
        sql << indent << "where ";
        sql.verbatim(command.where);
    }
    sql << "\n"; // what the user wrote may end with a comment
}

const char* givenValue(const CommandLine& line, std::string_view option) {
    const OptionFields fields = line.kind->analysis->fields;
    for (std::size_t index = 0; index < fields.size(); ++index) {
        if (fields[index].name != nullptr && option == fields[index].name) return line.values[index];
    }
    return nullptr;
}

std::span<const OptionText> sqlOptions() {
    return options;
}

void printSqlHelp(std::FILE* file) {
    std::fprintf(
        file,
        "usage: %s sql KIND --columns NAME[,NAME...] --table TABLE [options]\n\n"
        "Prints the statement by which a database reduces a table, where it stands and in one pass,\n"
        "to what the analysis needs: the number of samples, means, greatest sizes and covariances of\n"
        "the columns, of transformed ones for polynomials and curves, by groups for discriminant, or\n"
        "the table of counts for loglinear and quant3. Options of the kind may be given; --purpose,\n"
        "--group, --degree, --exclude, --a, --b and --c count, the others are passed over.\n\n"
        "kinds:\n ",
        programName);
    int used = 1;
    for (const AnalysisKind& kind : analysisKinds()) {
        if (reductionOf(kind) == Reduction::none) continue;
        const int length = static_cast<int>(std::strlen(kind.batchName)) + 1;
        if (used + length > 100) std::fprintf(file, "\n ");
        used = used + length > 100 ? 1 + length : used + length;
        std::fprintf(file, " %s", kind.batchName);
    }
    std::fprintf(file,
                 "\n\nexample:\n  %s sql regression --purpose dist --columns speed,dist --table cars\n\n"
                 "options of this command:\n",
                 programName);
    for (const OptionText& option : options) printOption(file, option);
    std::fprintf(
        file,
        "\nRows with a null or a number that is not finite in one of the columns, or with one that its\n"
        "transformation does not take, are left out; the column left_out counts them. Exit status: 0\n"
        "success, 1 the file cannot be written, 2 wrong command line.\n");
}
