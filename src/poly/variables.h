/* The table of polynomial variables.

   polynames is the list in level order: its head is level 1, the outermost variable, and each nesting of a polynomial
   goes one step down the list. */
#pragma once

#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

constexpr int most_variables = 150;

extern pt *polynames;
extern int number_polys;
extern pt *pt_garb;
extern pt *pseudo_polynames; /* set while a second list is in force, or relations are */
extern int poly_cutoff;      /* pt_cutoff of a new variable, and the cut-off of products without one */
extern int changed_in_modmode;

pt *newpt(); /* no relation, pt_aux -1, pt_hash -1 */
void free_pt(pt **p);
pt *newdummy(const pt *src); /* name, hash, next, level and degree of the relation of src; none of what src owns */

pt *variable_at(int level);                     /* null outside 1 .. number_polys */
int is_poly_name(const char *text, int *level); /* 1 and the level, or 0 */
int is_poly_name2(const char *text, int *level, pt **record);
void number_levels();                   /* renumbers pt_level from 1 */
void insert_variable(pt *v, int level); /* links the record in at the level, number_polys + 1 for the tail;
                                                    stored values are the caller's matter, here and below */
void delete_poly_name(int level);       /* unlinks and frees the record */
void reset_cutoffs(int v);              /* every pt_cutoff that equals poly_cutoff becomes v */

/* The names in byte order, for listings; separate from the level order. There are number_polys of them. */
extern char polyvar[most_variables][12];
void insert_listed_name(const char *text);
void remove_listed_name(const char *text);

/* Records for variables that the system needs for itself: z to a, z1 to a1, z2 to a2 in this order. */
extern pt *dodo;
void make_dummy_variables();

/* The statement that changes the set of variables. `in_place`: the form &(J = x) or &(J > x); otherwise the dialog &J.
   Syntax: an optional ">" (the variable goes to the head), an optional "-" (cancel), a name or Var and an expression that
   gives a level, an optional tail ", P = polynomial". Entered with "=" or ">" as the token in place, in the dialog before
   the answer; left with the ")" or the end of the statement as the token, which is looked at before anything changes.
   Every stored value follows; the last value, which < gives, counts as 0 then.
   Errors 4, 73, 124, 126, 129, 135, 169, 227, 228, 355, 356, 360, 361, 362; 62 for a tail that is in order. */
void attach_poly(stream *input, name **cursor, int in_place);
/* Error 73 and false at a level above 1, and while an expression holds a value that would not follow. */
bool variables_may_change();

/* For tests: no variables. Stored values must be gone. */
void forget_poly_variables();

} // namespace tolvek
