/* The state of the driver: what is being read, what was computed last, how results are shown, and the clocks. The
   defaults and limits of what a user can set stand in top/defaults.cpp. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

/* The three arguments of the language layer are input (stream *), result (quolynode **) and cursor (name **). A
   cursor whose contents are null means that characters are read from the input; otherwise the next token is taken
   from that stored list. */
extern stream Input;       /* the stream that statements are read from */
extern name *zilch;        /* the contents of the cursor of the prompt: always null between statements */
extern quolynode *sysnum;  /* the value of the statement being run at level 1 */
extern quolynode *prevnum; /* the value of the last completed statement: the factor < reads it */

extern int extra_line;   /* a blank line after each display */
extern int noisy;        /* display results at all */
extern int timerflag;    /* report the elapsed time after each statement */
extern int tt_flag;      /* the input is a terminal: the end of a line ends a statement */
extern int syst_dump;    /* the system array [<] was changed by the statement and is to be displayed */
extern int time_to_quit; /* &_p: leave the command level */
extern int addresser;    /* first index of arrays, 0 or 1 */
extern int command_int;  /* kept and shown: an interrupt is taken whatever it says */
extern int m_interrupt;  /* the &m level: 0, 1 or 2 */
extern int cmd_modder;   /* 32 for level 1, 2 for level 2 */

constexpr int carriage_return_mode = 13; /* first byte of a prompt without text */
extern char prompt[11];
extern int promptsize; /* its length; 0 in carriage return mode */

extern text_in *inpuf;          /* the file being loaded, null when there is none */
extern char input_file_name[256];
extern text_out *outpuf; /* the output file, null when there is none */
extern char output_file_name[256];

/* The memory figure: in units of four bytes, a fifth of it, and in bytes. */
extern uint64_t initial_memory, virtual_cut, totalavailablememory;
/* The figure in bytes; 4 GiB while none is set. */
uint64_t find_total_available_memory();

/* ---- counters of the running statement ---- */

extern int warn_cnt;                                       /* overflow warnings written by this statement */
extern int uninit;                                         /* warnings of elements without a value */
extern int c_cntcount, a_cntcount, d_cntcount, g_cntcount; /* loop counts of the GCD layers */
extern int alg_c_count, g_cutoff, original_depth;
extern int ddummy, bozo;
void clear_statement_counters();

/* ---- clocks ---- */

struct time_row {
    int64_t wall = 0;  /* seconds */
    int64_t ticks = 0; /* processor time, 1,000,000 to the second */
};
constexpr int time_rows = 11;
extern int time_level;                 /* the row in use, 1 at level 1 */
extern time_row mytime[time_rows];     /* start of the running statement, then its elapsed time */
extern time_row time_off[time_rows];   /* time spent at deeper levels, not charged to the statement */
extern time_row breaktime[time_rows];  /* when each level was entered */

time_row time_now();
void start_clock();                    /* of the statement at time_level */
void stop_clock();                     /* leaves the elapsed time, less time_off, in mytime */
void write_elapsed_time();
void showtime();                       /* date and time on standard output, as asctime writes them */

} // namespace tolvek
