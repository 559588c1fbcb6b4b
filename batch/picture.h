#pragma once

#include <cstdio>
#include <string_view>

#include "analysis/run/analysis_kind.h"
#include "batch/complaint.h"
#include "batch/usage_line.h"
#include "report/graph_layout.h"
#include "report/text_buffer.h"

// What the command line asks of the picture of an analysis.
struct PictureOptions {
    const char* file = nullptr; // null: no picture
    bool numbering = false;
    bool sizedVectors = false;
    GraphView view;
    const char* given = nullptr; // one of these options, null when there is none
};

enum class PictureOption { none, flag, value };

// What the option of this name takes; none when it is not one of the picture.
PictureOption findPictureOption(std::string_view name);

// Takes an option of the picture; false and a complaint when its value is wrong.
bool setPictureOption(std::string_view name, const char* value, PictureOptions& options,
                      Complaint& complaint);

// False and a complaint when the analysis (null: the summary) has no picture, or there is none to write.
bool checkPictureOptions(const PictureOptions& options, const AnalysisKind* kind, Complaint& complaint);

void printPictureHelp(std::FILE* file);
// The option of this place in the help, null behind the last.
const OptionText* pictureOption(std::size_t place);

// Why the run has no picture that meets the options, or null.
const char* refusePicture(const PictureOptions& options, const AnalysisKind& kind, const Graph& graph);

// The picture as an SVG document; success or outOfMemory.
[[nodiscard]] ErrorCode drawPicture(const PictureOptions& options, const Graph& graph, TextBuffer& document);
