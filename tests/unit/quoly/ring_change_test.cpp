#include "poly/ring_change.h"
#include "quoly/ring_change.h"

#include "numbers/modular.h"
#include "quoly/quoly.h"
#include "support/rand_poly.h"

namespace tolvek {

namespace {

struct ring_change : poly_test {
    test_random rnd;
};

/* p modulo n by the remainder of each coefficient, in the modular ring. */
flat_poly reduced(const flat_poly &terms, int32_t n) {
    flat_poly result;
    for (const auto &[exponents, c] : terms) {
        coef r;
        r.x.lint_val = static_cast<int32_t>(chain_modulo(&c.x, static_cast<uint32_t>(n)));
        if (r.x.lint_val) result.insert({exponents, r});
    }
    return result;
}

void enter(int32_t n) {
    lintmode = modularmode = 1;
    modulus = n;
}

} // namespace

TEST_F(ring_change, every_coefficient_becomes_its_residue_and_zeros_go) {
    for (int32_t n : {2, 3, 6, 65521, 65536 + 1, (1 << 28) + 3, 2147483629, 2147483644})
        for (int i = 0; i < 60; i++) {
            poly_handle p(rand_poly(rnd, rand_shape(rnd)));
            flat_poly terms = flat(p.get());
            ring_guard found;
            enter(n);
            poly_change_num(p.slot());
            expect_canonical(p.get());
            poly_handle expected(nested(reduced(terms, n)));
            EXPECT_TRUE(poly_equal(p.get(), expected.get())) << n << ": " << text_of(p.get());
        }
}

TEST_F(ring_change, small_integers_come_back_from_a_large_modulus) {
    for (int i = 0; i < 100; i++) {
        poly_shape shape = rand_shape(rnd);
        shape.digits = 1;
        poly_handle p(rand_poly(rnd, shape)), original;
        poly_assign(p.get(), original.slot());
        {
            ring_guard found;
            enter(2147483629);
            poly_change_num(p.slot());
        }
        poly_change_from_mod(p.get(), 2147483629, true);
        expect_canonical(p.get());
        EXPECT_TRUE(poly_equal(p.get(), original.get())) << text_of(original.get());
    }
}

TEST_F(ring_change, lifts_of_two_digits_have_the_sign_in_both) {
    struct row {
        int32_t residue;
        int64_t value;
    } rows[] = {{1 << 28, 1 << 28}, {1 << 30, (int64_t{1} << 30) - 2147483629}, {2147483629 - (1 << 29), -(1 << 29)}};
    for (const row &r : rows) {
        number_handle x, expected;
        x.lint_val = r.residue;
        change_from_mod(&x, 2147483629, true);
        set_int64(r.value, &expected);
        EXPECT_EQ(chain_rule_broken(&x), 0);
        EXPECT_TRUE(equal(&x, &expected)) << r.residue;
    }
}

TEST_F(ring_change, without_signs_a_lift_is_the_residue) {
    number_handle x;
    x.lint_val = 6;
    change_from_mod(&x, 7, false);
    EXPECT_TRUE(is_longint(&x, 6));
}

TEST_F(ring_change, rationals_become_quotients_of_residues) {
    for (int32_t n : {7, 65521, 2147483629})
        for (int i = 0; i < 100; i++) {
            int32_t a = rnd.below(2000001) - 1000000, b = rnd.below(1000000) + 1;
            if (b % n == 0) continue;
            quoly_handle top, below, q;
            quoly_set(a, top.slot());
            quoly_set(b, below.slot());
            quoly_quot(top.get(), below.get(), q.slot(), 0);
            ring_guard found;
            enter(n);
            quoly_change_num(q.slot());
            ASSERT_TRUE(q->is_num);
            int64_t product = int64_t{q->numb->lint_val} * (b % n) % n;
            EXPECT_EQ(product, ((a % n) + int64_t{n}) % n) << a << "/" << b << " modulo " << n;
        }
}

} // namespace tolvek
