#pragma once

#include <cstddef>

// Where things stand on a printed page.

constexpr int twipsPerInch = 1440;

// A printer's physical page in device units, its device units per inch, and the unprintable edges that its
// co-ordinates begin behind.
struct PrinterPage {
    int width;
    int height;
    int horizontalPerInch;
    int verticalPerInch;
    int leftEdge;
    int topEdge;
};

// Left, top, right, bottom in twips.
struct PageArea {
    int left;
    int top;
    int right;
    int bottom;
};

PageArea pageArea(const PrinterPage& page);

// The page less 1 inch on every side.
PageArea printArea(const PrinterPage& page);

// The horizontal co-ordinate that centres a footer of so many characters on the paper.
int footerLeft(const PrinterPage& page, int characters, int averageCharacterWidth);

// Device units from the top edge.
constexpr int footerTop = 40;

// The characters of the line that begins `text`: up to its line end, or as many as fit into the width, which
// `fits(text, count)` tells, cut behind the last blank or comma when there is one. At least one
// character of a line that is not empty.
template <class Fits> std::size_t lineLength(const char* text, std::size_t count, Fits fits) {
    std::size_t length = 0;
    while (length < count && text[length] != '\n') ++length;
    const std::size_t fitting = fits(text, length);
    if (fitting >= length) return length;
    for (std::size_t cut = fitting; cut > 0; --cut) {
        if (text[cut - 1] == ' ' || text[cut - 1] == ',') return cut;
    }
    return fitting > 0 ? fitting : 1;
}
