/* Named arrays: their records, the table of their names, and the table that holds their elements.

   An array is ordinary or sparse. The elements of ordinary arrays lie column by column in one table, arp, array behind
   array in the order of their birth: element (r, c), counted from 0, is cell first + c * rows + r. A null cell is an
   element without a value. A sparse array keeps rows of its own (sparse.h). Coordinates that a user types count from
   `addresser`, 0 or 1; those of records and routines count from 0 unless a line says otherwise.

   A routine that meets an error of the user's calls array_error, which does not return: a command level that
   errorpush has opened behind the error leaves for the prompt when it is resumed.

   Arrays and elements may go while a computation outside still holds their slots: an interrupt's level or a function
   may delete or replace them. So what is removed stays whole until the outermost statement has ended
   (release_pending_arrays): values and entries of rows when something may hold them, whole arrays always. */
#pragma once

#include "language/names.h"
#include "quoly/quoly.h"
#include "top/guards.h"
#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

struct sparse_frame;

/* One array. Free list: arr_garb. Chained in arr_store by hash, the newest of a name first. */
struct array_record {
    token_record tok;
    int32_t first, last; /* cells of element (1,1) and of the last one; 0 and -1 in a sparse array */
    int64_t size;        /* rows times columns; it may exceed 2^32 in a sparse array */
    int32_t rows;
    sparse_frame *sparse_head; /* null: an ordinary array */
    bool one_dim;              /* declared with one coordinate */
    array_record *next;
    array_record *aliased;     /* an array parameter: the array it stands for; null otherwise */
    int32_t birth;             /* serial; of an array parameter, minus that of its target */
    sparse_frame *linked_head; /* an array parameter: the rows of its target when the call began */

    int32_t cols() const { return rows ? static_cast<int32_t>(size / rows) : 0; }
    bool is_parameter() const { return birth < 0; }
};

extern array_record *arr_store[scalar_chains];
extern int32_t array_time; /* the serial of the newest array */
extern int new_array;      /* the statement has created an array */

constexpr int64_t most_cells = 1000000; /* of one array, one work array and the system array */
inline bool oversize(int64_t a, int64_t b) { return a * b > most_cells; }

[[noreturn]] void array_error(int n, const token_record &symbol);

/* ---- the element table ---- */

constexpr int cell_blocks = 5000;
constexpr int cells_of_block = 1024;
constexpr int32_t table_cells = cell_blocks * cells_of_block; /* 5,120,000 */
extern quolynode **arp[cell_blocks];
extern int32_t endarr;    /* the highest used cell; -1: none */
extern int32_t numblocks; /* the highest block that is there; -1: none */
inline quolynode *&table_cell(int32_t i) { return arp[i >> 10][i & 1023]; }

/* ---- the system array [<] ---- */

/* The last array value. It is in no table of names; its ordinary elements lie in syst_cells. Empty: last is -1 and there
   is no sparse_head. */
extern array_record syst;
extern quolynode **syst_cells; /* most_cells pointers; null until first needed */
void make_syst_cells();
inline bool syst_is_empty() { return syst.last < 0 && !syst.sparse_head; }
void clear_syst();

/* Cell i of an ordinary array, counted from 0. */
inline quolynode *&element(const array_record *a, int64_t i) {
    return a == &syst ? syst_cells[i] : table_cell(a->first + static_cast<int32_t>(i));
}

/* ---- creation ---- */

/* A new ordinary array without values, at the head of its chain. Errors 26, 27, 43. */
array_record *insertarr(const token_record &name, int64_t rows, int64_t cols, bool one_dim);
/* A new sparse array, with or without frames. Error 27. */
array_record *sparse_create(const token_record &name, int64_t rows, int64_t cols, bool one_dim, bool with_frames);
/* The same without checks, adopting the frames. */
array_record *quick_sparse_create(sparse_frame *head, const token_record &name, int32_t rows, int64_t cols,
                                  bool one_dim);

