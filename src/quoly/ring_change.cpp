#include "quoly/ring_change.h"
#include "poly/ring_change.h"
#include "quoly/quoly.h"
#include "top/text_io.h"

#include <utility>

namespace tolvek {

/* The parts leave the value, which is 0 from here on until they are put together again. */
static void take_parts(quolynode *q, poly_handle &num, poly_handle &den) {
    *num.slot() = std::exchange(q->num, nullptr);
    *den.slot() = std::exchange(q->den, nullptr);
    init_quoly_node(q);
    q->numb->lint_val = 0;
}

void quoly_change_num(quolynode **q) {
    if ((*q)->is_num) {
        change_num((*q)->numb, true, true);
        return;
    }
    poly_handle num, den;
    take_parts(*q, num, den);
    poly_change_num(num.slot());
    if (den) poly_change_num(den.slot());
    if (den && poly_iszero(den.get())) {
        say("Warning. A zero quoly denominator was found. That quoly was set to 0.\n");
        quoly_set(0, q);
    } else {
        fraction_to_value(num, den, q);
    }
}

void quoly_change_from_mod(quolynode *q, int32_t modulo, bool symmetric) {
    if (q->is_num) {
        change_from_mod(q->numb, modulo, symmetric);
        return;
    }
    poly_change_from_mod(q->num, modulo, symmetric);
    if (q->den) poly_change_from_mod(q->den, modulo, symmetric);
}

void quoly_put_flote(quolynode *q) {
    if (q->is_num) {
        change_flote(q->numb);
        return;
    }
    poly_change_to_flote(q->num);
    if (q->den) poly_change_to_flote(q->den);
}

} // namespace tolvek
