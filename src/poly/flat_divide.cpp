/* Exact division with the exponents of a term packed into words (M. Monagan and R. Pearce, Polynomial division using
   dynamic arrays, heaps, and packed exponent vectors, 2007), and with dense slices.

   The degrees and the lowest exponents of a quotient are known beforehand, in each variable: those of a less those of b.
   So every exponent that occurs has its field, or its digit, and a term of the quotient that leaves the ranges tells that
   b does not divide a. The variables further down are the zone, whose exponents make up the number of a cell by mixed
   radix; the exponents above it are packed into a key. A slice is all terms of one key.

   Slices are worked off from the highest key down. A slice of the rest is gathered in an array of cells: the terms of a
   that have its key, less the products of the slices of the quotient and of b whose keys have it as their sum. A heap
   tells which ones (S. Johnson, Sparse polynomial arithmetic, 1974); it holds one pair for each slice of the quotient.
   Then the cells are walked from the highest down: each one that is not 0 must be divisible by the leading term of b, and
   gives a term of the quotient, whose products with the first slice of b are taken off at once. With no variable in the
   zone a slice is one term, which is right for sparse operands. */
#include "poly/flat_divide.h"

#include "poly/flat_division_cells.h"
#include "poly/flat_product.h"
#include "poly/measures.h"
#include "poly/mult_work.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

flat_division_limits flat_division_limit = {.least_terms = 60, .most_cells = 16384, .cells_a_term = 64};

namespace {

constexpr uint64_t work_between_safe_points = 1 << 18; /* products or cells */

/* ---- how exponents are arranged ---- */

struct division_shape {
    flat_shape all;               /* of a = q * b: `a` there is q, and `b` is b */
    flat_shape of_quotient;       /* for its way out */
    int level_of[most_variables]; /* the level of `all` of one of of_quotient */
    int zone;                     /* the first live level of the cells */
    uint32_t cells;               /* of a slice */
    uint32_t stride[most_variables];
};

/* The extent of a / b; false where there is none. */
bool quotient_extent(const poly_extent &a, const poly_extent &b, bool power_units, poly_extent *q) {
    q->levels = std::max(a.levels, b.levels);
    for (int l = 1; l <= q->levels; l++) {
        const exponent_range ra = a.range_at(l), rb = b.range_at(l);
        const int64_t low = int64_t{ra.low} - rb.low, high = int64_t{ra.high} - rb.high;
        if (low > high || (low < 0 && !power_units) || low < -INT32_MAX || high > INT32_MAX) return false;
        q->range[l] = {static_cast<int32_t>(low), static_cast<int32_t>(high)};
    }
    return true;
}

/* The zone is as large as its cells are few enough: for the processor, and beside the terms of a. */
void choose_zone(const poly_extent &a, division_shape *s) {
    const flat_shape &all = s->all;
    uint64_t cells = 1;
    s->zone = all.count;
    for (int l = all.count - 1; l >= 0; l--) {
        const uint64_t places = static_cast<uint64_t>(all.level[l].span()) + 1;
        const int64_t slices = l > 0 ? a.nodes_at(all.level[l - 1].depth) : 1; /* about */
        if (cells * places > flat_division_limit.most_cells) break;
        if (static_cast<double>(slices) * static_cast<double>(cells * places) >
            static_cast<double>(flat_division_limit.cells_a_term) * static_cast<double>(a.terms))
            break;
        s->stride[l] = static_cast<uint32_t>(cells);
        cells *= places;
        s->zone = l;
    }
    s->cells = static_cast<uint32_t>(cells);
}

/* False where keys do not fit, or where the quotient is a number. */
bool make_shape(const poly_extent &a, const poly_extent &b, const poly_extent &q, division_shape *s) {
    make_flat_shape(q, b, 0, 0, &s->all);
    make_flat_shape(q, poly_extent(), 0, 0, &s->of_quotient);
    if (s->all.keyed > 0 || s->of_quotient.count == 0) return false;
    for (int l = 0, k = 0; l < s->of_quotient.count; l++) {
        while (s->all.level[k].depth != s->of_quotient.level[l].depth) k++;
        s->level_of[l] = k;
    }
    choose_zone(a, s);
    return true;
}

/* ---- reading terms ---- */

/* The terms of a polynomial in descending order. */
class term_reader {
  public:
    term_reader(const polynode *p, const division_shape &the_shape, bool divisor) : s(the_shape) {
        rest[s.all.count] = {};
        for (int l = s.all.count - 1; l >= 0; l--) {
            low[l] = int64_t{s.all.level[l].low_b} + (divisor ? 0 : s.all.level[l].low_a);
            rest[l] = rest[l + 1];
            move(l, 0, &rest[l]);
        }
        open[0] = {p, 0, {}};
    }

