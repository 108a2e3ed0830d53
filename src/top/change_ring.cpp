#include "top/change_ring.h"
#include "gcd/gcd.h"
#include "language/expressions.h"
#include "numbers/number_decimal.h"
#include "quoly/quoly.h"
#include "top/change_local.h"
#include "top/driver.h"
#include "top/settings.h"
#include "top/switches_table.h"

namespace tolvek {

/* ---- the stored values ---- */

static void forget_last_values() {
    free_quoly(&prevnum);
    free_quoly(&sysnum);
}

/* The values take their places, and the user's ring is `next`. A command level that opens meanwhile may store others: then
   all is done again. */
static void change_values(const ring_state &next, bool symmetric, const name *names, bool quiet) {
    forget_last_values();
    free_gcd_stash(stash_drop::everything);
    release_pending_arrays();
    for (;;) {
        value_change change(next, symmetric);
        if (names)
            change_local(names, change, quiet);
        else
            change.change_the_rest();
        if (change.is_stale()) continue;
        change.put_in_place();
        break;
    }
    set_ring(next);
    user_ring = next;
}

/* ---- settings that belong to a ring ---- */

constexpr int cutoff_of_products = 40, rational_division = 6, modular_division = 25;
constexpr int rational_size = 4, modular_size = 16;

static void set_cutoffs(int division) {
    reset_cutoffs(cutoff_of_products);
    poly_cutoff = cutoff_of_products;
    div_poly_cutoff = division;
    setvalue(1, &rand_denom_n);
}

/* A table field has no signs; the user's choice comes back with the ring that has. */
static int alt_form_before = -1;

static void enter_field_display() {
    alt_form_before = alt_form_display;
    alt_form_display = 0;
}

static void leave_field_display() {
    if (alt_form_before >= 0) alt_form_display = alt_form_before;
    alt_form_before = -1;
}

/* ---- the two ways ---- */

/* Lifts have signs while residues are shown with signs; a table field hides what the user has set. */
static bool lifts_have_signs() { return finf ? alt_form_before != 0 : alt_form_display != 0; }

void change_to_rational(bool show, const name *names) {
    if (show) say(" Changing to rational arithmetic.\n");
    if (changed_in_modmode) {
        error(353, token);
        return;
    }
    ring_state rational{};
    rational.modulus = -1;
    change_values(rational, lifts_have_signs(), names, !show);
    was_in_rat = 1;
    leave_field_display();
    set_cutoffs(rational_division);
    calc_disp(rational_size);
}

static ring_state modular_ring(int n) {
    ring_state r{};
    r.lintmode = r.modularmode = 1;
    r.modulus = n;
    r.f256 = n == 256;
    r.f2t16 = n == 65536;
    r.finf = r.f256 || r.f2t16;
    return r;
}

static void tell_modular_ring() {
    const char *field = f256    ? "; working over the prime field of 2^8 = 256 elements.\n"
                        : f2t16 ? "; working over the prime field of 2^16 = 65536 elements.\n"
                                : ".\n";
    sayf(" Now in modular mode. Modulus is %i,%s%s", finf ? 2 : int{modulus},
         mod_is_prime() ? " a prime" : " not a prime", field);
}

void change_to_modular(int n, bool show, const name *names) {
    if (show) say(" Changing to modular arithmetic.\n");
    warn_cnt = 0;
    change_values(modular_ring(n), alt_form_display != 0, names, false);
    was_in_rat = 0;
    set_cutoffs(modular_division);
    calc_disp(modular_size);
    if (show) tell_modular_ring();
    if (finf) enter_field_display();
}

/* ---- the modulus ---- */

static bool is_legal(int n) { return n >= 2 && n <= greatest_modulus; }

static bool as_modulus(const quoly_handle &answer, int *n) {
    if (integer_value(answer.get(), *n)) return true;
    error(148, token);
    return false;
}

static bool ask_for_modulus(int *n) {
    for (;;) {
        quoly_handle answer;
        if (!ask(" Enter modulus:\n", answer_ring::in_force, answer) || !as_modulus(answer, n)) return false;
        if (is_legal(*n)) return true;
        sayf(" *** Improper modulus %i. upper limit is 2147483646. Reenter.\n", *n);
    }
}

bool read_modulus(stream *input, name **cursor, int *n) {
    if (tt_flag) return ask_for_modulus(n);
    quoly_handle value;
    old_expre(input, value.slot(), cursor);
    if (!as_modulus(value, n)) return false;
    if (!is_legal(*n)) {
        error(84, token);
        *n = 2;
    }
    return true;
}

} // namespace tolvek
