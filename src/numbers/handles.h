/* Handles: a number that a frame computes gives its chain back on every way out. */
#pragma once

#include "numbers/number.h"

namespace tolvek {

/* A number on the stack. Its chain goes back to numhead at the end of the frame, in every ring. */
struct number_handle : number {
    number_handle() : number{} {}
    ~number_handle() { special_free(this); }
    number_handle(const number_handle &) = delete;
    number_handle &operator=(const number_handle &) = delete;

    /* The value goes to dst, whose old chain goes back; this handle is left without one. */
    void release_to(number *dst) {
        special_free(dst);
        dst->num_head = num_head;
        dst->num_tail = num_tail;
        dst->num_len = num_len;
        dst->lint_val = lint_val;
        dst->flote_val = flote_val;
        num_head = num_tail = nullptr;
        num_len = 0;
    }
};

} // namespace tolvek
