/* Quotients of polynomials: sums, products, quotients and powers in lowest terms, and how many GCDs they take. */
#include "left_operations.h"

#include "display/progress.h"
#include "gcd/gcd.h"
#include "language/names.h"
#include "numbers/int_gcd.h"
#include "poly/canonical.h"
#include "quoly/compare.h"
#include "quoly/normal.h"
#include "quoly/reduce.h"
#include "support/fresh_system.h"
#include "support/plain_gcd.h"
#include "support/rand_poly.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/interrupts.h"

#include <utility>

namespace tolvek {

namespace {

/* Counts GCDs, and may give a wrong one for a time. */
int gcds_taken;
int lies_left;
std::string lie;
void (*honest_gcd)(const polynode *, const polynode *, polynode **, gcd_cofactors *);

void watched_gcd(const polynode *a, const polynode *b, polynode **g, gcd_cofactors *found) {
    gcds_taken++;
    honest_gcd(a, b, g, lies_left > 0 ? nullptr : found);
    if (lies_left <= 0) return;
    lies_left--;
    poly_handle wrong(poly_of(lie));
    wrong.release_to(g);
}

struct rational_functions_test : poly_test {
    void SetUp() override {
        poly_test::SetUp();
        honest_gcd = std::exchange(gcd_of_parts, watched_gcd);
        gcds_taken = lies_left = 0;
    }
    void TearDown() override {
        gcd_of_parts = honest_gcd;
        poly_test::TearDown();
    }
};

void set_value(quoly_handle &q, const std::string &num, const std::string &den = "1") {
    poly_handle n(poly_of(num)), d(poly_of(den));
    fraction_to_value(n, d, q.slot());
    gcds_taken = 0;
}

std::string value_text(const std::string &num, const std::string &den) {
    quoly_handle q;
    set_value(q, num, den);
    EXPECT_EQ(quoly_rule_broken(q.get()), 0);
    return text_of(q.get());
}

/* ---- an oracle of its own: residues of numerator and denominator at a point ---- */

constexpr uint64_t oracle_prime = 2147483629;

uint64_t power(uint64_t x, uint64_t e) {
    uint64_t y = 1;
    for (; e; e >>= 1, x = x * x % oracle_prime)
        if (e & 1) y = y * x % oracle_prime;
    return y;
}

uint64_t residue(const number *x) {
    if (lintmode) return static_cast<uint64_t>(x->lint_val);
    uint64_t r = 0;
    for (const numnode *d = x->num_head; d; d = d->next)
        r = (r * digit_radix + static_cast<uint64_t>(std::abs(d->digit))) % oracle_prime;
    return num_sign(x) < 0 ? (oracle_prime - r) % oracle_prime : r;
}

using residue_poly = std::vector<uint64_t>; /* dense in one variable, the constant first */

/* p with residues for all variables but the one of the index. */
residue_poly image(const polynode *p, const std::vector<uint64_t> &point, std::size_t index) {
    residue_poly dense;
    for (const auto &[exponents, c] : flat(p)) {
        uint64_t x = residue(&c.x);
        std::size_t degree = 0;
        for (std::size_t i = 0; i < exponents.size(); i++)
            if (i == index)
                degree = static_cast<std::size_t>(exponents[i]);
            else
                x = x * power(point[i], static_cast<uint64_t>(exponents[i])) % oracle_prime;
        if (dense.size() <= degree) dense.resize(degree + 1);
        dense[degree] = (dense[degree] + x) % oracle_prime;
    }
    while (!dense.empty() && dense.back() == 0) dense.pop_back();
    return dense;
}

/* The degree of the GCD. */
std::size_t degree_of_gcd(residue_poly a, residue_poly b) {
    while (!b.empty()) {
        uint64_t inverse = power(b.back(), oracle_prime - 2);
        while (a.size() >= b.size()) {
            uint64_t factor = a.back() * inverse % oracle_prime;
            std::size_t shift = a.size() - b.size();
            for (std::size_t i = 0; i < b.size(); i++)
                a[i + shift] = (a[i + shift] + oracle_prime - factor * b[i] % oracle_prime) % oracle_prime;
            while (!a.empty() && a.back() == 0) a.pop_back();
        }
        std::swap(a, b);
    }
    return a.size() - 1;
}

/* Coprime but for numbers. Points are random, so that a wrong verdict has a probability below 10^-7. */
bool are_coprime(test_random &rnd, const polynode *a, const polynode *b) {
    for (std::size_t v = 0; v < 4; v++) {
        std::vector<uint64_t> point(8);
        for (uint64_t &x : point) x = rnd() % oracle_prime;
        if (degree_of_gcd(image(a, point, v), image(b, point, v)) > 0) return false;
    }
    return true;
}

/* Is q in the normal form? */
void expect_normal(test_random &rnd, const quolynode *q) {
    ASSERT_EQ(quoly_rule_broken(q), 0) << text_of(q);
    if (q->is_num || !q->den) return;
    if (lintmode) {
        number_handle leading;
        num_assign(leading_coef(q->den)->num, &leading);
        int minus;
        EXPECT_TRUE(equal_to_pm1(&leading, &minus) && !minus) << text_of(q);
    } else {
        number_handle x, y;
        find_gcdcoefs(q->num, &x);
        find_gcdcoefs(q->den, &y);
        binary_gcd(&x, &y, &x);
        EXPECT_TRUE(is_longint(&x, 1)) << text_of(q);
    }
    EXPECT_TRUE(are_coprime(rnd, q->num, q->den)) << text_of(q);
}

struct flat_fraction {
    flat_poly num, den;
    explicit flat_fraction(const quolynode *q) {
        poly_handle n, d;
        if (q->is_num)
            quoly_to_poly(q, n.slot());
        else
            poly_assign(q->num, n.slot());
        if (!q->is_num && q->den)
            poly_assign(q->den, d.slot());
        else
            poly_set(1, d.slot());
        num = flat(n.get());
        den = flat(d.get());
    }
};

void expect_value(test_random &rnd, const quolynode *q, const flat_poly &num, const flat_poly &den) {
    flat_fraction v(q);
    EXPECT_TRUE(flat_sum(flat_product(v.num, den), flat_product(num, v.den), true).empty()) << text_of(q);
    expect_normal(rnd, q);
}

/* A polynomial that makes common factors likely. */
polynode *rand_factor(test_random &rnd) {
    static const char *const often[] = {"x + 1", "x - y", "y + 2", "2*x + 3", "x*y + 1", "x", "z - x", "3", "z"};
    if (rnd.one_in(3)) {
        poly_shape shape;
        shape.variables = 1 + rnd.below(3);
        shape.terms = 2;
        shape.degree = 2;
        shape.digits = 1;
        return rand_nonzero_poly(rnd, shape);
    }
    return poly_of(often[rnd.below(static_cast<int>(std::size(often)))]);
}

polynode *rand_product(test_random &rnd) {
    poly_handle p(rand_factor(rnd));
    flat_poly f = flat(p.get());
    for (int i = rnd.below(3); i > 0; i--) {
        poly_handle q(rand_factor(rnd));
        f = flat_product(f, flat(q.get()));
    }
    return nested(f);
}

void rand_fraction(test_random &rnd, quoly_handle &q) {
    poly_handle num(rnd.one_in(12) ? poly_of("0") : rand_product(rnd)), den;
    do {
        free_poly(den.slot());
        *den.slot() = rnd.one_in(4) ? poly_of("1") : rand_product(rnd);
    } while (poly_iszero(den.get()));
    fraction_to_value(num, den, q.slot());
}

constexpr const char *fields[] = {"chain", "2147483629"};

} // namespace

/* ---- the normal form ---- */

TEST_F(rational_functions_test, a_fraction_is_in_lowest_terms_with_its_sign_above) {
    EXPECT_EQ(value_text("x^2 - 1", "x - 1"), "x + 1");
    EXPECT_EQ(value_text("x^2 - 1", "2*x - 2"), "(x + 1)/(2)");
    EXPECT_EQ(value_text("1", "1 - x"), "(-1)/(x - 1)");
    EXPECT_EQ(value_text("6*x + 4", "4*y - 2"), "(3*x + 2)/(2*y - 1)");
    EXPECT_EQ(value_text("x^2*y - y^3", "x*y^2 + y^3"), "(x - y)/(y)");
    EXPECT_EQ(value_text("y", "x*y + y"), "(1)/(x + 1)");
    EXPECT_EQ(value_text("0", "x*y + y"), "0");
    EXPECT_EQ(value_text("6", "4*x"), "(3)/(2*x)");
}

TEST_F(rational_functions_test, modulo_a_prime_the_denominator_is_monic) {
    test_ring ring("7");
    EXPECT_EQ(value_text("1", "2*x + 3"), "(4)/(x + 5)"); /* 1/2 = 4, 3/2 = 12 = 5 */
    EXPECT_EQ(value_text("x^2 - 1", "3*x - 3"), "5*x + 5");
    EXPECT_EQ(value_text("3", "2"), "5");
    EXPECT_EQ(value_text("x", "3*y*x + 2*x"), "(5)/(y + 3)");
}

TEST_F(rational_functions_test, numbers_alone_are_cancelled_by_sanitize) {
    poly_handle num(poly_of("6*x^2 - 6")), den(poly_of("4*x - 4"));
    quoly_handle q;
    *q.slot() = new_fraction(num, den);
    sanitize(q.get());
    EXPECT_EQ(text_of(q.get()), "(3*x^2 - 3)/(2*x - 2)");
    check_quoly(q.slot());
    EXPECT_EQ(text_of(q.get()), "(3*x + 3)/(2)");
    EXPECT_EQ(gcds_taken, 1);
}

TEST_F(rational_functions_test, normal_form_sets_sign_and_shape_and_takes_no_gcd) {
    poly_handle num(poly_of("x")), den(poly_of("-y"));
    quoly_handle q;
    *q.slot() = new_fraction(num, den);
    normal_form(q.slot());
    EXPECT_EQ(text_of(q.get()), "(-x)/(y)");
    *num.slot() = poly_of("5");
    *den.slot() = poly_of("-1");
    free_quoly(q.slot());
    *q.slot() = new_fraction(num, den);
    normal_form(q.slot());
    EXPECT_TRUE(q->is_num);
    EXPECT_EQ(text_of(q.get()), "-5");
    EXPECT_EQ(gcds_taken, 0);
}

/* ---- known values, and GCDs counted ---- */

/* The sum of n1 / d1 and n2 / d2 is `sum`, and takes so many GCDs. */
void expect_sum(const char *n1, const char *d1, const char *n2, const char *d2, const char *sum, int gcds) {
    quoly_handle a, b, r;
    set_value(a, n1, d1);
    set_value(b, n2, d2);
    quoly_add(a.get(), b.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), sum);
    EXPECT_EQ(quoly_rule_broken(r.get()), 0);
    EXPECT_EQ(gcds_taken, gcds);
}

