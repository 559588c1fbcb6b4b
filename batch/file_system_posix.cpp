#ifndef _WIN32

#include "batch/file_system.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int mostLinks = 40;
constexpr int mostNeighbours = 8;
constexpr mode_t anyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

// What an interrupt removes; an empty path is a free place. Handlers may only read it.
FilePath unfinished[mostNeighbours];

void removeUnfinished(int signal) {
    for (const FilePath& each : unfinished) {
        if (each.text[0] != '\0') unlink(each.text);
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

// The program ends by the signal all the same; one that its starter ignores stays ignored.
void catchInterrupts() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (std::signal(signal, removeUnfinished) == SIG_IGN) std::signal(signal, SIG_IGN);
    }
}

void addUnfinished(const FilePath& path) {
    for (FilePath& each : unfinished) {
        if (each.text[0] != '\0') continue;
        // The first character last, so that a handler never sees half a path.
        std::memcpy(each.text + 1, path.text + 1, sizeof each.text - 1);
        each.text[0] = path.text[0];
        return;
    }
}

void removeFromUnfinished(const FilePath& path) {
    for (FilePath& each : unfinished) {
        if (std::strcmp(each.text, path.text) == 0) each.text[0] = '\0';
    }
}

// The folder of a path, "." for a bare name, and the name in it.
const char* splitPath(const char* path, FilePath& folder) {
    const char* slash = std::strrchr(path, '/');
    if (slash == nullptr) {
        std::snprintf(folder.text, sizeof folder.text, ".");
        return path;
    }
    const int length = slash == path ? 1 : static_cast<int>(slash - path);
    std::snprintf(folder.text, sizeof folder.text, "%.*s", length, path);
    return slash + 1;
}

bool isSameEntry(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// The link's text, from the link's folder.
bool readLink(const FilePath& link, FilePath& target) {
    FilePath text;
    const ssize_t length = readlink(link.text, text.text, sizeof text.text - 1);
    if (length < 0) return false;
    text.text[length] = '\0';
    FilePath folder;
    splitPath(link.text, folder);
    const int written = text.text[0] == '/'
                            ? std::snprintf(target.text, sizeof target.text, "%s", text.text)
                            : std::snprintf(target.text, sizeof target.text, "%s/%s", folder.text, text.text);
    return written >= 0 && static_cast<std::size_t>(written) < sizeof target.text;
}

// Bits that nobody has are denied to the superuser, too: the file was made so on purpose.
bool mayWrite(const char* path, const struct stat& found) {
    return (found.st_mode & anyWrite) != 0 && access(path, W_OK) == 0;
}

} // namespace

FileType typeOf(const char* path) {
    struct stat found = {};
    if (stat(path, &found) != 0)
        return errno == ENOENT || errno == ENOTDIR ? FileType::missing : FileType::unknown;
    if (S_ISDIR(found.st_mode)) return FileType::folder;
    return S_ISREG(found.st_mode) ? FileType::regular : FileType::device;
}

bool followLinks(const char* path, FilePath& file) {
    if (std::strlen(path) >= sizeof file.text) return false;
    std::snprintf(file.text, sizeof file.text, "%s", path);
    for (int count = 0; count < mostLinks; ++count) {
        struct stat found = {};
        if (lstat(file.text, &found) != 0 || !S_ISLNK(found.st_mode)) return true;
        FilePath target;
        if (!readLink(file, target)) return false;
        file = target;
    }
    return false;
}

bool isSameFile(const char* a, const char* b) {
    struct stat first = {}, second = {};
    const bool thereA = stat(a, &first) == 0, thereB = stat(b, &second) == 0;
    if (thereA != thereB) return false;
    if (thereA) return isSameEntry(first, second) && (S_ISREG(first.st_mode) || S_ISDIR(first.st_mode));
    FilePath fileA, fileB, folderA, folderB;
    if (!followLinks(a, fileA) || !followLinks(b, fileB)) return false;
    const char* nameA = splitPath(fileA.text, folderA);
    const char* nameB = splitPath(fileB.text, folderB);
    return stat(folderA.text, &first) == 0 && stat(folderB.text, &second) == 0 &&
           isSameEntry(first, second) && std::strcmp(nameA, nameB) == 0;
}

bool findSizeAndTime(const char* path, long long& size, long long& modified) {
    struct stat found = {};
    if (stat(path, &found) != 0 || !S_ISREG(found.st_mode)) return false;
    size = found.st_size;
    modified = found.st_mtime;
    return true;
}

bool enterFolderOf(const char* path) {
    FilePath folder;
    splitPath(path, folder);
    return chdir(folder.text) == 0;
}

std::FILE* openToRead(const char* path) {
    return std::fopen(path, "rb");
}

std::FILE* openDevice(const char* path) {
    return std::fopen(path, "wb");
}

std::FILE* createNeighbour(const char* target, FilePath& neighbour) {
    struct stat found = {};
    const bool isThere = stat(target, &found) == 0;
    if (isThere && !mayWrite(target, found)) return nullptr;
    int descriptor = -1;
    for (int number = 0; descriptor < 0 && number < 100; ++number) {
        const int length = std::snprintf(neighbour.text, sizeof neighbour.text, "%s.%ld-%d.new", target,
                                         static_cast<long>(getpid()), number);
        if (length < 0 || static_cast<std::size_t>(length) >= sizeof neighbour.text) return nullptr;
        descriptor = open(neighbour.text, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor < 0 && errno != EEXIST) return nullptr;
    }
    if (descriptor < 0) return nullptr;
    catchInterrupts();
    addUnfinished(neighbour);
    std::FILE* file = nullptr;
    if (!isThere || fchmod(descriptor, found.st_mode & 07777) == 0) file = fdopen(descriptor, "wb");
    if (file == nullptr) {
        close(descriptor);
        unlink(neighbour.text);
        removeFromUnfinished(neighbour);
    }
    return file;
}

bool replaceByNeighbour(std::FILE* file, const FilePath& neighbour, const char* target) {
    const bool synced = std::fflush(file) == 0 && std::ferror(file) == 0 && fsync(fileno(file)) == 0;
    const bool closed = std::fclose(file) == 0;
    const bool moved = synced && closed && std::rename(neighbour.text, target) == 0;
    if (!moved) unlink(neighbour.text);
    removeFromUnfinished(neighbour);
    return moved;
}

void discardNeighbour(std::FILE* file, const FilePath& neighbour) {
    std::fclose(file);
    unlink(neighbour.text);
    removeFromUnfinished(neighbour);
}

bool hasCodePage() {
    return false;
}

bool writeInCodePage(const char*, char*, int) {
    return false;
}

#endif
