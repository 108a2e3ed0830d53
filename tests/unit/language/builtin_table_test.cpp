#include "language/builtin_table.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace tolvek;

namespace {

/* A table of its own: every other letter of the alphabet, with filler rows behind. */
struct builtin_table_test : testing::Test {
    builtin_row kept[builtin_rows];
    int kept_count = numbuiltins;

    void SetUp() override {
        std::memcpy(kept, builtin, sizeof builtin);
        numbuiltins = 12;
        for (builtin_row &row : builtin) std::strcpy(row.name, "b");
        for (int i = 0; i <= numbuiltins; i++) {
            builtin[i].name[0] = static_cast<char>('A' + 2 * i);
            builtin[i].name[1] = 0;
        }
    }
    void TearDown() override {
        std::memcpy(builtin, kept, sizeof builtin);
        numbuiltins = kept_count;
    }
};

TEST_F(builtin_table_test, the_code_of_a_name_is_its_place) {
    for (int i = 0; i <= numbuiltins; i++) EXPECT_EQ(find_built_in(0, numbuiltins, builtin[i].name), i);
}

TEST_F(builtin_table_test, a_name_between_two_names_is_not_found) {
    for (const char *name : {"", "@", "B", "L", "Z", "AA", "Aa", "b", "a longer name than any"})
        EXPECT_EQ(find_built_in(0, numbuiltins, name), -1) << name;
}

TEST_F(builtin_table_test, only_the_rows_asked_for_are_looked_at) {
    EXPECT_EQ(find_built_in(1, 3, "A"), -1);
    EXPECT_EQ(find_built_in(1, 3, "C"), 1);
    EXPECT_EQ(find_built_in(1, 3, "G"), 3);
    EXPECT_EQ(find_built_in(1, 3, "I"), -1);
    EXPECT_EQ(find_built_in(5, 4, "K"), -1);
}

} // namespace
