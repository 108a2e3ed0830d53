#include "numbers/rationals.h"

#include "numbers/int_gcd.h"
#include "numbers/int_mult.h"
#include "quoly/quoly.h"
#include "support/rand_numbers.h"

using namespace tolvek;

using rationals = numbers_test;

namespace {

quolynode *number_quoly(const number *x) {
    quolynode *q = newquoly();
    init_quoly_node(q);
    spec_num_assign(x, q->numb);
    return q;
}

polynode *lone(const number *x) {
    polynode *p = newpoly();
    *p = {0, 1, nullptr, {nullptr}};
    p->num = newimag();
    spec_num_assign(x, p->num);
    return p;
}

/* num / den, which are coprime with den above 1. */
quolynode *fraction(const number *num, const number *den) {
    quolynode *q = newquoly();
    *q = {};
    q->is_rat = 1;
    q->num = lone(num);
    q->den = lone(den);
    return q;
}

quolynode *fraction(int32_t num, int32_t den) {
    number_handle n, d;
    setvalue(num, &n);
    setvalue(den, &d);
    return fraction(&n, &d);
}

quolynode *whole(int32_t v) {
    number_handle n;
    setvalue(v, &n);
    return number_quoly(&n);
}

/* A random fraction in lowest terms; its denominator is above 1. */
quolynode *rand_fraction(test_random &rnd, int len) {
    for (;;) {
        number_handle n, d, g;
        int coprime;
        rand_number(rnd, len, &n);
        rand_number(rnd, len, &d, signs::positive);
        if (is_longint(&n, 0)) continue;
        extgcd(&n, &d, &g, &n, &d, &coprime);
        if (!is_longint(&d, 1)) return fraction(&n, &d);
    }
}

/* "n" or "n/d" in hexadecimal, after a look at the form. */
std::string text(const quolynode *q) {
    if (q->is_num) {
        EXPECT_EQ(chain_rule_broken(q->numb), 0);
        EXPECT_EQ(q->is_rat, 0);
        return hex_of(q->numb);
    }
    const number *n = q->num->num, *d = q->den->num;
    EXPECT_EQ(q->is_rat, 1);
    EXPECT_EQ(chain_rule_broken(n), 0);
    EXPECT_EQ(chain_rule_broken(d), 0);
    EXPECT_GT(d->num_head->digit, 0);
    EXPECT_FALSE(is_longint(d, 1));
    number_handle g;
    gcd(n, d, &g);
    EXPECT_TRUE(is_longint(&g, 1)) << "not in lowest terms";
    return hex_of(n) + "/" + hex_of(d);
}

std::string python_form(const std::string &expression) {
    return "(lambda f: hex(f.numerator) + ('/' + hex(f.denominator) if f.denominator > 1 else ''))(" + expression + ")";
}

std::string python_value(const quolynode *q) {
    if (q->is_num) return "__import__('fractions').Fraction(" + hex_of(q->numb) + ")";
    return "__import__('fractions').Fraction(" + hex_of(q->num->num) + "," + hex_of(q->den->num) + ")";
}

struct pair {
    quoly_handle a, b, r;
    pair(quolynode *x, quolynode *y) {
        *a.slot() = x;
        *b.slot() = y;
    }
    std::string sum(int add = 1) {
        add_rats(a.get(), b.get(), r.slot(), add);
        return text(r.get());
    }
};

} // namespace

TEST_F(rationals, sums_that_become_whole_or_smaller) {
    EXPECT_EQ(pair(fraction(1, 2), fraction(1, 2)).sum(), "0x1");
    EXPECT_EQ(pair(fraction(1, 6), fraction(1, 3)).sum(), "0x1/0x2");
    EXPECT_EQ(pair(fraction(1, 2), fraction(1, 2)).sum(0), "0x0");
    EXPECT_EQ(pair(fraction(-1, 6), fraction(1, 6)).sum(), "0x0");
    EXPECT_EQ(pair(fraction(1, 2), fraction(1, 3)).sum(), "0x5/0x6");
    EXPECT_EQ(pair(fraction(1, 2), fraction(5, 2)).sum(0), "-0x2");
    EXPECT_EQ(pair(fraction(3, 4), fraction(1, 4)).sum(0), "0x1/0x2");
}

TEST_F(rationals, products_and_quotients_that_become_whole) {
    pair p(fraction(2, 3), fraction(3, 2));
    mult_rats(p.a.get(), p.b.get(), p.r.slot());
    EXPECT_EQ(text(p.r.get()), "0x1");
    quot_rats(p.a.get(), p.b.get(), p.r.slot());
    EXPECT_EQ(text(p.r.get()), "0x4/0x9");
    quot_rats(p.a.get(), p.a.get(), p.r.slot());
    EXPECT_EQ(text(p.r.get()), "0x1");
    pair s(fraction(-2, 3), fraction(-4, 3));
    quot_rats(s.a.get(), s.b.get(), s.r.slot());
    EXPECT_EQ(text(s.r.get()), "0x1/0x2");
    EXPECT_EQ(text(s.b.get()), "-0x4/0x3");
}

