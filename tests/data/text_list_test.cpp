#include <string>

#include <gtest/gtest.h>

#include "data/text_list.h"

// Beyond a group the offsets begin anew; a text may be left out, be longer than there is room for, or be
// replaced.
TEST(TextList, KeepsTextsOfAnyLengthAndNumber) {
    constexpr Index count = 3000, skipped = 1500;
    const auto text = [](Index i) {
        return std::string(static_cast<std::size_t>(i % 70), static_cast<char>('a' + i % 26));
    };
    TextList list, copy;
    ASSERT_EQ(list.allocate(count), success);
    list.setReplaceable(0, "id");
    for (Index i = 1; i < count; ++i) {
        if (i != skipped) list.set(i, text(i));
    }
    list.replace(0, std::string(80, 'z'));
    ASSERT_EQ(copy.copy(list), success);
    for (Index i = 1; i < count; ++i) {
        ASSERT_EQ(copy[i], i == skipped ? "" : text(i).substr(0, 62)) << i;
    }
    EXPECT_EQ(copy[0], std::string(62, 'z'));
    EXPECT_EQ(copy.room(), 0);
    const std::int32_t chosen[] = {7, 0, 1000};
    const TextView view = TextView::chosen(list.places(), chosen, 3, 0, 2);
    EXPECT_EQ(view[0] + std::string(view[2]), text(14) + text(2000));

    ASSERT_EQ(list.allocate(2, 5), success);
    list.set(0, "four");
    list.set(1, "more");
    EXPECT_EQ(list[0] + std::string(list[1]), "fourm");
}
