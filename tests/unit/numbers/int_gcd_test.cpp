#include "numbers/int_gcd.h"

#include "numbers/int_mult.h"
#include "numbers/number_work.h"
#include "quoly/quoly.h"
#include "support/rand_numbers.h"
#include "top/text_io.h"

#include <numeric>

using namespace tolvek;

using int_gcd = numbers_test;

namespace {

std::string gcd_text(const std::string &a, const std::string &b) {
    number_handle x, y, g;
    set_hex(a, &x);
    set_hex(b, &y);
    binary_gcd(&x, &y, &g);
    expect_whole(&g);
    return hex_of(&g);
}

std::string power_of_two_times(const std::string &hex, int bits) {
    number_handle x;
    set_hex(hex, &x);
    number_handle two_28;
    set_chain(1 << (bits % digit_bits), &two_28);
    fast_mult(&x, &two_28, &x);
    fillout(&x, bits / digit_bits);
    return hex_of(&x);
}

} // namespace

TEST_F(int_gcd, small_ones) {
    EXPECT_EQ(smallgcd(1, 1), 1u);
    EXPECT_EQ(smallgcd(12, 18), 6u);
    EXPECT_EQ(smallgcd(1u << 31, 1u << 20), 1u << 20);
    EXPECT_EQ(smallgcd(4294967295u, 65535u), 65535u); /* 2^32 - 1 and 2^16 - 1 */
    for (int i = 0; i < times(500); i++) {
        const uint32_t g = 1 + static_cast<uint32_t>(rnd.below(1000)),
                       a = g * (1 + static_cast<uint32_t>(rnd.below(4000000))),
                       b = g * (1 + static_cast<uint32_t>(rnd.below(4000)));
        EXPECT_EQ(smallgcd(a, b), std::gcd(a, b));
    }
}

TEST_F(int_gcd, with_zero_is_the_magnitude_of_the_other) {
    EXPECT_EQ(gcd_text("0x0", "-0x123456789abcdef"), "0x123456789abcdef");
    EXPECT_EQ(gcd_text("-0x7", "0x0"), "0x7");
    EXPECT_EQ(gcd_text("0x0", "0x0"), "0x0");
    number_handle a, b, g;
    set_hex("0x0", &a);
    set_hex("-0x5000000000", &b);
    gcd(&a, &b, &g);
    EXPECT_EQ(hex_of(&g), "0x5000000000");
    gcd(&a, &a, &g);
    EXPECT_EQ(hex_of(&g), "0x0");
}

TEST_F(int_gcd, shared_powers_of_two_and_zero_digits) {
    EXPECT_EQ(gcd_text(power_of_two_times("0x3", 30), power_of_two_times("0x5", 30)), "0x40000000"); /* 2^30 */
    EXPECT_EQ(gcd_text(power_of_two_times("-0x9", 84), power_of_two_times("0xf", 112)), power_of_two_times("0x3", 84));
    EXPECT_EQ(gcd_text(power_of_two_times("0x1", 280), "0x10000000"), "0x10000000");
}

TEST_F(int_gcd, operands_come_back_digit_for_digit_and_two_methods_agree) {
    for (int i = 0; i < times(200); i++) {
        number_handle a, b, f, g, h;
        rand_number(rnd, 30, &a);
        rand_number(rnd, 30, &b);
        rand_number(rnd, 10, &f);
        fast_mult(&a, &f, &a);
        fast_mult(&b, &f, &b);
        const std::string text_a = hex_of(&a), text_b = hex_of(&b);
        const numnode *head_a = a.num_head, *tail_b = b.num_tail;
        binary_gcd(&a, &b, &g);
        gcd(&a, &b, &h);
        EXPECT_EQ(hex_of(&g), hex_of(&h));
        python.expect("hex(math.gcd(" + text_a + "," + text_b + "))", hex_of(&g));
        EXPECT_EQ(hex_of(&a), text_a);
        EXPECT_EQ(hex_of(&b), text_b);
        EXPECT_EQ(a.num_head, head_a);
        EXPECT_EQ(b.num_tail, tail_b);
        expect_whole(&g);
        binary_gcd(&a, &b, &a);
        EXPECT_EQ(hex_of(&a), hex_of(&g)) << "in place of the first operand";
    }
}

