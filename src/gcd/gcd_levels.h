/* Another variable in front. Only the order of the levels changes: exponents, numbers and the number of levels stay, so
   the names of the levels serve as before wherever they carry no relation. */
#pragma once

#include "poly/model.h"

namespace tolvek {

polynode *levels_exchanged(const polynode *p);        /* a copy with its first two variables exchanged */
void swap_levels_1_2(polynode **p);                   /* the same in place of *p */
polynode *level_to_front(const polynode *p, int k);   /* a copy in which the k-th variable leads the others */
polynode *level_from_front(const polynode *p, int k); /* a copy in which the first variable stands in k-th place */

} // namespace tolvek
