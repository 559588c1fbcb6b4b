#pragma once

#include "numeric/block.h"

// Turns u (count elements) into the vector of the reflection 1 - u u' / h that clears all but its last
// element. Returns h, half of its squared length, 0 where there is nothing to clear; offDiagonal gets the
// element that stays.
double makeReflection(Index count, double* u, double& offDiagonal);