TEST_F(rational_functions_test, sums_take_a_gcd_of_denominators_and_one_more_against_it) {
    expect_sum("x", "x + 1", "1", "x + 1", "1", 1);
    expect_sum("x", "x^2 - 1", "1", "x^2 - 1", "(1)/(x - 1)", 1);
    expect_sum("1", "x", "1", "x + 1", "(2*x + 1)/(x^2 + x)", 1);
    expect_sum("1", "x*y", "1", "x*z", "(y + z)/(x*y*z)", 2);
    expect_sum("1", "x^2 - x", "1", "x^2 + x", "(2)/(x^2 - 1)", 2); /* 1/(x (x - 1)) + 1/(x (x + 1)) */
}

TEST_F(rational_functions_test, a_value_less_itself_takes_no_gcd) {
    quoly_handle a, r;
    set_value(a, "x", "x + 1");
    quoly_sub(a.get(), a.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "0");
    EXPECT_EQ(gcds_taken, 0);
}

TEST_F(rational_functions_test, a_polynomial_and_a_fraction_take_no_gcd) {
    quoly_handle a, b, r;
    set_value(a, "x^2 + y");
    set_value(b, "x", "y + 1");
    quoly_sub(a.get(), b.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "(x^2*y + x^2 - x + y^2 + y)/(y + 1)");
    quoly_sub(b.get(), a.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "(-x^2*y - x^2 + x - y^2 - y)/(y + 1)");
    quoly_set(3, a.slot());
    quoly_add(a.get(), b.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "(x + 3*y + 3)/(y + 1)");
    quoly_mult(a.get(), b.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "(3*x)/(y + 1)");
    EXPECT_EQ(gcds_taken, 0);
}

