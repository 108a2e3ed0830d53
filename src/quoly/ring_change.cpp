#include "quoly/ring_change.h"
#include "numbers/modular.h"
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

static bool has_inverse(int32_t x) {
    uint32_t inverse;
    return finf || inverse_modulo(static_cast<uint32_t>(x), ring_divisor(), &inverse);
}

ring_move try_change_num(quolynode **q) {
    if ((*q)->is_num) {
        change_num((*q)->numb, true, true);
        return ring_move::done;
    }
    poly_handle num, den;
    take_parts(*q, num, den);
    poly_change_num(num.slot());
    if (den) poly_change_num(den.slot());
    if (den && poly_iszero(den.get())) return ring_move::denominator_is_0;
    if (den && !has_inverse(leading_coef(den.get())->num->lint_val)) return ring_move::no_inverse;
    fraction_to_value(num, den, q);
    return ring_move::done;
}

void quoly_change_num(quolynode **q) {
    const ring_move outcome = try_change_num(q);
    if (outcome == ring_move::no_inverse) error(85, blank);
    if (outcome == ring_move::denominator_is_0)
        say("Warning. A zero quoly denominator was found. That quoly was set to 0.\n");
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
