/* Determinants of sparse matrices over a field of words (poly/flat_uni.h). The field is an operand, not the ring in force.
   Long work passes safe points. */
#pragma once

#include "poly/flat_uni.h"
#include "top/heap.h"

namespace tolvek {

struct word_entry {
    int32_t column; /* from 0 on */
    uint32_t value; /* other than 0 */
};

/* A square matrix, whose rows are lists of entries, strictly ascending by column. They lie in one pool, where a row that
   grows gets a new place. */
class sparse_words {
  public:
    explicit sparse_words(int n) : size(n) {}
    int n() const { return size; }
    void begin_row() { rows.push({pool.size(), 0}); }
    void add(int32_t column, uint32_t value) {
        if (value == 0) return;
        pool.push({column, value});
        rows.back().count++;
    }

    struct row {
        std::size_t start;
        int32_t count; /* -1: it has been eliminated */
    };
    buffer<row> rows;
    buffer<word_entry> pool;

  private:
    int size;
};

/* The determinant of a matrix, which is destroyed. */
uint32_t sparse_word_determinant(const uni_field &f, sparse_words *m);

} // namespace tolvek
