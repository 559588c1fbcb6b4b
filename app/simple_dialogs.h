#pragma once

#include "app/program.h"

void showAboutDialog(const Program& program);

// True: the user wants to exit.
bool confirmExit(const Program& program);
