/* What the steps of polygcd share: the working record, the thresholds, the tree itself.

   The operands of the record are in divided form: without a power of the main variable, exponents divided by the stride.
   The steps work in this form throughout, and finish_4 multiplies both back into the answer. Nothing of the caller's is
   rewritten: what a step changes is a copy, of the top-level nodes alone where that will do. */
#pragma once

#include "gcd/content.h"
#include "gcd/gcd.h"
#include "poly/divide.h"
#include "poly/model_work.h"
#include "top/driver.h"
#include "top/settings.h"

#include <utility>

namespace tolvek {

extern int tripval; /* nodes of both operands above which a modular test pays; language/execution.h */

/* ---- thresholds; where no measurement is told, the figure is the documented one ---- */

constexpr int first_g_cutoff = 10;      /* general contents in one GCD */
constexpr int trial_small = 49;         /* 18: nodes of v at most, */
constexpr int trial_large = 21;         /* and of u at least */
constexpr int forced_general = 2001;    /* 19: nodes from which general contents are forced, modulo n */
constexpr int pretest_primes = 10;      /* 20 */
constexpr int evaluation_passes = 3;    /* 22 */
constexpr int thinning_nodes = 41;      /* 24: nodes of both at least, */
constexpr int thinning_terms = 6;       /* terms of each at least, */
constexpr int thinning_both_terms = 30; /* and of both, */
constexpr int thinning_variables = 3;   /* variables in one operand alone at least */
constexpr int general_nodes = 3;        /* 28: terms of each above, */
constexpr int general_largest = 40;     /* and of one of them */
constexpr int balance_ratio = 20;       /* 34 */
constexpr int trial_bits = 35;          /* 36: bits of the coefficients of u below */
constexpr int stash_degree_early = 3;   /* 37: degree of v at least */
constexpr int stash_degree = 2;         /* 42, and in one variable */
constexpr int abandoned_enough = 3;     /* 33: Algorithm C is not preferred any more */

/* Float GCDs: a coefficient below this share of the largest one of the two polynomials that it comes from is noise. A
   float has 64 bits; a division of polynomials whose roots are 2^-10 apart keeps more than 40 of them. */
constexpr long double flote_noise = 0x1p-40L;

/* ---- rings ---- */

inline bool in_prime_field() { return modularmode && mod_is_prime(); }
inline bool in_composite_ring() { return modularmode && !mod_is_prime(); }
inline bool over_integers() { return !flotemode && !lintmode; } /* the chain form */

/* ---- the cache ---- */

/* What one GCD has to do with the cache. */
class stash_attempt {
  public:
    /* The text tells which count of GCDs at work is wrong. */
    explicit stash_attempt(const char *imbalance) : text_of_imbalance(imbalance) {}
    ~stash_attempt() { close(); }
    stash_attempt(const stash_attempt &) = delete;
    stash_attempt &operator=(const stash_attempt &) = delete;
    /* True: *answer is a copy of what is there for these operands. Otherwise, while the cache is in use, the answer is
       wanted from now on. */
    bool find(const polynode *u, const polynode *v, int level, polynode **answer);
    /* Puts a copy of the answer, good up to a unit, into the cache if it is wanted. */
    void keep(const polynode *u, const polynode *v, int level, const polynode *answer);

  private:
    void close();
    const char *text_of_imbalance;
    bool wanted = false;
};

/* ---- the working record ---- */

/* A copy of the top-level nodes of a polynomial with exponents of its own. It borrows the coefficients. */
class spine {
  public:
    spine() = default;
    ~spine() { drop(); }
    spine(const spine &) = delete;
    spine &operator=(const spine &) = delete;
    /* The terms of p with exponents (e - low) / stride. */
    void set(const polynode *p, int32_t low, int32_t stride);
    const polynode *get() const { return first; }
    void swap(spine &other) { std::swap(first, other.first); }

  private:
    void drop();
    polynode *first = nullptr;
};

/* One operand, as the steps see it, and what the record owns of it. */
struct gcd_operand {
    const polynode *p = nullptr; /* in divided form */
    int32_t low = 0;             /* the power of the main variable that was taken out */
    int nodes = 0;               /* 17: up to big_node_cap */
    spine divided;
    poly_handle own;

    int32_t degree() const { return p->expo; }
    /* The new form, which changes hands, takes the place of the operand. */
    void become(polynode *q) {
        poly_handle old(own.release());
        *own.slot() = q;
        p = q;
    }
};

struct gcd_work {
    gcd_work() = default;
    gcd_work(const gcd_work &) = delete;
    gcd_work &operator=(const gcd_work &) = delete;

    gcd_operand first, second;
    gcd_operand *u = &first, *v = &second; /* from step 15 on the degree of u is not below that of v */
    int just_degree = 0, run_tests = 0, use_general = 0, top = 0;
    pt *names = nullptr;
    int level = 0;

    int32_t monomial = 0, stride = 1; /* of the answer */
    poly_handle content;              /* of the answer, of the level below; null: 1 */
    poly_handle general;              /* factors of the answer from general contents; null: 1 */
    poly_handle answer;               /* in divided form until finish_4 is through */

