#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "data/printf_format.h"
#include "data/text_slot.h"
#include "numeric/block.h"

// Where texts begin that stand one after the other: a group of them has one long position, each of them a
// short offset from it. Offset 0 is an empty text.
struct TextPlaces {
    static constexpr Index groupSize = 1024; // texts of 62 characters fit into an offset

    const char* characters = nullptr;
    const Index* groups = nullptr;
    const std::uint16_t* offsets = nullptr;

    const char* at(Index i) const { return characters + groups[i / groupSize] + offsets[i]; }
};

// Texts by number that somebody else keeps: all of a list, every n-th, or chosen ones.
class TextView {
public:
    TextView() = default;
    // Texts first, first + stride, ...
    static TextView every(const TextPlaces& places, Index size, Index first, Index stride) {
        return TextView(places, size, first, stride, nullptr);
    }
    // Text first + chosen[i] * stride for each i.
    static TextView chosen(const TextPlaces& places, const std::int32_t* chosen, Index size, Index first,
                           Index stride) {
        return TextView(places, size, first, stride, chosen);
    }

    Index size() const { return size_; }
    // Of all texts together.
    Index characters() const;
    const char* operator[](Index i) const {
        return places_.at(first_ + (chosen_ != nullptr ? Index{chosen_[i]} : i) * stride_);
    }

private:
    TextView(const TextPlaces& places, Index size, Index first, Index stride, const std::int32_t* chosen)
        : places_(places), size_(size), first_(first), stride_(stride), chosen_(chosen) {}

    TextPlaces places_;
    Index size_ = 0;
    Index first_ = 0;
    Index stride_ = 1;
    const std::int32_t* chosen_ = nullptr;
};

// Texts by number, in one block: cells, names, labels. Each keeps its first 62 characters and is empty until
// it is set, once and after those of smaller numbers.
class TextList {
public:
    // Room for so many texts of together so many characters, their ends not counted; success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index count, Index characters);
    // The same for texts of any length.
    [[nodiscard]] ErrorCode allocate(Index count) { return allocate(count, count * textSlotLength); }
    [[nodiscard]] ErrorCode copy(const TextView& from);
    void release() { *this = TextList(); }

    Index size() const { return offsets_.size(); }
    const char* operator[](Index i) const { return places().at(i); }
    TextPlaces places() const { return {characters_.data(), groups_.data(), offsets_.data()}; }
    operator TextView() const { return TextView::every(places(), size(), 0, 1); }

    // What is left of the room for characters and ends. A text that is longer is cut.
    Index room() const { return characters_.size() - spare - used_; }

    void set(Index i, std::string_view text) {
        const Index length = std::min({std::ssize(text), textSlotLength, room() - 1});
        if (length < 0) return;
        char* const target = begin(i);
        copyText(target, text.data(), static_cast<std::size_t>(length));
        target[length] = '\0';
        used_ += length + 1;
    }
    [[gnu::format(PRINTF_KIND, 3, 4)]] void setFormat(Index i, const char* format, ...);

    // A text that replace() may make longer.
    void setReplaceable(Index i, std::string_view text);
    void replace(Index i, std::string_view text);

    // Bytes behind every text that can be read.
    static constexpr Index spare = 8;

private:
    // Most texts have 8 to 16 characters: two copies of a known length, which overlap.
    static void copyText(char* target, const char* text, std::size_t length) {
        if (length < 8 || length > 16) {
            std::memcpy(target, text, length);
            return;
        }
        std::memcpy(target, text, 8);
        std::memcpy(target + length - 8, text + length - 8, 8);
    }
    char* begin(Index i) {
        Index& group = groups_[i / TextPlaces::groupSize];
        if (group == 0) group = used_ - 1;
        offsets_[i] = static_cast<std::uint16_t>(used_ - group);
        return characters_.data() + used_;
    }

    Block<char> characters_;
    Block<Index> groups_;
    Block<std::uint16_t> offsets_;
    Index used_ = 2; // an empty text, and one before the first group
};