/* A record for an array parameter called `name` that shares the elements of a; not yet linked. */
array_record *new_parameter_array(const token_record &name, array_record *a);
void drop_parameter_array(array_record *a); /* one that is not linked goes */
void link_array(array_record *a);
bool unlink_array(array_record *a); /* false: it is on no chain */
bool is_linked(const array_record *a);
/* The call ends: the record leaves its chain, and goes when nothing can hold it. Rows that have taken the place of those
   it was linked with go to its target. */
void end_parameter_array(array_record *a);
bool rename_array(token_record &from, const token_record &to); /* false: there is none. Error 138 */

/* Grows when a record comes to a chain or leaves one: what tokens are bound to is looked up anew then. */
extern uint64_t array_generation;

/* ---- lookup ---- */

array_record *find_array(token_record &name); /* the newest of the name; null: none */
array_record *array_seek(token_record &name); /* error 28 */
bool is_array_param(const quolynode *q);      /* the mark of a scalar that stands for an array parameter */

/* ---- deletion ---- */

/* Deletes the newest array of the name. quiet: an absent one is no error (28). Errors 138, 139. */
void removearray(token_record &name, bool quiet);
void remove_all_arrays();
/* Deletes all arrays of the name but the newest; all of them with `newest_too`. Error 28. */
void remove_arrays_of_name(token_record &name, bool newest_too);

/* Turns an ordinary array sparse: values move, zeros go, the cells become free. Error 342 if a parameter shares it. */
void fill_sparse(array_record *a);

/* ---- what waits ---- */

extern int borrowed_matrices; /* matrices in flight that point to values of arrays */
extern int cells_held;        /* frames that hold a slot of the element table, or the record of an array */
/* While it lives, the element table stays as it is and no record of an array is used again. Whoever evaluates something
   else between finding an array, or one of its cells, and using it keeps one. */
class held_cells {
  public:
    explicit held_cells(bool yes = true) : held(cells_held, cells_held + yes) {}

  private:
    kept_value<int> held;
};
/* May anything outside hold the value of an array, or an entry of a row? */
inline bool values_are_held() { return levelcount > 1 || borrowed_matrices > 0; }
bool entries_are_held();
void drop_value(quolynode *q); /* frees it, or lets it wait; null is fine */
void store_element(quolynode **cell, quolynode *value);
void drop_rows(sparse_frame *head, int32_t rows); /* a whole sparse matrix */
/* The rows of a sparse array are borrowed by a matrix in flight, and are not any more. */
void lend_rows(sparse_frame *head);
void take_rows_back(const sparse_frame *head);
/* Called before a sparse array changes: rows that are borrowed stay as they are, and the array, with the parameters that
   share them, gets a copy. */
void own_rows(array_record *a);
void prepare_drop();      /* before an entry is unlinked: drop_entry cannot fail then */
void drop_entry(colm *c); /* unlinked; its value is dropped too */
/* Frees what waits, and closes the gaps of the element table. Called when the outermost statement has ended. */
void release_pending_arrays();
/* Deletes everything, for tests. */
void forget_arrays();

/* Calls `visit` for the slot of every value that an array holds, the system array among them; what waits to be freed is
   left out. The visitor may give a slot another value; those that became 0 leave sparse arrays by the second routine. */
void visit_array_values(void (*visit)(quolynode **slot, void *context), void *context);
void visit_cells(void (*visit)(quolynode **slot, void *context), void *context); /* of ordinary arrays alone */
/* Calls `action` for every sparse array, the system array among them; for none by a second name. */
void for_sparse_arrays(void (*action)(array_record *a, void *context), void *context);
void purge_array_values();

/* ---- report ---- */

/* "Array x[3,4];" and " Sparse;": as it was declared, with a newline. */
void arrdescribe(text_out *out, const array_record *a);

/* Warns that an element has no value, 20 times in a statement. `form` has a place for the name, or none. */
void warn_uninitialized(const char *name);
void warn_uninitialized_in(const token_record &array_name); /* "[x]"; "%" for a slot */

} // namespace tolvek
