/* Private to the built-in functions: their routines, by family. Each is entered with the name of the function as the
   token, leaves the value in call.result (nothing there means 0) and the token behind the call. */
#pragma once

#include "language/builtin_args.h"

namespace tolvek {

/* ---- statements and settings (builtins_language.cpp) ---- */

void builtin_fast(builtin_call &call);     /* Fast: no effect */
void builtin_function(builtin_call &call); /* Func, Function: a definition; error 11 */
void builtin_mode(builtin_call &call);     /* Mode: 1 in the modular ring */
void builtin_modulus(builtin_call &call);
void builtin_move(builtin_call &call); /* Move(^x, ^y): y takes the value of x, which becomes 0 */
void builtin_numvars(builtin_call &call);
void builtin_product(builtin_call &call); /* Prod<...>[...] */
void builtin_rename(builtin_call &call);  /* Rname(x, y): the variable or function x is called y from now on */
void builtin_return(builtin_call &call);  /* Return(e) */
void builtin_sigma(builtin_call &call);   /* Sigma<...>[...] */
void builtin_swap(builtin_call &call);    /* Swap(^x, ^y) */
void builtin_time(builtin_call &call);
void builtin_tone(builtin_call &call);
void builtin_true(builtin_call &call);

/* ---- arrays (builtins_array.cpp) ---- */

void builtin_array(builtin_call &call);  /* Array x[3], y[2,2] Sparse */
void builtin_cols(builtin_call &call);   /* Cols[x]: errors 28, 96, 97, 175 */
void builtin_sparse(builtin_call &call); /* Sparse[x]: an ordinary array turns sparse */

/* ---- numbers (builtins_number.cpp) ---- */

void builtin_binomial(builtin_call &call);    /* Bin(n, k) */
void builtin_cast(builtin_call &call);        /* Cast(e), Pint(e): the value of a number as a machine integer */
void builtin_isprime(builtin_call &call);     /* 1 for a prime, 0 below 2, else the least factor */
void builtin_lcm(builtin_call &call);      /* LCM(a, b, ...) of integers */
void builtin_number(builtin_call &call);      /* Number(^x): 1 for a plain number */
void builtin_prime(builtin_call &call);       /* Prime(n): the nth prime, n from 1 to 1229 */
void builtin_random(builtin_call &call);      /* Rand */
void builtin_random_real(builtin_call &call); /* RRand */
void builtin_rational(builtin_call &call);    /* Rational(^x): 1 for a rational number */
void builtin_square_root(builtin_call &call); /* Sqrt x */

/* ---- common divisors with cofactors (builtins_poly_euclid.cpp) ---- */

void builtin_egcd(builtin_call &call);

/* ---- values (builtins_value.cpp) ---- */

void builtin_denominator(builtin_call &call);
void builtin_equal(builtin_call &call);
void builtin_equal_negative(builtin_call &call);
void builtin_numerator(builtin_call &call);

} // namespace tolvek
