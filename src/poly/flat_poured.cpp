/* Measuring and pouring of polynomials, one walk each. */
#include "poly/flat_poured.h"

#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace tolvek {

/* ---- measuring ---- */

/* The magnitude of a chain as a float, from its three highest digits. */
static double chain_size(const number *x) {
    double v = 0;
    const numnode *d = x->num_head;
    int len = x->num_len;
    for (int i = 0; i < 3 && i < len; i++, d = d->next) v = v * digit_radix + d->digit;
    v = std::fabs(v);
    return len > 3 ? std::ldexp(v + 1, std::min(digit_bits * (len - 3), 100000)) : v;
}

constexpr int terms_per_stretch = 65536; /* of a walk, between two safe points */

static void measure_number(const number *x, poly_extent *e) {
    if (++e->terms % terms_per_stretch == 0) safe_point();
    if (flotemode || lintmode) return;
    const uint32_t head = static_cast<uint32_t>(std::abs(x->num_head->digit));
    const int bits = digit_bits * (x->num_len - 1) + (head ? 32 - __builtin_clz(head) : 0);
    e->bits = std::max(e->bits, bits);
    e->norm += chain_size(x);
}

static void measure_list(const polynode *p, int level, poly_extent *e) {
    check_stack();
    if (is_constant(p)) { /* below the top it stands for exponent 0 from this level on */
        e->constants_from = std::min(e->constants_from, level);
        measure_number(p->num, e);
        return;
    }
    for (; e->levels < level; e->levels++) {
        e->range[e->levels + 1] = {INT32_MAX, INT32_MIN};
        e->nodes[e->levels + 1] = 0;
    }
    int64_t nodes = 0;
    int32_t low = p->expo;
    const int32_t high = p->expo;
    for (const polynode *t = p; t; t = t->next) {
        low = t->expo;
        nodes++;
        if (t->is_number) {
            e->constants_from = std::min(e->constants_from, level + 1);
            measure_number(t->num, e);
        } else {
            measure_list(t->poly, level + 1, e);
        }
    }
    exponent_range &r = e->range[level];
    r = {std::min(r.low, low), std::max(r.high, high)};
    e->nodes[level] += nodes;
}

void measure_poly(const polynode *p, poly_extent *x) {
    measure_list(p, 1, x);
    if (flotemode || lintmode) {
        x->bits = flotemode ? 64 : 32;
        x->norm = static_cast<double>(x->terms) * 4294967296.0;
    }
    for (int l = x->constants_from; l <= x->levels; l++)
        x->range[l] = {std::min(x->range[l].low, 0), std::max(x->range[l].high, 0)};
}

bool product_leaves_range(const poly_extent &a, const poly_extent &b) {
    for (int l = std::min(a.levels, b.levels); l > 0; l--) {
        if (int64_t{a.range[l].high} + b.range[l].high > INT32_MAX) return true;
        if (int64_t{a.range[l].low} + b.range[l].low < -INT32_MAX) return true;
    }
    return false;
}

/* An upper bound for the bits of a coefficient of the product: the sum of one operand's magnitudes times the other's
   largest. Chains beyond the range of a float leave the plain bound by the count of terms. */
int product_bits(const poly_extent &a, const poly_extent &b) {
    const int64_t fewer = std::min(a.terms, b.terms);
    int bits = a.bits + b.bits + 64 - __builtin_clzll(static_cast<uint64_t>(fewer));
    const double larger = std::min(std::log2(a.norm) + b.bits, std::log2(b.norm) + a.bits);
    return larger < bits ? static_cast<int>(larger) + 1 : bits;
}

/* ---- the shape of a product ---- */

static void add_live_levels(const poly_extent &a, const poly_extent &b, flat_shape *shape) {
    for (int depth = 1; depth <= std::max(a.levels, b.levels); depth++) {
        const exponent_range ra = a.range_at(depth), rb = b.range_at(depth);
        if (!ra.low && !ra.high && !rb.low && !rb.high) continue;
        flat_level &l = shape->level[shape->count++];
        l.depth = depth;
        l.low_a = ra.low;
        l.low_b = rb.low;
        l.span_a = static_cast<uint32_t>(int64_t{ra.high} - ra.low);
        l.span_b = static_cast<uint32_t>(int64_t{rb.high} - rb.low);
    }
}

static void pack_keys(flat_shape *shape) {
    int used = 0;
    double places = 1;
    shape->keyed = shape->count;
    for (int l = shape->count - 1; l >= 0; l--)
        shape->level[l].places = places *= static_cast<double>(shape->level[l].span() + 1);
    for (int l = shape->count - 1; l >= 0; l--) {
        const uint64_t span = static_cast<uint64_t>(shape->level[l].span());
        const int width = span ? 64 - __builtin_clzll(span) : 0;
        if (used + width > 63) break;
        shape->level[l].shift = used;
        shape->masks[l] = (uint64_t{1} << width) - 1;
        std::fill(shape->level_of_bit + used, shape->level_of_bit + used + width, static_cast<uint8_t>(l));
        used += width;
        shape->keyed = l;
    }
}

