#include "batch/output_file.h"

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
    std::FILE* const file = file_;
    file_ = nullptr;
    const bool written = std::fwrite(text.text(), 1, text.length(), file) == text.length();
    if (isDevice_) return std::fclose(file) == 0 && written;
    if (written) return replaceByNeighbour(file, neighbour_, target_.text);
    discardNeighbour(file, neighbour_);
    return false;
}
