#pragma once

// For what rounding would spoil in doubles: exponents, whose relative error becomes a multiple of that in the
// tail that they give, and residuals, which are small differences of large numbers. Where it is no wider than
// double everything still holds, with the larger errors that the functions state.
using Wide = long double;
