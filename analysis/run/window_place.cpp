#include "analysis/run/window_place.h"

#include <algorithm>

namespace {

// More than any arrangement of screens; keeps the sums below within 32 bits.
constexpr std::int32_t farthest = 1 << 20;

bool isWild(std::int32_t position) {
    return position < -farthest || position > farthest;
}

bool meets(const Settings& kept, const ScreenArea& screens) {
    return !isWild(kept.windowRight) && !isWild(kept.windowBottom) &&
           std::max(kept.windowLeft, screens.left) < std::min(kept.windowRight, screens.right) &&
           std::max(kept.windowTop, screens.top) < std::min(kept.windowBottom, screens.bottom);
}

// Settles one direction; `size` of 0 means that nothing is kept.
void settle(std::int32_t& first, std::int32_t& last, std::int32_t& size, std::int32_t usual,
            std::int32_t screen) {
    if (size != 0) return;
    size = usual;
    if (first == 0) first = (screen - usual) / 2;
    last = first + size;
}

// The first co-ordinate of `size` over the middle of first..last, within least..most.
std::int32_t centred(std::int32_t first, std::int32_t last, std::int32_t size, std::int32_t least,
                     std::int32_t most) {
    return std::max(std::min(first + (last - first - size) / 2, most - size), least);
}

} // namespace

void settleWindowRectangle(Settings& settings, std::int32_t screenWidth, std::int32_t screenHeight,
                           const ScreenArea& allScreens) {
    for (int trial = 0; trial < 2; ++trial) {
        if (settings.windowWidth == 0 || settings.windowHeight == 0) {
            settings.screenWidth = screenWidth;
            settings.screenHeight = screenHeight;
        }
        if (!isWild(settings.windowLeft) && !isWild(settings.windowTop)) {
            settle(settings.windowLeft, settings.windowRight, settings.windowWidth, 800, screenWidth);
            settle(settings.windowTop, settings.windowBottom, settings.windowHeight, 480, screenHeight);
            if (meets(settings, allScreens)) return;
        }
        settings.windowLeft = settings.windowTop = settings.windowRight = settings.windowBottom = 0;
        settings.windowWidth = settings.windowHeight = 0;
    }
}

ScreenArea placeOver(const ScreenArea& owner, std::int32_t width, std::int32_t height,
                     const ScreenArea& screen) {
    const std::int32_t left = centred(owner.left, owner.right, width, screen.left, screen.right);
    const std::int32_t top = centred(owner.top, owner.bottom, height, screen.top, screen.bottom);
    return {left, top, left + width, top + height};
}
