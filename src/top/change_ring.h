/* Changes of the ground ring at the prompt: the exact ring, and the integers modulo n. Every stored value follows, or,
   where the change fails, nothing has changed. The last value, which < gives, is 0 then, and so is the system value. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

constexpr int greatest_modulus = 2147483644;

/* From modular arithmetic to the rationals: residues become integers, of least magnitude while alt_form_display is on.
   `show`: the change is told. `names`: a list that says which values change for good (change_local.h); null: all do.
   Error 353: polynomial variables were changed in modular arithmetic. */
void change_to_rational(bool show, const name *names);

/* From the rationals to residues modulo n, 2 to greatest_modulus; 256 and 65536 are the table fields. Rationals become
   quotients of residues: error 85 where a denominator has no inverse. */
void change_to_modular(int n, bool show, const name *names);

/* Reads the modulus: by a question at the terminal, otherwise from the input, whose next token is read. False when an error
   was reported. Errors 84, 148. */
bool read_modulus(stream *input, name **cursor, int *n);

} // namespace tolvek