TEST_F(rational_functions_test, equal_parts_of_products_take_no_gcd) {
    quoly_handle a, b, r;
    set_value(a, "x + 1", "y");
    set_value(b, "y", "x + 1");
    quoly_mult(a.get(), b.get(), r.slot());
    EXPECT_TRUE(r->is_num);
    EXPECT_EQ(text_of(r.get()), "1");
    set_value(b, "x", "y"); /* equal denominators */
    quoly_mult(a.get(), b.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "(x^2 + x)/(y^2)");
    set_value(b, "y"); /* the numerator is the other denominator */
    quoly_mult(a.get(), b.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "x + 1");
    quoly_quot(a.get(), a.get(), r.slot(), 0);
    EXPECT_EQ(text_of(r.get()), "1");
    quoly_reciprocal(a.slot());
    EXPECT_EQ(text_of(a.get()), "(y)/(x + 1)");
    quoly_compute_power(a.slot(), 2);
    EXPECT_EQ(text_of(a.get()), "(y^2)/(x^2 + 2*x + 1)");
    EXPECT_EQ(gcds_taken, 0);
}

TEST_F(rational_functions_test, products_take_gcds_across_alone) {
    quoly_handle a, b, r;
    set_value(a, "x^2 - 1", "y*z");
    set_value(b, "y", "x*z + z");
    quoly_mult(a.get(), b.get(), r.slot());
    EXPECT_EQ(text_of(r.get()), "(x - 1)/(z^2)");
    EXPECT_EQ(gcds_taken, 2);
    gcds_taken = 0;
    quoly_quot(a.get(), b.get(), r.slot(), 0); /* (x^2 - 1)(x + 1)/y^2: z is common to both denominators */
    EXPECT_EQ(text_of(r.get()), "(x^3 + x^2 - x - 1)/(y^2)");
    EXPECT_EQ(gcds_taken, 2);
}

TEST_F(rational_functions_test, equal_values_have_the_quotient_1) {
    quoly_handle a, b, r;
    set_value(a, "x^2 - 1", "y");
    quoly_assign(a.get(), b.slot());
    quoly_quot(a.get(), b.get(), r.slot(), 0);
    EXPECT_TRUE(quoly_is_one(r.get()));
}

TEST_F(rational_functions_test, numerators_that_are_promised_coprime_are_left_so) {
    quoly_handle a, b, r;
    set_value(a, "x + 1");
    set_value(b, "x - 1");
    quoly_quot(a.get(), b.get(), r.slot(), 1);
    EXPECT_EQ(text_of(r.get()), "(x + 1)/(x - 1)");
    EXPECT_EQ(gcds_taken, 0);
    quoly_set(2, b.slot());
    set_value(a, "4*x");
    quoly_quot(a.get(), b.get(), r.slot(), 1);
    EXPECT_EQ(text_of(r.get()), "2*x");
}

