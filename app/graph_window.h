#pragma once

#include "app/program.h"

// Registers the window class "graph"; tells a failure and returns false.
bool registerGraphClass(const Program& program);

// Shows the run's graph in a window of its own in the middle of the screen; tells a failure.
void openGraphWindow(Program& program);

// Gives the run's graph back and closes its window; nothing without a window.
void closeGraph(Program& program);

// Whether a message was a key that moves between the lists of the graph window, which has done so then.
bool translateGraphMessage(const Program& program, MSG& message);
