#include "app/open_file_dialog.h"

#include <commdlg.h>
#include <cstdio>

#include "analysis/run/data_file.h"
#include "app/message_box.h"

bool showOpenFileDialog(Program& program) {
    std::int32_t& fileType = program.run.options.settings.fileType;
    char path[pathSize] = "";
    OPENFILENAMEA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = program.window;
    dialog.lpstrFilter = "csv file (*.csv)\0*.csv\0excel book file (*.xls)\0*.xls\0";
    dialog.nFilterIndex = static_cast<DWORD>(fileType == 1 ? 2 : 1);
    dialog.lpstrDefExt = fileType == 1 ? "xls" : "csv";
    dialog.lpstrFile = path;
    dialog.nMaxFile = sizeof path;
    dialog.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (GetOpenFileNameA(&dialog) == 0) {
        if (CommDlgExtendedError() == FNERR_BUFFERTOOSMALL) tellPathTooLong(program);
        return false;
    }
    fileType = dialog.nFilterIndex == 2 ? 1 : 0;
    forceExtension(path, fileType);
    std::snprintf(program.run.data.path, pathSize, "%s", path);
    return true;
}

void tellPathTooLong(const Program& program) {
    showAlert(program.window, "the path of the file is too long");
}
