#pragma once

#include "data/categories.h"
#include "data/import/cell_reading.h"

// What the cells of a column are. Lines count from 1.
struct ColumnSurvey {
    Index counts[cellShapeCount];
    Index firstLines[cellShapeCount];
    Index units[numberUnitCount]; // numbers beside each
    Index unitLines[numberUnitCount];
    Index marked, markedLine;   // missing cells that are not empty
    char mark[12];              // the first of them
    Index negated, negatedLine; // numbers whose minus is no sign before them
    Index dressed;              // numbers that are not plain
    Index minus, nines;         // numbers below 0, and those of them as -99 and -999
    Index ninesLine, ninesDigits;
    Index widest;       // bytes of a cell
    std::int32_t texts; // its list in CategoryTexts, -1 for none yet

    Index count(CellShape shape) const { return counts[static_cast<int>(shape)]; }
    Index firstLine(CellShape shape) const { return firstLines[static_cast<int>(shape)]; }
    Index numbers() const;
    Index filled() const; // cells that are not missing
    // Notes how a number is written.
    void takeNumber(std::string_view cell, const NumberDress& dress, Index line);
};

// The different texts of columns, up to 64 of each, in the order of their first appearance. A text counts by
// its first 200 bytes.
class CategoryTexts {
public:
    // More columns than a table of the program's form can have are not kept.
    static constexpr std::int32_t mostLists = 4096;

    void clear();
    // A new list, -1 when there are too many; outOfMemory is told by `code`.
    std::int32_t addList(ErrorCode& code);
    // Adds a text of a list if it is new.
    [[nodiscard]] ErrorCode add(std::int32_t list, std::string_view text);

    // How many there are; mostCategories + 1 when there are more than 64.
    Index count(std::int32_t list) const { return lists_[list].count; }
    // Its first 200 bytes, as far as they are whole characters.
    std::string_view text(std::int32_t list, Index k) const;
    // The number of a text, from 0; -1 when it is none of the list.
    Index find(std::int32_t list, std::string_view text) const;

private:
    struct List {
        std::uint64_t hashes[mostCategories];
        Index places[mostCategories]; // in characters_
        std::uint8_t lengths[mostCategories];
        Index count;
        mutable Index last; // found last
    };

    std::string_view stored(const List& list, Index k) const {
        return {characters_.data() + list.places[k], list.lengths[k]};
    }

    GrowingList<List> lists_;
    Block<char> characters_;
    Index used_ = 0;
};

// Whether texts are all different, as far as the first 65,536 of them tell.
class DifferentTexts {
public:
    [[nodiscard]] ErrorCode start();
    [[nodiscard]] ErrorCode add(std::string_view text);
    bool areDifferent() const { return different_; }

private:
    bool place(std::uint64_t hash);

    Block<std::uint64_t> hashes_;
    Index count_ = 0;
    bool different_ = true;
};
