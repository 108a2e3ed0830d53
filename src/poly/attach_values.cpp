/* The stored values follow a change of variables. */
#include "language/names.h"
#include "matrix/arrays.h"
#include "poly/attach.h"
#include "poly/evaluate.h"
#include "poly/model_work.h"
#include "quoly/quoly.h"
#include "top/driver.h"
#include "top/ring_values.h"

#include <cstring>
#include <utility>

namespace tolvek {

void visit_stored_values(void (*visit)(quolynode **slot, void *context), void *context) {
    visit_variables(visit, context);
    visit_array_values(visit, context);
    if (sysnum) visit(&sysnum, context);
}

/* Compiled tokens look up their names anew: a variable may have come in front of a scalar, or gone. */
static void forget_bindings() { scalar_generation++; }

/* The last value would be read in the new variables; it counts as 0 from here on. */
static void forget_last_value() { free_quoly(&prevnum); }

/* ---- a level more ---- */

/* One wrapper for each polynomial of the level, unless it is a lone number. */
static int64_t wrappers_needed(const polynode *p, int level) {
    if (is_constant(p)) return 0;
    if (level == 1) return 1;
    int64_t n = 0;
    for (; p; p = p->next)
        if (!p->is_number) n += wrappers_needed(p->poly, level - 1);
    return n;
}

static void insert_level(polynode **p, int level) {
    if (is_constant(*p)) return;
    if (level > 1) {
        for (polynode *t = *p; t; t = t->next)
            if (!t->is_number) insert_level(&t->poly, level - 1);
        return;
    }
    polynode *wrapper = new_term();
    wrapper->poly = *p;
    *p = wrapper;
}

struct new_level {
    int level;
    int64_t wrappers;
};

static void count_for_value(quolynode **slot, void *context) {
    new_level *at = static_cast<new_level *>(context);
    const quolynode *q = *slot;
    if (q->is_num) return;
    at->wrappers += wrappers_needed(q->num, at->level);
    if (q->den) at->wrappers += wrappers_needed(q->den, at->level);
}

static void insert_in_value(quolynode **slot, void *context) {
    new_level *at = static_cast<new_level *>(context);
    quolynode *q = *slot;
    if (q->is_num) return;
    insert_level(&q->num, at->level);
    if (q->den) insert_level(&q->den, at->level);
}

/* Sees to it that the free list holds so many nodes. */
static void have_nodes_ready(int64_t n) {
    growing_list ready;
    for (; n > 0; n--) ready.append(new_term());
}

static int level_of_new_variable(bool at_head) {
    if (at_head) return 1;
    return field_depth > 0 ? field_depth : number_polys + 1;
}

void adjoin_variable(token_record &variable_name, bool at_head) {
    new_level at{level_of_new_variable(at_head), 0};
    visit_stored_values(count_for_value, &at);
    have_nodes_ready(at.wrappers);
    pt *v = newpt();
    std::memcpy(v->pt_name, variable_name.text, sizeof v->pt_name);
    v->pt_hash = hash_of(variable_name, scalar_chains);
    /* nothing is refused from here on */
    if (at.level <= number_polys) {
        visit_stored_values(insert_in_value, &at);
        forget_last_value();
    }
    forget_originals();
    if (field_depth > 0) field_depth++;
    insert_variable(v, at.level);
    forget_bindings();
}

/* ---- a level less ---- */

namespace {

/* What becomes of one stored value. */
struct follower {
    quolynode **slot;
    const quolynode *source; /* what stands there now */
    quolynode *image;
    bool denominator_is_0;
};

/* The images of all values. They go back unless they are put in place. */
class image_list {
  public:
    image_list() = default;
    ~image_list() { forget(); }
    image_list(const image_list &) = delete;
    image_list &operator=(const image_list &) = delete;

    void collect() {
        forget();
        visit_stored_values(add, this);
    }
    void evaluate(int level);
    bool is_up_to_date() {
        at = 0;
        fresh = true;
        visit_stored_values(compare, this);
        return fresh && at == list.size();
    }
    void put_in_place();

  private:
    void forget() {
        for (follower &f : list) free_quoly(&f.image);
        list.clear();
    }
    static void add(quolynode **slot, void *context) {
        if (!(*slot)->is_num) static_cast<image_list *>(context)->list.push({slot, *slot, nullptr, false});
    }
    static void compare(quolynode **slot, void *context) {
        if ((*slot)->is_num) return;
        image_list &l = *static_cast<image_list *>(context);
        bool same = l.at < l.list.size() && l.list[l.at].slot == slot && l.list[l.at].source == *slot;
        if (!same) l.fresh = false;
        l.at++;
    }

    buffer<follower> list;
    std::size_t at = 0;
    bool fresh = true;
};

} // namespace

/* p at 1, without the level. */
static void polynomial_at_1(const polynode *p, int level, poly_handle &image) {
    poly_assign(p, image.slot());
    if (!image) return;
    eval_at_one(image.slot(), level);
    remove_one(image.slot(), level);
}

void image_list::evaluate(int level) {
    for (follower &f : list) {
        poly_handle num, den;
        polynomial_at_1(f.source->num, level, num);
        polynomial_at_1(f.source->den, level, den);
        f.denominator_is_0 = den && poly_iszero(den.get());
        if (f.denominator_is_0)
            quoly_set(1, &f.image);
        else
            fraction_to_value(num, den, &f.image);
    }
}

void image_list::put_in_place() {
    constexpr int most_warnings = 40;
    int warnings = 0;
    for (follower &f : list) {
        std::swap(*f.slot, f.image);
        if (f.denominator_is_0 && warnings++ < most_warnings)
            say("Warning. A quoly denominator has become 0.  That variable has been set to 1.\n");
    }
    forget();
}

/* A command level that an interrupt opens meanwhile may store new values: then all is done again. */
void cancel_variable(int level) {
    image_list images;
    do {
        images.collect();
        images.evaluate(level);
    } while (!images.is_up_to_date());
    images.put_in_place();
    purge_array_values();
    forget_originals();
    forget_last_value();
    forget_bindings();
    if (field_depth > level) field_depth--;
    delete_poly_name(level);
    if (field_depth > number_polys) field_depth = 0;
}

} // namespace tolvek
