/* What error, warning and their like write, piece by piece. */
#include "top/error_report.h"

#include "language/execution.h"
#include "language/stored.h"
#include "language/expressions.h"
#include "language/names.h"
#include "language/scanner.h"
#include "support/fresh_system.h"
#include "top/driver.h"

#include <vector>

using namespace tolvek;

namespace {

token_record symbol(const char *text) {
    token_record t{};
    set_token(t, text);
    return t;
}

/* A stored list of tokens, given back at the end of the frame. */
struct stored_list {
    explicit stored_list(const std::vector<std::string> &texts) {
        name **link = &head;
        for (const std::string &text : texts) {
            *link = newname();
            (*link)->tok = symbol(text.c_str());
            link = &(*link)->next;
        }
        *link = newname();
        (*link)->tok = end_of_list;
    }
    ~stored_list() { freename(head); }
    stored_list(const stored_list &) = delete;
    stored_list &operator=(const stored_list &) = delete;

    name *head = nullptr;
};

std::string repeated(const std::string &text, int times) {
    std::string all;
    while (times-- > 0) all += text;
    return all;
}

struct reports : fresh_system {
    /* The text of an error outside any statement. */
    std::string error_text(int n, const char *at = "s") {
        return text_of([&] { error(n, symbol(at)); });
    }
    static std::string heading(int n, const char *at = "s") {
        return std::string("\n*** Inappropriate symbol: ") + at + "\n" + message_text(n) + "\n";
    }
    void enter(const function &f, int times) {
        while (times-- > 0) enter_function(&f);
    }
};

/* ---- heading ---- */

TEST_F(reports, every_numbered_message_is_of_one_line_and_at_most_65_characters) {
    for (int n = 1; n <= 377; n++) {
        std::string text = message_text(n);
        EXPECT_TRUE(!text.empty() && text.size() <= 65 && text.find('\n') == std::string::npos) << n << ": " << text;
    }
    EXPECT_STREQ(message_text(0), "");
    EXPECT_STREQ(message_text(378), "");
}

TEST_F(reports, every_number_is_raised_with_its_symbol_and_its_text) {
    for (int n = 1; n <= 377; n++) {
        if (n == 17 || n == 139 || n == 132 || n == 38 || n == 103) continue; /* they say more, see below */
        EXPECT_EQ(error_text(n), heading(n));
    }
}

TEST_F(reports, the_end_of_a_list_is_shown_as_a_semicolon) {
    EXPECT_EQ(text_of([] { error(28, end_of_list); }), heading(28, ";"));
}

TEST_F(reports, error_17_lists_the_legal_symbols) {
    EXPECT_EQ(error_text(17), std::string("\n*** Inappropriate symbol: s\n"
                                          "After &, legal symbols are: v,f,F,r,R,d,D,C,B,I,X,L,K,c,W,@,_s,_t,_G\n") +
                                  message_text(17) + "\n");
}

TEST_F(reports, error_139_warns_of_the_parameter_that_dangles) {
    EXPECT_EQ(error_text(139), heading(139) +
                                   "that you have just deleted.  Any reference to this parameter \n"
                                   "s may crash Tolvek. There may be other such dangling array parameters.\n");
}

TEST_F(reports, a_panic_stop_outside_functions_at_level_1_says_that_there_is_nothing_to_leave) {
    EXPECT_EQ(error_text(0), "\n*** Panic stop.\n    You were already at the lowest level.\n");
}

TEST_F(reports, a_panic_stop_inside_a_function_does_not) {
    function f{symbol("F")};
    enter(f, 1);
    std::string text = error_text(0);
    EXPECT_EQ(text.find("already"), std::string::npos);
    EXPECT_EQ(text.substr(0, 17), "\n*** Panic stop.\n");
}

TEST_F(reports, without_extra_lines_no_newline_comes_first) {
    extra_line = 0;
    EXPECT_EQ(error_text(28), heading(28).substr(1));
}

/* ---- a definition that fails ---- */

TEST_F(reports, fifteen_empty_lines_show_the_last_line_and_cancel_the_definition) {
    stored_list line({"x"});
    last_good_one = line.head;
    current_func = symbol("Foo");
    EXPECT_EQ(error_text(132), heading(132) + "Here is the last line read:\nx\n*** Definition of Foo cancelled.\n");
}

TEST_F(reports, a_definition_that_is_cut_off_or_misread_shows_the_last_whole_line) {
    stored_list line({"x"});
    last_attached = line.head;
    current_func = symbol("Foo");
    const std::string cancelled = "Here is the last line successfully read:\nx\n*** Definition of Foo cancelled.\n";
    EXPECT_EQ(error_text(38), heading(38) + cancelled);
    last_attached = line.head; /* the unwinding has forgotten it */
    EXPECT_EQ(error_text(103), heading(103) + cancelled);
    last_attached = line.head;
    func_def_count = 1;
    EXPECT_EQ(error_text(129), heading(129) + cancelled);
    EXPECT_EQ(func_def_count, 0);
    last_attached = line.head;
    EXPECT_EQ(error_text(129), heading(129));
}

/* ---- a file being loaded ---- */

struct loading : reports {
    text_in file;
    void load(const char *text, bool close) {
        write_file("input", text);
        ASSERT_TRUE(open_text(file, "input"));
        inpuf = &file;
        std::strcpy(input_file_name, "input");
        close_inpuf = close;
        tt_flag = 0;
    }
};

TEST_F(loading, an_error_shows_the_next_three_lines) {
    load("one\ntwo\nthree\nfour\n", false);
    EXPECT_EQ(error_text(28), heading(28) + "*** Stopped right before this:\none\ntwo\nthree\n");
    EXPECT_EQ(inpuf, &file);
    EXPECT_EQ(take_char(inpuf), 'f');
}

TEST_F(loading, a_line_is_cut_to_254_characters) {
    load((repeated("a", 300) + "\nb\nc\n").c_str(), false);
    EXPECT_EQ(error_text(28), heading(28) + "*** Stopped right before this:\n" + repeated("a", 254) + "\n" +
                                  repeated("a", 46) + "\nb\n");
}

TEST_F(loading, the_file_may_end_before_three_lines_are_shown) {
    load("one", false);
    EXPECT_EQ(error_text(28), heading(28) + "*** Stopped right before this:\none\n");
}

TEST_F(loading, the_file_is_closed_where_this_was_asked_for) {
    load("one\ntwo\nthree\nfour\n", true);
    EXPECT_EQ(error_text(28),
              heading(28) + "*** Stopped right before this:\none\ntwo\nthree\n\n*** Closing file input\n");
    EXPECT_EQ(inpuf, nullptr);
    EXPECT_STREQ(input_file_name, "");
}

TEST_F(loading, at_the_terminal_no_line_of_the_file_is_shown) {
    load("one\n", false);
    tt_flag = 1;
    EXPECT_EQ(error_text(28), heading(28));
}

/* ---- the statement's tokens ---- */

TEST_F(reports, the_tokens_of_the_statement_follow_the_message) {
    recent_tokens.note(symbol("x"));
    recent_tokens.note(symbol("+"));
    EXPECT_EQ(error_text(28), heading(28) + "*** Error occurred at this point:\nx+");
    EXPECT_EQ(error_text(28), heading(28)); /* they are shown once */
}

TEST_F(reports, neither_a_panic_stop_nor_a_file_shows_tokens) {
    recent_tokens.note(symbol("x"));
    EXPECT_EQ(error_text(0).find("at this point"), std::string::npos);
    recent_tokens.note(symbol("x"));
    tt_flag = 0;
    EXPECT_EQ(error_text(28), heading(28));
}

/* ---- the functions being evaluated ---- */

const std::string evaluations = "*** The most recent function evaluations were:\n ";

TEST_F(reports, the_functions_are_listed_from_the_newest_on) {
    function f{symbol("F")}, g{symbol("Gg")};
    enter(f, 1);
    enter(g, 1);
    EXPECT_EQ(error_text(28), heading(28) + evaluations + "Gg F ");
    EXPECT_EQ(statcount, 0);
}

TEST_F(reports, the_tokens_are_set_apart_from_the_functions) {
    function f{symbol("F")};
    enter(f, 1);
    recent_tokens.note(symbol("x"));
    EXPECT_EQ(error_text(28), heading(28) + "*** Error occurred at this point:\nx\n" + evaluations + "F ");
}

TEST_F(reports, ten_calls_of_one_function_are_all_named) {
    function f{symbol("F")};
    enter(f, 10);
    EXPECT_EQ(error_text(28), heading(28) + evaluations + repeated("F ", 10));
}

TEST_F(reports, a_run_of_more_than_ten_is_counted) {
    function f{symbol("F")}, g{symbol("G")};
    enter(g, 1);
    enter(f, 11);
    EXPECT_EQ(error_text(28), heading(28) + evaluations + repeated("F ", 10) + " ... 1 more with this name. \nG ");
}

TEST_F(reports, a_run_at_the_end_of_the_list_is_counted_too) {
    function f{symbol("F")}, g{symbol("G")};
    enter(f, 30);
    enter(g, 2);
    EXPECT_EQ(error_text(28),
              heading(28) + evaluations + "G G " + repeated("F ", 10) + " ... 20 more with this name. \n");
}

TEST_F(reports, a_line_holds_twenty_names) {
    function f{symbol("F")}, g{symbol("G")};
    for (int i = 0; i < 22; i++) enter(i % 2 ? f : g, 1);
    EXPECT_EQ(error_text(28), heading(28) + evaluations + repeated("F G ", 10) + "\n F G ");
}

TEST_F(reports, of_a_deep_recursion_the_newest_500_calls_are_listed) {
    function f{symbol("F")};
    enter(f, 100000);
    EXPECT_EQ(error_text(28), heading(28) + evaluations + repeated("F ", 10) + " ... 490 more with this name. \n");
    function g{symbol("G")}, h{symbol("H")};
    enter(h, 1);
    for (int i = 0; i < 600; i++) enter(i % 2 ? f : g, 1);
    std::string text = error_text(28);
    EXPECT_EQ(std::count(text.begin() + text.find(evaluations), text.end(), 'F'), 250);
    EXPECT_EQ(text.find('H'), std::string::npos);
    EXPECT_EQ(statcount, 0);
}

TEST_F(reports, a_level_lists_the_functions_and_keeps_them) {
    function f{symbol("F")};
    enter(f, 3);
    set_input("&_p\n");
    std::string text = text_of([] { error(-1, blank); });
    EXPECT_EQ(text, "\n*** New command level.\n" + evaluations + "F F F \n2>*** Resuming earlier command level\n");
    EXPECT_EQ(statcount, 3);
}

/* ---- the stored statement being evaluated ---- */

TEST_F(reports, the_stored_statement_is_shown_up_to_where_it_stands) {
    stored_list whole({"while", "x", "do", "y", ":=", "1"}), part({"y", ":=", "1", "/", "0"});
    prev_expr = whole.head;
    startexpr = part.head;
    currentchar = part.head->next->next->next; /* the "/" */
    EXPECT_EQ(error_text(28), heading(28) + "\n*** Function was interrupted at:\nwhilexdoy:=1;\ny:=1\n");
    EXPECT_TRUE(!startexpr && !prev_expr && !currentchar);
}

TEST_F(reports, a_long_stored_statement_is_broken_behind_68_characters) {
    std::vector<std::string> names(9, "abcdefghij");
    stored_list whole(names);
    prev_expr = whole.head;
    std::string text = error_text(28);
    EXPECT_EQ(text, heading(28) + "\n*** Function was interrupted at:\n" + repeated("abcdefghij", 7) + "\n" +
                        repeated("abcdefghij", 2) + ";\n\n");
}

/* ---- warnings ---- */

TEST_F(reports, warnings_have_texts_of_their_own) {
    auto warned = [&](int n) { return text_of([&] { warning(n, "v"); }); };
    const std::string head = "\n *** Warning.\n";
    EXPECT_EQ(warned(0), head + " *** Loop counter in Content is negative.  Will reset.\n\n");
    EXPECT_TRUE(c_cntcount == 200001 && a_cntcount == 200001 && d_cntcount == 200001);
    EXPECT_EQ(warned(1), head + " Specified factor for Det is unusable. Will ignore it.\n\n");
    EXPECT_EQ(warned(2), head + " Specified degree is unreasonable. Will ignore it.\n\n");
    EXPECT_EQ(warned(3), head + " Power is of use only over ground rings Z or Z/p.\n\n");
    EXPECT_EQ(warned(4), head + " With even power, |power| must be 2^k, and modulus mod 4 must equal 3.\n\n");
    EXPECT_EQ(warned(5), head + " With odd power, gcd(|power|, modulus-1) must be 1.\n\n");
    EXPECT_EQ(warned(19), head + " *** Undefined variable: v.  will use 0\n\n");
    EXPECT_EQ(warned(22), head + " *** Trying to divide by 0, in variable: v.  will set quotient to 0\n\n");
    EXPECT_EQ(warned(90), head + " *** Can't do Det\n\n");
    EXPECT_EQ(warned(342), head + message_text(342) + "\n" +
                               " If necessary, do a panic stop as soon as possible. Then if\n"
                               " necessary, delete the parameter v.\n\n");
    EXPECT_EQ(warned(28), head + " *** Can't do v\n" + message_text(28) + "\n\n");
    EXPECT_EQ(warned(17),
              head + " *** Can't do v\nAfter &, legal symbols are: v,f,F,r,R,d,D,C,B,I,X,L,K,c,W,@,_s,_t,_G\n" +
                  message_text(17) + "\n\n");
}

TEST_F(reports, a_scalar_that_stands_for_an_array_warns_and_gives_0) {
    run("x := 5:");
    token_record x = symbol("x");
    find_variable(x)->value->array_mark = 1;
    EXPECT_EQ(run("x + 2"), "Warning. x is an array parameter used as a scalar.\n  Value 0 used for x.\n\n2\n\n");
    quoly_handle value;
    quolynode **slot = nullptr;
    EXPECT_EQ(text_of([&] { spec_retrieve(x, value.slot(), &slot); }),
              "Warning. x is an array parameter.\n  Value 0 used for x.\n");
    EXPECT_TRUE(quoly_is_zero(value.get()));
}

TEST_F(reports, literals_beyond_32_bits_warn_thirty_times_in_a_statement) {
    std::string sum = "99999999999";
    for (int i = 1; i < 35; i++) sum += "+99999999999";
    set_input(sum + ";");
    std::string text = text_of([] {
        ring_guard ring;
        flotemode = 0;
        warn_cnt = 0;
        quoly_handle value;
        name *cursor = nullptr;
        scanner(&Input, token, &cursor);
        old_expre(&Input, value.slot(), &cursor);
    });
    EXPECT_EQ(text, repeated(" *** Warning. overflow while reading constant.\n", 30));
}

/* ---- internal errors ---- */

TEST_F(reports, an_internal_error_without_the_flag_returns) {
    EXPECT_FALSE(unwinds([] { tolvek_error("first available.", 0); }));
    EXPECT_EQ(last_text, "*** Tolvek error. first available.\n");
}

TEST_F(reports, an_internal_error_with_the_flag_opens_a_level_and_returns) {
    set_input("1 + 1\n&_p\n");
    EXPECT_FALSE(unwinds([] { tolvek_error("first available.", 1); }));
    EXPECT_EQ(last_text, "*** Tolvek error. first available.\n\n*** New command level.\n2>\n2\n\n"
                         "2>*** Resuming earlier command level\n");
    EXPECT_EQ(levelcount, 1);
}

TEST_F(reports, a_heap_that_refuses_opens_a_level) {
    set_input("&_p\n");
    EXPECT_FALSE(unwinds([] { mem_error(); }));
    EXPECT_EQ(last_text, "\n*** Warning.  You are out of heap space.  Abort this computation.\n"
                         "\n*** New command level.\n2>*** Resuming earlier command level\n");
}

/* ---- errors that push ---- */

TEST_F(reports, with_push_an_error_inside_a_function_opens_a_level_and_returns) {
    errorpush = 1;
    function f{symbol("F")};
    enter(f, 2);
    set_input("levels\n&_p\n");
    EXPECT_FALSE(unwinds([] { error(28, symbol("a")); }));
    EXPECT_EQ(last_text, heading(28, "a") + evaluations +
                             "F F \n2>\n\n *** Warning.\n *** Undefined variable: levels.  will use 0\n\n\n0\n\n"
                             "2>*** Resuming earlier command level\n");
    EXPECT_EQ(statcount, 2);
}

TEST_F(reports, a_panic_stop_never_pushes) {
    errorpush = 1;
    function f{symbol("F")};
    enter(f, 2);
    EXPECT_TRUE(unwinds([] { error(0, blank); }));
    EXPECT_EQ(statcount, 0);
}

} // namespace
