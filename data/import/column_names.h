#pragma once

#include "data/import/import_survey.h"

// Takes the names from the header, null where there is none. Success or outOfMemory.
[[nodiscard]] ErrorCode takeNames(const ImportRecord* header, const ImportForm& form, ColumnNames& names);

// Finds the columns that the options name. Success; outOfMemory; illegalData with a refusal.
[[nodiscard]] ErrorCode takeWishes(const ImportOptions& options, const ColumnNames& names,
                                   Block<ColumnWish>& wishes, ImportMessages& messages);
