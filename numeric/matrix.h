#pragma once

#include <algorithm>
#include <cassert>
#include <cstdint>

#include "numeric/block.h"

// A zero-filled block of doubles that knows its rows and columns; element (i, j) stands at i * columns + j.
class Matrix {
public:
    // Replaces the contents by rows x columns zeros; success or outOfMemory (then empty).
    [[nodiscard]] ErrorCode allocate(Index rows, Index columns) {
        rows_ = columns_ = 0;
        const bool fits = rows <= 0 || columns <= PTRDIFF_MAX / rows;
        const ErrorCode code = elements_.allocate(fits ? rows * columns : -1);
        if (code == success) {
            rows_ = rows;
            columns_ = columns;
        }
        return code;
    }

    Index rows() const { return rows_; }
    Index columns() const { return columns_; }
    Index size() const { return elements_.size(); }

    double* row(Index i) { return elements_.data() + i * columns_; }
    const double* row(Index i) const { return elements_.data() + i * columns_; }
    double& operator()(Index i, Index j) {
        assert(isInside(i, j));
        return elements_[i * columns_ + j];
    }
    const double& operator()(Index i, Index j) const {
        assert(isInside(i, j));
        return elements_[i * columns_ + j];
    }

    double* data() { return elements_.data(); }
    const double* data() const { return elements_.data(); }
    double* begin() { return elements_.begin(); }
    double* end() { return elements_.end(); }
    const double* begin() const { return elements_.begin(); }
    const double* end() const { return elements_.end(); }

    void fill(double value) { std::fill(begin(), end(), value); }

private:
    bool isInside(Index i, Index j) const { return i >= 0 && i < rows_ && j >= 0 && j < columns_; }

    Block<double> elements_;
    Index rows_ = 0;
    Index columns_ = 0;
};
