/* Sums of polynomials: one merge of descending term lists. It is written once and compiled for each number form, for
   sum and difference, and for operands that are kept or consumed.

   An operand that is consumed lies in the merge's frame and goes back on every way out; one that is kept is only read.
   When one list has ended, the rest of the other is linked if it is consumed, without a walk along it. */
#include "poly/add.h"

#include "poly/model_work.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <cassert>
#include <type_traits>
#include <utility>

namespace tolvek {

namespace {

/* ---- number forms: do two numbers cancel, and their sum or difference in place or into a new record ---- */

struct flote_form {
    template <bool minus> static bool cancel(const number *x, const number *y) {
        return (minus ? x->flote_val - y->flote_val : x->flote_val + y->flote_val) == 0;
    }
    template <bool minus> static void combine(const number *x, const number *y, number *to) {
        to->flote_val = minus ? x->flote_val - y->flote_val : x->flote_val + y->flote_val;
    }
    template <bool minus> static void change(number *x, const number *y) { combine<minus>(x, y, x); }
};

/* The forms in one word share all but the sum. */
template <class sums> struct small_form {
    template <bool minus> static uint32_t result(const number *x, const number *y) {
        return sums::template of<minus>(static_cast<uint32_t>(x->lint_val), static_cast<uint32_t>(y->lint_val));
    }
    template <bool minus> static bool cancel(const number *x, const number *y) { return result<minus>(x, y) == 0; }
    template <bool minus> static void combine(const number *x, const number *y, number *to) {
        to->lint_val = static_cast<int32_t>(result<minus>(x, y));
    }
    template <bool minus> static void change(number *x, const number *y) { combine<minus>(x, y, x); }
};

struct wrapping_sums {
    template <bool minus> static uint32_t of(uint32_t x, uint32_t y) { return minus ? x - y : x + y; }
};

/* Residues lie below modulus, modulus below 2^31: sums stay below 2^32. */
struct residue_sums {
    template <bool minus> static uint32_t of(uint32_t x, uint32_t y) {
        uint32_t m = static_cast<uint32_t>(modulus);
        uint32_t sum = minus ? x + (m - y) : x + y;
        return sum >= m ? sum - m : sum;
    }
};

struct table_field_sums {
    template <bool> static uint32_t of(uint32_t x, uint32_t y) { return x ^ y; }
};

struct chain_form_sums {
    template <bool minus> static bool cancel(const number *x, const number *y) {
        return minus ? equal(x, y) : negtive(x, y);
    }
    template <bool minus> static void combine(const number *x, const number *y, number *to) {
        (minus ? meddiff : medsum)(x->num_len, y->num_len, x->num_head, y->num_head, to);
    }
    template <bool minus> static void change(number *x, const number *y) { (minus ? fastdiff : fastsum)(x, y); }
};

/* ---- operands ---- */

/* The terms of a list that are still to be merged. */
template <bool consumed> struct operand {
    using node = std::conditional_t<consumed, polynode, const polynode>;
    node *at;

    explicit operand(node *list) : at(list) {}
    ~operand() {
        if constexpr (consumed)
            if (at) free_poly(&at);
    }
    operand(const operand &) = delete;
    operand &operator=(const operand &) = delete;

    /* The first term out of the list: the term itself, or a copy. */
    template <bool negated> polynode *take() {
        if constexpr (consumed) {
            polynode *t = at;
            at = t->next;
            t->next = nullptr;
            if constexpr (negated) negate_term(t);
            return t;
        } else {
            polynode lone = *at;
            lone.next = nullptr;
            polynode *t = negated ? negated_copy(&lone) : copy_list(&lone);
            at = at->next;
            return t;
        }
    }
    /* The first term is not needed any more. */
    void drop() {
        if constexpr (consumed) {
            polynode *t = take<false>();
            free_poly(&t);
        } else {
            at = at->next;
        }
    }
    template <bool negated> polynode *take_rest() {
        if constexpr (consumed) {
            if constexpr (negated) poly_inplace(at);
            return std::exchange(at, nullptr);
        } else {
            const polynode *rest = std::exchange(at, nullptr);
            return negated ? negated_copy(rest) : copy_list(rest);
        }
    }
};

/* The coefficient of the first term of a list, as a list: a number term stands for itself. The term leaves its list;
   the node of a consumed term is a shell that the result can use. */
template <bool consumed> struct coefficient {
    polynode lone;
    polynode *shell = nullptr;
    operand<consumed> list{nullptr};

    explicit coefficient(operand<consumed> &from) {
        if constexpr (consumed) {
            polynode *t = from.template take<false>();
            if (t->is_number) {
                list.at = t;
            } else {
                list.at = t->poly;
                t->poly = nullptr;
                shell = t;
            }
        } else {
            if (from.at->is_number) {
                lone = *from.at;
                lone.next = nullptr;
                list.at = &lone;
            } else {
                list.at = from.at->poly;
            }
            from.at = from.at->next;
        }
    }
    ~coefficient() {
        if (shell) push_poly(shell);
    }
    polynode *take_shell() { return std::exchange(shell, nullptr); }
};

/* ---- the merge ---- */

template <class form, bool minus, bool own_a, bool own_b> struct merger {
    /* a + b or a - b as a list: null for 0. Both operands end empty. */
    static polynode *merge(operand<own_a> &a, operand<own_b> &b) {
        growing_list sum;
        while (a.at && b.at) {
            safe_point();
            if (a.at->expo > b.at->expo)
                sum.append(a.template take<false>());
            else if (a.at->expo < b.at->expo)
                sum.append(b.template take<minus>());
            else if (a.at->is_number && b.at->is_number)
                add_numbers(a, b, sum);
            else
                add_coefficients(a, b, sum);
        }
        if (a.at) sum.append_rest(a.template take_rest<false>());
        if (b.at) sum.append_rest(b.template take_rest<minus>());
        return sum.release();
    }

  private:
    static void add_numbers(operand<own_a> &a, operand<own_b> &b, growing_list &sum) {
        if (form::template cancel<minus>(a.at->num, b.at->num)) {
            a.drop();
        } else if constexpr (own_a) {
            form::template change<minus>(a.at->num, b.at->num);
            sum.append(a.template take<false>());
        } else {
            polynode *t = new_number_term();
            sum.append(t);
            form::template combine<minus>(a.at->num, b.at->num, t->num);
            a.drop();
        }
        b.drop();
    }

    /* A constant at exponent 0 is the term itself. */
    static void add_coefficients(operand<own_a> &a, operand<own_b> &b, growing_list &sum) {
        int32_t expo = a.at->expo;
        coefficient<own_a> x(a);
        coefficient<own_b> y(b);
        poly_handle c(merge(x.list, y.list));
        if (!c) return;
        if (expo == 0 && is_constant(c.get())) {
            sum.append(c.release());
            return;
        }
        polynode *t = x.take_shell();
        if (!t) t = y.take_shell();
        if (!t) t = new_term();
        t->expo = expo;
        t->poly = c.release();
        sum.append(t);
    }
};

/* ---- the families ---- */

template <class form, bool minus, bool own_a, bool own_b> polynode *merged(operand<own_a> &a, operand<own_b> &b) {
    return list_or_zero(merger<form, minus, own_a, own_b>::merge(a, b));
}

template <bool consumed> using node_of = typename operand<consumed>::node;

/* An operand 0 is the one term that must not come into a list. */
template <bool minus, bool own_a, bool own_b> polynode *sum_of(node_of<own_a> *first, node_of<own_b> *second) {
    operand<own_a> a(first);
    operand<own_b> b(second);
    check_stack();
    if (poly_iszero(b.at)) return a.template take_rest<false>();
    if (poly_iszero(a.at)) return b.template take_rest<minus>();
    if (flotemode) return merged<flote_form, minus>(a, b);
    if (modularmode && finf) return merged<small_form<table_field_sums>, minus>(a, b);
    if (modularmode) return merged<small_form<residue_sums>, minus>(a, b);
    if (lintmode) return merged<small_form<wrapping_sums>, minus>(a, b);
    return merged<chain_form_sums, minus>(a, b);
}

/* A destination that holds an operand to be consumed is empty from here on. */
void let_go(polynode **p, const polynode *consumed) {
    if (*p == consumed) *p = nullptr;
}

template <bool minus> void keep_both(const polynode *a, const polynode *b, polynode **p) {
    replace_poly(sum_of<minus, false, false>(a, b), p);
}

template <bool minus> void consume_first(polynode *a, const polynode *b, polynode **p) {
    assert(a != b);
    let_go(p, a);
    replace_poly(sum_of<minus, true, false>(a, b), p);
}

template <bool minus> void consume_both(polynode *a, polynode *b, polynode **p) {
    assert(a != b);
    let_go(p, a);
    let_go(p, b);
    replace_poly(sum_of<minus, true, true>(a, b), p);
}

} // namespace

void poly_add(const polynode *a, const polynode *b, polynode **p) { keep_both<false>(a, b, p); }
void poly_sub(const polynode *a, const polynode *b, polynode **p) { keep_both<true>(a, b, p); }
void better_poly_add(polynode *a, const polynode *b, polynode **p) { consume_first<false>(a, b, p); }
void better_poly_sub(polynode *a, const polynode *b, polynode **p) { consume_first<true>(a, b, p); }
void best_poly_add(polynode *a, polynode *b, polynode **p) { consume_both<false>(a, b, p); }
void best_poly_sub(polynode *a, polynode *b, polynode **p) { consume_both<true>(a, b, p); }

void simplest_poly_add(polynode *a, polynode *b, polynode **p) {
    assert(flotemode || modularmode);
    consume_both<false>(a, b, p);
}
void simplest_poly_sub(polynode *a, polynode *b, polynode **p) {
    assert(flotemode || modularmode);
    consume_both<true>(a, b, p);
}

} // namespace tolvek
