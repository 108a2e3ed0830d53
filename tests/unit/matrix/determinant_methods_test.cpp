/* Every method, forced by its switches, on matrices with planted determinants: in all rings, dense and sparse. */
#include "matrix/determinant.h"

#include "matrix_checks.h"
#include "quoly/compare.h"
#include "support/fresh_system.h"
#include "top/settings.h"

#include <gtest/gtest.h>

namespace tolvek {

namespace {

/* ---- entries ---- */

void set_small(int v, quolynode **q) {
    const int size = v < 0 ? -v : v;
    quoly_set(modularmode ? size % modulus : size, q);
    if (v < 0) quoly_inplace(*q);
}

void small_number(test_random &rnd, quolynode **q) { set_small(rnd.below(9) - 4, q); }

/* Residues of all sizes; integers that are long at times. */
void any_number(test_random &rnd, quolynode **q) {
    if (modularmode) return quoly_set(rnd.one_in(4) ? modulus - 1 : rnd.below(modulus), q);
    small_number(rnd, q);
    if (!rnd.one_in(4)) return;
    quoly_handle factor;
    quoly_set(1 + rnd.below(1 << 27), factor.slot());
    for (int i = 0; i < 5; i++) fast_quoly_mult(q, factor.get());
}

void small_unit(test_random &rnd, quolynode **q) {
    do small_number(rnd, q);
    while (quoly_is_zero(*q));
}

void fraction(test_random &rnd, quolynode **q) {
    quoly_handle divisor;
    small_number(rnd, q);
    small_unit(rnd, divisor.slot());
    fast_quoly_quot(q, divisor.get(), 0);
}

/* a x + b y + c with some of four variables. */
void polynomial(test_random &rnd, quolynode **q) {
    small_number(rnd, q);
    for (int i = 0; i < 2; i++) {
        quoly_handle term, factor;
        base_quoly(1 + rnd.below(4), term.slot());
        small_number(rnd, factor.slot());
        fast_quoly_mult(term.slot(), factor.get());
        best_quoly_add(q, term.release());
    }
}

void quotient(test_random &rnd, quolynode **q) {
    polynomial(rnd, q);
    if (rnd.one_in(2)) return;
    quoly_handle divisor;
    base_quoly(1, divisor.slot());
    fast_quoly_quot(q, divisor.get(), 0);
}

/* ---- the methods ---- */

struct forced {
    const char *name;
    int detcutoff, gauss_cutoff, mass, by_adjoint;
};
constexpr forced methods[] = {
    {"by size", -1, 0, 5000, 1},
    {"elimination", 0, 0, 5000, 0},
    {"minors of three rows", 3, 0, 5000, 1},
    {"all by minors", 40, 0, 5000, 1},
    {"fraction-free", -1, 1, 5000, 1},
    {"interpolation declined", -1, 0, 1, 0},
    {"fraction-free, no size", 0, 1, 5000, 0},
};

constexpr int most_expanded = 14; /* rows that minors are tried on */

void force(const forced &method) {
    detcutoff = method.detcutoff;
    gauss_cutoff = method.gauss_cutoff;
    rat_det_method_cut = method.mass;
    mod_det_method_cut = method.mass / 33;
    mod_matrix_ok = method.by_adjoint;
}

void find_determinant(const planted_matrix &planted, bool sparse, quoly_handle &found) {
    matrix_value copy;
    copy.copy_from(planted.m);
    if (sparse) copy.to_sparse();
    quoly_set(1, found.slot());
    mat_determinant(copy, {}, found.slot());
}

struct determinant_methods : fresh_exact_system {
    test_random rnd;
    bool composite = false; /* the ring has zero divisors */
    records_in_use before{};

