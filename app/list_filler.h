#pragma once

#include <windows.h>

// A choice of texts is a drop-down list or a list box.
bool isListBox(HWND list);

// Adds texts to a list and in the end makes room for the longest one: a drop-down list opens as wide as it, a
// list box scrolls as far.
class ListFiller {
public:
    explicit ListFiller(HWND list);
    ~ListFiller();
    ListFiller(const ListFiller&) = delete;
    ListFiller& operator=(const ListFiller&) = delete;

    void add(const char* text);
    void choose(int index); // -1: none

private:
    HWND list_;
    bool isBox_;
    HDC device_;
    HGDIOBJ formerFont_;
    LONG widest_ = 0;
};
