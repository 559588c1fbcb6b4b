#pragma once

#include <cstdint>

// The numbers of tables are printed in fixed point by the million. Those of a usual size are a whole count of
// units of their last decimal, which 128 bits give exactly, so that no digit has to be searched for.

// A number rounded to its decimals, halves to even, as std::to_chars rounds it.
struct FixedPoint {
    std::uint64_t units = 0; // of the last decimal, without the sign
    int decimals = 0;
    int length = 0; // in characters, with point and sign
    bool isNegative = false;
};

// False for what this is no form for: what is not finite, whole numbers from 2^52 on, products with the power
// of ten that pass 64 bits, more than 12 decimals.
bool toFixedPoint(double value, int decimals, FixedPoint& number);

// Its characters, the last one before `end`.
void putFixedPoint(const FixedPoint& number, char* end);
