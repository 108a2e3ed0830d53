/* The records of arrays and the table of their names. */
#include "matrix/arrays.h"

#include "language/execution.h"
#include "matrix/array_work.h"
#include "matrix/slots.h"
#include "matrix/sparse.h"
#include "top/driver.h"

namespace tolvek {

array_record *arr_store[scalar_chains];
int32_t array_time = 0;
int new_array = 0;
uint64_t array_generation = 1;
static array_record *arr_garb = nullptr;

/* error() returns when a command level that it has opened is resumed: the statement then ends all the same. */
void array_error(int n, const token_record &symbol) {
    error(n, symbol);
    abandon_statement();
}

/* ---- records ---- */

array_record *newarray() {
    array_record *a = arr_garb;
    if (a)
        arr_garb = a->next;
    else
        a = static_cast<array_record *>(heap_request(sizeof(array_record)));
    *a = {};
    a->last = -1;
    return a;
}

void push_array(array_record *a) {
    a->next = arr_garb;
    arr_garb = a;
}

/* A record that is on no chain yet. The hash of its name is computed when it is linked. */
static array_record *new_named(const token_record &name, int64_t rows, int64_t cols, bool one_dim) {
    array_record *a = newarray();
    a->tok = name;
    a->tok.hash_slot = hash_unknown;
    a->rows = static_cast<int32_t>(rows);
    a->size = rows * cols;
    a->one_dim = one_dim;
    a->birth = ++array_time;
    return a;
}

void link_array(array_record *a) {
    if (const array_record *target = a->aliased) { /* its cells may have moved since */
        a->first = target->first;
        a->last = target->last;
        a->sparse_head = a->linked_head = target->sparse_head;
    }
    array_generation++;
    array_record **chain = &arr_store[hash_of(a->tok, scalar_chains)];
    a->next = *chain;
    *chain = a;
}

/* The link that points to the record, or the null at the end of its chain. */
static array_record **link_to(const array_record *a) {
    token_record t = a->tok;
    array_record **link = &arr_store[hash_of(t, scalar_chains)];
    while (*link && *link != a) link = &(*link)->next;
    return link;
}

bool unlink_array(array_record *a) {
    array_record **link = link_to(a);
    if (!*link) return false;
    *link = a->next;
    array_generation++;
    return true;
}

bool is_linked(const array_record *a) { return *link_to(a); }

bool rename_array(token_record &from, const token_record &to) {
    array_record *a = find_array(from);
    if (!a) return false;
    if (a->is_parameter()) array_error(138, a->tok);
    unlink_array(a);
    a->tok = to;
    a->tok.hash_slot = hash_unknown;
    link_array(a);
    return true;
}

/* ---- creation ---- */

constexpr int64_t most_rows_or_cols = INT32_MAX; /* columns of entries have 32 bits */

static void check_dimensions(const token_record &name, int64_t rows, int64_t cols) {
    if (rows < 1 || cols < 1 || rows > most_rows_or_cols || cols > most_rows_or_cols) array_error(27, name);
}

array_record *insertarr(const token_record &name, int64_t rows, int64_t cols, bool one_dim) {
    check_dimensions(name, rows, cols);
    if (oversize(rows, cols)) array_error(43, name);
    auto count = static_cast<int32_t>(rows * cols);
    if (!make_room(count)) array_error(26, name);
    array_record *a = new_named(name, rows, cols, one_dim);
    a->first = endarr + 1;
    a->last = endarr + count;
    endarr = a->last;
    link_array(a);
    return a;
}

array_record *quick_sparse_create(sparse_frame *head, const token_record &name, int32_t rows, int64_t cols,
                                  bool one_dim) {
    array_record *a = new_named(name, rows, cols, one_dim);
    a->sparse_head = head;
    link_array(a);
    return a;
}

array_record *sparse_create(const token_record &name, int64_t rows, int64_t cols, bool one_dim, bool with_frames) {
    check_dimensions(name, rows, cols);
    sparse_handle frames;
    if (with_frames) sparse_init(frames.slot(), static_cast<int32_t>(rows));
    return quick_sparse_create(frames.release(), name, static_cast<int32_t>(rows), cols, one_dim);
}

/* The birth of a parameter is that of its array with a minus: so a parameter of a parameter follows the array itself. */
array_record *new_parameter_array(const token_record &name, array_record *a) {
    array_record *p = newarray();
    *p = *a;
    p->tok = name;
    p->tok.hash_slot = hash_unknown;
    p->next = nullptr;
    p->aliased = a;
    p->birth = a->birth < 0 ? a->birth : -a->birth;
    return p;
}

void drop_parameter_array(array_record *a) { push_array(a); }

/* ---- lookup ---- */

array_record *find_array(token_record &name) {
    array_record *a = arr_store[hash_of(name, scalar_chains)];
    while (a && !same_text(a->tok, name)) a = a->next;
    return a;
}

array_record *array_seek(token_record &name) {
    array_record *a = find_array(name);
    if (!a) array_error(28, name);
    return a;
}

bool is_array_param(const quolynode *q) { return q && q->is_num && q->array_mark; }

/* ---- report ---- */

void arrdescribe(text_out *out, const array_record *a) {
    put_format(out, "Array %s[%d", a->tok.text, static_cast<int>(a->rows));
    if (a->one_dim)
        put_text(out, "]");
    else
        put_format(out, ",%d]", static_cast<int>(a->cols()));
    put_text(out, a->sparse_head ? " Sparse;\n" : ";\n");
}

void warn_uninitialized(const char *name) {
    constexpr int most_warnings = 20;
    if (uninit > most_warnings) return;
    if (++uninit > most_warnings)
        say(" ....etc...\n");
    else if (name)
        sayf("Warning. Uninitialized array element in %s has been set to 0.\n", name);
    else
        say("Warning. Uninitialized array element has been set to 0.\n");
}

void warn_uninitialized_in(const token_record &array_name) {
    if (token_is(array_name, "%")) {
        warn_uninitialized("%");
        return;
    }
    char text[token_bytes + 2] = "[";
    warn_uninitialized(std::strcat(std::strcat(text, array_name.text), "]"));
}

} // namespace tolvek
