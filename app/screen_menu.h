#pragma once

#include "app/program.h"

// Beside what a screen itself does with the mouse and the keys: F6 goes to the other screen, and the right
// button, Shift+F10 and the menu key open a menu with "Copy" and "Select All". True: the message was one of
// these and is done with.
bool translateScreenMessage(const Program& program, const MSG& message);
