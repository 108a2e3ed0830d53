/* Sparse matrices: rows as lists of entries, strictly ascending by column.

   A matrix is a chain of frames with 2048 row heads each. A column counts from 1, whatever the index origin is; a row
   of these routines counts from 1 too. No value 0 is stored, but for an entry that sparse_set has made for its caller
   to fill and purge_sparse takes away again. Heads beyond the last row are null.

   What a matrix loses (entries and their values, whole rows) goes through drop_entry and drop_rows (arrays.h), as
   somebody outside may hold it; what is built aside and not yet stored is freed at once. */
#pragma once

#include "matrix/arrays.h"

namespace tolvek {

constexpr int frame_rows = 2048;

/* Free list: spargarb, through frame_next. */
struct sparse_frame {
    colm *row[frame_rows];
    sparse_frame *frame_next;
    /* In the first frame: the matrix of another ring that this one stands for (top/ring_values.h), and that ring as its
       modulus, -1 for the rationals. Owned; null: there is none. */
    sparse_frame *original;
    int32_t frame_mode;
    /* In the first frame of a matrix that waits to be freed (drop_rows): the next such one, and how many rows this one has. */
    sparse_frame *waiting_next;
    int32_t waiting_rows;
};

sparse_frame *newsparse(); /* heads null, without an original */
void push_sparse(sparse_frame *f);
void drop_original_rows(sparse_frame *head);
long sparse_frames_in_use();
void sparse_init(sparse_frame **head,
                 int32_t rows); /* *head := rows without entries, all of them or, if it throws, none */

/* The head of a row, counted from 1. */
colm **sparse_row(sparse_frame *head, int32_t row);

/* Goes through the rows from the first to the last. */
class row_walk {
  public:
    explicit row_walk(sparse_frame *head) : frame(head) {}
    colm *&operator*() const { return frame->row[at]; }
    void next() {
        if (++at == frame_rows) {
            at = 0;
            frame = frame->frame_next;
        }
    }

  private:
    sparse_frame *frame;
    int at = 0;
};

/* Adds entries at the end of a row that is being built. */
class row_builder {
  public:
    explicit row_builder(colm **head) : end(head) {}
    /* Takes the value over; a zero is freed instead. */
    void add(int32_t column, quoly_handle &value);
    void add_node(colm *c);

