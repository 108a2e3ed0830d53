/* Products and powers that are left at a safe point, and how far apart safe points lie. */
#include "poly/flat_dense.h"
#include "poly/flat_divide.h"
#include "poly/flat_power.h"
#include "poly/flat_product.h"
#include "poly/flat_residues.h"
#include "poly/measures.h"
#include "poly/mult.h"
#include "poly/mult_work.h"
#include "poly/power_work.h"
#include "support/safe_point_gaps.h"
#include "support/safe_points.h"
#include "top/guards.h"

#include <algorithm>
#include <cstdlib>
#include <malloc.h>

namespace tolvek {

namespace {

using mult_interrupt_test = poly_test;

/* n + 1 terms in each of so many variables, with coefficients that differ. */
polynode *dense(int variables, int n) {
    flat_poly terms;
    std::vector<int32_t> key(static_cast<std::size_t>(variables));
    for (int32_t c = 1;; c++) {
        std::vector<int32_t> exponents = key;
        while (!exponents.empty() && exponents.back() == 0) exponents.pop_back();
        terms[exponents] = coef(c % 97 + 1);
        std::size_t i = 0;
        while (i < key.size() && key[i] == n) key[i++] = 0;
        if (i == key.size()) return nested(terms);
        key[i]++;
    }
}

struct product_road {
    const char *name;
    int lists_cut;
    int64_t flat_cut;
    flat_limits limits;
};

} // namespace

TEST_F(mult_interrupt_test, a_product_that_is_left_keeps_its_operands_and_loses_no_record) {
    constexpr uint64_t wide = uint64_t{1} << 30;
    const product_road roads[] = {
        {"schoolbook", INT32_MAX, INT64_MAX, {}},
        {"halves", 4, INT64_MAX, {}},
        {"in cells", INT32_MAX, 0, {wide, wide, wide, 0, 0, wide}},
        {"sorted", INT32_MAX, 0, {0, 0, 0, 4096, 4096, wide}},
        {"by windows", INT32_MAX, 0, {0, 0, 0, 0, 0, 64}},
    };
    for (const std::string name : {"chain", "46337"})
        for (const product_road &r : roads) {
            test_ring ring(name);
            kept_value<int> lists(poly_cutoff, r.lists_cut), lean(fast_mult_cut, r.lists_cut);
            kept_value<int64_t> cut(flat_product_cut, r.flat_cut);
            kept_value<flat_limits> limits(flat_limit, r.limits);
            kept_value<uint64_t> no_transforms(flat_dense_longest, 0);
            const bool flat_road = r.flat_cut == 0;
            poly_handle a(flat_road ? dense(3, 9) : dense(2, 9)), b(flat_road ? dense(3, 8) : dense(2, 8)), p;
            poly_handle kept_a, kept_b;
            poly_assign(a.get(), kept_a.slot());
            poly_assign(b.get(), kept_b.slot());
            leave_everywhere(r.name, p.slot(), [&] { poly_mult(a.get(), b.get(), p.slot(), nullptr); });
            leave_everywhere(r.name, a.slot(), [&] { poly_mult(a.get(), a.get(), a.slot(), nullptr); });
            EXPECT_TRUE(poly_equal(a.get(), kept_a.get()) && poly_equal(b.get(), kept_b.get())) << r.name;
        }
}

TEST_F(mult_interrupt_test, a_product_by_transforms_that_is_left) {
    poly_handle a(dense(1, 3000)), b(dense(1, 2000)), p;
    poly_extent xa, xb;
    measure_poly(a.get(), &xa);
    measure_poly(b.get(), &xb);
    leave_everywhere("transforms", p.slot(), [&] { mult_dense(a.get(), xa, b.get(), xb, p.slot()); });
}

TEST_F(mult_interrupt_test, a_product_of_residues_by_transforms_that_is_left) {
    test_ring ring("2147483629");
    poly_handle a(dense(1, 30000)), b(dense(1, 20000)), p;
    poly_extent xa, xb;
    measure_poly(a.get(), &xa);
    measure_poly(b.get(), &xb);
    leave_everywhere("residues", p.slot(), [&] { mult_residues(a.get(), xa, b.get(), xb, p.slot()); });
}

TEST_F(mult_interrupt_test, an_exact_division_on_packed_exponents_that_is_left) {
    poly_handle a, b(dense(2, 34)), q(dense(2, 31)), p;
    poly_mult(b.get(), q.get(), a.slot(), nullptr);
    leave_everywhere("division", p.slot(), [&] { divide_flat(a.get(), b.get(), p.slot(), false); });
    leave_everywhere("division in place", a.slot(), [&] { divide_flat(a.get(), b.get(), a.slot(), false); });
}

TEST_F(mult_interrupt_test, a_power_that_is_left_keeps_its_value) {
    poly_handle a(poly_of("x + 2*y - z + 1"));
    poly_extent x;
    measure_poly(a.get(), &x);
    leave_everywhere("recurrence", a.slot(), [&] { power_flat(a.slot(), 40, x); });
    leave_everywhere("steps", a.slot(), [&] { power_by_steps(a.slot(), 6, nullptr); });
    leave_everywhere("squares", a.slot(), [&] { power_by_squares(a.slot(), 7, nullptr); });
}

/* ---- stored operands ---- */

TEST_F(mult_interrupt_test, stored_operands_are_whole_to_the_bit_at_200_random_safe_points) {
    int left = 0;
    for (int i = 0; left < 200 && i < 20000; i++) {
        test_ring ring(std::string(i % 2 ? "46337" : "chain"));
        const bool lists = rnd.below(2) == 0;
        kept_value<int> halves(poly_cutoff, rnd.below(2) ? 4 : 20);
        kept_value<int64_t> cut(flat_product_cut, lists ? INT64_MAX : 0);
        kept_value<uint64_t> cells(flat_dense_longest, rnd.below(2) ? 0 : uint64_t{1} << 25);
        const int n = lists ? 9 : 14;
        poly_handle a(dense(2, n)), b(dense(2, n - 1)), p;
        const polynode *x = a.get(), *y = rnd.below(3) ? b.get() : a.get();
        const bool was_left = leave_at_random(rnd, {x, y}, [&] {
            free_poly(p.slot());
            poly_mult(x, y, p.slot(), nullptr);
        });
        if (was_left) left++;
        if (HasFailure()) return;
    }
    EXPECT_EQ(left, 200);
}

/* ---- the distance of safe points ---- */

TEST_F(mult_interrupt_test, safe_points_lie_close_together) {
    poly_handle p;
    auto check = [&](const char *what, const polynode *a, const polynode *b) {
        EXPECT_LT(longest_gap_of([&] { poly_mult(a, b, p.slot(), nullptr); }), most_gap) << what;
        free_poly(p.slot());
    };
    poly_handle four(dense(4, 5)), one(dense(1, 30000)), sparse(dense(1, 500)), other(dense(2, 30));
    check("four variables", four.get(), four.get());
    check("one variable", one.get(), one.get());
    for (polynode *t = sparse.get(); t; t = t->next) t->expo *= 1000003;
    check("sparse", sparse.get(), other.get());
    check("sparse square", sparse.get(), sparse.get());
    for (const std::string name : {"46337", "2147483629"}) {
        test_ring ring(name);
        poly_handle residues(dense(1, 30000)), plane(dense(2, 60));
        check("residues", residues.get(), residues.get());
        check("residues in two variables", plane.get(), plane.get());
    }
    poly_handle base(poly_of("x + y + z + 1"));
    EXPECT_LT(longest_gap_of([&] { compute_power(base.slot(), 60, nullptr); }), most_gap);
    poly_handle long_one(poly_of("123456789*x + 987654321*y + 1"));
    EXPECT_LT(longest_gap_of([&] { compute_power(long_one.slot(), 150, nullptr); }), most_gap);
}

/* ---- memory ---- */

namespace {

std::size_t held, most_held;

/* Bytes of the heap that are held at most while the routine runs, beyond those before it. Records that lie on free lists
   are hidden from it, so that it takes fresh ones. */
std::size_t memory_of(const std::function<void()> &routine) {
    numnode *digits = numhead;
    number *numbers = imhead;
    polynode *nodes = polygarb;
    numhead = nullptr;
    imhead = nullptr;
    polygarb = nullptr;
    const heap_hooks found = heap;
    held = most_held = 0;
    heap.request = [](std::size_t bytes) {
        void *block = std::malloc(bytes);
        held += malloc_usable_size(block);
        most_held = std::max(most_held, held);
        return block;
    };
    heap.release = [](void *block) {
        held -= std::min(held, malloc_usable_size(block));
        std::free(block);
    };
    routine();
    heap = found;
    /* back behind what was made meanwhile */
    while (numnode *d = pop_record<&numnode::next>(digits)) push_digit(d);
    while (number *x = pop_record<&number::num_link>(numbers)) push_imag(x);
    while (polynode *t = pop_record<&polynode::next>(nodes)) push_poly(t);
    return most_held;
}

} // namespace

TEST_F(mult_interrupt_test, a_product_holds_at_most_200_bytes_a_term) {
    const kept_value<int64_t> cut(flat_product_cut, 150);
    flat_poly terms[2];
    for (flat_poly &f : terms)
        while (f.size() < 500)
            f[{rnd.below(999) + 1, rnd.below(999) + 1, rnd.below(999) + 1, rnd.below(999) + 1}] =
                coef(1 + rnd.below(99));
    poly_handle a(nested(terms[0])), b(nested(terms[1])), dense_one(dense(4, 6)), p;
    constexpr std::size_t beginnings = 3 << 20; /* blocks of records are half a mebibyte each, and not all are full */
    for (const polynode *q : {a.get(), dense_one.get()}) {
        const std::size_t bytes = memory_of([&] { poly_mult(q, q == a.get() ? b.get() : q, p.slot(), nullptr); });
        EXPECT_LT(bytes, 200 * static_cast<std::size_t>(poly_numterms(p.get(), 1)) + beginnings);
        EXPECT_GT(bytes, 50 * static_cast<std::size_t>(poly_numterms(p.get(), 1)));
        free_poly(p.slot());
    }
}

} // namespace tolvek
