#pragma once

#include "app/program.h"

// "Save Picture...": asks which picture of the last analysis, how it is drawn and where, and writes it as
// SVG.
void savePicture(Program& program);

// "Copy Picture": puts the picture that was chosen last, or else the first one, on the clipboard, as an
// enhanced metafile and as a bitmap.
void copyPicture(Program& program);
