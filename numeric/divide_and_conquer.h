#pragma once

#include "numeric/matrix.h"

// Eigenvalues and eigenvectors of a large symmetric tridiagonal matrix by halves (Cuppen 1981; deflation:
// Dongarra and Sorensen 1987; vectors that stay orthogonal: Gu and Eisenstat 1994).

struct DivideWork {
    Matrix rows;                    // n x n: the eigenvectors
    Matrix copy;                    // n x n: the rows in the order of a merge
    Matrix turns;                   // n x n: what a merge multiplies them by
    Block<double> joint;            // n: of each row, its element of the vector that joins two halves
    Block<double> poles, sizes;     // n: of the rows that a merge changes, their values and elements
    Block<double> products, values; // n
    Block<Index> order;             // n: the rows by ascending eigenvalue
    Block<Index> halves;            // n: of the merge that a row is of, -1 or 1, 0 for both
    Block<Index> places;            // n: of the rows in the copy

    [[nodiscard]] ErrorCode allocate(Index n);
};

// d (n) is the diagonal, e[i] the element between i - 1 and i, both finite and destroyed. Row k of work.rows
// becomes the eigenvector of the eigenvalue d[k]; work.order sorts both.
void divideAndConquer(Index n, double* d, double* e, DivideWork& work);
