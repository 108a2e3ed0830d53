/* Shared by the two files of plain_divisor.h. */
#pragma once

#include "numbers/handles.h"
#include "numbers/int_gcd.h"
#include "quoly/plain_divisor.h"

namespace tolvek {

using quotient_routine = bool (*)(const polynode *, const polynode *, polynode **);

/* The coefficient of a term as a polynomial of the next level: a look at it. */
class coefficient {
  public:
    explicit coefficient(const polynode *t) : seen(t->is_number ? &lone : t->poly) {
        if (t->is_number) lone = {0, 1, nullptr, {t->num}};
    }
    coefficient(const coefficient &) = delete;
    coefficient &operator=(const coefficient &) = delete;
    const polynode *get() const { return seen; }

  private:
    const polynode *seen;
    polynode lone{};
};

/* Do u and v, both with the main variable, have no common factor with it? A yes is proved by images with residues for the
   other variables, which keep the degrees; a no says nothing. False over floats. */
bool images_are_coprime(const polynode *u, const polynode *v);

/* p without its leading term, whatever that is. */
void drop_head(poly_handle &p);

} // namespace tolvek