    void SetUp() override {
        fresh_exact_system::SetUp();
        run("&(J = w)\n&(J = x)\n&(J = y)\n&(J = z)");
    }
    void TearDown() override {
        EXPECT_EQ(first_available, 1);
        EXPECT_TRUE(count_records_in_use() == before);
        fresh_exact_system::TearDown();
    }
    void take_ring(const std::string &modulus_text) {
        if (!modulus_text.empty()) run("&(p = " + modulus_text + ")");
        composite = modularmode && !mod_is_prime();
        before = count_records_in_use();
    }
    static void check_determinant(const planted_matrix &planted, bool sparse, const std::string &what) {
        quoly_handle found;
        find_determinant(planted, sparse, found);
        EXPECT_TRUE(quoly_equal(found.get(), planted.determinant.get())) << what;
    }
    void check_inverse(const planted_matrix &planted, bool sparse, const std::string &what) {
        matrix_value copy;
        copy.copy_from(planted.m);
        if (sparse) copy.to_sparse();
        const std::string text = text_of([&] { mat_inverse(copy); });
        if (!text.empty()) {
            const int expected = quoly_is_zero(planted.determinant.get()) ? 44 : 85;
            EXPECT_NE(text.find(message_text(expected)), std::string::npos) << what << text;
            return;
        }
        EXPECT_FALSE(quoly_is_zero(planted.determinant.get())) << what;
        EXPECT_EQ(copy.is_sparse(), sparse) << what;
        if (sparse) copy.to_dense();
        EXPECT_TRUE(is_product(planted.m, copy, quol_num_1)) << what;
    }
    static void check_adjoint(const planted_matrix &planted, const std::string &what) {
        matrix_value copy;
        copy.copy_from(planted.m);
        adjoint(copy);
        EXPECT_TRUE(is_product(planted.m, copy, planted.determinant.get())) << what;
    }
    void check(int n, const make_entry &entry, const make_entry &diagonal) {
        const planted_matrix planted(rnd, n, entry, diagonal);
        for (const forced &method : methods) {
            if (method.detcutoff > 3 && n > most_expanded) continue;
            force(method);
            const std::string what = std::string(method.name) + ", rows: " + std::to_string(n) +
                                     ", modulus: " + std::to_string(int32_t{modulus});
            check_determinant(planted, false, what);
            check_determinant(planted, true, what + ", sparse");
            check_inverse(planted, false, what);
            check_inverse(planted, true, what + ", sparse");
        }
        check_adjoint(planted, "adjoint");
    }
};

/* ---- the rings ---- */

const char *const fields[] = {"", "2", "3", "5", "7", "42359", "65521", "1073741789", "256", "65536"};

struct methods_in_fields : determinant_methods, ::testing::WithParamInterface<const char *> {
    void SetUp() override {
        determinant_methods::SetUp();
        take_ring(GetParam());
        ASSERT_FALSE(composite);
    }
};
INSTANTIATE_TEST_SUITE_P(fields, methods_in_fields, ::testing::ValuesIn(fields), [](const auto &tested) {
    return tested.param[0] ? "modulo_" + std::string(tested.param) : std::string("rationals");
});

TEST_P(methods_in_fields, numbers) {
    for (int n = 1; n <= 12; n++)
        for (int i = times(2); i > 0; i--) {
            check(n, any_number, small_unit);
            check(n, any_number, any_number);
        }
}

TEST_P(methods_in_fields, singular_matrices) {
    for (int n = 1; n <= 7; n++)
        check(n, small_number, [n](test_random &r, quolynode **q) { set_small(r.below(n + 1) ? 1 : 0, q); });
}

TEST_P(methods_in_fields, fractions) {
    for (int n = 1; n <= 6; n++) check(n, fraction, fraction);
}

TEST_P(methods_in_fields, polynomials_in_four_variables) {
    for (int n = 1; n <= 4; n++)
        for (int i = times(2); i > 0; i--) {
            check(n, polynomial, small_unit);
            check(n, polynomial, polynomial);
        }
    check(5, small_number, polynomial);
    check(7, small_number, [](test_random &r, quolynode **q) { r.one_in(3) ? polynomial(r, q) : small_unit(r, q); });
}

TEST_P(methods_in_fields, quotients) {
    for (int n = 1; n <= 3; n++) check(n, quotient, quotient);
}

/* Determinants that are 0 modulo the primes in use: those that images are taken by are the greatest below 2^31, and others
   could be the first of the tables. */
TEST_P(methods_in_fields, determinants_divisible_by_primes_in_use) {
    for (const int prime : {2147483647, 2147483629, 2147483587, 42359, 65521, 2})
        for (int n = 4; n <= 6; n++)
            check(n, small_number, [&](test_random &, quolynode **q) {
                if (modularmode)
                    set_small(1 + prime % modulus, q);
                else
                    quoly_set_int64(prime, q);
            });
}

struct methods_modulo_composites : determinant_methods, ::testing::WithParamInterface<const char *> {
    void SetUp() override {
        determinant_methods::SetUp();
        take_ring(GetParam());
        ASSERT_TRUE(composite);
    }
};
INSTANTIATE_TEST_SUITE_P(composites, methods_modulo_composites, ::testing::Values("4", "6", "12", "1001", "1000000000"),
                         [](const auto &tested) { return "modulo_" + std::string(tested.param); });

/* The inverse is there whenever the determinant is a unit. */
TEST_P(methods_modulo_composites, numbers) {
    for (int n = 1; n <= 9; n++)
        for (int i = times(3); i > 0; i--) {
            check(n, any_number, any_number);
            check(n, any_number, [](test_random &r, quolynode **q) { set_small(r.one_in(2) ? 1 : -1, q); });
        }
}

/* Where a pivot cannot be divided by, error 85; never another value. By minors there is always one. */
TEST_P(methods_modulo_composites, polynomials_are_done_or_refused) {
    int done = 0;
    for (int n = 2; n <= 5; n++)
        for (int i = times(3); i > 0; i--) {
            const planted_matrix planted(rnd, n, polynomial, i % 2 ? make_entry(polynomial) : make_entry(small_unit));
            for (const forced &method : methods)
                for (const bool sparse : {false, true}) {
                    force(method);
                    const std::string what = std::string(method.name) + (sparse ? ", sparse" : ""),
                                      text = text_of([&] { check_determinant(planted, sparse, what); });
                    EXPECT_TRUE(text.empty() || method.detcutoff <= 3) << what << text;
                    EXPECT_TRUE(text.empty() || text.find(message_text(85)) != std::string::npos) << what << text;
                    done += text.empty();
                }
        }
    EXPECT_GT(done, 50);
}

/* ---- larger ones, where integers are lifted or go by images ---- */

TEST_F(determinant_methods, integers_of_many_rows) {
    take_ring("");
    for (const int n : {19, 20, 24, 33})
        check(n, small_number, [](test_random &r, quolynode **q) { r.one_in(3) ? small_unit(r, q) : quoly_set(1, q); });
}

/* ---- sparse matrices ---- */

/* Few entries beside the diagonal: what is left after the elimination of the light rows has not filled up for long. */
void thin(test_random &rnd, quolynode **q) { set_small(rnd.one_in(8) ? rnd.below(9) - 4 : 0, q); }

TEST_P(methods_in_fields, thin_matrices) {
    for (const int n : {8, 14, 25}) check(n, thin, small_unit);
}

/* ---- floats: rounding is all that the methods differ by ---- */

struct methods_in_floats : fresh_system {
    test_random rnd;
    static constexpr long double tolerance = 1e-12L; /* of determinants below 10^5, of entries below 10^3 */

