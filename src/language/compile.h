/* Compile: tokens of a function that know what they refer to, so that its loops look no name up. */
#pragma once

#include "language/stored.h"

namespace tolvek {

/* What a compiled token refers to: a scalar, or an array where a subscript follows. It is looked up anew when scalars, or
   arrays, have come or gone since. */
struct reference {
    token_record tok;
    bool is_array;
    quolynode **slot;
    array_record *array;
    uint64_t generation;
};

constexpr int most_compiled_names = 100;

/* The references of one function; its tokens point into the table. */
struct compiled_names {
    int count = 0;
    reference at[most_compiled_names];
};

/* The slot, or null when the token stands for an array, or there is no such scalar now. */
quolynode **bound_slot(reference *r);
/* The array, or null when the token stands for a scalar, or there is no such array now. */
array_record *bound_array(reference *r);

/* The statement Compile, Compile* or Compile(x, [a], a[3], ...), with the word as the token: binds the scalars and arrays
   named, and the parameters of the function unless "*" stands behind the word, in all statements behind this one, and
   runs these. x[k] is taken as [x], once its element is seen to be there. A function is bound once; its later calls run the
   bound statements. Errors 19, 24, 27, 28, 29, 229, 230, 231, 232, 234, 242, 246, 247, 267. */
void compile(stream *input, quolynode **result, name **cursor);

void free_compiled_names(compiled_names **names);

} // namespace tolvek
