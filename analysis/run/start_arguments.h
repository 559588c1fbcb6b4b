#pragma once

#include "numeric/numerics.h"

// What the window is started with: [--numerics classic|textbook] [FILE]. Texts point into the arguments.
struct StartArguments {
    const Numerics* numerics = &classicNumerics; // null: the switch names none
    const char* file = nullptr;                  // null: none is opened
};

// Reads the arguments behind the program's name, arguments[0]. The value of the switch stands behind "=" or
// is the next argument; what follows the file is not read.
StartArguments readStartArguments(int count, const char* const* arguments);
