#include "top/defaults.h"

#include "display/progress.h"
#include "display/show_poly.h"
#include "language/scanner.h"
#include "numbers/int_divide.h"
#include "numbers/int_mult.h"
#include "numbers/int_power.h"
#include "numbers/number_decimal.h"
#include "top/driver.h"
#include "top/settings.h"

#include <climits>
#include <cstring>

namespace tolvek {

static constexpr int any = INT_MAX;

const setting settings[] = {
    /* name, variable, default, least, most, reason */

    /* ---- the session ---- */
    {"addresser", &addresser, 1, 0, 1, "matrices are written from 1 on"},
    {"command_int", &command_int, 1, 0, 1, "goes with m_interrupt"},
    {"m_interrupt", &m_interrupt, 1, 0, 2, "level 1 of command interrupts"},
    {"cmd_modder", &cmd_modder, 32, 2, 32, "goes with m_interrupt: 32 for level 1, 2 for level 2"},
    {"danger_ok", &danger_ok, 0, 0, 1, "off"},
    {"errorpush", &errorpush, 0, 0, 1, "an error returns to level 1"},
    {"close_inpuf", &close_inpuf, 0, 0, 1, "a load goes on behind an error"},
    {"timerflag", &timerflag, 0, 0, 1, "off"},
    {"namelength", &namelength, 10, 1, 10, "a token holds 11 characters and its end"},
    {"diskstore", &diskstore, 0, 0, 1, "off"},

    /* ---- display and reading ---- */
    {"noisy", &noisy, 1, 0, 1, "results are displayed"},
    {"extra_line", &extra_line, 1, 0, 1, "results stand apart"},
    {"disp_size", &disp_size, 5, 0, any, "40 figures; from 1000 groups on a warning"},
    {"dispcutoff", &dispcutoff, 76, 0, any, "columns of a terminal of 80, less the continuation mark"},
    {"uglyprint", &uglyprint, 0, 0, 1, "off"},
    {"alt_form_display", &alt_form_display, 1, 0, 1, "residues are shown with signs"},
    {"pos_mod", &pos_mod, 1, 0, 1, "remainders are not negative"},
    {"monomial_list", &monomial_list, 0, 0, 1, "polynomials are shown nested"},
    {"do_line_sup", &do_line_sup, 1, 0, 1, "a terminal is spared long polynomials"},
    {"nomodpolyreadin", &nomodpolyreadin, 0, 0, 1, "what is read belongs to the ring"},
    {"verbose", &verbose, 0, 0, 1, "off"},
    {"windy", &windy, 0, 0, 1, "off"},

    /* ---- integers: digits of a chain ---- */
    {"multcut", &multcut, 16, 2, any, "below, the schoolbook product is the quicker one"},
    {"sqcut", &sqcut, 16, 2, any, "below, the recursive root has nothing to gain"},

    /* ---- polynomials ---- */
    {"laurent", &laurent, 0, 0, 1, "exponents are not negative"},
    {"try_rat", &try_rat, 0, 0, 1, "exact division is tested without guessing"},
    {"rat_yes", &rat_yes, 0, 0, 1, "goes with try_rat"},
    {"poly_cutoff", &poly_cutoff, 20, 6, any, "splitting fewer than 6 terms leaves trivial halves"},
    {"fast_mult_cut", &fast_mult_cut, 10, 2, any, "terms of one variable split sooner than those of several"},
    {"simplest_poly_cutoff", &simplest_poly_cutoff, 140, INT_MIN, any, "nothing is chosen by it"},
    {"div_poly_cutoff", &div_poly_cutoff, 6, 2, any, "25 in a modular ring"},
    {"fast_gcd_size", &fast_gcd_size, 22008, 22008, 22008, "the arrays have 22,009 words"},

    /* ---- greatest common divisors ---- */
    {"trial_cutoff", &trial_cutoff, 25, 0, any, "a small operand is divided at no cost"},
    {"mod_method_diff", &mod_method_diff, 6, 0, any, "degrees fall by more in one step of the modular method"},
    {"lookupgcd", &lookupgcd, 0, SHRT_MIN, SHRT_MAX, "stashing is off"},
    {"gcd_stash_cutoff", &gcd_stash_cutoff, 200, 0, any, "smaller GCDs are computed sooner than found"},
    {"small_gcd_stash_cut", &small_gcd_stash_cut, 100, 0, any, "the same for one variable, by degrees"},
    {"chinhensel", &chinhensel, 1, 0, 1, "off helps over small primes only"},
    {"hen_check", &hen_check, 1, 0, 1, "lifted answers are checked twice"},
    {"aux_num_1factor", &aux_num_1factor, 400, 300, 4583, "4583 primes are at hand"},
    {"aux_num_2factor", &aux_num_2factor, 100, 10, 20000, "enough pairs for most fields"},
    {"no_aux_primes2", &no_aux_primes2, 1, 0, 1, "there is no field at start"},

    /* ---- determinants and matrices ---- */
    {"detcutoff", &detcutoff, -1, -1, any, "-1 leaves the choice to the size of the matrix"},
    {"gauss_cutoff", &gauss_cutoff, 0, 0, any, "1 asks for fraction-free elimination"},
    {"rat_det_method_cut", &rat_det_method_cut, 5000, 0, any, "mass of the entries"},
    {"mod_det_method_cut", &mod_det_method_cut, 150, 0, any / 33, "about a thirty-third of rat_det_method_cut"},
    {"lagrangecut", &lagrangecut, 10, 0, any, "deeper interpolations do not end in a reasonable time"},
    {"lagrange_stash", &lagrange_stash, 0, 0, 1, "off"},
    {"pseudet_heur", &pseudet_heur, 0, 0, 5, "there are six rules, 0 to 5"},
    {"mod_matrix_ok", &mod_matrix_ok, 1, 0, 1, "the adjoint by Chinese remainders beats elimination"},
    {"chpoly_block", &chpoly_block, 1, 0, 1, "images of the tables cost more than they give"},
    {"init_max_stash", &init_max_stash, 2, 0, any, "larger minors are hardly met again"},
    {"init_min_stash", &init_min_stash, 3, 1, any, "smaller minors are computed sooner than found"},
};
const int setting_count = sizeof settings / sizeof *settings;

const setting *find_setting(const int *variable) {
    for (const setting &row : settings)
        if (row.variable == variable) return &row;
    return nullptr;
}

void set_defaults() {
    for (const setting &row : settings) *row.variable = row.value;
    std::strcpy(prompt, ">");
    promptsize = 1;
    continuation = '`';
}

} // namespace tolvek
