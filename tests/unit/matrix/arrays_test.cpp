#include "language/execution.h"
#include "matrix/array_work.h"
#include "matrix/arrays.h"
#include "matrix/matrix_value.h"
#include "matrix/slots.h"
#include "matrix/sparse.h"
#include "support/fresh_system.h"
#include "top/driver.h"

using namespace tolvek;

namespace {

token_record named(const char *text) {
    token_record t;
    set_token(t, text);
    return t;
}

int32_t value_at(const array_record *a, int64_t i) { return quoly_to_int(element(a, i)); }

struct arrays : fresh_exact_system {
    void SetUp() override {
        fresh_exact_system::SetUp();
        in_use = count_records_in_use();
    }
    void TearDown() override {
        forget_arrays();
        EXPECT_EQ(sparse_frames_in_use(), 0);
        EXPECT_EQ(first_available, 1);
        EXPECT_EQ(borrowed_matrices, 0);
        EXPECT_TRUE(count_records_in_use() == in_use);
        fresh_exact_system::TearDown();
    }

    /* An ordinary array whose cells are base, base + 1, ... */
    static array_record *filled(const char *text, int rows, int cols, int base) {
        array_record *a = insertarr(named(text), rows, cols, false);
        for (int i = 0; i < rows * cols; i++) quoly_set(base + i, &element(a, i));
        return a;
    }
    void refused(int n, const std::function<void()> &routine) {
        EXPECT_TRUE(unwinds(routine));
        EXPECT_NE(last_text.find(message_text(n)), std::string::npos) << last_text;
    }
    static void remove(const char *text) {
        token_record t = named(text);
        removearray(t, false);
    }
    static array_record *find(const char *text) {
        token_record t = named(text);
        return find_array(t);
    }
    static std::string description(const array_record *a, fresh_system &system) {
        return system.text_of([&] { arrdescribe(&standard_output, a); });
    }
    records_in_use in_use{};
};

TEST_F(arrays, elements_lie_column_by_column_behind_those_of_older_arrays) {
    array_record *x = filled("x", 2, 3, 10), *y = filled("y", 1, 1, 50);
    EXPECT_EQ(x->first, 0);
    EXPECT_EQ(x->last, 5);
    EXPECT_EQ(y->first, 6);
    EXPECT_EQ(endarr, 6);
    EXPECT_EQ(x->cols(), 3);
    EXPECT_EQ(value_at(x, 2 * 1 + 1), 13); /* row 2, column 2 */
}

TEST_F(arrays, a_dimension_below_1_is_error_27_in_either_form) {
    refused(27, [] { insertarr(named("a"), 0, 1, true); });
    refused(27, [] { insertarr(named("a"), 1, -1, true); });
    refused(27, [] { sparse_create(named("a"), 0, 1, true, true); });
    EXPECT_EQ(find("a"), nullptr);
}

TEST_F(arrays, more_than_a_million_cells_are_error_43_but_no_matter_in_a_sparse_array) {
    refused(43, [] { insertarr(named("a"), 1000001, 1, true); });
    array_record *a = insertarr(named("a"), 1000, 1000, false);
    EXPECT_EQ(a->size, 1000000);
    EXPECT_EQ(sparse_create(named("b"), 1000001, 1, true, true)->size, 1000001);
    EXPECT_EQ(sparse_create(named("c"), 100000, 100000, false, true)->size, 10000000000);
}

TEST_F(arrays, a_full_table_is_error_26) {
    const char *names[] = {"a", "b", "c", "d", "e"};
    for (const char *text : names) insertarr(named(text), 1000, 1000, false);
    insertarr(named("f"), 120000, 1, true);
    refused(26, [] { insertarr(named("g"), 1, 1, true); });
    EXPECT_EQ(endarr, table_cells - 1);
}

TEST_F(arrays, arrays_hidden_by_newer_ones_make_room_in_a_full_table) {
    for (int i = 0; i < 10; i++) insertarr(named("y"), 1000000 - i, 1, true);
    EXPECT_EQ(find("y")->rows, 999991);
    array_record *other = insertarr(named("x"), 4000000 / 5, 1, true);
    EXPECT_EQ(other->rows, 800000);
}

TEST_F(arrays, a_hidden_array_that_a_slot_holds_stays) {
    array_record *first = filled("y", 1, 2, 5);
    set_slot(3, first);
    for (int i = 0; i < 10; i++) insertarr(named("y"), 1000000, 1, true);
    EXPECT_EQ(slot_array(3), first);
    EXPECT_EQ(value_at(first, 1), 6);
}

TEST_F(arrays, deleting_the_first_shifts_later_ordinary_arrays_and_no_others) {
    array_record *a = filled("a", 2, 2, 1), *b = filled("b", 3, 1, 11);
    array_record *s = sparse_create(named("s"), 3, 3, false, true);
    array_record *c = filled("c", 1, 2, 21);
    remove("b");
    release_pending_arrays();
    EXPECT_EQ(a->first, 0);
    EXPECT_EQ(c->first, 4);
    EXPECT_EQ(c->last, 5);
    EXPECT_EQ(value_at(c, 1), 22);
    EXPECT_EQ(s->first, 0);
    EXPECT_EQ(s->last, -1);
    EXPECT_EQ(endarr, 5);
    EXPECT_EQ(table_cell(6), nullptr);
    EXPECT_EQ(find("b"), nullptr);
    (void)b;
}

TEST_F(arrays, several_deleted_at_once_leave_no_gap) {
    const char *names[] = {"a", "b", "c", "d", "e", "f"};
    for (int i = 0; i < 6; i++) filled(names[i], i + 1, 1, 10 * i);
    remove("e");
    remove("a");
    remove("c");
    release_pending_arrays();
    EXPECT_EQ(endarr, 2 + 4 + 6 - 1);
    EXPECT_EQ(value_at(find("b"), 0), 10);
    EXPECT_EQ(value_at(find("d"), 3), 33);
    EXPECT_EQ(value_at(find("f"), 5), 55);
}

TEST_F(arrays, cells_move_across_blocks) {
    filled("a", 1500, 1, 0);
    array_record *b = filled("b", 3000, 1, 5000);
    remove("a");
    release_pending_arrays();
    EXPECT_EQ(b->first, 0);
    for (int i = 0; i < 3000; i += 7) EXPECT_EQ(value_at(b, i), 5000 + i);
}

TEST_F(arrays, a_deleted_array_is_whole_until_the_statement_has_ended) {
    array_record *a = filled("a", 2, 1, 7), *b = filled("b", 1, 1, 9);
    quolynode **slot = &element(a, 1);
    remove("a");
    EXPECT_EQ(quoly_to_int(*slot), 8);
    EXPECT_EQ(b->first, 2);
    release_pending_arrays();
    EXPECT_EQ(b->first, 0);
}

TEST_F(arrays, an_absent_array_is_error_28_unless_it_may_be) {
    refused(28, [] { remove("a"); });
    token_record t = named("a");
    EXPECT_FALSE(unwinds([&] { removearray(t, true); }));
}

TEST_F(arrays, the_older_ones_of_a_name_go_alone_or_with_the_newest) {
    filled("a", 1, 1, 1);
    array_record *other = filled("b", 1, 1, 2);
    filled("a", 2, 1, 3);
    array_record *newest = filled("a", 3, 1, 5);
    token_record t = named("a");
    remove_arrays_of_name(t, false);
    EXPECT_EQ(find("a"), newest);
    release_pending_arrays();
    EXPECT_EQ(other->first, 0);
    EXPECT_EQ(newest->first, 1);
    filled("a", 1, 1, 8);
    remove_arrays_of_name(t, true);
    EXPECT_EQ(find("a"), nullptr);
    refused(28, [&] { remove_arrays_of_name(t, true); });
}

TEST_F(arrays, a_slot_is_emptied_with_its_array) {
    set_slot(399999, filled("a", 1, 1, 1));
    EXPECT_NE(slot_array(399999), nullptr);
    remove("a");
    EXPECT_EQ(slot_array(399999), nullptr);
}

TEST_F(arrays, a_record_is_described_as_it_was_declared) {
    EXPECT_EQ(description(insertarr(named("a"), 3, 1, true), *this), "Array a[3];\n");
    EXPECT_EQ(description(insertarr(named("b"), 3, 4, false), *this), "Array b[3,4];\n");
    EXPECT_EQ(description(sparse_create(named("c"), 70000, 80000, false, true), *this),
              "Array c[70000,80000] Sparse;\n");
}

/* ---- parameters ---- */

TEST_F(arrays, a_parameter_shares_the_cells_and_moves_with_them) {
    filled("a", 2, 1, 1);
    array_record *b = filled("b", 2, 1, 5);
    array_record *p = new_parameter_array(named("p"), b);
    link_array(p);
    EXPECT_EQ(p->birth, -b->birth);
    remove("a");
    release_pending_arrays();
    EXPECT_EQ(p->first, 0);
    EXPECT_EQ(value_at(p, 1), 6);
    EXPECT_NE(text_of([] { remove("p"); }).find(" Warning.  About to delete an array parameter.\n"), std::string::npos);
    release_pending_arrays();
    EXPECT_EQ(value_at(b, 0), 5);
}

TEST_F(arrays, the_parameter_of_a_deleted_array_is_named_and_left_empty) {
    array_record *a = filled("a", 2, 2, 1), *p = new_parameter_array(named("p"), a);
    link_array(p);
    EXPECT_EQ(text_of([] { remove("a"); }), " Warning. Encountered array parameter named p,\n"
                                            " which is an alias of a.  Delete it immediately.\n");
    release_pending_arrays();
    EXPECT_EQ(sparse_count(p->sparse_head, p->rows), 0);
}

TEST_F(arrays, a_parameter_is_not_deleted_above_level_1) {
    array_record *a = filled("a", 2, 2, 1);
    link_array(new_parameter_array(named("p"), a));
    levelcount = 2;
    refused(138, [] { remove("p"); });
    levelcount = 2;
    refused(139, [] { remove("a"); });
    leave_all_levels();
    release_pending_arrays();
}

/* ---- work arrays and matrices in flight ---- */

TEST_F(arrays, there_are_twenty_work_arrays) {
    refused(88, [] {
        matrix_value m[21];
        for (matrix_value &one : m) one.make_dense(1, 1);
    });
    EXPECT_EQ(first_available, 1);
}

TEST_F(arrays, a_borrowed_matrix_keeps_the_values_that_it_saw) {
    array_record *a = filled("a", 2, 1, 1);
    matrix_value m;
    fetch_array(a, m);
    quoly_handle other;
    quoly_set(99, other.slot());
    store_element(&element(a, 0), other.release());
    EXPECT_EQ(quoly_to_int(m.cell(0)), 1);
    m.own();
    EXPECT_EQ(value_at(a, 0), 99);
    EXPECT_EQ(quoly_to_int(m.cell(1)), 2);
}

TEST_F(arrays, elements_without_a_value_are_set_to_0_with_twenty_warnings) {
    array_record *a = insertarr(named("a"), 30, 1, true);
    uninit = 0;
    matrix_value m;
    std::string text = text_of([&] { fetch_array(a, m); });
    std::string expected;
    for (int i = 0; i < 20; i++) expected += "Warning. Uninitialized array element in [a] has been set to 0.\n";
    EXPECT_EQ(text, expected + " ....etc...\n");
    EXPECT_TRUE(quoly_is_zero(element(a, 29)));
    uninit = 0;
}

TEST_F(arrays, the_system_array_adopts_what_is_owned_and_copies_what_is_borrowed) {
    array_record *a = filled("a", 2, 2, 1);
    matrix_value m;
    fetch_array(a, m);
    fill_syst_array(m);
    EXPECT_EQ(syst.rows, 2);
    EXPECT_EQ(syst.last, 3);
    EXPECT_NE(element(&syst, 3), element(a, 3));
    EXPECT_EQ(value_at(&syst, 3), 4);
    matrix_value n;
    n.make_dense(1, 1);
    quoly_set(7, &n.cell(0));
    quolynode *q = n.cell(0);
    fill_syst_array(n);
    EXPECT_EQ(element(&syst, 0), q);
    EXPECT_EQ(syst.last, 0);
    syst_dump = 0;
}

TEST_F(arrays, a_sparse_matrix_of_over_a_million_cells_does_not_become_dense) {
    refused(250, [] {
        matrix_value m;
        sparse_frame *head;
        sparse_init(&head, 1000001);
        m.make_sparse(head, 1000001, 1);
        m.to_dense();
    });
}

TEST_F(arrays, a_sparse_matrix_becomes_dense_with_its_zeros) {
    array_record *s = sparse_create(named("s"), 2, 3, false, true);
    quoly_handle five;
    quoly_set(5, five.slot());
    sparse_insert(2, 3, s, true, five.get());
    matrix_value m;
    fetch_array(s, m);
    m.to_dense();
    for (int i = 0; i < 6; i++) EXPECT_EQ(quoly_to_int(m.cell(i)), i == 5 ? 5 : 0);
}

} // namespace
