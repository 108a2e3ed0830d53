/* Polynomials for tests: random ones, biased to what goes wrong, ones that are written as text, and a second form of
   every polynomial, a flat table of its terms, whose sums and products are too plain to be wrong. */
#pragma once

#include "poly/canonical.h"
#include "poly/model.h"
#include "support/rand_numbers.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tolvek {

/* ---- rings ---- */

/* A ring of tests by a short name: "chain", "float", "word" (32 bits that wrap), or the modulus in figures. */
struct test_ring {
    explicit test_ring(const std::string &name);
    ring_guard found;
};
extern const std::vector<std::string> test_rings; /* all forms, with moduli 2, 6 (zero divisors), small and large */

/* ---- flat polynomials ---- */

/* A number of the ring in force that copies as a value. */
struct coef {
    number x{};
    coef(int32_t v = 0) { setvalue(v, &x); }
    explicit coef(const number *from) { num_assign(from, &x); }
    coef(const coef &other) { num_assign(&other.x, &x); }
    coef &operator=(const coef &other) {
        num_assign(&other.x, &x);
        return *this;
    }
    ~coef() { special_free(&x); }
    bool is_zero() const { return num_sign(&x) == 0; }
};

/* Exponents of the levels 1, 2, ..., without zeros at the end, and the coefficient; the highest term first. */
struct higher_term {
    bool operator()(const std::vector<int32_t> &a, const std::vector<int32_t> &b) const;
};
using flat_poly = std::map<std::vector<int32_t>, coef, higher_term>;

flat_poly flat(const polynode *p);        /* terms with coefficient 0 are left out */
polynode *nested(const flat_poly &terms); /* canonical */

flat_poly flat_sum(const flat_poly &a, const flat_poly &b, bool minus = false);
flat_poly flat_product(const flat_poly &a, const flat_poly &b);

/* ---- text ---- */

/* The variables of the levels 1 to 8. */
constexpr char test_variables[] = "xyztuvwr";

/* "3*x^2*y - 2*x + 5": sums of products of integers and powers of the variables above; exponents may be negative. */
polynode *poly_of(const std::string &text);
/* The same form, the highest terms first: residues as they are, floats with "%.21Lg". */
std::string text_of(const polynode *p);
std::string text_of(const quolynode *q); /* "num" or "(num)/(den)" */

/* ---- random polynomials ---- */

struct poly_shape {
    int variables = 3;
    int terms = 8;  /* of one list, at most */
    int degree = 9; /* exponents at most */
    int digits = 3; /* of a chain coefficient, at most */
    bool laurent = false;
};

/* A canonical polynomial of the ring in force, built without any sum: dense or sparse, with levels skipped, number
   terms, lone terms, constants; 0 now and then. */
polynode *rand_poly(test_random &rnd, const poly_shape &shape);
/* The same, other than 0. */
polynode *rand_nonzero_poly(test_random &rnd, const poly_shape &shape);
/* Shapes of 1 to 6 variables. */
poly_shape rand_shape(test_random &rnd, bool with_laurent = false);
/* x := a number of the ring, biased to 0, 1, -1 and modulus - 1. Floats are small integers and halves, whose sums are
   exact. */
void rand_ring_number(test_random &rnd, int digits, number *x);

/* ---- the fixture ---- */

/* Eight variables, named as above, in the chain form; afterwards every record must be back. */
struct poly_test : numbers_test {
    void SetUp() override;
    void TearDown() override;

  private:
    records_in_use before{};
};

#define expect_canonical(p) EXPECT_EQ(poly_rule_broken(p, polynames), 0) << text_of(p)

} // namespace tolvek
