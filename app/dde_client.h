#pragma once

#include "app/program.h"

// The client side of the spreadsheet link, one instance for the whole run. A failure is told and the program
// goes on without the link.
void startDdeClient(Program& program);
void endDdeClient(Program& program);
