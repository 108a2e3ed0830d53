/* Algorithm C or interpolation: what the sparsity of the operands, their degrees and their terms say. Sparsity is the volume
   of the box of exponents for each node. */
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "poly/measures.h"

#include <algorithm>

namespace tolvek {

namespace {

struct weighed_operand {
    int nodes;
    int64_t sparsity;
    int32_t degree;

    explicit weighed_operand(const gcd_operand *a) : degree(a->degree()) {
        int64_t box;
        nodes = expon_node_total(a->p, &box);
        sparsity = box / std::max(nodes, 1);
    }
};

constexpr int64_t sparse_from = 2300;
constexpr int64_t any = INT64_MIN;

/* Interpolation is better from these figures on, all of a row together. */
struct dense_row {
    int64_t nodes_v, nodes_u, degree_u, degree_v, degrees, sparsity_above;
};
const dense_row dense_rows[] = {
    {901, 2301, any, any, 10, any}, /* large, of some degree */
    {351, 1801, 4, 3, any, any},    /* the degrees that go with such sizes */
    {181, 2001, 5, 4, any, any},     {901, 301, 4, 3, any, any},
    {851, 221, 5, 4, any, any},      {201, 201, 8, 8, any, 400001}, /* very sparse, of high degree */
    {101, 101, 13, 13, any, 800001}, {51, 51, 15, 15, any, 1600001},
};

bool is_in_dense_row(const weighed_operand &u, const weighed_operand &v, int64_t sparsity) {
    for (const dense_row &r : dense_rows)
        if (v.nodes >= r.nodes_v && u.nodes >= r.nodes_u && u.degree >= r.degree_u && v.degree >= r.degree_v &&
            int64_t{u.degree} + v.degree >= r.degrees && sparsity > r.sparsity_above)
            return true;
    return int64_t{u.degree} + v.degree < 6 && sparsity < 6000;
}

/* A leading coefficient that would weigh on every pseudo-division. */
bool has_heavy_lead(const gcd_work *w, const weighed_operand &u, const weighed_operand &v) {
    constexpr int many_nodes = 1001, heavy = 200001;
    if (u.nodes < many_nodes || v.nodes < many_nodes || w->v->p->is_number) return false;
    return simple_poly_mass(w->v->p->poly) >= heavy;
}

/* The first look, at sparsity alone. */
bool looks_sparse(const weighed_operand &u, const weighed_operand &v) {
    constexpr int many_nodes = 1600;
    const bool big_u = u.sparsity > sparse_from, big_v = v.sparsity > sparse_from;
    if (big_u && !big_v) return v.nodes <= many_nodes;
    if (big_v && !big_u && u.nodes < many_nodes) return true;
    return big_u;
}

bool has_high_degrees(const gcd_work *w) {
    constexpr int least_degree = 6, least_variables = 7, degree_a_variable = 8;
    if (w->u->degree() < least_degree || w->v->degree() < least_degree) return false;
    const int variables = std::max(polys_there(w->u->p, w->level), polys_there(w->v->p, w->level));
    if (variables < least_variables) return false;
    const int64_t cap = 10 * variables;
    return sum_degrees(w->u->p, cap) + sum_degrees(w->v->p, cap) > degree_a_variable * variables;
}

bool has_many_terms(const gcd_work *w, int terms_u, int terms_v) {
    constexpr int many = 1001, some = 51;
    return w->v->degree() > 1 && (terms_v >= many || (terms_v >= some && terms_u >= many));
}

bool algorithm_c_is_better(const gcd_work *w) {
    const weighed_operand u(w->u), v(w->v);
    const int64_t sparsity = u.sparsity + v.sparsity;
    if (!looks_sparse(u, v) || alg_c_count >= abandoned_enough || has_high_degrees(w)) return false;
    const int terms_u = qpoly_numterms(w->u->p, w->level), terms_v = qpoly_numterms(w->v->p, w->level);
    if (has_many_terms(w, terms_u, terms_v)) return false;
    const int64_t terms = poly_numterms(w->u->p, w->level) + poly_numterms(w->v->p, w->level);
    if (sparsity < 50000 && terms < 1100) return false;
    if (sparsity < 120000 && terms < 1600 && u.degree >= 3) return false;
    if (sparsity > 59999 && terms_u < 401 && terms_v < 401 && (u.degree < 8 || v.degree < 8)) return true;
    return !is_in_dense_row(u, v, sparsity) && !has_heavy_lead(w, u, v);
}

} // namespace

verdict weigh_methods(gcd_work *w) {
    w->prefer_c = in_prime_field() && algorithm_c_is_better(w);
    return verdict::next;
}

} // namespace tolvek
