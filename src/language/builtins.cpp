#include "language/builtins.h"

#include "language/builtin_routines.h"
#include "language/builtin_table.h"

#include <iterator>

namespace tolvek {

struct builtin_entry {
    const char *name;
    void (*run)(builtin_call &); /* null: the layer of the function is closed, and the error below is raised */
    int closed;
};

/* In the order of the codes. What works on arrays answers that there is none (28); what works on polynomials, that the ring
   does not allow it (62). */
static const builtin_entry entries[] = {
    {"Array", builtin_array, 0},
    {"Bin", builtin_binomial, 0},
    {"Cast", builtin_cast, 0},
    {"Chpoly", nullptr, 28},
    {"Codeg", builtin_codegree, 0},
    {"Coef", builtin_coefficient, 0},
    {"Colreduce", nullptr, 28},
    {"Cols", builtin_cols, 0},
    {"Content", builtin_content, 0},
    {"Deg", builtin_degree, 0},
    {"Denom", builtin_denominator, 0},
    {"Deriv", builtin_derivative, 0},
    {"Det", builtin_determinant, 0},
    {"Detl", builtin_least_entry, 0},
    {"Diag", builtin_array_expression, 0},
    {"Divides", builtin_divides, 0},
    {"Egcd", builtin_egcd, 0},
    {"Equal", builtin_equal, 0},
    {"Equalneg", builtin_equal_negative, 0},
    {"FFLU", nullptr, 28},
    {"FFLUC", nullptr, 28},
    {"Factor", nullptr, 284},
    {"Fast", builtin_fast, 0},
    {"Fcoef", builtin_leading_number, 0},
    {"Func", builtin_function, 0},
    {"Function", builtin_function, 0},
    {"GCD", builtin_gcd, 0},
    {"Ham", builtin_hamiltonian_path, 0},
    {"Height", builtin_height, 0},
    {"Hermite", nullptr, 28},
    {"Irred", nullptr, 284},
    {"Isprime", builtin_isprime, 0},
    {"Iszero", builtin_iszero, 0},
    {"Killden", builtin_kill_denominator, 0},
    {"LCM", builtin_lcm, 0},
    {"Lcoef", builtin_leading_coefficient, 0},
    {"Level", builtin_level, 0},
    {"Lmon", builtin_leading_monomial, 0},
    {"Logdig", builtin_logdig, 0},
    {"Lower", builtin_lower, 0},
    {"Lterm", builtin_leading_term, 0},
    {"M-", nullptr, 62},
    {"MSmith", nullptr, 28},
    {"Mcoef", builtin_product_coefficient, 0},
    {"Mcoefs", builtin_multiples, 0},
    {"Minors", nullptr, 28},
    {"Minpoly", nullptr, 28},
    {"Mode", builtin_mode, 0},
    {"Modulus", builtin_modulus, 0},
    {"Monless", builtin_monomial_less, 0},
    {"Monlist", builtin_monomial_list, 0},
    {"Move", builtin_move, 0},
    {"Ncoef", builtin_leading_number, 0},
    {"Nmon", builtin_number_at, 0},
    {"Normalize", nullptr, 28},
    {"Ntcoef", builtin_trailing_number, 0},
    {"Number", builtin_number, 0},
    {"Numcontent", builtin_number_content, 0},
    {"Numer", builtin_numerator, 0},
    {"Numvars", builtin_numvars, 0},
    {"Pdivide", builtin_pdivide, 0},
    {"Pfroot", builtin_pth_root, 0},
    {"Pint", builtin_cast, 0},
    {"Poly", builtin_array_to_polynomial, 0},
    {"Powermod", builtin_powermod, 0},
    {"Prime", builtin_prime, 0},
    {"Prod", builtin_product, 0},
    {"Pseudet", nullptr, 28},
    {"RRand", builtin_random_real, 0},
    {"Raise", builtin_raise, 0},
    {"Rand", builtin_random, 0},
    {"Rational", builtin_rational, 0},
    {"Rcoef", builtin_replace_coefficient, 0},
    {"Redrowech", nullptr, 28},
    {"Remquot", builtin_remquot, 0},
    {"Return", builtin_return, 0},
    {"Reverse", builtin_reverse, 0},
    {"Rname", builtin_rename, 0},
    {"Rowreduce", nullptr, 28},
    {"SDet", builtin_sparse_determinant, 0},
    {"SDivide", builtin_sdivide, 0},
    {"STrans", builtin_sparse_transpose, 0},
    {"Sigma", builtin_sigma, 0},
    {"Smith", nullptr, 28},
    {"Sort", builtin_sort, 0},
    {"Sparse", builtin_sparse, 0},
    {"Splice", builtin_splice, 0},
    {"Split", builtin_split, 0},
    {"Sqfree", nullptr, 62},
    {"Sqrt", builtin_square_root, 0},
    {"Sumup", builtin_sum_of_entries, 0},
    {"Swap", builtin_swap, 0},
    {"Switchcol", builtin_exchange_columns, 0},
    {"Switchrow", builtin_exchange_rows, 0},
    {"Synth", builtin_sets_of_rows, 0},
    {"Tcount", builtin_term_count, 0},
    {"Terms", builtin_terms, 0},
    {"Time", builtin_time, 0},
    {"Tone", builtin_tone, 0},
    {"Totdeg", builtin_total_degree, 0},
    {"Trace", builtin_trace, 0},
    {"Trans", builtin_array_expression, 0},
    {"True", builtin_true, 0},
    {"Var", builtin_variable, 0},
    {"Vars", builtin_vars, 0},
    {"ZZ0", builtin_abandon_lists, 0},
    {"ZZ1", builtin_show_value, 0},
    {"ZZ2", builtin_show_tree, 0},
    {"ZZ3", builtin_show_levels, 0},
    {"Zcoef", builtin_constant_term, 0},
};

static_assert(std::size(entries) == builtin_rows);

bool call_builtin(stream *input, quolynode **result, name **cursor) {
    int code = token.builtin == builtin_unknown ? find_built_in(0, numbuiltins, token.text) : token.builtin;
    if (code < 0 && token_is(token, "Det_")) code = find_built_in(0, numbuiltins, "Detl"); /* Det_[x] without a blank */
    if (code < 0) return false;
    const builtin_entry &entry = entries[code];
    if (entry.run) {
        builtin_call call{input, result, cursor, code};
        entry.run(call);
    } else {
        error(entry.closed, token);
        scanner(input, token, cursor);
    }
    if (!*result) quoly_set(0, result);
    return true;
}

const char *builtin_entry_name(int code) { return entries[code].name; }
int builtin_refusal(int code) { return entries[code].closed; }

} // namespace tolvek
