#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

// Eight characters of a text looked at at once, as the bytes of a number.

// Whether the first character is the lowest byte, which finding one by its place needs.
constexpr bool isLowestFirst = std::endian::native == std::endian::little;

inline std::uint64_t eightBytes(const char* at) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, at, sizeof bytes);
    return bytes;
}

// The number whose bytes are all that one.
constexpr std::uint64_t everyByte(char byte) {
    return std::uint64_t{0x0101010101010101} * static_cast<unsigned char>(byte);
}

// Marks the lowest byte that is 0 by its high bit; bytes above that can be marked wrongly.
constexpr std::uint64_t markZeroByte(std::uint64_t bytes) {
    return (bytes - everyByte('\x01')) & ~bytes & everyByte('\x80');
}
