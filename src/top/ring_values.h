/* How the stored values follow a change of the ground ring.

   Everything that is stored belongs to the ring in force. A value that changes for good becomes its image there: a residue,
   or the integer that a residue stands for. One that changes for the time stands for its original, which waits behind it with
   its ring as a stamp (quolynode, sparse_frame), and comes back bit by bit when that ring does; in a third ring its image is
   computed from the original, over the rationals. A value that is assigned, or an array that is changed, forgets it.

   All images are complete before anything stored changes. */
#pragma once

#include "matrix/sparse.h"
#include "quoly/quoly.h"

namespace tolvek {

class value_change {
  public:
    /* From the ring in force, which stays so. Lifts are the integers of least magnitude while `symmetric`. */
    value_change(const ring_state &next_ring, bool symmetric);
    ~value_change();
    value_change(const value_change &) = delete;
    value_change &operator=(const value_change &) = delete;

    /* For good. False: it has no image; it is left to change for the time. They pass safe points. */
    bool change_scalar(quolynode **slot);
    bool change_array(array_record *a);
    bool change_system_array();

    /* All that has not changed yet, for the time: what has no image is 0 in the new ring, and told. */
    void keep_the_rest();
    void tell_what_has_no_image();
    /* The same for good: what has a vanishing denominator is 0, with a warning; error 85 for one without an inverse. */
    void change_the_rest();

    /* Has a level been open meanwhile? Then what is stored may be other values now, and all has to be done again. */
    bool is_stale() const;
    /* The images take their places. Passes no safe point, and never throws. */
    void put_in_place();

  private:
    enum class step { waits, has_image, has_none };
    struct scalar_image {
        quolynode **slot;
        quolynode *image;
        step state;
        bool keeps, from_original;
    };
    struct matrix_image {
        array_record *array;
        sparse_frame *rows; /* of the image; their heads go into the array's own frames */
        step state;
        bool keeps, from_original;
    };

    static void add(quolynode **slot, void *context);
    void collect();
    scalar_image *find(quolynode **slot);
    void make(scalar_image &v, bool for_good);
    void make(matrix_image &m, bool for_good);
    bool has_images(array_record *a);
    void put(scalar_image &v);
    void put(matrix_image &m);

    ring_state now, next;
    bool symmetric;
    bool strict = false; /* no value is kept: one without an image is an error, or 0 */
    long levels_before;
    buffer<scalar_image> scalars; /* by address */
    buffer<matrix_image> matrices;
};

/* Originals are of no use any more: the variables of polynomials change. */
void forget_originals();

} // namespace tolvek
