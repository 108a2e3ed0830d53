/* Values of polynomials: numbers or polynomials in the place of variables, and levels taken out.

   An evaluation list is a chain of nodes, one for each level from the top of the polynomial down. In a node, expo 1 says
   that the variable stays; with any other expo the polynomial `poly` replaces it, which is one of the next level. A list
   may end early: the variables behind its end stay. It is only read.

   No variable that is replaced may have a negative exponent. Operands come back unchanged. Evaluation passes safe
   points. */
#pragma once

#include "numbers/modular.h"
#include "poly/model.h"

namespace tolvek {

/* ---- several variables ---- */

/* *out := p with the values of the list; null when that is 0. A level whose variable is replaced stays, as exponent 0.
   level: how many levels at the top stay, whatever the list says of them. */
void all_poly_eval(const polynode *p, const polynode *list, polynode **out, int level);
void old_all_poly_eval(const polynode *p, const polynode *list, polynode **out, int level);

/* Every variable of p gets a number: the value in the ring in force. A list that is too short is an internal fault, and
   so is a variable that stays, or one that gets no number; the value counts as 0 there. */
void mod_all_poly_eval(const polynode *p, const polynode *list, int32_t *value); /* modularmode */
void rat_all_poly_eval(const polynode *p, const polynode *list, number *value);  /* chains: lintmode off */
void actual_eval_poly(const polynode *p, const polynode *list, number *value);   /* every ring */
/* The value modulo the word m: the integers of p and of the list are taken modulo m. Not for floats; in a modular ring m
   is the modulus. The list is long enough and has numbers alone. */
uint32_t image_at_numbers(const polynode *p, const polynode *list, const word_divisor &m);

/* Makes an evaluation list, from the top level down. Values are consumed; number values are copied. */
class evaluation_list {
  public:
    evaluation_list() = default;
    ~evaluation_list() { free_poly(&first); }
    evaluation_list(const evaluation_list &) = delete;
    evaluation_list &operator=(const evaluation_list &) = delete;
    void keep();               /* the variable of the next level stays */
    void put(polynode *value); /* it is replaced */
    void put(const number *value);
    void put(int32_t value);
    const polynode *get() const { return first; }

  private:
    void append(int32_t expo, polynode *value);
    polynode *first = nullptr;
    polynode **end = &first;
};

/* ---- one variable ---- */

/* *r := p with the value, a lone number, for its main variable; a canonical polynomial, 0 included. flag 1: the level
   stays, as exponent 0; flag 0: *r is a polynomial of the next level. names is not needed. */
void poly_at_numb(polynode **r, const polynode *p, const polynode *value, pt *names, int flag);
void mod_poly_at_numb(polynode **r, const polynode *p, const polynode *value, pt *names, int flag); /* modularmode */

/* The variable of the level := value, a polynomial of the next level; the level stays, as exponent 0. *p is null on an
   unwinding. */
void replace_variable(polynode **p, int level, const polynode *value);
void eval_at_one(polynode **p, int level); /* the same for the value 1; exponents may be negative */

/* ---- levels ---- */

void remove_one(polynode **p, int level); /* drops a level in which p has degree 0 */
void remove_poly_var(quolynode *q, int level);
/* The main variable := the number a, and its level taken out. *p is null on an unwinding. */
void case_one(polynode **p, const number *a);

} // namespace tolvek
