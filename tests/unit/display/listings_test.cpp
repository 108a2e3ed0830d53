#include "display/listings.h"

#include "by_hand.h"
#include "language/names.h"

using namespace tolvek;

static const std::string no_arrays = "\narrays:\n\n There are 0 arrays.\n";

struct listings : exact_display {
    void SetUp() override {
        exact_display::SetUp();
        name_variables({});
    }
    std::string listed(int with_values = 1) {
        return text_of([&] { listvars(with_values); });
    }
    void define(const char *name, quolynode *value) {
        token_record tok;
        set_token(tok, name);
        quoly_handle v;
        *v.slot() = value;
        insert_var(tok, v);
    }
    /* A further record in front of those of the same name, as a parameter is. */
    void shadow(const char *name, int64_t value) {
        variable *v = newvariable();
        *v = {};
        set_token(v->tok, name);
        quoly_set_int64(value, &v->value);
        variable *&chain = sca_store[hash_of(v->tok, scalar_chains)];
        v->next = chain;
        chain = v;
    }
};

/* ---- scalars ---- */

TEST_F(listings, scalars_in_byte_order_of_their_names) {
    EXPECT_EQ(listed(), no_arrays);
    run("b := 2\nab := -12345678901\na := 1/3\na1 := 0\na_ := 5");
    EXPECT_EQ(listed(), " a := 1 / 3\n a1 := 0\n a_ := 5\n ab := -12345678901\n b := 2\n" + no_arrays);
    EXPECT_EQ(listed(0), " a\n a1\n a_\n ab\n b\n" + no_arrays);
}

TEST_F(listings, scalars_that_are_polynomials) {
    name_variables({"x", "y"});
    define("p", quotient(list({t(2, t(1, n(-1))), n(3)}), nullptr));
    define("q", quotient(t(1, n(2)), list({t(1, n(1)), n(1)})));
    EXPECT_EQ(listed(), " p := (-y)x^2 + 3\n q := ( 2x ) / ( x + 1 )\n" + no_arrays);
    monomial_list = 1;
    EXPECT_EQ(listed(), " p := - y*x^2 + 3 \n q := ( 2*x  ) / ( x + 1  )\n" + no_arrays);
}

TEST_F(listings, columns_begin_behind_the_name) {
    name_variables({"x"});
    define("abc", quotient(list({t(2, n(1)), n(1)}), nullptr));
    dispcutoff = 10; /* " abc := " 8, x 9, ^2 10 */
    EXPECT_EQ(listed(), " abc := x^2 `\n+ 1\n" + no_arrays);
    dispcutoff = 14; /* blank 11, next 12, "+ " 14 */
    EXPECT_EQ(listed(), " abc := x^2 +  `\n1\n" + no_arrays);
}

TEST_F(listings, array_parameters_are_told) {
    quolynode *mark = nullptr;
    quoly_set(3, &mark);
    define("par", mark);
    find_variable(*[] {
        static token_record tok;
        set_token(tok, "par");
        return &tok;
    }())
        ->value->array_mark = 1;
    EXPECT_EQ(listed(), " par := array parameter.\n" + no_arrays);
    EXPECT_EQ(listed(0), " par\n" + no_arrays);
}

TEST_F(listings, ten_records_of_one_name) {
    for (int i = 0; i < 10; i++) shadow("v", i);
    define("w", [] {
        quolynode *q = nullptr;
        quoly_set(5, &q);
        return q;
    }());
    std::string newest_first;
    for (int i = 9; i >= 0; i--) newest_first += " v := " + std::to_string(i) + "\n";
    EXPECT_EQ(listed(), newest_first + " w := 5\n" + no_arrays);
    for (int i = 10; i < 13; i++) shadow("v", i);
    newest_first.clear();
    for (int i = 12; i > 2; i--) newest_first += " v := " + std::to_string(i) + "\n";
    EXPECT_EQ(listed(), newest_first + " ... 3 more with this name. \n w := 5\n" + no_arrays);
}

TEST_F(listings, more_than_1000_scalars_stand_in_the_order_of_their_chains) {
    auto names_listed = [&] {
        std::vector<std::string> names;
        std::string text = listed(0);
        text.erase(text.find(no_arrays));
        for (std::size_t at = 0; at < text.size();) {
            std::size_t end = text.find('\n', at);
            names.push_back(text.substr(at + 1, end - at - 1));
            at = end + 1;
        }
        return names;
    };
    for (int i = 0; i < 1000; i++) shadow(("s" + std::to_string(i)).c_str(), i);
    std::vector<std::string> names = names_listed();
    EXPECT_EQ(names.size(), 1000u);
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    shadow("s1000", 0);
    names = names_listed();
    ASSERT_EQ(names.size(), 1001u);
    for (std::size_t i = 0; i + 1 < names.size(); i++)
        ASSERT_LE(hash(names[i].c_str(), scalar_chains), hash(names[i + 1].c_str(), scalar_chains));
}

