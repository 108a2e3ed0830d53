/* Trial division. A failing division in many variables is dear, so images are tried first: with the variables below the
   top one at random values modulo a prime, a divisor goes to a divisor. */
#include "numbers/random.h"
#include "poly/divide_work.h"
#include "poly/evaluate.h"
#include "poly/flat_uni.h"
#include "poly/measures.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

namespace {

/* ---- images in one variable ---- */

constexpr uint32_t image_prime = 2147483629;
constexpr int32_t most_degree = 1 << 16; /* of an image; beyond, the full division decides */

/* Random values for the levels from 2 to `deepest`. */
struct random_values : evaluation_list {
    random_values(int deepest, uint32_t bound) {
        for (int level = 2; level <= deepest; level++)
            put(static_cast<int32_t>(static_cast<uint32_t>(rand_integer()) % bound));
    }
};

/* *out := p at the values, in its top variable. False when its degree drops. */
bool image(const polynode *p, const evaluation_list &values, const word_divisor &m, uni_poly *out) {
    out->clear();
    out->resize(static_cast<std::size_t>(p->expo) + 1);
    std::fill(out->begin(), out->end(), 0);
    const std::size_t top = out->size() - 1;
    for (; p; p = p->next) {
        polynode lone;
        (*out)[static_cast<std::size_t>(p->expo)] = image_at_numbers(coefficient_of(p, &lone), values.get(), m);
    }
    return (*out)[top] != 0;
}

int deepest_level(const polynode *p) {
    char flags[most_variables + 2] = {};
    return poly_vars(p, 1, flags);
}

/* How often a pair of images is drawn at most. */
int attempts(const polynode *a, const polynode *b) {
    constexpr int few_terms = 14, terms_counted = 10;
    const int terms = fast_poly_length(a, terms_counted) + fast_poly_length(b, terms_counted);
    const int nodes = fast_numterms(a) + fast_numterms(b);
    int t = terms < few_terms ? (nodes < 18 ? 3 : 4) : (nodes < 35 ? 4 : 5);
    if (modularmode) t = std::min(t, modulus - 1);
    return t + 1;
}

enum class verdict { none, refused, passed };

bool images_apply(const polynode *a, const polynode *b) {
    if (flotemode || finf || (lintmode && !modularmode) || (modularmode && !mod_is_prime())) return false;
    return a->expo <= most_degree && !anynegs(a) && !anynegs(b);
}

/* The first pair of images that keep their degrees decides. */
verdict try_images(const polynode *a, const polynode *b) {
    if (!images_apply(a, b)) return verdict::none;
    const int deepest = std::max(deepest_level(a), deepest_level(b));
    if (deepest < 2) return verdict::none;
    const uni_field f(modularmode ? static_cast<uint32_t>(modulus) : image_prime);
    const word_divisor m(f.p, f.reciprocal);
    uni_poly of_a, of_b;
    for (int i = attempts(a, b); i > 0; i--) {
        const random_values values(deepest, f.p);
        if (!image(b, values, m, &of_b) || !image(a, values, m, &of_a)) continue;
        return uni_divides(f, of_a, of_b, nullptr) ? verdict::passed : verdict::refused;
    }
    return verdict::none;
}

bool good_operands(const polynode *b, const pt *names) {
    if (!names) {
        tolvek_error("pt nil in trial_poly_divide.", 1);
        return false;
    }
    if (is_constant(b)) {
        tolvek_error("m is number in trial_poly_divide.", 1);
        return false;
    }
    return true;
}

/* q null: not wanted. */
int trial(const polynode *a, const polynode *b, polynode **q, pt *names, int pretest, bool verdict_counts) {
    check_stack();
    if (!good_operands(b, names)) return 0;
    if (pretest && a != b && !poly_iszero(a) && a->expo >= b->expo) {
        const verdict images = try_images(a, b);
        if (images == verdict::refused) return 0;
        if (images == verdict::passed && verdict_counts) return 1;
    }
    return divides_exactly(a, b, q, names, {});
}

} // namespace

int trial_poly_divide(const polynode *a, const polynode *b, polynode **q, pt *names, int pretest) {
    return trial(a, b, q, names, pretest, false);
}

int trial_poly_divide_noq(const polynode *a, const polynode *b, pt *names, int pretest, int verdict) {
    return trial(a, b, nullptr, names, pretest, verdict && rat_yes);
}

int mod_trial_poly_divide(const polynode *a, const polynode *b, pt *names) {
    return trial(a, b, nullptr, names, 1, false);
}

} // namespace tolvek
