#pragma once

#include "analysis/run/analysis_kind.h"

// Kinds 20 to 22, chosen in one dialog: the data are a square matrix of similarities between as many objects.
// Multidimensional scaling prints its heading only. Quantification IV (Hayashi 1952) takes the eigenvectors
// of the symmetrised matrix whose rows sum to 0, principal co-ordinates (Gower 1966) those of the doubly
// centred matrix, scaled by the roots of their eigenvalues. Graphs of three objects and more. Codes:
// illegalSimilarityData, outOfMemory, eigenNotConvergent for a matrix that is not finite;
// graphNotBuilt.
extern const Analysis similarityAnalysis;
