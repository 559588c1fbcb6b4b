#include "batch/nearest_word.h"

#include <algorithm>

namespace {

constexpr std::size_t mostLetters = NearestWord::longestWord;

char withoutCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// By three rows of the table of distances of all beginnings.
int distanceBetween(std::string_view a, std::string_view b) {
    int rows[3][mostLetters + 1] = {};
    for (std::size_t j = 0; j <= b.size(); ++j) rows[0][j] = static_cast<int>(j);
    for (std::size_t i = 1; i <= a.size(); ++i) {
        int* const row = rows[i % 3];
        const int* const above = rows[(i + 2) % 3];
        const int* const second = rows[(i + 1) % 3];
        row[0] = static_cast<int>(i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const char c = withoutCase(a[i - 1]), d = withoutCase(b[j - 1]);
            row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + (c == d ? 0 : 1)});
            const bool exchanged = i > 1 && j > 1 && c == withoutCase(b[j - 2]) && d == withoutCase(a[i - 2]);
            if (exchanged) row[j] = std::min(row[j], second[j - 2] + 1);
        }
    }
    return rows[a.size() % 3][b.size()];
}

} // namespace

NearestWord::NearestWord(std::string_view typed) : typed_(typed) {
    const int length = static_cast<int>(typed.size());
    distance_ = (length < 2 ? 0 : std::max(1, length / 3)) + 1;
}

void NearestWord::offer(std::string_view word) {
    if (typed_.empty() || word.empty() || typed_.size() > mostLetters || word.size() > mostLetters) return;
    const int distance = distanceBetween(typed_, word);
    if (distance >= distance_) return;
    distance_ = distance;
    word.copy(nearest_, word.size());
    nearest_[word.size()] = '\0';
}

bool NearestWord::suggest(Complaint& complaint) const {
    if (nearest_[0] == '\0') return false;
    complaint.add("; did you mean '%s'?", nearest_);
    return true;
}
