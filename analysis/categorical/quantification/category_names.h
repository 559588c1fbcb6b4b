#pragma once

#include "data/categories.h"

// The names of all categories as a picture shows them, such as "Hair 2", by global index. Returns success or
// outOfMemory.
[[nodiscard]] ErrorCode nameCategories(const CategoryLayout& layout, const TextView& variables,
                                       TextList& names);
