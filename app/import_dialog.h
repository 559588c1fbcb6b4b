#pragma once

#include "app/program.h"
#include "data/import/import_table.h"

// Saves the table as the options say. False when it is not done; messages that hold a refusal say why.
struct ImportSaver {
    bool (*save)(HWND owner, void* context, ByteSource& source, const ImportOptions& options,
                 ImportMessages& messages);
    void* context;
};

// Shows what is found in a table beside its first rows, and lets the user say it otherwise. `isSmall`: all of
// it can be read after each choice. True when the table is saved; `notes` are what was told, in the code
// page.
bool showImportDialog(const Program& program, ByteSource& source, bool isSmall, const ImportSaver& saver,
                      Block<char>& notes);
