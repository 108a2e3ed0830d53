#include "language/names.h"
#include "numbers/free_lists.h"
#include "numbers/stash.h"
#include "top/driver.h"
#include "top/guards.h"

#include <gtest/gtest.h>

using namespace tolvek;

namespace {

struct names : testing::Test {
    names() {
        if (!numstash) open_value_stashes();
        flotemode = lintmode = modularmode = 0;
    }
    ~names() override {
        release_pending();
        forget_variables();
    }
    static variable *store(const char *text, int32_t value) {
        token_record t;
        set_token(t, text);
        quoly_handle q;
        quoly_set(value, q.slot());
        return insert_var(t, q);
    }
    static variable *find(const char *text) {
        token_record t;
        set_token(t, text);
        return find_variable(t);
    }
};

TEST(hash, is_the_polynomial_in_123_of_the_bytes) {
    EXPECT_EQ(hash("", 151), 0);
    EXPECT_EQ(hash("x", 151), 120);
    EXPECT_EQ(hash("ab", 151), (97 * 123 + 98) % 151);
    EXPECT_EQ(hash("F", 71), 70);
}

TEST(hash, bytes_above_127_count_unsigned) { EXPECT_EQ(hash("\xC2\xA5", 151), (0xC2 % 151 * 123 + 0xA5) % 151); }

TEST_F(names, a_stored_value_is_found_and_replaced) {
    variable *x = store("x", 5);
    EXPECT_EQ(find("x"), x);
    EXPECT_EQ(store("x", 7), x);
    EXPECT_EQ(quoly_to_int(x->value), 7);
    EXPECT_EQ(find("y"), nullptr);
}

TEST_F(names, names_of_one_chain_do_not_meet) {
    /* "a" is 97; (123 + 125 * 123) mod 151 = 97 as well: "\x01}" would do, but names are letters: look for a pair */
    const char *other = nullptr;
    static char text[3];
    for (char c = 'a'; c <= 'z' && !other; c++)
        for (char d = 'a'; d <= 'z' && !other; d++) {
            text[0] = c;
            text[1] = d;
            if (hash(text, 151) == hash("x", 151)) other = text;
        }
    ASSERT_NE(other, nullptr);
    store("x", 1);
    store(other, 2);
    EXPECT_EQ(quoly_to_int(find("x")->value), 1);
    EXPECT_EQ(quoly_to_int(find(other)->value), 2);
}

TEST_F(names, a_deleted_record_stays_whole_until_the_statement_has_ended) {
    variable *x = store("x", 5);
    token_record t;
    set_token(t, "x");
    EXPECT_TRUE(delete_variable(t));
    EXPECT_EQ(find("x"), nullptr);
    EXPECT_EQ(quoly_to_int(x->value), 5);
    EXPECT_FALSE(delete_variable(t));
    release_pending();
}

TEST_F(names, at_a_level_above_1_a_replaced_value_waits) {
    variable *x = store("x", 5);
    quolynode *old = x->value;
    {
        kept_value<int> level(levelcount, 2);
        store("x", 6);
    }
    EXPECT_EQ(quoly_to_int(old), 5);
    EXPECT_EQ(quoly_to_int(x->value), 6);
    release_pending();
}

TEST_F(names, nothing_leaks) {
    store("x", 1); /* the pools are filled */
    forget_variables();
    records_in_use before = count_records_in_use();
    store("x", 1);
    store("y", 1 << 30);
    store("x", 3);
    token_record t;
    set_token(t, "y");
    delete_variable(t);
    release_pending();
    forget_variables();
    EXPECT_TRUE(count_records_in_use() == before);
}

} // namespace
