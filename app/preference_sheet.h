#pragma once

#include "app/program.h"

// The property sheet "preference"; what its pages confirm is in the run's settings afterwards, and in the
// kept defaults where "save as default" was checked.
void showPreferencePages(Program& program);

// The parameter pages, which hold nothing but their "save as default" boxes.
void showParameterPages(Program& program);
