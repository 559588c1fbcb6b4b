#pragma once

#include <string_view>

#include "batch/complaint.h"

// Finds among the words that could have been meant the one nearest to what was typed, if one is near: letters
// left out, added, exchanged or mistaken (Damerau 1964), at most one in three; case does not count.
class NearestWord {
public:
    static constexpr int longestWord = 80; // no name in a file is longer

    explicit NearestWord(std::string_view typed);

    void offer(std::string_view word);

    // Adds "; did you mean 'WORD'?" to the complaint; false when no word is near.
    bool suggest(Complaint& complaint) const;

private:
    std::string_view typed_;
    char nearest_[longestWord + 1] = "";
    int distance_; // a nearer word takes the place of the nearest
};
