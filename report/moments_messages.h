#pragma once

#include "data/moments/moment_table.h"
#include "report/text_buffer.h"

// Appends a line that says why moments are refused.
void writeMomentsRefusal(TextBuffer& text, const MomentsRefusal& refusal);
