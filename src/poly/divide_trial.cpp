/* Trial division. A failing division in many variables is dear, so images are tried first: with the variables below the
   top one at random values modulo a prime, a divisor goes to a divisor. */
#include "numbers/modular.h"
#include "numbers/random.h"
#include "poly/divide_work.h"
#include "poly/measures.h"
#include "top/heap.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <algorithm>

namespace tolvek {

namespace {

/* ---- images in one variable ---- */

constexpr int32_t image_prime = 2147483629;
constexpr int32_t most_degree = 1 << 16; /* of an image; beyond, the full division decides */

/* Evaluates modulo a word; values of the levels from 2 on. */
struct evaluation {
    word_divisor m;
    uint32_t value[most_variables + 2];

    explicit evaluation(uint32_t n) : m(n) {}
    uint32_t residue(const number *x) const {
        return lintmode ? static_cast<uint32_t>(x->lint_val) : chain_modulo(x, static_cast<uint32_t>(m.n));
    }
    uint32_t power(uint32_t x, uint32_t e) const {
        uint32_t y = 1;
        for (; e; e >>= 1, x = m.product(x, x))
            if (e & 1) y = m.product(y, x);
        return y;
    }
    /* By Horner's rule over the gaps. */
    uint32_t at_values(const polynode *p, int level) const {
        if (is_constant(p)) return residue(p->num);
        uint32_t sum = 0;
        for (; p; p = p->next) {
            safe_point();
            const uint64_t c = p->is_number ? residue(p->num) : at_values(p->poly, level + 1);
            sum = static_cast<uint32_t>((uint64_t{sum} + c) % m.n);
            const int64_t gap = int64_t{p->expo} - (p->next ? p->next->expo : 0);
            if (gap) sum = m.product(sum, power(value[level], static_cast<uint32_t>(gap)));
        }
        return sum;
    }
    /* The list in the top variable; its head coefficient comes back, 0 when the degree drops. */
    uint32_t image(const polynode *p, buffer<uint32_t> *out) const {
        out->resize(static_cast<std::size_t>(p->expo) + 1);
        std::fill(out->begin(), out->end(), 0);
        const std::size_t top = out->size() - 1;
        for (; p; p = p->next)
            (*out)[static_cast<std::size_t>(p->expo)] = p->is_number ? residue(p->num) : at_values(p->poly, 2);
        return (*out)[top];
    }
};

/* a := a mod b; is it 0? */
bool leaves_nothing(buffer<uint32_t> &a, const buffer<uint32_t> &b, const word_divisor &m) {
    uint32_t inverse = 0;
    inverse_modulo(b.data()[b.size() - 1], m, &inverse);
    const std::size_t degree = b.size() - 1;
    for (std::size_t e = a.size(); e-- > degree;) {
        safe_point();
        if (!a[e]) continue;
        const uint64_t q = m.n - m.product(a[e], inverse);
        uint32_t *from = &a[e - degree];
        for (std::size_t i = 0; i < degree; i++)
            if (b[i]) from[i] = static_cast<uint32_t>((uint64_t{from[i]} + m.product(b[i], q)) % m.n);
    }
    return std::all_of(a.begin(), a.begin() + std::min(degree, a.size()), [](uint32_t x) { return x == 0; });
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
    evaluation e(modularmode ? static_cast<uint32_t>(modulus) : static_cast<uint32_t>(image_prime));
    buffer<uint32_t> of_a, of_b;
    for (int i = attempts(a, b); i > 0; i--) {
        for (int l = 2; l <= deepest; l++)
            e.value[l] = static_cast<uint32_t>(rand_integer()) % static_cast<uint32_t>(e.m.n);
        if (!e.image(b, &of_b) || !e.image(a, &of_a)) continue;
        return leaves_nothing(of_a, of_b, e.m) ? verdict::passed : verdict::refused;
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
