#include "numbers/number.h"

#include "support/rand_numbers.h"

using namespace tolvek;

struct shifts : numbers_test {
    number_handle x;
    void check(const std::string &expression) {
        expect_whole(&x);
        python.expect("hex(" + expression + ")", hex_of(&x));
    }
};

TEST_F(shifts, agree_with_python) {
    for (int i = times(800); i > 0; i--) {
        rand_number(rnd, 20, &x, signs::not_negative);
        const std::string text = hex_of(&x);
        const int n = rnd.one_in(3) ? 28 * rnd.below(8) : rnd.below(200);
        shift_left(&x, n), check(text + "<<" + std::to_string(n));
        set_hex(text, &x);
        shift_right(&x, n), check(text + ">>" + std::to_string(n));
        set_hex(text, &x);
        shift_right_1(&x), check(text + ">>1");
        set_hex(text, &x);
        shift_right_2(&x), check(text + ">>2");
        set_hex(text, &x);
        const int bits = 1 + rnd.below(27);
        gen_shift_right(&x, bits), check(text + ">>" + std::to_string(bits));
        set_hex(text, &x);
        fillout(&x, n % 5), check(text + "<<" + std::to_string(28 * (n % 5)));
    }
}

TEST_F(shifts, back_and_forth_changes_nothing) {
    number_handle y;
    for (int n = 0; n < 120; n++) {
        rand_number(rnd, 10, &x, signs::not_negative);
        num_assign(&x, &y);
        shift_left(&y, n);
        shift_right(&y, n);
        expect_whole(&y);
        EXPECT_TRUE(equal(&x, &y));
    }
}

TEST_F(shifts, zero_stays_one_node) {
    set_int64(0, &x);
    fillout(&x, 3);
    EXPECT_TRUE(is_longint(&x, 0));
    EXPECT_EQ(x.num_len, 1);
    shift_left(&x, 100);
    EXPECT_TRUE(is_longint(&x, 0));
    shift_right(&x, 100);
    EXPECT_TRUE(is_longint(&x, 0));
    expect_whole(&x);
}

TEST_F(shifts, everything_can_be_shifted_out) {
    for (int n : {85, 112, 1000}) {
        set_hex("0xfffffffffffffffffffff", &x);
        shift_right(&x, n);
        EXPECT_TRUE(is_longint(&x, 0));
        expect_whole(&x);
    }
}
