#pragma once

#include "data/cell_table.h"
#include "data/text_slot.h"

struct ColumnName {
    char text[textSlotSize];
};

// The name of a column that is added to a table: "NAME.2", ... where a column of the table has the name.
// Added names differ from each other, so that only those of the table are in the way.
ColumnName uniqueColumnName(const CellTable& cells, const char* name);
