#include "batch/import_command.h"

#include <cstdio>
#include <cstring>

#include "batch/file_system.h"
#include "batch/import_arguments.h"
#include "batch/output_file.h"
#include "batch/terminal.h"
#include "data/import/import_table.h"

namespace {

enum ExitStatus { exitSuccess = 0, exitFailure = 1, exitWrongCommandLine = 2 };

class StreamSink : public TableSink {
public:
    bool write(std::string_view piece) override {
        return std::fwrite(piece.data(), 1, piece.size(), stdout) == piece.size();
    }
};

class FileSink : public TableSink {
public:
    explicit FileSink(OutputFile& file) : file_(file) {}
    bool write(std::string_view piece) override { return file_.append(piece); }

private:
    OutputFile& file_;
};

int refuse(const Complaint& complaint) {
    std::fprintf(stderr, "%s: %s\ntry: %s import --help\n", programName, complaint.text, programName);
    return exitWrongCommandLine;
}

int fail(const char* what, const char* path) {
    std::fprintf(stderr, "error : %s '%s'\n", what, path);
    return exitFailure;
}

bool checkFiles(const ImportCommand& command, Complaint& complaint) {
    const struct {
        const char* name;
        const char* path;
    } files[] = {
        {"the data file", command.file}, {"--output", command.output}, {"--codebook", command.codebook}};
    const bool isPipe = std::strcmp(command.file, "-") == 0;
    for (const auto& a : files) {
        for (const auto& b : files) {
            if (&a >= &b || a.path == nullptr || b.path == nullptr || (isPipe && a.path == command.file))
                continue;
            if (!isSameFile(a.path, b.path)) continue;
            complaint.say("%s and %s are one file: '%.300s'", b.name, a.name, b.path);
            return false;
        }
    }
    return true;
}

// Imports from an open source into the outputs that are asked for.
int import(const ImportCommand& command, ByteSource& source) {
    OutputFile table, codebook;
    if (command.output != nullptr && !table.open(command.output)) return fail("cannot write", command.output);
    if (command.codebook != nullptr && !codebook.open(command.codebook)) {
        return fail("cannot write", command.codebook);
    }
    StreamSink stream;
    FileSink file(table), meanings(codebook);
    TableSink* sink = &stream;
    if (command.output != nullptr) sink = &file;
    ImportMessages messages;
    const ErrorCode code = importTable(source, command.options, *sink, messages,
                                       command.codebook != nullptr ? &meanings : nullptr);
    std::fputs(messages.text(), stderr);
    if (code == outOfMemory) std::fprintf(stderr, "error : failed to allocate memory for data.\n");
    if (code != success) return exitFailure;
    if (command.output != nullptr && !table.finish()) return fail("cannot write", command.output);
    if (command.output == nullptr && std::fflush(stdout) != 0) return fail("cannot write", "standard output");
    if (command.codebook != nullptr && !codebook.finish()) return fail("cannot write", command.codebook);
    return exitSuccess;
}

// What cannot be read twice is held in memory.
int importPipe(const ImportCommand& command, std::FILE* file) {
    Block<char> bytes;
    Index length = 0;
    const ErrorCode code = readPipe(file, bytes, length);
    if (code == outOfMemory) {
        std::fprintf(stderr, "error : failed to allocate memory for data.\n");
        return exitFailure;
    }
    if (code != success) return fail("cannot read", command.file);
    MemorySource source({bytes.data(), static_cast<std::size_t>(length)});
    return import(command, source);
}

} // namespace

int runImport(int count, char** arguments) {
    ImportCommand command;
    Complaint complaint;
    if (!parseImport(count, arguments, command, complaint)) return refuse(complaint);
    useBinaryOutput();
    if (command.help) {
        printImportHelp(stdout);
        return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? exitSuccess : exitFailure;
    }
    if (!checkFiles(command, complaint)) return refuse(complaint);
    if (hasCodePage()) command.options.codePage = writeInCodePage;
    if (std::strcmp(command.file, "-") == 0) {
        useBinaryInput();
        return importPipe(command, stdin);
    }
    std::FILE* const file = openToRead(command.file);
    if (file == nullptr) return fail("cannot read", command.file);
    int status = exitFailure;
    if (typeOf(command.file) == FileType::device) {
        status = importPipe(command, file);
    } else {
        FileSource source(file);
        status = import(command, source);
    }
    std::fclose(file);
    return status;
}
