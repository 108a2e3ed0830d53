/* The schoolbook product by terms, one exponent of the result after the other.

   The operand with fewer terms goes outside. Each of its terms with the other operand makes a row of products in
   descending order; the rows are merged by a heap (S. Johnson, Sparse polynomial arithmetic, 1974), so that the cost is
   that of the products times the logarithm of the rows. The products that fall on one exponent are summed in the order
   of the rows: for floats, whose sums depend on it, in this very order, otherwise two by two, so that long sums are not
   walked again and again. */
#include "numbers/poured.h"
#include "poly/coefficient_sum.h"
#include "poly/model_work.h"
#include "poly/mult_work.h"
#include "top/interrupts.h"

#include <algorithm>
#include <utility>

namespace tolvek {

namespace {

/* The rows that are not done yet, as a heap. */
struct row_heap {
    flat_array<product_row, 24> rows;
    std::size_t count = 0;

    row_heap(const polynode *outer, const polynode *inner, int n) : rows(static_cast<std::size_t>(n)) {
        for (const polynode *t = outer; t; t = t->next, count++)
            rows[count] = {int64_t{t->expo} + inner->expo, static_cast<uint32_t>(count), t, inner};
    }
    const product_row &top() const { return rows[0]; }
    void advance_top() {
        product_row *end = rows.data + count;
        std::pop_heap(rows.data, end, comes_later);
        product_row &r = end[-1];
        r.inner = r.inner->next;
        if (!r.inner) {
            count--;
            return;
        }
        r.expo = int64_t{r.outer->expo} + r.inner->expo;
        std::push_heap(rows.data, end, comes_later);
    }
};

void school_product(const polynode *a, const polynode *b, int n_a, int n_b, polynode **p, pt *names) {
    if (n_b < n_a) {
        std::swap(a, b);
        std::swap(n_a, n_b);
    }
    row_heap heap(a, b, n_a);
    coefficient_sum sum(mult_lists);
    growing_list product;
    while (heap.count > 0) {
        const int64_t expo = heap.top().expo;
        for (; heap.count > 0 && heap.top().expo == expo; heap.advance_top()) {
            safe_point();
            sum.add(heap.top().outer, heap.top().inner, names_below(names));
        }
        poly_handle c(sum.take());
        if (!c) continue;
        if (expo == 0 && is_constant(c.get())) {
            product.append(c.release());
            continue;
        }
        polynode *t = new_term();
        t->expo = static_cast<int32_t>(expo);
        t->poly = c.release();
        product.append(t);
    }
    replace_poly(list_or_zero(product.release()), p);
}

} // namespace

void simple_standard(const polynode *a, const polynode *b, int n_a, int n_b, polynode **p) {
    school_product(a, b, n_a, n_b, p, nullptr);
}

void mod_standard(const polynode *a, const polynode *b, int n_a, int n_b, polynode **p, pt *names) {
    school_product(a, b, n_a, n_b, p, names);
    fold_if_related(p, names);
}

void fast_mod_standard(const polynode *a, const polynode *b, polynode **p, pt *names) {
    if (is_constant(a))
        scalar_by_poly(a->num, b, p);
    else
        node_by_poly_1(a, b, p, names);
    fold_if_related(p, names);
}

void simplest_standard(const polynode *a, const polynode *b, int n_a, int n_b, polynode **p) {
    school_product(a, b, n_a, n_b, p, nullptr);
}

} // namespace tolvek
