#include "data/byte_source.h"

#include <algorithm>

Index FileSource::read(char* bytes, Index count) {
    const std::size_t done = std::fread(bytes, 1, static_cast<std::size_t>(count), file_);
    return std::ferror(file_) != 0 ? -1 : static_cast<Index>(done);
}

bool FileSource::rewind() {
    std::clearerr(file_);
    return std::fseek(file_, 0, SEEK_SET) == 0;
}

Index MemorySource::read(char* bytes, Index count) {
    const std::size_t done = std::min(static_cast<std::size_t>(count), bytes_.size() - at_);
    std::copy_n(bytes_.data() + at_, done, bytes);
    at_ += done;
    return static_cast<Index>(done);
}

bool MemorySource::rewind() {
    at_ = 0;
    return true;
}

ErrorCode readToEnd(std::FILE* file, Block<char>& bytes, Index& length) {
    length = 0;
    for (;;) {
        constexpr Index first = 1 << 16;
        if (length == bytes.size() && bytes.grow(std::max(first, 2 * bytes.size())) != success)
            return outOfMemory;
        const std::size_t room = static_cast<std::size_t>(bytes.size() - length);
        const std::size_t done = std::fread(bytes.data() + length, 1, room, file);
        length += static_cast<Index>(done);
        if (done < room) return std::ferror(file) != 0 ? illegalData : success;
    }
}
