/* The report of settings, line by line. Lines that tell the value of a switch come from the row of the switch; the
   others have routines here. */
#include "top/settings_report.h"

#include "display/listings.h"
#include "display/progress.h"
#include "gcd/gcd.h"
#include "numbers/number.h"
#include "poly/variables.h"
#include "top/driver.h"
#include "top/settings.h"
#include "top/switches_table.h"

#include "language/scanner.h"

#include <cstring>

namespace tolvek {

/* ---- lines that switches own ---- */

static void report_switch(const switch_row &row) {
    int value = *row.variable;
    switch (row.style) {
    case report_style::on_or_off: return sayf("%s%s.\n", row.report, value ? "on" : "off");
    case report_style::level: return sayf("%s%s", row.report, interrupt_level_words());
    case report_style::when_on:
        if (!value) return;
        break;
    case report_style::value_from_0:
        if (value < 0) return;
        break;
    case report_style::value: break;
    }
    put_format(&standard_output, row.report, value);
}

/* ---- lines of their own ---- */

static void report_ring() {
    say(" Basic arithmetic ring: ");
    if (flotemode)
        say("float arithmetic");
    else if (modularmode)
        sayf("modular arithmetic, modulus %i", int32_t{modulus});
    else
        say(lintmode ? "integer arithmetic, float off" : "rational arithmetic");
    say(".\n");
}

static void report_fast_path() {
    if (integerflag) say("Real float mode on.\n");
}

static void report_gcd_stash() {
    sayf(" GCD stashing level is %d, so it's %s. table mass: %li\n", lookupgcd, lookupgcd > 0 ? "on" : "off",
         static_cast<long>(gcdmass));
}

static void report_determinant_method() {
    if (gauss_cutoff == 1 && detcutoff == 2)
        say(" Determinant method is Gauss-Bareiss.\n");
    else if (gauss_cutoff == 0 && detcutoff >= 1)
        sayf(" Determinant method is Gauss elimination until %i rows, then minors expansion.\n", detcutoff);
    else if (detcutoff == -1 && rat_det_method_cut == 1)
        say(" Determinant method is Lagrange interpolation if polynomials and more than 4 rows.\n");
}

static void report_prompt() {
    if (std::strcmp(prompt, ">") == 0) return;
    sayf(" Prompt is: %s\n", prompt[0] == carriage_return_mode ? "<cr>" : prompt);
}

static void report_name_length() {
    constexpr int usual = 10;
    if (namelength != usual) sayf(" Maximum name length is %i.\n", namelength);
}

static void report_lagrange_condition() {
    if (lagrange_stash && !(verbose && windy)) say("    But verbose and windy must be turned on too.\n");
}

static void report_files() {
    if (input_file_name[0]) sayf(" Reading from file %s.\n", input_file_name);
    if (output_file_name[0]) sayf(" Saving to file %s.\n", output_file_name);
}

static void report_denominator() {
    if (!denominator_is_1()) say_denominator(" Denominator for random is:\n");
}

static void report_variables() {
    if (!polynames) {
        say(" No polynomial variables exist.\n");
        return;
    }
    sayf(" These %li polynomial variables have been created:\n", static_cast<long>(number_polys));
    polylist(&standard_output, 0);
}

static void report_field() {
    if (field_depth > 0) sayf(" Field depth is: %d.\n", field_depth);
}

/* There is no field, and so there are no primes of one. */
static void report_auxiliary_primes() {
    constexpr int first_primes = 0;
    sayf(" There are %d first auxiliary primes: \n", first_primes);
    say(" There are no second auxiliary primes.\n");
}

static void blank_line() { say("\n"); }

/* ---- the report ---- */

struct report_line {
    int code;        /* of the switch, or 0 */
    void (*write)(); /* with code 0 */
};

static const report_line lines[] = {
    {0, blank_line},
    {0, report_ring},
    {'d', nullptr},
    {'e', nullptr},
    {0, report_fast_path},
    {'N', nullptr},
    {'B', nullptr},
    {'c', nullptr},
    {0, report_gcd_stash},
    {'D', nullptr},
    {'#', nullptr},
    {0, report_determinant_method},
    {'u', nullptr},
    {'a', nullptr},
    {'m', nullptr},
    {0, report_prompt},
    {0, report_name_length},
    {'U', nullptr},
    {'V', nullptr},
    {'W', nullptr},
    {'5', nullptr},
    {0, report_lagrange_condition},
    {'t', nullptr},
    {0, report_files},
    {0, report_denominator},
    {0, report_variables},
    {0, report_field},
    {'l', nullptr},
    {0, report_auxiliary_primes},
    {0, blank_line},
    {'Z', nullptr},
};

void global_dump() {
    for (const report_line &line : lines) {
        if (line.code)
            report_switch(*find_switch(line.code));
        else
            line.write();
    }
}

} // namespace tolvek