TEST_F(rational_functions_test, a_product_in_a_shorter_list_of_variables) {
    quoly_handle a, b, r;
    set_value(a, "x + 1", "y"); /* read in the list from y on: y + 1 over z */
    pt *whole = polynames;
    spec_quoly_mult(a.get(), a.get(), r.slot(), polynames->pt_next);
    EXPECT_EQ(polynames, whole);
    EXPECT_EQ(pseudo_polynames, nullptr);
    EXPECT_EQ(text_of(r.get()), "(x^2 + 2*x + 1)/(y^2)");
}

/* ---- the plain methods ---- */

TEST_F(rational_functions_test, the_plain_methods_agree_with_the_ones_in_use) {
    for (const char *name : fields) {
        test_ring ring(name);
        for (int i = 0; i < times(100); i++) {
            poly_handle a(rand_product(rnd)), b(rand_product(rnd)), g, h, q, product;
            if (is_constant(a.get()) || is_constant(b.get())) continue;
            plain_gcd(a.get(), b.get(), g.slot());
            honest_gcd(a.get(), b.get(), h.slot(), nullptr);
            EXPECT_TRUE(poly_equal(g.get(), h.get())) << text_of(g.get()) << " and " << text_of(h.get());
            ASSERT_TRUE(plain_quotient(a.get(), g.get(), q.slot()));
            EXPECT_TRUE(flat_sum(flat_product(flat(q.get()), flat(g.get())), flat(a.get()), true).empty());
            EXPECT_EQ(poly_rule_broken(q.get(), polynames), 0);
            /* a b + 1 is not divisible by a, unless a is a unit */
            poly_handle one(poly_of("1"));
            *product.slot() = nested(flat_sum(flat_product(flat(a.get()), flat(b.get())), flat(one.get())));
            EXPECT_FALSE(plain_quotient(product.get(), a.get(), q.slot()));
        }
    }
}

/* ---- sums that telescope ---- */

TEST_F(rational_functions_test, sums_that_telescope) {
    for (const char *name : fields) {
        test_ring ring(name);
        quoly_handle sum, last;
        quoly_set(0, sum.slot());
        for (int k = 0; k < 40; k++) { /* 1/((x + k)(x + k + 1)) = 1/(x + k) - 1/(x + k + 1) */
            quolynode *term = nullptr;
            poly_handle num(poly_of("1")),
                den(poly_of("x^2 + " + std::to_string(2 * k + 1) + "*x + " + std::to_string(k * (k + 1))));
            fraction_to_value(num, den, &term);
            best_quoly_add(sum.slot(), term);
        }
        EXPECT_EQ(text_of(sum.get()), "(40)/(x^2 + 40*x)");
    }
}

TEST_F(rational_functions_test, a_sum_less_its_parts_in_another_order_is_0) {
    quoly_handle sum;
    quoly_set(0, sum.slot());
    auto term = [](int i, bool minus) {
        quolynode *t = nullptr;
        poly_handle num(poly_of("x + " + std::to_string(i) + "*y")),
            den(poly_of("y + " + std::to_string(i % 5) + "*x + 1"));
        fraction_to_value(num, den, &t);
        if (minus) quoly_inplace(t);
        return t;
    };
    for (int i = 0; i < 20; i++) best_quoly_add(sum.slot(), term(i, false));
    for (int i = 19; i > 0; i -= 2) best_quoly_add(sum.slot(), term(i, true));
    for (int i = 0; i < 20; i += 2) best_quoly_add(sum.slot(), term(i, true));
    EXPECT_TRUE(quoly_is_zero(sum.get())) << text_of(sum.get());
}

/* ---- random values ---- */

TEST_F(rational_functions_test, sums_and_products_are_right_reduced_and_the_same_in_each_family) {
    for (const char *name : fields) {
        test_ring ring(name);
        for (int i = 0; i < times(80); i++) {
            quoly_handle a, b, r, s;
            rand_fraction(rnd, a);
            rand_fraction(rnd, b);
            std::string text_a = text_of(a.get()), text_b = text_of(b.get());
            flat_fraction x(a.get()), y(b.get());
            flat_poly den = flat_product(x.den, y.den);
            for (bool minus : {false, true}) {
                (minus ? quoly_sub : quoly_add)(a.get(), b.get(), r.slot());
                expect_value(rnd, r.get(), flat_sum(flat_product(x.num, y.den), flat_product(y.num, x.den), minus),
                             den);
                quolynode *c = copy_of(a);
                (minus ? better_quoly_sub : better_quoly_add)(c, b.get(), &c);
                free_quoly(s.slot());
                *s.slot() = c;
                EXPECT_TRUE(quoly_equal(r.get(), s.get()));
                free_quoly(s.slot());
                *s.slot() = copy_of(a);
                (minus ? best_quoly_sub : best_quoly_add)(s.slot(), copy_of(b));
                EXPECT_TRUE(quoly_equal(r.get(), s.get()));
            }
            quoly_mult(a.get(), b.get(), r.slot());
            expect_value(rnd, r.get(), flat_product(x.num, y.num), den);
            quoly_assign(a.get(), s.slot());
            fast_quoly_mult(s.slot(), b.get());
            EXPECT_TRUE(quoly_equal(r.get(), s.get()));
            if (!quoly_is_zero(b.get())) {
                quoly_quot(a.get(), b.get(), r.slot(), 0);
                expect_value(rnd, r.get(), flat_product(x.num, y.den), flat_product(x.den, y.num));
                quoly_assign(a.get(), s.slot());
                fast_quoly_quot(s.slot(), b.get(), 0);
                EXPECT_TRUE(quoly_equal(r.get(), s.get()));
            }
            EXPECT_EQ(text_of(a.get()), text_a);
            EXPECT_EQ(text_of(b.get()), text_b);
        }
    }
}

