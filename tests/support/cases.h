#pragma once

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// The contents of a file beside the tests.
inline std::string readTextFile(const std::string& name) {
    std::ifstream file(OMBRIVANTEL_SOURCE_DIR "/tests/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The rows of a tab-separated file of test cases; empty cells at the end can be left out, and a line that
// begins "#" is a comment. "\n", "\r", "\t", "\0" and "\\" are those characters, "{5}" is five letters.
using Case = std::vector<std::string>;
inline std::vector<Case> readCases(const std::string& name) {
    const std::string letters = "nrt0\\", meant("\n\r\t\0\\", 5);
    std::vector<Case> cases;
    std::istringstream lines(readTextFile(name));
    for (std::string line; std::getline(lines, line);) {
        if (line[0] == '#') continue;
        Case cells = {""};
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i] == '\t') {
                cells.emplace_back();
            } else if (line[i] == '\\') {
                cells.back() += meant.at(letters.find(line[++i]));
            } else if (line[i] == '{') {
                cells.back().append(std::stoul(line.substr(i + 1)), 'w');
                i = line.find('}', i);
            } else {
                cells.back() += line[i];
            }
        }
        cells.resize(10);
        cases.push_back(cells);
    }
    EXPECT_FALSE(cases.empty()) << name;
    return cases;
}
