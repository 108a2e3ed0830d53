#include "matrix/arrays.h"
#include "support/fresh_system.h"
#include "support/reports.h"

using namespace tolvek;

namespace {

struct elements : fresh_exact_system {
    void TearDown() override {
        forget_arrays();
        fresh_exact_system::TearDown();
    }
};

TEST_F(elements, an_array_that_goes_while_its_element_is_an_operand_keeps_the_value) {
    run("Array x[2]; x[2] := 6\nFunc F(y) =\n@[x]; Array x[1]; x[1] := 3; 7\n.");
    EXPECT_EQ(value_of("x[2]*F(0)"), "42");
    EXPECT_EQ(value_of("x[1]"), "3");
}

TEST_F(elements, a_sparse_entry_that_goes_while_it_is_an_operand_keeps_its_value) {
    run("Array s[3,3] Sparse; s[1,1] := 4\nFunc G(y) =\ns[1,1] := 0; 5\n.");
    expect_values(*this, {
                             {"s[1,1]*G(0)", "20"},
                             {"s[1,1]", "0"},
                             {"s[1,1] := s[1,1] + G(0)", "5"},
                         });
}

TEST_F(elements, the_target_may_turn_sparse_while_its_value_is_computed) {
    run("Array x[2]; x[1] := 1; x[2] := 9\nFunc H(y) =\nSparse[x]; 2\n.\nx[1] := H(0)");
    EXPECT_EQ(value_of("x[2]"), "9");
}

TEST_F(elements, wrong_coordinates_have_errors_of_their_own) {
    run("Array x[2,2]");
    expect_errors(*this, {
                             {"x[1;", 61},
                             {"x[1,3]", 27},
                             {"x[1/2]", 118},
                             {"Array y[-1]", 314},
                             {"Array Y[1]", 40},
                             {"Array y", 178},
                             {"Sparse[<]", 176},
                             {"<[1]", 175},
                             {"Cols x", 96},
                             {"Cols[x;", 97},
                         });
}

} // namespace
