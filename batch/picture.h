#pragma once

#include <cstdio>
#include <string_view>

#include "analysis/run/analysis_kind.h"
#include "analysis/run/analysis_run.h"
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

    // Of a chart, which takes the place of the picture of the window.
    const char* name = nullptr;     // of the picture; null: not given
    const char* colourBy = nullptr; // a variable
    bool labels = false;
    bool ellipses = false;
    int fontHeight = 0; // 0: not given
    bool isSized = false;
    const char* ofWindow = nullptr; // an option that only the picture of the window has
    const char* ofCharts = nullptr; // one that only charts have
    unsigned wishes = 0;            // of Picture::Wishes
    const Picture* chart = nullptr; // that is wanted; null: the picture of the window
};

enum class PictureOption { none, flag, value };

// What the option of this name takes; none when it is not one of the picture.
PictureOption findPictureOption(std::string_view name);

// Takes an option of the picture; false and a complaint when its value is wrong.
bool setPictureOption(std::string_view name, const char* value, PictureOptions& options,
                      Complaint& complaint);

// Finds the chart that is wanted. False and a complaint when the analysis (null: the summary) has no such
// picture, there is none to write, or the options do not go together.
bool checkPictureOptions(PictureOptions& options, const AnalysisKind* kind, Complaint& complaint);

// The same once the data are there; the run then describes the chart that is wanted.
bool wishForPicture(const PictureOptions& options, AnalysisRun& run, Complaint& complaint);

// The options of the pictures of a kind.
void printPictureHelp(std::FILE* file, const AnalysisKind& kind);
// The option of this place in the help of a kind, null behind the last.
const OptionText* pictureOption(const AnalysisKind& kind, std::size_t place);

// Why the run has no picture that meets the options, or null.
const char* refusePicture(const PictureOptions& options, const AnalysisKind& kind, const AnalysisRun& run);

// The picture as an SVG document; success or outOfMemory. Labels that a chart has no room for are told on
// standard error.
[[nodiscard]] ErrorCode drawPicture(const PictureOptions& options, const AnalysisRun& run,
                                    TextBuffer& document);
