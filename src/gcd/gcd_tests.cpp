/* Cheap tests of polygcd: images modulo a prime and at points, contents, operands that are equal. */
#include "gcd/gcd_images.h"
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "gcd/sparse_gcd.h"
#include "numbers/handles.h"
#include "numbers/int_gcd.h"
#include "numbers/random.h"
#include "poly/add.h"
#include "poly/measures.h"

namespace tolvek {

/* The GCD is free of the main variable: *w's content is the whole of it, but for the monomial. */
static verdict free_of_main(gcd_work *w) {
    dual_content(const_cast<polynode *>(w->u->p), const_cast<polynode *>(w->v->p), w->content.slot(), w->names, 0,
                 w->use_general, 1, 1);
    w->answer_one();
    return verdict::finish;
}

/* The degree of the GCD modulo a prime is never below the true one where the prime keeps the leading numbers. */
verdict modular_pretest(gcd_work *w) {
    if (!over_integers() || field_depth != 0 || w->total <= tripval) return verdict::next;
    int32_t degree;
    bool coprime = false;
    if (!degrees_modulo_large_prime(w->u->p, w->v->p, &degree, &coprime) &&
        !use_modular(w->u->p, w->v->p, w->names, &degree))
        return verdict::next;
    w->lower_bound(degree);
    if (coprime) {
        gcd_of_integer_contents(w->u->p, w->v->p, w->answer.slot());
        return verdict::finish;
    }
    if (degree == 0) return free_of_main(w);
    if (w->just_degree) {
        w->answer_power(degree);
        return verdict::finish;
    }
    if (w->v->degree() == degree) w->use_general = 0; /* v may well be the GCD: nothing is to be gained */
    w->degree_known = true;
    return verdict::next;
}

/* Opens with relations on variables. */
verdict euclid_over_field(gcd_work *) { return verdict::next; }

/* Residues modulo a small prime are too few points for large operands. */
static bool wants_larger_field(const gcd_work *w) {
    constexpr int small_modulus = 1000, few_nodes = 24;
    return chinhensel && !finf && modulus < small_modulus && w->total >= few_nodes;
}

/* Does the image at random points of the deeper variables leave the degree of the GCD? Residues modulo a prime. A pass
   that finds degree 0 proves the GCD free of the main variable: both images keep their degrees. */
verdict evaluation_tests_modular(gcd_work *w) {
    if (!w->run_tests || !in_prime_field() || field_depth != 0) return verdict::next;
    const bool large = wants_larger_field(w);
    for (int i = 0; i < evaluation_passes; i++) {
        const bool in_larger_field = large && i + 1 < evaluation_passes; /* which high degrees do not have */
        int32_t degree;
        bool coprime = false;
        if (in_larger_field ? !degrees_over_larger_field(w->u->p, w->v->p, &degree, &coprime)
                            : !evaluation_test(w->u->p, w->v->p, w->names, &degree))
            continue;
        w->good_image = true;
        w->lower_bound(degree);
        if (coprime) {
            w->answer_one();
            return verdict::finish;
        }
        if (degree == 0) return free_of_main(w);
        break;
    }
    if (!w->just_degree || !w->good_image) return verdict::next;
    w->answer_power(w->degree_bound);
    return verdict::finish;
}

/* a divided by c, a polynomial of the level below; false where it does not divide. */
static bool divide_by_content(gcd_work *w, gcd_operand *a, const polynode *c) {
    poly_handle divisor, quotient;
    poly_assign(c, divisor.slot());
    padded(divisor, 1);
    if (!exact_quotient(a->p, divisor.get(), quotient.slot(), w->names)) return false;
    a->become(quotient.release());
    return true;
}

/* *sum := a random combination of the coefficients of p, none of which is a number, but for one. */
static void random_combination(const polynode *p, const polynode *left_out, poly_handle &sum) {
    constexpr int32_t largest_factor = 1 << 20;
    for (; p; p = p->next) {
        if (p == left_out) continue;
        const int32_t factor = random_31() % minn(modularmode ? modulus - 1 : largest_factor, largest_factor) + 1;
        poly_handle term;
        poly_assign(p->poly, term.slot());
        if (modularmode) {
            mod_num_poly_mult(factor, term.slot());
        } else {
            number_handle c;
            set_int64(factor, &c);
            num_poly_mult(term.slot(), &c);
        }
        if (sum)
            best_poly_add(sum.release(), term.release(), sum.slot());
        else
            term.release_to(sum.slot());
    }
}

static const polynode *smallest_coefficient(const polynode *p) {
    constexpr int looked_at = 50;
    const polynode *smallest = p;
    int size = bigger_node_total(p->poly);
    for (int i = 0; (p = p->next) && i < looked_at; i++)
        if (const int n = bigger_node_total(p->poly); n < size) {
            size = n;
            smallest = p;
        }
    return smallest;
}

/* The content by one GCD: that of the smallest coefficient and a combination of the others is a multiple of it, and is
   proved to be the content if it divides the operand. False where it does not, and where this is not worth it. */
static bool content_by_combination(gcd_work *w, gcd_operand *a, poly_handle &c) {
    constexpr int few_coefficients = 3;
    const bool fits = field_depth == 0 && (over_integers() || in_prime_field());
    if (!fits || !w->below() || any_number_coefficient(a->p) || poly_length(a->p) <= few_coefficients) return false;
    const polynode *smallest = smallest_coefficient(a->p);
    poly_handle sum;
    random_combination(a->p, smallest, sum);
    if (poly_iszero(sum.get())) return false;
    c_cntcount = minn(c_cntcount + 1, content_count_limit + 1);
    polygcd(smallest->poly, sum.get(), c.slot(), 0, 1, w->use_general, w->below(), 1, 1, 1);
    poly_handle numbers;
    gcd_coefs(a->p, numbers.slot());
    if (over_integers() && !is_constant(c.get())) {
        poly_handle own;
        gcd_coefs(c.get(), own.slot());
        num_poly_quot(c.slot(), own->num);
        num_poly_mult(c.slot(), numbers->num);
    } else if (is_constant(c.get())) {
        numbers.release_to(c.slot());
    }
    return poly_eq_1(c.get()) || divide_by_content(w, a, c.get());
}

/* *c := the content of the operand, which is divided by it. Where the division fails, the content is computed again
   once, and then left in. */
static void take_content(gcd_work *w, gcd_operand *a, poly_handle &c) {
    if (content_by_combination(w, a, c)) return;
    for (int i = 0; i < 2; i++) {
        content(const_cast<polynode *>(a->p), c.slot(), w->names, 0, w->use_general, 1);
        if (poly_eq_1(c.get()) || divide_by_content(w, a, c.get())) return;
    }
    poly_set(1, c.slot());
}

/* The operands become primitive with respect to the main variable. */
verdict take_contents(gcd_work *w) {
    poly_handle of_u, of_v;
    take_content(w, w->u, of_u);
    take_content(w, w->v, of_v);
    polygcd(of_u.get(), of_v.get(), w->content.slot(), 0, 1, w->use_general, w->below(), 1, 1, 1);
    return verdict::next;
}

verdict equal_up_to_unit(gcd_work *w) {
    if (!essentially_equal(w->u->p, w->v->p)) return verdict::next;
    poly_assign(w->u->p, w->answer.slot());
    return verdict::finish;
}

verdict balance(gcd_work *w) {
    measure_operands(w);
    w->balanced = w->v->nodes / balance_ratio <= w->u->nodes && w->u->nodes / balance_ratio <= w->v->nodes;
    return verdict::next;
}

/* How many evaluations are worth their time. */
verdict count_tests(gcd_work *w) {
    constexpr int short_operands = 8, look_at = 5;
    if (!w->run_tests) return verdict::next;
    const int length = fast_poly_length(w->u->p, look_at) + fast_poly_length(w->v->p, look_at);
    if (modularmode)
        w->test_count = length < short_operands ? 1 : w->total < 26 ? 2 : 3;
    else
        w->test_count = length >= short_operands ? 4 : w->total < 13 ? 2 : 3;
    if (w->degree_known) w->test_count = -1;
    if (modularmode) w->test_count = minn(w->test_count, modulus - 1);
    return verdict::next;
}

/* After a general content the image of step 22 says less than a new one. Over the integers the image modulo a prime has
   said it all. */
verdict evaluation_tests(gcd_work *w) {
    if (!w->balanced || !in_prime_field() || field_depth != 0 || !w->general) return verdict::next;
    if (height_is_1(w->u->p) && height_is_1(w->v->p)) return verdict::next;
    for (int i = 1; i <= w->test_count; i++) {
        int32_t degree;
        if (!evaluation_test(w->u->p, w->v->p, w->names, &degree)) continue;
        w->good_image = true;
        w->lower_bound(degree);
        if (degree > 0) continue;
        w->answer_one();
        return verdict::finish;
    }
    return verdict::next;
}

verdict degree_alone(gcd_work *w) {
    if (!w->just_degree || !modularmode || !w->good_image) return verdict::next;
    w->answer_power(w->degree_bound);
    return verdict::finish;
}

} // namespace tolvek
