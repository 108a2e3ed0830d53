/* Switches beyond what sessions at the prompt show: stored statements, rings, failures, values. */
#include "top/switches.h"

#include "display/progress.h"
#include "language/execution.h"
#include "language/expressions.h"
#include "numbers/number_decimal.h"
#include "numbers/storage_report.h"
#include "support/fresh_system.h"
#include "top/defaults.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/interrupts.h"
#include "top/parse.h"
#include "top/settings.h"
#include "top/settings_report.h"
#include "top/switches_table.h"

#include <climits>
#include <cstring>
#include <regex>
#include <set>
#include <vector>

namespace tolvek {

namespace {

/* A statement as a function holds it. */
struct stored_statement {
    explicit stored_statement(const std::string &text) {
        buffer<char> line;
        for (char c : text) line.push(c);
        text_in source;
        put_back_line(&source, line);
        stream in = &source;
        name *no_cursor = nullptr;
        leftover = 0;
        for (bool more = true; more;) {
            token_record t;
            more = !input_ended(in) || leftover;
            if (more) scanner(&in, t, &no_cursor);
            append(more ? t : end_of_list);
        }
        leftover = 0;
    }
    ~stored_statement() {
        currentchar = nullptr;
        freename(head);
    }
    /* Leaves its value in the slot. */
    void run(quolynode **result) {
        name *cursor = head;
        scanner(&Input, token, &cursor);
        parse(&Input, result, &cursor);
    }

  private:
    void append(const token_record &t) {
        if (!head) head = last = newname();
        last->next = newname();
        last = last->next;
        last->tok = t;
    }
    name *head = nullptr, *last = nullptr;
};

/* Everything that a user can set. */
struct all_settings {
    std::vector<int> values;
    std::string prompt_text, ring;
    int columns = promptsize, mark = continuation;
    long double denominator = rand_denom_n.flote_val;

    all_settings() : prompt_text(prompt) {
        for (int i = 0; i < setting_count; i++) values.push_back(*settings[i].variable);
        ring_state r = current_ring();
        for (int v : {r.flotemode, r.lintmode, r.modularmode, r.integerflag, r.finf, r.modulus, laurent})
            ring += std::to_string(v) + " ";
    }
    bool operator==(const all_settings &) const = default;
};

struct switches : fresh_system {
    using fresh_system::fresh_system;

