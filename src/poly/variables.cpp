#include "poly/variables.h"

#include "numbers/free_lists.h"
#include "poly/model.h"
#include "top/heap.h"

#include <cstring>
#include <initializer_list>

namespace tolvek {

pt *polynames = nullptr;
int number_polys = 0;
pt *pt_garb = nullptr;
pt *pseudo_polynames = nullptr;
int changed_in_modmode = 0;
pt *dodo = nullptr;

/* ---- records ---- */

static void clear_relation(pt *v) {
    v->pt_mod_degree = 0;
    v->pt_mod_flags = 0;
    v->pt_mod_poly = v->pt_mod_poly2 = v->pt_mod_poly3 = v->pt_mod_poly4 = nullptr;
    v->pt_num_count = 0;
    v->pt_nums = nullptr;
}

/* Records come in batches, linked so that none is ever out of reach. */
struct record_batch {
    record_batch *link;
    pt record[32];
};
static record_batch *batches = nullptr;

static void make_records() {
    record_batch *batch = static_cast<record_batch *>(heap_request(sizeof(record_batch)));
    batch->link = batches;
    batches = batch;
    for (pt &v : batch->record) push_record<&pt::pt_next>(pt_garb, &v);
}

pt *newpt() {
    if (!pt_garb) make_records();
    pt *v = pop_record<&pt::pt_next>(pt_garb);
    std::memset(v->pt_name, 0, sizeof v->pt_name);
    v->pt_hash = -1;
    v->pt_level = 0;
    v->pt_cutoff = poly_cutoff;
    v->pt_aux = -1;
    v->pt_next = nullptr;
    clear_relation(v);
    return v;
}

void free_pt(pt **p) {
    pt *v = *p;
    *p = nullptr;
    for (polynode **relation : {&v->pt_mod_poly, &v->pt_mod_poly2, &v->pt_mod_poly3, &v->pt_mod_poly4})
        free_poly(relation);
    while (number *x = v->pt_nums) {
        v->pt_nums = x->num_link;
        free_imag(&x);
    }
    push_record<&pt::pt_next>(pt_garb, v);
}

pt *newdummy(const pt *src) {
    pt *v = newpt();
    std::memcpy(v->pt_name, src->pt_name, sizeof v->pt_name);
    v->pt_hash = src->pt_hash;
    v->pt_next = src->pt_next;
    v->pt_level = src->pt_level;
    v->pt_mod_degree = src->pt_mod_degree;
    return v;
}

/* ---- the list ---- */

pt *variable_at(int level) {
    pt *v = level > 0 ? polynames : nullptr;
    for (; v && level > 1; level--) v = v->pt_next;
    return v;
}

int is_poly_name2(const char *text, int *level, pt **record) {
    int at = 1;
    for (pt *v = polynames; v; v = v->pt_next, at++) {
        if (std::strcmp(v->pt_name, text) != 0) continue;
        *level = at;
        *record = v;
        return 1;
    }
    return 0;
}

int is_poly_name(const char *text, int *level) {
    pt *record;
    return is_poly_name2(text, level, &record);
}

void number_levels() {
    int level = 0;
    for (pt *v = polynames; v; v = v->pt_next) v->pt_level = ++level;
    number_polys = level;
}

/* The link that holds the record of the level, or the null link behind the last. */
static pt **link_at(int level) {
    pt **link = &polynames;
    for (; *link && level > 1; level--) link = &(*link)->pt_next;
    return link;
}

void insert_variable(pt *v, int level) {
    pt **link = link_at(level);
    v->pt_next = *link;
    *link = v;
    insert_listed_name(v->pt_name);
    number_levels();
}

void delete_poly_name(int level) {
    pt **link = link_at(level);
    pt *v = *link;
    *link = v->pt_next;
    remove_listed_name(v->pt_name);
    free_pt(&v);
    number_levels();
}

void forget_poly_variables() {
    while (polynames) delete_poly_name(1);
    pseudo_polynames = nullptr;
    changed_in_modmode = 0;
}

void reset_cutoffs(int v) {
    for (pt *variable = polynames; variable; variable = variable->pt_next)
        if (variable->pt_cutoff == poly_cutoff) variable->pt_cutoff = v;
}

/* ---- the names in byte order: as many as there are variables ---- */

char polyvar[most_variables][token_bytes];

void insert_listed_name(const char *text) {
    int at = number_polys;
    for (; at > 0 && std::strcmp(polyvar[at - 1], text) > 0; at--)
        std::memcpy(polyvar[at], polyvar[at - 1], token_bytes);
    std::memset(polyvar[at], 0, token_bytes);
    std::strcpy(polyvar[at], text);
}

void remove_listed_name(const char *text) {
    int at = 0;
    while (at < number_polys - 1 && std::strcmp(polyvar[at], text) != 0) at++;
    for (; at < number_polys - 1; at++) std::memcpy(polyvar[at], polyvar[at + 1], token_bytes);
}

/* ---- names for variables of the system's own ---- */

static void add_dummy(char letter, char figure) {
    pt *v = newpt();
    v->pt_name[0] = letter;
    v->pt_name[1] = figure;
    v->pt_next = dodo;
    dodo = v;
}

void make_dummy_variables() {
    if (dodo) return;
    for (char figure : {'2', '1', '\0'})
        for (char letter = 'a'; letter <= 'z'; letter++) add_dummy(letter, figure);
}

} // namespace tolvek
