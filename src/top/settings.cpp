/* Values come from top/defaults.cpp at start-up. */
#include "top/settings.h"

namespace tolvek {

int poly_cutoff, fast_mult_cut, simplest_poly_cutoff, div_poly_cutoff, fast_gcd_size;

int trial_cutoff, mod_method_diff;
int lookupgcd, gcd_stash_cutoff, small_gcd_stash_cut;
int chinhensel, hen_check;
int aux_num_1factor, aux_num_2factor, no_aux_primes2;

int detcutoff, gauss_cutoff, rat_det_method_cut, mod_det_method_cut;
int lagrangecut, lagrange_stash;
int pseudet_heur, mod_matrix_ok, chpoly_block;
int init_max_stash, init_min_stash;

int nomodpolyreadin;

int diskstore, danger_ok;

} // namespace tolvek
