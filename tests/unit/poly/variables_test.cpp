#include "poly/variables.h"

#include "support/rand_poly.h"
#include "top/settings.h"

#include <set>

namespace tolvek {

namespace {
struct variables_test : poly_test {
    void SetUp() override {
        poly_test::SetUp();
        forget_poly_variables();
    }
    static void add(const std::string &text, int level) {
        pt *v = newpt();
        text.copy(v->pt_name, sizeof v->pt_name - 1);
        insert_variable(v, level);
    }
    static std::string in_level_order() {
        std::string text;
        for (const pt *v = polynames; v; v = v->pt_next) text += std::to_string(v->pt_level) + v->pt_name + " ";
        return text;
    }
    static std::string in_byte_order() {
        std::string text;
        for (int i = 0; i < number_polys; i++) text += std::string(polyvar[i]) + " ";
        return text;
    }
};
} // namespace

TEST_F(variables_test, a_new_record_has_no_relation_and_the_cut_off_of_products) {
    pt *v = newpt();
    EXPECT_EQ(v->pt_hash, -1);
    EXPECT_EQ(v->pt_aux, -1);
    EXPECT_EQ(v->pt_cutoff, poly_cutoff);
    EXPECT_EQ(v->pt_mod_flags, 0u);
    EXPECT_EQ(v->pt_mod_degree, 0);
    EXPECT_EQ(v->pt_mod_poly, nullptr);
    EXPECT_EQ(v->pt_nums, nullptr);
    EXPECT_EQ(v->pt_next, nullptr);
    free_pt(&v);
    EXPECT_EQ(v, nullptr);
}

TEST_F(variables_test, levels_are_numbered_anew_and_names_stay_sorted) {
    add("m", 1);
    add("b", 2);
    EXPECT_EQ(in_level_order(), "1m 2b ");
    add("z1", 1);
    add("a", 3);
    EXPECT_EQ(in_level_order(), "1z1 2m 3a 4b ");
    EXPECT_EQ(in_byte_order(), "a b m z1 ");
    EXPECT_EQ(number_polys, 4);
    delete_poly_name(2);
    EXPECT_EQ(in_level_order(), "1z1 2a 3b ");
    EXPECT_EQ(in_byte_order(), "a b z1 ");
    delete_poly_name(3);
    delete_poly_name(1);
    EXPECT_EQ(in_level_order(), "1a ");
    EXPECT_EQ(in_byte_order(), "a ");
    delete_poly_name(1);
    EXPECT_EQ(polynames, nullptr);
    EXPECT_EQ(number_polys, 0);
}

TEST_F(variables_test, a_name_is_found_with_its_level_and_record) {
    add("x", 1);
    add("yy", 2);
    int level = 0;
    pt *record = nullptr;
    EXPECT_TRUE(is_poly_name("x", &level));
    EXPECT_EQ(level, 1);
    EXPECT_TRUE(is_poly_name2("yy", &level, &record));
    EXPECT_EQ(level, 2);
    EXPECT_STREQ(record->pt_name, "yy");
    EXPECT_FALSE(is_poly_name("y", &level));
    EXPECT_EQ(variable_at(2), record);
    EXPECT_EQ(variable_at(0), nullptr);
    EXPECT_EQ(variable_at(3), nullptr);
}

TEST_F(variables_test, a_dummy_has_name_and_place_but_not_what_the_record_owns) {
    add("x", 1);
    add("y", 2);
    pt *x = variable_at(1);
    x->pt_mod_poly = poly_of("3*x^2");
    x->pt_mod_poly4 = poly_of("3*x^2 + 1");
    x->pt_mod_degree = 2;
    x->pt_hash = 17;
    x->pt_nums = newimag();
    x->pt_nums->num_link = newimag();
    pt *dummy = newdummy(x);
    EXPECT_STREQ(dummy->pt_name, "x");
    EXPECT_EQ(dummy->pt_hash, 17);
    EXPECT_EQ(dummy->pt_level, 1);
    EXPECT_EQ(dummy->pt_next, variable_at(2));
    EXPECT_EQ(dummy->pt_mod_degree, 2);
    EXPECT_EQ(dummy->pt_mod_poly, nullptr);
    EXPECT_EQ(dummy->pt_mod_poly4, nullptr);
    EXPECT_EQ(dummy->pt_nums, nullptr);
    free_pt(&dummy);
    delete_poly_name(1); /* gives back what it owns: the fixture counts */
}

TEST_F(variables_test, cut_offs_that_follow_the_global_one_are_reset) {
    add("x", 1);
    add("y", 2);
    variable_at(2)->pt_cutoff = poly_cutoff + 5;
    reset_cutoffs(poly_cutoff + 10);
    EXPECT_EQ(variable_at(1)->pt_cutoff, poly_cutoff + 10);
    EXPECT_EQ(variable_at(2)->pt_cutoff, poly_cutoff + 5);
}

TEST_F(variables_test, the_reserve_holds_78_names_from_z_to_a2) {
    std::string order;
    std::set<std::string> names;
    for (const pt *v = dodo; v; v = v->pt_next) {
        order += std::string(v->pt_name) + " ";
        names.insert(v->pt_name);
    }
    EXPECT_EQ(names.size(), 78u);
    EXPECT_EQ(order.substr(0, 8), "z y x w ");
    EXPECT_EQ(order.substr(52, 6), "z1 y1 ");
    EXPECT_EQ(order.substr(order.size() - 6), "b2 a2 ");
}

} // namespace tolvek
