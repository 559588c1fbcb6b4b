#pragma once

#include "numeric/matrix.h"

// The reduction of a large symmetric matrix to tridiagonal form, and the way back, in panels of rows whose
// reflections are applied to the rest at once.

struct PanelReduction {
    Matrix panel;         // of reflections: rows of n
    Matrix products;      // what a panel's reflections make of the matrix: rows of n
    Matrix overlaps;      // n x panel, twice below each other
    Block<double> halves; // n: h of the reflection 1 - u u' / h in each row, 0 for none

    [[nodiscard]] ErrorCode allocate(Index n);
};

// Reduces the symmetric a (n x n in rows of stride doubles, the lower triangle is read) to d and e as
// HouseholderTridiagonalise does (Dongarra, Sorensen and Hammarling 1989). Row i of a gets the vector u of
// its reflection in its first i elements.
void reduceByPanels(Index n, Index stride, double* a, double* d, double* e, PanelReduction& work);

// Takes the eigenvectors of the tridiagonal matrix, in the rows of `rows` (n x n), to those of the matrix
// whose reflections a and work hold (compact form: Schreiber and Van Loan 1989).
void reflectRows(Index stride, const double* a, PanelReduction& work, Matrix& rows);
