/* Stretches of arithmetic modulo a prime inside exact computations, and the images of the operands: the values themselves
   in residues, put back bit by bit at the end of the stretch, whichever way it ends. Their links and fields are changed in
   place (poly/ring_image.h).

     image_stretch work(p);
     if (!work.image(&a) || !work.image(&b)) continue;    the next prime: this one divides a denominator
     poly_mult(a->num, b->num, residues.slot());
     work.change_prime(next);                             a and b are whole again
     ...

   A command level that opens inside a stretch, behind an interrupt or an error, finds the user's ring and whole values; the
   images are there again, at the same addresses, when the computation goes on. */
#pragma once

#include "poly/ring_image.h"
#include "quoly/quoly.h"
#include "top/guards.h"

namespace tolvek {

/* The value at *q, of the chain form, in image form: in the normal form of the modular ring. False where its denominator
   vanishes: nothing is written, and undoing is the caller's matter. Error 85 where a leading number of a denominator has no
   inverse, modulo a composite number. */
bool quoly_change_to_mod(quolynode **q);

class image_stretch {
  public:
    /* The ring modulo n, out of the chain form; there is one stretch at a time. The cache of GCDs is out of reach. */
    explicit image_stretch(int32_t n);
    ~image_stretch();
    image_stretch(const image_stretch &) = delete;
    image_stretch &operator=(const image_stretch &) = delete;

    /* The operand in image form until the stretch, or its prime, ends. False: see quoly_change_to_mod; of a polynomial, it
       vanished, and *p is null for the time. An operand has at most one image. */
    bool image(polynode **p);
    bool image(quolynode **q);

    void restore();               /* the operands are whole; the ring stays */
    void change_prime(int32_t n); /* the same, and the ring is the one modulo n */

  private:
    friend class images_set_aside;
    struct operand {
        polynode **poly; /* or null, and a quoly */
        quolynode *quoly;
    };
    void refresh();

    ring_guard found;
    kept_value<int> gcd_stashing;
    buffer<operand> operands;
};

/* Whole operands for the life of the guard: what is open are levels of commands. */
class images_set_aside {
  public:
    images_set_aside();
    ~images_set_aside();
    images_set_aside(const images_set_aside &) = delete;
    images_set_aside &operator=(const images_set_aside &) = delete;

  private:
    image_stretch *stretch;
    fixnode *parked = nullptr;
};

} // namespace tolvek
