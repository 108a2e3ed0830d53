/* Polynomials read term by term. */
#include "language/poly_reader.h"

#include "display/show_poly.h"
#include "display/show_quoly.h"
#include "language/scanner.h"
#include "numbers/number_decimal.h"
#include "quoly/quoly.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/interrupts.h"
#include "top/settings.h"

#include <cstdlib>
#include <unistd.h>

namespace tolvek {

/* ---- what is written reads back ---- */

struct poly_reader : poly_test {};

/* Text on its way from the display to the reader. */
struct round_trip {
    int fd;
    round_trip() {
        char name[] = "/tmp/tolvek_XXXXXX";
        fd = mkstemp(name);
        unlink(name);
    }
    ~round_trip() { close(fd); }

    void write(const quolynode *q) {
        text_out out(fd);
        int column = 0;
        quoly_display(&out, q, &column, {.after_value = 1, .terminator = ";"});
        flush(&out);
        lseek(fd, 0, SEEK_SET);
    }
    void read(quolynode **q) {
        kept_value<int> terminal(tt_flag, 0);
        text_in in(fd);
        stream s = &in;
        leftover = 0;
        scanner(&s, token, &zilch);
        quoly_readin(&s, q, &zilch);
        recent_tokens.clear();
    }
};

static void expect_same_value(const quolynode *q) {
    round_trip file;
    quoly_handle back;
    file.write(q);
    file.read(back.slot());
    EXPECT_TRUE(token_is(token, ";")) << token.text;
    EXPECT_EQ(text_of(back.get()), text_of(q));
    EXPECT_EQ(quoly_rule_broken(back.get()), 0);
}

static void expect_polynomials_back(test_random &rnd, bool with_laurent) {
    kept_value<int> margin(dispcutoff), exponents(laurent, with_laurent);
    for (const std::string &ring : test_rings) {
        if (ring == "word") continue; /* a figure above 2^31 wraps */
        test_ring in_ring(ring);
        for (int i = 0; i < times(150); i++) {
            SCOPED_TRACE(ring + " " + std::to_string(i));
            dispcutoff = i % 3 == 0 ? 20 : 76;
            poly_handle p(rand_poly(rnd, rand_shape(rnd, with_laurent)));
            quoly_handle q;
            poly_to_value(p, q.slot());
            expect_same_value(q.get());
            if (::testing::Test::HasFailure()) return;
        }
    }
}

TEST_F(poly_reader, polynomials_of_every_ring_read_back) { expect_polynomials_back(rnd, false); }

TEST_F(poly_reader, polynomials_with_negative_exponents_read_back) { expect_polynomials_back(rnd, true); }

TEST_F(poly_reader, quotients_read_back) {
    for (const char *ring : {"chain", "101", "float"}) {
        test_ring in_ring(ring);
        for (int i = 0; i < times(60); i++) {
            SCOPED_TRACE(std::string(ring) + " " + std::to_string(i));
            poly_handle num(rand_nonzero_poly(rnd, {.variables = 2, .terms = 3, .degree = 3, .digits = 2}));
            poly_handle den(rand_nonzero_poly(rnd, {.variables = 2, .terms = 3, .degree = 3, .digits = 2}));
            quoly_handle q;
            fraction_to_value(num, den, q.slot());
            expect_same_value(q.get());
        }
    }
}

static long safe_points_met;

/* Sums and products pass safe points at each of their terms: a list that is linked passes a few for each term of its own,
   whatever its length. */
TEST_F(poly_reader, the_work_is_in_proportion_to_the_text) {
    poly_handle p;
    for (int i = 1; i <= 20000; i++) {
        polynode *t = nullptr, *c = nullptr;
        poly_set(i, &c);
        make_monomial(&t, i, c);
        t->next = p.release();
        *p.slot() = t;
    }
    quoly_handle q;
    poly_to_value(p, q.slot());
    round_trip file;
    file.write(q.get());
    quoly_handle back;
    safe_points_met = 0;
    watch_safe_points([] { safe_points_met++; });
    file.read(back.slot());
    watch_safe_points(nullptr);
    EXPECT_TRUE(poly_equal(back->num, q->num));
    EXPECT_LT(safe_points_met, 4 * 20000);
}

/* ---- at the prompt ---- */

struct poly_reader_at_prompt : fresh_exact_system {
    void SetUp() override {
        fresh_exact_system::SetUp();
        run("&(J = x)\n&(J = y)\n&(J = z)");
    }
    std::string read(const std::string &text) { return value_of("&_n " + text); }
    /* The number-th message, which the statement ends in. */
    bool fails(const std::string &text, int number) {
        const std::string written = run("&_n " + text);
        return written.find(message_text(number)) != std::string::npos && value_of("1 + 1") == "2";
    }
};

TEST_F(poly_reader_at_prompt, terms_are_read_in_their_order) {
    EXPECT_EQ(read("2x^2 + 3x + 1"), "2x^2 + 3x + 1");
    EXPECT_EQ(read("-x^3 - x"), "-x^3 - x");
    EXPECT_EQ(read("x^2 + y^3 + y + z + 4"), "x^2 + y^3 + y + z + 4");
    EXPECT_EQ(read("(y + 1)x^2 - (z^2)y^2 - 7"), "(y + 1)x^2 + (-z^2)y^2 - 7");
    EXPECT_EQ(read("z"), "z");
    EXPECT_EQ(read("(((y)))x"), "(y)x");
}

TEST_F(poly_reader_at_prompt, signs_may_stand_one_behind_the_other) {
    EXPECT_EQ(read("- - x"), "x");
    EXPECT_EQ(read("x - -y"), "x + y");
    EXPECT_EQ(read("x + -(y + 1)"), "x - y - 1");
}

TEST_F(poly_reader_at_prompt, numbers_behind_each_other_are_added) {
    EXPECT_EQ(read("3 + 4"), "7");
    EXPECT_EQ(read("2x + 3 + 4"), "2x + 7");
    EXPECT_EQ(read("x + (y + 1) + 5"), "x + y + 6");
}

TEST_F(poly_reader_at_prompt, a_whole_in_parentheses_may_be_a_coefficient) {
    EXPECT_EQ(read("( x + 1 )"), "x + 1");
    EXPECT_EQ(read("(y + 1)x + 2"), "(y + 1)x + 2");
    EXPECT_EQ(read("(2)x"), "2x");
}

TEST_F(poly_reader_at_prompt, quotients_are_reduced) {
    EXPECT_EQ(read("x / (y + 1)"), "x / ( y + 1 )");
    EXPECT_EQ(read("(2x + 2) / (4y + 4)"), "( x + 1 ) / ( 2y + 2 )");
    EXPECT_EQ(read("(x^2 - 1) / (x - 1)"), "x + 1");
    EXPECT_EQ(read("6 / 4").substr(0, 5), "3 / 2");
    EXPECT_EQ(read("5"), "5");
}

TEST_F(poly_reader_at_prompt, a_leading_0_is_the_whole_polynomial) {
    EXPECT_EQ(read("0"), "0");
    EXPECT_EQ(read("(0)"), "0");
    EXPECT_EQ(read("-0"), "0");
    EXPECT_TRUE(fails("0x", 129));
}

TEST_F(poly_reader_at_prompt, the_value_is_a_factor_like_others) {
    EXPECT_EQ(value_of("2 + &_n (x + 1)"), "x + 3");
    EXPECT_EQ(value_of("0 + &_n (x + 1) - x"), "1");
    EXPECT_EQ(value_of("1*&_n (x + 1)*(x - 1)"), "x^2 - 1");
    run("Func F(n) = n*&_n (3x^2 - 5).");
    EXPECT_EQ(value_of("F(2)"), "6x^2 - 10");
}

TEST_F(poly_reader_at_prompt, what_is_refused) {
    EXPECT_TRUE(fails("(x + 1", 1));
    EXPECT_TRUE(fails("x + (y + 1", 1));
    EXPECT_TRUE(fails("(x)/0", 22));
    EXPECT_TRUE(fails("x + x^2", 159));
    EXPECT_TRUE(fails("x + x", 159));
    EXPECT_TRUE(fails("y + x", 159));
    EXPECT_TRUE(fails("x + 1 + y", 159));
    EXPECT_TRUE(fails("1 + x", 159));
    EXPECT_TRUE(fails("(x)y", 159));
    EXPECT_TRUE(fails("(x + 1)x", 159));
    EXPECT_TRUE(fails("xx", 160));
    EXPECT_TRUE(fails("2a", 160));
    EXPECT_TRUE(fails("x + ", 161));
    EXPECT_TRUE(fails("", 161));
    EXPECT_TRUE(fails("-", 161));
    EXPECT_TRUE(fails("x^y", 162));
    EXPECT_TRUE(fails("x^", 162));
    EXPECT_TRUE(fails("x^3000000000", 162));
    EXPECT_TRUE(fails("x + 0", 163));
    EXPECT_TRUE(fails("x + 0y", 163));
    EXPECT_TRUE(fails("3 - 3", 163));
    EXPECT_TRUE(fails("(0)x", 163));
    EXPECT_TRUE(fails("0 / 5", 164));
    EXPECT_TRUE(fails("x^-1", 165));
    EXPECT_TRUE(fails("x^0", 204));
    EXPECT_TRUE(fails("X", 161));
    EXPECT_TRUE(fails("(x + 1) + 3", 129)) << "the statement ends behind the parenthesis";
}

TEST_F(poly_reader_at_prompt, errors_that_are_resumed_give_0_and_a_division_by_0_gives_1) {
    EXPECT_NE(run("&(e = 1)\n&_P\nq := &_n x + x\n&_p\nr := &_n (x)/0\n&_p").find("Resuming"), std::string::npos);
    EXPECT_EQ(value_of("q"), "0");
    EXPECT_EQ(value_of("r"), "1");
}

TEST_F(poly_reader_at_prompt, negative_exponents_stand_behind_the_others) {
    kept_value<int> on(laurent, 1);
    EXPECT_EQ(read("x + 1 + x^-1"), "x + 1 + x^-1");
    EXPECT_EQ(read("x + y + 1 + y^-2 + x^-3"), "x + y + 1 + y^-2 + x^-3");
    EXPECT_EQ(read("1 + y^-1"), "1 + y^-1");
    EXPECT_EQ(read("x + 1 + z^-1 + y^-1 + x^-1"), "x + 1 + z^-1 + y^-1 + x^-1");
    EXPECT_TRUE(fails("x^-1 + 1", 159));
    EXPECT_TRUE(fails("x^-1 + x", 159));
    EXPECT_TRUE(fails("x^-1 + y", 159));
    EXPECT_TRUE(fails("x^-", 162));
    EXPECT_TRUE(fails("x^-0", 204));
}

TEST_F(poly_reader_at_prompt, residues) {
    run("&(p = 7)");
    EXPECT_EQ(read("8x + 15"), "x + 1");
    EXPECT_EQ(read("-x + 100000000000000000000000"), "-x - 2") << "10^23 mod 7 = 5 by Python";
    EXPECT_TRUE(fails("x + 7", 163));
    EXPECT_EQ(read("7"), "0");
}

/* 2^32 + 5 is 5 in 32 bits. */
TEST_F(poly_reader_at_prompt, residues_read_as_integers_of_32_bits) {
    run("&(p = 7)\n&n");
    const std::string text = run("&_n 4294967301x + 3");
    EXPECT_NE(text.find("overflow while reading constant"), std::string::npos);
    EXPECT_NE(text.find("-2x + 3"), std::string::npos);
    EXPECT_NE(run("&_n 12x - 3").find("-2x - 3"), std::string::npos);
}

TEST_F(fresh_system, coefficients_of_floats_have_decimals_and_exponents) {
    run("&(J = x)");
    EXPECT_EQ(value_of("&_n 0.5x^2 + 1.5e+3x - 2e-1"), "0.5x^2 + 1500x - 0.2");
    EXPECT_EQ(value_of("&_n .25x"), "0.25x");
    EXPECT_EQ(value_of("&_n 0.0"), "0");
    EXPECT_EQ(value_of("&_n 0.5"), "0.5");
}

} // namespace tolvek