    static long double distance(const quolynode *a, const quolynode *b) {
        const long double d = a->numb->flote_val - b->numb->flote_val;
        return d < 0 ? -d : d;
    }
    static void check(const planted_matrix &planted, bool sparse, const std::string &what) {
        quoly_handle found;
        find_determinant(planted, sparse, found);
        EXPECT_LT(distance(found.get(), planted.determinant.get()), tolerance) << what;
    }
};

TEST_F(methods_in_floats, numbers) {
    const make_entry small = [](test_random &r, quolynode **q) { quoly_set_flote(r.below(5) - 2, q); };
    const make_entry power_of_two = [](test_random &r, quolynode **q) { quoly_set_flote(1 << r.below(3), q); };
    for (int n = 1; n <= 7; n++)
        for (int i = times(5); i > 0; i--) {
            const planted_matrix planted(rnd, n, small, power_of_two);
            for (const forced &method : methods) {
                force(method);
                const std::string what = std::string(method.name) + ", rows: " + std::to_string(n);
                check(planted, false, what);
                check(planted, true, what + ", sparse");
            }
        }
}

/* Exactly: the last rows are 0 after the elimination. */
TEST_F(methods_in_floats, singular_matrices) {
    run("[z] := [[1, 2, 4][2, 4, 8][1, 1, 1]]");
    for (const forced &method : methods) {
        force(method);
        EXPECT_EQ(value_of("Det[z]"), "0") << method.name;
        EXPECT_NE(run("[q] := 1/[z]").find(message_text(44)), std::string::npos) << method.name;
    }
}

} // namespace

} // namespace tolvek
