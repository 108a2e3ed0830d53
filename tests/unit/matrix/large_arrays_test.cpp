/* Arrays at the limits of size. They stand by themselves, as books of millions of records are slow to count. */
#include "array_operands.h"

using namespace tolvek;

namespace {

struct large_arrays : array_fixture {};

TEST_F(large_arrays, a_sparse_matrix_of_more_than_a_million_cells_cannot_take_a_scalar_sum) {
    sparse_create(named("w"), 1000001, 1, true, true);
    refused("3 - [w]", 250);
    sparse_create(named("v"), 1000, 1000, false, true);
    model ones = model::of(1000, 1000, false);
    for (fraction &f : ones.at) f = 3;
    check("3 - [v]", ones);
}

TEST_F(large_arrays, a_product_and_a_join_have_a_million_entries_at_most) {
    store_model("c", model::of(1001, 1, false));
    store_model("r", model::of(1, 1000, false));
    refused("[c]*[r]", 43);
    refused("Altmult([c],[r])", 43);
    store_model("m", model::of(500000, 1, false));
    check("[m]_[m]", model::of(1000000, 1, false));
    refused("([m]_[m])_3", 111);
    refused("7_([m]_[m])", 111);
    refused("([m]_[m])_[c]", 111);
}

} // namespace
