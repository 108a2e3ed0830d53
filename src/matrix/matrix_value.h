/* A value of an array expression on its way through the parser and the operations: a scalar or a matrix.

   A dense matrix lies in a work array, column by column: cell r + c * rows. Of these there are 20 (error 88). A sparse
   one has rows of its own. `owned` tells whether the values, or the sparse matrix, belong to the expression: then they
   may be changed, and go with it. Otherwise they are borrowed from a named array; while any matrix is borrowed, values
   of arrays that are replaced wait (arrays.h). A null cell is an element without a value; only comprehensions make
   them, and operations set them to 0 with a warning. */
#pragma once

#include "matrix/sparse.h"

namespace tolvek {

/* ---- work arrays ---- */

constexpr int work_arrays = 20;
extern int first_available; /* 1 and the number of work arrays in use */
int new_worknode();         /* claims one: its index. Error 88 */
void free_work(int index);
quolynode **work_cells(int index);

class work_array {
  public:
    work_array() = default;
    ~work_array() { give_back(); }
    work_array(const work_array &) = delete;
    work_array &operator=(const work_array &) = delete;
    void claim() {
        if (index < 0) index = new_worknode();
    }
    void give_back() {
        if (index >= 0) free_work(index);
        index = -1;
    }
    bool claimed() const { return index >= 0; }
    quolynode **cells() const { return work_cells(index); }
    void swap(work_array &other) {
        int i = index;
        index = other.index;
        other.index = i;
    }

  private:
    int index = -1;
};

/* ---- the value ---- */

class matrix_value {
  public:
    matrix_value() = default;
    ~matrix_value() { clear(); }
    matrix_value(const matrix_value &) = delete;
    matrix_value &operator=(const matrix_value &) = delete;

    quoly_handle scalar; /* the value while this is no matrix */
    int64_t size = 0;    /* rows times columns; 0: a scalar */
    int32_t rows = 0;
    sparse_frame *sparse = nullptr;
    bool owned = false; /* false in a matrix: borrowed */
    bool holes = false; /* cells may be null */

    bool is_scalar() const { return size == 0; }
    bool is_dense() const { return size != 0 && !sparse; }
    bool is_sparse() const { return sparse != nullptr; }
    int32_t cols() const { return rows ? static_cast<int32_t>(size / rows) : 0; }
    bool is_square() const { return rows == cols(); }
    quolynode **cells() const { return work.cells(); }
    quolynode *&cell(int64_t i) const { return work.cells()[i]; }

    void clear();
    void swap(matrix_value &other);
    void take(matrix_value &other) { /* other becomes empty */
        clear();
        swap(other);
    }
    /* Becomes an owned dense matrix whose cells are null. Error 43 if it is too large. */
    void make_dense(int64_t its_rows, int64_t its_cols);
    /* Becomes an owned sparse matrix that takes the rows over. */
    void make_sparse(sparse_frame *head, int32_t its_rows, int64_t its_cols);
    sparse_frame *release_sparse(); /* the rows of an owned sparse matrix, which leave it */
    void borrow_sparse(array_record *a);
    /* Becomes a dense matrix of borrowed cells; the caller fills them. */
    void make_borrowed(int64_t its_rows, int64_t its_cols);

    void own();                            /* copies what is borrowed */
    void own_in_ring();                    /* the same, and entries are of the ring modulo n, if that is paused */
    void copy_from(const matrix_value &m); /* becomes a copy of its own of a matrix */
    void set_shape(int32_t its_rows) { rows = its_rows; }
    void fill_holes(); /* null cells become 0, with a warning */
    void to_dense();   /* a sparse matrix becomes dense: error 250 above most_cells */
    void to_sparse();  /* an owned dense matrix becomes sparse; its zeros and null cells go */
    void set_scalar(int32_t value) {
        clear();
        quoly_set(value, scalar.slot());
    }

  private:
    work_array work;
    void forget();
};

/* Sets the system array to the matrix, which is consumed. */
void fill_syst_array(matrix_value &m);
/* The matrix of an array, borrowed; of the system array a copy. Null cells become 0, with a warning under the name of the
   array, or the one that is given. */
void fetch_array(array_record *a, matrix_value &m, const token_record *shown_name = nullptr);

} // namespace tolvek