TEST_F(rational_functions_test, a_destination_may_hold_an_operand) {
    for (int i = 0; i < times(60); i++) {
        quoly_handle a, b, r, s;
        rand_fraction(rnd, a);
        do rand_fraction(rnd, b);
        while (quoly_is_zero(b.get()));
        auto compare = [&](auto operation) {
            operation(a.get(), b.get(), r.slot());
            quoly_assign(a.get(), s.slot());
            operation(s.get(), b.get(), s.slot());
            EXPECT_TRUE(quoly_equal(r.get(), s.get()));
            quoly_assign(b.get(), s.slot());
            operation(a.get(), s.get(), s.slot());
            EXPECT_TRUE(quoly_equal(r.get(), s.get()));
            operation(b.get(), b.get(), r.slot());
            operation(s.get(), s.get(), s.slot());
            quoly_assign(b.get(), s.slot());
            operation(s.get(), s.get(), s.slot());
            EXPECT_TRUE(quoly_equal(r.get(), s.get()));
        };
        compare([](const quolynode *x, const quolynode *y, quolynode **z) { quoly_add(x, y, z); });
        compare([](const quolynode *x, const quolynode *y, quolynode **z) {
            if (quoly_is_zero(y)) return;
            quoly_quot(x, y, z, 0);
        });
        compare([](const quolynode *x, const quolynode *y, quolynode **z) { quoly_mult(x, y, z); });
    }
}

TEST_F(rational_functions_test, the_laws_of_a_field) {
    for (const char *name : {"chain", "3", "46337"}) {
        test_ring ring(name);
        for (int i = 0; i < times(60); i++) {
            quoly_handle a, b, c, left, right, t;
            rand_fraction(rnd, a);
            rand_fraction(rnd, b);
            rand_fraction(rnd, c);
            quoly_add(a.get(), b.get(), left.slot());
            quoly_add(left.get(), c.get(), left.slot());
            quoly_add(b.get(), c.get(), right.slot());
            quoly_add(a.get(), right.get(), right.slot());
            EXPECT_TRUE(quoly_equal(left.get(), right.get()));
            quoly_mult(a.get(), b.get(), left.slot());
            quoly_mult(left.get(), c.get(), left.slot());
            quoly_mult(b.get(), c.get(), right.slot());
            quoly_mult(right.get(), a.get(), right.slot());
            EXPECT_TRUE(quoly_equal(left.get(), right.get()));
            quoly_add(b.get(), c.get(), left.slot());
            quoly_mult(a.get(), left.get(), left.slot());
            quoly_mult(a.get(), b.get(), right.slot());
            quoly_mult(a.get(), c.get(), t.slot());
            quoly_add(right.get(), t.get(), right.slot());
            EXPECT_TRUE(quoly_equal(left.get(), right.get()));
            if (quoly_is_zero(b.get())) continue;
            quoly_quot(a.get(), b.get(), left.slot(), 0);
            quoly_mult(left.get(), b.get(), left.slot());
            EXPECT_TRUE(quoly_equal(left.get(), a.get()));
            quoly_assign(b.get(), right.slot());
            quoly_reciprocal(right.slot());
            quoly_mult(right.get(), b.get(), right.slot());
            EXPECT_TRUE(quoly_is_one(right.get()));
        }
    }
}

TEST_F(rational_functions_test, powers_are_repeated_products) {
    for (const char *name : fields) {
        test_ring ring(name);
        for (int i = 0; i < times(20); i++) {
            quoly_handle a, p, r;
            rand_fraction(rnd, a);
            quoly_set(1, p.slot());
            for (uint32_t e = 1; e < 4; e++) {
                quoly_mult(p.get(), a.get(), p.slot());
                quoly_assign(a.get(), r.slot());
                quoly_compute_power(r.slot(), e);
                EXPECT_TRUE(quoly_equal(p.get(), r.get()));
            }
        }
    }
}

/* ---- divisors that are wrong ---- */

