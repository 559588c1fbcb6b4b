#pragma once

#include "data/data_set.h"
#include "report/text_buffer.h"

// What stands before each line, and what the program at hand calls its remedies.
struct DoubtWording {
    const char* prefix;
    const char* import;
    const char* omit;
};
constexpr DoubtWording commandLineDoubts = {"warning : ", "ombrivantel-batch import FILE", "--missing omit"};
constexpr DoubtWording windowDoubts = {"", "\"Import Table\"", "\"Omit Missing\""};

// How many kinds of doubts there are about the data in use.
int countDoubts(const DataSet& data);

// Appends a line for each kind of doubt: where in the file, how often, what to do.
void writeDoubts(TextBuffer& text, const DataSet& data, const DoubtWording& wording);

// Appends a line that says why the last file was refused; nothing after one that was read.
void writeRefusal(TextBuffer& text, const FileRefusal& refusal, const DoubtWording& wording);

// Appends a line: how many samples of how many are left out, and the missing cells of each variable.
void writeLeftOut(TextBuffer& text, const DataSet& data);

// Appends what a status says of both behind its own text, without a line end; nothing where there is nothing.
void writeDoubtStatus(TextBuffer& status, const DataSet& data);
