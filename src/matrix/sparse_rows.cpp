/* Frames, rows and single entries of sparse matrices. */
#include "matrix/sparse.h"

#include "numbers/number.h"
#include "top/driver.h"
#include "top/guards.h"

namespace tolvek {

static sparse_frame *spargarb = nullptr;
static long frames_made = 0, frames_free = 0;

/* ---- frames ---- */

sparse_frame *newsparse() {
    sparse_frame *f = spargarb;
    if (f) {
        spargarb = f->frame_next;
        frames_free--;
    } else {
        f = static_cast<sparse_frame *>(heap_request(sizeof(sparse_frame)));
        frames_made++;
    }
    for (colm *&head : f->row) head = nullptr;
    f->frame_mode = 0;
    f->original = f->frame_next = f->waiting_next = nullptr;
    f->waiting_rows = 0;
    return f;
}

/* Residues have no chain, so that the chain form gives back what either has. */
void drop_original_rows(sparse_frame *head) {
    const kept_value<int> chains(lintmode, 0);
    int32_t rows = 0;
    for (const sparse_frame *f = head->original; f; f = f->frame_next) rows += frame_rows;
    free_sparse(&head->original, rows);
}

void push_sparse(sparse_frame *f) {
    if (f->original) drop_original_rows(f);
    f->frame_next = spargarb;
    spargarb = f;
    frames_free++;
}

long sparse_frames_in_use() { return frames_made - frames_free; }

static void push_frames(sparse_frame **head) {
    while (sparse_frame *f = *head) {
        *head = f->frame_next;
        push_sparse(f);
    }
}

void sparse_init(sparse_frame **head, int32_t rows) {
    struct frames {
        sparse_frame *first = nullptr;
        ~frames() { push_frames(&first); }
    } made;
    *head = nullptr;
    for (int64_t done = 0; done < rows; done += frame_rows) {
        sparse_frame *f = newsparse();
        f->frame_next = made.first; /* all are alike */
        made.first = f;
    }
    *head = made.first;
    made.first = nullptr;
}

/* A frame has 2^11 rows; even 100,000 rows are reached in 48 steps. */
colm **sparse_row(sparse_frame *head, int32_t row) {
    for (int32_t f = (row - 1) >> 11; f > 0; f--) head = head->frame_next;
    return &head->row[(row - 1) & (frame_rows - 1)];
}

/* ---- building a row ---- */

/* The end of the list is known, so that a row is built in time that is proportional to its length. */
void row_builder::add_node(colm *c) {
    c->next = nullptr;
    *end = c;
    end = &c->next;
}

void row_builder::add(int32_t column, quoly_handle &value) {
    if (quoly_is_zero(value.get())) {
        free_quoly(value.slot());
        return;
    }
    colm *c = newcolm();
    c->column = column;
    c->value = value.release();
    add_node(c);
}

/* ---- single elements ---- */

colm **find_entry(colm **row, int32_t column) {
    while (*row && (*row)->column < column) row = &(*row)->next;
    return row;
}

colm *entry_at(colm **row, int32_t column) {
    colm *c = *find_entry(row, column);
    return c && c->column == column ? c : nullptr;
}

colm *get_sparse_colm(sparse_frame *head, int32_t row, int32_t column) {
    return entry_at(sparse_row(head, row), column);
}

const quolynode *spar_retrieve(sparse_frame *head, int32_t row, int32_t column) {
    const colm *c = get_sparse_colm(head, row, column);
    return c ? c->value : quol_num_0;
}

colm *get_sparse(int32_t column, row_walk &rows) {
    colm *c = entry_at(&*rows, column);
    rows.next();
    return c;
}

sparse_place place_of(int64_t a, int64_t b, const array_record *array, bool two_coords) {
    if (two_coords) return {static_cast<int32_t>(a), static_cast<int32_t>(b)};
    return {static_cast<int32_t>(a % array->rows) + 1, static_cast<int32_t>(a / array->rows) + 1};
}

void insert_at(colm **link, int32_t column, quoly_handle &value) {
    colm *c = newcolm();
    c->column = column;
    c->value = value.release();
    c->next = *link;
    *link = c;
}

void delete_at(colm **link) {
    colm *c = *link;
    prepare_drop();
    *link = c->next;
    drop_entry(c);
}

/* The link for the entry of a place, in rows that may be changed. */
static colm **link_at(int64_t a, int64_t b, array_record *array, bool two_coords, int32_t *column) {
    own_rows(array);
    sparse_place at = place_of(a, b, array, two_coords);
    *column = at.column;
    return find_entry(sparse_row(array->sparse_head, at.row), at.column);
}

void sparse_insert(int64_t a, int64_t b, array_record *array, bool two_coords, const quolynode *value) {
    if (quoly_is_zero(value)) return;
    int32_t column;
    quoly_handle copy;
    quoly_assign(value, copy.slot());
    colm **link = link_at(a, b, array, two_coords, &column);
    insert_at(link, column, copy);
}

void isparse_insert(int64_t a, int64_t b, int32_t value, array_record *array, bool two_coords, bool overwrite) {
    int32_t column;
    colm **link = link_at(a, b, array, two_coords, &column);
    colm *found = *link && (*link)->column == column ? *link : nullptr;
    quoly_handle fresh;
    quoly_set(value, fresh.slot());
    if (found && !overwrite) better_quoly_add(fresh.get(), found->value, fresh.slot());
    if (quoly_is_zero(fresh.get())) {
        if (found) delete_at(link);
    } else if (found) {
        store_element(&found->value, fresh.release());
    } else {
        insert_at(link, column, fresh);
    }
}

void sparse_delete(int64_t a, int64_t b, array_record *array, bool two_coords) {
    int32_t column;
    colm **link = link_at(a, b, array, two_coords, &column);
    if (*link) delete_at(link);
}

quolynode **sparse_zero_set(colm **link, int32_t column) {
    quoly_handle zero_value;
    quoly_set(0, zero_value.slot());
    insert_at(link, column, zero_value);
    return &(*link)->value;
}

quolynode **sparse_set(int64_t a, int64_t b, array_record *array, bool two_coords) {
    int32_t column;
    colm **link = link_at(a, b, array, two_coords, &column);
    if (*link && (*link)->column == column) return &(*link)->value;
    return sparse_zero_set(link, column);
}

void purge_sparse(colm **row, int32_t column) {
    colm **link = find_entry(row, column);
    if (*link && (*link)->column == column && quoly_is_zero((*link)->value)) delete_at(link);
}

void sparse_store(sparse_place at, array_record *array, quolynode *value) {
    quoly_handle own;
    *own.slot() = value;
    own_rows(array);
    colm **link = find_entry(sparse_row(array->sparse_head, at.row), at.column);
    bool found = *link && (*link)->column == at.column;
    if (quoly_is_zero(value)) {
        if (found) delete_at(link);
    } else if (found) {
        store_element(&(*link)->value, own.release());
    } else {
        insert_at(link, at.column, own);
    }
}

void sparse_adjoin(sparse_frame *head, int32_t row, int32_t column, quoly_handle &value) {
    colm **link = find_entry(sparse_row(head, row), column);
    if (quoly_is_zero(value.get())) {
        free_quoly(value.slot());
        return;
    }
    if (!*link || (*link)->column != column) {
        insert_at(link, column, value);
        return;
    }
    better_quoly_add(value.get(), (*link)->value, value.slot());
    store_element(&(*link)->value, value.release());
    if (quoly_is_zero((*link)->value)) delete_at(link); /* the two have cancelled */
}

/* ---- disposal ---- */

/* A value that is null, as in a chain that has given its values away, is freed like any other. */
void free_colm(colm **link) {
    colm *c = *link;
    *link = c->next;
    free_quoly(&c->value);
    push_colm(c);
}

void free_sparse_row(colm **row) {
    while (*row) free_colm(row);
}

void free_sparse_data(sparse_frame *head, int32_t rows) {
    row_walk walk(head);
    for (int32_t r = 0; r < rows; r++, walk.next()) free_sparse_row(&*walk);
}

void free_sparse(sparse_frame **head, int32_t rows) {
    if (!*head) return;
    free_sparse_data(*head, rows);
    push_frames(head);
}

void free_sparse_frame(sparse_frame **head, int32_t rows) {
    if (!*head) return;
    row_walk walk(*head);
    for (int32_t r = 0; r < rows; r++, walk.next())
        while (colm *c = *walk) {
            *walk = c->next;
            push_colm(c);
        }
    push_frames(head);
}

} // namespace tolvek
