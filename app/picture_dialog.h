#pragma once

#include "app/program.h"

// Whether the last analysis has the picture of this number of a PictureChoice.
bool hasPicture(const AnalysisRun& run, int picture);

// Lets the user choose a picture of the last analysis and how it is drawn. True for "Save...".
bool showPictureDialog(Program& program);
