/* Chains poured into flat limbs and back: digits of 28 bits, most significant first, into limbs of 64 bits, least
   significant first. */
#pragma once

#include "numbers/flat_basic.h"
#include "numbers/number.h"
#include "numbers/poured.h"

namespace tolvek {

inline size_t limbs_of_digits(int len) { return (static_cast<size_t>(len) * digit_bits + limb_bits - 1) / limb_bits; }

/* The magnitude of a chain goes to limbs_of_digits(len) limbs; the count of the normal value, 0 for 0, comes back. */
size_t pour_limbs(limb *dst, const numnode *chain, int len);

/* Limbs on the stack of a routine up to this count, from the heap above. */
constexpr size_t limbs_nearby = 64;
using limb_array = flat_array<limb, limbs_nearby>;

/* A chain's magnitude. */
struct poured_limbs : limb_array {
    size_t n; /* of the normal value */

    poured_limbs(const numnode *chain, int len) : limb_array(limbs_of_digits(len)) { n = pour_limbs(data, chain, len); }
    explicit poured_limbs(const number *x) : poured_limbs(x->num_head, x->num_len) {}
};

/* dst := a with the sign of `sign` (1 or -1). Leading zero limbs are fine, n may be 0. The nodes of dst's old chain are
   used again. */
void chain_from_limbs(const limb *a, size_t n, int32_t sign, number *dst);

/* The same in two steps, for values that must change together: the first one takes the nodes that dst lacks, and may
   fail; the second one writes, and cannot. dst's chain and the limbs stay as they are in between. */
class chain_room {
  public:
    chain_room(const limb *a, size_t n, int32_t its_sign, const number *dst);
    void write(number *dst);

  private:
    const limb *value;
    size_t limbs;
    int32_t sign, digits;
    growing_chain more;
};

} // namespace tolvek
