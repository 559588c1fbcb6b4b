#include "data/import/column_survey.h"

#include <algorithm>
#include <utility>

#include "data/import/text_hash.h"
#include "data/import/unicode.h"

namespace {

constexpr std::size_t longestText = 200;
constexpr Index mostHashes = 1 << 16;
constexpr Index fewestPlaces = 1 << 10;

} // namespace

Index ColumnSurvey::numbers() const {
    Index sum = 0;
    for (int shape = 0; shape < cellShapeCount; ++shape) {
        if (isNumberShape(static_cast<CellShape>(shape))) sum += counts[shape];
    }
    return sum;
}

Index ColumnSurvey::filled() const {
    return numbers() + count(CellShape::text) + count(CellShape::date) + count(CellShape::noValue);
}

void ColumnSurvey::takeNumber(std::string_view cell, const NumberDress& dress, Index line) {
    const int unit = static_cast<int>(dress.unit);
    if (units[unit]++ == 0) unitLines[unit] = line;
    dressed += !dress.isPlain;
    if (dress.isNegated && negated++ == 0) negatedLine = line;
    if (cell[0] != '-' && !dress.isMinus) return;
    ++minus;
    const std::size_t digits = std::min(cell.find_first_not_of('9', 1), cell.size()) - 1;
    const bool areNines = digits > 1 && cell.find_first_not_of(".,0", digits + 1) == std::string_view::npos;
    if (areNines && nines++ == 0) {
        ninesLine = line;
        ninesDigits = static_cast<Index>(digits);
    }
}

void CategoryTexts::clear() {
    lists_.clear();
    used_ = 0;
}

std::int32_t CategoryTexts::addList(ErrorCode& code) {
    if (lists_.size() == mostLists) return -1;
    if (!lists_.add({})) {
        code = outOfMemory;
        return -1;
    }
    return static_cast<std::int32_t>(lists_.size() - 1);
}

ErrorCode CategoryTexts::add(std::int32_t list, std::string_view text) {
    List& of = lists_[list];
    if (of.count > mostCategories || find(list, text) >= 0) return success;
    if (of.count == mostCategories) {
        ++of.count;
        return success;
    }
    text = text.substr(0, longestText);
    const Index length = std::ssize(text);
    if (used_ + length > characters_.size() &&
        characters_.grow(std::max(used_ + length, 2 * characters_.size())) != success) {
        return outOfMemory;
    }
    std::copy(text.begin(), text.end(), characters_.data() + used_);
    of.hashes[of.count] = hashOf(text);
    of.places[of.count] = used_;
    of.lengths[of.count] = static_cast<std::uint8_t>(length);
    of.last = of.count++;
    used_ += length;
    return success;
}

std::string_view CategoryTexts::text(std::int32_t list, Index k) const {
    const std::string_view bytes = stored(lists_[list], k);
    return bytes.substr(0, static_cast<std::size_t>(validUtf8(bytes.data(), std::ssize(bytes))));
}

Index CategoryTexts::find(std::int32_t list, std::string_view text) const {
    const List& of = lists_[list];
    text = text.substr(0, longestText);
    const std::uint64_t hash = hashOf(text);
    const auto isIt = [&](Index k) { return of.hashes[k] == hash && stored(of, k) == text; };
    const Index count = std::min(of.count, Index{mostCategories});
    if (of.last < count && isIt(of.last)) return of.last;
    for (Index k = 0; k < count; ++k) {
        if (isIt(k)) return of.last = k;
    }
    return -1;
}

ErrorCode DifferentTexts::start() {
    count_ = 0;
    different_ = true;
    return hashes_.allocate(fewestPlaces);
}

// Puts a hash into its place; false when it is there.
bool DifferentTexts::place(std::uint64_t hash) {
    const Index size = hashes_.size();
    Index at = static_cast<Index>((hash >> 20) % static_cast<std::uint64_t>(size));
    for (; hashes_[at] != 0; at = at + 1 < size ? at + 1 : 0) {
        if (hashes_[at] == hash) return false;
    }
    hashes_[at] = hash;
    return true;
}

ErrorCode DifferentTexts::add(std::string_view text) {
    if (!different_ || count_ == mostHashes) return success;
    if (2 * count_ == hashes_.size()) {
        Block<std::uint64_t> former = std::move(hashes_);
        if (hashes_.allocate(2 * former.size()) != success) return outOfMemory;
        for (const std::uint64_t hash : former) {
            if (hash != 0) place(hash);
        }
    }
    different_ = place(hashOf(text));
    ++count_;
    return success;
}
