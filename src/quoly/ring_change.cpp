#include "quoly/ring_change.h"
#include "numbers/modular.h"
#include "poly/ring_change.h"
#include "quoly/quoly.h"
#include "top/guards.h"
#include "top/text_io.h"

#include <utility>

namespace tolvek {

/* A polynomial whose numbers may be of both forms. */
class mixed_poly {
  public:
    mixed_poly() = default;
    ~mixed_poly() {
        const kept_value<int> chains(lintmode, 0);
        free_poly(&value);
    }
    mixed_poly(const mixed_poly &) = delete;
    mixed_poly &operator=(const mixed_poly &) = delete;

    polynode *value = nullptr;
};

/* The parts leave the value, which is 0 from here on until they are put together again. */
static void take_parts(quolynode *q, mixed_poly &num, mixed_poly &den) {
    num.value = std::exchange(q->num, nullptr);
    den.value = std::exchange(q->den, nullptr);
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
    mixed_poly mixed_num, mixed_den;
    take_parts(*q, mixed_num, mixed_den);
    poly_change_num(&mixed_num.value);
    if (mixed_den.value) poly_change_num(&mixed_den.value);
    poly_handle num(std::exchange(mixed_num.value, nullptr)), den(std::exchange(mixed_den.value, nullptr));
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

void quoly_into_ring(quolynode **q) {
    const kept_value<int> ring(modularmode, 1);
    if ((*q)->is_num) {
        (*q)->numb->lint_val = residue_of_integer((*q)->numb->lint_val);
        return;
    }
    poly_handle num(std::exchange((*q)->num, nullptr)), den(std::exchange((*q)->den, nullptr));
    init_quoly_node(*q);
    (*q)->numb->lint_val = 0;
    poly_into_ring(num.slot());
    if (den) poly_into_ring(den.slot());
    fraction_to_value(num, den, q);
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
