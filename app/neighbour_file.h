#pragma once

#include <windows.h>

// A file is written beside its place and put there as a whole. Each returns the error of the system, or 0.

// Makes an empty file beside `path`, unless that is read-only.
DWORD createNeighbour(const char* path, char (&neighbour)[MAX_PATH]);

// Moves the neighbour, which is closed, over `path`; after an error of its writing, which is handed on, or of
// the move it is removed.
DWORD putInPlace(const char* neighbour, const char* path, DWORD error);
