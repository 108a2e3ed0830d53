#include "numbers/number.h"

#include "numbers/int_mult.h"
#include "numbers/number_decimal.h"
#include "support/rand_numbers.h"

#include <limits>

using namespace tolvek;

struct number_values : numbers_test {};

TEST_F(number_values, setvalue_splits_at_2_to_the_28) {
    struct row {
        int32_t v;
        int len, head, tail;
    };
    for (row r :
         {row{0, 1, 0, 0}, row{-5, 1, -5, -5}, row{digit_mask, 1, digit_mask, digit_mask}, row{digit_radix, 2, 1, 0},
          row{-digit_radix, 2, -1, 0}, row{INT32_MAX, 2, 7, digit_mask}, row{-INT32_MAX, 2, -7, -digit_mask}}) {
        number_handle x;
        setvalue(r.v, &x);
        expect_whole(&x);
        EXPECT_EQ(x.num_len, r.len);
        EXPECT_EQ(x.num_head->digit, r.head);
        EXPECT_EQ(x.num_tail->digit, r.tail);
    }
}

TEST_F(number_values, setvalue_sets_the_form_in_force_alone) {
    number_handle x;
    setvalue(3, &x);
    lintmode = 1;
    setvalue(-7, &x);
    flotemode = 1;
    setvalue(9, &x);
    EXPECT_EQ(x.lint_val, -7);
    EXPECT_EQ(x.flote_val, 9.0L);
    EXPECT_TRUE(is_longint(&x, 3));
}

TEST_F(number_values, set_int64_reaches_every_value) {
    number_handle x;
    for (int64_t v : {std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max(), int64_t{0}, int64_t{-1},
                      int64_t{1} << 28, int64_t{1} << 56, -(int64_t{1} << 56), (int64_t{1} << 56) - 1}) {
        set_int64(v, &x);
        expect_whole(&x);
        python.expect("hex(" + std::to_string(v) + ")", hex_of(&x));
    }
}

TEST_F(number_values, a_number_may_be_assigned_to_itself) {
    number_handle x, y;
    for (int i = times(50); i > 0; i--) {
        rand_number(rnd, 20, &x);
        std::string text = hex_of(&x);
        num_assign(&x, &x);
        EXPECT_EQ(hex_of(&x), text);
        spec_num_assign(&x, &y);
        EXPECT_EQ(hex_of(&y), text);
        expect_whole(&x);
        expect_whole(&y);
    }
}

TEST_F(number_values, a_record_without_a_chain_is_copied_as_such) {
    number_handle none, x;
    set_int64(int64_t{1} << 40, &x);
    num_assign(&none, &x);
    EXPECT_EQ(x.num_len, 0);
    EXPECT_EQ(x.num_head, nullptr);
    EXPECT_EQ(x.num_tail, nullptr);
}

TEST_F(number_values, num_assign_copies_both_small_forms_while_floats_are_on) {
    number_handle x, y;
    x.lint_val = 4;
    x.flote_val = 2.5L;
    flotemode = lintmode = 1;
    num_assign(&x, &y);
    EXPECT_EQ(y.lint_val, 4);
    EXPECT_EQ(y.flote_val, 2.5L);
    EXPECT_EQ(y.num_len, 0);
}

TEST_F(number_values, a_part_of_a_chain_can_be_copied) {
    number_handle x, y;
    set_hex("0x123456789abcdef123456789", &x);
    fast_assign(x.num_head, 2, &y);
    EXPECT_EQ(y.num_len, 2);
    EXPECT_EQ(y.num_tail->digit, x.num_head->next->digit);
    expect_whole(&y);
    fast_num_assign(y.num_head, 1, &y);
    EXPECT_EQ(y.num_len, 1);
    EXPECT_EQ(y.num_head->digit, x.num_head->digit);
    expect_whole(&y);
}

TEST_F(number_values, faster_num_assign_makes_no_number_for_0) {
    number_handle x;
    number *made = &x;
    set_int64(0, &x);
    faster_num_assign(x.num_head, 1, &made);
    EXPECT_EQ(made, nullptr);
    set_int64(-(int64_t{1} << 30), &x);
    faster_num_assign(x.num_head, x.num_len, &made);
    EXPECT_TRUE(equal(made, &x));
    expect_whole(made);
    free_imag(&made);
    EXPECT_EQ(made, nullptr);
}

TEST_F(number_values, free_num_leaves_the_chain_alone_in_lintmode) {
    number x{};
    set_int64(5, &x);
    const long digits = count_records_in_use().digits;
    lintmode = 1;
    free_num(&x);
    EXPECT_EQ(count_records_in_use().digits, digits);
    lintmode = 0;
    free_num(&x);
    EXPECT_EQ(count_records_in_use().digits, digits - 1);
    EXPECT_EQ(x.num_len, 1);
    x.num_len = 0;
    free_num(&x); /* without a chain there is nothing to do */
    EXPECT_EQ(count_records_in_use().digits, digits - 1);
}

