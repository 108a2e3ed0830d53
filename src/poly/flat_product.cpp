/* The product of two poured polynomials, poured out as it is computed.

   The operands are walked together, level by level: all pairs of nodes whose exponents have the same sum e make up the
   coefficient of x^e, and are a set of pairs to be multiplied at the next level. So terms come in the order of the
   result, and only what one set needs is held at a time. A set is multiplied in one of three ways:
     cells    the remaining levels lie in the dense zone and are well filled: products are added into an array
     sorted   few products: they are written out with their keys and sorted
     by exponent  otherwise: the pairs of its nodes are put in order of the exponent of this level, and each sum is a
              set of the next level. The pairs come from rows, one node of an operand times all of its partner's, and
              are taken in windows from the highest exponents down, so that few are held at a time (each row goes on
              where it stood, as in S. Johnson, Sparse polynomial arithmetic, 1974; the buckets take the place of the
              heap). */
#include "poly/flat_product.h"

#include "poly/flat_rings.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>
#include <cmath>

namespace tolvek {

flat_limits flat_limit = {4096, uint64_t{1} << 20, 32, 2048, 16384, uint64_t{1} << 16};
int flat_widest = 40;

namespace {

constexpr double places_of_sparse = 1000; /* for a product: its set will hardly meet cells further down */

/* In products of words that go into cells, about a nanosecond each; what is sorted or poured out costs more. */
constexpr uint64_t work_between_safe_points = 1 << 18, work_of_a_term = 16;

struct node_pair {
    uint32_t a, b;
};
struct exponent_pair { /* two nodes of a level, and the sum of their exponents */
    uint32_t expo;
    node_pair nodes;
};
struct keyed_product { /* two terms */
    uint64_t key;
    node_pair terms;
};
struct node_row { /* a node of a and the nodes of b that it still meets */
    uint32_t a, next_b, end_b;
};

/* What the sets of one level are put in order with. */
struct level_work {
    buffer<exponent_pair> pairs;
    buffer<node_pair> sorted;
    buffer<uint32_t> counts;
    buffer<node_row> rows;
};

/* Brings products into descending order of keys: by their highest differing bits into as many bins as there are
   products, then by insertion; large bins are sorted first. */
class product_sorter {
  public:
    buffer<keyed_product> products;
    void sort();

