/* Arguments and parameters of calls, and what is stored while one runs.

   A parameter is a scalar that shadows the caller's names for the time of the call. One that stands for an array holds a
   marked 0, and the record of that array under the parameter's name. */
#pragma once

#include "language/names.h"
#include "language/stored.h"
#include "quoly/ring_change.h"

namespace tolvek {

struct call_frame;

/* Parameters of a call that is being set up: they are on no table yet. */
class pending_call {
  public:
    ~pending_call();
    variable *add(const parameter *p);
    /* Now the parameters shadow the caller's names. Error 28: an array has gone since its argument was read. */
    variable *link();
    bool has_arrays() const; /* an argument was an array: it is on its table, and its cells stay where they are */

  private:
    variable *first = nullptr, **place = &first;
};

/* The head of a call, with the name as the token. `behind` is the token behind it: what follows a name without an argument
   list is kept. Errors 14, 15, 24, 28, 125, 176, 206, 207, 318. */
void read_call(stream *input, const function *f, pending_call &call, token_record &behind, name **cursor);

/* The end of a call: values of by-reference parameters go back by name. Error 30: an array parameter has been lost. */
void remove_args(call_frame &frame);

/* Is it the slot of a parameter of a call that is running? */
bool is_parameter(quolynode *const *slot);

/* A value that is to be stored, in the ring modulo n if that is paused. Parameters keep machine integers: they live no
   longer than their call. */
inline void bring_into_ring(quolynode *const *slot, quolynode **value) {
    if (ring_is_paused() && !is_parameter(slot)) quoly_into_ring(value);
}

/* The computation is abandoned: the records leave the tables and wait, as values may be operands of what unwinds. Lost
   array parameters have message 30. */
void abandon_args(call_frame &frame);

} // namespace tolvek
