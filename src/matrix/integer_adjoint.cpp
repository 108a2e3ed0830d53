#include "matrix/integer_adjoint.h"

#include "matrix/word_primes.h"
#include "numbers/modular.h"
#include "top/interrupts.h"

namespace tolvek {

integer_cells::integer_cells(const matrix_value &m) {
    cells.make_dense(m.rows, m.cols());
    const bool modular = modularmode;
    chain_form chains;
    for (int64_t i = 0; i < cells.size; i++)
        if (modular)
            quoly_set_int64(m.cell(i)->numb->lint_val, &cells.cell(i));
        else
            quoly_assign(m.cell(i), &cells.cell(i));
}

integer_cells::~integer_cells() {
    chain_form chains;
    cells.clear();
}

adjoint_images::adjoint_images(const integer_matrix &m, const number *det)
    : cells(static_cast<std::size_t>(m.n) * static_cast<std::size_t>(m.n)) {
    const int count = word_primes_for(hadamard_bounds(m).least() + 1);
    images.reserve(static_cast<std::size_t>(count) * cells);
    word_primes candidates;
    word_matrix image(m.n, m.n);
    while (static_cast<int>(primes.size()) < count) {
        const uni_field f(candidates.next());
        m.residues(f.p, &image);
        if (word_invert(f, &image, nullptr)) keep(f, chain_modulo(det, f.p), image);
    }
}

void adjoint_images::keep(const uni_field &f, uint32_t det, const word_matrix &image) {
    for (int j = 0; j < image.cols(); j++)
        for (int i = 0; i < image.rows(); i++) images.push(f.product(image[i][j], det));
    primes.push(f.p);
    safe_point();
}

} // namespace tolvek
