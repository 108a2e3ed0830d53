/* Contents. The three families share one search and one walk, and differ in what is in the list, in the levels at which
   they search, and in the sizes at which the search is content. */
#include "gcd/content.h"

#include "display/progress.h"
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "numbers/int_gcd.h"
#include "top/heap.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <climits>

namespace tolvek {

int c_cntdepth = 0, a_cntdepth = 0, d_cntdepth = 0;

/* What a family has of its own. */
struct content_family {
    int *count, *depth;
    int window;                     /* levels below *depth in which a small pair is searched for */
    int small_enough, second_small; /* the search ends below one of them */
    const char *shown;
};
static const content_family by_content = {&c_cntcount, &c_cntdepth, 10, 25, 50, "Content, counting to "};
static const content_family by_aux = {&a_cntcount, &a_cntdepth, 10, 20, 40, "Aux Content, counting to "};
static const content_family by_dual = {&d_cntcount, &d_cntdepth, 2, 20, 40, "Dual Content, counting to "};

using coefficients = buffer<polynode *>;

static void add_coefficients(const polynode *p, coefficients *list) {
    for (; p; p = p->next) list->push(p->poly);
}

/* One more look at a coefficient. A count that would leave 32 bits is told, and begins again. */
static void count_visit(const content_family &family) {
    if (*family.count == INT_MAX) {
        warning(0, "          ");
        *family.count = 0;
    }
    ++*family.count;
}

/* The places of the smallest and the second smallest coefficient; the first one wins a tie. */
static void find_small_pair(const coefficients &list, const content_family &family, std::size_t *first,
                            std::size_t *second) {
    int smallest = bigger_node_total(list[0]), next_small = INT_MAX;
    for (std::size_t i = 1; i < list.size(); i++) {
        if (smallest < family.small_enough && next_small < family.second_small) return;
        if (*family.count > content_count_limit) return;
        safe_point();
        count_visit(family);
        const int size = bigger_node_total(list[i]);
        if (size < smallest) {
            *second = *first;
            next_small = smallest;
            *first = i;
            smallest = size;
        } else if (size < next_small) {
            *second = i;
            next_small = size;
        }
    }
}

static bool is_unit(const polynode *g) { return is_constant(g) && (lintmode || poly_eq_1(g)); }

/* *g := the GCD of the polynomials of the list, which is not empty. names: their main variable. */
static void gcd_of_list(const coefficients &list, const content_family &family, int level, int use_general, pt *names,
                        bool show, polynode **g) {
    const std::size_t n = list.size();
    std::size_t first = 0, second = 1;
    if (n > 2 && *family.count <= content_count_limit && level <= *family.depth + family.window)
        find_small_pair(list, family, &first, &second);
    poly_handle c;
    if (n == 1) {
        poly_assign(list[0], c.slot());
        if (is_constant(c.get()))
            gcd_coefs(list[0], c.slot());
        else
            answer_form(c, names);
        c.release_to(g);
        return;
    }
    polygcd(list[first], list[second], c.slot(), 0, 1, use_general, names, 1, 1, 0);
    for (std::size_t i = 0; i < n && !is_unit(c.get()); i++) {
        if (i == first || i == second) continue;
        if (show) dumpitt(" ", static_cast<int32_t>(i), 0, 0, 0);
        polygcd(c.get(), list[i], c.slot(), 0, 1, use_general, names, 1, 1, 0);
    }
    c.release_to(g);
}

/* The same with the progress display. */
static void shown_gcd_of_list(const coefficients &list, const content_family &family, int level, int use_general,
                              pt *names, int show, polynode **g) {
    if (!verbose || !show) {
        gcd_of_list(list, family, level, use_general, names, false, g);
        return;
    }
    progress_level display;
    const int32_t n = static_cast<int32_t>(list.size()) - 1;
    dumpitt(family.shown, n, 1, 1, 1);
    gcd_of_list(list, family, level, use_general, names, true, g);
    display.leave(n, 1, 1);
}

/* The first use since the counters were cleared tells the level around which searches are permitted. */
static void record_depth(const content_family &family, int depth) {
    if (*family.count == 0) *family.depth = depth;
    count_visit(family);
}

static bool lies_in_field(const pt *names) { return field_depth > 0 && names->pt_level >= field_depth; }

/* No polynomial can divide every coefficient: one of them is a number, or there is no level below. */
static bool content_is_number(const polynode *p, const pt *names) {
    return lies_in_field(names) || !names->pt_next || any_number_coefficient(p);
}

void content(polynode *p, polynode **c, pt *names, int show, int use_general, int keep) {
    poly_handle given(keep ? nullptr : p);
    check_stack();
    if (content_is_number(p, names)) {
        gcd_coefs(p, c);
        return;
    }
    record_depth(by_content, names->pt_level + pad_levels(p));
    coefficients list;
    add_coefficients(p, &list);
    shown_gcd_of_list(list, by_content, names->pt_level, use_general, names->pt_next, show, c);
}

void aux_content(polynode *q, polynode *p, polynode **g, pt *names, int show, int use_general, int keep_q, int keep_p) {
    poly_handle given_q(keep_q ? nullptr : q), given_p(keep_p ? nullptr : p);
    check_stack();
    if (q->is_number || content_is_number(p, names)) {
        gcd_of_integer_contents(q, p, g);
        return;
    }
    record_depth(by_aux, names->pt_level + pad_levels(p));
    coefficients list;
    list.push(q->poly);
    add_coefficients(p, &list);
    shown_gcd_of_list(list, by_aux, names->pt_level, use_general, names->pt_next, show, g);
}

void dual_content(polynode *u, polynode *v, polynode **g, pt *names, int show, int use_general, int keep_u,
                  int keep_v) {
    poly_handle given_u(keep_u ? nullptr : u), given_v(keep_v ? nullptr : v);
    check_stack();
    if (content_is_number(u, names) || content_is_number(v, names)) {
        gcd_of_integer_contents(u, v, g);
        return;
    }
    record_depth(by_dual, names->pt_level + 2 * (deepest_level(u) - 1) / 3 + 1);
    coefficients list;
    add_coefficients(u, &list);
    add_coefficients(v, &list);
    shown_gcd_of_list(list, by_dual, names->pt_level, use_general, names->pt_next, show, g);
}

} // namespace tolvek
