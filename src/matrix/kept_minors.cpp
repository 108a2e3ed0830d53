/* Expansion by minors, each computed once. The rows are put in some order; a minor is that of the first k rows and of a set
   of k columns, and is expanded along its last row. A set of columns is a word with a bit for each. Sets that leave no
   product other than 0 are found before anything is multiplied, and those that are left are counted: in a matrix that is
   banded, or otherwise sparse, they are few if rows with columns in common follow each other.

   W. Gentleman and S. Johnson, 1974, compare the method with elimination, for polynomials: the product of an entry and a
   minor costs less than that of two minors. */
#include "matrix/minor_table.h"
#include "top/interrupts.h"

namespace tolvek {

std::size_t most_kept_minors = std::size_t{1} << 18;

namespace {

using column_set = uint64_t;
static_assert(most_minor_rows < 64, "sets of columns are words");

constexpr column_set one(int column) { return column_set{1} << column; }

/* ---- what is known of sets of columns ---- */

/* The sets that have been met, each with a place of its own, from 0 on. */
class set_table {
  public:
    set_table() : slots(16) { clear_slots(); }
    std::size_t count() const { return sets.size(); }
    column_set operator[](std::size_t place) const { return sets[place]; }
    /* The place of the set, which may be new: then it is the count before. */
    std::size_t place(column_set s) {
        if (2 * (sets.size() + 1) > slots.size()) grow();
        std::size_t &slot = find(s);
        if (slot == none) {
            slot = sets.size();
            sets.push(s);
        }
        return slot;
    }

  private:
    static constexpr std::size_t none = ~std::size_t{0};
    std::size_t &find(column_set s) {
        std::size_t i = (s * 0x9e3779b97f4a7c15u >> 20) & (slots.size() - 1);
        while (slots[i] != none && sets[slots[i]] != s) i = (i + 1) & (slots.size() - 1);
        return slots[i];
    }
    void grow() {
        slots.resize(4 * slots.size());
        clear_slots();
        for (std::size_t i = 0; i < sets.size(); i++) find(sets[i]) = i;
    }
    void clear_slots() {
        for (std::size_t &slot : slots) slot = none;
    }
    buffer<std::size_t> slots; /* places, by a hash of the set; a power of two */
    buffer<column_set> sets;
};

/* ---- the expansion ---- */

class kept_minors {
  public:
    /* With by_columns, of the transpose. */
    kept_minors(minor_table &matrix, bool by_columns) : m(matrix), transposed(by_columns), n(matrix.n) {
        find_entries();
        choose_order();
        touched[0] = 0;
        for (int k = 0; k < n; k++) touched[k + 1] = touched[k] | row[order[k]];
        regular = explore(one(n) - 1, n);
    }
    ~kept_minors() {
        for (quolynode *&q : minors) free_quoly(&q);
    }
    kept_minors(const kept_minors &) = delete;
    kept_minors &operator=(const kept_minors &) = delete;

    bool too_many() const { return table.count() > most_kept_minors; }
    int64_t products() const { return steps; }
    void determinant(quolynode **result);

  private:
    const quolynode *entry(int i, int j) { return transposed ? m.at(j, i) : m.at(i, j); }
    void find_entries();
    void choose_order();
    bool order_is_odd() const;
    bool explore(column_set s, int k);
    void compute(std::size_t place, int k);
    void compute_all();
    const quolynode *minor_of(column_set s, int k);
    void add_term(quoly_handle &sum, column_set s, int k, int column);

