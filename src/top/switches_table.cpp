/* The table of switches and commands: one row for each letter. Limits and defaults of the variables stand in
   top/defaults.cpp. */
#include "top/switches_table.h"

#include "display/progress.h"
#include "display/show_poly.h"
#include "language/execution.h"
#include "numbers/int_divide.h"
#include "numbers/number_decimal.h"
#include "top/driver.h"
#include "top/load.h"
#include "top/save.h"
#include "top/set_switch.h"
#include "top/settings.h"

#include <climits>

namespace tolvek {

constexpr switch_kind flag = switch_kind::flag, number_kind = switch_kind::number;

/* clang-format off */
const switch_row switch_rows[] = {
    /* ---- display and reading ---- */
    {.code = 'N', .letter = 'N', .kind = flag, .variable = &noisy,
     .on = " Will display results.\n",
     .off = " Displaying results is deactivated.\n",
     .unchanged = " in noise",
     .report = " Displaying results is "},
    {.code = 'E', .letter = 'E', .kind = flag, .variable = &extra_line,
     .on = " Will do extra line after display.\n",
     .off = " No extra line after display.\n",
     .unchanged = " in extra line display"},
    {.code = 'd', .kind = number_kind, .variable = &disp_size,
     .question = "Enter display size. \n",
     .number_error = 227,
     .beyond = outside::held,
     .store = calc_disp,
     .style = report_style::value,
     .report = " Display constant is %i.\n"},
    {.underscore = 'd', .letter = '4', .kind = number_kind, .variable = &dispcutoff,
     .question = " Enter number of columns to display:\n",
     .number_error = 143,
     .beyond = outside::held,
     .now = " Number of columns to display is now: \n%i\n",
     .assigned_now = " Columns to display is now: \n%i\n",
     .any_sign = true,
     .keeps_assigned = true},
    {.underscore = 's', .letter = '6', .kind = flag, .variable = &do_line_sup,
     .on = " Will suppress output to terminal of long polys.\n",
     .off = " No suppression of output to terminal of long polys.\n"},
    {.code = '2', .underscore = 'l', .letter = '2', .kind = flag, .variable = &monomial_list,
     .quiet = true,
     .on = " Will display polynomials as list of monomials.\n",
     .off = " Will display polynomials in nested form.\n",
     .unchanged = " in monomial display of polynomials"},
    {.code = 'H', .letter = 'H', .kind = flag, .variable = &alt_form_display,
     .quiet = true,
     .on = " Will display modular values using -m, -m+1, ..., 0, 1, ..., n.\n"
           "    where m = (modulus - 1) div 2 and n = modulus div 2.\n",
     .off = " Will display modular values using 0, 1, ..., modulus - 1.\n",
     .unchanged = " in modular integers display"},
    {.code = 'U', .letter = 'U', .kind = flag, .variable = &uglyprint,
     .on = " Will do ugly display style.\n"
           " WARNING. Func, for, if, and while from terminal don't work when uglyprint is on.",
     .off = " Will resume lovely Tolvek style.\n",
     .unchanged = " in uglyprint",
     .changed = set_continuation,
     .style = report_style::when_on,
     .report = " Ugly printing is on.\n"},
    {.code = 'V', .letter = 'V', .kind = flag, .variable = &verbose,
     .on = " Will display informative comments.\n",
     .off = " Informative comments supressed.\n",
     .assigned_on = " Will do verbose display.\n",
     .assigned_off = " No verbose display.\n",
     .unchanged = " in verbose",
     .style = report_style::when_on,
     .report = " Verbose display is on.\n"},
    {.code = 'W', .letter = 'W', .kind = flag, .variable = &windy,
     .on = " Extra verbosity turned on.\n",
     .off = " Extra verbosity turned off.\n",
     .assigned_on = " Will do extra verbose display.\n",
     .assigned_off = " No extra verbose display.\n",
     .unchanged = " in extra verbose (windy)",
     .style = report_style::when_on,
     .report = " Extra verbose display is on.\n"},
    {.code = 'n', .letter = 'n', .kind = flag, .variable = &nomodpolyreadin,
     .on = " Will not mod out integers during poly-readin over modular ground ring.\n",
     .off = " Will mod out integers during poly-readin over modular ground ring.\n",
     .unchanged = " in poly-readin of negatives",
     .any_number = true},
    {.code = '|', .letter = '|', .kind = flag, .variable = &pos_mod,
     .quiet = true,
     .on = " modding must return non-negatives.\n",
     .off = " modding can return negatives.\n",
     .assigned_on = " Modulus must return non-negatives.\n",
     .assigned_off = " Modulus can return negatives.\n",
     .unchanged = " in | returning negatives"},

    /* ---- the session ---- */
    {.code = 'M', .letter = 'M',
     .question = " Enter prompt:\n",
     .now = " Prompt now:%s\n",
     .run = ask_for_prompt,
     .assign_text = assign_prompt},
    {.code = 'a', .letter = 'a', .kind = flag, .variable = &addresser,
     .quiet = true,
     .keeps_value = true,
     .on = " Array initial index now %i.\n",
     .assigned_on = " Array initial index now %i\n",
     .unchanged = " in error pushing", /* the words of another switch, by which scripts know it */
     .style = report_style::value,
     .report = " Array initial index is %i.\n"},
    {.code = 'b', .kind = flag, .variable = &close_inpuf,
     .on = " Will close input file if error occurs while loading.\n",
     .off = " Will not immediately close input file if error occurs while loading.\n"},
    {.code = 'e', .letter = 'e', .kind = flag, .variable = &errorpush,
     .quiet = true,
     .on = " Will push new level after errors.\n",
     .off = " Pushing after errors is deactivated.\n",
     .assigned_off = " Pushing after errors is deactivated\n",
     .unchanged = "",
     .report = " Pushing after errors is "},
    {.code = 't', .letter = 't', .kind = flag, .variable = &timerflag,
     .on = " Timing enabled.\n",
     .off = " Timing disabled.\n",
     .unchanged = " in timing",
     .style = report_style::when_on,
     .report = " Timing is enabled.\n"},
    {.code = 'm', .letter = 'm', .kind = number_kind, .variable = &m_interrupt,
     .keeps_value = true,
     .unchanged = " in command interrupt",
     .question = " Enter command interrupt level:\n",
     .number_error = 146,
     .beyond = outside::refused,
     .range_error = 146,
     .tell = tell_interrupt_level,
     .changed = set_interrupt_flags,
     .style = report_style::level,
     .report = " Command interrupt is "},
    {.code = 'Z', .kind = flag, .variable = &danger_ok,
     .on = " O.K. to interrupt anytime. This might be dangerous.\n",
     .off = " Can't interrupt at dangerous times.\n",
     .style = report_style::when_on,
     .report = " *** Can interrupt anytime! This is a bit dangerous.\n"},
    {.code = '&', .letter = '&', .kind = flag, .variable = &diskstore,
     .on = " Will use disk space for virtual memory.\n",
     .off = " No disk space for virtual memory.\n",
     .assigned_on = " Will use disk space as virtual memory.\n",
     .assigned_off = " No disk space as virtual memory.\n",
     .unchanged = " in using disk space for virtual memory"},
    {.underscore = 'r', .letter = '3', .kind = number_kind,
     .question = " Enter new denominator for random:\n",
     .number_error = 143,
     .now = " Denominator for random is now: \n",
     .run = ask_for_denominator,
     .assign_value = assign_denominator},

    /* ---- polynomials ---- */
    {.code = '#', .letter = '#', .kind = number_kind, .variable = &poly_cutoff,
     .question = " Enter poly_cutoff (usually 10-60):\n",
     .number_error = 272,
     .beyond = outside::replaced,
     .replacement = 6,
     .replaced = " *** smallest legal value is 6. will use 6.\n",
     .assigned_replaced = " Value entered is too small; will use 6.\n",
     .now = " poly_cutoff: %i\n",
     .assigned_now = " poly_cutoff now %i.\n",
     .store = set_poly_cutoff,
     .style = report_style::value,
     .report = " Kartasuba cutoff for poly multiplication is %i.\n"},
    {.underscore = 'k', .kind = number_kind, .variable = &simplest_poly_cutoff,
     .question = " Enter Karatsuba cutoff:\n",
     .number_error = 143,
     .now = " Karatsuba cutoff is now: \n%i\n"},
    {.underscore = 't', .letter = '5', .kind = flag, .variable = &try_rat,
     .on = " Will try fastest probabilistic test for exact poly division.\n",
     .off = " No fastest probabilistic test for exact poly division.\n",
     .changed = set_rat_yes},
    {.code = 'O', .letter = 'O', .kind = flag, .variable = &chinhensel,
     .quiet = true,
     .on = " Will use Hensel and CRT for multivariate GCD.  This is the default.\n",
     .off = " Use no Hensel or CRT for GCD. This is recommended only over Z/p for small primes.\n",
     .unchanged = " in using Hensel or CRT"},
    {.code = 'c', .kind = flag, .variable = &hen_check,
     .quiet = true,
     .on = " will double check hensel gcd answers.\n",
     .off = " will single check hensel gcd answers.\n",
     .report = " Hensel gcd double checking is "},
    {.code = 'X', .letter = 'X', .kind = number_kind, .variable = &aux_num_1factor,
     .question = " Enter first auxiliary prime search factor:\n",
     .number_error = 295,
     .beyond = outside::refused,
     .range_error = 295,
     .now = " first auxiliary prime search factor: %i\n",
     .assigned_now = " first auxiliary prime search factor now %i.\n"},
    {.code = 'A', .letter = 'A', .kind = number_kind, .variable = &aux_num_2factor,
     .keeps_value = true,
     .question = " Enter second auxiliary prime search factor:\n",
     .number_error = 272,
     .beyond = outside::refused,
     .range_error = 272,
     .now = " second auxiliary prime search factor: %i\n",
     .assigned_now = " second auxiliary prime search factor now %i.\n"},

    /* ---- matrices ---- */
    {.code = 'D', .letter = 'D', .kind = number_kind, .variable = &detcutoff,
     .question = " Enter detcutoff:\n",
     .number_error = 189,
     .reads_as = cutoff_of_minors,
     .tell = tell_detcutoff,
     .any_sign = true,
     .style = report_style::value_from_0,
     .report = " Detcutoff is %i.\n"},
    {.code = 'K', .letter = 'K', .kind = number_kind, .variable = &gauss_cutoff,
     .question = " Enter Gauss-Bareiss switch:\n",
     .number_error = 227,
     .now = " Gauss-Bareiss: %i means",
     .assigned_now = " Gauss-Bareiss switch: %i\n",
     .tell_answer = tell_gauss_cutoff},
    {.code = 'L', .letter = 'L', .kind = number_kind, .variable = &rat_det_method_cut,
     .question = " Enter LaGrange cut off:\n",
     .number_error = 227,
     .reads_as = mass_of_entries,
     .now = " LaGrange cut off \"mass\": %i\n",
     .changed = set_modular_mass},
    {.code = 'u', .letter = 'u', .kind = number_kind, .variable = &pseudet_heur,
     .question = " Enter Sparse pivot heuristic:\n",
     .number_error = 227,
     .beyond = outside::replaced,
     .replacement = 0,
     .replaced = " Value entered is too large or small; will use 0.\n",
     .assigned_replaced = " Value entered is too large; will use 0.\n",
     .now = " Sparse pivot heuristic now %i.\n",
     .style = report_style::value,
     .report = " Sparse pivot heuristic is %i.\n"},
    {.code = '5', .underscore = 'L', .letter = '7', .kind = flag, .variable = &lagrange_stash,
     .quiet = true,
     .on = " Will stash coefficents in LaGrange Det computation -- if you have specified a save file.\n",
     .off = " Will not stash coefficents in LaGrange Det computation.\n",
     .assigned_on = " Will write LaGrange determinants to file.\n",
     .assigned_off = " No writing LaGrange determinants to file.\n",
     .style = report_style::when_on,
     .report = " Writing LaGrange determ. coefficients to file is on.\n"},
    {.code = 'I', .kind = flag, .variable = &mod_matrix_ok,
     .on = " Will try adjoint-CRT method to invert integer matrix.\n",
     .off = " No adjoint-CRT method to invert integer matrices; will use G.E.\n"},
    {.code = 'B', .letter = 'B', .kind = flag, .variable = &chpoly_block,
     .on = " Chpoly will be slowed in modularmode.\n",
     .off = " Will optimize Chpoly in modularmode.\n",
     .lintmode_error = 377,
     .report = " Block on Chpoly is "},

    /* ---- commands ---- */
    {.code = '(', .run = set_switch},
    {.code = '@', .run = panic_stop},
    {.code = 'q', .run = quit},
    {.code = 'Q', .run = quit},
    {.underscore = 'p', .run = leave_level},
    {.underscore = 'P', .run = new_level},
    {.underscore = 'm', .run = run_exactly},
    {.code = '>', .variable = &leave_flag, .now = "Warning. &> ignored.\n", .run = end_loop_early},
    {.code = ']', .variable = &cycle_flag, .now = "Warning. &] ignored.\n", .run = end_loop_early},
    {.code = '}', .variable = &exit_flag, .now = "Warning. &} ignored.\n", .run = end_loop_early},
    {.code = 's', .letter = 'S', .run = save, .assign_text = save_to},
    {.code = 'S', .run = save},
    {.code = 'r', .letter = 'R', .run = load, .assign_text = load_from},
    {.code = 'R', .run = load},
    {.code = 'x', .run = end_load},
    {.underscore = 'n', .run = read_terms},
    {.code = 'o', .run = output_argument},
    {.code = 'v', .run = list_variables},
    {.code = 'f', .run = list_functions},
    {.code = 'F', .run = list_functions},
    {.code = 'g', .run = report_settings},
    {.code = 'G', .run = report_garbage},
    {.underscore = 'G', .run = clean_up},
    {.code = 'h', .run = give_memavail},
    {.code = 'j', .run = report_minors},
    {.code = 'T', .run = give_time},
    {.code = 'p', .letter = 'p', .kind = number_kind, .run = choose_ring},

    {.code = 'C', .run = stash_gcds},

    /* ---- commands of layers that are not there ---- */
    {.code = 'l', .letter = 'l', .kind = flag, .variable = &laurent,
     .on = " Negative exponents enabled.\n",
     .off = " Negative exponents disabled.\n",
     .unchanged = " in Laurent polynomial status",
     .store = refuse_laurent,
     .style = report_style::when_on,
     .report = " Laurent polynomials allowed.\n"},
    {.code = 'P', .letter = 'P', .run = not_open, .assign_rest = not_open},
    {.code = 'J', .letter = 'J', .question = " Enter polynomial variable:\n", .run = ask_for_variable,
     .assign_rest = change_variables},
    {.code = '4', .run = not_open},
};
/* clang-format on */
const int switch_row_count = sizeof switch_rows / sizeof *switch_rows;

template <class test> static const switch_row *find_row(test fits) {
    for (const switch_row &row : switch_rows)
        if (fits(row)) return &row;
    return nullptr;
}

const switch_row *find_switch(int letter) {
    return find_row([=](const switch_row &row) { return letter && row.code == letter; });
}

const switch_row *find_underscore_switch(int letter) {
    return find_row([=](const switch_row &row) { return letter && row.underscore == letter; });
}

const switch_row *find_assigned(int letter) {
    return find_row([=](const switch_row &row) { return letter && row.letter == letter; });
}

const switch_row *find_underscore_assigned(int letter) {
    return find_row([=](const switch_row &row) { return letter && row.letter && row.underscore == letter; });
}

} // namespace tolvek
