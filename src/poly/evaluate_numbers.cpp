/* Values of polynomials where every variable gets a number.

   Forms in one word go by Horner's rule. Chains grow with the exponents, so there a long list is split in halves, high
   and low, and the value is low + x^gap * high: each product has factors of like length. */
#include "numbers/handles.h"
#include "numbers/int_mult.h"
#include "numbers/int_power.h"
#include "numbers/modular.h"
#include "poly/evaluate.h"
#include "poly/evaluate_work.h"
#include "poly/measures.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <cassert>

namespace tolvek {

namespace {

/* ---- number forms ---- */

/* x^e for e above 0, by squares. */
template <class form> typename form::word power_of(const form &f, typename form::word x, uint32_t e) {
    typename form::word y = x;
    for (int bit = 30 - __builtin_clz(e); bit >= 0; bit--) {
        y = f.product(y, y);
        if (e >> bit & 1) y = f.product(y, x);
    }
    return y;
}

struct residues {
    using word = int32_t;
    static word of(const number *x) { return x->lint_val; }
    static word sum(word a, word b) { return mod_add(a, b, modulus); }
    static word product(word a, word b) { return modmult(a, b); }
    static word power(word x, uint32_t e) {
        word y;
        mod_number_power(x, e, &y);
        return y;
    }
};

struct wrapping_words {
    using word = uint32_t;
    static word of(const number *x) { return static_cast<uint32_t>(x->lint_val); }
    static word sum(word a, word b) { return a + b; }
    static word product(word a, word b) { return a * b; }
    static word power(word x, uint32_t e) { return power_of(wrapping_words{}, x, e); }
};

struct flotes {
    using word = long double;
    static word of(const number *x) { return x->flote_val; }
    static word sum(word a, word b) { return a + b; }
    static word product(word a, word b) { return a * b; }
    static word power(word x, uint32_t e) { return power_of(flotes{}, x, e); }
};

/* Numbers of chain or word form modulo a word. */
struct images {
    using word = uint32_t;
    word_divisor m;
    word of(const number *x) const {
        return lintmode ? static_cast<word>(x->lint_val) : chain_modulo(x, static_cast<uint32_t>(m.n));
    }
    word sum(word a, word b) const { return static_cast<word>((uint64_t{a} + b) % m.n); }
    word product(word a, word b) const { return m.product(a, b); }
    word power(word x, uint32_t e) const { return power_of(*this, x, e); }
};

/* ---- the list ---- */

/* What is wrong with the list where p still has variables. */
list_fault fault_at(const polynode *list) {
    if (!list) return list_fault::ended;
    return list->expo == 1 ? list_fault::stays : is_constant(list->poly) ? list_fault::none : list_fault::no_number;
}

/* ---- words ---- */

template <class form> struct word_evaluation {
    form f{};
    list_fault fault = list_fault::none;

    typename form::word value(const polynode *p, const polynode *list) {
        if (is_constant(p)) return f.of(p->num);
        list_fault found = fault_at(list);
        if (found != list_fault::none) {
            fault = found;
            return {};
        }
        safe_point();
        return horner(p, f.of(list->poly->num), list->next);
    }

  private:
    typename form::word horner(const polynode *p, typename form::word x, const polynode *rest) {
        typename form::word sum = coefficient(p, rest);
        int32_t expo = p->expo;
        for (p = p->next; p; p = p->next) {
            sum = f.sum(raised(sum, x, expo - p->expo), coefficient(p, rest));
            expo = p->expo;
        }
        assert(expo >= 0);
        return raised(sum, x, expo);
    }
    typename form::word coefficient(const polynode *t, const polynode *rest) {
        return t->is_number ? f.of(t->num) : value(t->poly, rest);
    }
    typename form::word raised(typename form::word sum, typename form::word x, int32_t gap) const {
        if (gap == 0) return sum;
        return f.product(sum, gap == 1 ? x : f.power(x, static_cast<uint32_t>(gap)));
    }
};

/* ---- chains ---- */

/* Terms up to which Horner's rule is used. */
constexpr int64_t horner_terms = 16;

struct chain_evaluation {
    list_fault fault = list_fault::none;

