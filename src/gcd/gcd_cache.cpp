/* The cache of GCDs. An entry is made when its answer is known, so that none is ever half made: an unwinding has nothing
   to undo but the count of GCDs at work. Operands count as equal when they differ by a unit, and an answer is good up to
   one; the key holds the level, since the same lists mean other polynomials one level down. */
#include "gcd/gcd_sizes.h"
#include "gcd/gcd_work.h"
#include "poly/measures.h"
#include "top/heap.h"

#include <algorithm>
#include <utility>

namespace tolvek {

constexpr int buckets = 367;

/* In a block of the heap of its own. All that it points to is owned. */
struct gcd_entry {
    gcd_entry *next; /* in the bucket; the newest one first */
    int32_t level;
    polynode *low, *high; /* the operands; the degree of high is not below that of low */
    polynode *answer;
    int64_t mass;
};

static gcd_entry *stash[buckets];
static ring_state stash_ring; /* what the entries are in, if there are any */
int64_t gcdmass = 0;
int polygcd_stack_depth = 0;

static int64_t half_of_memory() { return static_cast<int64_t>(initial_memory / 2); }

/* ---- dropping ---- */

/* The entries' numbers go back in the form that they have, whatever the ring in force is. */
struct form_of_entries : ring_guard {
    form_of_entries() { lintmode = stash_ring.lintmode; }
};

static void drop_stashed(gcd_entry *e) {
    form_of_entries form;
    gcdmass -= e->mass;
    free_poly(&e->low);
    free_poly(&e->high);
    free_poly(&e->answer);
    heap_release(e);
}

static void drop_list(gcd_entry **list) {
    while (gcd_entry *e = *list) {
        *list = e->next;
        drop_stashed(e);
    }
}

/* An entry out of its bucket. */
class entry_handle {
  public:
    explicit entry_handle(gcd_entry *e) : held(e) {}
    ~entry_handle() {
        if (held) drop_stashed(held);
    }
    entry_handle(const entry_handle &) = delete;
    entry_handle &operator=(const entry_handle &) = delete;
    gcd_entry *release() { return std::exchange(held, nullptr); }

  private:
    gcd_entry *held;
};

static void push_entry(gcd_entry *e, int bucket) {
    e->next = stash[bucket];
    stash[bucket] = e;
}

static void drop_all() {
    for (gcd_entry *&list : stash) drop_list(&list);
}

/* The newest entry of each bucket stays; then whole buckets go until a third of the memory is free. */
static void purge_gcd_stash(int keep_bucket) {
    const int64_t limit = static_cast<int64_t>(initial_memory / 3 * 2);
    for (gcd_entry *list : stash)
        if (list) drop_list(&list->next);
    for (int i = 0; i < buckets && gcdmass > limit; i++)
        if (i != keep_bucket) drop_list(&stash[i]);
}

static bool is_stale() {
    const ring_state now = current_ring();
    return now.flotemode != stash_ring.flotemode || now.lintmode != stash_ring.lintmode ||
           now.modularmode != stash_ring.modularmode || now.finf != stash_ring.finf || now.f256 != stash_ring.f256 ||
           (now.modularmode && now.modulus != stash_ring.modulus);
}

/* ---- keys ---- */

/* Alike for polynomials that differ by a unit: the shape alone counts. */
static uint32_t shape_hash(const polynode *p, uint32_t h) {
    for (; p; p = p->next) {
        h = h * 31 + static_cast<uint32_t>(p->expo) + 1;
        if (!p->is_number) h = shape_hash(p->poly, h + 7);
    }
    return h;
}

static int bucket_of(const polynode *u, const polynode *v) {
    return static_cast<int>((shape_hash(u, 1) + shape_hash(v, 1)) % buckets);
}

static bool is_entry_of(const gcd_entry *e, const polynode *u, const polynode *v, int level) {
    if (e->level != level) return false;
    return (essentially_equal(e->high, u) && essentially_equal(e->low, v)) ||
           (essentially_equal(e->high, v) && essentially_equal(e->low, u));
}

/* ---- in a GCD ---- */

bool stash_attempt::find(const polynode *u, const polynode *v, int level, polynode **answer) {
    if (wanted || lookupgcd <= 0 || flotemode || gcdmass >= half_of_memory()) return false;
    if (is_stale()) drop_all();
    for (gcd_entry **place = &stash[bucket_of(u, v)]; *place; place = &(*place)->next)
        if (is_entry_of(*place, u, v, level)) {
            gcd_entry *alone = std::exchange(*place, (*place)->next); /* a heap that refuses empties the cache */
            entry_handle held(alone);
            poly_assign(alone->answer, answer);
            push_entry(held.release(), bucket_of(u, v));
            return true;
        }
    wanted = true;
    polygcd_stack_depth++;
    return false;
}

void stash_attempt::keep(const polynode *u, const polynode *v, int level, const polynode *answer) {
    if (!wanted) return;
    close();
    poly_handle low, high, copy;
    poly_assign(v, low.slot());
    poly_assign(u, high.slot());
    poly_assign(answer, copy.slot());
    if (is_stale()) drop_all(); /* a nested level may have stored entries of another ring meanwhile */
    const int64_t mass = simple_poly_mass(low.get()) + simple_poly_mass(high.get()) + simple_poly_mass(copy.get());
    gcd_entry *e = static_cast<gcd_entry *>(heap_request(sizeof(gcd_entry)));
    stash_ring = current_ring();
    *e = {nullptr, level, low.release(), high.release(), copy.release(), mass};
    gcdmass += mass;
    const int bucket = bucket_of(u, v);
    push_entry(e, bucket);
    if (gcdmass > half_of_memory() && polygcd_stack_depth == 0) purge_gcd_stash(bucket);
}

void stash_attempt::close() {
    if (!wanted) return;
    wanted = false;
    if (--polygcd_stack_depth >= 0) return;
    tolvek_error(text_of_imbalance, 0);
    polygcd_stack_depth = 0;
}

verdict look_in_stash(gcd_work *w) {
    if (w->just_degree || w->v->degree() < stash_degree || w->total <= gcd_stash_cutoff) return verdict::next;
    return w->attempt.find(w->u->p, w->v->p, w->level, w->answer.slot()) ? verdict::finish : verdict::next;
}

/* ---- stretches ---- */

void init_gcd_stash() {
    lookupgcd++;
    if (is_stale()) drop_all();
}

void pop_gcd_stash() {
    lookupgcd--;
    if (lookupgcd <= 0) free_gcd_stash();
}

void free_gcd_stash(stash_drop what) {
    if (what == stash_drop::everything || !modularmode || is_stale()) drop_all();
}

} // namespace tolvek
