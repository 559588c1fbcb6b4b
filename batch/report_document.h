#pragma once

#include "batch/batch_frontend.h"

// What a run that `succeeded` or failed writes, in the format asked for: the text that was shown last, or a
// document that is made of the report's structure; or the expressions. Null without memory.
const TextBuffer* makeDocument(const CommandLine& line, const AnalysisRun& run, const BatchFrontend& frontend,
                               bool succeeded, TextBuffer& document);