    /* False at the end. */
    bool next() {
        while (top >= 0) {
            frame &f = open[top];
            const polynode *t = f.term;
            if (!t) {
                top--;
                continue;
            }
            f.term = t->next;
            place at = f.at;
            int l = f.level;
            if (l < s.all.count && s.all.level[l].depth == top + 1) move(l++, t->expo, &at);
            x = t->is_number ? t->num : is_constant(t->poly) ? t->poly->num : nullptr;
            if (x) {
                key = at.key + rest[l].key;
                cell = at.cell + rest[l].cell;
                return true;
            }
            open[++top] = {t->poly, l, at};
        }
        return false;
    }
    uint64_t key;
    uint32_t cell;
    const number *x;

  private:
    struct place {
        uint64_t key;
        uint32_t cell;
    };
    struct frame {
        const polynode *term; /* the next one */
        int level;            /* the first live level from here on */
        place at;             /* of the exponents above */
    };
    void move(int l, int32_t exponent, place *at) const {
        const uint64_t field = static_cast<uint64_t>(exponent - low[l]);
        if (l < s.zone)
            at->key += field << s.all.level[l].shift;
        else
            at->cell += static_cast<uint32_t>(field) * s.stride[l];
    }

    const division_shape &s;
    int64_t low[most_variables];
    place rest[most_variables + 1]; /* of exponents 0 from a live level on */
    frame open[most_variables + 1];
    int top = 0;
};

/* ---- the division ---- */

/* A polynomial by slices. `first` has one element more than there are slices. */
struct sliced_poly {
    buffer<uint64_t> key;
    buffer<uint32_t> first, cell;
    buffer<int64_t> word;

