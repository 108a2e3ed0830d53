/* Values that follow a permanent change of the ground ring. The ring in force is the new one. They pass safe points, as
   poly/ring_change.h says. */
#pragma once

#include "top/tolvek.h"

namespace tolvek {

enum class ring_move { done, denominator_is_0, no_inverse };

/* *q, of the chain form, in the modular ring, or 0 where it has no image: its denominator vanishes, or the leading number of
   that has no inverse. */
ring_move try_change_num(quolynode **q);

/* *q, of the chain form, in the modular ring. A value whose denominator vanishes is 0, with a warning. Errors 85 and 210
   as told in normal.h; *q is a value that can be freed then. */
void quoly_change_num(quolynode **q);

/* *q, computed as machine integers while the ring is paused, as the ring has it. A denominator begins with 1
   there already, and does not vanish. */
void quoly_into_ring(quolynode **q);

/* q, of the ring modulo `modulo`, in the chain form. */
void quoly_change_from_mod(quolynode *q, int32_t modulo, bool symmetric);

/* The floats beside the chains of all numbers of q. */
void quoly_put_flote(quolynode *q);

} // namespace tolvek
