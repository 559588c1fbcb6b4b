#pragma once

#include <cstdio>
#include <string_view>

#include "numeric/block.h"

// What a file in UTF-8 can begin with.
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// The bytes of a file, read from the beginning as often as it is rewound.
class ByteSource {
public:
    virtual ~ByteSource() = default;
    // Reads up to `count` bytes, fewer at the end alone; -1 when reading fails.
    virtual Index read(char* bytes, Index count) = 0;
    virtual bool rewind() = 0;
};

// A file that can be read again; it stays the caller's to close.
class FileSource : public ByteSource {
public:
    explicit FileSource(std::FILE* file) : file_(file) {}
    Index read(char* bytes, Index count) override;
    bool rewind() override;

private:
    std::FILE* file_;
};

// Bytes in memory, the caller's.
class MemorySource : public ByteSource {
public:
    explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}
    Index read(char* bytes, Index count) override;
    bool rewind() override;

private:
    std::string_view bytes_;
    std::size_t at_ = 0;
};

// Everything that comes from an open file, which may be a pipe; success, outOfMemory, or illegalData when
// reading fails.
[[nodiscard]] ErrorCode readToEnd(std::FILE* file, Block<char>& bytes, Index& length);