namespace {
struct reduction_test : fresh_exact_system {
    void SetUp() override {
        forget_poly_variables();
        fresh_exact_system::SetUp();
        run("&(J = x)\n&(J = y)");
        honest_gcd = std::exchange(gcd_of_parts, watched_gcd);
        gcds_taken = lies_left = 0;
    }
    void TearDown() override {
        gcd_of_parts = honest_gcd;
        fresh_exact_system::TearDown();
        forget_poly_variables();
    }
    /* What reduce says of (x^2 - 1)/(x - 1) when the GCD is a lie for some calls. */
    std::string told(const std::string &wrong, int lies) {
        return text_of([&] {
            lie = wrong;
            poly_handle a(poly_of("x^2 - 1")), b(poly_of("x^2 + x - 2")), g(poly_of(wrong)), a2, b2;
            lies_left = lies;
            reduce(a.get(), b.get(), g.slot(), a2.slot(), b2.slot());
            lies_left = 0;
            flat_poly left = flat_product(flat(a2.get()), flat(g.get())),
                      right = flat_product(flat(b2.get()), flat(g.get()));
            EXPECT_TRUE(flat_sum(left, flat(a.get()), true).empty());
            EXPECT_TRUE(flat_sum(right, flat(b.get()), true).empty());
            divisor = tolvek::text_of(g.get());
        });
    }
    std::string divisor;
};
} // namespace

TEST_F(reduction_test, a_right_divisor_is_not_taken_anew) {
    kept_value loud(verbose, 1);
    EXPECT_EQ(told("x - 1", 0), "");
    EXPECT_EQ(divisor, "x - 1");
    EXPECT_EQ(gcds_taken, 0);
}

TEST_F(reduction_test, a_wrong_divisor_is_taken_anew_and_one_fast_test_after_the_other_is_turned_off) {
    kept_value loud(verbose, 1), first(try_rat, 1), second(rat_yes, 1);
    EXPECT_EQ(told("x + 5", 0),
              " Warning 1. A fast probabilistic test for exact poly division has been turned off (&_t).\n");
    EXPECT_EQ(divisor, "x - 1");
    EXPECT_EQ(try_rat, 0);
    EXPECT_EQ(told("x + 5", 0),
              " Warning 3. Another fast probabilistic test for exact poly division has been turned off.\n");
    EXPECT_EQ(rat_yes, 0);
    EXPECT_EQ(told("x + 5", 0), " *** Warning 5. A  fast probabilistic gcd algorithm is being retried.\n");
    EXPECT_EQ(divisor, "x - 1");
    /* x + 1 divides the first operand alone */
    try_rat = rat_yes = 1;
    EXPECT_EQ(told("x + 1", 2),
              " Warning 2. A fast probabilistic test for exact poly division has been turned off (&_t).\n"
              " Warning 4. Another fast probabilistic test for exact poly division has been turned off.\n"
              " *** Warning 6. A  fast probabilistic gcd algorithm is being retried.\n");
    EXPECT_EQ(divisor, "x - 1");
    EXPECT_EQ(try_rat, 0);
    EXPECT_EQ(rat_yes, 0);
}

TEST_F(reduction_test, nothing_is_said_unless_verbose) { EXPECT_EQ(told("x + 1", 3), ""); }

TEST_F(reduction_test, a_divisor_that_stays_wrong_becomes_1) {
    EXPECT_EQ(told("x + 5", 1000), "");
    EXPECT_EQ(divisor, "1");
    EXPECT_EQ(gcds_taken, most_reductions);
    EXPECT_EQ(told("x + 5", most_reductions - 1), "");
    EXPECT_EQ(divisor, "x - 1");
}

TEST_F(reduction_test, values_stay_right_whatever_the_divisor_is) {
    lie = "x^2 + 7";
    for (int lies : {1, 3, 1000}) {
        quoly_handle a, b, sum, difference;
        lies_left = 0;
        set_value(a, "x + 2", "x^2 - 1");
        set_value(b, "y", "x^2 + x");
        lies_left = lies;
        quoly_add(a.get(), b.get(), sum.slot());
        lies_left = 0;
        quoly_sub(sum.get(), a.get(), difference.slot());
        quoly_sub(difference.get(), b.get(), difference.slot());
        EXPECT_TRUE(quoly_is_zero(difference.get())) << lies;
    }
}

TEST_F(reduction_test, cofactors_may_take_the_place_of_the_operands) {
    poly_handle a(poly_of("x^2 - 1")), b(poly_of("x*y - y")), g(poly_of("x - 1"));
    reduce(a.get(), b.get(), g.slot(), a.slot(), b.slot());
    EXPECT_EQ(tolvek::text_of(a.get()), "x + 1");
    EXPECT_EQ(tolvek::text_of(b.get()), "y");
    *g.slot() = (free_poly(g.slot()), poly_of("2"));
    poly_handle c(poly_of("4*x")), d(poly_of("6"));
    reduce(c.get(), d.get(), g.slot(), c.slot(), d.slot());
    EXPECT_EQ(tolvek::text_of(c.get()), "2*x");
    EXPECT_EQ(tolvek::text_of(d.get()), "3");
}

