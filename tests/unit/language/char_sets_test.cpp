#include "language/char_sets.h"

#include <gtest/gtest.h>

#include <string>

using namespace tolvek;

namespace {

void holds_exactly(const PSet &set, const std::string &members) {
    for (int c = 0; c < 256; c++)
        EXPECT_EQ(PSet_Test(set, c), members.find(static_cast<char>(c)) != std::string::npos) << c;
}

TEST(char_sets, each_set_has_its_members_and_no_other) {
    holds_exactly(throwaways, {32, 9, 10, 13});
    holds_exactly(cond_set, {62, 60, 61});
    holds_exactly(short_set, {61, 62});
    holds_exactly(poly_cond_set, {61});
    holds_exactly(iterm_set, {42, 47, 92, 124});
    holds_exactly(term_set, {42, 47, 92, 124, 40});
    holds_exactly(arr_term_ops, {42, 47, 124, 92, 95});
    holds_exactly(continset, {34, 96});
}

TEST(char_sets, bytes_above_127_are_members_like_others) {
    PSet set;
    PSet_Init(set);
    PSet_Set(set, 0);
    PSet_Set(set, 200);
    PSet_Set(set, 255);
    holds_exactly(set, {'\0', '\xC8', '\xFF'});
    PSet_Init(set);
    holds_exactly(set, {});
}

TEST(char_sets, what_is_no_character_is_in_no_set) {
    PSet set;
    PSet_Init(set);
    for (int c = 0; c < 256; c++) PSet_Set(set, static_cast<unsigned char>(c));
    for (int code : {-1, -200, 256, 256 + '=', 435, 1 << 20}) EXPECT_FALSE(PSet_Test(set, code)) << code;
}

} // namespace
