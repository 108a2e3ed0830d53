/* What single switches do beyond storing a value, and what they say of it. */
#include "display/progress.h"
#include "display/show_quoly.h"
#include "language/expressions.h"
#include "numbers/handles.h"
#include "numbers/int_power.h"
#include "numbers/number_decimal.h"
#include "poly/variables.h"
#include "top/driver.h"
#include "top/settings.h"
#include "top/switches_table.h"

#include <climits>
#include <cstring>

namespace tolvek {

/* ---- determinants ---- */

/* Minors of one row are the entries themselves; a negative figure leaves the choice to the size of the matrix. */
int cutoff_of_minors(int figure) {
    if (figure < 0) return -1;
    return figure == 1 ? 0 : figure;
}

void tell_detcutoff() {
    constexpr int most_for_ordinary_arrays = 40;
    if (detcutoff < 0) return say(" Will set detcutoff using defaults.\n");
    sayf(" Detcutoff now %i.\n", detcutoff);
    if (detcutoff <= most_for_ordinary_arrays) return;
    sayf(" Note: This value for sparse arrays only. For ordinary arrays, max value is %i.\n", most_for_ordinary_arrays);
}

void tell_gauss_cutoff() { say(gauss_cutoff == 1 ? " will try Gauss-Bareiss.\n" : " will not use Gauss-Bareiss.\n"); }

int mass_of_entries(int figure) { return figure < 0 ? INT_MAX : figure; }

void set_modular_mass() { mod_det_method_cut = rat_det_method_cut / 33; }

/* ---- polynomials ---- */

void set_rat_yes() { rat_yes = try_rat; }

/* The variables that have the general cut-off follow it. */
void set_poly_cutoff(int value) {
    reset_cutoffs(value);
    poly_cutoff = value;
}

void refuse_laurent(int) { error(lintmode ? 377 : layer_is_missing, token); }

/* ---- interrupts ---- */

void set_interrupt_flags() {
    command_int = m_interrupt > 0;
    if (m_interrupt > 0) cmd_modder = m_interrupt == 2 ? 2 : 32;
}

const char *interrupt_level_words() {
    static const char *const words[] = {"off.\n", "on, level 1.\n", "on, level 2.\n"};
    return words[m_interrupt];
}

void tell_interrupt_level() { sayf(" Command interrupt now %s", interrupt_level_words()); }

/* ---- display ---- */

void set_continuation() { continuation = uglyprint ? ' ' : '`'; }

void calc_disp(int size) {
    constexpr int very_large = 1000;
    if (size < 0) size = 0;
    if (size >= very_large) say("Warning.  Very large disp_size.\n");
    chain_form chains;
    number_handle power;
    spec_num_assign(&tens_base, &power);
    number_power(&power, static_cast<uint32_t>(size));
    power.release_to(&disp_cons);
    disp_size = size;
}

/* ---- columns and random numbers ---- */

void say_denominator(const char *text) {
    int column = 0;
    say(text);
    display(&standard_output, 1, 0, &rand_denom_n, &column, 0);
    say("\n");
}

bool denominator_is_1() { return equal(&rand_denom_n, &number_1); }

static void store_denominator(switch_call &call, quoly_handle &value, bool speaks) {
    const switch_row &row = *call.row;
    if (!value || !value->is_num) {
        error(row.number_error, token);
        return;
    }
    num_assign(value->numb, &rand_denom_n);
    if (speaks) say_denominator(row.now);
    value.release_to(call.result);
    call.keeps_result = true;
}

void ask_for_denominator(switch_call &call) {
    quoly_handle answer;
    if (ask(call.row->question, answer_ring::in_force, answer)) store_denominator(call, answer, true);
}

void assign_denominator(switch_call &call, quoly_handle &value) {
    store_denominator(call, value, verbose || !*call.cursor);
}

/* ---- the prompt ---- */

static void set_prompt(const switch_row &row, const char *text) {
    if (std::strcmp(text, " ") == 0) {
        prompt[0] = carriage_return_mode;
        prompt[1] = 0;
        promptsize = 0;
    } else {
        std::strcpy(prompt, *text ? text : " ");
        promptsize = static_cast<int>(std::strlen(prompt));
    }
    put_format(&standard_output, row.now, promptsize ? prompt : " <cr>");
}

/* Takes the rest of the line that begins now. Of its characters `room` at most are kept. */
static void read_line(char *text, int room) {
    int count = 0;
    for (int c = take_char(Input); c != '\n' && c != no_char; c = take_char(Input))
        if (count < room) text[count++] = static_cast<char>(c);
    text[count] = 0;
}

void ask_for_prompt(switch_call &call) {
    constexpr int longest = 9;
    char text[longest + 1];
    say(call.row->question);
    buffer<char> rest;
    take_rest_of_line(Input, rest);
    read_line(text, longest);
    if (rest.empty()) rest.push('\n');
    put_back_line(Input, rest);
    set_prompt(*call.row, text);
}

void assign_prompt(switch_call &call, const char *text) {
    constexpr int longest = sizeof prompt - 1;
    char cut[longest + 1];
    std::strncpy(cut, text, longest);
    cut[longest] = 0;
    if (text[std::strlen(cut)]) sayf("*** Warning.  prompt name truncated to %i characters.\n", longest);
    set_prompt(*call.row, cut);
}

} // namespace tolvek
