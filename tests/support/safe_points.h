/* Routines that are left at a safe point, as an interrupt leaves them. */
#pragma once

#include "support/rand_poly.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace tolvek {

/* How many safe points the routine passes. */
long safe_points_of(const std::function<void()> &routine);
/* Leaves the routine at its k-th safe point, from 1 on; false when it came to its end before. */
bool leave_at(long k, const std::function<void()> &routine);
/* Runs the routine with an interrupt at its k-th safe point, from 1 on; 0: with none. How many it passes. */
long interrupt_at(long k, const std::function<void()> &routine);

/* Leaves the routine, which gives *p a new value or none, at its safe points, at 40 of them when there are more: no
   record is lost, and *p is as before or null. */
void leave_everywhere(const std::string &what, polynode **p, const std::function<void()> &routine);

/* The records of a polynomial and what stands in them. */
uint64_t fingerprint(const polynode *p);

/* Leaves the routine at a random safe point. At each one that it passes the stored polynomials are whole to the bit, since
   a nested level may show them, and they are afterwards. False when it passes none. */
bool leave_at_random(test_random &rnd, const std::vector<const polynode *> &stored,
                     const std::function<void()> &routine);

} // namespace tolvek