TEST_F(rationals, with_a_whole_number) {
    pair p(whole(-6), fraction(5, 6));
    mult_numb_rat(p.a.get(), p.b.get(), p.r.slot());
    EXPECT_EQ(text(p.r.get()), "-0x5");
    add_numb_rat(p.a.get(), p.b.get(), p.r.slot(), 1);
    EXPECT_EQ(text(p.r.get()), "-0x1f/0x6");
    add_numb_rat(p.a.get(), p.b.get(), p.r.slot(), 0);
    EXPECT_EQ(text(p.r.get()), "-0x29/0x6");
    quot_rat_numb(p.b.get(), p.a.get(), p.r.slot());
    EXPECT_EQ(text(p.r.get()), "-0x5/0x24");
    quoly_set(0, p.a.slot());
    mult_numb_rat(p.a.get(), p.b.get(), p.r.slot());
    EXPECT_EQ(text(p.r.get()), "0x0");
}

TEST_F(rationals, arithmetic_agrees_with_python) {
    for (int i = 0; i < times(60); i++) {
        pair p(rand_fraction(rnd, 12), rand_fraction(rnd, 12));
        quoly_handle n;
        number_handle x;
        do rand_number(rnd, 12, &x);
        while (is_longint(&x, 0));
        *n.slot() = number_quoly(&x);
        const quolynode *a = p.a.get(), *b = p.b.get(), *whole_number = n.get();
        const std::string va = python_value(a), vb = python_value(b), vn = python_value(whole_number);
        const auto expect = [&](const std::string &expression) {
            python.expect(python_form(expression), text(p.r.get()));
        };
        add_rats(a, b, p.r.slot(), 1);
        expect(va + "+" + vb);
        add_rats(a, b, p.r.slot(), 0);
        expect(va + "-" + vb);
        mult_rats(a, b, p.r.slot());
        expect(va + "*" + vb);
        mult_rats(a, a, p.r.slot());
        expect(va + "*" + va);
        quot_rats(a, b, p.r.slot());
        expect(va + "/" + vb);
        mult_numb_rat(whole_number, b, p.r.slot());
        expect(vn + "*" + vb);
        quot_rat_numb(a, whole_number, p.r.slot());
        expect(va + "/" + vn);
        add_numb_rat(whole_number, b, p.r.slot(), 1);
        expect(vn + "+" + vb);
        add_numb_rat(whole_number, b, p.r.slot(), 0);
        expect(vn + "-" + vb);
        EXPECT_EQ(python_value(a), va);
        EXPECT_EQ(python_value(b), vb);
        EXPECT_EQ(python_value(whole_number), vn);
    }
}

TEST_F(rationals, result_in_place_of_an_operand) {
    for (int i = 0; i < times(40); i++) {
        pair p(rand_fraction(rnd, 8), rand_fraction(rnd, 8));
        add_rats(p.a.get(), p.b.get(), p.r.slot(), 1);
        const std::string sum = text(p.r.get());
        mult_rats(p.a.get(), p.b.get(), p.r.slot());
        const std::string product = text(p.r.get());
        quoly_handle a, b;
        quoly_assign(p.a.get(), a.slot());
        quoly_assign(p.b.get(), b.slot());
        add_rats(a.get(), b.get(), a.slot(), 1);
        EXPECT_EQ(text(a.get()), sum);
        mult_rats(p.a.get(), b.get(), b.slot());
        EXPECT_EQ(text(b.get()), product);
        add_rats(p.a.get(), p.a.get(), p.a.slot(), 0);
        EXPECT_EQ(text(p.a.get()), "0x0");
    }
}

/* n / d + (b - n) / b with b a multiple of d: sums whose numerator shares a part of the common divisor. */
TEST_F(rationals, sums_over_denominators_with_common_parts) {
    for (int i = 0; i < times(60); i++) {
        const int32_t g = 2 + rnd.below(30), b1 = g * (1 + rnd.below(20)), b2 = g * (1 + rnd.below(20));
        int32_t a1 = 1 + rnd.below(500), a2 = 1 + rnd.below(500);
        const int32_t g1 = static_cast<int32_t>(smallgcd(uint32_t(a1), uint32_t(b1))),
                      g2 = static_cast<int32_t>(smallgcd(uint32_t(a2), uint32_t(b2)));
        if (b1 == g1 || b2 == g2) continue;
        pair p(fraction(a1 / g1, b1 / g1), fraction(a2 / g2, b2 / g2));
        const std::string expression = python_value(p.a.get()) + "+" + python_value(p.b.get());
        python.expect(python_form(expression), p.sum());
    }
}
