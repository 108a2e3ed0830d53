/* The statement &J, at the prompt. */
#include "poly/canonical.h"
#include "poly/variables.h"

#include "language/expressions.h"
#include "language/names.h"
#include "quoly/quoly.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/interrupts.h"
#include "top/loop.h"
#include "display/progress.h"

namespace tolvek {

namespace {
struct attach_test : fresh_exact_system {
    void SetUp() override {
        forget_poly_variables();
        fresh_exact_system::SetUp();
        noisy = extra_line = 0;
    }
    void TearDown() override {
        watch_safe_points(nullptr);
        field_depth = laurent = 0;
        fresh_exact_system::TearDown();
        forget_poly_variables();
    }
    /* The value of a scalar, with the variables of the levels written x, y, z, t, ... */
    static std::string stored(const char *variable_name) {
        token_record t{};
        set_token(t, variable_name);
        t.hash_slot = hash_unknown;
        variable *v = find_variable(t);
        if (!v) return "none";
        EXPECT_EQ(quoly_rule_broken(v->value), 0);
        return tolvek::text_of(v->value);
    }
    static std::string names() {
        std::string text;
        for (const pt *v = polynames; v; v = v->pt_next) text += std::string(v->pt_name) + " ";
        return text;
    }
    bool gives_message(const std::string &lines, int number) {
        std::string text = run(lines);
        return text.find(message_text(number)) != std::string::npos;
    }
};
} // namespace

/* ---- adding ---- */

TEST_F(attach_test, a_variable_goes_to_the_tail_and_stored_values_stay_as_they_are) {
    EXPECT_EQ(run("&(J = a)"), " Change of polynomial variable: a.\n");
    run("p := a^2 + 3; n := 5");
    const quolynode *before = nullptr;
    token_record t{};
    set_token(t, "p");
    t.hash_slot = hash_unknown;
    before = find_variable(t)->value;
    run("&(J = b)");
    EXPECT_EQ(names(), "a b ");
    EXPECT_EQ(find_variable(t)->value, before);
    EXPECT_EQ(stored("p"), "x^2 + 3");
    run("p := p + b");
    EXPECT_EQ(stored("p"), "x^2 + y + 3");
}

TEST_F(attach_test, a_variable_at_the_head_puts_a_wrapper_on_each_value_but_not_on_constants) {
    run("&(J = a)\np := a^2 + 3; n := 5; q := 1/3; r := a/2");
    EXPECT_EQ(run("&(J > b)"), " Change of polynomial variable: b.\n");
    EXPECT_EQ(names(), "b a ");
    EXPECT_EQ(stored("p"), "y^2 + 3");
    EXPECT_EQ(stored("n"), "5");
    EXPECT_EQ(stored("q"), "(1)/(3)");
    EXPECT_EQ(stored("r"), "(y)/(2)");
    run("s := p - a^2 + b");
    EXPECT_EQ(stored("s"), "x + 3");
}

TEST_F(attach_test, with_a_field_a_variable_goes_directly_above_it) {
    run("&(J = a)\n&(J = b)\np := a*b + b + 1");
    field_depth = 2;
    run("&(J = c)");
    EXPECT_EQ(names(), "a c b ");
    EXPECT_EQ(field_depth, 3);
    EXPECT_EQ(stored("p"), "x*z + z + 1");
    EXPECT_TRUE(gives_message("&(J > d)", 360));
    EXPECT_EQ(names(), "a c b ");
}

TEST_F(attach_test, the_last_value_is_forgotten_when_its_variables_move) {
    run("&(J = a)\na^2\n&(J > b)\nv := <");
    EXPECT_EQ(stored("v"), "0");
    EXPECT_TRUE(!prevnum || prevnum->is_num);
}

TEST_F(attach_test, there_are_150_variables_at_most) {
    std::string lines;
    for (int i = 1; i <= most_variables; i++) lines += "&(J = v" + std::to_string(i) + ")\n";
    run(lines);
    EXPECT_EQ(number_polys, 150);
    EXPECT_TRUE(gives_message("&(J = w)", 228));
    EXPECT_EQ(number_polys, 150);
    run("p := v1*v150 + v75^2");
    EXPECT_EQ(quoly_rule_broken(find_variable(*[] {
                                    static token_record t{};
                                    set_token(t, "p");
                                    t.hash_slot = hash_unknown;
                                    return &t;
                                }())
                                    ->value),
              0);
    EXPECT_STREQ(polyvar[0], "v1");
    EXPECT_STREQ(polyvar[149], "v99");
    run("&(J = -v150)\n&(J > w)");
    EXPECT_EQ(number_polys, 150);
    EXPECT_STREQ(polynames->pt_name, "w");
}

/* ---- cancelling ---- */

TEST_F(attach_test, cancelling_evaluates_all_values_at_1) {
    run("&(J = a)\n&(J = b)\n&(J = c)\np := a^2*b*c + b^3*c - b + 4; q := b^2 - b; r := (b + a)/2; n := 7; s := b/3");
    EXPECT_EQ(run("&(J = -b)"), " Change of polynomial variable: cancel b.\n");
    EXPECT_EQ(names(), "a c ");
    EXPECT_EQ(stored("p"), "x^2*y + y + 3");
    EXPECT_EQ(stored("q"), "0");
    EXPECT_EQ(stored("r"), "(x + 1)/(2)");
    EXPECT_EQ(stored("n"), "7");
    EXPECT_EQ(stored("s"), "(1)/(3)");
    run("&(J = -Var(2))");
    EXPECT_EQ(names(), "a ");
    EXPECT_EQ(stored("p"), "x^2 + 4");
    run("&(J = -a)");
    EXPECT_EQ(stored("p"), "5");
    EXPECT_EQ(number_polys, 0);
    EXPECT_EQ(stored("r"), "1");
}

TEST_F(attach_test, a_fraction_is_reduced_when_a_variable_goes) {
    run("&(J = a)\n&(J = b)\np := (a*b + b)/2; q := (3*a + 3*b)/2");
    run("&(J = -a)");
    EXPECT_EQ(stored("p"), "x");
    EXPECT_EQ(stored("q"), "(3*x + 3)/(2)");
    run("&(J = -b)");
    EXPECT_EQ(stored("q"), "3");
}

TEST_F(attach_test, a_denominator_that_becomes_0_sets_the_value_to_1_with_40_warnings) {
    run("&(J = a)\n&(J = b)");
    for (int i = 0; i < 45; i++) {
        token_record t{};
        set_token(t, ("d" + std::to_string(i)).c_str());
        t.hash_slot = hash_unknown;
        poly_handle num(poly_of("y")), den(poly_of("x - 1"));
        quoly_handle value;
        *value.slot() = new_fraction(num, den);
        insert_var(t, value);
    }
    std::string text = run("&(J = -a)"), warning = "Warning. A quoly denominator has become 0.  That variable has been "
                                                   "set to 1.\n";
    int warnings = 0;
    for (std::size_t at = 0; (at = text.find(warning, at)) != std::string::npos; at++) warnings++;
    EXPECT_EQ(warnings, 40);
    EXPECT_EQ(stored("d0"), "1");
    EXPECT_EQ(stored("d44"), "1");
}

TEST_F(attach_test, deleted_variables_that_wait_follow_too) {
    run("&(J = a)\np := a; q := a + 1");
    token_record t{};
    set_token(t, "p");
    t.hash_slot = hash_unknown;
    variable *v = find_variable(t);
    delete_variable(t);
    token = {};
    set_token(token, ">");
    unwinds([] {
        set_token(token, ">");
        name *none = nullptr;
        attach_poly(&Input, &none, 1);
    });
    EXPECT_EQ(number_polys, 1); /* the input had no name: nothing has changed */
    set_input("b)\n");
    unwinds([] {
        set_token(token, ">");
        name *none = nullptr;
        attach_poly(&Input, &none, 1);
    });
    EXPECT_EQ(number_polys, 2);
    EXPECT_EQ(tolvek::text_of(v->value), "y");
    release_pending();
}

/* ---- the dialog ---- */

TEST_F(attach_test, the_dialog_asks_for_the_variable) {
    EXPECT_EQ(run("&J\na"), " Enter polynomial variable:\n> Change of polynomial variable: a.\n");
    EXPECT_EQ(names(), "a ");
    run("&J\n-a");
    EXPECT_EQ(names(), "");
    EXPECT_TRUE(gives_message("&J\n> a", 362));
    EXPECT_TRUE(gives_message("&J\na b", 129));
    EXPECT_EQ(names(), "");
}

/* ---- messages ---- */

TEST_F(attach_test, a_cancellation_ignores_the_place) {
    run("&(J = a)");
    EXPECT_EQ(run("&(J > -a)"), "Warning.  '>' ignored.\n Change of polynomial variable: cancel a.\n");
    EXPECT_EQ(names(), "");
}

TEST_F(attach_test, away_from_the_terminal_the_change_is_told_when_windy_is_on) {
    auto attach = [this](const std::string &text) {
        set_input(text);
        return text_of([] {
            kept_value<int> loaded(tt_flag, 0);
            set_token(token, "=");
            name *none = nullptr;
            attach_poly(&Input, &none, 1);
        });
    };
    EXPECT_EQ(attach("a)\n"), "");
    windy = 1;
    EXPECT_EQ(attach("b)\n"), " Change of polynomial variable: b.\n");
    EXPECT_EQ(attach("-b)\n"), " Change of polynomial variable: cancel b.\n");
    windy = 0;
    EXPECT_EQ(names(), "a ");
}

TEST_F(attach_test, a_change_in_a_modular_ring_is_noted) {
    run("&(J = a)");
    EXPECT_EQ(changed_in_modmode, 0);
    set_input("b)\n");
    text_of([] {
        test_ring ring("7");
        set_token(token, "=");
        name *none = nullptr;
        attach_poly(&Input, &none, 1);
    });
    EXPECT_EQ(names(), "a b ");
    EXPECT_EQ(changed_in_modmode, 1);
}

/* ---- errors: nothing changes ---- */

TEST_F(attach_test, each_error_leaves_variables_and_values_as_they_were) {
    run("&(J = a)\np := a + 1");
    struct row {
        const char *line;
        int number;
    } rows[] = {
        {"&(J = A)", 124},         {"&(J = 3)", 124},         {"&(J = )", 124},
        {"&(J = Var(9))", 124},    {"&(J = a)", 126},         {"&(J > a)", 126},
        {"&(J = Var(1))", 126},    {"&(J = -b)", 169},        {"&(J = -Var(2))", 169},
        {"&(J = -a, P = a)", 356}, {"&(J = b, Q = a)", 355},  {"&(J = b, P a)", 4},
        {"&(J > b, P = b)", 361},  {"&(J = b, P = b^2)", 62}, {"&(J b)", 4},
        {"&(J = b", 135},          {"&(J = b; 3", 135},       {"&(J = -a", 135},
        {"&(J = -Var a)", 227},    {"&(J > > b)", 124},
    };
    for (const row &r : rows) {
        EXPECT_TRUE(gives_message(r.line, r.number)) << r.line << " gives\n" << last_text;
        EXPECT_EQ(names(), "a ") << r.line;
        EXPECT_EQ(stored("p"), "x + 1") << r.line;
    }
}

TEST_F(attach_test, variables_change_at_level_1_only) {
    run("&(J = a)\np := a");
    EXPECT_TRUE(gives_message("&_P\n&(J > b)\n&_p", 73));
    EXPECT_TRUE(gives_message("&_P\n&J\n&_p", 73));
    EXPECT_EQ(names(), "a ");
    EXPECT_EQ(stored("p"), "x");
}

TEST_F(attach_test, variables_do_not_change_while_an_expression_holds_a_value) {
    run("&(J = a)\np := a");
    for (const char *line : {"q := p + &(J > b)", "q := p*&(J > b)", "q := (p + 1) - 2*&(J > b)", "q := p^(&(J > b))",
                             "q := a + (1 + &(J = -a))", "q := p#(&(J > b))", "p + &J"}) {
        EXPECT_TRUE(gives_message(line, 73)) << line;
        EXPECT_EQ(names(), "a ") << line;
        EXPECT_EQ(stored("p"), "x") << line;
        EXPECT_TRUE(stored("q") == "none" || stored("q") == "0") << line;
        EXPECT_EQ(values_held, 0);
    }
    run("q := (&(J > b))");
    EXPECT_EQ(names(), "b a ");
    EXPECT_EQ(stored("q"), "0");
    EXPECT_EQ(stored("p"), "y");
}

/* ---- interrupts ---- */

static int points_left;

TEST_F(attach_test, a_cancellation_that_is_left_at_any_point_has_changed_nothing) {
    run("&(J = a)\n&(J = b)\np := a^3*b^2 + a^2*b + a + b^2 + 1; q := (a + b)/2; r := a^2 - b");
    std::string p = stored("p"), q = stored("q"), r = stored("r");
    records_in_use found = count_records_in_use();
    for (int n = 0;; n++) {
        points_left = n;
        set_input("-a)\n");
        bool left = unwinds([] {
            set_token(token, "=");
            name *none = nullptr;
            watch_safe_points([] {
                if (points_left-- == 0) error(0, blank);
            });
            attach_poly(&Input, &none, 1);
        });
        watch_safe_points(nullptr);
        if (!left) break;
        ASSERT_LT(n, 10000);
        EXPECT_EQ(names(), "a b ");
        EXPECT_EQ(stored("p"), p);
        EXPECT_EQ(stored("q"), q);
        EXPECT_EQ(stored("r"), r);
        EXPECT_EQ(count_records_in_use(), found);
        EXPECT_EQ(values_held, 0);
    }
    EXPECT_EQ(stored("p"), "2*x^2 + x + 2");
    EXPECT_EQ(stored("r"), "-x + 1");
}

TEST_F(attach_test, a_value_that_a_command_level_stores_meanwhile_follows_too) {
    run("&(J = a)\n&(J = b)\np := a^3*b^2 + a^2*b + a + b^2 + 1");
    int met = 0;
    for (int n = 0; n < 8; n++) {
        SCOPED_TRACE(n);
        run("&(J > c)\nr := 0; p := a^3*b^2 + a^2*b + c; @s");
        points_left = n;
        set_input("&(J = -c)\np := a^7 + c\ns := b*c\n&_p\n&q\n");
        text_of([] {
            watch_safe_points([] {
                if (token_is(token, ")") && points_left-- == 0) note_interrupt();
            });
            command_loop();
        });
        watch_safe_points(nullptr);
        leave_all_levels();
        if (names() != "a b ") {
            run("&(J = -c)");
            continue;
        }
        if (stored("s") == "none") continue;
        EXPECT_EQ(stored("p"), "x^7 + 1");
        EXPECT_EQ(stored("s"), "y");
        met++;
    }
    EXPECT_GT(met, 0);
}

} // namespace tolvek
