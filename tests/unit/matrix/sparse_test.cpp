#include "matrix/matrix_value.h"
#include "matrix/sparse.h"
#include "support/fresh_system.h"
#include "support/rand_numbers.h"

#include <map>

using namespace tolvek;

namespace {

token_record named(const char *text) {
    token_record t;
    set_token(t, text);
    return t;
}

/* The plain model: entries other than 0 by row and column, from 1. */
using model = std::map<std::pair<int, int>, int>;

model entries_of(sparse_frame *head, int rows) {
    model m;
    row_walk walk(head);
    for (int r = 1; r <= rows; r++, walk.next()) {
        int before = 0;
        for (const colm *c = *walk; c; c = c->next) {
            EXPECT_LT(before, c->column);
            before = c->column;
            m[{r, c->column}] = quoly_to_int(c->value);
        }
    }
    return m;
}

struct sparse : fresh_exact_system {
    void SetUp() override {
        fresh_exact_system::SetUp();
        in_use = count_records_in_use();
    }
    void TearDown() override {
        forget_arrays();
        EXPECT_EQ(sparse_frames_in_use(), 0);
        EXPECT_TRUE(count_records_in_use() == in_use);
        fresh_exact_system::TearDown();
    }
    static array_record *made(int rows, int64_t cols) { return sparse_create(named("s"), rows, cols, false, true); }
    static quolynode *value(int v) {
        quolynode *q = nullptr;
        quoly_set(v, &q);
        return q;
    }
    static void put(array_record *a, int r, int c, int v) { sparse_store({r, c}, a, value(v)); }
    static array_record *random(test_random &rnd, int rows, int cols, model &m) {
        array_record *a = made(rows, cols);
        for (int i = 0; i < rows * cols / 3; i++) {
            int r = rnd.below(rows) + 1, c = rnd.below(cols) + 1, v = rnd.below(5) - 2;
            put(a, r, c, v);
            m[{r, c}] = v;
            if (v == 0) m.erase({r, c});
        }
        return a;
    }
    records_in_use in_use{};
};

TEST_F(sparse, storing_0_leaves_no_entry) {
    array_record *s = made(3, 4);
    put(s, 2, 2, 0);
    EXPECT_EQ(sparse_count(s->sparse_head, 3), 0);
    put(s, 2, 2, 5);
    put(s, 2, 2, 0);
    EXPECT_EQ(sparse_count(s->sparse_head, 3), 0);
}

TEST_F(sparse, an_entry_made_for_its_caller_is_purged_if_it_stayed_0) {
    array_record *s = made(3, 4);
    EXPECT_TRUE(quoly_is_zero(*sparse_set(1, 3, s, true)));
    purge_sparse(sparse_row(s->sparse_head, 1), 3);
    EXPECT_EQ(sparse_count(s->sparse_head, 3), 0);
    quoly_set(4, sparse_set(1, 3, s, true));
    purge_sparse(sparse_row(s->sparse_head, 1), 3);
    EXPECT_EQ(quoly_to_int(spar_retrieve(s->sparse_head, 1, 3)), 4);
}

TEST_F(sparse, a_linear_index_runs_down_the_columns) {
    array_record *s = made(3, 4);
    sparse_place at = place_of(3 * 2 + 1, 0, s, false);
    EXPECT_EQ(at.row, 2);
    EXPECT_EQ(at.column, 3);
}

TEST_F(sparse, a_scalar_fills_every_place) {
    array_record *s = made(3, 4);
    quoly_handle five;
    quoly_set(5, five.slot());
    sparse_set_scalar(s, five.get());
    EXPECT_EQ(sparse_count(s->sparse_head, 3), 12);
    sparse_set_scalar(s, quol_num_0);
    EXPECT_EQ(sparse_count(s->sparse_head, 3), 0);
}

TEST_F(sparse, entries_at_one_place_add_up_and_cancel) {
    array_record *s = made(2, 2);
    for (int v : {7, -3, -4}) {
        quoly_handle q;
        quoly_set(v, q.slot());
        sparse_adjoin(s->sparse_head, 1, 2, q);
    }
    EXPECT_EQ(sparse_count(s->sparse_head, 2), 0);
}

TEST_F(sparse, rows_beyond_2048_and_4096_lie_in_further_frames) {
    array_record *s = made(5000, 10);
    for (int r : {1, 2048, 2049, 4096, 4097, 5000}) put(s, r, 10, r);
    EXPECT_EQ(s->sparse_head->row[2047]->column, 10);
    EXPECT_EQ(quoly_to_int(s->sparse_head->frame_next->row[0]->value), 2049);
    EXPECT_EQ(quoly_to_int(s->sparse_head->frame_next->frame_next->row[0]->value), 4097);
    EXPECT_EQ(quoly_to_int(spar_retrieve(s->sparse_head, 5000, 10)), 5000);
    EXPECT_EQ(s->sparse_head->frame_next->frame_next->frame_next, nullptr);
}

TEST_F(sparse, machine_integers_are_set_or_added) {
    array_record *s = made(2, 2);
    isparse_insert(1, 1, 0, s, true, true);
    EXPECT_EQ(sparse_count(s->sparse_head, 2), 0);
    isparse_insert(1, 1, 5, s, true, false);
    isparse_insert(1, 1, 2, s, true, false);
    EXPECT_EQ(quoly_to_int(spar_retrieve(s->sparse_head, 1, 1)), 7);
    isparse_insert(1, 1, 3, s, true, true);
    EXPECT_EQ(quoly_to_int(spar_retrieve(s->sparse_head, 1, 1)), 3);
    isparse_insert(1, 1, -3, s, true, false);
    EXPECT_EQ(sparse_count(s->sparse_head, 2), 0);
    isparse_insert(1, 1, 3, s, true, true);
    isparse_insert(1, 1, 0, s, true, false);
    EXPECT_EQ(sparse_count(s->sparse_head, 2), 1);
    isparse_insert(1, 1, 0, s, true, true);
    EXPECT_EQ(sparse_count(s->sparse_head, 2), 0);
}

TEST_F(sparse, whole_matrices_agree_with_a_plain_model) {
    test_random rnd;
    for (int i = 0; i < times(60); i++) {
        int rows = rnd.below(9) + 1, cols = rnd.below(9) + 1;
        model m, transposed, negative, reversed;
        array_record *s = random(rnd, rows, cols, m);
        for (auto &[at, v] : m) {
            transposed[{at.second, at.first}] = v;
            negative[at] = -v;
            reversed[{rows + 1 - at.first, at.second}] = v;
        }
        EXPECT_EQ(entries_of(s->sparse_head, rows), m);
        {
            flipped_rows flipped(s->sparse_head, rows, cols);
            EXPECT_EQ(entries_of(flipped.get(), cols), transposed);
        }
        sparse_handle copy;
        copy.rows = rows;
        copy_sparse(s->sparse_head, copy.slot(), rows, true);
        EXPECT_EQ(entries_of(copy.get(), rows), negative);
        put_back_sparse(copy.get(), s->sparse_head, rows);
        EXPECT_EQ(entries_of(s->sparse_head, rows), negative);
        EXPECT_EQ(sparse_count(copy.get(), rows), 0);
        free_sparse(copy.slot(), rows);
        copy_sparse(s->sparse_head, copy.slot(), rows, true);
        reverse_rows(copy.get(), rows);
        EXPECT_EQ(entries_of(copy.get(), rows), reversed);
        reverse_rows(copy.get(), rows);
        trans_sparse(copy.slot(), rows, cols);
        copy.rows = cols;
        EXPECT_EQ(entries_of(copy.get(), cols), transposed);
        forget_arrays();
    }
}

TEST_F(sparse, an_ordinary_array_that_turns_sparse_gives_its_cells_back) {
    array_record *a = insertarr(named("a"), 2, 2, false), *b = insertarr(named("b"), 1, 1, true);
    quoly_set(3, &element(a, 0));
    quoly_set(0, &element(a, 1));
    quoly_set(4, &element(a, 3));
    quoly_set(9, &element(b, 0));
    fill_sparse(a);
    release_pending_arrays();
    EXPECT_EQ(entries_of(a->sparse_head, 2), (model{{{1, 1}, 3}, {{2, 2}, 4}}));
    EXPECT_EQ(a->last, -1);
    EXPECT_EQ(b->first, 0);
    EXPECT_EQ(quoly_to_int(element(b, 0)), 9);
}

TEST_F(sparse, a_parameter_of_an_array_that_turns_sparse_follows_it_with_error_342) {
    array_record *a = insertarr(named("a"), 2, 2, false), *p = new_parameter_array(named("p"), a);
    link_array(p);
    quoly_set(3, &element(a, 0));
    EXPECT_TRUE(unwinds([&] { fill_sparse(a); }));
    EXPECT_NE(last_text.find(message_text(342)), std::string::npos);
    EXPECT_EQ(p->sparse_head, a->sparse_head);
}

TEST_F(sparse, an_entry_that_is_deleted_while_it_is_held_stays_whole) {
    array_record *s = made(2, 2);
    put(s, 1, 1, 6);
    const colm *held = get_sparse_colm(s->sparse_head, 1, 1);
    borrowed_matrices = 1;
    put(s, 1, 1, 0);
    EXPECT_EQ(quoly_to_int(held->value), 6);
    borrowed_matrices = 0;
    release_pending_arrays();
}

TEST_F(sparse, the_identity_has_an_entry_in_each_row) {
    sparse_handle one;
    one.rows = 3000;
    spar_identi(one.slot(), 3000, quol_num_1);
    EXPECT_EQ(sparse_count(one.get(), 3000), 3000);
    EXPECT_EQ(quoly_to_int(spar_retrieve(one.get(), 2999, 2999)), 1);
}

} // namespace