    void value(const polynode *p, const polynode *list, number *result) {
        if (is_constant(p)) return num_assign(p->num, result);
        list_fault found = fault_at(list);
        if (found != list_fault::none) {
            fault = found;
            return setvalue(0, result);
        }
        const polynode *at = p;
        int32_t low = 0;
        sum_of_terms(&at, poly_length(p), list, result, &low);
        assert(low >= 0);
        raise(result, list, low);
    }

  private:
    /* The next n terms, divided by the power of the last one's exponent, which goes to *low. */
    void sum_of_terms(const polynode **at, int64_t n, const polynode *list, number *sum, int32_t *low) {
        if (n <= horner_terms) return horner(at, n, list, sum, low);
        number_handle below;
        int32_t split = 0;
        sum_of_terms(at, n - n / 2, list, sum, &split);
        sum_of_terms(at, n / 2, list, &below, low);
        raise(sum, list, split - *low);
        fastsum(sum, &below);
    }
    void horner(const polynode **at, int64_t n, const polynode *list, number *sum, int32_t *low) {
        coefficient(*at, list->next, sum);
        for (;;) {
            *low = (*at)->expo;
            *at = (*at)->next;
            if (--n == 0) return;
            number_handle next;
            coefficient(*at, list->next, &next);
            raise(sum, list, *low - (*at)->expo);
            fastsum(sum, &next);
        }
    }
    void coefficient(const polynode *t, const polynode *rest, number *result) {
        safe_point();
        if (t->is_number)
            num_assign(t->num, result);
        else
            value(t->poly, rest, result);
    }
    static void raise(number *sum, const polynode *list, int32_t gap) {
        if (gap == 0) return;
        const number *x = list->poly->num;
        if (gap == 1) return fast_mult(sum, x, sum);
        number_handle power;
        num_assign(x, &power);
        number_power(&power, static_cast<uint32_t>(gap));
        fast_mult(sum, &power, sum);
    }
};

} // namespace

/* ---- the entries ---- */

template <class form>
static list_fault word_value(const polynode *p, const polynode *list, typename form::word *value) {
    word_evaluation<form> evaluation;
    *value = evaluation.value(p, list);
    return evaluation.fault;
}

list_fault try_number_value(const polynode *p, const polynode *list, number *value) {
    check_stack();
    if (flotemode) return word_value<flotes>(p, list, &value->flote_val);
    if (modularmode) return word_value<residues>(p, list, &value->lint_val);
    if (lintmode) {
        uint32_t word;
        list_fault fault = word_value<wrapping_words>(p, list, &word);
        value->lint_val = static_cast<int32_t>(word);
        return fault;
    }
    chain_evaluation evaluation;
    number_handle sum; /* p may hold the number that *value is */
    evaluation.value(p, list, &sum);
    sum.release_to(value);
    return evaluation.fault;
}

static bool reported(list_fault fault, const char *ended, const char *stays) {
    if (fault == list_fault::none) return false;
    tolvek_error(fault == list_fault::ended ? ended : stays, 1);
    return true;
}

void mod_all_poly_eval(const polynode *p, const polynode *list, int32_t *value) {
    assert(modularmode);
    check_stack();
    if (reported(word_value<residues>(p, list, value), "arg is NULL but q not number in mod_all_poly_eval. ",
                 "arg->exp = 1 in mod_all_poly_eval. "))
        *value = 0;
}

uint32_t image_at_numbers(const polynode *p, const polynode *list, const word_divisor &m) {
    check_stack();
    word_evaluation<images> evaluation{.f = {m}};
    const uint32_t value = evaluation.value(p, list);
    assert(evaluation.fault == list_fault::none);
    return value;
}

void rat_all_poly_eval(const polynode *p, const polynode *list, number *value) {
    assert(!lintmode);
    actual_eval_poly(p, list, value);
}

void actual_eval_poly(const polynode *p, const polynode *list, number *value) {
    if (reported(try_number_value(p, list, value), "arg is NULL but q not number in rat_all_poly_eval. ",
                 "arg->exp = 1 in rat_all_poly_eval. "))
        setvalue(0, value);
}

} // namespace tolvek
