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
void builtin_rename(builtin_call &call);  /* Rname(x, y), also of functions and arrays: another name */
void builtin_return(builtin_call &call);  /* Return(e) */
void builtin_sigma(builtin_call &call);   /* Sigma<...>[...] */
void builtin_swap(builtin_call &call);    /* Swap(^x, ^y) */
void builtin_time(builtin_call &call);
void builtin_tone(builtin_call &call);
void builtin_true(builtin_call &call);

/* ---- arrays (builtins_array.cpp) ---- */

void builtin_array(builtin_call &call);            /* Array x[3], y[2,2] Sparse */
void builtin_array_expression(builtin_call &call); /* Trans, Diag: a statement of its own; a matrix goes to [<] */
void builtin_cols(builtin_call &call);             /* Cols[x]: errors 28, 96, 97, 175 */
void builtin_iszero(builtin_call &call);           /* Iszero[x], Iszero(e): error 184 */
void builtin_sparse(builtin_call &call);           /* Sparse[x]: an ordinary array turns sparse */
void builtin_sum_of_entries(builtin_call &call);   /* Sumup[x] */
void builtin_trace(builtin_call &call);            /* Trace[x] */
void give_cells_of_array(builtin_call &call);      /* Deg[x], with "[" as the token */
/* Ham [x], Ham([x], limit): reads them and ends the statement, as the search is not there. Errors 1, 15, 23. */
void builtin_hamiltonian_path(builtin_call &call);

/* ---- determinants (builtins_determinant.cpp) ---- */

/* Det [x], Det([x], factor, degree, degree, power); Det#([x] > e) counts; Det^[x], Det _[x] and Det _+[x] tell places.
   Errors 15, 46, 64 to 66, 119, 227, 241, 351. */
void builtin_determinant(builtin_call &call);
void builtin_least_entry(builtin_call &call); /* Detl[x], Detl+[x]: as Det _[x] */
/* SDet(k, [s], factor, ...): of a sparse matrix. Errors 177, 202, 227, 333, 364, 377 and those of Det. */
void builtin_sparse_determinant(builtin_call &call);

/* ---- arrays that change in place (builtins_array_change.cpp) ---- */

void builtin_exchange_columns(
    builtin_call &call); /* Switchcol([x], i, j), Switchrow: errors 70, 179 to 181, 202, 313 */
void builtin_exchange_rows(builtin_call &call);
void builtin_reverse(builtin_call &call);          /* Reverse([x]): the cells, or the rows of a sparse array */
void builtin_sort(builtin_call &call);             /* Sort([x]): errors 369, 370, 372 */
void builtin_sparse_transpose(builtin_call &call); /* STrans([x]): error 333 */
void builtin_sets_of_rows(builtin_call &call);     /* Synth([x], w, k, i, ...): errors 202, 333, 373 */
void kill_denominators(builtin_call &call);        /* Killden([x]), with "[" as the token */

/* ---- arrays and polynomials (builtins_array_poly.cpp) ---- */

void builtin_array_to_polynomial(builtin_call &call); /* Poly([x]) */
void builtin_monomial_list(builtin_call &call);       /* Monlist(p, [x]) */
void builtin_total_degree(builtin_call &call);        /* Totdeg(p), Totdeg(p, [x]) */

/* ---- numbers (builtins_number.cpp) ---- */

void builtin_binomial(builtin_call &call);    /* Bin(n, k) */
void builtin_cast(builtin_call &call);        /* Cast(e), Pint(e): the value of a number as a machine integer */
void builtin_isprime(builtin_call &call);     /* 1 for a prime, 0 below 2, else the least factor */
void builtin_number(builtin_call &call);      /* Number(^x): 1 for a plain number */
void builtin_prime(builtin_call &call);       /* Prime(n): the nth prime, n from 1 to 1229 */
void builtin_random(builtin_call &call);      /* Rand */
void builtin_random_real(builtin_call &call); /* RRand */
void builtin_rational(builtin_call &call);    /* Rational(^x): 1 for a rational number */
void builtin_square_root(builtin_call &call); /* Sqrt x */

/* ---- common divisors with cofactors (builtins_poly_euclid.cpp) ---- */

void builtin_egcd(builtin_call &call);

/* ---- divisions of polynomials (builtins_poly_division.cpp) ----

   Errors 22 for b = 0, 280 for a fraction. */

