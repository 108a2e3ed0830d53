#include "matrix/determinant.h"

#include "matrix/arrays.h"
#include "matrix_checks.h"
#include "quoly/compare.h"
#include "support/fresh_system.h"
#include "support/rand_numbers.h"
#include "top/interrupts.h"
#include "top/settings.h"

#include <gtest/gtest.h>

namespace tolvek {

namespace {

/* Arrays are typed at the prompt; what is computed lies in variables and arrays that the prompt reads. */
struct determinants {
    fresh_system &at;

    array_record *array(const std::string &name) const {
        token_record tok{};
        name.copy(tok.text, token_bytes - 1);
        tok.hash_slot = hash_unknown;
        array_record *a = find_array(tok);
        EXPECT_TRUE(a) << name;
        return a;
    }
    /* The prompt's <[1] is the determinant then. */
    std::string of(const std::string &name, const std::string &expected) {
        matrix_value m, out;
        fetch_array(array(name), m);
        out.make_dense(1, 1);
        quoly_set(1, &out.cell(0));
        const std::string failure = at.text_of([&] { mat_determinant(m, {}, &out.cell(0)); });
        if (!failure.empty()) return failure;
        fill_syst_array(out);
        return at.value_of("<[1] - (" + expected + ")");
    }
    std::string invert(const std::string &name) {
        matrix_value m;
        fetch_array(array(name), m);
        const std::string text = at.text_of([&] { mat_inverse(m); });
        if (text.empty()) fill_syst_array(m);
        return text;
    }
};

struct determinant_test : fresh_exact_system {
    determinants det{*this};
    test_random rnd;

