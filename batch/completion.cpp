#include "batch/completion.h"

#include <cstdio>
#include <cstring>

#include "batch/argument_list.h"
#include "batch/exit_status.h"
#include "batch/import_arguments.h"
#include "batch/known_options.h"
#include "batch/run_file.h"
#include "batch/sql/sql_arguments.h"
#include "batch/terminal.h"

namespace {

// The options of a command with each name once, so that its words stand together.
class OptionList {
public:
    void add(const KnownOption& option) {
        for (KnownOption& each : items_) {
            if (std::strcmp(each.name, option.name) != 0) continue;
            const std::size_t used = std::strlen(each.value);
            std::snprintf(each.value + used, sizeof each.value - used, "|%s", option.value);
            return;
        }
        if (items_.grow(items_.size() + 1) == success) items_[items_.size() - 1] = option;
    }
    const KnownOption* begin() const { return items_.begin(); }
    const KnownOption* end() const { return items_.end(); }

private:
    Block<KnownOption> items_;
};

// Calls `use` with each command, what it is and its options.
template <class Use> void forEachCommand(Use use) {
    OptionList summary, import, sql, run, none;
    forEachOption(nullptr, [&](const KnownOption& option) { summary.add(option); });
    use("summary", "the file as it was read", summary);
    for (const AnalysisKind& kind : analysisKinds()) {
        if (kind.analysis == nullptr) continue;
        OptionList options;
        forEachOption(&kind, [&](const KnownOption& option) { options.add(option); });
        use(kind.batchName, kind.batchTitle, options);
    }
    for (const OptionText& option : importOptions()) import.add(knownOption(option));
    use("import", "make a data file of a table that another program saved", import);
    for (const OptionText& option : sqlOptions()) sql.add(knownOption(option));
    for (const char* option : {"--purpose", "--group", "--degree"}) {
        sql.add(knownOption("", option, "NAME", "as that of the kind"));
    }
    use("sql", "the statement that reduces the table of a database", sql);
    run.add(knownOption(keepGoingOption));
    use("run", "the commands of a file", run);
    use("help", "the options of a kind, with an example", none);
}

// Words as "a|b", not a name for what is to be typed, as "NAME" or "N (1 to 9)".
bool isWords(const char* value) {
    return std::strpbrk(value, "ABCDEFGHIJKLMNOPQRSTUVWXYZ(") == nullptr &&
           std::strchr(value, '|') != nullptr;
}

// "a|b" as "a b".
void printWords(const char* value) {
    for (; *value != '\0'; ++value) std::putchar(*value == '|' ? ' ' : *value);
}

void printBash() {
    std::printf("# Completes command lines of %s in bash.\n\n"
                "_ombrivantel_batch() {\n"
                "    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}\n"
                "    local command=${COMP_WORDS[1]} words=\n"
                "    COMPREPLY=()\n"
                "    # Bash makes a word of the \"=\" of --option=value.\n"
                "    if [[ $current == = ]]; then\n"
                "        current=\n"
                "    elif [[ $before == = ]]; then\n"
                "        before=${COMP_WORDS[COMP_CWORD-2]}\n"
                "    fi\n"
                "    if [[ $COMP_CWORD -eq 1 || ($COMP_CWORD -eq 2 && ($command == help || $command == sql)) "
                "]]; then\n"
                "        words=\"",
                programName);
    forEachCommand([](const char* name, const char*, const OptionList&) { std::printf("%s ", name); });
    std::printf("--help --version\"\n"
                "    elif [[ $before == --* && $current != -* ]]; then\n"
                "        case \"$command $before\" in\n");
    forEachCommand([](const char* name, const char*, const OptionList& options) {
        for (const KnownOption& option : options) {
            if (!isWords(option.value)) continue;
            std::printf("        \"%s %s\") words=\"", name, option.name);
            printWords(option.value);
            std::printf("\" ;;\n");
        }
    });
    std::printf("        esac\n"
                "    elif [[ $current == -* ]]; then\n"
                "        case $command in\n");
    forEachCommand([](const char* name, const char*, const OptionList& options) {
        std::printf("        %s) words=\"", name);
        for (const KnownOption& option : options) std::printf("%s ", option.name);
        std::printf("--help\" ;;\n");
    });
    std::printf("        esac\n"
                "    fi\n"
                "    # Without words it is a file.\n"
                "    [[ -z $words ]] || mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$current\")\n"
                "}\n\n"
                "complete -o bashdefault -o default -F _ombrivantel_batch %s %s.exe\n",
                programName, programName);
}

// Inside '...[...]' of an option of zsh's _arguments.
void printExplanation(const char* text) {
    for (; *text != '\0'; ++text) {
        switch (*text) {
        case '\n':
            std::putchar(' ');
            break;
        case '\'':
            std::fputs("'\\''", stdout);
            break;
        case '[':
        case ']':
        case ':':
        case '\\':
            std::printf("\\%c", *text);
            break;
        default:
            std::putchar(*text);
        }
    }
}

void printZshOption(const KnownOption& option) {
    std::printf("        '*%s%s[", option.name, option.value[0] != '\0' ? "=" : "");
    printExplanation(option.help);
    std::printf("]");
    if (isWords(option.value)) {
        std::printf(":word:(");
        printWords(option.value);
        std::printf(")");
    } else if (option.value[0] != '\0') {
        std::printf(":");
        printExplanation(option.value);
        std::printf(":%s", std::strstr(option.value, "FILE") != nullptr ||
                                   std::strstr(option.value, ".csv") != nullptr
                               ? "_files"
                               : " ");
    }
    std::printf("'\n");
}

void printZsh() {
    std::printf("#compdef %s\n"
                "# Completes command lines of %s in zsh.\n\n"
                "local -a commands options\n"
                "commands=(\n",
                programName, programName);
    forEachCommand([](const char* name, const char* title, const OptionList&) {
        std::printf("    '%s:", name);
        printExplanation(title);
        std::printf("'\n");
    });
    std::printf(")\n"
                "if (( CURRENT == 2 )) || { (( CURRENT == 3 )) && [[ $words[2] == (help|sql) ]] }; then\n"
                "    _describe command commands\n"
                "    return\n"
                "fi\n"
                "case $words[2] in\n");
    forEachCommand([](const char* name, const char*, const OptionList& options) {
        std::printf("%s)\n    options=(\n", name);
        for (const KnownOption& option : options) printZshOption(option);
        std::printf("    )\n    ;;\n");
    });
    std::printf("esac\n"
                "shift words\n"
                "(( CURRENT-- ))\n"
                "_arguments $options '*:file:_files'\n");
}

} // namespace

int runCompletion(int count, char* const* arguments) {
    const char* const shell = count == 3 ? arguments[2] : "";
    useBinaryOutput();
    if (std::strcmp(shell, "bash") == 0) {
        printBash();
    } else if (std::strcmp(shell, "zsh") == 0) {
        printZsh();
    } else {
        std::fprintf(stderr, "%s: completion takes bash|zsh\n", programName);
        return exitWrongCommandLine;
    }
    return endPrinting();
}
