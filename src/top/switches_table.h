/* Private to the switches: the table, and the routines that its rows name. */
#pragma once

#include "quoly/quoly.h"
#include "top/switches.h"

namespace tolvek {

enum class switch_kind {
    flag,    /* 0 or 1: the command toggles it */
    number,  /* the command asks for it */
    command, /* has no value */
};

/* What becomes of a number outside the limits that top/defaults.cpp gives its variable. */
enum class outside {
    stored,   /* they are no limits for the user */
    held,     /* the nearest limit is taken */
    replaced, /* another value is taken, with a text */
    refused,  /* error */
};

/* How the report of settings (top/settings_report.cpp) tells a value. */
enum class report_style {
    on_or_off,    /* the text, then "on." or "off." */
    when_on,      /* the whole line, while the flag is on */
    value,        /* a format */
    value_from_0, /* a format, for values that are not negative */
    level,        /* the text, then the words of a level of command interrupts */
};

/* How a change is told. Each text is a format for the new value. The texts of the assignment are those of the command
   unless the row has others. */
struct switch_row {
    int code = 0;       /* of the command &x; 0: there is none */
    int underscore = 0; /* of the command &_x and, with a letter, of the assignment &(_x = y) */
    int letter = 0;     /* of the assignment &(x = y); 0: there is no assignment */
    switch_kind kind = switch_kind::command;
    int *variable = nullptr;
    bool quiet = false;       /* the command says nothing inside a stored list or while a file is read */
    bool keeps_value = false; /* the value stands in the result of the command */

    /* flags */
    const char *on = nullptr, *off = nullptr; /* off is null where one format serves both values */
    const char *assigned_on = nullptr, *assigned_off = nullptr;
    const char *unchanged = nullptr; /* behind "no change"; null: the text of the value */
    bool any_number = false;         /* the assignment takes numbers other than 0 and 1, as 0 */
    int lintmode_error = 0;          /* raised in lintmode */

    /* numbers */
    const char *question = nullptr;
    int number_error = 0;                 /* the answer is no number */
    int (*reads_as)(int value) = nullptr; /* what the user's figure stands for */
    outside beyond = outside::stored;
    int range_error = 0;
    int replacement = 0;
    const char *replaced = nullptr, *assigned_replaced = nullptr;
    const char *now = nullptr, *assigned_now = nullptr;
    void (*tell)() = nullptr;        /* instead of `now`, in both forms */
    void (*tell_answer)() = nullptr; /* instead of `now`, behind an answer */
    bool any_sign = false;           /* the assignment takes negative numbers */
    bool keeps_assigned = false;     /* the value stands in the result of the assignment */

    /* flags and numbers */
    void (*store)(int value) = nullptr; /* instead of a plain assignment; may raise an error and leave the value */
    void (*changed)() = nullptr;        /* what else follows a change */

    /* instead of the general way */
    void (*run)(switch_call &) = nullptr;                           /* the command */
    void (*assign_rest)(switch_call &) = nullptr;                   /* the assignment, entered with "=" or ">" */
    void (*assign_value)(switch_call &, quoly_handle &) = nullptr;  /* the assignment of a value, read in the ring */
    void (*assign_text)(switch_call &, const char *text) = nullptr; /* the assignment of a text */

    report_style style = report_style::on_or_off;
    const char *report = nullptr; /* null: no line of its own */
};

extern const switch_row switch_rows[];
extern const int switch_row_count;

/* The row of the assignment &(x = y), and that of &(_x = y); null when there is none. */
const switch_row *find_assigned(int letter);
const switch_row *find_underscore_assigned(int letter);

/* ---- values ---- */

/* The value of a plain number as an integer, held within 32 bits; false when q is no number. */
bool integer_value(const quolynode *q, int &value);

/* Stores a flag's new value; false when an error was reported. */
bool store_flag(const switch_row &row, int value);
void say_flag(const switch_row &row, bool assigned);
/* Is the flag out of reach in the ring in force? Reports it. */
bool is_forbidden(const switch_row &row);

/* How a number came: by a dialog, or by an assignment, which may have nothing to say. */
enum class switch_form { answer, assignment, silent_assignment };
/* Stores a number by the rules of its row and tells it; false when an error was reported. */
bool store_number(const switch_row &row, int value, switch_form how);

/* ---- dialogs ---- */

/* Asks and evaluates the answer, in the ring in force or outside the modular ring. What was typed behind the command
   and behind `token` is as before. Error 129: the answer goes on behind the value. False: an error was reported. */
enum class answer_ring { in_force, not_modular };
bool ask(const char *question, answer_ring ring, quoly_handle &answer);
/* The same for an answer that is a statement of its own: `run` reads it from Input, carries it out, and refuses what
   stands behind it. */
void ask_and_run(const char *question, void (*run)());

/* ---- what rows name: effects and words (top/switches_effects.cpp) ---- */

int cutoff_of_minors(int figure);
int mass_of_entries(int figure);
void set_modular_mass();
void set_interrupt_flags();
void set_continuation();
void set_rat_yes();
void set_poly_cutoff(int value);
void refuse_laurent(int value);
void tell_detcutoff();
void tell_gauss_cutoff();
void tell_interrupt_level();
const char *interrupt_level_words();
void ask_for_denominator(switch_call &call);
void assign_denominator(switch_call &call, quoly_handle &value);
void say_denominator(const char *text); /* the text and the value of rand_denom_n */
bool denominator_is_1();
void ask_for_prompt(switch_call &call);
void assign_prompt(switch_call &call, const char *text);

/* ---- commands (top/switches_commands.cpp) ---- */

void panic_stop(switch_call &call);
void quit(switch_call &call);
void leave_level(switch_call &call);
void new_level(switch_call &call);
void end_loop_early(switch_call &call); /* &> &] &} */
void end_load(switch_call &call);
void read_terms(switch_call &call); /* &_n */
void run_exactly(switch_call &call);
void clean_up(switch_call &call);
void list_functions(switch_call &call);
void report_garbage(switch_call &call);
void report_settings(switch_call &call);
void report_minors(switch_call &call);
void give_memavail(switch_call &call);
void give_time(switch_call &call);
void output_argument(switch_call &call);
void list_variables(switch_call &call);
void stash_gcds(switch_call &call);
void choose_ring(switch_call &call);
void ask_for_variable(switch_call &call);
void change_variables(switch_call &call);

/* Commands whose layer is not there answer with this error. */
constexpr int layer_is_missing = 18;
void not_open(switch_call &call);

} // namespace tolvek
