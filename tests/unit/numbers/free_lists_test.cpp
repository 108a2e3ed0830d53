#include "numbers/free_lists.h"

#include "support/rand_numbers.h"

using namespace tolvek;

struct free_lists : ::testing::Test {
    void SetUp() override { open_value_stashes(); }
};

TEST_F(free_lists, a_pushed_record_is_the_next_one_popped) {
    numnode *d = newdigit();
    push_digit(d);
    EXPECT_EQ(newdigit(), d);
    push_digit(d);
    number *x = newimag();
    push_imag(x);
    EXPECT_EQ(newimag(), x);
    push_imag(x);
    polynode *p = newpoly();
    push_poly(p);
    EXPECT_EQ(newpoly(), p);
    push_poly(p);
    quolynode *q = newquoly();
    push_quoly(q);
    EXPECT_EQ(newquoly(), q);
    push_quoly(q);
    colm *c = newcolm();
    push_colm(c);
    EXPECT_EQ(newcolm(), c);
    push_colm(c);
    variable *v = newvariable();
    push_variable(v);
    EXPECT_EQ(newvariable(), v);
    push_variable(v);
}

TEST_F(free_lists, records_come_with_what_their_line_says) {
    number *x = newimag();
    x->num_len = 7;
    x->num_link = x;
    push_imag(x);
    x = newimag();
    EXPECT_EQ(x->num_len, 0);
    EXPECT_EQ(x->num_link, nullptr);
    push_imag(x);
    name *n = newname();
    n->blank_after = true;
    freename(n);
    n = newname();
    EXPECT_EQ(n->next, nullptr);
    EXPECT_FALSE(n->blank_after);
    freename(n);
}

TEST_F(free_lists, the_count_follows_every_kind) {
    const records_in_use before = count_records_in_use();
    numnode *d = newdigit();
    number *x = newimag();
    polynode *p = newpoly();
    quolynode *q = newquoly();
    colm *c = newcolm();
    name *n = newname();
    variable *v = newvariable();
    records_in_use now = count_records_in_use();
    EXPECT_EQ(now.digits, before.digits + 1);
    EXPECT_EQ(now.numbers, before.numbers + 1);
    EXPECT_EQ(now.polynodes, before.polynodes + 1);
    EXPECT_EQ(now.quolynodes, before.quolynodes + 1);
    EXPECT_EQ(now.colms, before.colms + 1);
    EXPECT_EQ(now.names, before.names + 1);
    EXPECT_EQ(now.variables, before.variables + 1);
    push_digit(d);
    push_imag(x);
    push_poly(p);
    push_quoly(q);
    push_colm(c);
    freename(n);
    push_variable(v);
    EXPECT_TRUE(count_records_in_use() == before);
}

TEST_F(free_lists, preloading_makes_5001_digits_and_polynodes_that_are_not_in_use) {
    const records_in_use before = count_records_in_use();
    preload_free_lists();
    EXPECT_TRUE(count_records_in_use() == before);
    const uint32_t slugs = polystash->slugs_used;
    polynode *list = nullptr;
    for (int i = 0; i < 5001; i++) {
        polynode *p = newpoly();
        p->next = list;
        list = p;
    }
    EXPECT_EQ(polystash->slugs_used, slugs);
    while (list) {
        polynode *next = list->next;
        push_poly(list);
        list = next;
    }
    EXPECT_TRUE(count_records_in_use() == before);
}

TEST_F(free_lists, a_chain_goes_back_by_one_splice) {
    const records_in_use before = count_records_in_use();
    numnode *tail = newdigit(), *head = tail;
    for (int i = 0; i < 9; i++) {
        numnode *d = newdigit();
        d->next = head;
        head = d;
    }
    EXPECT_EQ(count_records_in_use().digits, before.digits + 10);
    push_digits(head, tail);
    EXPECT_EQ(numhead, head);
    EXPECT_TRUE(count_records_in_use() == before);
}

TEST_F(free_lists, a_list_of_names_goes_back_whole_and_none_is_fine) {
    const records_in_use before = count_records_in_use();
    name *list = nullptr;
    for (int i = 0; i < 5; i++) {
        name *n = newname();
        n->next = list;
        list = n;
    }
    freename(list);
    freename(nullptr);
    EXPECT_TRUE(count_records_in_use() == before);
}

#if TOLVEK_POISONING
TEST_F(free_lists, a_freed_record_is_poisoned) {
    numnode *d = newdigit();
    EXPECT_FALSE(__asan_address_is_poisoned(&d->digit));
    push_digit(d);
    EXPECT_TRUE(__asan_address_is_poisoned(&d->digit));
    number *x = newimag();
    push_imag(x);
    EXPECT_TRUE(__asan_address_is_poisoned(&x->flote_val));
}
#endif
