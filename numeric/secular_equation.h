#pragma once

#include "numeric/block.h"

// The eigenvalues of diag(poles) + rho z z' are the roots of 1 / rho + sum z_i^2 / (poles_i - x), rho > 0,
// the poles ascending and no z 0: one between each pole and the next, the last behind all (Cuppen 1981).
// Finds root `index` and writes poles_i - root to distances (count), each exact to rounding. Returns the
// root.
double findSecularRoot(Index count, Index index, const double* poles, const double* z, double rho,
                       double* distances);
