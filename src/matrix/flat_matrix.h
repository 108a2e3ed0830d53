/* Products of dense matrices on flat arrays: floats, residues, integers of any size.

   A left operand is poured row by row, a right one column by column, so that each entry of a product is the sum of products
   along two stretches of memory. Long work passes safe points. */
#pragma once

#include "matrix/matrix_value.h"
#include "numbers/modular.h"

namespace tolvek {

/* Rows or columns of words below 2^31, padded with zeros: `count` lines of `stride` words. */
struct word_lines {
    std::size_t count = 0, length = 0, stride = 0;
    buffer<uint32_t> words;

    word_lines(std::size_t lines, std::size_t its_length);
    uint32_t *line(std::size_t i) { return words.data() + i * stride; }
    const uint32_t *line(std::size_t i) const { return words.data() + i * stride; }
};

/* c[j * a.count + i] := line i of a times line j of b, modulo p, the words being below p. */
void residue_lines_product(const word_lines &a, const word_lines &b, const word_divisor &p, uint32_t *c);

/* The same by machine instructions that every processor of the family has. For tests. */
extern bool wide_vectors;

/* ---- products of matrices whose entries are all plain numbers: r := a b ---- */

void flote_product(const matrix_value &a, const matrix_value &b, matrix_value &r);   /* the ring of floats */
void residue_product(const matrix_value &a, const matrix_value &b, matrix_value &r); /* modulo n, no table field */
/* Integers, by their images modulo as many primes as a bound on the entries asks for. False, and r is as it was: products
   of the entries themselves are cheaper. */
bool integer_product(const matrix_value &a, const matrix_value &b, matrix_value &r);

} // namespace tolvek