void make_flat_shape(const poly_extent &a, const poly_extent &b, uint64_t most_cells, uint64_t lone_cells,
                     flat_shape *shape) {
    add_live_levels(a, b, shape);
    pack_keys(shape);
    shape->zone = shape->count;
    shape->cells = 1;
    for (int l = shape->count - 1; l >= 0; l--) {
        const uint64_t places = static_cast<uint64_t>(shape->level[l].span()) + 1;
        if (shape->cells * places > (l == shape->count - 1 ? lone_cells : most_cells)) break;
        shape->level[l].stride = static_cast<uint32_t>(shape->cells);
        shape->level[l].box = shape->cells *= places;
        shape->zone = l;
    }
    if (shape->zone == shape->count) shape->cells = 0;
}

/* ---- pouring ---- */

namespace {

/* What a walk carries. `key` and `cell` are those of the exponents above the present level. */
struct pourer {
    const flat_shape &shape;
    poured_poly &f;
    bool second;

    void list(const polynode *p, int depth, int l, uint64_t key, uint32_t cell);
    void node(int l, int32_t exponent, uint64_t *key, uint32_t *cell);
    void constant(const number *x, int l, uint64_t key, uint32_t cell);
    void coefficient(const number *x);
};

/* A node of live level l, which is no term. */
void pourer::node(int l, int32_t exponent, uint64_t *key, uint32_t *cell) {
    const flat_level &level = shape.level[l];
    const uint32_t field = static_cast<uint32_t>(int64_t{exponent} - (second ? level.low_b : level.low_a));
    flat_nodes &n = f.level[l];
    n.expo.push(field);
    if (l >= shape.keyed) *key += static_cast<uint64_t>(field) << level.shift;
    if (l >= shape.zone) *cell += field * level.stride;
    if (l + 1 == shape.count) return;
    n.first.push(static_cast<uint32_t>(f.level[l + 1].expo.size()));
    n.term.push(static_cast<uint32_t>(f.cell.size()));
}

/* The signed value of a chain below 2^63. */
int64_t word_of(const number *x) {
    int64_t v = 0;
    for (const numnode *d = x->num_head; d; d = d->next) v = v * digit_radix + d->digit;
    return v;
}

void pourer::coefficient(const number *x) {
    if (lintmode) return f.word.push(x->lint_val);
    if (!f.width) return f.word.push(word_of(x));
    const std::size_t at = f.limbs.size(), n = static_cast<std::size_t>(f.width);
    f.limbs.resize(at + n);
    uint64_t *limbs = &f.limbs[at];
    std::fill(limbs, limbs + n, 0);
    std::size_t bit = static_cast<std::size_t>(digit_bits) * static_cast<std::size_t>(x->num_len);
    for (const numnode *d = x->num_head; d; d = d->next) {
        bit -= digit_bits;
        const uint64_t digit = static_cast<uint64_t>(std::abs(d->digit));
        const int within = static_cast<int>(bit % 64);
        limbs[bit / 64] |= digit << within;
        if (within > 64 - digit_bits && digit >> (64 - within)) limbs[bit / 64 + 1] |= digit >> (64 - within);
    }
    f.negative.push(x->num_head->digit < 0);
}

/* A term whose exponents are 0 from live level l on. */
void pourer::constant(const number *x, int l, uint64_t key, uint32_t cell) {
    for (; l < shape.count; l++) node(l, 0, &key, &cell);
    f.key.push(key);
    f.cell.push(cell);
    coefficient(x);
    if (f.cell.size() % terms_per_stretch == 0) safe_point();
}

/* The list p of level `depth`; l is the first live level at or below it. */
void pourer::list(const polynode *p, int depth, int l, uint64_t key, uint32_t cell) {
    check_stack();
    const bool live = l < shape.count && shape.level[l].depth == depth;
    for (const polynode *t = p; t; t = t->next) {
        uint64_t k = key;
        uint32_t c = cell;
        if (live) node(l, t->expo, &k, &c);
        if (t->is_number)
            constant(t->num, l + live, k, c);
        else if (is_constant(t->poly))
            constant(t->poly->num, l + live, k, c);
        else
            list(t->poly, depth + 1, l + live, k, c);
    }
}

} // namespace

void pour_poly(const polynode *p, const poly_extent &x, const flat_shape &shape, bool second, int width,
               poured_poly *f) {
    assert(!flotemode && x.terms < UINT32_MAX);
    const std::size_t terms = static_cast<std::size_t>(x.terms);
    f->width = width;
    f->key.reserve(terms);
    f->cell.reserve(terms);
    f->level[shape.count - 1].expo.reserve(terms);
    if (width) {
        f->limbs.reserve(terms * static_cast<std::size_t>(width));
        f->negative.reserve(terms);
    } else {
        f->word.reserve(terms);
    }
    pourer{shape, *f, second}.list(p, 1, 0, 0, 0);
    for (int l = 0; l + 1 < shape.count; l++) {
        f->level[l].first.push(static_cast<uint32_t>(f->level[l + 1].expo.size()));
        f->level[l].term.push(static_cast<uint32_t>(f->cell.size()));
    }
    f->root_first[0] = f->root_term[0] = 0;
    f->root_first[1] = static_cast<uint32_t>(f->level[0].expo.size());
    f->root_term[1] = static_cast<uint32_t>(f->cell.size());
}

} // namespace tolvek
