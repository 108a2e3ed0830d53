#include "quoly/ring_image.h"

#include "numbers/modular.h"
#include "numbers/primes.h"
#include "poly/mult.h"
#include "poly/ring_change.h"
#include "quoly/ring_change.h"
#include "support/famine.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/interrupts.h"

#include <cstring>

namespace tolvek {

namespace {

/* ---- fingerprints: every address, field and digit ---- */

using prints = std::vector<uintptr_t>;

uintptr_t print_of(const void *address) { return reinterpret_cast<uintptr_t>(address); }
uintptr_t print_of(int32_t v) { return static_cast<uintptr_t>(static_cast<uint32_t>(v)); }

void add_prints(const number *x, prints &to) {
    for (uintptr_t v : {print_of(x), print_of(x->num_head), print_of(x->num_tail), print_of(x->num_len)})
        to.push_back(v);
    for (const numnode *d = x->num_head; x->num_len > 0 && d; d = d->next) {
        to.push_back(print_of(d));
        to.push_back(print_of(d->digit));
    }
}

void add_prints(const polynode *p, prints &to) {
    for (; p; p = p->next) {
        for (uintptr_t v : {print_of(p), print_of(p->expo), print_of(p->is_number)}) to.push_back(v);
        if (p->is_number)
            add_prints(p->num, to);
        else
            add_prints(p->poly, to);
    }
    to.push_back(0);
}

void add_prints(const quolynode *q, prints &to) {
    for (uintptr_t v : {print_of(q), print_of(q->is_num), print_of(q->is_rat), print_of(q->array_mark)})
        to.push_back(v);
    if (q->is_num) return add_prints(q->numb, to);
    add_prints(q->num, to);
    to.push_back(print_of(q->den));
    if (q->den) add_prints(q->den, to);
}

template <class Value> prints prints_of(const Value *v) {
    prints all;
    add_prints(v, all);
    return all;
}

/* ---- values ---- */

struct ring_image : poly_test {
    test_random rnd;
};

constexpr int32_t moduli[] = {2, 3, 6, 97, 65521, 65537, 0x10000003, 2147483629, 2147483644};
constexpr int32_t primes[] = {2, 3, 7, 97, 65521, 65537, 0x10000003, 2147483629};

void value_of(const char *num, const char *den, quolynode **q) {
    poly_handle a(poly_of(num)), b(poly_of(den));
    fraction_to_value(a, b, q);
}

void random_value(test_random &rnd, quolynode **q) {
    poly_shape shape = rand_shape(rnd);
    shape.variables = 1 + rnd.below(2);
    shape.terms = 3;
    shape.degree = 3;
    poly_handle num(rand_poly(rnd, shape)), den(rand_nonzero_poly(rnd, shape));
    if (rnd.below(3) == 0) poly_set(1 + rnd.below(100), den.slot());
    if (rnd.below(6) == 0) poly_set(rnd.below(100), num.slot());
    fraction_to_value(num, den, q);
}

long kind_count(fix_kind kind) {
    long n = 0;
    for (const fixnode *f = masterfix; f; f = f->next) n += f->kind == kind;
    return n;
}

long note_count() {
    long n = 0;
    for (const fixnode *f = masterfix; f; f = f->next) n++;
    return n;
}

} // namespace

/* ---- polynomials ---- */

TEST_F(ring_image, an_image_is_the_permanent_change_of_a_copy_and_goes_without_a_trace) {
    const kept_value<int> negative_exponents(laurent, 1);
    for (int32_t n : moduli)
        for (int i = 0; i < 60; i++) {
            poly_handle p(rand_poly(rnd, rand_shape(rnd, true))), copy;
            poly_assign(p.get(), copy.slot());
            const prints whole = prints_of(p.get());
            {
                image_stretch work(n);
                poly_change_num(copy.slot());
                if (work.image(p.slot())) {
                    expect_canonical(p.get());
                    EXPECT_TRUE(poly_equal(p.get(), copy.get())) << n << ": " << text_of(p.get());
                } else {
                    EXPECT_TRUE(poly_iszero(copy.get())) << n;
                }
            }
            EXPECT_EQ(prints_of(p.get()), whole) << n << ": " << text_of(p.get());
            EXPECT_EQ(masterfix, nullptr);
        }
}

TEST_F(ring_image, nothing_is_noted_where_nothing_vanishes) {
    poly_handle p(poly_of("3*x^5*y + 2*x^2 - 4*y + 5"));
    image_stretch work(7);
    const records_in_use whole = count_records_in_use();
    EXPECT_TRUE(work.image(p.slot()));
    EXPECT_EQ(masterfix, nullptr);
    EXPECT_EQ(count_records_in_use(), whole);
    EXPECT_EQ(text_of(p.get()), "3*x^5*y + 2*x^2 + 3*y + 5");
}

TEST_F(ring_image, a_run_of_zeros_costs_one_note) {
    poly_handle p(poly_of("x^9 + 7*x^8 + 14*x^7 + 21*x^6 + 7*x^5 + x^2 + 7*x"));
    image_stretch work(7);
    EXPECT_TRUE(work.image(p.slot()));
    EXPECT_EQ(note_count(), 2);
    EXPECT_EQ(text_of(p.get()), "x^9 + x^2");
}

TEST_F(ring_image, a_constant_takes_the_place_of_its_wrapper) {
    poly_handle p(poly_of("x + 7*y^2*z + 7*y + 5"));
    const prints whole = prints_of(p.get());
    {
        image_stretch work(7);
        EXPECT_TRUE(work.image(p.slot()));
        expect_canonical(p.get());
        EXPECT_EQ(text_of(p.get()), "x + 5");
    }
    EXPECT_EQ(prints_of(p.get()), whole);
}

TEST_F(ring_image, a_polynomial_that_vanishes_is_told) {
    poly_handle p(poly_of("7*x*y + 14"));
    const prints whole = prints_of(p.get());
    {
        image_stretch work(7);
        EXPECT_FALSE(work.image(p.slot()));
        EXPECT_EQ(p.get(), nullptr);
    }
    EXPECT_EQ(prints_of(p.get()), whole);
}

TEST_F(ring_image, many_operands_serve_many_primes) {
    poly_handle p[20];
    std::vector<prints> whole;
    for (poly_handle &h : p) {
        *h.slot() = rand_nonzero_poly(rnd, rand_shape(rnd));
        whole.push_back(prints_of(h.get()));
    }
    image_stretch work(2);
    for (int32_t n : moduli) {
        work.change_prime(n);
        EXPECT_EQ(int32_t{modulus}, n);
        for (int i = 0; i < 20; i++) EXPECT_EQ(prints_of(p[i].get()), whole[static_cast<std::size_t>(i)]);
        for (poly_handle &h : p) work.image(h.slot());
    }
    work.restore();
    for (int i = 0; i < 20; i++) EXPECT_EQ(prints_of(p[i].get()), whole[static_cast<std::size_t>(i)]);
}

/* ---- values ---- */

TEST_F(ring_image, images_of_values_are_their_permanent_changes_and_go_without_a_trace) {
    for (int32_t n : primes)
        for (int i = 0; i < 60; i++) {
            quoly_handle q;
            random_value(rnd, q.slot());
            const prints whole = prints_of(q.get());
            {
                quoly_handle copy;
                quoly_assign(q.get(), copy.slot());
                image_stretch work(n);
                const bool has_image = work.image(q.slot());
                quoly_change_num(copy.slot());
                EXPECT_EQ(q->is_rat, 0);
                if (has_image)
                    EXPECT_EQ(text_of(q.get()), text_of(copy.get())) << n;
                else
                    EXPECT_TRUE(quoly_is_zero(copy.get())) << n;
            }
            EXPECT_EQ(prints_of(q.get()), whole) << n << ": " << text_of(q.get());
        }
}

TEST_F(ring_image, each_kind_of_change_is_undone_field_by_field) {
    struct row {
        const char *num, *den;
        fix_kind kind;
        const char *image;
    } rows[] = {
        {"1", "2", fix_kind::new_number, "4"},
        {"x", "3", fix_kind::computed, "5*x"},
        {"x + 1", "y + 2", fix_kind::computed, "(x + 1)/(y + 2)"},
        {"7*x + 3", "1", fix_kind::shrunk, "3"},
        {"7*x + 14", "1", fix_kind::new_number, "0"},
        {"7*x + 14", "y + 1", fix_kind::new_number, "0"},
        {"x^2 - 1", "x + 8", fix_kind::computed, "x + 6"},
        {"x + 1", "x + 8", fix_kind::new_number, "1"},
        {"x + 1", "7*y + 2", fix_kind::computed, "4*x + 4"},
    };
    for (const row &r : rows) {
        quoly_handle q;
        value_of(r.num, r.den, q.slot());
        const prints whole = prints_of(q.get());
        {
            image_stretch work(7);
            ASSERT_TRUE(work.image(q.slot())) << r.num;
            EXPECT_EQ(text_of(q.get()), r.image);
            EXPECT_EQ(kind_count(r.kind), 1) << r.num;
        }
        EXPECT_EQ(prints_of(q.get()), whole) << r.num << " / " << r.den;
    }
}

TEST_F(ring_image, a_plain_number_keeps_its_digits) {
    quoly_handle q;
    quoly_set_int64(int64_t{1} << 40, q.slot());
    const prints whole = prints_of(q.get());
    {
        image_stretch work(97);
        EXPECT_TRUE(work.image(q.slot()));
        EXPECT_EQ(q->numb->lint_val, static_cast<int32_t>((int64_t{1} << 40) % 97));
        EXPECT_EQ(masterfix, nullptr);
    }
    EXPECT_EQ(prints_of(q.get()), whole);
}

TEST_F(ring_image, a_prime_that_divides_a_denominator_is_told_without_a_word) {
    quoly_handle q;
    value_of("x + 1", "42359*y", q.slot());
    const prints whole = prints_of(q.get());
    image_stretch work(42359);
    EXPECT_FALSE(work.image(q.slot()));
    work.change_prime(42373);
    EXPECT_EQ(prints_of(q.get()), whole);
    EXPECT_TRUE(work.image(q.slot()));
}

TEST_F(ring_image, the_ring_and_the_cache_of_gcds_come_back) {
    const ring_state whole = current_ring();
    {
        image_stretch work(97);
        EXPECT_TRUE(lintmode && modularmode && modulus == 97);
    }
    EXPECT_EQ(current_ring().modulus, whole.modulus);
    EXPECT_EQ(current_ring().lintmode, whole.lintmode);
    EXPECT_EQ(mod_is_prime(), 0);
}

/* Residues computed from operands that interrupts, or a refusal of memory, leave whole. */
TEST_F(ring_image, a_refused_note_leaves_the_operand_whole) {
    poly_handle p(rand_nonzero_poly(rnd, {3, 40, 9, 3, false}));
    poly_handle factor;
    poly_set(7, factor.slot());
    num_poly_mult(p.slot(), factor->num); /* everything vanishes modulo 7 */
    const prints whole = prints_of(p.get());
    fixnode *hoard = nullptr;
    while (fixgarb) {
        fixnode *f = newfix();
        f->next = hoard;
        hoard = f;
    }
    bool refused = false;
    const heap_hooks found = heap;
    heap.request = [](std::size_t) -> void * { throw unwind{unwind::to_top}; };
    try {
        image_stretch work(7);
        work.image(p.slot());
    } catch (const unwind &) {
        refused = true;
    }
    heap = found;
    while (hoard) {
        fixnode *next = hoard->next;
        push_fix(hoard);
        hoard = next;
    }
    EXPECT_TRUE(refused);
    EXPECT_EQ(masterfix, nullptr);
    EXPECT_FALSE(lintmode);
    EXPECT_EQ(prints_of(p.get()), whole);
}

TEST_F(ring_image, floats_stand_beside_the_digits) {
    poly_handle p(poly_of("3*x*y - 5"));
    poly_change_to_flote(p.get());
    const polynode *leading = leading_coef(p.get());
    EXPECT_EQ(leading->num->flote_val, 3.0L);
    EXPECT_EQ(p->next->num->flote_val, -5.0L);
    quoly_handle q;
    value_of("x + 1", "2*y", q.slot());
    quoly_put_flote(q.get());
    EXPECT_EQ(leading_coef(q->den)->num->flote_val, 2.0L);
    number_handle x;
    set_int64(int64_t{1} << 60, &x);
    change_flote(&x);
    EXPECT_EQ(x.flote_val, 1152921504606846976.0L);
    set_int64(-((int64_t{1} << 56) + 1), &x);
    change_flote(&x);
    EXPECT_EQ(x.flote_val, -72057594037927937.0L);
    EXPECT_TRUE(chain_rule_broken(&x) == 0);
}

} // namespace tolvek