TEST_F(reduction_test, floats_never_restart) {
    test_ring ring("float");
    kept_value loud(verbose, 1);
    poly_handle a(poly_of("x^2 - 1")), b(poly_of("x - 1")), g(poly_of("x^3 + 2")), a2, b2;
    EXPECT_EQ(text_of([&] { reduce(a.get(), b.get(), g.slot(), a2.slot(), b2.slot()); }), "");
    EXPECT_EQ(tolvek::text_of(a2.get()), "x^2 - 1");
    EXPECT_EQ(tolvek::text_of(g.get()), "1");
    EXPECT_EQ(gcds_taken, 0);
}

/* ---- composite moduli ---- */

TEST_F(reduction_test, fractions_modulo_a_composite_number) {
    test_ring ring("6");
    quoly_handle a, b, sum;
    EXPECT_EQ(text_of([&] {
                  set_value(a, "1", "x + 1");
                  set_value(b, "1", "x + 3");
                  quoly_add(a.get(), b.get(), sum.slot());
              }),
              "");
    flat_fraction v(sum.get()); /* (2x + 4)/((x + 1)(x + 3)) */
    poly_handle num(poly_of("2*x + 4")), den(poly_of("x^2 + 4*x + 3"));
    EXPECT_TRUE(flat_sum(flat_product(v.num, flat(den.get())), flat_product(v.den, flat(num.get())), true).empty());
}

TEST_F(reduction_test, denominators_without_an_inverse_modulo_a_composite_number) {
    quoly_handle bad;
    {
        test_ring ring("6");
        EXPECT_TRUE(unwinds([&] { set_value(bad, "1", "2*x + 1"); }));
    }
    EXPECT_NE(last_text.find(message_text(85)), std::string::npos);
    test_ring ring("6"); /* the unwinding has left it */
    EXPECT_TRUE(unwinds([&] { set_value(bad, "x", "2"); }));
    EXPECT_NE(last_text.find(message_text(85)), std::string::npos);
}

/* ---- powers of numbers ---- */

TEST_F(reduction_test, zero_to_a_negative_power_is_a_division_by_zero_in_every_ring) {
    for (const char *name : {"float", "chain", "7"}) {
        test_ring ring(name); /* an unwinding leaves it */
        quoly_handle q, zero_to_the_0;
        number_handle e, none;
        setvalue(0, &none);
        quoly_set(0, zero_to_the_0.slot());
        raise_to_power(zero_to_the_0.slot(), &none);
        EXPECT_TRUE(quoly_is_one(zero_to_the_0.get()));
        quoly_set(0, q.slot());
        setvalue(-1, &e);
        e.lint_val = -1; /* exponents are no residues */
        EXPECT_TRUE(unwinds([&] { raise_to_power(q.slot(), &e); })) << name;
        EXPECT_NE(last_text.find(message_text(22)), std::string::npos) << name << last_text;
    }
}

TEST_F(reduction_test, exponents_of_residues_are_reduced_modulo_a_prime) {
    test_ring ring("7");
    number_handle e;
    auto power_of = [&](int base, int exponent) {
        quoly_handle q;
        quoly_set(base, q.slot());
        e.lint_val = exponent;
        raise_to_power(q.slot(), &e);
        return q->numb->lint_val;
    };
    EXPECT_EQ(power_of(3, 6), 1);
    EXPECT_EQ(power_of(3, 7), 3);
    EXPECT_EQ(power_of(3, -1), 5);
    EXPECT_EQ(power_of(3, -7), 5);
    EXPECT_EQ(power_of(0, 6), 0);
    EXPECT_EQ(power_of(0, 12), 0);
    EXPECT_EQ(power_of(3, 600000001), 3);
}

TEST_F(reduction_test, a_residue_that_is_no_unit_has_no_negative_power) {
    test_ring ring("4");
    quoly_handle q;
    number_handle e;
    quoly_set(2, q.slot());
    e.lint_val = -1;
    EXPECT_TRUE(unwinds([&] { raise_to_power(q.slot(), &e); }));
    EXPECT_NE(last_text.find(message_text(85)), std::string::npos);
}

/* ---- at the prompt ---- */

TEST_F(reduction_test, rational_functions_at_the_prompt) {
    EXPECT_EQ(value_of("1/x + 1/(x + 1)"), "( 2x + 1 ) / ( x^2 + x )");
    EXPECT_EQ(value_of("x/(x + 1) + 1/(x + 1)"), "1");
    EXPECT_EQ(value_of("(x^2 - y^2)/(2x - 2y)"), "( x + y ) / 2");
    EXPECT_EQ(value_of("(1/x - 1/y)/(x - y)"), "-1 / ( (y)x )");
    EXPECT_EQ(value_of("((x + 1)/(x - 1))^(-2)"), "( x^2 - 2x + 1 ) / ( x^2 + 2x + 1 )");
    EXPECT_EQ(value_of("Sigma<i = 1 to 30>[1/((x+i)(x+i+1))]*(x+1)*(x+31)"), "30");
    EXPECT_NE(run("x/(y - y)").find(message_text(22)), std::string::npos);
    EXPECT_NE(run("(x - x)^(-1)").find(message_text(22)), std::string::npos);
    EXPECT_EQ(value_of("1 + 1"), "2");
}

