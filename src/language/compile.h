/* Compile: tokens of a function that know what they refer to, so that its loops look no name up. */
#pragma once

#include "language/stored.h"

namespace tolvek {

/* What a compiled token refers to. The slot is looked up anew when scalars have come or gone since. */
struct reference {
    token_record tok;
    quolynode **slot;
    uint64_t generation;
};

constexpr int most_compiled_names = 100;

/* The references of one function; its tokens point into the table. */
struct compiled_names {
    int count = 0;
    reference at[most_compiled_names];
};

/* The slot, or null when there is no such scalar now. */
quolynode **bound_slot(reference *r);

/* The statement Compile, Compile* or Compile(x, y, ...), with the word as the token: binds the scalars named, and the
   parameters of the function unless "*" stands behind the word, in all statements behind this one, and runs these. A
   function is bound once; its later calls run the bound statements. Errors 19, 28, 229, 230, 231, 232, 234. */
void compile(stream *input, quolynode **result, name **cursor);

void free_compiled_names(compiled_names **names);

} // namespace tolvek
