/* Numbers: assignment, comparison, negation, addition, subtraction, shifts, sizes.

   Operands first, destination last, by address. Unless its line says otherwise: operands come back unchanged; the
   destination may alias an operand, and its old chain goes back to numhead when the new value is complete; a
   routine works in the form that flotemode and lintmode name. "Chain" routines work on the chain whatever the
   flags; "chain only" says that the caller sees to it that both flags are off.

   A chain has radix 2^28, most significant digit first, every digit with the sign of the number, a head other
   than 0 unless the number is 0 (one node holding 0), and num_tail at its last node. chain_rule_broken tells
   which of these a chain breaks. */
#pragma once

#include "numbers/free_lists.h"
#include "top/tolvek.h"

namespace tolvek {

constexpr int digit_bits = 28;
constexpr int32_t digit_radix = 1 << digit_bits;
constexpr int32_t digit_mask = digit_radix - 1;
constexpr int32_t decimal_radix = 100000000; /* of a decimal-form number: 8 figures a node */

/* Constants, valid in all three forms. */
extern number number_0, number_1, number_2, number_m1, number_10, num_2_14, rand_denom_n, tens_base, two_tensbase;
extern number disp_cons;       /* tens_base to the power of disp_size, a chain in every ring */
extern const int32_t ones[32]; /* ones[i] = 2^i - 1 */
void set_number_constants();
void make_disp_cons(); /* disp_cons from disp_size */

/* 0, or the number of the first rule of the chain form that x breaks (1 length, 2 tail, 3 head, 4 digit range,
   5 sign). */
int chain_rule_broken(const number *x, int32_t radix = digit_radix);

/* ---- setting, copying, freeing ---- */

void setvalue(int32_t v, number *x);    /* x := v. -2^31 is not a legal v in the chain form */
void special_set(int32_t v, number *x); /* chain: one node holding v, |v| < 2^28 */
void set_int64(int64_t v, number *x);   /* x := v in the form in force (lintmode: v must fit) */
void num_assign(const number *src, number *dst);
void spec_num_assign(const number *src, number *dst);         /* chain */
void fast_assign(const numnode *chain, int len, number *dst); /* chain; the first len nodes */
void fast_num_assign(const numnode *chain, int len, number *dst);
void faster_num_assign(const numnode *chain, int len, number **out); /* a new record; null for a head digit 0 */
void free_num(number *x);     /* the chain goes back, unless lintmode is on or there is none; num_len stays */
void special_free(number *x); /* the chain goes back in every ring; num_len := 0 */
void free_imag(number **p);   /* the chain as free_num, the record to imhead, *p := null */

/* ---- sign ---- */

void makeneg(const number *src, number *dst);
void in_place_neg(number *x);
void abs_val_num(const number *src, number *dst); /* chain only */

/* ---- sums ---- */

void sub(const number *a, const number *b, number *dst);     /* ring-aware difference */
void num_add(const number *a, const number *b, number *dst); /* ring-aware sum */
void fastsum(number *a, const number *b);                    /* chain: a := a + b in place */
void fastdiff(number *a, const number *b);                   /* chain: a := a - b in place */
void medsum(int len_a, int len_b, const numnode *chain_a, const numnode *chain_b, number *dst);  /* chain */
void meddiff(int len_a, int len_b, const numnode *chain_a, const numnode *chain_b, number *dst); /* chain */
/* The same for a radix of digit_radix or decimal_radix. */
void summ(const number *a, const number *b, number *dst, int32_t radix);                   /* chain */
void diff(const numnode *chain_a, int len_a, const number *b, number *dst, int32_t radix); /* chain */

/* ---- shifts: non-negative chains, in place ---- */

void shift_right(number *x, int n);
void shift_left(number *x, int n);
void shift_right_1(number *x);
void shift_right_2(number *x);
void gen_shift_right(number *x, int n); /* 0 < n < 28 */
void fillout(number *x, int k);         /* x := x * 2^(28k); 0 stays one node */

/* ---- comparison: 0 or 1 ---- */

int bigger(const number *a, const number *b);                                          /* a > b */
int pos_bigger(const number *a, const number *b);                                      /* chain, both non-negative */
int fast_bigger(const numnode *chain_a, const numnode *chain_b, int len_a, int len_b); /* len_a not below len_b */
int equal(const number *a, const number *b);
int spec_equal(const number *a, const number *b);                     /* chain */
int negtive(const number *a, const number *b);                        /* a = -b */
int equal_which(const number *a, const number *b, int *first_bigger); /* chain, both non-negative */
int equal_to_pm1(const number *x, int *is_minus_one);
int int_abs_bigger(const number *a, const number *b, int tie); /* chain: |a| > |b|; `tie` when equal */
int abs_larger(const number *a, const number *b);
int is_longint(const number *x, int32_t v); /* chain: one node holding v */
int num_sign(const number *x);              /* -1, 0, 1 in the form in force; a residue is 0 or 1 */

/* ---- sizes ---- */

int logg2(const number *x);     /* bit length of a positive chain */
int logg2_neg(const number *x); /* of a negative one */
int logg2lint(int32_t v);       /* index of the top bit of |v| (modular: of the symmetric residue); -1 for 0 */
int number_mass(const number *x);
int power_of_two(uint32_t v);
inline int32_t minn(int32_t a, int32_t b) { return a < b ? a : b; }
inline int32_t maxx(int32_t a, int32_t b) { return a > b ? a : b; }

} // namespace tolvek
