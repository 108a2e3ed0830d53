/* Fraction-free elimination of integers (E. Bareiss, 1968): what remains after k steps are minors of k + 1 rows, so that
   the division by the pivot before leaves no remainder. */
#include "matrix/integer_determinant.h"

#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_mult.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

/* A square of numbers of its own. */
class number_square {
  public:
    explicit number_square(const integer_matrix &m) : n(m.n), cells(static_cast<std::size_t>(n) * size_of_row()) {
        for (number &x : cells) x = number{};
        for (int i = 0; i < n; i++)
            for (int j = 0; j < n; j++) spec_num_assign(m.entry(i, j), &at(i, j));
    }
    ~number_square() {
        for (number &x : cells) special_free(&x);
    }
    number_square(const number_square &) = delete;
    number_square &operator=(const number_square &) = delete;
    number &at(int i, int j) {
        return cells[static_cast<std::size_t>(i) * size_of_row() + static_cast<std::size_t>(j)];
    }
    bool is_zero(int i, int j) { return at(i, j).num_head->digit == 0; }
    void swap_rows(int i, int k) {
        for (int j = 0; j < n; j++) {
            const number x = at(i, j);
            at(i, j) = at(k, j);
            at(k, j) = x;
        }
    }

    const int n;

  private:
    std::size_t size_of_row() const { return static_cast<std::size_t>(n); }
    buffer<number> cells;
};

/* The row of the shortest entry other than 0 in column k from row k on; -1: there is none. */
int shortest_pivot(number_square &m, int k) {
    int best = -1;
    for (int i = k; i < m.n; i++)
        if (!m.is_zero(i, k) && (best < 0 || m.at(i, k).num_len < m.at(best, k).num_len)) best = i;
    return best;
}

/* x := (x pivot - left above) / previous */
void eliminate_entry(number *x, const number &pivot, const number &left, const number &above, const number &previous) {
    number_handle product, rest;
    fast_mult(&left, &above, &product);
    fast_mult(x, &pivot, x);
    fastdiff(x, &product);
    divide(x, &previous, x, &rest);
    safe_point();
}

} // namespace

void determinant_without_fractions(const integer_matrix &matrix, number *x) {
    number_square m(matrix);
    number_handle previous;
    special_set(1, &previous);
    bool negative = false;
    for (int k = 0; k < m.n; k++) {
        const int pivot = shortest_pivot(m, k);
        if (pivot < 0) return special_set(0, x);
        if (pivot != k) {
            m.swap_rows(pivot, k);
            negative = !negative;
        }
        for (int i = k + 1; i < m.n; i++)
            for (int j = k + 1; j < m.n; j++)
                eliminate_entry(&m.at(i, j), m.at(k, k), m.at(i, k), m.at(k, j), previous);
        spec_num_assign(&m.at(k, k), &previous);
    }
    spec_num_assign(&previous, x);
    if (!negative) return;
    for (numnode *d = x->num_head; d; d = d->next) d->digit = -d->digit;
}

} // namespace tolvek
