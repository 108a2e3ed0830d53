#include "numbers/flat_mult.h"

#include "numbers/flat_transform.h"
#include "top/heap.h"
#include "top/interrupts.h"

namespace tolvek {

size_t flat_karatsuba_cut = 18;
size_t flat_transform_cut = 800;
size_t flat_square_karatsuba_cut = 32;
size_t flat_square_transform_cut = 900;

namespace {

/* Two operands of one length, below the transform or too long for it. */
void mult_even(limb *dst, const limb *a, const limb *b, size_t n) {
    safe_point();
    buffer<limb> scratch(flat_karatsuba_room(n));
    flat_mult_karatsuba(dst, a, b, n, scratch.data());
}

/* The plain product's share between two safe points, in limbs of the longer operand: about a millisecond. */
constexpr size_t longest_slice = 65536;

/* a in slices of `slice` limbs, at least nb, from the low end, each product added to the high nb limbs of the last. */
void mult_slices(limb *dst, const limb *a, size_t na, const limb *b, size_t nb, size_t slice) {
    flat_mult(dst, a, slice, b, nb);
    buffer<limb> product(slice + nb);
    for (size_t at = slice; at < na; at += slice) {
        const size_t n = na - at < slice ? na - at : slice;
        flat_mult(product.data(), a + at, n, b, nb);
        flat_copy(dst + at + nb, product.data() + nb, n);
        const limb carry = flat_add(dst + at, dst + at, product.data(), nb);
        flat_add_limb(dst + at + nb, dst + at + nb, n, carry);
        safe_point();
    }
}

} // namespace

void flat_mult(limb *dst, const limb *a, size_t na, const limb *b, size_t nb) {
    if (na < nb) {
        flat_mult(dst, b, nb, a, na);
        return;
    }
    if (nb == 1)
        dst[na] = flat_mult_limb(dst, a, na, b[0]);
    else if (nb < flat_karatsuba_cut && na > longest_slice)
        mult_slices(dst, a, na, b, nb, longest_slice);
    else if (nb < flat_karatsuba_cut)
        flat_mult_school(dst, a, na, b, nb);
    else if (nb >= flat_transform_cut && na + nb <= flat_transform_longest)
        flat_mult_transform(dst, a, na, b, nb);
    else if (na == nb)
        mult_even(dst, a, b, na);
    else
        mult_slices(dst, a, na, b, nb, nb);
}

void flat_square(limb *dst, const limb *a, size_t n) {
    if (n < flat_square_karatsuba_cut)
        flat_square_school(dst, a, n);
    else if (n >= flat_square_transform_cut && 2 * n <= flat_transform_longest)
        flat_mult_transform(dst, a, n, a, n);
    else {
        safe_point();
        buffer<limb> scratch(flat_karatsuba_room(n));
        flat_square_karatsuba(dst, a, n, scratch.data());
    }
}

} // namespace tolvek
