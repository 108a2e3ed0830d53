#include "language/execution.h"

#include "top/heap.h"

namespace tolvek {

int statcount = 0;
static buffer<call_frame> frames;

call_frame &running_frame(int i) { return frames[static_cast<std::size_t>(i)]; }

int enter_function(const function *f) {
    frames.resize(static_cast<std::size_t>(statcount));
    frames.push({f, nullptr});
    return statcount++;
}

void leave_function() { statcount--; }

name *startexpr = nullptr;
name *prev_expr = nullptr;
int exit_flag = 0, leave_flag = 0, cycle_flag = 0;
int tripval = 20;
int matrix_eval = 0;

token_record current_func{"", hash_unknown};
int func_def_count = 0;
name *last_good_one = nullptr;
name *last_comm = nullptr;
name *last_attached = nullptr;
int doing_sys_func = 0, in_sys_func = 0;
int cancelflag = 0;
int done_load = 0;
int want_sparse = 0;

} // namespace tolvek
