#pragma once

#include "analysis/run/settings.h"

// Where windows open.

// A rectangle in screen co-ordinates; right and bottom are not part of it.
struct ScreenArea {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;
};

// Settles where the main window opens: the kept rectangle when there is one, else 800 x 480 in the middle of
// a screen of screenWidth x screenHeight. A kept rectangle that meets no screen (`allScreens` is the area
// around all of them) counts as not kept.
void settleWindowRectangle(Settings& settings, std::int32_t screenWidth, std::int32_t screenHeight,
                           const ScreenArea& allScreens);

// Where a dialog of this size opens: over the middle of its owner, as far as `screen` allows. One that is
// larger than the screen shows its upper left corner.
ScreenArea placeOver(const ScreenArea& owner, std::int32_t width, std::int32_t height,
                     const ScreenArea& screen);
