/* Contents with respect to a deeper variable, and the built-in Content. */
#include "gcd/content.h"

#include "gcd/gcd_levels.h"
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "quoly/quoly.h"

namespace tolvek {

/* p, in which the k-th variable has no coefficient but its own power 0, in its natural order. The argument has the
   level of that variable on top already taken out. */
void general_content(polynode *p, int k, polynode **c, pt *names, int *no_main, int big) {
    if (p->expo == 0 && !p->next) {
        tolvek_error(" 0 exp head node in general_content", 0);
        poly_set(1, c);
        return;
    }
    poly_handle front(level_to_front(p, k));
    poly_handle of_front;
    if (front->expo == 0 && !front->next) {
        if (*no_main)
            poly_assign(p, c);
        else
            poly_set(1, c);
        *no_main = 1;
        return;
    }
    content(front.get(), of_front.slot(), names, 0, big, 1);
    padded(of_front, 1);
    replace_poly(level_from_front(of_front.get(), k), c);
}

polynode *content_2(polynode *p, pt *names) {
    poly_handle c;
    poly_handle front(level_to_front(p, 2));
    content(front.get(), c.slot(), names, 0, 1, 1);
    padded(c, 1);
    return level_from_front(c.get(), 2);
}

/* ---- the built-in ---- */

/* *r := the GCD of the numbers of p, in the form of an answer. */
static void content_of_number(const quolynode *q, quolynode **r) {
    quoly_handle value;
    if (lintmode || num_sign(q->numb) == 0) {
        quoly_set(1, value.slot());
    } else {
        quoly_assign(q, value.slot());
        quoly_abs(value.slot());
    }
    value.release_to(r);
}

void content_of_quoly(const quolynode *q, quolynode **r, int level) {
    if (q->is_num) {
        content_of_number(q, r);
        return;
    }
    if (q->is_rat && !lintmode) {
        quoly_handle value;
        quoly_assign(q, value.slot());
        quoly_abs(value.slot());
        value.release_to(r);
        return;
    }
    if (q->den) {
        error(196, blank);
        return;
    }
    const int first = poly_level(q->num);
    if (level == 0) level = first;
    if (level < 1 || level > number_polys) {
        error(345, blank);
        return;
    }
    if (field_depth >= 1 && field_depth <= level) {
        error(344, blank);
        return;
    }
    poly_handle c;
    if (level < first) {
        poly_assign(q->num, c.slot());
        answer_form(c, polynames);
    } else {
        polynode *p = q->num;
        for (int i = 1; i < first; i++) p = p->poly;
        int no_main = 1;
        general_content(p, level - first + 1, c.slot(), variable_at(first), &no_main, 1);
        if (!is_constant(c.get())) answer_form(c, variable_at(first));
        padded(c, first - 1);
    }
    poly_to_value(c, r);
}

void call_content(const quolynode *q, quolynode **r, const quolynode *selector) {
    int level = 0;
    if (selector && selector->is_num) {
        level = quoly_to_int(selector);
        if (level == 0) level = -1;
    } else if (selector && !is_poly_var(selector, &level)) {
        error(282, blank);
        return;
    }
    content_of_quoly(q, r, level);
}

} // namespace tolvek