void builtin_divides(builtin_call &call); /* Divides(a, b): 1 if b divides a, else 0 */
void builtin_pdivide(builtin_call &call); /* Pdivide(a, b): the quotient if b divides a, else 0 */
void builtin_sdivide(builtin_call &call); /* SDivide(a, b, ^q): as Divides, and q := the quotient if there is one */
void builtin_remquot(builtin_call &call); /* Remquot(a, b, ^q): a | b, and q := a \ b */

/* Powermod(p, e, m): p^e modulo the integer or monic polynomial m. Errors 62 for floats, 202, 286 (a base with a
   denominator), 292 (an exponent that is no integer), 313, and those of powermod. */
void builtin_powermod(builtin_call &call);

/* ---- values (builtins_value.cpp) ---- */

void builtin_denominator(builtin_call &call);
void builtin_equal(builtin_call &call);
void builtin_equal_negative(builtin_call &call);
void builtin_kill_denominator(builtin_call &call); /* Killden(x) */
void builtin_numerator(builtin_call &call);

/* ---- values as they lie in memory (builtins_inspect.cpp) ---- */

void builtin_abandon_lists(builtin_call &call); /* ZZ0: the free lists of numbers and values are let go */
void builtin_show_value(builtin_call &call);    /* ZZ1(^x) writes the value */
void builtin_show_tree(builtin_call &call);     /* ZZ2(^x) writes its polynomials as trees */
void builtin_show_levels(builtin_call &call);   /* ZZ3(^x): as ZZ1, whatever the variables are called */

/* ---- polynomials (builtins_poly.cpp, builtins_poly_sizes.cpp) ---- */

void builtin_codegree(builtin_call &call);            /* Codeg p, Codeg(p, v): the least exponent */
void builtin_coefficient(builtin_call &call);         /* Coef(p, n), Coef(p, v, n) */
void builtin_constant_term(builtin_call &call);       /* Zcoef(p) */
void builtin_degree(builtin_call &call);              /* Deg p, Deg(p, v): the greatest exponent */
void builtin_derivative(builtin_call &call);          /* Deriv(p, v), Deriv(p, v, n) */
void builtin_height(builtin_call &call);              /* Height(p): levels from the first variable to the deepest */
void builtin_leading_coefficient(builtin_call &call); /* Lcoef(p): in the first variable of p */
void builtin_leading_monomial(builtin_call &call);    /* Lmon(p): a product of powers */
void builtin_leading_number(builtin_call &call);      /* Ncoef(p), Fcoef(p): the number in front of it */
void builtin_leading_term(builtin_call &call);        /* Lterm(p): Lcoef(p) with its power */
void builtin_level(builtin_call &call);               /* Level(p): of its first variable; 0 for a number */
void builtin_logdig(builtin_call &call);              /* Logdig(p): bits of the largest number */
void builtin_lower(builtin_call &call);               /* Lower(p, n) = p / x^n */
void builtin_monomial_less(builtin_call &call);       /* Monless(a, b): Lmon(a) below Lmon(b) */
void builtin_multiples(builtin_call &call);           /* Mcoefs(p, m): the terms that m divides, divided by m */
void builtin_number_at(builtin_call &call);           /* Nmon(p, m): the number in front of m */
void builtin_number_content(builtin_call &call);      /* Numcontent(p): the integer content */
void builtin_product_coefficient(builtin_call &call); /* Mcoef(p, m): of m, in the variables of m */
void builtin_pth_root(builtin_call &call);            /* Pfroot(p) */
void builtin_raise(builtin_call &call);               /* Raise(p, n) = p x^n */
void builtin_replace_coefficient(builtin_call &call); /* Rcoef(p, v, n, c): p with c before v^n */
void builtin_splice(builtin_call &call);              /* Splice(a, b, n) = a + b x^n */
void builtin_split(builtin_call &call);               /* Split(p, n, ^h): p = value + h x^n */
void builtin_term_count(builtin_call &call);          /* Tcount(p): terms; field coefficients count 1 */
void builtin_terms(builtin_call &call);               /* Terms(p) */
void builtin_trailing_number(builtin_call &call);     /* Ntcoef(p): the number of the last term */
void builtin_variable(builtin_call &call);            /* Var n */
void builtin_vars(builtin_call &call);                /* Vars(p): how many variables occur */

/* ---- common divisors (builtins_poly_gcd.cpp) ---- */

void builtin_content(builtin_call &call); /* Content(p), Content(p, v), Content(p, n): by a variable or its place */
void builtin_gcd(builtin_call &call);     /* GCD(a, b), GCD(a) */
void builtin_lcm(builtin_call &call);     /* LCM(a, b, ...) */

} // namespace tolvek
