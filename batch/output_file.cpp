#include "batch/output_file.h"

bool writeText(std::FILE* file, const TextBuffer& text) {
    bool written = true;
    for (const std::string_view piece : text)
        written = written && std::fwrite(piece.data(), 1, piece.size(), file) == piece.size();
    return written;
}

OutputFile::~OutputFile() {
    if (file_ == nullptr) return;
    if (isDevice_) {
        std::fclose(file_);
    } else {
        discardNeighbour(file_, neighbour_);
    }
}

bool OutputFile::open(const char* path) {
    if (!followLinks(path, target_)) return false;
    const FileType type = typeOf(target_.text);
    if (type == FileType::folder) return false;
    isDevice_ = type == FileType::device;
    file_ = isDevice_ ? openDevice(target_.text) : createNeighbour(target_.text, neighbour_);
    return file_ != nullptr;
}

bool OutputFile::write(const TextBuffer& text) {
    for (const std::string_view piece : text) append(piece);
    return finish();
}

bool OutputFile::append(std::string_view piece) {
    return std::fwrite(piece.data(), 1, piece.size(), file_) == piece.size();
}

bool OutputFile::finish() {
    std::FILE* const file = file_;
    file_ = nullptr;
    if (!isDevice_) return replaceByNeighbour(file, neighbour_, target_.text);
    const bool failed = std::ferror(file) != 0;
    return std::fclose(file) == 0 && !failed;
}

bool checkDifferent(std::span<const NamedFile> files, Complaint& complaint) {
    for (const NamedFile& a : files) {
        for (const NamedFile& b : files) {
            if (&a >= &b || a.path == nullptr || b.path == nullptr || !isSameFile(a.path, b.path)) continue;
            complaint.say("%s and %s are one file: '%.300s'", b.name, a.name, b.path);
            return false;
        }
    }
    return true;
}
