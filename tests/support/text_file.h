#pragma once

#include <fstream>
#include <iterator>
#include <string>

// The contents of a file beside the tests.
inline std::string readTextFile(const std::string& name) {
    std::ifstream file(OMBRIVANTEL_SOURCE_DIR "/tests/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}
