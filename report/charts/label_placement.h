#pragma once

#include "numeric/block.h"
#include "report/canvas.h"

// Finds places for labels beside marks, so that none covers a mark or another label: first come, first
// served. What is taken is kept in a grid of small squares, so that each label takes the same time however
// many there are.
class LabelPlacement {
public:
    // For labels inside this box, with squares of so many pixels; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(const Box& area, int square);

    // Takes a box that no label may cover.
    void take(const Box& box);
    // Takes the first free one of eight places around a mark of this radius; false when there is none.
    bool place(Point mark, int radius, Extent label, Point& topLeft);

private:
    // The squares that a box touches; false when it passes the area.
    bool squaresOf(const Box& box, Box& squares) const;
    bool isFree(const Box& squares) const;
    void fill(const Box& squares);

    Box area_ = {};
    int square_ = 1;
    Index columns_ = 0;
    Block<char> taken_;
};