    /* What modular images have told of the degree of the answer in divided form: never too low. */
    int32_t degree_bound = 0;
    bool good_image = false, degree_known = false;
    bool balanced = false; /* 34 */
    /* The operands in divided form over the answer, where a step has divided them; for the caller's cofactors. */
    gcd_cofactors *cofactors = nullptr;
    poly_handle u_over_answer, v_over_answer;
    bool prefer_c = false;     /* 33: Algorithm C rather than interpolation */
    bool images_tried = false; /* 37: the method of images has declined */
    int total = 0;             /* nodes of both */
    int test_count = 0;        /* 38 */
    stash_attempt attempt{"negative polygcd_stack_depth 1"};

    pt *below() const { return names->pt_next; }
    /* Are the operands as they came, and are their cofactors wanted? */
    bool wants_cofactors() const {
        const bool changed = first.own || second.own || first.divided.get() || second.divided.get();
        return cofactors && over_integers() && !changed && !general && (!content || poly_eq_1(content.get()));
    }
    void lower_bound(int32_t degree) {
        if (degree < degree_bound) degree_bound = degree;
    }
    void answer_one() { poly_set(1, answer.slot()); }
    void answer_power(int32_t e); /* x^e */
};

/* What a step says: the next one; an answer in divided form, for finish_4; the whole answer. */
enum class verdict { next, finish, whole };

struct gcd_step {
    int number;
    const char *name;
    verdict (*run)(gcd_work *w);
};

/* The tree. How often the step of a number answered, for tests. */
extern const gcd_step gcd_tree[];
long gcd_answers(int number);

/* ---- the steps ---- */

/* gcd_trivial.cpp */
verdict zero_operand(gcd_work *w);
verdict two_constants(gcd_work *w);
verdict one_constant(gcd_work *w);
verdict missing_names(gcd_work *w);
verdict operand_in_field(gcd_work *w);
verdict same_operand(gcd_work *w);
verdict one_variable_modular(gcd_work *w);
verdict one_variable_float(gcd_work *w);
verdict descend(gcd_work *w);
verdict one_without_main(gcd_work *w);
verdict univariate_modular(gcd_work *w);
verdict many_visits(gcd_work *w);

/* gcd_prepare.cpp */
verdict reset_level_counters(gcd_work *w);
verdict take_monomials(gcd_work *w);
verdict take_stride(gcd_work *w);
verdict larger_first(gcd_work *w);
verdict composite_modulus(gcd_work *w);
verdict measure_operands(gcd_work *w);
verdict small_divides_large(gcd_work *w);
verdict permit_general(gcd_work *w);

/* gcd_tests.cpp */
verdict modular_pretest(gcd_work *w);
verdict euclid_over_field(gcd_work *w);
verdict evaluation_tests_modular(gcd_work *w);
verdict thin_variables(gcd_work *w);
verdict take_contents(gcd_work *w);
verdict equal_up_to_unit(gcd_work *w);
verdict balance(gcd_work *w);
verdict count_tests(gcd_work *w);
verdict evaluation_tests(gcd_work *w);
verdict degree_alone(gcd_work *w);

/* gcd_weights.cpp */
verdict weigh_methods(gcd_work *w);

/* gcd_general.cpp */
verdict general_contents(gcd_work *w);

/* gcd_methods.cpp */
/* v as the answer if it divides u. pretest, may_guess: as in trial_poly_divide and its form without a quotient. */
verdict v_if_it_divides(gcd_work *w, int pretest, int may_guess);
verdict early_trial(gcd_work *w);
verdict early_modular_method(gcd_work *w);
verdict trial(gcd_work *w);
verdict modular_method(gcd_work *w);
verdict modular_trial(gcd_work *w);
verdict interpolate(gcd_work *w);
verdict last_resort(gcd_work *w);

/* gcd_cache.cpp */
verdict look_in_stash(gcd_work *w);

/* gcd_finish.cpp */
void finish_4(gcd_work *w);
/* The sign of p made positive over integers; p made monic in a field and over floats, if its leading number is a unit. */
void answer_form(poly_handle &p, pt *names);
void positive_sign(poly_handle &p);

/* ---- helpers ---- */

/* *q := a / b where b divides a; b may be constant or under wrappers. False where it does not: by rounding, or because an
   earlier answer was wrong. *q stays then. */
bool exact_quotient(const polynode *a, const polynode *b, polynode **q, pt *names);
/* Does g divide u? Then *q := u / g, if q is not null. */
bool divided_by(const polynode *u, const polynode *g, polynode **q, pt *names);
/* p, of the level below, as a polynomial of the level above. */
inline void padded(poly_handle &p, int levels) { add_pad(p.slot(), levels); }
/* *g := the GCD of the integer contents of u and v as a constant: 1 outside the chain form. */
void gcd_of_integer_contents(const polynode *u, const polynode *v, polynode **g);

/* algorithm_c.cpp. *g := a polynomial with the same primitive part with respect to the main variable as the GCD of u and
   v, both of positive degree; 1 when that is free of the main variable. For floats 1 too where rounding spoils the
   divisions. The sequence of subresultants (W. S. Brown, 1978; D. Knuth, The Art of Computer Programming 2, 4.6.1,
   Algorithm C), in the variable whose leading coefficients are smallest. */
void algorithm_c(const polynode *u, const polynode *v, polynode **g, pt *names);

} // namespace tolvek
