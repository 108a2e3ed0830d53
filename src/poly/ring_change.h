/* Numbers and polynomials that follow a permanent change of the ground ring. The ring in force is the new one. Polynomials
   pass safe points, where their numbers may be of both forms: who owns one frees it in the chain form on an unwinding. */
#pragma once

#include "poly/model.h"
#include "top/interrupts.h"

namespace tolvek {

/* The residue of the chain x. In a table field only the last digit counts, reduced as a magnitude, and with `verbose` values
   that do not fit are told, 20 times at most; negative ones too where the flag says so. */
int32_t residue_of(const number *x, bool warn_negative);
/* x becomes its residue. `release`: the chain goes back; otherwise it stays beside the residue. */
void change_num(number *x, bool release, bool warn_negative);

/* A safe point after so many numbers. */
class paced_safe_points {
  public:
    void step() {
        if (--left) return;
        left = numbers_between;
        safe_point();
    }

  private:
    static constexpr int numbers_between = 4096;
    int left = numbers_between;
};

/* The same for every number of a polynomial. What becomes 0 leaves it: *p is canonical again. */
void poly_change_num(polynode **p);

/* *p, computed as machine integers while the ring is paused, in that ring, which is in force again. */
void poly_into_ring(polynode **p);

/* A residue becomes the integer that it stands for, of one digit or two, in the chain form, which is in force; `modulo`
   is the ring that is left. With `symmetric` those above its half are negative. */
void change_from_mod(number *x, int32_t modulo, bool symmetric);
void poly_change_from_mod(polynode *p, int32_t modulo, bool symmetric);

/* The float beside the chain of x, or of every number of p: the digits summed up from the first one, in extended
   precision. The chains stay. */
void change_flote(number *x);
void poly_change_to_flote(polynode *p);

} // namespace tolvek
