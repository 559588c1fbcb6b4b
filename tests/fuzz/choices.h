#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

// What the bytes of a fuzz run choose, one after the other; behind the last all choices are the first.
struct Choices {
    const std::uint8_t* bytes;
    std::size_t left;

    std::uint8_t next() { return left > 0 ? --left, *bytes++ : std::uint8_t{0}; }
    int below(int limit) { return next() % limit; }
    // Mostly a usual one.
    double number() {
        static constexpr double wild[] = {NAN, INFINITY, -INFINITY, 1.7e308, -1.7e308, 5e-324, -1e-300, 1e15};
        const int draw = next();
        if (draw >= 248) return wild[draw - 248];
        return draw < 200 ? draw / 8.0 - 12.0 : std::ldexp(1.0, 40 * (draw - 224));
    }
    // Up to the next line's end.
    std::string line() {
        std::string text;
        for (char each; left > 0 && (each = static_cast<char>(next())) != '\n';) text += each;
        return text;
    }
};