    minor_table &m;
    bool transposed, regular;
    int n;
    column_set row[most_minor_rows];         /* where a row has entries other than 0 */
    column_set touched[most_minor_rows + 1]; /* where the first k rows have them */
    int order[most_minor_rows];
    int64_t steps = 0;
    set_table table;
    buffer<bool> can_differ; /* of each set: may its minor differ from 0? */
    buffer<quolynode *> minors;
};

void kept_minors::find_entries() {
    for (int i = 0; i < n; i++) {
        row[i] = 0;
        for (int j = 0; j < n; j++)
            if (!quoly_is_zero(entry(i, j))) row[i] |= one(j);
    }
}

/* The next row is one that leaves the fewest columns open, those with entries both above and below; of such rows one with
   the fewest entries. */
void kept_minors::choose_order() {
    column_set left = one(n) - 1, above = 0;
    for (int step = 0; step < n; step++) {
        int best = -1, least = 0;
        for (int i = 0; i < n; i++) {
            if (!(left & one(i))) continue;
            column_set below = 0;
            for (int j = 0; j < n; j++)
                if (j != i && left & one(j)) below |= row[j];
            const int open = __builtin_popcountll((above | row[i]) & below);
            const int cost = 64 * open + __builtin_popcountll(row[i]);
            if (best >= 0 && cost >= least) continue;
            best = i;
            least = cost;
        }
        order[step] = best;
        left &= ~one(best);
        above |= row[best];
    }
}

bool kept_minors::order_is_odd() const {
    bool odd = false;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < i; j++) odd ^= order[j] > order[i];
    return odd;
}

/* Can the minor of the first k rows and the columns of s differ from 0? Finds the sets that it needs. */
bool kept_minors::explore(column_set s, int k) {
    if (k == 0) return true;
    if ((s & touched[k]) != s || too_many()) return false;
    const std::size_t known = table.count(), place = table.place(s);
    if (place < known) return can_differ[place];
    can_differ.push(false);
    bool found = false;
    for (column_set rest = s & row[order[k - 1]]; rest; rest &= rest - 1) {
        if (!explore(s & ~(rest & -rest), k - 1)) continue;
        found = true;
        steps++;
    }
    can_differ[place] = found;
    if (known % 256 == 0) safe_point();
    return found;
}

/* The minor of the first k rows, which has been computed unless it is known to be 0. */
const quolynode *kept_minors::minor_of(column_set s, int k) {
    if ((s & touched[k]) != s) return quol_num_0;
    const quolynode *minor = minors[table.place(s)];
    return minor ? minor : quol_num_0;
}

/* sum := sum + (-1)^(columns of s behind the column) * entry * the minor without the row and the column. */
void kept_minors::add_term(quoly_handle &sum, column_set s, int k, int column) {
    const quolynode *factor = entry(order[k - 1], column), *minor = quol_num_1;
    if (k > 1) minor = minor_of(s & ~one(column), k - 1);
    if (quoly_is_zero(minor)) return;
    quoly_handle term;
    quoly_mult(minor, factor, term.slot());
    if (__builtin_popcountll(s >> column) % 2 == 0)
        best_quoly_sub(sum.slot(), term.release());
    else
        best_quoly_add(sum.slot(), term.release());
}

void kept_minors::compute(std::size_t place, int k) {
    const column_set s = table[place];
    quoly_handle sum;
    quoly_set(0, sum.slot());
    for (column_set rest = s & row[order[k - 1]]; rest; rest &= rest - 1) {
        safe_point();
        add_term(sum, s, k, __builtin_ctzll(rest));
    }
    minors[place] = sum.release();
}

/* The minors of k rows, for k = 1, 2, ..., n. Those of fewer rows than k - 1 are no longer needed. */
void kept_minors::compute_all() {
    buffer<std::size_t> level, below;
    minors.resize(table.count());
    for (quolynode *&q : minors) q = nullptr;
    for (int k = 1; k <= n; k++) {
        level.clear();
        for (std::size_t i = 0; i < table.count(); i++)
            if (can_differ[i] && __builtin_popcountll(table[i]) == k) level.push(i);
        for (const std::size_t place : level) compute(place, k);
        for (const std::size_t place : below) free_quoly(&minors[place]);
        const buffer<std::size_t> done(static_cast<buffer<std::size_t> &&>(below));
        below = static_cast<buffer<std::size_t> &&>(level);
    }
}

void kept_minors::determinant(quolynode **result) {
    if (!regular) return quoly_set(0, result);
    compute_all();
    quoly_handle value;
    quolynode *&last = minors[table.place(one(n) - 1)];
    *value.slot() = last;
    last = nullptr;
    if (order_is_odd()) quoly_inplace(value.get());
    value.release_to(result);
}

} // namespace

bool determinant_by_kept_minors(minor_table &m, quolynode **result) {
    kept_minors rows(m, false), columns(m, true);
    if (rows.too_many() && columns.too_many()) return false;
    const bool by_rows = columns.too_many() || (!rows.too_many() && rows.products() <= columns.products());
    (by_rows ? rows : columns).determinant(result);
    return true;
}

} // namespace tolvek
