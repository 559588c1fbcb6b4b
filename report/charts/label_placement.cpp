#include "report/charts/label_placement.h"

#include <algorithm>

ErrorCode LabelPlacement::allocate(const Box& area, int square) {
    area_ = area;
    square_ = std::max(square, 1);
    columns_ = std::max(area.right - area.left, 0) / square_ + 1;
    return taken_.allocate(columns_ * (std::max(area.bottom - area.top, 0) / square_ + 1));
}

bool LabelPlacement::squaresOf(const Box& box, Box& squares) const {
    squares = {(std::max(box.left, area_.left) - area_.left) / square_,
               (std::max(box.top, area_.top) - area_.top) / square_,
               (std::min(box.right, area_.right) - 1 - area_.left) / square_ + 1,
               (std::min(box.bottom, area_.bottom) - 1 - area_.top) / square_ + 1};
    return box.left >= area_.left && box.top >= area_.top && box.right <= area_.right &&
           box.bottom <= area_.bottom;
}

bool LabelPlacement::isFree(const Box& squares) const {
    for (Index y = squares.top; y < squares.bottom; ++y) {
        const char* const row = taken_.data() + y * columns_;
        if (std::any_of(row + squares.left, row + squares.right, [](char taken) { return taken != 0; }))
            return false;
    }
    return true;
}

void LabelPlacement::fill(const Box& squares) {
    if (squares.left >= squares.right) return;
    for (Index y = squares.top; y < squares.bottom; ++y) {
        char* const row = taken_.data() + y * columns_;
        std::fill(row + squares.left, row + squares.right, char{1});
    }
}

void LabelPlacement::take(const Box& box) {
    Box squares;
    squaresOf(box, squares);
    fill(squares);
}

bool LabelPlacement::place(Point mark, int radius, Extent label, Point& topLeft) {
    const int w = label.width, h = label.height, near = radius + 2, diagonal = radius;
    const Point places[] = {
        {mark.x + near, mark.y - h / 2},
        {mark.x - near - w, mark.y - h / 2},
        {mark.x - w / 2, mark.y - near - h},
        {mark.x - w / 2, mark.y + near},
        {mark.x + diagonal, mark.y - near - h},
        {mark.x + diagonal, mark.y + near},
        {mark.x - diagonal - w, mark.y - near - h},
        {mark.x - diagonal - w, mark.y + near},
    };
    for (const Point& at : places) {
        Box squares;
        if (!squaresOf({at.x, at.y, at.x + w, at.y + h}, squares) || !isFree(squares)) continue;
        fill(squares);
        topLeft = at;
        return true;
    }
    return false;
}