  private:
    static void insert(keyed_product *p, std::size_t n) {
        for (std::size_t i = 1; i < n; i++) {
            const keyed_product x = p[i];
            std::size_t k = i;
            for (; k && p[k - 1].key < x.key; k--) p[k] = p[k - 1];
            p[k] = x;
        }
    }
    void distribute(uint64_t low, uint64_t high);
    buffer<keyed_product> spread;
    buffer<uint32_t> bin_end;
};

constexpr std::size_t insertion_sorts = 16;

void product_sorter::sort() {
    const std::size_t n = products.size();
    if (n <= insertion_sorts) return insert(products.data(), n);
    uint64_t low = products[0].key, high = low;
    for (const keyed_product &p : products) {
        low = std::min(low, p.key);
        high = std::max(high, p.key);
    }
    if (low != high) distribute(low, high);
}

void product_sorter::distribute(uint64_t low, uint64_t high) {
    const std::size_t n = products.size();
    int shift = 0;
    while ((high - low) >> shift >= n) shift++;
    const std::size_t bins = static_cast<std::size_t>((high - low) >> shift) + 1;
    bin_end.resize(bins + 1);
    std::fill(bin_end.begin(), bin_end.end(), 0);
    for (const keyed_product &p : products) bin_end[((high - p.key) >> shift) + 1]++;
    for (std::size_t i = 1; i <= bins; i++) bin_end[i] += bin_end[i - 1];
    spread.resize(n);
    for (const keyed_product &p : products) spread[bin_end[(high - p.key) >> shift]++] = p;
    uint32_t from = 0;
    for (std::size_t i = 0; i < bins; i++) { /* bin i now ends where i + 1 began */
        const uint32_t to = bin_end[i];
        if (to - from > insertion_sorts)
            std::sort(&spread[from], &spread[from] + (to - from),
                      [](const keyed_product &x, const keyed_product &y) { return x.key > y.key; });
        else
            insert(&spread[from], to - from);
        from = to;
    }
    std::swap(products, spread);
}

template <class ring> class flat_multiplier {
  public:
    flat_multiplier(const poured_poly &fa, const poured_poly &fb, const flat_shape &s, ring r_)
        : a(fa), b(fb), shape(s), last(s.count - 1), r(static_cast<ring &&>(r_)), out(s), lone_cell(r.words) {}

    void run(polynode **p) {
        const node_pair root{0, 0};
        multiply(0, &root, 1);
        out.release_to(p);
    }

  private:
    struct node_span {
        uint32_t from, to;
        uint32_t count() const { return to - from; }
    };
    node_span children(const poured_poly &f, int l, uint32_t node) const {
        const uint32_t *c = f.children(l, node);
        return {c[0], c[1]};
    }
    node_span terms(const poured_poly &f, int l, uint32_t node) const {
        const uint32_t *t = f.terms_below(l, node);
        return {t[0], t[1]};
    }
    void count_work(uint64_t products) {
        work += products;
        if (work < work_between_safe_points) return;
        work = 0;
        safe_point();
    }

    void multiply(int l, const node_pair *pairs, std::size_t n);
    bool in_cells(int l, const node_pair *pairs, std::size_t n, uint64_t products);
    void pour_cells(int l, uint32_t base, uint32_t low, uint32_t high);
    void sorted(int l, const node_pair *pairs, std::size_t n);
    void pour_sorted(int l);
    void by_exponent(int l, const node_pair *pairs, std::size_t n);
    void by_windows(int l, const node_pair *pairs, std::size_t n, uint64_t node_pairs);
    uint32_t collect_window(int l, uint32_t lowest);
    void multiply_groups(int l);
    void group(int l, uint32_t expo, const node_pair *pairs, std::size_t n);
    void clear_cell() { std::fill(lone_cell.begin(), lone_cell.end(), 0); }

    const poured_poly &a, &b;
    const flat_shape &shape;
    const int last; /* live level */
    ring r;
    poly_emitter out;
    uint64_t work = 0;
    buffer<uint64_t> lone_cell, cells;
    product_sorter sorter;
    level_work at_level[most_variables];
};

/* The set of pairs of nodes of live level l - 1 makes up a list of level l. */
template <class ring> void flat_multiplier<ring>::multiply(int l, const node_pair *pairs, std::size_t n) {
    check_stack();
    uint64_t products = 0;
    for (std::size_t i = 0; i < n; i++)
        products += uint64_t{terms(a, l, pairs[i].a).count()} * terms(b, l, pairs[i].b).count();
    if (l >= shape.zone && in_cells(l, pairs, n, products)) return;
    count_work(products * work_of_a_term * r.cost());
    const bool sparse = shape.level[l].places > static_cast<double>(products) * places_of_sparse;
    if (l >= shape.keyed && products <= (sparse ? flat_limit.sparse_products : flat_limit.sorted_products))
        sorted(l, pairs, n);
    else
        by_exponent(l, pairs, n);
}

/* ---- cells ---- */

/* False, with nothing done, where the cells would hardly be filled. */
template <class ring>
bool flat_multiplier<ring>::in_cells(int l, const node_pair *pairs, std::size_t n, uint64_t products) {
    uint32_t low = UINT32_MAX, high = 0;
    for (std::size_t i = 0; i < n; i++) { /* the first term of a node has the highest cell */
        const node_span ta = terms(a, l, pairs[i].a), tb = terms(b, l, pairs[i].b);
        high = std::max(high, a.cell[ta.from] + b.cell[tb.from]);
        low = std::min(low, a.cell[ta.to - 1] + b.cell[tb.to - 1]);
    }
    if (high - low >= products * flat_limit.cells_a_product) return false;
    if (cells.empty()) {
        cells.resize(shape.cells * r.words);
        std::fill(cells.begin(), cells.end(), 0);
    }
    for (std::size_t i = 0; i < n; i++) {
        node_span x = terms(a, l, pairs[i].a), y = terms(b, l, pairs[i].b);
        const bool swapped = x.count() > y.count();
        if (swapped) std::swap(x, y);
        for (uint32_t k = x.from; k < x.to; k++) {
            r.row(cells.data(), swapped, k, y.from, y.count());
            count_work(y.count() * r.cost());
        }
    }
    const uint64_t box = shape.level[l].box;
    pour_cells(l, static_cast<uint32_t>(high / box * box), low, high);
    return true;
}

/* The list of level l from the cells low .. high, which lie in the box that begins at `base`. Clears them. */
template <class ring> void flat_multiplier<ring>::pour_cells(int l, uint32_t base, uint32_t low, uint32_t high) {
    pour_box(shape, out, l, base, low, high, [this](uint32_t cell) {
        uint64_t *c = &cells[cell * r.words];
        if (r.empty(c)) return false;
        count_work(work_of_a_term);
        const bool there = r.put(c, out);
        std::fill(c, c + r.words, 0);
        return there;
    });
}

/* ---- sorted ---- */

template <class ring> void flat_multiplier<ring>::sorted(int l, const node_pair *pairs, std::size_t n) {
    buffer<keyed_product> &products = sorter.products;
    products.clear();
    bool in_order = n == 1;
    for (std::size_t i = 0; i < n; i++) {
        const node_span ta = terms(a, l, pairs[i].a), tb = terms(b, l, pairs[i].b);
        in_order = in_order && (ta.count() == 1 || tb.count() == 1);
        for (uint32_t x = ta.from; x < ta.to; x++)
            for (uint32_t y = tb.from; y < tb.to; y++) products.push({a.key[x] + b.key[y], {x, y}});
    }
    if (!in_order) sorter.sort();
    pour_sorted(l);
}

/* The list of level l from the sorter's products. */
template <class ring> void flat_multiplier<ring>::pour_sorted(int l) {
    const buffer<keyed_product> &products = sorter.products;
    key_order terms_of(shape, out, l);
    for (std::size_t i = 0; i < products.size();) {
        const uint64_t key = products[i].key;
        clear_cell();
        for (; i < products.size() && products[i].key == key; i++)
            r.add(lone_cell.data(), products[i].terms.a, products[i].terms.b);
        if (r.put(lone_cell.data(), out)) terms_of.add_term(key);
    }
    terms_of.end();
}

/* ---- by exponent ---- */

template <class ring> void flat_multiplier<ring>::by_exponent(int l, const node_pair *pairs, std::size_t n) {
    uint64_t node_pairs = 0;
    for (std::size_t i = 0; i < n; i++)
        node_pairs += uint64_t{children(a, l, pairs[i].a).count()} * children(b, l, pairs[i].b).count();
    if (node_pairs > flat_limit.window_pairs) return by_windows(l, pairs, n, node_pairs);
    buffer<exponent_pair> &found = at_level[l].pairs;
    const uint32_t *ea = a.level[l].expo.data(), *eb = b.level[l].expo.data();
    found.clear();
    for (std::size_t i = 0; i < n; i++) {
        const node_span ca = children(a, l, pairs[i].a), cb = children(b, l, pairs[i].b);
        for (uint32_t x = ca.from; x < ca.to; x++)
            for (uint32_t y = cb.from; y < cb.to; y++) found.push({ea[x] + eb[y], {x, y}});
    }
    multiply_groups(l);
}

/* The pairs with a sum of at least `lowest` that the rows have not met yet. The highest sum that is left, and rows
   that are done are dropped. */
template <class ring> uint32_t flat_multiplier<ring>::collect_window(int l, uint32_t lowest) {
    level_work &w = at_level[l];
    const uint32_t *ea = a.level[l].expo.data(), *eb = b.level[l].expo.data();
    w.pairs.clear();
    uint32_t highest_left = 0;
    std::size_t kept = 0;
    for (node_row row : w.rows) {
        const uint32_t e = ea[row.a];
        for (; row.next_b < row.end_b && e + eb[row.next_b] >= lowest; row.next_b++)
            w.pairs.push({e + eb[row.next_b], {row.a, row.next_b}});
        if (row.next_b == row.end_b) continue;
        highest_left = std::max(highest_left, e + eb[row.next_b]);
        w.rows[kept++] = row;
    }
    w.rows.resize(kept);
    return highest_left;
}

template <class ring>
void flat_multiplier<ring>::by_windows(int l, const node_pair *pairs, std::size_t n, uint64_t node_pairs) {
    level_work &w = at_level[l];
    w.rows.clear();
    uint64_t highest = 0;
    for (std::size_t i = 0; i < n; i++) {
        const node_span ca = children(a, l, pairs[i].a), cb = children(b, l, pairs[i].b);
        for (uint32_t x = ca.from; x < ca.to; x++) w.rows.push({x, cb.from, cb.to});
        highest = std::max<uint64_t>(highest, uint64_t{a.level[l].expo[ca.from]} + b.level[l].expo[cb.from]);
    }
    const uint64_t wanted = std::max<uint64_t>(flat_limit.window_pairs, w.rows.size());
    uint64_t width = std::max<uint64_t>(highest / std::max<uint64_t>(node_pairs / wanted, 1), 1);
    while (!w.rows.empty()) {
        const uint32_t lowest = static_cast<uint32_t>(highest >= width ? highest - width + 1 : 0);
        highest = collect_window(l, lowest);
        const std::size_t met = w.pairs.size();
        multiply_groups(l);
        if (met > 4 * wanted && width > 1) width /= 2;
        if (met < wanted / 4 && width < UINT32_MAX) width *= 2;
    }
}

/* Puts the collected pairs of level l in descending order of their sums and multiplies those of each sum. */
template <class ring> void flat_multiplier<ring>::multiply_groups(int l) {
    level_work &w = at_level[l];
    const std::size_t n = w.pairs.size();
    uint32_t low = UINT32_MAX, high = 0;
    for (const exponent_pair &p : w.pairs) {
        low = std::min(low, p.expo);
        high = std::max(high, p.expo);
    }
    w.sorted.resize(n);
    if (high - low < 4 * n + 64) {
        const std::size_t bins = std::size_t{high - low} + 1;
        w.counts.resize(bins + 1);
        std::fill(w.counts.begin(), w.counts.end(), 0);
        for (const exponent_pair &p : w.pairs) w.counts[high - p.expo + 1]++;
        for (std::size_t i = 1; i <= bins; i++) w.counts[i] += w.counts[i - 1];
        for (const exponent_pair &p : w.pairs) w.sorted[w.counts[high - p.expo]++] = p.nodes;
        uint32_t from = 0;
        for (std::size_t i = 0; i < bins; i++) {
            const uint32_t to = w.counts[i];
            if (to > from) group(l, high - static_cast<uint32_t>(i), &w.sorted[from], to - from);
            from = to;
        }
        return;
    }
    std::sort(w.pairs.begin(), w.pairs.end(),
              [](const exponent_pair &x, const exponent_pair &y) { return x.expo > y.expo; });
    for (std::size_t i = 0; i < n; i++) w.sorted[i] = w.pairs[i].nodes;
    for (std::size_t from = 0, to; from < n; from = to) {
        for (to = from + 1; to < n && w.pairs[to].expo == w.pairs[from].expo; to++) {
        }
        group(l, w.pairs[from].expo, &w.sorted[from], to - from);
    }
}

/* The pairs of nodes of level l whose exponents have the sum `expo`. */
template <class ring> void flat_multiplier<ring>::group(int l, uint32_t expo, const node_pair *pairs, std::size_t n) {
    if (l < last) {
        out.open(l, shape.exponent(l, expo));
        multiply(l + 1, pairs, n);
        return out.finish(l);
    }
    clear_cell();
    for (std::size_t i = 0; i < n; i++) r.add(lone_cell.data(), pairs[i].a, pairs[i].b);
    if (r.put(lone_cell.data(), out)) out.add_term(shape.exponent(l, expo));
}

template <class ring>
void multiply_in(const poured_poly &a, const poured_poly &b, const flat_shape &shape, ring r, polynode **p) {
    flat_multiplier<ring>(a, b, shape, static_cast<ring &&>(r)).run(p);
}

} // namespace

/* ---- the limb ring ---- */

void limb_ring::add(uint64_t *c, const uint64_t *x, int wx, const uint64_t *y, int wy, bool minus) const {
    for (int i = 0; i < wx; i++) {
        if (!x[i]) continue;
        uint64_t *at = c + i, *end = c + words;
        unsigned __int128 carry = 0;
        for (int k = 0; k < wy; k++, at++) {
            carry += static_cast<unsigned __int128>(x[i]) * y[k];
            const uint64_t low = static_cast<uint64_t>(carry), before = *at;
            carry >>= 64;
            *at = minus ? before - low : before + low;
            carry += minus ? before < low : *at < low;
        }
        for (uint64_t rest = static_cast<uint64_t>(carry); rest && at < end; at++) {
            const uint64_t before = *at;
            *at = minus ? before - rest : before + rest;
            rest = minus ? before < rest : *at < rest;
        }
    }
}

bool limb_ring::put(const uint64_t *c, poly_emitter &out) {
    if (empty(c)) return false;
    const bool negative = static_cast<int64_t>(c[words - 1]) < 0;
    bool carry = negative; /* of ~c + 1 */
    for (std::size_t k = 0; k < words; k++) {
        magnitude[k] = negative ? ~c[k] + carry : c[k];
        carry = carry && magnitude[k] == 0;
    }
    put_chain(magnitude.data(), static_cast<int>(words), negative ? -1 : 1, out.next_number());
    return true;
}

/* ---- the entry ---- */

bool fits_flat_product(const poly_extent &a, const poly_extent &b) {
    if (flotemode || finf || a.levels + b.levels == 0) return false;
    return a.terms < INT32_MAX && b.terms < INT32_MAX;
}

bool narrow_coefficients(const poly_extent &a, const poly_extent &b) {
    return lintmode || std::max(limbs_for(a.bits), limbs_for(b.bits)) <= flat_widest;
}

void mult_flat(const polynode *a, const poly_extent &xa, const polynode *b, const poly_extent &xb, polynode **p) {
    flat_shape shape;
    make_flat_shape(xa, xb, flat_limit.zone_cells, flat_limit.lone_cells, &shape);
    const bool words = lintmode || (xa.bits < 64 && xb.bits < 64);
    poured_poly fa, fb;
    pour_poly(a, xa, shape, false, words ? 0 : limbs_for(xa.bits), &fa);
    pour_poly(b, xb, shape, true, words ? 0 : limbs_for(xb.bits), &fb);
    if (modularmode) return multiply_in(fa, fb, shape, residue_ring(fa, fb, static_cast<uint32_t>(modulus)), p);
    if (lintmode) return multiply_in(fa, fb, shape, exact_ring<1>(fa, fb), p);
    const int bits = product_bits(xa, xb) + 1; /* and a sign */
    if (!words) {
        const int wide = std::max(limbs_for(bits), fa.width + fb.width);
        return multiply_in(fa, fb, shape, limb_ring(fa, fb, static_cast<std::size_t>(wide)), p);
    }
    if (bits <= 64) return multiply_in(fa, fb, shape, exact_ring<1>(fa, fb), p);
    if (bits <= 128) return multiply_in(fa, fb, shape, exact_ring<2>(fa, fb), p);
    multiply_in(fa, fb, shape, exact_ring<3>(fa, fb), p);
}

} // namespace tolvek