    uint32_t slices() const { return static_cast<uint32_t>(key.size()); }
    uint32_t terms() const { return static_cast<uint32_t>(cell.size()); }
};

/* A slice of the quotient and one of b. */
struct slice_pair {
    uint64_t key; /* of the product */
    uint32_t q, b;
};
inline bool lower_key(const slice_pair &x, const slice_pair &y) { return x.key < y.key; }

template <class ring> class flat_divider {
  public:
    flat_divider(const polynode *a, const polynode *b, const division_shape &the_shape, ring &the_cells)
        : s(the_shape), cells(the_cells), dividend(a, s, false) {
        term_reader of_b(b, s, true);
        while (of_b.next()) {
            count_work(1);
            if (divisor.key.empty() || divisor.key.back() != of_b.key) {
                divisor.key.push(of_b.key);
                divisor.first.push(divisor.terms());
            }
            divisor.cell.push(of_b.cell);
            divisor.word.push(cells.load(of_b.x));
        }
        divisor.first.push(divisor.terms());
        quotient.first.push(0);
    }

    division_step run();
    void pour(polynode **q);

  private:
    division_step slice(uint64_t key);
    void gather(uint64_t key);
    void take_product(const slice_pair &pair);
    bool quotient_term(uint64_t key, uint32_t cell, uint64_t *q_key, uint32_t *q_cell) const;
    void count_work(uint64_t steps) {
        work += steps;
        if (work < work_between_safe_points) return;
        work = 0;
        safe_point();
    }
    /* The products of a part of the quotient with one of b fill cells between these. */
    void touch(uint32_t lowest, uint32_t highest) {
        low = std::min(low, lowest);
        high = std::max(high, highest);
    }

    const division_shape &s;
    ring &cells;
    term_reader dividend;
    bool more = false; /* of the dividend's terms: one is waiting */
    sliced_poly divisor, quotient;
    buffer<slice_pair> pairs; /* a heap */
    uint32_t low = 0, high = 0;
    uint64_t work = 0;
};

/* The longer slice is the inner one. */
template <class ring> void flat_divider<ring>::take_product(const slice_pair &pair) {
    const uint32_t q0 = quotient.first[pair.q], q1 = quotient.first[pair.q + 1];
    const uint32_t b0 = divisor.first[pair.b], b1 = divisor.first[pair.b + 1];
    touch(quotient.cell[q1 - 1] + divisor.cell[b1 - 1], quotient.cell[q0] + divisor.cell[b0]);
    const bool inner_b = b1 - b0 >= q1 - q0;
    const sliced_poly &outer = inner_b ? quotient : divisor, &inner = inner_b ? divisor : quotient;
    const uint32_t from = inner_b ? b0 : q0, count = inner_b ? b1 - b0 : q1 - q0;
    for (uint32_t i = inner_b ? q0 : b0; i < (inner_b ? q1 : b1); i++)
        cells.subtract(outer.cell[i], outer.word[i], &inner.word[from], &inner.cell[from], count);
    count_work(uint64_t{q1 - q0} * (b1 - b0) * cells.cost());
}

/* The cells of the slice, but for products with the first slice of b. */
template <class ring> void flat_divider<ring>::gather(uint64_t key) {
    low = UINT32_MAX;
    high = 0;
    for (; more && dividend.key == key; more = dividend.next()) {
        cells.add(dividend.cell, dividend.x);
        touch(dividend.cell, dividend.cell);
        count_work(1);
    }
    while (!pairs.empty() && pairs[0].key == key) {
        const slice_pair pair = pairs[0];
        std::pop_heap(pairs.begin(), pairs.end(), lower_key);
        if (pair.b + 1 < divisor.slices()) {
            pairs.back() = {quotient.key[pair.q] + divisor.key[pair.b + 1], pair.q, pair.b + 1};
            std::push_heap(pairs.begin(), pairs.end(), lower_key);
        } else {
            pairs.pop();
        }
        take_product(pair);
    }
}

/* The exponents of the term by those of b's leading term; false where they leave the ranges. */
template <class ring>
bool flat_divider<ring>::quotient_term(uint64_t key, uint32_t cell, uint64_t *q_key, uint32_t *q_cell) const {
    uint32_t rest = cell, rest_of_b = divisor.cell[0];
    for (int l = 0; l < s.all.count; l++) {
        const flat_level &level = s.all.level[l];
        int64_t of_a, of_b;
        if (l < s.zone) {
            of_a = static_cast<int64_t>(s.all.field(l, key));
            of_b = static_cast<int64_t>(s.all.field(l, divisor.key[0]));
        } else {
            of_a = rest / s.stride[l];
            of_b = rest_of_b / s.stride[l];
            rest %= s.stride[l];
            rest_of_b %= s.stride[l];
        }
        if (of_a < of_b || of_a - of_b > int64_t{level.span_a}) return false;
    }
    *q_key = key - divisor.key[0];
    *q_cell = cell - divisor.cell[0];
    return true;
}

/* Works off the slice; its terms of the quotient, if any, become a slice of that. */
template <class ring> division_step flat_divider<ring>::slice(uint64_t key) {
    gather(key);
    const uint32_t lead_slice = divisor.first[1];
    uint64_t q_key = 0;
    for (uint32_t cell = high; cell + 1 > low;
         cell--) { /* `low` may go down meanwhile; below cell 0 comes UINT32_MAX */
        count_work(1);
        if (cells.is_zero(cell)) continue;
        int64_t q;
        const division_step done = cells.divide(cell, &q);
        cells.clear(cell);
        if (done == division_step::zero) continue;
        if (done != division_step::found) return done;
        uint32_t q_cell;
        if (!quotient_term(key, cell, &q_key, &q_cell)) return division_step::fails;
        quotient.cell.push(q_cell);
        quotient.word.push(q);
        if (lead_slice == 1) continue;
        cells.subtract(q_cell, q, &divisor.word[1], &divisor.cell[1], lead_slice - 1);
        touch(q_cell + divisor.cell[lead_slice - 1], cell);
        count_work(lead_slice * cells.cost());
    }
    if (quotient.terms() == quotient.first.back()) return division_step::found;
    quotient.key.push(q_key);
    quotient.first.push(quotient.terms());
    if (divisor.slices() == 1) return division_step::found;
    pairs.push({q_key + divisor.key[1], quotient.slices() - 1, 1});
    std::push_heap(pairs.begin(), pairs.end(), lower_key);
    return division_step::found;
}

template <class ring> division_step flat_divider<ring>::run() {
    for (more = dividend.next(); more || !pairs.empty();) {
        uint64_t key = more ? dividend.key : 0;
        if (!pairs.empty()) key = std::max(key, pairs[0].key);
        const division_step done = slice(key);
        if (done != division_step::found) return done;
    }
    return division_step::found;
}

template <class ring> void flat_divider<ring>::pour(polynode **q) {
    const flat_shape &to = s.of_quotient;
    poly_emitter out(to);
    key_order terms(to, out, 0);
    for (uint32_t slice = 0; slice < quotient.slices(); slice++)
        for (uint32_t i = quotient.first[slice]; i < quotient.first[slice + 1]; i++) {
            uint64_t key = 0;
            for (int k = 0; k < to.count; k++) {
                const int l = s.level_of[k];
                const uint64_t field =
                    l < s.zone ? s.all.field(l, quotient.key[slice])
                               : quotient.cell[i] / s.stride[l] % (static_cast<uint64_t>(s.all.level[l].span()) + 1);
                key |= field << to.level[k].shift;
            }
            cells.put(quotient.word[i], out.next_number());
            terms.add_term(key);
            count_work(8);
        }
    terms.end();
    out.release_to(q);
}

template <class ring>
division_step divide_in(const polynode *a, const polynode *b, const division_shape &s, ring &&cells, polynode **q) {
    flat_divider<std::remove_reference_t<ring>> d(a, b, s, cells);
    const division_step done = d.run();
    if (done == division_step::found && q) d.pour(q);
    return done;
}

/* The narrowest cells come first. A quotient has about the bits that the dividend has more than the divisor, and rarely
   more than the dividend has. */
division_step divide_integers(const polynode *a, const poly_extent &of_a, const polynode *b, const poly_extent &of_b,
                              const division_shape &s, polynode **q) {
    constexpr int bits_to_spare = 64;
    const number *leading = leading_coef(b)->num;
    division_step done = division_step::too_large;
    if (integer_cells<1>::fits(of_a, of_b))
        done = divide_in(a, b, s, integer_cells<1>(s.cells, of_a, of_b, leading), q);
    if (done == division_step::too_large && integer_cells<2>::fits(of_a, of_b))
        done = divide_in(a, b, s, integer_cells<2>(s.cells, of_a, of_b, leading), q);
    for (const int bits : {std::max(of_a.bits - of_b.bits, 0), of_a.bits})
        if (done == division_step::too_large && narrow_coefficients(of_a, of_b))
            done = divide_in(a, b, s, long_cells(s.cells, of_a, of_b, leading, bits + bits_to_spare), q);
    return done;
}

flat_verdict verdict_of(division_step done) {
    return done == division_step::found   ? flat_verdict::divides
           : done == division_step::fails ? flat_verdict::fails
                                          : flat_verdict::unfit;
}

bool ring_fits() {
    if (flotemode || finf) return false;
    return !lintmode || (modularmode && mod_is_prime());
}

} // namespace

flat_verdict divide_flat(const polynode *a, const polynode *b, polynode **q, bool power_units) {
    if (!ring_fits() || fast_numterms(a) < flat_division_limit.least_terms) return flat_verdict::unfit;
    check_stack();
    poly_extent of_a, of_b, of_q;
    measure_poly(a, &of_a);
    measure_poly(b, &of_b);
    if (!quotient_extent(of_a, of_b, power_units, &of_q)) return flat_verdict::fails;
    division_shape s;
    if (of_a.terms > INT32_MAX || of_b.terms > INT32_MAX || !make_shape(of_a, of_b, of_q, &s))
        return flat_verdict::unfit;
    return verdict_of(modularmode ? divide_in(a, b, s, residue_cells(s.cells, leading_coef(b)->num), q)
                                  : divide_integers(a, of_a, b, of_b, s, q));
}

} // namespace tolvek
