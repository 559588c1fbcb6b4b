#pragma once

#include "data/import/import_form.h"
#include "data/import/import_messages.h"

// What the options say of a column by its name or number.
struct ColumnWish {
    bool dropped;
    bool unkept;     // others are to be kept
    bool categories; // even of numbers
    bool labels;

    bool isOut() const { return dropped || unkept; }
};

// The names of the columns, as the header has them; V1, V2, ... where it has none.
struct ColumnNames {
    Block<char> characters;
    Block<Index> ends;
    Index count = 0;

    std::string_view operator[](Index column) const {
        const Index first = column > 0 ? ends[column - 1] : 0;
        return {characters.data() + first, static_cast<std::size_t>(ends[column] - first)};
    }
};

// Takes the names from the header, null where there is none. Success or outOfMemory.
[[nodiscard]] ErrorCode takeNames(const ImportRecord* header, const ImportForm& form, ColumnNames& names);

// Finds the columns that the options name. Success; outOfMemory; illegalData with a refusal.
[[nodiscard]] ErrorCode takeWishes(const ImportOptions& options, const ColumnNames& names,
                                   Block<ColumnWish>& wishes, ImportMessages& messages);
