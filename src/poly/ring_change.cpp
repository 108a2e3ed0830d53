#include "poly/ring_change.h"
#include "display/progress.h"
#include "numbers/modular.h"
#include "poly/model_work.h"
#include "top/driver.h"
#include "top/settings.h"
#include "top/stack_limit.h"
#include "top/text_io.h"

#include <cstdlib>
#include <utility>

namespace tolvek {

constexpr int most_warnings = 20;

/* ---- to residues ---- */

static bool warning_is_due() { return verbose && warn_cnt < most_warnings; }

/* Elements of a table field are words of bits: a chain stands for the one of its last digit. */
static int32_t element_of(const number *x, bool warn_negative) {
    const int32_t digit = x->num_tail->digit;
    if (x->num_len > 1) {
        if (warning_is_due()) {
            say(" *** Warning. outsized values encountered. Expect garbage.\n");
            warn_cnt++;
        }
    } else if ((std::abs(digit) >= modulus || (warn_negative && digit < 0)) && warning_is_due()) {
        sayf("*** Warning. in going to finite field, outsized value encountered: %d\n", digit);
        warn_cnt++;
    }
    return std::abs(digit) % modulus;
}

/* Passes no safe point: images are refreshed where none may be. */
static int32_t chain_residue(const number *x) {
    const word_divisor n = ring_divisor();
    const bool negative = x->num_head->digit < 0;
    uint64_t v = 0;
    for (const numnode *d = x->num_head; d; d = d->next)
        v = n.remainder((v << 28) + static_cast<uint32_t>(negative ? -d->digit : d->digit));
    return static_cast<int32_t>(negative && v ? n.n - v : v);
}

int32_t residue_of(const number *x, bool warn_negative) {
    return finf ? element_of(x, warn_negative) : chain_residue(x);
}

void change_num(number *x, bool release, bool warn_negative) {
    x->lint_val = residue_of(x, warn_negative);
    if (release) special_free(x);
}

/* In place, so that the list is linked at every safe point: what becomes 0 leaves it. */
template <class Change> static void change_terms(polynode **link, paced_safe_points &pace, Change change) {
    while (polynode *t = *link) {
        if (t->is_number) {
            change(t->num);
            pace.step();
        } else {
            change_terms(&t->poly, pace, change);
        }
        const bool vanished = t->is_number ? t->num->lint_val == 0 : !t->poly;
        const bool collapsed = !t->is_number && t->poly && t->expo == 0 && is_constant(t->poly);
        if (!vanished && !collapsed) {
            link = &t->next;
            continue;
        }
        polynode *rest = std::exchange(t->next, nullptr);
        polynode *constant = collapsed ? std::exchange(t->poly, nullptr) : nullptr;
        if (constant) constant->next = rest;
        *link = constant ? constant : rest;
        if (constant) link = &constant->next;
        free_poly(&t);
    }
}

template <class Change> static void change_numbers(polynode **p, Change change) {
    check_stack();
    paced_safe_points pace;
    change_terms(p, pace, change);
    if (!*p) poly_set(0, p);
}

void poly_change_num(polynode **p) {
    change_numbers(p, [](number *x) { change_num(x, true, true); });
}

void poly_into_ring(polynode **p) {
    change_numbers(p, [](number *x) { x->lint_val = residue_of_integer(x->lint_val); });
}

/* ---- and back ---- */

void change_from_mod(number *x, int32_t modulo, bool symmetric) {
    int64_t v = x->lint_val;
    if (symmetric && v > modulo / 2) v -= modulo;
    x->num_len = 0;
    set_int64(v, x);
}

static void lift(polynode *p, int32_t modulo, bool symmetric, paced_safe_points &pace) {
    for (; p; p = p->next) {
        if (p->is_number) {
            change_from_mod(p->num, modulo, symmetric);
            pace.step();
        } else {
            lift(p->poly, modulo, symmetric, pace);
        }
    }
}

void poly_change_from_mod(polynode *p, int32_t modulo, bool symmetric) {
    check_stack();
    paced_safe_points pace;
    lift(p, modulo, symmetric, pace);
}

/* ---- to floats ---- */

void change_flote(number *x) {
    constexpr long double radix = 268435456.0L;
    long double v = 0;
    for (const numnode *d = x->num_head; d; d = d->next) v = v * radix + d->digit;
    x->flote_val = v;
}

static void set_floats(polynode *p) {
    for (; p; p = p->next) {
        if (p->is_number)
            change_flote(p->num);
        else
            set_floats(p->poly);
    }
}

void poly_change_to_flote(polynode *p) {
    check_stack();
    set_floats(p);
}

} // namespace tolvek
