/* Integer square roots by Newton's iteration from a start that is right in half of its digits. */
#include "numbers/flat_chains.h"
#include "numbers/handles.h"
#include "numbers/int_divide.h"
#include "numbers/int_mult.h"
#include "numbers/int_power.h"
#include "numbers/number_work.h"

#include <cmath>

namespace tolvek {

int sqcut = 16;

/* The floor of the square root of v. */
static int64_t small_root(uint64_t v) {
    int64_t root = static_cast<int64_t>(std::sqrt(static_cast<double>(v)));
    while (static_cast<uint64_t>(root) * static_cast<uint64_t>(root) > v) root--;
    while (static_cast<uint64_t>(root + 1) * static_cast<uint64_t>(root + 1) <= v) root++;
    return root;
}

static uint64_t two_digits(const numnode *chain) {
    return static_cast<uint64_t>(chain->digit) << digit_bits | static_cast<uint32_t>(chain->next->digit);
}

static void root_of(const numnode *chain, int len, number *g);

/* g := a first guess, not below the root by more than its low half: from the root of the leading digits. */
static void first_guess(const numnode *chain, int len, number *g) {
    constexpr int shortest_split = 7; /* below it the top part is the whole */
    if (len >= sqcut && len >= shortest_split) {
        int top = len / 2 + 2;
        if ((len - top) % 2) top++;
        root_of(chain, top, g);
        fillout(g, (len - top) / 2);
        return;
    }
    set_chain(static_cast<int64_t>(std::sqrt(static_cast<double>(two_digits(chain))) + 0.5), g);
    fillout(g, (len - 2) / 2);
    if (len % 2) fast_mult(g, &num_2_14, g);
}

/* g := the floor of the root of a chain of len >= 2 digits. */
static void root_of(const numnode *chain, int len, number *g) {
    if (len == 2) {
        set_chain(small_root(two_digits(chain)), g);
        return;
    }
    first_guess(chain, len, g);
    number_handle x, quotient, rest, step;
    fast_assign(chain, len, &x);
    for (;;) {
        pos_divide(&x, g, &quotient, &rest);
        meddiff(g->num_len, quotient.num_len, g->num_head, quotient.num_head, &step);
        const int32_t head = step.num_head->digit;
        if (step.num_len == 1 && head >= -1 && head <= 1) break;
        const bool above = head > 0;
        abs_val_num(&step, &step);
        shift_right_1(&step);
        if (above)
            fastdiff(g, &step);
        else
            fastsum(g, &step);
    }
    if (step.num_head->digit == 1) fastdiff(g, &number_1);
}

void int_sqrt(const number *x, number *dst, int) {
    chain_form chains;
    number_handle g;
    if (x->num_len == 1)
        set_chain(static_cast<int64_t>(std::sqrt(static_cast<double>(x->num_head->digit)) + 0.5), &g);
    else if (x->num_len >= flat_root_cut)
        flat_chain_root(x->num_head, x->num_len, &g);
    else
        root_of(x->num_head, x->num_len, &g);
    take_chain(&g, dst);
}

} // namespace tolvek