TEST_F(listings, at_the_prompt) {
    run("x := 3\nyy := 4");
    EXPECT_EQ(run("&v"), " x := 3\n yy := 4\n" + no_arrays + "\n        0\n\n");
    EXPECT_EQ(run("&v:"), " x\n yy\n" + no_arrays + "\n");
    EXPECT_NE(run("&v 3").find("*** Inappropriate symbol: 3\n"), std::string::npos);
}

/* ---- polynomial variables ---- */

struct relations : exact_display {
    void TearDown() override {
        for (pt &v : variables) {
            free_poly(&v.pt_mod_poly);
            free_poly(&v.pt_mod_poly2);
        }
        exact_display::TearDown();
    }
    std::string listed(int as_saved = 0) {
        return text_of([&] { polylist(Output, as_saved); });
    }
};

TEST_F(relations, variables_from_the_innermost_outwards) {
    name_variables({});
    EXPECT_EQ(listed(), "");
    name_variables({"x", "y", "z"});
    EXPECT_EQ(listed(), "    z;    y;    x;\n");
}

TEST_F(relations, the_report_of_settings_has_the_list) {
    name_variables({});
    EXPECT_NE(run("&g").find(" No polynomial variables exist.\n"), std::string::npos);
    name_variables({"x", "y"});
    EXPECT_NE(run("&g").find(" These 2 polynomial variables have been created:\n    y;    x;\n"), std::string::npos);
}

TEST_F(relations, twelve_variables_to_a_line) {
    name_variables({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"});
    EXPECT_EQ(listed(), "    l;    k;    j;    i;    h;    g;    f;    e;    d;    c;    b;    a;\n");
    name_variables({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m"});
    EXPECT_EQ(listed(), "    m;    l;    k;    j;    i;    h;    g;    f;    e;    d;    c;    b;\n    a;\n");
}

TEST_F(relations, a_variable_with_a_relation_has_its_line) {
    name_variables({"x", "y", "t", "u", "v"});
    variables[2].pt_mod_poly = list({t(2, n(1)), t(1, n(-1)), n(-1)});
    EXPECT_EQ(listed(), "    v;    u;\n    t;  subject to t^2 - t - 1 = 0.\n    y;    x;\n");
    EXPECT_EQ(listed(1), "    &(J = x);\n    &(J = y);\n    &(J = t);\n    &(J = u);\n    &(J = v);\n"
                         "\n &(P = t^2 - t - 1);\n\n");
}

TEST_F(relations, a_power_that_has_a_constant_value_is_shown_whole) {
    name_variables({"i"});
    variables[0].pt_mod_poly = n(-1);
    variables[0].pt_mod_poly2 = list({t(2, n(1)), n(1)});
    variables[0].pt_mod_flags = 1;
    EXPECT_EQ(listed(), "    i;  subject to i^2 + 1 = 0. This creates a field.\n");
    EXPECT_EQ(listed(1), "    &(J = i);\n\n &(P = i^2 + 1, 1);\n\n");
}

TEST_F(relations, relations_are_saved_from_the_innermost_outwards) {
    name_variables({"x", "s", "t"});
    variables[1].pt_mod_poly = list({t(2, n(1)), wrap(t(1, n(-1)))});
    variables[2].pt_mod_poly = list({t(2, n(1)), t(1, n(1)), n(1)});
    EXPECT_EQ(listed(1), "    &(J = x);\n    &(J = s);\n    &(J = t);\n"
                         "\n &(P = t^2 + t + 1);\n\n &(P = s^2 - t);\n\n");
}

TEST_F(relations, roots_of_a_field_are_saved_six_to_a_line) {
    name_variables({"t"});
    variables[0].pt_mod_poly = list({t(2, n(1)), t(1, n(1)), n(1)});
    variables[0].pt_mod_flags = 1;
    number pairs[7]{};
    for (int i = 0; i < 7; i++) {
        setvalue(i + 1, &pairs[i]);
        pairs[i].lint_val = 101 + i;
        pairs[i].num_link = i < 6 ? &pairs[i + 1] : nullptr;
    }
    variables[0].pt_nums = pairs;
    variables[0].pt_num_count = 7;
    EXPECT_EQ(listed(1), "    &(J = t);\n\n &(P = t^2 + t + 1, 1: \n"
                         " : 101, 1, 102, 2, 103, 3, 104, 4, 105, 5, 106, 6,\n 107, 7);\n\n");
    for (number &x : pairs) special_free(&x);
    variables[0].pt_nums = nullptr;
}

TEST_F(relations, relations_of_a_modular_ring_are_saved_with_a_remark) {
    name_variables({"t"});
    take_modulus(7);
    variables[0].pt_mod_poly = list({t(2, n(1)), t(1, n(1)), n(6)});
    EXPECT_EQ(listed(1), "    &(J = t);\n"
                         "\n;; Warning. This file was saved in modular mode. The polynomial written\n"
                         ";;   below after &(P = has been converted back to rational mode. It may\n"
                         ";;   not be correct. Check it before reading this file.\n"
                         "\n &(P = t^2 + t - 1);\n\n");
}
