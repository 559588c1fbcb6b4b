#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

// A hash of 64 bits (multiplication and folding of 8 bytes at a time), never 0.
inline std::uint64_t hashOf(std::string_view text) {
    constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;
    std::uint64_t hash = (text.size() + 1) * odd;
    for (std::size_t at = 0; at < text.size(); at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + at, text.size() - at < 8 ? text.size() - at : 8);
        hash = (hash ^ word) * odd;
        hash ^= hash >> 32;
    }
    return hash | 1;
}