TEST_F(number_values, special_free_gives_back_in_every_ring) {
    number x{};
    set_int64(5, &x);
    lintmode = flotemode = 1;
    special_free(&x);
    EXPECT_EQ(x.num_len, 0);
    special_free(&x);
}

TEST_F(number_values, negation_negates_every_digit) {
    number_handle x, y;
    for (int i = times(50); i > 0; i--) {
        rand_number(rnd, 12, &x);
        makeneg(&x, &y);
        expect_whole(&y);
        EXPECT_TRUE(negtive(&x, &y));
        python.expect("hex(-(" + hex_of(&x) + "))", hex_of(&y));
        in_place_neg(&y);
        EXPECT_TRUE(equal(&x, &y));
        abs_val_num(&x, &y);
        python.expect("hex(abs(" + hex_of(&x) + "))", hex_of(&y));
        makeneg(&x, &x);
        expect_whole(&x);
    }
}

TEST_F(number_values, negation_in_the_small_rings) {
    number_handle x, y;
    lintmode = 1;
    x.lint_val = 5;
    makeneg(&x, &y);
    EXPECT_EQ(y.lint_val, -5);
    modularmode = 1;
    modulus = 7;
    makeneg(&x, &y);
    EXPECT_EQ(y.lint_val, 2);
    x.lint_val = 0;
    makeneg(&x, &y);
    EXPECT_EQ(y.lint_val, 0);
    in_place_neg(&y);
    EXPECT_EQ(y.lint_val, 0);
    finf = 1;
    x.lint_val = 6;
    makeneg(&x, &y);
    EXPECT_EQ(y.lint_val, 6);
    finf = modularmode = 0;
    flotemode = 1;
    x.flote_val = -0.5L;
    in_place_neg(&x);
    EXPECT_EQ(x.flote_val, 0.5L);
}

TEST_F(number_values, chain_rules_name_the_one_that_is_broken) {
    number_handle x;
    set_hex("0x10000000000001", &x); /* digits 16777216 and 1 */
    EXPECT_EQ(chain_rule_broken(&x), 0);
    number none{};
    EXPECT_EQ(chain_rule_broken(&none), 1);
    x.num_len = 3;
    EXPECT_EQ(chain_rule_broken(&x), 1);
    x.num_len = 2;
    std::swap(x.num_tail, x.num_head->next->next);
    x.num_tail = x.num_head;
    x.num_head->next->next = nullptr;
    EXPECT_EQ(chain_rule_broken(&x), 2);
    x.num_tail = x.num_head->next;
    x.num_head->digit = 0;
    EXPECT_EQ(chain_rule_broken(&x), 3);
    x.num_head->digit = digit_radix;
    EXPECT_EQ(chain_rule_broken(&x), 4);
    x.num_head->digit = -1;
    EXPECT_EQ(chain_rule_broken(&x), 5);
    x.num_head->digit = 1;
    EXPECT_EQ(chain_rule_broken(&x, 1), 4);
}

TEST_F(number_values, the_constants_hold_in_every_form) {
    struct row {
        number *x;
        int64_t v;
    };
    for (row r : {row{&number_0, 0}, row{&number_1, 1}, row{&number_2, 2}, row{&number_m1, -1}, row{&number_10, 10},
                  row{&num_2_14, 16384}, row{&rand_denom_n, 1}, row{&tens_base, 100000000},
                  row{&two_tensbase, 10000000000000000}}) {
        number_handle x;
        set_int64(r.v, &x);
        EXPECT_TRUE(equal(r.x, &x)) << r.v;
        EXPECT_EQ(r.x->flote_val, static_cast<long double>(r.v));
        if (r.v <= INT32_MAX) {
            EXPECT_EQ(r.x->lint_val, r.v);
        }
        expect_whole(r.x);
    }
    for (int i = 0; i < 32; i++) EXPECT_EQ(ones[i], static_cast<int32_t>((uint32_t{1} << i) - 1));
}

TEST_F(number_values, disp_cons_is_a_power_of_10_in_every_ring) {
    const int found = disp_size;
    for (int size : {0, 1, 5, 40}) {
        disp_size = size;
        flotemode = lintmode = 1;
        make_disp_cons();
        EXPECT_EQ(flotemode, 1);
        flotemode = lintmode = 0;
        expect_whole(&disp_cons);
        python.expect("hex(10**(8*" + std::to_string(size) + "))", hex_of(&disp_cons));
    }
    disp_size = found;
    make_disp_cons();
}

TEST_F(number_values, a_handle_gives_its_chain_to_a_destination) {
    number x{};
    set_int64(int64_t{1} << 50, &x);
    {
        number_handle h;
        set_int64(3, &h);
        h.release_to(&x);
        EXPECT_EQ(h.num_len, 0);
    }
    EXPECT_TRUE(is_longint(&x, 3));
    special_free(&x);
}
