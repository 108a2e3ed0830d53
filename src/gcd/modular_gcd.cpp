/* GCDs over the integers from images modulo primes, by Chinese remainders in Newton's form. Each image is multiplied so
   that its leading number is that of a known multiple of the answer's. */
#include "gcd/gcd_images.h"
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "gcd/interpolated_gcd.h"
#include "gcd/sparse_gcd.h"
#include "numbers/handles.h"
#include "numbers/int_gcd.h"
#include "numbers/int_mult.h"
#include "numbers/modular.h"
#include "numbers/primes.h"
#include "poly/add.h"
#include "top/interrupts.h"

namespace tolvek {

/* A copy of residues as integers between - p / 2 and p / 2. For use in the chain form. */
static polynode *lifted(const polynode *p, int32_t prime) {
    growing_list list;
    for (; p; p = p->next) {
        if (p->is_number) {
            polynode *t = new_number_term();
            list.append(t);
            set_int64(p->num->lint_val > prime / 2 ? int64_t{p->num->lint_val} - prime : p->num->lint_val, t->num);
            continue;
        }
        polynode *t = new_term();
        t->expo = p->expo;
        list.append(t);
        t->poly = lifted(p->poly, prime);
    }
    return list.release();
}

/* The image of the GCD modulo a prime, times the residue of c, less what `sum` has there, over the product of the primes
   so far: the next digit of Newton's form, in residues. *order: how the leading monomial compares with that of sum, 0 at
   the start. */
static void next_digit(const polynode *u, const polynode *v, const number *c, const polynode *sum,
                       const number *product, int32_t p, pt *names, poly_handle &digit, int *order, bool *constant) {
    const uint32_t m = static_cast<uint32_t>(p);
    const int32_t residue_of_c = static_cast<int32_t>(chain_modulo(c, m));
    const int32_t residue_of_product = static_cast<int32_t>(chain_modulo(product, m));
    modular_stretch stretch(p);
    poly_handle image_u(modular_image(u)), image_v(modular_image(v)), h;
    polygcd(image_u.get(), image_v.get(), h.slot(), 0, 1, 0, names, 1, 1, 0);
    *constant = is_constant(h.get());
    *order = 0;
    if (*constant) return;
    if (sum) *order = compare_leading(h.get(), sum);
    if (*order > 0) return;
    if (*order < 0) sum = nullptr;
    mod_num_poly_mult(residue_of_c, h.slot());
    if (sum) {
        poly_handle known(modular_image(sum));
        poly_sub(h.get(), known.get(), h.slot());
        mod_num_poly_mult(mod_inverse(residue_of_product), h.slot());
    }
    h.release_to(digit.slot());
}

bool basic_mod_method(const polynode *u, const polynode *v, polynode **g, pt *names, polynode **u2, polynode **v2) {
    constexpr int most_primes = 2000, failures_allowed = 3;
    if (sparse_integer_gcd(u, v, g, names, u2, v2)) return true;
    number_handle c, product;
    binary_gcd(leading_coef(u)->num, leading_coef(v)->num, &c);
    poly_handle sum;
    int32_t p = 2147483629 + 2;
    int failures = 0;
    for (int i = 0; i < most_primes; i++) {
        do p -= 2;
        while (!is_prime(p));
        const uint32_t m = static_cast<uint32_t>(p);
        if (!chain_modulo(leading_coef(u)->num, m) || !chain_modulo(leading_coef(v)->num, m)) continue;
        poly_handle digit;
        int order;
        bool constant;
        if (!sum) setvalue(1, &product);
        next_digit(u, v, &c, sum.get(), &product, p, names, digit, &order, &constant);
        if (constant) {
            poly_set(1, g);
            return true;
        }
        if (order > 0) continue; /* a bad prime */
        if (order < 0) {         /* all the primes before were bad */
            free_poly(sum.slot());
            setvalue(1, &product);
        }
        const bool nothing_new = sum && (is_constant(digit.get()) && digit->num->lint_val == 0);
        poly_handle step(lifted(digit.get(), p));
        {
            ring_guard ring; /* residues hold no chains */
            lintmode = 1;
            free_poly(digit.slot());
        }
        if (!sum) {
            step.release_to(sum.slot());
        } else if (!nothing_new) {
            num_poly_mult(step.slot(), &product);
            best_poly_add(sum.release(), step.release(), sum.slot());
        }
        number_handle prime_number;
        set_int64(p, &prime_number);
        fast_mult(&product, &prime_number, &product);
        if (!nothing_new && i > 0) continue;
        poly_handle candidate;
        poly_assign(sum.get(), candidate.slot());
        number_handle integer_content;
        find_gcdcoefs(candidate.get(), &integer_content);
        num_poly_quot(candidate.slot(), &integer_content);
        positive_sign(candidate);
        if (divided_by(u, candidate.get(), u2, names) && divided_by(v, candidate.get(), v2, names)) {
            candidate.release_to(g);
            return true;
        }
        if (i > 0 && ++failures > failures_allowed) return false;
    }
    return false;
}

} // namespace tolvek
