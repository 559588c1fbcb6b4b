#pragma once

#include <cstdint>

// The result of kernels, engines, drivers and loaders; 0 is success. The words of each code stand in
// report/messages.cpp; nothing below report/ knows them.
using ErrorCode = std::int32_t;

constexpr ErrorCode success = 0;

// Analyses.
constexpr ErrorCode tooFewSamples = 1;
constexpr ErrorCode illegalData = 2;
constexpr ErrorCode outOfMemory = 4;
constexpr ErrorCode noEffectiveVariable = 8;
constexpr ErrorCode singularMatrix = 16;
constexpr ErrorCode eigenNotConvergent = 32;
constexpr ErrorCode singularFactorMatrix = 64;
constexpr ErrorCode illegalGroupVariable = 128;
constexpr ErrorCode illegalCategoricalData = 257;
constexpr ErrorCode illegalVariableNumber = 258;
constexpr ErrorCode illegalCategoryNumber = 260;
constexpr ErrorCode notFinite = 264;
constexpr ErrorCode illegalSimilarityData = 513;
constexpr ErrorCode illegalDivisionalValue = 1025;
constexpr ErrorCode newtonRaphsonSingular = 1026;
constexpr ErrorCode newtonRaphsonNotConvergent = 1028;
constexpr ErrorCode invalidDegree = 2049;
constexpr ErrorCode invalidInvolutionVariable = 2050;
constexpr ErrorCode invalidPurposeVariable = 2052;
// By the user; the screens stay as they were.
constexpr ErrorCode stopped = 65536;
constexpr ErrorCode graphNotBuilt = 32768; // told in a message box of its own

// LuDecompose and TridiagonalQL only: a zero pivot, or the iteration limit.
constexpr ErrorCode decompositionFailed = 1;
