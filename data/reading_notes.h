#pragma once

#include "data/doubts.h"
#include "data/file_code.h"
#include "data/moments/moment_table.h"

// What the reading of a file finds besides its cells.
struct ReadingNotes {
    Doubts doubts;
    FileRefusal refusal;    // of a file that was not read
    MomentsRefusal moments; // of one that holds moments, but wrong ones
};
