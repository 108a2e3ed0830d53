#include "top/driver.h"

namespace tolvek {

stream Input = &standard_input;
name *zilch = nullptr;
quolynode *sysnum = nullptr;
quolynode *prevnum = nullptr;

int extra_line = 1;
int noisy = 1;
int timerflag = 0;
int tt_flag = 1;
int syst_dump = 0;
int time_to_quit = 0;
int addresser = 1;
int command_int = 1;
int m_interrupt = 1;
int cmd_modder = 32;

char prompt[11] = ">";
int promptsize = 1;

text_in *inpuf = nullptr;
char input_file_name[256] = "";
text_out *outpuf = nullptr;
char output_file_name[256] = "";

uint64_t initial_memory = 0, virtual_cut = 0, totalavailablememory = 0;

uint64_t find_total_available_memory() {
    if (totalavailablememory <= 9) totalavailablememory = uint64_t{1} << 32;
    return totalavailablememory;
}

int warn_cnt = 0;
int uninit = 0;
int c_cntcount = 0, a_cntcount = 0, d_cntcount = 0, g_cntcount = 0;
int alg_c_count = 0, g_cutoff = 10, original_depth = 1;
int ddummy = 0, bozo = 0;

void clear_statement_counters() {
    c_cntcount = a_cntcount = d_cntcount = g_cntcount = 0;
    uninit = alg_c_count = 0;
    g_cutoff = 10;
    original_depth = 1;
}

} // namespace tolvek