  private:
    colm **end;
};

/* ---- single elements ---- */

/* The first link whose entry has at least the column; it may hold null. */
colm **find_entry(colm **row, int32_t column);
colm *entry_at(colm **row, int32_t column); /* the entry of the column, or null */
/* A new entry at the link, which takes the value over. */
void insert_at(colm **link, int32_t column, quoly_handle &value);
/* Unlinks the entry at the link. Its own link stays as it is: somebody may stand on it. */
void delete_at(colm **link);
/* The value, or the constant 0. */
const quolynode *spar_retrieve(sparse_frame *head, int32_t row, int32_t column);
/* The same for a scan by rows: the entry of the column or null; the walk goes on to the next row. */
colm *get_sparse(int32_t column, row_walk &rows);
/* The entry, or null. */
colm *get_sparse_colm(sparse_frame *head, int32_t row, int32_t column);

/* The place of an entry: the row from 1 and the column from 1, or, without two_coords, a as the index from 0 in the order
   of the columns. */
struct sparse_place {
    int32_t row, column;
};
sparse_place place_of(int64_t a, int64_t b, const array_record *array, bool two_coords);

/* Inserts a copy of the value where no entry stands; a zero is left out. */
void sparse_insert(int64_t a, int64_t b, array_record *array, bool two_coords, const quolynode *value);
/* A machine integer: set with overwrite, added without. Zeros leave no entry. */
void isparse_insert(int64_t a, int64_t b, int32_t value, array_record *array, bool two_coords, bool overwrite);
void sparse_delete(int64_t a, int64_t b, array_record *array, bool two_coords); /* the entry is there */
/* The slot of the entry; a missing one is made, with the value 0, which purge_sparse takes away unless it changes. */
quolynode **sparse_set(int64_t a, int64_t b, array_record *array, bool two_coords);
quolynode **sparse_zero_set(colm **link, int32_t column);
void purge_sparse(colm **row, int32_t column); /* drops the entry if it is 0 */
/* Stores a value, which is taken over; 0 drops the entry. */
void sparse_store(sparse_place at, array_record *array, quolynode *value);
/* Adds the value, which is consumed, to the entry. */
void sparse_adjoin(sparse_frame *head, int32_t row, int32_t column, quoly_handle &value);

/* ---- whole matrices ---- */

/* All entries go; a value other than 0 fills all rows with copies. */
void sparse_set_scalar(array_record *array, const quolynode *value);
/* A matrix of its own in *dst, row by row a copy, or the negative. */
void copy_sparse(sparse_frame *src, sparse_frame **dst, int32_t rows, bool negate);
/* The transpose. flip_sparse: into rows without entries; the new entries share the values. trans_sparse: the same entries in
   new frames. */
void flip_sparse(sparse_frame *src, sparse_frame *dst, int32_t rows, int32_t cols);
void trans_sparse(sparse_frame **head, int32_t rows, int32_t cols);
/* The entries of src, whose rows become empty, take the place of those of dst. */
void put_back_sparse(sparse_frame *src, sparse_frame *dst, int32_t rows);
/* *head := the identity, or `value` on the diagonal. */
void spar_identi(sparse_frame **head, int32_t rows, const quolynode *value);
void reverse_rows(sparse_frame *head, int32_t rows);
bool sparse_allpolys(sparse_frame *head, int32_t rows); /* true: all entries are plain numbers */
int64_t sparse_count(sparse_frame *head, int32_t rows); /* entries */

/* ---- disposal of matrices that nobody else holds ---- */

void free_colm(colm **link);                               /* the entry with its value */
void free_sparse_row(colm **row);                          /* a row's entries and values */
void free_sparse(sparse_frame **head, int32_t rows);       /* all of it */
void free_sparse_frame(sparse_frame **head, int32_t rows); /* entries and frames, not the values */
void free_sparse_data(sparse_frame *head, int32_t rows);   /* entries and values: the frames stay, empty */

/* A matrix that a routine builds aside. */
class sparse_handle {
  public:
    sparse_handle() = default;
    sparse_handle(sparse_frame *matrix, int32_t its_rows) : head(matrix), rows(its_rows) {}
    explicit sparse_handle(int32_t its_rows) : rows(its_rows) { sparse_init(&head, rows); }
    ~sparse_handle() {
        if (head) free_sparse(&head, rows);
    }
    sparse_handle(const sparse_handle &) = delete;
    sparse_handle &operator=(const sparse_handle &) = delete;
    sparse_frame *get() const { return head; }
    sparse_frame **slot() { return &head; }
    sparse_frame *release() {
        sparse_frame *f = head;
        head = nullptr;
        return f;
    }
    sparse_frame *head = nullptr;
    int32_t rows = 0;
};

/* Rows whose entries share the values of others: these stay when it goes. */
class shared_rows {
  public:
    explicit shared_rows(int32_t its_rows) : count(its_rows) { sparse_init(&head, count); }
    ~shared_rows() { free_sparse_frame(&head, count); }
    shared_rows(const shared_rows &) = delete;
    shared_rows &operator=(const shared_rows &) = delete;
    sparse_frame *get() const { return head; }
    /* The values are the rows' own from now on. */
    sparse_frame *release() {
        sparse_frame *f = head;
        head = nullptr;
        return f;
    }

  private:
    sparse_frame *head = nullptr;
    int32_t count;
};

/* The transpose of a matrix. */
struct flipped_rows : shared_rows {
    flipped_rows(sparse_frame *src, int32_t rows, int32_t cols) : shared_rows(cols) {
        flip_sparse(src, get(), rows, cols);
    }
};

} // namespace tolvek
