#include "poly/power_modulo.h"

#include "poly/divide.h"
#include "poly/mult.h"
#include "support/rand_poly.h"

namespace tolvek {

namespace {

using power_modulo_test = poly_test;

/* *p := a^e | m, whatever the ring is. */
void power_of(const polynode *a, int32_t e, const polynode *m, polynode **p) {
    numnode digit{e, nullptr};
    number exponent{};
    exponent.num_head = exponent.num_tail = &digit;
    exponent.num_len = 1;
    poly_power_modulo(a, &exponent, m, p);
}

} // namespace

TEST_F(power_modulo_test, a_power_is_a_repeated_product) {
    for (const std::string name : {"chain", "7", "2147483629"})
        for (int i = times(40); i > 0; i--) {
            test_ring ring(name);
            const poly_shape shape{1 + rnd.below(2), 3, 4, 1, false};
            poly_handle a(rand_poly(rnd, shape)), m(rand_nonzero_poly(rnd, shape)), p, expected(poly_of("1"));
            flat_poly monic = flat(m.get());
            monic[{5}] = coef(1);
            free_poly(m.slot());
            *m.slot() = nested(monic);
            const int e = rnd.below(8);
            for (int k = 0; k < e; k++) {
                poly_mult(expected.get(), a.get(), expected.slot(), nullptr);
                poly_mod_or_div(expected.get(), m.get(), expected.slot(), '|', polynames);
            }
            power_of(a.get(), e, m.get(), p.slot());
            expect_canonical(p.get());
            EXPECT_TRUE(poly_equal(p.get(), expected.get())) << name << ", " << e << "\n"
                                                             << text_of(a.get()) << "\n"
                                                             << text_of(m.get());
        }
}

TEST_F(power_modulo_test, modulo_an_integer_every_number_is_reduced) {
    poly_handle a(poly_of("x + y")), m(poly_of("5")), p;
    power_of(a.get(), 5, m.get(), p.slot());
    EXPECT_EQ(text_of(p.get()), "x^5 + y^5");
    power_of(a.get(), 6, m.get(), p.slot()); /* binomials 6 15 20 15 6 modulo 5 */
    EXPECT_EQ(text_of(p.get()), "x^6 + x^5*y + x*y^5 + y^6");
    poly_handle one(poly_of("1"));
    power_of(a.get(), 0, one.get(), p.slot());
    EXPECT_EQ(text_of(p.get()), "0");
}

TEST_F(power_modulo_test, high_powers_of_x_modulo_a_cubic) {
    test_ring ring("46337");
    poly_handle x(poly_of("x")), m(poly_of("x^3 - 2")), p;
    power_of(x.get(), 100000000, m.get(), p.slot());
    /* 100000000 = 3 * 33333333 + 1, and 2^33333333 mod 46337 = 18807 (Python's pow) */
    EXPECT_EQ(text_of(p.get()), "18807*x");
}

} // namespace tolvek
