#pragma once

#include "app/program.h"

// Lets the user choose the ten columns to keep out; false when cancelled, `slots` then unchanged.
bool showExcludeDialog(const Program& program, std::int32_t (&slots)[ExclusionList::slotCount]);
