#pragma once

#include <cstdio>

// What the batch runner asks of the file system. Paths are UTF-8 on Windows and bytes elsewhere.

struct FilePath {
    char text[4096] = "";
};

// Pipes are devices; what may not be looked at is unknown.
enum class FileType { missing, unknown, regular, folder, device };

// The type of what stands at a path, links followed.
FileType typeOf(const char* path);

// Follows links to the file itself, also to one that is not there yet; false when there is no end to them or
// the path is too long.
bool followLinks(const char* path, FilePath& file);

// Whether two paths lead to one file; for files that are not there yet, to one name in one folder. Devices
// are never the same.
bool isSameFile(const char* a, const char* b);

// The size in bytes of a regular file and when it was changed, in seconds since 1970, UTC; false for any
// other.
bool findSizeAndTime(const char* path, long long& size, long long& modified);

// Makes the folder of a file the one that relative paths begin in.
bool enterFolderOf(const char* path);

std::FILE* openToRead(const char* path);
// A device or a pipe, which is written in place.
std::FILE* openDevice(const char* path);

// Creates a file of a new name beside `target`, with the mode of `target` where that is there. Null when it
// cannot be created, or when `target` is there and may not be written. An interrupt of the program removes
// it.
std::FILE* createNeighbour(const char* target, FilePath& neighbour);
// Writes everything to the disk, closes and puts the neighbour in the place of `target` at once; false when
// that fails, and the neighbour is then removed.
bool replaceByNeighbour(std::FILE* file, const FilePath& neighbour, const char* target);
// Closes and removes it.
void discardNeighbour(std::FILE* file, const FilePath& neighbour);

// Whether the system has a code page of its own.
bool hasCodePage();
// Writes a UTF-8 text in the system's code page; false where there is none, or it lacks a character.
bool writeInCodePage(const char* text, char* converted, int size);
