#include "analysis/categorical/quantification/category_names.h"

ErrorCode nameCategories(const CategoryLayout& layout, const TextView& variables, TextList& names) {
    const ErrorCode code = names.allocate(layout.totalCategories);
    if (code != success) return code;
    for (Index v = 0; v < layout.first.size(); ++v) {
        for (std::int32_t c = 0; c < layout.categoryCount[v]; ++c)
            names.setFormat(layout.first[v] + c, "%s %d", variables[v], c + 1);
    }
    return success;
}