TEST_F(int_gcd, cofactors_times_the_divisor_are_the_operands_and_coprime) {
    for (int i = 0; i < times(250); i++) {
        number_handle a, b, f, g, ca, cb, back, one;
        rand_number(rnd, 40, &a);
        rand_number(rnd, 40, &b);
        rand_number(rnd, 12, &f);
        if (rnd.one_in(3)) {
            fast_mult(&a, &f, &a);
            fast_mult(&b, &f, &b);
        }
        const std::string text_a = hex_of(&a), text_b = hex_of(&b);
        int coprime = -1;
        extgcd(&a, &b, &g, &ca, &cb, &coprime);
        EXPECT_EQ(hex_of(&a), text_a);
        EXPECT_EQ(hex_of(&b), text_b);
        EXPECT_EQ(coprime, is_longint(&g, 1));
        for (number *x : {static_cast<number *>(&g), static_cast<number *>(&ca), static_cast<number *>(&cb)})
            expect_whole(x);
        multiply(&g, &ca, &back);
        EXPECT_EQ(hex_of(&back), text_a);
        multiply(&g, &cb, &back);
        EXPECT_EQ(hex_of(&back), text_b);
        binary_gcd(&ca, &cb, &one);
        EXPECT_EQ(hex_of(&one), text_a == "0x0" && text_b == "0x0" ? "0x0" : "0x1");
        number_handle u, v;
        extgcd(&a, &b, &u, &a, &b, &coprime); /* over the operands */
        EXPECT_EQ(hex_of(&a), hex_of(&ca));
        EXPECT_EQ(hex_of(&b), hex_of(&cb));
    }
}

TEST_F(int_gcd, cofactors_with_zero) {
    number_handle zero, b, g, ca, cb;
    int coprime;
    set_hex("0x0", &zero);
    set_hex("-0x600000000", &b);
    extgcd(&zero, &b, &g, &ca, &cb, &coprime);
    EXPECT_EQ(hex_of(&g), "0x600000000");
    EXPECT_EQ(hex_of(&ca), "0x0");
    EXPECT_EQ(hex_of(&cb), "-0x1");
    EXPECT_FALSE(coprime);
    extgcd(&number_1, &zero, &g, &ca, &cb, &coprime);
    EXPECT_EQ(hex_of(&g) + hex_of(&ca) + hex_of(&cb), "0x10x10x0");
    EXPECT_TRUE(coprime);
    extgcd(&zero, &zero, &g, &ca, &cb, &coprime);
    EXPECT_EQ(hex_of(&g) + hex_of(&ca) + hex_of(&cb), "0x00x00x0");
}

TEST_F(int_gcd, very_unequal_and_long_operands) {
    for (const int len : {500, 5000, 20000}) {
        number_handle a, b, f, g;
        rand_number_of_length(rnd, len, &a);
        rand_number_of_length(rnd, 3, &b);
        rand_number_of_length(rnd, 1 + rnd.below(len / 4), &f);
        fast_mult(&a, &f, &a);
        fast_mult(&b, &f, &b);
        binary_gcd(&a, &b, &g);
        python.expect("hex(math.gcd(" + hex_of(&a) + "," + hex_of(&b) + "))", hex_of(&g));
    }
}

/* ---- quolys and contents ---- */