    std::string in_list(const std::string &statement) {
        return text_of([&] {
            stored_statement s(statement);
            quoly_handle value;
            s.run(value.slot());
        });
    }
    /* A statement at the prompt, in the ring in force. */
    std::string in_ring(const std::string &statement) {
        set_input(statement + "\n");
        return text_of([&] {
            quoly_handle value;
            run_statement(&Input, value.slot());
        });
    }
};
struct exact_switches : switches {
    exact_switches() : switches(home_ring::exact) {}
};

struct modulo : ring_guard {
    explicit modulo(int32_t m) {
        flotemode = 0;
        lintmode = modularmode = 1;
        modulus = m;
    }
};

} // namespace

/* ---- the table ---- */

TEST(switch_table, every_letter_has_one_row) {
    std::set<int> codes, underscores, letters;
    for (int i = 0; i < switch_row_count; i++) {
        const switch_row &row = switch_rows[i];
        if (row.code) {
            EXPECT_TRUE(codes.insert(row.code).second) << row.code;
        }
        if (row.underscore) {
            EXPECT_TRUE(underscores.insert(row.underscore).second) << row.underscore;
        }
        if (row.letter) {
            EXPECT_TRUE(letters.insert(row.letter).second) << row.letter;
        }
        EXPECT_TRUE(row.code || row.underscore);
    }
    std::string commands = "#&(245>]}@ABCDEfFGHIJKLMNOPqQrRsSTUVWXZabcdeghjlmnoptuvx|",
                behind_underscore = "dklmnprstGLP", assignments = "|lmnptu234567ABDEHKLNOUVWXae#&MRSPJ";
    EXPECT_EQ(codes, std::set<int>(commands.begin(), commands.end()));
    EXPECT_EQ(underscores, std::set<int>(behind_underscore.begin(), behind_underscore.end()));
    EXPECT_EQ(letters, std::set<int>(assignments.begin(), assignments.end()));
}

TEST(switch_table, rows_are_complete) {
    for (int i = 0; i < switch_row_count; i++) {
        const switch_row &row = switch_rows[i];
        SCOPED_TRACE(row.code ? row.code : row.underscore);
        if (row.run) continue;
        ASSERT_NE(row.variable, nullptr);
        if (row.kind == switch_kind::flag) {
            EXPECT_TRUE(row.on && (row.off || std::strstr(row.on, "%i")));
        } else {
            EXPECT_TRUE(row.question && row.number_error);
            EXPECT_EQ(row.beyond == outside::refused, row.range_error != 0);
            EXPECT_EQ(row.beyond == outside::replaced, row.replaced && (row.assigned_replaced || !row.letter));
        }
        if (row.beyond != outside::stored) {
            EXPECT_NE(find_setting(row.variable), nullptr);
        }
    }
}

/* ---- stored statements ---- */

TEST_F(switches, quiet_commands_say_nothing_in_a_function) {
    for (const char *command : {"&2", "&_l", "&5", "&_L", "&H", "&O", "&a", "&c", "&e", "&|"}) {
        all_settings before;
        EXPECT_EQ(in_list(command), "") << command;
        EXPECT_FALSE(all_settings() == before) << command;
        EXPECT_EQ(in_list(command), "") << command;
        EXPECT_TRUE(all_settings() == before) << command;
    }
}

TEST_F(switches, the_other_commands_speak_in_a_function) {
    EXPECT_EQ(in_list("&t"), " Timing enabled.\n");
    EXPECT_EQ(in_list("&t"), " Timing disabled.\n");
    EXPECT_EQ(in_list("&V"), " Will display informative comments.\n");
    EXPECT_EQ(in_list("&&"), " Will use disk space for virtual memory.\n");
    EXPECT_EQ(in_list("&I"), " No adjoint-CRT method to invert integer matrices; will use G.E.\n");
}

TEST_F(switches, flags_that_are_assigned_speak_in_a_function) {
    EXPECT_EQ(in_list("&(t = 1)"), " Timing enabled.\n");
    EXPECT_EQ(in_list("&(t = 1)"), " Already had that value; no change in timing.\n");
    EXPECT_EQ(in_list("&(e = 1)"), " Will push new level after errors.\n");
}

/* Assignments with their words, and the value that a variable then has. */
static const struct {
    const char *statement, *words;
    int *variable;
    int value;
} numbers_assigned[] = {
    {"&(# = 30)", " poly_cutoff now 30.\n", &poly_cutoff, 30},
    {"&(# = 3)", " Value entered is too small; will use 6.\n poly_cutoff now 6.\n", &poly_cutoff, 6},
    {"&(A = 50)", " second auxiliary prime search factor now 50.\n", &aux_num_2factor, 50},
    {"&(X = 500)", " first auxiliary prime search factor now 500.\n", &aux_num_1factor, 500},
    {"&(K = 1)", " Gauss-Bareiss switch: 1\n", &gauss_cutoff, 1},
    {"&(L = 3300)", " LaGrange cut off \"mass\": 3300\n", &rat_det_method_cut, 3300},
    {"&(L = 331)", " LaGrange cut off \"mass\": 331\n", &mod_det_method_cut, 10},
    {"&(u = 2)", " Sparse pivot heuristic now 2.\n", &pseudet_heur, 2},
    {"&(u = 9)", " Value entered is too large; will use 0.\n Sparse pivot heuristic now 0.\n", &pseudet_heur, 0},
    {"&(D = 5)", " Detcutoff now 5.\n", &detcutoff, 5},
    {"&(D = -5)", " Will set detcutoff using defaults.\n", &detcutoff, -1},
    {"&(m = 2)", " Command interrupt now on, level 2.\n", &cmd_modder, 2},
    {"&(m = 2)", " Already had that value; no change in command interrupt.\n", &m_interrupt, 2},
    {"&(m = 0)", " Command interrupt now off.\n", &command_int, 0},
    {"&(m = 1)", " Command interrupt now on, level 1.\n", &cmd_modder, 32},
    {"&(_d = 60)", " Columns to display is now: \n60\n", &dispcutoff, 60},
};

TEST_F(switches, numbers_that_are_assigned_in_a_function_are_silent) {
    for (const auto &row : numbers_assigned) {
        EXPECT_EQ(in_list(row.statement), "") << row.statement;
        EXPECT_EQ(*row.variable, row.value) << row.statement;
    }
    EXPECT_EQ(in_list("&(_r = 10)"), "");
}

TEST_F(switches, with_comments_they_speak) {
    verbose = 1;
    for (const auto &row : numbers_assigned) {
        EXPECT_EQ(in_list(row.statement), row.words) << row.statement;
        EXPECT_EQ(*row.variable, row.value) << row.statement;
    }
    EXPECT_EQ(in_list("&(_r = 10)"), " Denominator for random is now: \n10\n");
}

TEST_F(switches, the_way_back_is_read_from_a_stored_list) {
    EXPECT_NE(in_list("&(p = _i)").find(message_text(62)), std::string::npos);
    EXPECT_NE(in_list("&(t = _i)").find(message_text(147)), std::string::npos);
    EXPECT_EQ(in_list("&(t = _sqrt(1))"), " Timing enabled.\n"); /* any other name behind _ is a function */
}

TEST_F(switches, a_text_is_read_from_a_stored_list) {
    EXPECT_EQ(in_list("&(M = 'ab')"), " Prompt now:ab\n");
    EXPECT_STREQ(prompt, "ab");
    EXPECT_NE(in_list("&(M = 'ab").find(message_text(33)), std::string::npos);
    EXPECT_STREQ(prompt, "ab");
}

TEST_F(switches, the_ends_of_loops_set_their_flags_in_a_function) {
    EXPECT_EQ(in_list("&>"), "");
    EXPECT_TRUE(leave_flag && !cycle_flag && !exit_flag);
    EXPECT_EQ(in_list("&]"), "");
    EXPECT_TRUE(leave_flag && cycle_flag && !exit_flag);
    EXPECT_EQ(in_list("&}"), "");
    EXPECT_TRUE(leave_flag && cycle_flag && exit_flag);
}

TEST_F(switches, floats_have_no_other_ring_for_a_list_of_names) {
    for (const char *statement : {"&(p = 7:x,y)", "&p(x)"})
        EXPECT_NE(run(statement).find(message_text(62)), std::string::npos) << statement;
}

/* ---- dialogs ---- */

TEST_F(switches, a_function_asks_at_the_terminal_and_leaves_the_rest_of_the_line) {
    set_input("(+ 2\n30\nnext");
    take_char(Input);
    leftover = '+';
    EXPECT_EQ(in_list("&#"), " Enter poly_cutoff (usually 10-60):\n> poly_cutoff: 30\n");
    EXPECT_TRUE(is_end_of_list(token));
    std::string rest;
    for (int c = take_char(Input); c != no_char; c = take_char(Input)) rest.push_back(static_cast<char>(c));
    EXPECT_EQ(rest, "+ 2\nnext");
}

TEST_F(switches, the_character_read_ahead_is_there_again_behind_a_dialog) {
    set_input("F 2\n30\n");
    take_char(Input);
    stored_statement s("&#");
    leftover = '+';
    quoly_handle value;
    text_of([&] { s.run(value.slot()); });
    EXPECT_EQ(leftover, '+');
}

TEST_F(switches, off_a_terminal_the_line_ends_the_answer_all_the_same) {
    set_input("30\n31\n");
    tt_flag = 0;
    EXPECT_EQ(in_list("&#"), " Enter poly_cutoff (usually 10-60):\n> poly_cutoff: 30\n");
    EXPECT_EQ(tt_flag, 0);
    EXPECT_EQ(peek_char(Input), '3');
}

TEST_F(switches, an_error_in_an_answer_gives_the_terminal_flag_back_and_drops_the_line) {
    EXPECT_EQ(run("&#\n2 +\n5"), " Enter poly_cutoff (usually 10-60):\n>\n*** Inappropriate symbol: ;\n" +
                                     std::string(message_text(2)) +
                                     "\n*** Error occurred at this point:\n&#2+;\n>\n5\n\n");
    EXPECT_EQ(poly_cutoff, 20);
}

TEST_F(switches, a_dialog_at_the_end_of_the_input_ends_in_an_error) {
    set_input("&#\n");
    std::string text = text_of([&] {
        quoly_handle value;
        run_statement(&Input, value.slot());
    });
    EXPECT_NE(text.find(message_text(2)), std::string::npos);
    EXPECT_EQ(poly_cutoff, 20);
}

TEST_F(switches, a_prompt_at_the_end_of_the_input_is_a_blank) {
    EXPECT_EQ(in_ring("&M"), " Enter prompt:\n Prompt now: \n");
    EXPECT_STREQ(prompt, " ");
    EXPECT_EQ(promptsize, 1);
}

TEST_F(switches, an_interrupt_at_a_question_opens_a_level_and_the_answer_is_read_behind_it) {
    int reads = 0;
    before_read = [&] {
        if (++reads != 2) return; /* the second read is for the answer */
        set_input("&_p\n45\n");
        note_interrupt();
    };
    std::string text = in_ring("&#");
    before_read = nullptr;
    EXPECT_EQ(text, " Enter poly_cutoff (usually 10-60):\n>\n*** New command level.\n"
                    "2>*** Resuming earlier command level\n poly_cutoff: 45\n");
    EXPECT_EQ(poly_cutoff, 45);
}

/* ---- failures ---- */

static const char *const bad_statements[] = {
    "&(t = 2)",   "&(t = -1)",  "&(t 1)",     "&(t = 1;",     "&(t = 1",     "&(t = 't')",  "&(t = _i)",  "&(t = zz)",
    "&(t = )",    "&(y = 1)",   "&(y = 2)",   "&(tt = 1)",    "&(_ = 1)",    "&(",          "&(t",        "&(t =",
    "&(# = -1)",  "&(# = [a])", "&(A = 9)",   "&(A = 20001)", "&(X = 299)",  "&(X = 4584)", "&(m = 3)",   "&(m = -1)",
    "&(D = 'x')", "&(K = -1)",  "&(L = -1)",  "&(u = -1)",    "&(_r = 'x')", "&(_r = _i)",  "&(_d = zz)", "&(p = 0)",
    "&(p = 1)",   "&(p = _i",   "&(M = [a])", "&(M = 'ab'",   "&(M = 'ab",   "&(R = ' ')",  "&(R = 'a')", "&(S = '')",
    "&(Q = 'a')", "&(J = X)",   "&(J > X)",   "&(P = 1)",     "&(l = 1)",    "&l",          "&p\nzz",     "&J",
    "&P",         "&v 1",       "&C*",        "&C",           "&C 1",        "&r\n\n",      "&s\n\n",     "&4",
    "&o",         "&_n",        "&y",         "&_y",          "&yy",         "&#\nzz",      "&#\n30 )",   "&#\n30; 1",
    "&#\n\n",     "&A\n9",      "&X\n299",    "&m\n3",        "&D\nzz",      "&K\nzz",      "&L\nzz",     "&u\nzz",
    "&d\nzz",     "&_d\nzz",    "&_k\nzz",    "&_r\nzz",      "&_r\n3 )",    "&_m 1",       "&_m(1",      "&_m(1) 2",
};

static bool reports_an_error(const std::string &text) {
    return text.find("*** Inappropriate symbol: ") != std::string::npos;
}

TEST_F(switches, a_wrong_statement_changes_nothing) {
    run("&(# = 33)\n&(_r = 3)\n&(M = '+')");
    all_settings before;
    for (const char *statement : bad_statements) {
        EXPECT_TRUE(reports_an_error(run(statement))) << statement;
        EXPECT_TRUE(all_settings() == before) << statement;
        EXPECT_EQ(value_of("1 + 1"), "2") << statement;
    }
}

TEST_F(exact_switches, a_list_of_names_behind_p_is_for_the_terminal) {
    EXPECT_NE(run("Func G(n) = &p(x); n.\nG(1)").find(message_text(264)), std::string::npos);
}

TEST_F(exact_switches, a_wrong_statement_changes_nothing) {
    run("&(# = 33)\n&(_r = 3)\n&(M = '+')");
    all_settings before;
    for (const char *statement : bad_statements) {
        const std::string text = statement;
        if (text == "&(p = 7:x,y)" || text == "&p(x)") continue; /* changes of ring, here */
        EXPECT_TRUE(reports_an_error(run(statement))) << statement;
        EXPECT_TRUE(all_settings() == before) << statement;
    }
    for (const char *statement : {"&(t = 1/2)", "&(_r = 1/2)", "&#\n1/2", "&_r\n1/2", "&d\n1/2"}) {
        EXPECT_TRUE(reports_an_error(run(statement))) << statement;
        EXPECT_TRUE(all_settings() == before) << statement;
    }
}

/* With pushing, error returns into the statement when the level is left. */
TEST_F(switches, a_wrong_statement_that_is_resumed_changes_nothing) {
    for (const char *statement : bad_statements) {
        bool has_a_value_then = std::strstr(statement, "zz") || std::strstr(statement, "\n\n");
        if (has_a_value_then) continue; /* of a name that is not defined, or of nothing at all: 0 */
        std::string lines = std::string("&_P\n") + statement + "\n";
        run("&(e = 1)");
        all_settings before;
        std::string text = run(lines + "&_p\n&_p\n&_p\n&_p\n&_p\n");
        EXPECT_TRUE(reports_an_error(text)) << statement;
        EXPECT_TRUE(all_settings() == before) << statement;
    }
}

TEST_F(switches, nothing_is_lost_by_statements_that_fail) {
    auto all = [&] {
        for (const char *statement : bad_statements) run(statement);
    };
    all();
    records_in_use before = count_records_in_use();
    all();
    EXPECT_TRUE(count_records_in_use() == before);
}

/* ---- values ---- */

TEST_F(switches, figures_beyond_32_bits_are_held_there) {
    run("&(D = 10^30)");
    EXPECT_EQ(detcutoff, INT_MAX);
    run("&(D = -10^30)");
    EXPECT_EQ(detcutoff, -1);
    run("&(L = 3000000000)");
    EXPECT_EQ(rat_det_method_cut, INT_MAX);
    EXPECT_EQ(mod_det_method_cut, INT_MAX / 33);
    run("&L\n-10^30");
    EXPECT_EQ(rat_det_method_cut, INT_MAX);
    EXPECT_TRUE(reports_an_error(run("&(t = 4294967296)"))); /* 2^32 */
    EXPECT_TRUE(reports_an_error(run("&(t = 4294967297)")));
}

TEST_F(exact_switches, figures_beyond_32_bits_are_held_there) {
    run("&(D = 10^30)");
    EXPECT_EQ(detcutoff, INT_MAX);
    run("&(D = 2147483646)");
    EXPECT_EQ(detcutoff, 2147483646);
    run("&(D = 2^31)");
    EXPECT_EQ(detcutoff, INT_MAX);
    run("&(D = -2^80)");
    EXPECT_EQ(detcutoff, -1);
    EXPECT_TRUE(reports_an_error(run("&(t = 2^32)")));
    EXPECT_TRUE(reports_an_error(run("&(t = 2^56 + 1)")));
}

TEST_F(switches, a_float_is_rounded_and_no_number_is_refused) {
    run("&(# = 24.6)");
    EXPECT_EQ(poly_cutoff, 25);
    EXPECT_NE(run("&(# = _ln(0 - 1))").find(message_text(147)), std::string::npos);
    EXPECT_NE(run("&#\n_ln(0 - 1)").find(message_text(272)), std::string::npos);
    EXPECT_EQ(poly_cutoff, 25);
}

TEST_F(switches, columns_are_not_negative) {
    run("&(_d = -2147483648)");
    EXPECT_EQ(dispcutoff, 0);
    EXPECT_NE(run("2^100 + 1").find("1.2676506002282294015e+30"), std::string::npos);
}

TEST_F(switches, what_a_switch_sets_beside_its_flag) {
    run("&(_t = 1)\n2");
    EXPECT_EQ(text_of([] {
                  quoly_handle v;
                  stored_statement("&_t").run(v.slot());
              }),
              " Will try fastest probabilistic test for exact poly division.\n");
    EXPECT_TRUE(try_rat && rat_yes);
    run("&(U = 1)");
    EXPECT_EQ(continuation, ' ');
    run("&(U=0)");
    EXPECT_EQ(continuation, '`');
}

TEST_F(switches, a_load_ends_at_x_off_the_terminal_alone) {
    in_list("&x");
    EXPECT_EQ(done_load, 0);
    tt_flag = 0;
    in_list("&x");
    EXPECT_EQ(done_load, 1);
}

/* ---- the display size ---- */

static void show_display_constant() {
    chain_form chains;
    int column = 0;
    showint(&standard_output, &disp_cons, 1, 0, 0, 0, 0, 0, &column);
}

TEST_F(switches, the_display_constant_is_a_power_of_ten_in_the_ring_of_floats) {
    EXPECT_EQ(text_of(show_display_constant), "10000000000000000000000000000000000000000");
    calc_disp(1);
    EXPECT_EQ(text_of(show_display_constant), "100000000");
    calc_disp(-3);
    EXPECT_EQ(disp_size, 0);
    EXPECT_EQ(text_of(show_display_constant), "1");
    modulo seven(7);
    calc_disp(2);
    EXPECT_EQ(text_of(show_display_constant), "10000000000000000");
}

TEST_F(switches, a_display_size_that_is_given_up_changes_nothing) {
    static int points;
    points = 0;
    watch_safe_points([] {
        if (++points == 3) error(0, blank);
    });
    note_interrupt();
    bool gave_up = unwinds([] { calc_disp(20000); });
    watch_safe_points(nullptr);
    EXPECT_TRUE(gave_up);
    EXPECT_EQ(disp_size, 5);
    EXPECT_EQ(chain_rule_broken(&disp_cons), 0);
    EXPECT_EQ(text_of(show_display_constant), "10000000000000000000000000000000000000000");
}

/* ---- modular rings ---- */

TEST_F(exact_switches, numbers_are_read_outside_the_modular_ring) {
    modulo seven(7);
    EXPECT_EQ(in_ring("&(# = 30)"), " poly_cutoff now 30.\n");
    EXPECT_EQ(poly_cutoff, 30);
    EXPECT_EQ(in_ring("&#\n31"), " Enter poly_cutoff (usually 10-60):\n> poly_cutoff: 31\n");
    EXPECT_TRUE(modularmode && mod_is_changed == 0);
    EXPECT_EQ(in_ring("&(_r = 30)"), " Denominator for random is now: \n2\n");
    EXPECT_EQ(in_ring("&_r\n31"), " Enter new denominator for random:\n> Denominator for random is now: \n3\n");
}

TEST_F(exact_switches, the_modulus_in_force_is_no_change) {
    modulo seven(7);
    EXPECT_EQ(in_ring("&(p = 7)"), " Already in that arithmetic mode\n");
}

TEST_F(exact_switches, the_modular_ring_is_told) {
    modulo seven(7);
    EXPECT_EQ(text_of(global_dump).substr(0, 57), "\n Basic arithmetic ring: modular arithmetic, modulus 7.\n ");
    modularmode = 0;
    EXPECT_EQ(text_of(global_dump).substr(0, 57), "\n Basic arithmetic ring: integer arithmetic, float off.\n ");
}

TEST_F(exact_switches, the_memory_is_told_beside_its_residue) {
    modulo big(1000003);
    uint64_t bytes = memavail();
    EXPECT_EQ(in_ring("&h"), std::to_string(bytes) + "i\n");
    EXPECT_EQ(in_list("&h"), "");
}

TEST_F(exact_switches, the_block_on_chpoly_is_refused_in_words) {
    modulo seven(7);
    EXPECT_NE(in_ring("&B").find(message_text(377)), std::string::npos);
    EXPECT_EQ(chpoly_block, 1);
}

/* ---- lines of the report that no session reaches ---- */

TEST_F(switches, the_report_tells_the_fast_path_the_files_the_names_and_the_field) {
    kept_value<int> fast(integerflag, 1), letters(namelength, 8), depth(field_depth, 2), negative(laurent, 1);
    std::strcpy(input_file_name, "in.txt");
    std::strcpy(output_file_name, "out.txt");
    std::string text = text_of(global_dump);
    input_file_name[0] = output_file_name[0] = 0;
    EXPECT_NE(text.find(" Pushing after errors is off.\nReal float mode on.\n Displaying results is on.\n"),
              std::string::npos);
    EXPECT_NE(text.find(" Command interrupt is on, level 1.\n Maximum name length is 8.\n"
                        " Reading from file in.txt.\n Saving to file out.txt.\n No polynomial variables exist.\n"
                        " Field depth is: 2.\n Laurent polynomials allowed.\n There are 0 first auxiliary primes: \n"),
              std::string::npos);
}

/* ---- figures ---- */

TEST_F(switches, the_memory_is_a_value) {
    run("1");
    EXPECT_EQ(value_of("&h"), std::to_string(memavail()));
}

TEST_F(exact_switches, the_memory_is_a_value) {
    totalavailablememory = uint64_t{3} << 40;
    std::string shown = value_of("&h"), figures;
    for (char c : shown)
        if (c != ' ') figures.push_back(c); /* groups of eight figures */
    EXPECT_GT(std::stoull(figures), uint64_t{2} << 40);
    EXPECT_LE(std::stoull(figures), uint64_t{3} << 40);
}

TEST_F(switches, the_time_is_in_milliseconds) {
    int64_t before = time_now().ticks / 1000;
    int64_t told = std::stoll(value_of("&T"));
    EXPECT_LE(before, told);
    EXPECT_LE(told, time_now().ticks / 1000);
}

TEST_F(switches, the_counts_of_minors_are_zero_beside_the_memory) {
    std::string text = text_of([] {
        quoly_handle v;
        stored_statement("&j").run(v.slot());
    });
    EXPECT_TRUE(
        std::regex_match(text, std::regex(" memavail, minor memory, garbsize, minor prime, total branches, "
                                          "leaf count, stash nodes, hits: [0-9]+i, 0i, [0-9]+, 0, 0, 0, 0, 0\n")))
        << text;
}

TEST_F(switches, the_report_of_free_lists_is_a_command) {
    std::string text = run("&G");
    EXPECT_EQ(text.substr(0, 11), "num count: ");
    EXPECT_TRUE(std::regex_search(text, std::regex("i, 20\n([a-z ]+ count: [0-9]+i\n)*"
                                                   "total garbage: [0-9]+i\nsystem data size: [0-9]+i\ntotal size: "
                                                   "[0-9]+i\n\n0\n\n$")))
        << text;
}

/* ---- the argument &o of an output statement ---- */

TEST_F(switches, an_output_argument_needs_its_letter_and_a_file) {
    name *no_cursor = nullptr;
    text_out file(-1);
    set_input("o");
    EXPECT_TRUE(unwinds([&] { handle_andsign(&Input, &no_cursor); }));
    EXPECT_NE(last_text.find(message_text(263)), std::string::npos);
    outpuf = &file;
    set_input("o");
    EXPECT_EQ(handle_andsign(&Input, &no_cursor), &file);
    outpuf = nullptr;
    set_input("p");
    EXPECT_TRUE(unwinds([&] { handle_andsign(&Input, &no_cursor); }));
    EXPECT_NE(last_text.find(message_text(261)), std::string::npos);
}

} // namespace tolvek
