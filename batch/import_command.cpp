#include "batch/import_command.h"

#include <cstdio>

#include "batch/argument_list.h"
#include "batch/exit_status.h"
#include "batch/file_system.h"
#include "batch/import_arguments.h"
#include "batch/output_file.h"
#include "batch/terminal.h"
#include "data/import/import_table.h"

namespace {

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

bool checkFiles(const ImportCommand& command, Complaint& complaint) {
    const NamedFile files[] = {{"the data file", isStandardStream(command.file) ? nullptr : command.file},
                               {"--output", command.output},
                               {"--codebook", command.codebook}};
    return checkDifferent(files, complaint);
}

// Imports from an open source into the outputs that are asked for.
int importFrom(const ImportCommand& command, ByteSource& source) {
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
    if (code == outOfMemory) return failWithoutMemory();
    if (code != success) return exitFailure;
    if (command.output != nullptr && !table.finish()) return fail("cannot write", command.output);
    if (command.output == nullptr && std::fflush(stdout) != 0) return fail("cannot write", nullptr);
    if (command.codebook != nullptr && !codebook.finish()) return fail("cannot write", command.codebook);
    return exitSuccess;
}

// What cannot be read twice is held in memory.
int importPipe(const ImportCommand& command, std::FILE* file) {
    Block<char> bytes;
    Index length = 0;
    const ErrorCode code = readToEnd(file, bytes, length);
    if (code == outOfMemory) return failWithoutMemory();
    if (code != success) return fail("cannot read", command.file);
    MemorySource source({bytes.data(), static_cast<std::size_t>(length)});
    return importFrom(command, source);
}

} // namespace

int runImport(int count, char* const* arguments) {
    ImportCommand command;
    Complaint complaint;
    if (!parseImport(count, arguments, command, complaint)) return refuse(complaint, "import");
    useBinaryOutput();
    if (command.help) {
        printImportHelp(stdout);
        return endPrinting();
    }
    if (!checkFiles(command, complaint)) return refuse(complaint, "import");
    if (hasCodePage()) command.options.codePage = writeInCodePage;
    if (isStandardStream(command.file)) {
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
        status = importFrom(command, source);
    }
    std::fclose(file);
    return status;
}
