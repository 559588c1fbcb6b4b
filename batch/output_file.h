#pragma once

#include <span>

#include "batch/complaint.h"
#include "batch/file_system.h"
#include "report/text_buffer.h"

// Writes a text to an open stream; false when that fails.
bool writeText(std::FILE* file, const TextBuffer& text);

// A file that a run writes: a device or a pipe in place, any other file to a neighbour that takes its place
// when all is written. What is not finished leaves the file as it was.
class OutputFile {
public:
    OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    // Before the run, so that a file that cannot be written is told before minutes of computing.
    bool open(const char* path);
    // Writes the whole file and puts it in place; false when that fails.
    bool write(const TextBuffer& text);
    // The same in pieces; what fails to be written is told at the end, too.
    bool append(std::string_view piece);
    bool finish();

private:
    std::FILE* file_ = nullptr;
    bool isDevice_ = false;
    FilePath target_;
    FilePath neighbour_;
};

// A file that a run reads or writes, by what the command line calls it; null: there is none.
struct NamedFile {
    const char* name;
    const char* path;
};

// False and a complaint when two of them are one file.
bool checkDifferent(std::span<const NamedFile> files, Complaint& complaint);
