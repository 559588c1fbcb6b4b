#pragma once

#include "analysis/run/frontend.h"
#include "data/data_set.h"
#include "data/file_code.h"

struct LoadResult {
    FileCode file = FileCode::done;
    LinkCode link = LinkCode::done;

    bool isLoaded() const { return file == FileCode::done && link == LinkCode::done; }
};

// Replaces the data set by the file at run.data.path: csv (source kind 0 of the settings) or the workbook
// that a spreadsheet program has open there (1). Tells a failure on the screens. Returns success or, with
// nothing loaded, the code of the file or of the spreadsheet link.
[[nodiscard]] LoadResult loadDataFile(Frontend& frontend, AnalysisRun& run);

// After a load: fills the working part and shows the summary of the file.
void showLoadedData(Frontend& frontend, AnalysisRun& run);

// Rebuilds the data set with other exclusions and shows its summary; what prediction kept fits no longer.
void applyExclusion(Frontend& frontend, AnalysisRun& run,
                    const std::int32_t (&slots)[ExclusionList::slotCount]);

// Empties the three texts and greys the menus. The data stays until the next load.
void closeDataFile(Frontend& frontend, AnalysisRun& run);

// What the dialog that asks for a file does with its answer, which always has an extension: replaces what
// follows the last "." of a path by "csv" or "xls"; a path without one keeps its first character only.
void forceExtension(char (&path)[pathSize], std::int32_t fileType);

// The path that is proposed for what comes of a file: its own with `end`, such as "-import.csv", in the place
// of the extension. False when it is too long; `proposed` is then empty.
[[nodiscard]] bool proposeTablePath(const char* path, const char* end, char (&proposed)[pathSize]);

// The path of a file that was named without a dialog: as it is named, or with ".csv" when it has no extension
// and is not there (`isThere`). False when the path is too long; `path` is then unchanged.
[[nodiscard]] bool namedDataFile(const char* name, bool isThere, char (&path)[pathSize]);