    void TearDown() override {
        forget_arrays();
        fresh_exact_system::TearDown();
    }
    std::string determinant_less(const std::string &rows, const std::string &expected) {
        run("[m] := " + rows);
        return det.of("m", expected);
    }
};

struct float_determinant_test : fresh_system {
    determinants det{*this};
    void TearDown() override {
        forget_arrays();
        fresh_system::TearDown();
    }
};

/* The known determinants by every method: the switches force them. */
struct method {
    const char *name;
    int detcutoff, gauss_cutoff;
};
constexpr method methods[] = {{"by_size", -1, 0},
                              {"elimination", 0, 0},
                              {"minors_of_three", 3, 0},
                              {"all_minors", 40, 0},
                              {"without_fractions", -1, 1}};

struct each_method : determinant_test, ::testing::WithParamInterface<method> {
    void SetUp() override {
        determinant_test::SetUp();
        detcutoff = GetParam().detcutoff;
        gauss_cutoff = GetParam().gauss_cutoff;
    }
};
INSTANTIATE_TEST_SUITE_P(determinant, each_method, ::testing::ValuesIn(methods),
                         [](const auto &tested) { return std::string(tested.param.name); });

TEST_P(each_method, numbers) {
    EXPECT_EQ(determinant_less("[[7]]", "7"), "0");
    EXPECT_EQ(determinant_less("[[1,2][3,4]]", "-2"), "0");
    EXPECT_EQ(determinant_less("[[0,0,1][1,0,0][0,1,0]]", "1"), "0");
    EXPECT_EQ(determinant_less("[[0,1,0,0][1,0,0,0][0,0,1,0][0,0,0,1]]", "-1"), "0");
    EXPECT_EQ(determinant_less("[[1,2,3][4,5,6][7,8,9]]", "0"), "0");
    EXPECT_EQ(determinant_less("[[2,1,1,1][1,2,1,1][1,1,2,1][1,1,1,2]]", "5"), "0");
}

/* By Hilbert's formula: 1 / 2160 for three rows and 1 / 6048000 for four. */
TEST_P(each_method, fractions) {
    EXPECT_EQ(determinant_less("[[1,1/2,1/3][1/2,1/3,1/4][1/3,1/4,1/5]]", "1/2160"), "0");
    EXPECT_EQ(determinant_less("[[1,1/2,1/3,1/4][1/2,1/3,1/4,1/5][1/3,1/4,1/5,1/6][1/4,1/5,1/6,1/7]]", "1/6048000"),
              "0");
}

/* The product of the differences. */
TEST_P(each_method, vandermonde) {
    run("&(J = x)\n&(J = y)\n&(J = z)");
    EXPECT_EQ(determinant_less("[[1,x,x^2,x^3][1,y,y^2,y^3][1,z,z^2,z^3][1,2,4,8]]",
                               "(y - x)*(z - x)*(2 - x)*(z - y)*(2 - y)*(2 - z)"),
              "0");
}

/* The resultant of (x - 1)(x - y) and (x - 2)(x - z). */
TEST_P(each_method, sylvester) {
    run("&(J = y)\n&(J = z)");
    EXPECT_EQ(determinant_less("[[1,-y-1,y,0][0,1,-y-1,y][1,-z-2,2z,0][0,1,-z-2,2z]]", "(1-2)*(1-z)*(y-2)*(y-z)"), "0");
}

TEST_P(each_method, circulant_of_seven) {
    run("&(J = x)");
    std::string rows = "[";
    for (int i = 0; i < 7; i++) {
        rows += "[";
        for (int j = 0; j < 7; j++) rows += std::string(j ? "," : "") + (j == i ? "x" : j == (i + 1) % 7 ? "1" : "0");
        rows += "]";
    }
    EXPECT_EQ(determinant_less(rows + "]", "x^7 + 1"), "0");
}

TEST_P(each_method, quotients) {
    run("&(J = x)");
    EXPECT_EQ(determinant_less("[[1/x,1,0][1,x,1/(x+1)][0,x+1,x]]", "-1/x"), "0");
}

/* Row operations on a triangle with a chosen diagonal. */
TEST_P(each_method, planted_determinants_of_polynomials) {
    run("&(J = x)\n&(J = y)");
    for (int n = 1; n <= 5; n++) {
        std::string rows = "[", expected = "1";
        for (int i = 0; i < n; i++) {
            rows += "[";
            for (int j = 0; j < n; j++) {
                std::string entry =
                    j < i ? "0" : std::to_string(rnd.below(7) - 3) + "*y + " + std::to_string(rnd.below(3));
                if (i == j) entry = "(x + " + std::to_string(i) + ")";
                rows += (j ? "," : "") + entry;
            }
            rows += "]";
            expected += "*(x + " + std::to_string(i) + ")";
        }
        const std::string name(1, static_cast<char>('a' + n));
        run("[" + name + "] := " + rows + "]");
        for (int k = 0; k < 2 * n && n > 1; k++) {
            const int to = rnd.below(n), from = (to + 1 + rnd.below(n - 1)) % n, factor = rnd.below(5) - 2;
            for (int j = 1; j <= n; j++) {
                const auto entry = [&](int row) {
                    return name + "[" + std::to_string(row + 1) + "," + std::to_string(j) + "]";
                };
                run(entry(to) + " := " + entry(to) + " + " + std::to_string(factor) + "*y*" + entry(from));
            }
        }
        EXPECT_EQ(det.of(name, expected), "0") << n;
    }
}

TEST_P(each_method, the_array_keeps_its_values) {
    run("&(J = x)\n[k] := [[x,1,2,3][4,5,x,7][8,x+9,10,11][12,13,14,15x]]\n[c] := [k]");
    det.of("k", "0");
    for (int i = 1; i <= 4; i++)
        for (int j = 1; j <= 4; j++) {
            const std::string at = "[" + std::to_string(i) + "," + std::to_string(j) + "]";
            EXPECT_EQ(value_of("k" + at + " - c" + at), "0");
        }
    EXPECT_EQ(value_of("k[1,1]"), "x");
}

TEST_F(determinant_test, the_result_is_multiplied_into_what_the_caller_set) {
    run("[m] := [[1,2][3,4]]");
    matrix_value m, out;
    fetch_array(det.array("m"), m);
    out.make_dense(1, 1);
    quoly_set(10, &out.cell(0));
    mat_determinant(m, {}, &out.cell(0));
    fill_syst_array(out);
    EXPECT_EQ(value_of("<[1]"), "-20");
}

TEST_F(determinant_test, a_factor_is_taken_out_and_must_divide) {
    run("&(J = x)\n[m] := [[x,1][1,x]]");
    poly_handle one;
    const auto with_factor = [&](int constant) {
        matrix_value m, out;
        fetch_array(det.array("m"), m);
        run("f := x + " + std::to_string(constant));
        quoly_handle factor;
        base_quoly(1, factor.slot());
        quoly_handle c;
        quoly_set(constant, c.slot());
        best_quoly_add(factor.slot(), c.release());
        determinant_hints hints;
        hints.factor = factor->num;
        out.make_dense(1, 1);
        quoly_set(1, &out.cell(0));
        const std::string text = text_of([&] { mat_determinant(m, hints, &out.cell(0)); });
        if (text.empty()) fill_syst_array(out);
        return text;
    };
    EXPECT_EQ(with_factor(1), "");
    EXPECT_EQ(value_of("<[1]"), "x - 1");
    EXPECT_NE(with_factor(2).find(message_text(305)), std::string::npos);
}

/* ---- inverses ---- */

struct inverse_test : determinant_test {
    void check(const char *rows) {
        run("[m] := " + std::string(rows));
        ASSERT_EQ(det.invert("m"), "") << rows;
        matrix_value m, inverse;
        fetch_array(det.array("m"), m);
        fetch_array(&syst, inverse);
        ASSERT_EQ(inverse.size, m.size);
        EXPECT_TRUE(is_product(m, inverse, quol_num_1)) << rows;
        m.clear();
        run("@[m]");
    }
};

TEST_F(inverse_test, a_matrix_times_its_inverse_is_1) {
    run("&(J = x)\n&(J = y)");
    for (const char *rows :
         {"[[5]]", "[[1,2][3,4]]", "[[0,2][3,0]]", "[[0,0,2][1,0,0][0,3,0]]", "[[2,1,1,1][1,2,1,1][1,1,2,1][1,1,1,2]]",
          "[[1/2,1][1,1/3]]", "[[x,1][y,x]]", "[[x,1,0][1,x,1][0,1,x]]", "[[0,x,1][1/x,0,y][1,1,0]]"})
        check(rows);
}

TEST_F(inverse_test, singular_matrices_have_none) {
    run("&(J = x)");
    for (const char *rows :
         {"[[0]]", "[[1,2][2,4]]", "[[1,2,3,4][5,6,7,8][9,10,11,12][13,14,15,16]]", "[[x,x^2][1,x]]"}) {
        run("[m] := " + std::string(rows));
        EXPECT_NE(det.invert("m").find(message_text(44)), std::string::npos) << rows;
        run("@[m]");
    }
}

/* ---- sparse matrices: what the dense one gives ---- */

struct sparse_determinant_test : determinant_test {
    void check(const char *rows, bool regular) {
        run("[d] := " + std::string(rows) + "\n[s] := [d]\nSparse[s]");
        matrix_value dense;
        fetch_array(det.array("d"), dense);
        matrix_value copy;
        copy.copy_from(dense);
        quoly_handle expected, found;
        quoly_set(1, expected.slot());
        quoly_set(1, found.slot());
        mat_determinant(copy, {}, expected.slot());
        matrix_value sparse;
        fetch_array(det.array("s"), sparse);
        ASSERT_TRUE(sparse.is_sparse());
        mat_determinant(sparse, {}, found.slot());
        EXPECT_TRUE(quoly_equal(found.get(), expected.get())) << rows;
        EXPECT_EQ(!quoly_is_zero(found.get()), regular) << rows;
        fetch_array(det.array("s"), sparse);
        const std::string text = text_of([&] { mat_inverse(sparse); });
        EXPECT_EQ(text.find(message_text(44)) == std::string::npos, regular) << rows;
        if (regular) {
            EXPECT_TRUE(sparse.is_sparse());
            sparse.to_dense();
            EXPECT_TRUE(is_product(dense, sparse, quol_num_1)) << rows;
        }
        dense.clear();
        sparse.clear();
        run("@[d]; @[s]");
    }
    void check_all() {
        for (const char *rows :
             {"[[7]]", "[[x]]", "[[0,2][3,0]]", "[[0,0,x][y,0,0][0,3,0]]", "[[x,1,0][0,x,2][1,0,x]]",
              "[[x,1,0,0][0,x,2,0][0,0,x,3][1,0,0,x]]", "[[1/x,0,1][0,y,0][2,0,x]]", "[[x,1,1][1,x,1][1,1,x]]",
              "[[0,1,0,0,0][0,0,x,0,0][0,0,0,1,0][0,0,0,0,y][1,0,0,0,0]]"})
            check(rows, true);
        for (const char *rows : {"[[0]]", "[[x,x][x,x]]", "[[x,1,0][0,0,0][1,x,1]]", "[[0,x][0,1]]"})
            check(rows, false);
    }
};

TEST_F(sparse_determinant_test, polynomials_over_the_rationals) {
    run("&(J = x)\n&(J = y)");
    check_all();
}

TEST_F(sparse_determinant_test, polynomials_modulo_a_prime_that_divides_by_the_size) {
    run("&(J = x)\n&(J = y)\n&(p = 65521)");
    check_all();
}

/* 2, 3 and 5 are no units there or not: the method of traces cannot divide by the size. */
TEST_F(sparse_determinant_test, polynomials_modulo_a_small_prime) {
    run("&(J = x)\n&(J = y)\n&(p = 5)");
    check("[[x,1,0,0,0][0,x,1,0,0][0,0,x,1,0][0,0,0,x,1][1,0,0,0,x]]", true);
    check("[[x,1,0][0,x,2][1,0,x]]", true);
}

TEST_F(sparse_determinant_test, fields_of_characteristic_2) {
    run("&(J = x)\n&(p = 256)");
    check("[[x,3,0][0,x,5][7,0,x]]", true);
}

/* ---- what long work tells, and interrupts ---- */

TEST_F(determinant_test, verbose_tells_the_method_and_the_steps) {
    run("&(J = x)\n[m] := [[x,1,2][3,x,4][5,6,x]]\n&(V = 1)");
    const auto told = [&](const char *text) {
        matrix_value m;
        quoly_handle d;
        fetch_array(det.array("m"), m);
        quoly_set(1, d.slot());
        EXPECT_NE(text_of([&] { mat_determinant(m, {}, d.slot()); }).find(text), std::string::npos) << text;
    };
    told("Standard G.E. method, rank 3");
    told(" Finish by minors, rank 2");
    gauss_cutoff = 1;
    told("Gauss-Bareiss method, size 3");
    matrix_value m;
    fetch_array(det.array("m"), m);
    const std::string text = text_of([&] { mat_inverse(m); });
    EXPECT_NE(text.find(" Now inverting upper triangular matrix, rank 3"), std::string::npos);
    EXPECT_NE(text.find("Restoring row and column ops."), std::string::npos);
}

TEST_F(determinant_test, verbose_tells_of_integers_and_of_sparse_inverses) {
    run("&(J = x)\n[m] := [[2,1,1,1][1,2,1,1][1,1,2,1][1,1,1,2]]\n[s] := [[x,1][0,x]]\nSparse[s]\n&(V = 1)");
    matrix_value m;
    fetch_array(det.array("m"), m);
    const std::string text = text_of([&] { mat_inverse(m); });
    for (const char *line : {"All integers; adjoint-CRT Method; first compute det:", "Modular algorithm, counting to ",
                             "Finishing up Chinese Remainder Theorem."})
        EXPECT_NE(text.find(line), std::string::npos) << line;
    matrix_value s;
    fetch_array(det.array("s"), s);
    EXPECT_NE(text_of([&] { mat_inverse(s); }).find("Invert sparse. Leverrier-Fadeev. Counting to 2"),
              std::string::npos);
}

long points_to_pass;
void interrupt_once() {
    if (--points_to_pass == 0) note_interrupt();
}

TEST_F(determinant_test, interrupted_anywhere_and_resumed_it_has_the_same_value) {
    run("&(J = x)\n[m] := [[x,1,2,0][3,x,4,1][5,6,x,2][1,1,1,x]]");
    const std::string expected = value_of("Det[m]");
    for (long k = 1; k < 60; k += 1 + k / 8) {
        points_to_pass = k;
        watch_safe_points(interrupt_once);
        const std::string text = run("Det[m]\n&_p");
        watch_safe_points(nullptr);
        points_to_pass = 0;
        EXPECT_NE(text.find(expected), std::string::npos) << k << text;
    }
}

/* ---- adjoints: A adj(A) = det(A) 1, for singular matrices too ---- */

struct adjoint_test : determinant_test {
    void check(const char *rows) {
        run("[m] := " + std::string(rows));
        matrix_value m, adj, copy;
        fetch_array(det.array("m"), m);
        fetch_array(det.array("m"), adj);
        fetch_array(det.array("m"), copy);
        quoly_handle d;
        quoly_set(1, d.slot());
        mat_determinant(copy, {}, d.slot());
        adjoint(adj);
        EXPECT_TRUE(is_product(m, adj, d.get())) << rows;
        m.clear();
        run("@[m]");
    }
};

TEST_F(adjoint_test, the_product_with_the_adjoint_is_the_determinant) {
    run("&(J = x)\n&(J = y)");
    for (const char *rows :
         {"[[5]]", "[[0]]", "[[1,2][3,4]]", "[[1,2][2,4]]", "[[1,2,3][4,5,6][7,8,9]]", "[[x,1][y,x]]", "[[x,x*y][1,y]]",
          "[[x,1,0][1,x,1][0,1,x]]", "[[1/x,1][2,x]]", "[[1/x,1][1,x]]", "[[2,1,1,1][1,2,1,1][1,1,2,1][1,1,1,2]]",
          "[[1,2,3,4][5,6,7,8][9,10,11,12][13,14,15,16]]"})
        check(rows);
}

TEST_F(adjoint_test, residues_modulo_primes_and_composite_numbers) {
    run("&(p = 12)");
    for (const char *rows : {"[[2,3][3,2]]", "[[2,0][0,6]]", "[[1,2,3][4,5,6][7,8,9]]", "[[2,4,0][0,2,3][3,0,2]]"})
        check(rows);
}

TEST_F(adjoint_test, a_singular_image_modulo_a_prime_in_use_is_no_singular_matrix) {
    check("[[2147483629,0,0,0][0,2147483587,0,0][1,0,2147483579,0][0,0,2,1]]"); /* the largest primes below 2^31 */
}

TEST_F(float_determinant_test, adjoints_of_numbers_are_for_the_exact_program) {
    run("[m] := [[1,2][3,4]]");
    matrix_value m;
    fetch_array(det.array("m"), m);
    EXPECT_NE(text_of([&] { adjoint(m); }).find(message_text(62)), std::string::npos);
}

/* ---- residues ---- */

TEST_F(determinant_test, residues_modulo_a_prime) {
    run("[m] := [[2,1,1,1][1,2,1,1][1,1,2,1][1,1,1,2]]\n&(p = 3)");
    EXPECT_EQ(det.of("m", "2"), "0"); /* 5 */
}

TEST_F(determinant_test, a_prime_that_divides_the_determinant_makes_the_matrix_singular) {
    run("[m] := [[2,1,1,1][1,2,1,1][1,1,2,1][1,1,1,2]]\n&(p = 5)");
    EXPECT_EQ(det.of("m", "0"), "0");
    EXPECT_NE(det.invert("m").find(message_text(44)), std::string::npos);
}

/* Its square is 13 - 12 twice: the matrix is its own inverse modulo 6. */
TEST_F(determinant_test, residues_modulo_a_composite_number) {
    run("[m] := [[2,3][3,2]]\n&(p = 6)");
    EXPECT_EQ(det.of("m", "1"), "0"); /* 4 - 9 = -5 */
    EXPECT_EQ(det.invert("m"), "");
    EXPECT_EQ(value_of("<[1,1]"), "2");
    EXPECT_EQ(value_of("<[1,2]"), "3");
    run("[z] := [[2,0][0,1]]");
    EXPECT_NE(det.invert("z").find(message_text(85)), std::string::npos);
}

TEST_F(float_determinant_test, floats) {
    run("[m] := [[1,2,3][4,5,6][7,8,10]]");
    EXPECT_EQ(value_of("$(0.5 + 1000*(" + det.of("m", "-3") + "))"), "0");
    EXPECT_EQ(det.invert("m"), ""); /* by hand: 1/3 times [[-2,-4,3][-2,11,-6][3,-6,3]] */
    EXPECT_EQ(value_of("$(3000*(<[1,2]) + 0.5)"), "-4000");
    EXPECT_EQ(value_of("$(3000*(<[2,2]) + 0.5)"), "11000");
    EXPECT_EQ(value_of("$(3000*(<[3,1]) + 0.5)"), "3000");
}

} // namespace

} // namespace tolvek
