#pragma once

#include <cstdint>
#include <string_view>
#include <windows.h>

#include <commdlg.h>

#include "app/program.h"
#include "data/import/table_sink.h"
#include "report/text_buffer.h"

// What is shared by those that write tables and pictures: the choice of their place, and their file.

// Asks for a path by a dialog of the system, whose fields but the usual ones are set; false when it is left.
bool chooseTablePath(HWND owner, const Program& program, BOOL(WINAPI* ask)(OPENFILENAMEA*),
                     OPENFILENAMEA& dialog);
// The same for a table that is to be saved; `path` is what is proposed.
bool chooseTableTarget(HWND owner, const Program& program, char (&path)[pathSize]);

// Whether two paths lead to one file.
bool isSameFile(const char* path, const char* other);
// Bytes; 0 when it is not known.
std::uint64_t sizeOf(const char* path);

// A new file that a table is written into.
class FileSink : public TableSink {
public:
    explicit FileSink(const char* path);
    ~FileSink() override { close(); }
    FileSink(const FileSink&) = delete;
    FileSink& operator=(const FileSink&) = delete;

    bool write(std::string_view piece) override;
    // The error of the system, or 0.
    DWORD close();

private:
    HANDLE file_;
    DWORD error_;
};

// Writes a file as a whole. The error of the system, or 0.
DWORD writeWhole(const char* path, const TextBuffer& text);
