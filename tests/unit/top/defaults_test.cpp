#include "top/defaults.h"

#include "display/progress.h"
#include "display/show_poly.h"
#include "numbers/number_decimal.h"
#include "top/driver.h"
#include "top/settings.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <set>
#include <string>

using namespace tolvek;

namespace {

TEST(defaults, each_row_has_a_name_a_variable_and_a_reason_of_its_own) {
    std::set<std::string> names;
    std::set<const int *> variables;
    for (int i = 0; i < setting_count; i++) {
        const setting &row = settings[i];
        EXPECT_TRUE(names.insert(row.name).second) << row.name;
        EXPECT_TRUE(variables.insert(row.variable).second) << row.name;
        EXPECT_GT(std::strlen(row.reason), 0u) << row.name;
        EXPECT_LE(row.least, row.value) << row.name;
        EXPECT_LE(row.value, row.most) << row.name;
    }
}

TEST(defaults, every_variable_goes_to_its_default) {
    for (int i = 0; i < setting_count; i++) *settings[i].variable = settings[i].value + 1;
    std::strcpy(prompt, "calc>");
    promptsize = 5;
    continuation = ' ';
    set_defaults();
    for (int i = 0; i < setting_count; i++) EXPECT_EQ(*settings[i].variable, settings[i].value) << settings[i].name;
    EXPECT_STREQ(prompt, ">");
    EXPECT_EQ(promptsize, 1);
    EXPECT_EQ(continuation, '`');
}

TEST(defaults, the_documented_values_hold) {
    const struct {
        const int *variable;
        int value;
    } told[] = {
        {&poly_cutoff, 20},
        {&fast_mult_cut, 10},
        {&simplest_poly_cutoff, 140},
        {&div_poly_cutoff, 6},
        {&trial_cutoff, 25},
        {&fast_gcd_size, 22008},
        {&mod_method_diff, 6},
        {&gcd_stash_cutoff, 200},
        {&small_gcd_stash_cut, 100},
        {&aux_num_1factor, 400},
        {&aux_num_2factor, 100},
        {&mod_det_method_cut, 150}, /* the one default that its rule, 5000 / 33 = 151, does not give */
        {&rat_det_method_cut, 5000},
        {&gauss_cutoff, 0},
        {&lagrangecut, 10},
        {&pseudet_heur, 0},
        {&init_max_stash, 2},
        {&init_min_stash, 3},
        {&disp_size, 5},
        {&dispcutoff, 76},
        {&alt_form_display, 1},
        {&extra_line, 1},
        {&chinhensel, 1},
        {&hen_check, 1},
        {&do_line_sup, 1},
        {&no_aux_primes2, 1},
        {&mod_matrix_ok, 1},
        {&m_interrupt, 1},
        {&cmd_modder, 32},
        {&detcutoff, -1},
        {&chpoly_block, 1},
        {&addresser, 1},
        {&verbose, 0},
        {&windy, 0},
        {&danger_ok, 0},
        {&diskstore, 0},
        {&lookupgcd, 0},
    };
    for (const auto &row : told) {
        const setting *found = find_setting(row.variable);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->value, row.value) << found->name;
    }
}

TEST(defaults, the_limits_of_the_switches_hold) {
    const struct {
        const int *variable;
        int least, most;
    } told[] = {
        {&poly_cutoff, 6, INT_MAX},
        {&aux_num_1factor, 300, 4583},
        {&aux_num_2factor, 10, 20000},
        {&pseudet_heur, 0, 5},
        {&m_interrupt, 0, 2},
        {&timerflag, 0, 1},
        {&rat_det_method_cut, 0, INT_MAX},
        {&detcutoff, -1, INT_MAX},
        {&addresser, 0, 1},
    };
    for (const auto &row : told) {
        const setting *found = find_setting(row.variable);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->least, row.least) << found->name;
        EXPECT_EQ(found->most, row.most) << found->name;
    }
}

TEST(defaults, a_variable_without_a_row_is_not_found) {
    int other = 0;
    EXPECT_EQ(find_setting(&other), nullptr);
    EXPECT_EQ(find_setting(nullptr), nullptr);
}

} // namespace
