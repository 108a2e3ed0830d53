#include "top/levels.h"

#include "language/execution.h"
#include "language/names.h"
#include "language/scanner.h"
#include "quoly/ring_image.h"
#include "top/driver.h"
#include "top/loop.h"

#include <utility>

namespace tolvek {

/* Flags and counters of the interrupted statement. */
static int *const kept_flags[] = {
    &want_sparse, &in_sys_func, &uninit,      &tripval,    &warn_cnt,       &leave_flag,  &exit_flag,
    &cycle_flag,  &cancelflag,  &matrix_eval, &syst_dump,  &doing_sys_func, &done_load,   &func_def_count,
    &tt_flag,     &leftover,    &semicount,   &c_cntcount, &a_cntcount,     &d_cntcount,  &g_cntcount,
    &alg_c_count, &g_cutoff,    &ddummy,      &bozo,       &original_depth, &command_int, &mod_is_changed,
};
constexpr int kept_flag_count = sizeof kept_flags / sizeof *kept_flags;

/* Pointers into stored lists. */
static name **const kept_names[] = {&startexpr, &prev_expr,     &currentchar, &last_good_one,
                                    &last_comm, &last_attached, &zilch};
constexpr int kept_name_count = sizeof kept_names / sizeof *kept_names;

/* What a level keeps for the statement beneath it. An unwinding discards it. */
class kept_statement {
  public:
    kept_statement() : kept_token(token), kept_func(current_func), kept_ring(recent_tokens), was(was_modulus) {
        for (int i = 0; i < kept_flag_count; i++) flags[i] = *kept_flags[i];
        for (int i = 0; i < kept_name_count; i++) names[i] = *kept_names[i];
        if (prevnum) quoly_assign(prevnum, value_before.slot());
        std::swap(prevnum, *value_before.slot()); /* a copy of it may be under way: the level gets another */
    }
    /* The rest of the interrupted line waits here while the level reads lines of its own. */
    void take_line() { take_rest_of_line(Input, line); }

    void put_back() {
        for (int i = 0; i < kept_flag_count; i++) *kept_flags[i] = flags[i];
        for (int i = 0; i < kept_name_count; i++) *kept_names[i] = names[i];
        token = kept_token;
        current_func = kept_func;
        recent_tokens = kept_ring;
        was_modulus = was;
        value_before.release_to(&prevnum);
        rewind_line(Input);
        put_back_line(Input, line);
    }

  private:
    int flags[kept_flag_count];
    name *names[kept_name_count];
    token_record kept_token, kept_func;
    token_ring kept_ring;
    int32_t was;
    quoly_handle value_before;
    buffer<char> line;
};

static void count_level_up() {
    if (levelcount == highest_level) {
        say("*** Highest legal command level is 9.\n");
        error(0, token);
    }
    levelcount++;
    breaktime[time_level] = time_now();
    time_off[++time_level] = {};
}

/* The statement that was interrupted is not charged for the time at the level. */
static void count_level_down() {
    levelcount--;
    time_level--;
    time_row now = time_now(), &off = time_off[time_level], &entered = breaktime[time_level];
    off = {off.wall + now.wall - entered.wall, off.ticks + now.ticks - entered.ticks};
}

long levels_opened = 0;

/* The computation beneath is in a modular ring that the user has not chosen, or 0. */
static int32_t internal_modulus() { return was_in_rat && modularmode ? int32_t{modulus} : 0; }

static void tell_delicate_time() {
    say("\n*** You have interrupted at a delicate time. Tolvek had switched\n");
    say("    internally to arithmetic mod p. It has switched back for your \n");
    say("    convenience during this interrupt. Do not do any significant \n");
    say("    polynomial computations.  To abort, enter &@ followed by  &(p=_i:) .\n\n");
}

void open_level(const failure &f) {
    const int32_t modulus_beneath = internal_modulus();
    images_set_aside whole_operands;
    ring_guard ring;
    set_ring(user_ring); /* before anything of the user's is copied */
    kept_statement kept;
    report_failure(f);
    count_level_up();
    levels_opened++;
    if (modulus_beneath) {
        was_modulus = modulus_beneath;
        tell_delicate_time();
    }
    kept.take_line();
    mod_is_changed = 0;
    want_sparse = in_sys_func = uninit = 0;
    tripval = 20;
    doing_sys_func = func_def_count = 0;
    tt_flag = 1;
    zilch = nullptr;
    fresh_line(&standard_output);
    flush(Output);
    nested_loop();
    count_level_down();
    say("*** Resuming earlier command level\n");
    flush(&standard_output);
    kept.put_back();
}

} // namespace tolvek