namespace {

polynode *number_term(const std::string &hex, polynode *next = nullptr) {
    polynode *p = newpoly();
    *p = {0, 1, next, {nullptr}};
    p->num = newimag();
    set_hex(hex, p->num);
    return p;
}

polynode *term(int32_t expo, polynode *coefficient, polynode *next = nullptr) {
    polynode *p = newpoly();
    *p = {expo, 0, next, {nullptr}};
    p->poly = coefficient;
    return p;
}

std::string content_of(polynode *p) {
    number_handle g;
    find_gcdcoefs(p, &g);
    polynode *q = nullptr;
    gcd_coefs(p, &q);
    EXPECT_TRUE(q->is_number && q->expo == 0 && !q->next);
    EXPECT_EQ(hex_of(q->num), hex_of(&g));
    free_poly(&q);
    free_poly(&p);
    return hex_of(&g);
}

quolynode *quoly_of(const std::string &hex) {
    quolynode *q = newquoly();
    init_quoly_node(q);
    set_hex(hex, q->numb);
    return q;
}

std::string text_written;
ssize_t keep_text(int, const char *from, std::size_t count) {
    text_written.append(from, count);
    return static_cast<ssize_t>(count);
}

} // namespace

TEST_F(int_gcd, content_of_polynomials) {
    EXPECT_EQ(content_of(number_term("-0x6")), "0x6");
    /* 12 x^2 - 18 x + 30 */
    EXPECT_EQ(content_of(term(2, number_term("0xc"), term(1, number_term("-0x12"), number_term("0x1e")))), "0x6");
    /* (10 y + 15) x^3 + 25 */
    EXPECT_EQ(content_of(term(3, term(1, number_term("0xa"), number_term("0xf")), number_term("0x19"))), "0x5");
    /* coprime numbers: 4 x + 9 */
    EXPECT_EQ(content_of(term(1, number_term("0x4"), number_term("0x9"))), "0x1");
    EXPECT_EQ(content_of(term(1, number_term("0x50000000000000000000"), number_term("0x30000000000000000"))),
              "0x10000000000000000");
}

TEST_F(int_gcd, zero_has_no_content) {
    const io_hooks found = io;
    flush(&standard_output);
    text_written.clear();
    io.write_some = keep_text;
    polynode *zero = number_term("0x0");
    number_handle g;
    find_gcdcoefs(zero, &g);
    flush(&standard_output);
    io = found;
    free_poly(&zero);
    EXPECT_EQ(hex_of(&g), "0x1");
    EXPECT_NE(text_written.find("*** Tolvek error. 0 in find gcd coefs.\n"), std::string::npos) << text_written;
}

TEST_F(int_gcd, content_is_1_in_word_rings) {
    polynode *p = term(1, number_term("0x4"), number_term("0x6")), *q = nullptr;
    lintmode = 1;
    gcd_coefs(p, &q);
    EXPECT_EQ(q->num->lint_val, 1);
    flotemode = 1;
    gcd_coefs(p, &q);
    EXPECT_EQ(q->num->flote_val, 1);
    flotemode = lintmode = 0;
    free_poly(&q);
    free_poly(&p);
}

TEST_F(int_gcd, of_number_quolys) {
    quolynode *a = quoly_of("-0x24"), *b = quoly_of("0x30");
    gcdnum(&a, &b);
    EXPECT_EQ(hex_of(a->numb), "0xc");
    EXPECT_EQ(hex_of(b->numb), "0x30");
    set_hex("0x0", a->numb);
    set_hex("-0x30", b->numb);
    const number *record = b->numb;
    gcdnum(&a, &b);
    EXPECT_EQ(hex_of(a->numb), "0x30");
    EXPECT_EQ(a->numb, record);
    EXPECT_EQ(hex_of(b->numb), "0x0");
    gcdnum(&a, &b);
    EXPECT_EQ(hex_of(a->numb), "0x30");
    lintmode = 1;
    gcdnum(&a, &b);
    EXPECT_EQ(a->numb->lint_val, 1);
    lintmode = 0;
    free_quoly(&a);
    free_quoly(&b);
}
