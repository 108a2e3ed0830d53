#include "top/ring_values.h"
#include "language/names.h"
#include "poly/attach.h"
#include "quoly/compare.h"
#include "quoly/ring_change.h"
#include "top/guards.h"
#include "top/interrupts.h"
#include "top/levels.h"
#include "top/text_io.h"

#include <algorithm>
#include <utility>

namespace tolvek {

/* ---- images of single values ---- */

static ring_state ring_of_stamp(int32_t n) {
    ring_state r{};
    r.lintmode = r.modularmode = n > 0;
    r.modulus = n;
    r.f256 = n == 256;
    r.f2t16 = n == 65536;
    r.finf = r.f256 || r.f2t16;
    return r;
}

/* *image := source, a value of the ring with the stamp, in the ring `next`: over the rationals where both are modular. */
static ring_move make_image(const quolynode *source, int32_t stamp, const ring_state &next, bool symmetric,
                            quolynode **image) {
    ring_guard found;
    set_ring(ring_of_stamp(stamp));
    quoly_assign(source, image);
    if (stamp == next.modulus) return ring_move::done;
    const bool has_signs = symmetric && !finf;
    set_ring(ring_of_stamp(-1));
    if (stamp > 0) quoly_change_from_mod(*image, stamp, has_signs);
    set_ring(next);
    return next.modulus > 0 ? try_change_num(image) : ring_move::done;
}

/* The same where what has no image is an error, or 0. */
static void insist_on_image(const quolynode *source, int32_t stamp, const ring_state &next, bool symmetric,
                            quolynode **image) {
    const ring_move outcome = make_image(source, stamp, next, symmetric, image);
    if (outcome == ring_move::no_inverse) error(85, blank);
    if (outcome == ring_move::denominator_is_0)
        say("Warning. A zero quoly denominator was found. That quoly was set to 0.\n");
}

/* An image that is given back whatever its form is. */
class image_handle {
  public:
    image_handle() = default;
    ~image_handle() { free_in_any_form(&value); }
    image_handle(const image_handle &) = delete;
    image_handle &operator=(const image_handle &) = delete;
    quolynode **slot() { return &value; }
    quolynode *get() const { return value; }
    quolynode *release() { return std::exchange(value, nullptr); }

  private:
    quolynode *value = nullptr;
};

static bool is_image_of_original(const quolynode *q, bool symmetric) {
    image_handle expected;
    const quolynode *o = q->original;
    if (make_image(o, o->stamp, current_ring(), symmetric, expected.slot()) != ring_move::done) return quoly_is_zero(q);
    return quoly_equal(expected.get(), q);
}

/* Is q, of the ring in force, what its original makes it, by either reading of residues? Otherwise it has been changed in
   place. */
static bool stands_for_original(const quolynode *q) {
    return is_image_of_original(q, true) || is_image_of_original(q, false);
}

/* ---- images of sparse matrices: without the entries that become 0 ---- */

static bool make_row(const colm *source, int32_t stamp, const ring_state &next, bool symmetric, bool strict,
                     colm **row) {
    row_builder end(row);
    for (const colm *c = source; c; c = c->next) {
        image_handle image;
        if (strict)
            insist_on_image(c->value, stamp, next, symmetric, image.slot());
        else if (make_image(c->value, stamp, next, symmetric, image.slot()) != ring_move::done)
            return false;
        ring_guard found;
        set_ring(next);
        quoly_handle value;
        *value.slot() = image.release();
        end.add(c->column, value);
    }
    return true;
}

static void free_matrix(sparse_frame **head, int32_t rows) {
    const kept_value<int> chains(lintmode, 0);
    free_sparse(head, rows);
}

class matrix_handle {
  public:
    explicit matrix_handle(int32_t its_rows) : rows(its_rows) { sparse_init(&head, rows); }
    ~matrix_handle() { free_matrix(&head, rows); }
    matrix_handle(const matrix_handle &) = delete;
    matrix_handle &operator=(const matrix_handle &) = delete;

