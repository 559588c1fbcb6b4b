#include "app/neighbour_file.h"

#include <cstdio>
#include <cstring>

DWORD createNeighbour(const char* path, char (&neighbour)[MAX_PATH]) {
    const DWORD attributes = GetFileAttributesA(path);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return ERROR_ACCESS_DENIED; // not every system refuses to move over it
    }
    char folder[MAX_PATH];
    std::snprintf(folder, sizeof folder, "%s", path);
    char* const name = std::strrchr(folder, '\\');
    if (name != nullptr) name[1] = '\0'; // a drive without its backslash is another folder
    return GetTempFileNameA(folder, "new", 0, neighbour) == 0 ? GetLastError() : ERROR_SUCCESS;
}

DWORD putInPlace(const char* neighbour, const char* path, DWORD error) {
    if (error == ERROR_SUCCESS &&
        MoveFileExA(neighbour, path, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0) {
        error = GetLastError();
    }
    if (error != ERROR_SUCCESS) DeleteFileA(neighbour);
    return error;
}
