/* Polynomials and quotients of the start-up data. */
#include "numbers/handles.h"
#include "poly/model_work.h"
#include "quoly/quoly.h"
#include "top/start_tables.h"

namespace tolvek {

static bool read_terms(growing_list &list) {
    int32_t degree;
    if (!direct_integer_read(&degree)) return false;
    for (int32_t expo = degree; expo >= 0; expo--) {
        poly_handle c;
        poly_set(0, c.slot());
        if (!direct_number_read(c->num)) return false;
        if (num_sign(c->num) == 0) continue;
        poly_handle term;
        make_monomial(term.slot(), expo, c.release());
        list.append(term.release());
    }
    return true;
}

bool direct_poly_read(polynode **p) {
    chain_form chains;
    growing_list list;
    const bool whole = read_terms(list);
    polynode *found = whole ? list.release() : nullptr;
    replace_poly(list_or_zero(found), p);
    return whole;
}

bool direct_quoly_read(quolynode **q) {
    chain_form chains;
    poly_handle num, den;
    poly_set(0, den.slot());
    const bool whole = direct_number_read(den->num) && num_sign(den->num) != 0 && direct_poly_read(num.slot());
    if (!whole) {
        quoly_set(0, q);
        return false;
    }
    if (poly_eq_1(den.get())) free_poly(den.slot());
    if (den)
        fraction_to_value(num, den, q);
    else
        poly_to_value(num, q);
    return true;
}

} // namespace tolvek
