#include "numeric/block_product.h"

#include <algorithm>

#include "numeric/pair.h"

namespace {

// A tile is the part of c that registers hold, 4 x 4. Of a block of a, 64 rows are packed at a time and of b
// 128 columns, over 128 steps of the sum: 256 KB together, on the stack. They lie tile by tile in the order
// of their use, elements of a twice.
constexpr Index tile = 4;
constexpr Index blockRows = 64;
constexpr Index blockColumns = 128;
constexpr Index blockInner = 128;

MatrixView part(const MatrixView& whole, Index i, Index j) {
    return {whole.data + i * whole.rowStep + j * whole.columnStep, whole.rowStep, whole.columnStep,
            whole.weights != nullptr ? whole.weights + j : nullptr};
}

// Rows and columns behind the last are packed as zeros.
void packRows(Index rows, Index inner, const MatrixView& a, Pair* packed) {
    for (Index first = 0; first < rows; first += tile) {
        const double* place = a.data + first * a.rowStep;
        const Index count = std::min(rows - first, tile);
        for (Index k = 0; k < inner; ++k) {
            const double weight = a.weights != nullptr ? a.weights[k] : 1.0;
            double elements[tile] = {};
            if (count == tile) {
                for (Index i = 0; i < tile; ++i) elements[i] = place[i * a.rowStep] * weight;
            } else {
                for (Index i = 0; i < count; ++i) elements[i] = place[i * a.rowStep] * weight;
            }
            for (const double element : elements) *packed++ = Pair{element, element};
            place += a.columnStep;
        }
    }
}

void packColumns(Index columns, Index inner, const MatrixView& b, Pair* packed) {
    for (Index first = 0; first < columns; first += tile) {
        const double* place = b.data + first * b.columnStep;
        const Index count = std::min(columns - first, tile);
        for (Index k = 0; k < inner; ++k) {
            double elements[tile] = {};
            if (count == tile) {
                for (Index j = 0; j < tile; ++j) elements[j] = place[j * b.columnStep];
            } else {
                for (Index j = 0; j < count; ++j) elements[j] = place[j * b.columnStep];
            }
            *packed++ = Pair{elements[0], elements[1]};
            *packed++ = Pair{elements[2], elements[3]};
            place += b.rowStep;
        }
    }
}

// sums (4 x 4) of one tile of rows and one of columns.
void multiplyTile(Index inner, const Pair* __restrict a, const Pair* __restrict b, double* sums) {
    Pair s00{}, s01{}, s10{}, s11{}, s20{}, s21{}, s30{}, s31{};
    for (Index k = 0; k < inner; ++k) {
        const Pair left = b[0], right = b[1];
        s00 += a[0] * left;
        s01 += a[0] * right;
        s10 += a[1] * left;
        s11 += a[1] * right;
        s20 += a[2] * left;
        s21 += a[2] * right;
        s30 += a[3] * left;
        s31 += a[3] * right;
        a += 4;
        b += 2;
    }
    const Pair rows[] = {s00, s01, s10, s11, s20, s21, s30, s31};
    for (Index i = 0; i < 8; ++i) {
        sums[2 * i] = rows[i][0];
        sums[2 * i + 1] = rows[i][1];
    }
}

// Row i of the tile has its elements before column i + diagonal + 1 alone.
void addTile(Index rows, Index columns, double factor, const double* sums, Index diagonal, double* c,
             Index stride) {
    for (Index i = 0; i < rows; ++i) {
        const Index count = std::min(columns, i + diagonal + 1);
        for (Index j = 0; j < count; ++j) c[i * stride + j] += factor * sums[i * tile + j];
    }
}

// Adds the product of packed blocks; `diagonal` as for a tile.
void addBlock(Index rows, Index columns, Index inner, double factor, const Pair* a, const Pair* b,
              Index diagonal, double* c, Index stride) {
    double sums[tile * tile];
    for (Index j = 0; j < columns; j += tile) {
        for (Index i = 0; i < rows; i += tile) {
            const Index tileDiagonal = i + diagonal - j;
            if (tileDiagonal + tile <= 0) continue;
            multiplyTile(inner, a + i * inner, b + j * inner / 2, sums);
            double* out = c + i * stride + j;
            if (rows - i >= tile && columns - j >= tile && tileDiagonal >= tile - 1) {
                addTile(tile, tile, factor, sums, tile, out, stride);
            } else {
                addTile(std::min(rows - i, tile), std::min(columns - j, tile), factor, sums, tileDiagonal,
                        out, stride);
            }
        }
    }
}

// Row i of c has its elements before column i + diagonal + 1 alone.
void addBlocks(Index rows, Index columns, Index inner, double factor, const MatrixView& a,
               const MatrixView& b, Index diagonal, double* c, Index stride) {
    Pair packedRows[blockRows * blockInner];
    Pair packedColumns[blockColumns * blockInner / 2];
    for (Index k = 0; k < inner; k += blockInner) {
        const Index depth = std::min(blockInner, inner - k);
        for (Index j = 0; j < columns; j += blockColumns) {
            const Index width = std::min(blockColumns, columns - j);
            packColumns(width, depth, part(b, k, j), packedColumns);
            for (Index i = 0; i < rows; i += blockRows) {
                const Index height = std::min(blockRows, rows - i);
                if (i + height + diagonal <= j) continue;
                packRows(height, depth, part(a, i, k), packedRows);
                addBlock(height, width, depth, factor, packedRows, packedColumns, i + diagonal - j,
                         c + i * stride + j, stride);
            }
        }
    }
}

} // namespace

void addProduct(Index rows, Index columns, Index inner, double factor, const MatrixView& a,
                const MatrixView& b, double* c, Index stride) {
    addBlocks(rows, columns, inner, factor, a, b, columns, c, stride);
}

void addLowerProduct(Index order, Index inner, double factor, const MatrixView& a, const MatrixView& b,
                     double* c, Index stride) {
    addBlocks(order, order, inner, factor, a, b, 0, c, stride);
}
