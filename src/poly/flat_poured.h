/* Polynomials poured into flat arrays, the form in which large products are computed.

   A poured polynomial is a tree of fixed height. Its levels are the live levels of the product: those at which one of
   the operands has an exponent other than 0; the others hold wrappers alone and come back with the result. The nodes
   of a live level stand in one array, parents and children in the same descending order, with exponents counted from
   the operand's lowest one. The nodes of the last live level are the terms, and a term has its coefficient:

       3x^2*y + 2x + 5       x:  2 . . . 1 . 0          y:  1 0 0          coefficients:  3 2 5
                                 |       |   |
                                 1       0   0 */
#pragma once

#include "poly/model.h"
#include "top/heap.h"

namespace tolvek {

struct exponent_range {
    int32_t low, high;
};

/* What one walk over a polynomial finds. Levels count from 1 at the top. */
struct poly_extent {
    int64_t terms = 0;
    int levels = 0;                           /* the deepest level with a list that is no lone number term */
    int constants_from = most_variables + 1;  /* the highest level that has a number term */
    int bits = 0;                             /* of the largest coefficient; 32 in lintmode */
    double norm = 0;                          /* sum of the magnitudes of coefficients, rounded */
    exponent_range range[most_variables + 1]; /* of the levels 1 .. levels; they include 0 where terms end above */
    int64_t nodes[most_variables + 1];        /* terms of all lists of a level together */

    exponent_range range_at(int level) const { return level <= levels ? range[level] : exponent_range{0, 0}; }
    int64_t nodes_at(int level) const { return level <= levels ? nodes[level] : terms; }
};
/* Floats count as 64 bits. Passes safe points. */
void measure_poly(const polynode *p, poly_extent *x);

/* Does an exponent of the product leave -2^31+1 .. 2^31-1? */
bool product_leaves_range(const poly_extent &a, const poly_extent &b);
/* A bound for the bits of the coefficients of a product of integers. */
int product_bits(const poly_extent &a, const poly_extent &b);
constexpr int limbs_for(int bits) { return (bits + 63) / 64; }

struct flat_level {
    int depth;                                                /* the level in polynames, from 1 */
    int32_t low_a, low_b;                                     /* the lowest exponents of the operands */
    uint32_t span_a, span_b;                                  /* highest less lowest exponent */
    int shift;                                                /* of its field in the keys */
    uint32_t stride;                                          /* of its exponent in the cells of the dense zone */
    uint64_t box;                                             /* cells of this level and those below it in the zone */
    double places;                                            /* the same whether in the zone or not, rounded */
    int64_t span() const { return int64_t{span_a} + span_b; } /* of the product; below 2^32 */
};

/* How the exponents of a product are arranged.
   Keys: fields of a 64-bit word, for the levels from `keyed` on, in the order of levels; the sum of two keys is the key
   of the product. Cells: mixed radix with the product's spans, for the levels from `zone` on, fewer than 2^32 cells. */
struct flat_shape {
    int count = 0;      /* live levels, at least 1 */
    int keyed, zone;    /* indices of live levels; `count` when there is none */
    uint64_t cells = 1; /* in the zone */
    flat_level level[most_variables];
    uint8_t level_of_bit[64]; /* the live level whose field holds a bit of the keys */

    int32_t exponent(int l, uint64_t field) const {
        return static_cast<int32_t>(static_cast<int64_t>(field) + level[l].low_a + level[l].low_b);
    }
    uint64_t field(int l, uint64_t key) const { return key >> level[l].shift & level_mask(l); }
    uint64_t level_mask(int l) const { return masks[l]; }
    uint64_t masks[most_variables];
};

/* The zone is as high as its cells stay within most_cells; of at least one level, if that has at most lone_cells. */
void make_flat_shape(const poly_extent &a, const poly_extent &b, uint64_t most_cells, uint64_t lone_cells,
                     flat_shape *shape);

/* One level of a poured polynomial. `first` and `term` have one element more than there are nodes. */
struct flat_nodes {
    buffer<uint32_t> expo;  /* counted from the lowest exponent */
    buffer<uint32_t> first; /* a node's first child in the next level; not used in the last */
    buffer<uint32_t> term;  /* its first term; not used in the last */
};

struct poured_poly {
    flat_nodes level[most_variables];
    uint32_t root_first[2], root_term[2];
    buffer<uint64_t> key;
    buffer<uint32_t> cell;
    /* Coefficients: words (residues; 32-bit integers; signed words), or else magnitudes of `width` limbs each and
       their signs. */
    buffer<int64_t> word;
    buffer<uint64_t> limbs;
    buffer<int8_t> negative;
    int width = 0;

    std::size_t terms() const { return cell.size(); }
    /* Children and terms of node i of live level l - 1; l = 0: of the root. */
    const uint32_t *children(int l, uint32_t i) const { return l ? &level[l - 1].first[i] : root_first; }
    const uint32_t *terms_below(int l, uint32_t i) const { return l ? &level[l - 1].term[i] : root_term; }
};

/* Pours p, which is operand b when `second` is set. width: limbs of a magnitude, 0 for words. Not for floats. Fewer
   than 2^32 terms. Passes safe points. */
void pour_poly(const polynode *p, const poly_extent &x, const flat_shape &shape, bool second, int width,
               poured_poly *f);

} // namespace tolvek
