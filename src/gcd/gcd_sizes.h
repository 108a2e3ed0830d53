/* What the choosers of the GCD layer ask of a polynomial: sizes with a stop, degrees, and which levels occur. Levels are
   counted from p's own, which is 1. They steer roads, not values. */
#pragma once

#include "poly/model.h"

namespace tolvek {

/* Nodes at all levels, counting up to the cap. */
constexpr int big_node_cap = 1600, bigg_node_cap = 13001;
int node_total_up_to(const polynode *p, int cap);
inline int big_node_total(const polynode *p) { return node_total_up_to(p, big_node_cap); }
inline int bigger_node_total(const polynode *p) { return node_total_up_to(p, big_node_cap); }
inline int bigg_node_total(const polynode *p) { return node_total_up_to(p, bigg_node_cap); }

/* Nodes up to 3200, and the volume of the box around p: the product of the greatest exponent + 1 over the levels, or
   box_overflow. */
constexpr int expon_node_cap = 3200;
constexpr int64_t box_overflow = 0x7fffffed;
int expon_node_total(const polynode *p, int64_t *box);

int64_t sum_degrees(const polynode *p, int64_t cap); /* of the greatest exponents of the levels; stops above cap */

int deepest_level(const polynode *p); /* that occurs; 1 for a constant too */
inline bool depth_only_2(const polynode *p) { return deepest_level(p) <= 2; }

inline bool is_single_term(const polynode *p) { return !p->next; }
int32_t low_exponent(const polynode *p); /* of the last term */
/* The pad levels at the head: terms of exponent 0 that are no numbers. */
int pad_levels(const polynode *p);
/* A coefficient that is a lone number. */
inline bool has_number_coefficient(const polynode *t) { return t->is_number || is_constant(t->poly); }
bool any_number_coefficient(const polynode *p);

/* u = v up to a unit of the ring: the sign, or a number factor in a field; modulo a composite number the sign. */
bool essentially_equal(const polynode *u, const polynode *v);

} // namespace tolvek
