#include "app/screen_file.h"

#include <commdlg.h>
#include <cstring>
#include <richedit.h>

#include "app/message_box.h"
#include "app/neighbour_file.h"

namespace {

constexpr DWORD richText = 1;
constexpr DWORD plainText = 2;

// More characters than any file that is opened; the control's own limit would cut rich text.
constexpr LPARAM mostCharacters = 0x7ffffffe;

// Behind the rich edit's stream callbacks.
struct Stream {
    HANDLE file;
    DWORD error;
};

DWORD CALLBACK writePiece(DWORD_PTR cookie, LPBYTE bytes, LONG count, LONG* done) {
    auto* stream = reinterpret_cast<Stream*>(cookie);
    DWORD written = 0;
    if (WriteFile(stream->file, bytes, static_cast<DWORD>(count), &written, nullptr) == 0) {
        stream->error = GetLastError();
    } else if (written != static_cast<DWORD>(count)) {
        stream->error = ERROR_DISK_FULL;
    }
    *done = static_cast<LONG>(written);
    return stream->error;
}

DWORD CALLBACK readPiece(DWORD_PTR cookie, LPBYTE bytes, LONG count, LONG* done) {
    auto* stream = reinterpret_cast<Stream*>(cookie);
    DWORD read = 0;
    if (ReadFile(stream->file, bytes, static_cast<DWORD>(count), &read, nullptr) == 0)
        stream->error = GetLastError();
    // Some controls take a line end that two pieces share for two.
    if (read > 1 && bytes[read - 1] == '\r') {
        SetFilePointer(stream->file, -1, nullptr, FILE_CURRENT);
        --read;
    }
    *done = static_cast<LONG>(read);
    return stream->error;
}

WPARAM streamFormat(DWORD filter) {
    return filter == richText ? SF_RTF : SF_TEXT;
}

// The whole screen into a new file; the error of the system, or 0.
DWORD writeFile(HWND screen, const char* path, DWORD filter) {
    Stream stream = {CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                 FILE_ATTRIBUTE_NORMAL | FILE_FLAG_WRITE_THROUGH, nullptr),
                     ERROR_SUCCESS};
    if (stream.file == INVALID_HANDLE_VALUE) return GetLastError();
    EDITSTREAM edit = {reinterpret_cast<DWORD_PTR>(&stream), 0, writePiece};
    SendMessageA(screen, EM_STREAMOUT, streamFormat(filter), reinterpret_cast<LPARAM>(&edit));
    if (stream.error == ERROR_SUCCESS && edit.dwError != 0)
        stream.error = ERROR_WRITE_FAULT; // of the control
    if (CloseHandle(stream.file) == 0 && stream.error == ERROR_SUCCESS) stream.error = GetLastError();
    return stream.error;
}

// A rich text file begins so.
bool isRichText(HANDLE file) {
    char head[5] = "";
    DWORD read = 0;
    const bool is = ReadFile(file, head, sizeof head, &read, nullptr) != 0 && read == sizeof head &&
                    std::memcmp(head, "{\\rtf", sizeof head) == 0;
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    return is;
}

// Asks for a path by a dialog of Windows, and keeps it and the file type. False when cancelled, nothing
// changed.
bool choosePath(Program& program, BOOL(WINAPI* ask)(OPENFILENAMEA*), DWORD flags) {
    char path[sizeof program.screenPath]; // a dialog that fails may leave anything there
    std::memcpy(path, program.screenPath, sizeof path);
    OPENFILENAMEA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = program.window;
    dialog.lpstrFilter = "rich text format (*.rtf)\0 *.rtf\0plane text (*.txt)\0 *.txt\0";
    dialog.nFilterIndex = program.screenFilter;
    dialog.lpstrDefExt = "rtf";
    dialog.lpstrFile = path;
    dialog.nMaxFile = sizeof path;
    dialog.Flags = OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | flags;
    if (ask(&dialog) == 0) {
        if (CommDlgExtendedError() == FNERR_BUFFERTOOSMALL)
            showSystemError(program.window, ERROR_FILENAME_EXCED_RANGE);
        return false;
    }
    std::memcpy(program.screenPath, path, sizeof path);
    program.screenFilter = dialog.nFilterIndex;
    return true;
}

// The error of the system, or 0.
DWORD replaceFile(HWND screen, const char* path, DWORD filter) {
    char neighbour[MAX_PATH];
    const DWORD error = createNeighbour(path, neighbour);
    return error != ERROR_SUCCESS ? error : putInPlace(neighbour, path, writeFile(screen, neighbour, filter));
}

bool saveToPath(Program& program, int screen) {
    const HWND window = program.screens[screen];
    if (program.screenFilter != richText && program.screenFilter != plainText) return false;
    const DWORD error = replaceFile(window, program.screenPath, program.screenFilter);
    if (error != ERROR_SUCCESS) {
        showSystemError(program.window, error);
        return false;
    }
    SendMessageA(window, EM_SETMODIFY, FALSE, 0);
    return true;
}

bool chooseSavePath(Program& program) {
    return choosePath(program, GetSaveFileNameA, OFN_OVERWRITEPROMPT);
}

// False: the contents must stay.
bool offerToSave(Program& program, int screen) {
    const HWND window = program.screens[screen];
    if (SendMessageA(window, EM_GETMODIFY, 0, 0) == 0) return true;
    const bool save = MessageBoxA(program.window, "contents has been exchanged.\nsave it?", "attention",
                                  MB_OKCANCEL | MB_ICONQUESTION) == IDOK;
    if (save && !saveScreen(program, screen)) return false;
    SetFocus(window);
    return true;
}

} // namespace

bool saveScreen(Program& program, int screen) {
    // Without a path and without an answer nothing is written, and nothing is said.
    if (program.screenPath[0] == '\0' && !chooseSavePath(program)) return false;
    return saveToPath(program, screen);
}

void saveScreenAs(Program& program, int screen) {
    if (chooseSavePath(program)) saveToPath(program, screen);
}

void openRichText(Program& program, int screen) {
    if (!offerToSave(program, screen)) return;
    if (!choosePath(program, GetOpenFileNameA, 0)) return;
    Stream stream = {CreateFileA(program.screenPath, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL, nullptr),
                     ERROR_SUCCESS};
    if (stream.file == INVALID_HANDLE_VALUE) {
        showError(program.window, "invalid file handle for open rich text");
        return;
    }
    if (program.screenFilter == richText && !isRichText(stream.file)) {
        stream.error = ERROR_INVALID_DATA;
    } else {
        EDITSTREAM edit = {reinterpret_cast<DWORD_PTR>(&stream), 0, readPiece};
        SendMessageA(program.screens[screen], EM_EXLIMITTEXT, 0, mostCharacters);
        SendMessageA(program.screens[screen], EM_STREAMIN, streamFormat(program.screenFilter),
                     reinterpret_cast<LPARAM>(&edit));
        SendMessageA(program.screens[screen], EM_SETMODIFY, FALSE, 0);
    }
    CloseHandle(stream.file);
    if (stream.error != ERROR_SUCCESS) showSystemError(program.window, stream.error);
}
