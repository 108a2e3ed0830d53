/* Private to the products of matrices: products row by row, in proportion to the products of entries that are made
   (F. Gustavson, 1978). Row i of a b is the sum of the rows of b that row i of a names; it gathers in a line of sums, one for
   each column, and a list of the columns it has met.

   An arithmetic tells the kind of entries:
     value       what is poured from an operand
     sum         what gathers; trivially copyable
     pour(q)     the value of an entry
     first(x, y, s), add(x, y, s)   *s := x y; *s += x y
     give(s, r)  *r := the sum, a value of its own; the sum is spent
     drop(s)     gives an unspent sum back */
#pragma once

#include "matrix/matrix_value.h"
#include "top/interrupts.h"

#include <algorithm>

namespace tolvek {

/* The entries other than 0 of a matrix, row by row; columns count from 0. */
template <class arithmetic> struct poured_matrix {
    using value = typename arithmetic::value;
    buffer<int64_t> start; /* of row i; one more at the end */
    buffer<int32_t> column;
    buffer<value> entry;

    explicit poured_matrix(const matrix_value &m) {
        start.reserve(static_cast<std::size_t>(m.rows) + 1);
        if (m.is_sparse())
            pour_rows(m);
        else
            pour_cells(m);
    }

  private:
    void add(int64_t at, const quolynode *q) {
        column.push(static_cast<int32_t>(at));
        entry.push(arithmetic::pour(q));
    }
    void end_row() { start.push(static_cast<int64_t>(entry.size())); }
    void pour_rows(const matrix_value &m) {
        end_row();
        row_walk walk(m.sparse);
        for (int32_t r = 0; r < m.rows; r++, walk.next()) {
            for (const colm *c = *walk; c; c = c->next) add(c->column - 1, c->value);
            end_row();
        }
    }
    void pour_cells(const matrix_value &m) {
        end_row();
        for (int32_t r = 0; r < m.rows; r++) {
            safe_point();
            for (int64_t i = r; i < m.size; i += m.rows)
                if (!quoly_is_zero(m.cell(i))) add(i / m.rows, m.cell(i));
            end_row();
        }
    }
};

/* The columns that occur in a very wide matrix, numbered anew without gaps. */
class column_names {
  public:
    /* The entries' columns become numbers below width(). */
    void compress(buffer<int32_t> &column, int64_t cols) {
        constexpr int64_t always_direct = int64_t{1} << 22;
        const auto count = static_cast<int64_t>(column.size());
        if (cols <= always_direct || cols <= 4 * count) {
            used = cols;
            return;
        }
        for (int32_t c : column) name.push(c);
        std::sort(name.begin(), name.end());
        name.resize(static_cast<std::size_t>(std::unique(name.begin(), name.end()) - name.begin()));
        for (int32_t &c : column)
            c = static_cast<int32_t>(std::lower_bound(name.begin(), name.end(), c) - name.begin());
        used = static_cast<int64_t>(name.size());
    }
    int64_t width() const { return used; }
    int32_t operator()(int32_t number) const { return name.empty() ? number : name[static_cast<std::size_t>(number)]; }

  private:
    buffer<int32_t> name;
    int64_t used = 0;
};

/* The sums of one row. */
template <class arithmetic> class row_sums {
  public:
    using value = typename arithmetic::value;
    using sum = typename arithmetic::sum;

    explicit row_sums(int64_t width) : at(static_cast<std::size_t>(width)), is_there(static_cast<std::size_t>(width)) {
        if (width) std::memset(is_there.data(), 0, is_there.size());
    }
    ~row_sums() {
        for (int32_t c : met)
            if (is_there[index(c)]) arithmetic::drop(at[index(c)]);
    }
    void add(const value &x, const value &y, int32_t c) {
        if (is_there[index(c)]) {
            arithmetic::add(x, y, &at[index(c)]);
        } else {
            met.push(c);
            arithmetic::first(x, y, &at[index(c)]);
            is_there[index(c)] = 1;
        }
    }
    /* Calls give(column, value) for the columns in ascending order; the row is empty then. */
    template <class Give> void emit(Give give) {
        std::sort(met.begin(), met.end());
        for (int32_t c : met) {
            quoly_handle total;
            is_there[index(c)] = 0;
            arithmetic::give(at[index(c)], total.slot());
            give(c, total);
        }
        met.clear();
    }

  private:
    static std::size_t index(int32_t c) { return static_cast<std::size_t>(c); }
    buffer<sum> at;
    buffer<char> is_there;
    buffer<int32_t> met;
};

/* Calls give(row, column, value) for the entries of a b that are met, row by row; a row ends with end_row(row). */
template <class arithmetic, class Give> void row_products(const matrix_value &a, const matrix_value &b, Give give) {
    poured_matrix<arithmetic> left(a), right(b);
    column_names names;
    names.compress(right.column, b.size / b.rows);
    row_sums<arithmetic> sums(names.width());
    for (int32_t r = 0; r < a.rows; r++) {
        safe_point();
        const auto row = static_cast<std::size_t>(r);
        for (int64_t i = left.start[row]; i < left.start[row + 1]; i++) {
            const auto at = static_cast<std::size_t>(i);
            const auto k = static_cast<std::size_t>(left.column[at]);
            for (int64_t j = right.start[k]; j < right.start[k + 1]; j++) {
                const auto other = static_cast<std::size_t>(j);
                if ((j & 1023) == 0) safe_point();
                sums.add(left.entry[at], right.entry[other], right.column[other]);
            }
        }
        sums.emit([&](int32_t c, quoly_handle &value) { give(r, names(c), value); });
    }
}

} // namespace tolvek
