/* Adjoints of matrices of integers, modulo words and by Chinese remainders. */
#pragma once

#include "matrix/integer_determinant.h"
#include "matrix/matrix_value.h"
#include "numbers/flat_chinese.h"

namespace tolvek {

/* The plain numbers of a dense matrix as integers in the chain form, apart from the matrix: residues too. */
class integer_cells {
  public:
    explicit integer_cells(const matrix_value &m);
    ~integer_cells();
    integer_cells(const integer_cells &) = delete;
    integer_cells &operator=(const integer_cells &) = delete;
    integer_matrix view() const { return {cells.cells(), cells.rows}; }

  private:
    matrix_value cells;
};

/* The adjoint of a matrix whose determinant `det` is not 0: det A^-1 modulo as many primes as the bound asks for. Primes
   that divide the determinant are left out. */
class adjoint_images {
  public:
    adjoint_images(const integer_matrix &m, const number *det);
    chinese_values values() const { return {primes.data(), primes.size()}; }
    /* x := the entry of row i and column j at the index i + j n. */
    void entry(chinese_values &of, int64_t index, number *x) const {
        of.value(&images[static_cast<std::size_t>(index)], cells, x);
    }

  private:
    std::size_t cells; /* of the matrix */
    buffer<uint32_t> primes, images;
    void keep(const uni_field &f, uint32_t det, const word_matrix &image);
};

} // namespace tolvek