    sparse_frame *head = nullptr;
    int32_t rows;
};

/* False: some entry has no image. */
static bool make_rows(sparse_frame *source, int32_t stamp, const ring_state &next, bool symmetric, bool strict,
                      matrix_handle &image) {
    row_walk from(source), to(image.head);
    for (int32_t r = 0; r < image.rows; r++, from.next(), to.next()) {
        safe_point();
        if (!make_row(*from, stamp, next, symmetric, strict, &*to)) return false;
    }
    return true;
}

static bool same_rows(sparse_frame *a, sparse_frame *b, int32_t rows) {
    row_walk left(a), right(b);
    for (int32_t r = 0; r < rows; r++, left.next(), right.next()) {
        const colm *c = *left, *d = *right;
        for (; c && d; c = c->next, d = d->next)
            if (c->column != d->column || !quoly_equal(c->value, d->value)) return false;
        if (c || d) return false;
    }
    return true;
}

/* A matrix without an image has no entries. */
static bool is_image_of_original(const array_record *a, bool symmetric) {
    matrix_handle expected(a->rows), none(a->rows);
    sparse_frame *o = a->sparse_head->original;
    const bool has_image = make_rows(o, a->sparse_head->frame_mode, current_ring(), symmetric, false, expected);
    return same_rows(has_image ? expected.head : none.head, a->sparse_head, a->rows);
}

static bool stands_for_original(const array_record *a) {
    return is_image_of_original(a, true) || is_image_of_original(a, false);
}

/* ---- collecting ---- */

value_change::value_change(const ring_state &next_ring, bool signs)
    : now(current_ring()), next(next_ring), symmetric(signs), levels_before(levels_opened) {
    collect();
}

value_change::~value_change() {
    for (scalar_image &v : scalars) free_in_any_form(&v.image);
    for (matrix_image &m : matrices)
        if (m.rows) free_matrix(&m.rows, m.array->rows);
}

void value_change::add(quolynode **slot, void *context) {
    static_cast<value_change *>(context)->scalars.push({slot, nullptr, step::waits, false, false});
}

void value_change::collect() {
    visit_variables(add, this);
    visit_cells(add, this);
    std::sort(scalars.begin(), scalars.end(),
              [](const scalar_image &a, const scalar_image &b) { return a.slot < b.slot; });
    for_sparse_arrays(
        [](array_record *a, void *context) {
            static_cast<value_change *>(context)->matrices.push({a, nullptr, step::waits, false, false});
        },
        this);
}

value_change::scalar_image *value_change::find(quolynode **slot) {
    scalar_image *v = std::lower_bound(scalars.begin(), scalars.end(), slot,
                                       [](const scalar_image &a, quolynode **s) { return a.slot < s; });
    return v != scalars.end() && v->slot == slot ? v : nullptr;
}

bool value_change::is_stale() const { return levels_opened != levels_before; }

/* ---- making images ---- */

void value_change::make(scalar_image &v, bool for_good) {
    const quolynode *source = *v.slot;
    int32_t stamp = now.modulus;
    v.from_original = source->original && stands_for_original(source);
    if (v.from_original) {
        source = source->original;
        stamp = source->stamp;
    }
    image_handle image;
    ring_move outcome = ring_move::done;
    if (strict)
        insist_on_image(source, stamp, next, symmetric, image.slot());
    else
        outcome = make_image(source, stamp, next, symmetric, image.slot());
    v.state = outcome == ring_move::done ? step::has_image : step::has_none;
    v.keeps = outcome != ring_move::done || (!for_good && stamp != next.modulus);
    free_in_any_form(&v.image);
    v.image = image.release();
}

void value_change::make(matrix_image &m, bool for_good) {
    sparse_frame *source = m.array->sparse_head;
    int32_t stamp = now.modulus;
    m.from_original = source->original && stands_for_original(m.array);
    if (m.from_original) {
        stamp = source->frame_mode;
        source = source->original;
    }
    matrix_handle image(m.array->rows), none(m.array->rows);
    const bool whole = make_rows(source, stamp, next, symmetric, strict, image);
    m.state = whole ? step::has_image : step::has_none;
    m.keeps = !whole || (!for_good && stamp != next.modulus);
    free_matrix(&m.rows, m.array->rows);
    m.rows = std::exchange((whole ? image : none).head, nullptr);
}

bool value_change::change_scalar(quolynode **slot) {
    scalar_image *v = find(slot);
    if (!v) return true;
    if (v->state == step::waits) make(*v, true);
    return v->state == step::has_image;
}

bool value_change::change_array(array_record *a) {
    for (matrix_image &m : matrices)
        if (a->sparse_head && m.array->sparse_head == a->sparse_head && m.state == step::waits) make(m, true);
    if (!a->sparse_head)
        for (int64_t i = 0; i < a->size; i++)
            if (element(a, i)) change_scalar(&element(a, i));
    return has_images(a);
}

bool value_change::change_system_array() { return syst_is_empty() || change_array(&syst); }

void value_change::keep_the_rest() {
    for (scalar_image &v : scalars)
        if (v.state == step::waits) make(v, false);
    for (matrix_image &m : matrices)
        if (m.state == step::waits) make(m, false);
}

void value_change::change_the_rest() {
    strict = true;
    for (scalar_image &v : scalars) make(v, true);
    for (matrix_image &m : matrices) make(m, true);
}

/* ---- what has none ---- */

bool value_change::has_images(array_record *a) {
    for (const matrix_image &m : matrices)
        if (a->sparse_head && m.array->sparse_head == a->sparse_head) return m.state != step::has_none;
    for (int64_t i = 0; !a->sparse_head && i < a->size; i++) {
        const scalar_image *v = element(a, i) ? find(&element(a, i)) : nullptr;
        if (v && v->state == step::has_none) return false;
    }
    return true;
}

constexpr int most_names_told = 20;

static void tell_name(const char *text, int &told) {
    if (told++ >= most_names_told) return;
    sayf(" *** Inappropriate symbol: %s\n", text);
    out_err_mess(210);
    say(" Change of precedence will continue. Some data may not be reasonably changed.\n");
}

void value_change::tell_what_has_no_image() {
    int told = 0;
    for (variable *chain : sca_store)
        for (variable *v = chain; v; v = v->next) {
            const scalar_image *image = find(&v->value);
            if (image && image->state == step::has_none) tell_name(v->tok.text, told);
        }
    for (array_record *chain : arr_store)
        for (array_record *a = chain; a; a = a->next)
            if (!a->is_parameter() && !has_images(a)) tell_name(a->tok.text, told);
    if (!syst_is_empty() && !has_images(&syst)) tell_name("<", told);
}

/* ---- the images take their places ---- */

void value_change::put(scalar_image &v) {
    quolynode *old = std::exchange(*v.slot, std::exchange(v.image, nullptr)), *image = *v.slot;
    if (v.keeps && v.from_original) {
        image->original = std::exchange(old->original, nullptr);
    } else if (v.keeps) {
        drop_original(old);
        old->stamp = now.modulus;
        image->original = std::exchange(old, nullptr);
    }
    free_in_any_form(&old);
}

static void exchange_rows(sparse_frame *a, sparse_frame *b) {
    for (; a && b; a = a->frame_next, b = b->frame_next) std::swap(a->row, b->row);
}

/* The array's frames stay where they are, since parameters share them. */
void value_change::put(matrix_image &m) {
    sparse_frame *head = m.array->sparse_head;
    exchange_rows(head, m.rows);
    if (m.keeps && m.from_original) return;
    drop_original_rows(head);
    if (!m.keeps) return;
    head->original = std::exchange(m.rows, nullptr);
    head->frame_mode = now.modulus;
}

void value_change::put_in_place() {
    for (scalar_image &v : scalars) put(v);
    for (matrix_image &m : matrices) put(m);
}

/* ---- forgetting ---- */

void forget_originals() {
    visit_stored_values([](quolynode **slot, void *) { drop_original(*slot); }, nullptr);
    for_sparse_arrays([](array_record *a, void *) { drop_original_rows(a->sparse_head); }, nullptr);
}

} // namespace tolvek