TEST_F(reduction_test, integer_quotients_and_remainders_of_polynomials) {
    EXPECT_EQ(value_of("(x^3 + 2) \\ (x + 1)"), "x^2 - x + 1");
    EXPECT_EQ(value_of("(x^3 + 2) | (x + 1)"), "1");
    EXPECT_EQ(value_of("x^2 | (2x + 1) - 1/4"), "0");
    EXPECT_EQ(value_of("x^2 \\ (2x + 1)"), "( 2x - 1 ) / 4");
    EXPECT_EQ(value_of("(5x^2 + 3x) | 3"), "2x^2");
    EXPECT_EQ(value_of("(5x^2 + 3x) \\ 3"), "x^2 + x");
    EXPECT_EQ(value_of("(7/2) \\ 2"), "1");
    EXPECT_EQ(value_of("(7/3) \\ 2"), "1");
    EXPECT_EQ(value_of("(-7/2) \\ 2"), "-2");
    EXPECT_EQ(value_of("(7/2) \\ (-2)"), "-2");
    EXPECT_EQ(value_of("(-7/2) \\ (-2)"), "1");
    EXPECT_EQ(value_of("((7x - 3y)/2) \\ (-1)"), "-4x + y");
    EXPECT_NE(run("(x/3) | 3").find(message_text(210)), std::string::npos);
    EXPECT_NE(run("x | 0").find(message_text(22)), std::string::npos);
    EXPECT_NE(run("x \\ (y - y)").find(message_text(22)), std::string::npos);
    /* in the main variable of the divisor, which lies below the one of the dividend */
    EXPECT_EQ(value_of("(x*y^2 + x + y) | (y - 1) - (2x + 1)"), "0");
    EXPECT_EQ(value_of("(x*y^2 + x + y) \\ (y - 1) - (x*(y + 1) + 1)"), "0");
    /* a leading coefficient with a variable: q b + r = a */
    run("a := x^3 + y; b := y*x + 1; q := a \\ b; r := a | b");
    EXPECT_EQ(value_of("q*b + r - a"), "0");
    EXPECT_EQ(value_of("r*y^3 - (y^4 - 1)"), "0"); /* a at x = -1/y */
    /* a denominator: the polynomial part */
    EXPECT_EQ(value_of("((x^3 + 1)/x) \\ (x + 1)"), "x - 1");
    EXPECT_EQ(value_of("((x^3 + 1)/y) \\ x"), "x^2 / y");
}

namespace {
struct flote_fractions : fresh_system {
    void SetUp() override {
        forget_poly_variables();
        fresh_system::SetUp();
        run("&(J = x)\n&(J = y)");
    }
    void TearDown() override {
        fresh_system::TearDown();
        forget_poly_variables();
    }
};
} // namespace

TEST_F(flote_fractions, quotients_forget_what_rounding_leaves) {
    EXPECT_EQ(value_of("(x^2 - 0.01)/(x - 0.1)"), "x + 0.1");
    EXPECT_EQ(value_of("(x^2 - y^2)/(x - y)"), "x + y");
    EXPECT_EQ(value_of("x/4"), "0.25x");
    EXPECT_EQ(value_of("(x + 1)/(2x - 4)*(x - 2)"), "0.5x + 0.5");
    EXPECT_EQ(value_of("7.5/(2.5x)"), "3 / x");
    EXPECT_EQ(value_of("0^0"), "1");
}

TEST_F(flote_fractions, a_common_factor_is_found_to_within_rounding) {
    run("p := (x - 0.1)*(x - 0.3)/((x - 0.1)*(x - 0.7))*(x - 0.7)");
    quolynode *p = nullptr;
    token_record t{};
    set_token(t, "p");
    t.hash_slot = hash_unknown;
    p = find_variable(t)->value;
    ASSERT_FALSE(p->is_num);
    EXPECT_EQ(p->den, nullptr);
    EXPECT_EQ(p->num->expo, 1);
    EXPECT_NEAR(static_cast<double>(p->num->next->num->flote_val), -0.3, 1e-12);
}

TEST_F(flote_fractions, sums_of_inexact_fractions_never_become_0) {
    EXPECT_NE(value_of("1/(x - 0.1) + 1/(x - 0.3)"), "0");
    EXPECT_NE(value_of("1/(x - 0.1)/(x - 0.2) + 1/(x - 0.1)/(x - 0.3)"), "0");
}

TEST_F(flote_fractions, coefficients_out_of_all_proportion_come_to_an_end) {
    run("b := 10.0^4900");
    EXPECT_NE(value_of("(b*x^2 + 1)/(x + 1)"), "");
    EXPECT_NE(value_of("(b*b*x^2 + 1)/(x + 1)"), "");
    EXPECT_EQ(value_of("1 + 1"), "2");
}

/* ---- left at a safe point ---- */

TEST_F(rational_functions_test, operations_that_are_left_lose_no_record_and_leave_kept_operands_whole) {
    quoly_handle a, b;
    set_value(a, "x^2*y + 2*x*y^2 + 5*z + 1", "x^2 - y^2");
    set_value(b, "4*x*y + 2*x - 9*z + 3", "x^2 + 3*x*y + 2*y^2");
    leave_operations(a, b, sums_and_products);
    leave_operations(a, b, quotients);
}

} // namespace tolvek
