#include "array_operands.h"

#include "matrix/array_arithmetic.h"

using namespace tolvek;

namespace {

/* ---- the operators on models ---- */

/* Whole quotients are cut, remainders are not negative, as those of scalars. */
int64_t remainder(int64_t a, int64_t b) { return (a % b + (a % b < 0 ? (b < 0 ? -b : b) : 0)); }

fraction combine(char op, fraction a, fraction b) {
    switch (op) {
    case '+': return a + b;
    case '-': return a - b;
    case '*': return a * b;
    case '/': return a / b;
    case '\\': return a.n / b.n;
    default: return remainder(a.n, b.n);
    }
}

model each_entry(char op, const model &a, const model &b, bool sparse) {
    const model &shape = a.matrix ? a : b;
    model r = model::of(shape.rows, shape.cols, sparse);
    for (std::size_t i = 0; i < r.at.size(); i++) r.at[i] = combine(op, a.entry(i), b.entry(i));
    return r;
}

model product(const model &a, const model &b) {
    model r = model::of(a.rows, b.cols, a.sparse && b.sparse);
    for (int64_t i = 0; i < a.rows; i++)
        for (int64_t j = 0; j < b.cols; j++)
            for (int64_t k = 0; k < b.rows; k++) r.cell(i, j) = r.cell(i, j) + a.cell(i, k) * b.cell(k, j);
    return r;
}

/* A scalar behind or in front of a matrix, which is read as a column unless it is one row. */
model appended(const model &a, const model &b) {
    const model &m = b.at.size() == 1 ? a : b;
    model r = model::of(m.rows > 1 ? m.rows * m.cols + 1 : 1, m.rows > 1 ? 1 : m.cols + 1, false);
    std::vector<fraction> all = a.at;
    all.insert(all.end(), b.at.begin(), b.at.end());
    r.at = all;
    return r;
}

model joined(const model &a, const model &b) {
    if (!a.matrix && !b.matrix) return model::failure(113);
    if (a.sparse || b.sparse) return model::failure(242);
    if (a.at.size() == 1 || b.at.size() == 1) return appended(a, b);
    if (a.cols == b.cols) {
        model r = model::of(a.rows + b.rows, a.cols, false);
        for (int64_t c = 0; c < a.cols; c++)
            for (int64_t i = 0; i < r.rows; i++) r.cell(i, c) = i < a.rows ? a.cell(i, c) : b.cell(i - a.rows, c);
        return r;
    }
    if (a.rows != b.rows) return model::failure(112);
    model r = model::of(a.rows, a.cols + b.cols, false);
    for (int64_t c = 0; c < r.cols; c++)
        for (int64_t i = 0; i < a.rows; i++) r.cell(i, c) = c < a.cols ? a.cell(i, c) : b.cell(i, c - a.cols);
    return r;
}

bool same_shape(const model &a, const model &b) { return a.rows == b.rows && a.cols == b.cols; }

bool divides_by_zero(char op, const model &b) {
    if (op != '/' && op != '\\' && op != '|') return false;
    for (fraction v : b.at)
        if (v.n == 0) return true;
    return false;
}

model value_of_operation(char op, const model &a, const model &b) {
    if (op == '_') return joined(a, b);
    const bool sum = op == '+' || op == '-', chain = a.matrix && b.matrix && a.cols == b.rows;
    if (!a.matrix && !b.matrix) return model::scalar(combine(op, a.at[0], b.at[0]));
    if (a.matrix && b.matrix) {
        if (!sum && op == '*' && chain) return product(a, b);
        if (!same_shape(a, b)) return model::failure(39);
        if (!sum && (a.sparse || b.sparse)) return model::failure(191);
        return divides_by_zero(op, b) ? model::failure(22) : each_entry(op, a, b, a.sparse && b.sparse);
    }
    if (sum) return each_entry(op, a, b, false);
    if (a.matrix) return divides_by_zero(op, b) ? model::failure(22) : each_entry(op, a, b, a.sparse);
    if (op != '*' && b.sparse) return model::failure(242);
    return divides_by_zero(op, b) ? model::failure(22) : each_entry(op, a, b, op == '*' && b.sparse);
}

/* ---- the table ---- */

struct operand {
    std::string text;
    model value;
};

struct array_expressions : array_fixture {
    /* Entries from a short list; a sparse matrix has zeros too, among them a whole row. */
    static model filled(int64_t rows, int64_t cols, bool sparse, int seed) {
        static const int values[] = {2, -1, 3, 1, -2, 5, -3, 4, 7, -5, 6};
        model m = model::of(rows, cols, sparse);
        for (int64_t r = 0; r < rows; r++)
            for (int64_t c = 0; c < cols; c++) {
                const int64_t i = seed + r * 3 + c * 5;
                m.cell(r, c) = sparse && (i % 3 == 0 || r == 1) ? 0 : values[i % 11];
            }
        return m;
    }
    void add(const std::string &text, const model &m) {
        if (m.matrix) {
            store_model(text, m);
            operands.push_back({"[" + text + "]", m});
            operands.push_back({"(-(-[" + text + "]))", m}); /* a copy that the expression owns */
        } else {
            operands.push_back({text, m});
        }
    }
    void SetUp() override {
        array_fixture::SetUp();
        add("(-2)", model::scalar(-2));
        add("3", model::scalar(3));
        for (bool sparse : {false, true}) {
            const std::string kind = sparse ? "s" : "d";
            add(kind + "23", filled(2, 3, sparse, 1));
            add(kind + "33", filled(3, 3, sparse, 2));
            add(kind + "22", filled(2, 2, sparse, 4));
            add(kind + "32", filled(3, 2, sparse, 5));
            add(kind + "13", filled(1, 3, sparse, 7));
            add(kind + "31", filled(3, 1, sparse, 1));
            add(kind + "11", filled(1, 1, sparse, 1));
        }
    }
    int check_pairs(const char *operators);
    void check_arrays_unchanged() {
        for (const operand &o : operands)
            if (o.value.matrix && o.text[0] == '[') check(o.text, o.value);
    }
    std::vector<operand> operands;
};

/* Quotients by square matrices are no operation entry by entry. */
bool is_quotient_by_matrix(char op, const model &a, const model &b) {
    return op == '/' && b.matrix && b.rows == b.cols && (!a.matrix || a.cols == b.rows);
}

/* How many cases there were. */
int array_expressions::check_pairs(const char *operators) {
    int cases = 0;
    for (const char *op = operators; *op; op++)
        for (const operand &a : operands)
            for (const operand &b : operands) {
                if (is_quotient_by_matrix(*op, a.value, b.value)) continue;
                check(a.text + " " + *op + " " + b.text, value_of_operation(*op, a.value, b.value));
                cases++;
            }
    return cases;
}

TEST_F(array_expressions, each_operator_on_each_pair_of_operands) {
    EXPECT_GT(check_pairs("+-*/\\|_"), 5000);
    check_arrays_unchanged();
}

TEST_F(array_expressions, each_operator_on_each_pair_of_residues) {
    run("&(p = 65521)\n0");
    EXPECT_GT(check_pairs("+-*_"), 3000);
    check_arrays_unchanged();
    run("&p\n0");
}

TEST_F(array_expressions, a_quotient_by_a_square_matrix_is_what_the_divisor_multiplies_to_the_dividend) {
    for (const operand &a : operands)
        for (const operand &b : operands) {
            if (!is_quotient_by_matrix('/', a.value, b.value)) continue;
            const bool singular = b.value.sparse && b.value.rows > 1; /* it has a row of zeros */
            if (singular) {
                refused(a.text + "/" + b.text, 44);
                continue;
            }
            model product = a.value;
            if (!a.value.matrix) {
                product = model::of(b.value.rows, b.value.rows, false);
                for (int64_t i = 0; i < product.rows; i++) product.cell(i, i) = a.value.at[0];
            }
            product.sparse = b.value.sparse && (a.value.sparse || !a.value.matrix);
            check("(" + a.text + "/" + b.text + ")*" + b.text, product);
        }
    check_arrays_unchanged();
}

TEST_F(array_expressions, negative_powers_are_powers_of_the_inverse) {
    model one = model::of(3, 3, false), sparse_one = model::of(2, 2, true);
    for (int64_t i = 0; i < 3; i++) one.cell(i, i) = 1;
    for (int64_t i = 0; i < 2; i++) sparse_one.cell(i, i) = 1;
    check("[d33]^(-3)*[d33]^3", one);
    check("Altpower([d33],-2)*[d33]^2", one);
    model diagonal = sparse_one;
    diagonal.cell(1, 1) = 4;
    store_model("q", diagonal);
    check("[q]^(-1)*[q]", sparse_one);
    refused("[s33]^(-1)", 44);
    refused("[d23]^(-1)", 172);
    check_arrays_unchanged();
}

/* Cofactors along the first row. */
fraction determinant(const model &m) {
    if (m.rows == 1) return m.at[0];
    fraction sum = 0;
    for (int64_t j = 0; j < m.cols; j++) {
        model minor = model::of(m.rows - 1, m.rows - 1, false);
        for (int64_t r = 1; r < m.rows; r++)
            for (int64_t c = 0; c < m.cols; c++)
                if (c != j) minor.cell(r - 1, c - (c > j)) = m.cell(r, c);
        const fraction product = m.cell(0, j) * determinant(minor);
        sum = j % 2 ? sum - product : sum + product;
    }
    return sum;
}

TEST_F(array_expressions, a_matrix_times_its_adjoint_is_its_determinant_on_the_diagonal) {
    model singular = model::of(3, 3, false), two = model::of(2, 2, false), one = model::of(1, 1, false);
    for (int64_t i = 0; i < 9; i++) singular.cell(i / 3, i % 3) = i + 1;
    two.cell(1, 0) = 5;
    one.cell(0, 0) = 1;
    add("a33", singular);
    add("a22", two);
    for (const operand &a : operands) {
        if (!a.value.matrix) {
            refused("Adjoint " + a.text, 72);
        } else if (a.value.rows != a.value.cols) {
            refused("Adjoint " + a.text, 241);
        } else if (a.value.sparse) {
            refused("Adjoint " + a.text, 242);
        } else {
            model diagonal = model::of(a.value.rows, a.value.rows, false);
            for (int64_t i = 0; i < diagonal.rows; i++) diagonal.cell(i, i) = determinant(a.value);
            check("Adjoint " + a.text + "*" + a.text, diagonal);
            check(a.text + "*Adjoint " + a.text, diagonal);
        }
    }
    check("Adjoint [d11]", one);
    check("Adjoint [a22]^2", value_of_operation('*', two, model::scalar(0))); /* the square of a nilpotent one */
    check("Adjoint([a22] - [a22])", model::of(2, 2, false));
    check_arrays_unchanged();
}

TEST_F(array_expressions, an_array_with_itself) {
    for (const operand &a : operands)
        for (char op : {'+', '-', '*', '_'}) {
            if (a.text[0] != '[') continue;
            check(a.text + op + a.text, value_of_operation(op, a.value, a.value));
        }
    check_arrays_unchanged();
}

TEST_F(array_expressions, prefix_operators_in_each_form) {
    for (const operand &a : operands) {
        model negative = a.value, magnitude = a.value, transposed = a.value;
        for (std::size_t i = 0; i < a.value.at.size(); i++) {
            negative.at[i] = fraction(0) - a.value.at[i];
            magnitude.at[i] = a.value.at[i].n < 0 ? negative.at[i] : a.value.at[i];
        }
        check("-" + a.text, negative);
        check("|" + a.text + "|", magnitude);
        check("$" + a.text, a.value);
        if (!a.value.matrix) {
            refused("Trans " + a.text, 72);
            refused("Diag " + a.text, 74);
            continue;
        }
        transposed.rows = a.value.cols;
        transposed.cols = a.value.rows;
        for (int64_t r = 0; r < a.value.rows; r++)
            for (int64_t c = 0; c < a.value.cols; c++) transposed.cell(c, r) = a.value.cell(r, c);
        check("Trans " + a.text, transposed);
        model diagonal = model::of(std::min(a.value.rows, a.value.cols), 1, a.value.sparse);
        for (int64_t r = 0; r < diagonal.rows; r++) diagonal.cell(r, 0) = a.value.cell(r, r);
        check("Diag " + a.text, diagonal);
    }
    check_arrays_unchanged();
}

TEST_F(array_expressions, products_come_before_sums_and_a_letter_stands_for_a_product) {
    const model &d22 = operands[6].value, &d33 = operands[4].value;
    ASSERT_EQ(operands[6].text, "[d22]");
    check("[d22] - [d22]*2 + [d22]c", value_of_operation('*', d22, model::scalar(3)));
    check("2c", model::scalar(8));
    check("2 + 3*4", model::scalar(14));
    check("-[d33]^2", value_of_operation('*', value_of_operation('*', d33, d33), model::scalar(-1)));
    check("(2*[d22] + 1)", value_of_operation('+', value_of_operation('*', d22, model::scalar(2)), model::scalar(1)));
}

/* ---- failures ---- */

TEST_F(array_expressions, what_is_missing_has_an_error_of_its_own) {
    refused("[none]", 28);
    refused("[<]", 175);
    refused("([d22]", 1);
    refused("[d22", 24);
    refused("|[d22]", 63);
    refused("Altmult [d22]", 177);
    refused("Altmult([d22])", 202);
    refused("Altmult([d22],[d22]", 1);
    refused("Altmult(2,[d22])", 72);
    refused("Altmult([d22],2)", 72);
    refused("Altmult([s22],[d22])", 242);
    refused("Altmult([d22],[d33])", 39);
    refused("Altpower([d23],2)", 172);
    refused("Altpower([s22],2)", 242);
    refused("Altpower [d22]", 177);
    refused("Altpower([d22])", 202);
    refused("MPowermod([d23],2,7)", 172);
    refused("MPowermod([d22],2,0)", 188);
    refused("MPowermod([d22],-1,7)", 287);
    refused("MPowermod([d22]/2,2,7)", 323);
    refused("MPowermod [d22]", 177);
    refused("MPowermod([d22])", 202);
    refused("MPowermod([d22],2,7", 1);
    refused("MPowermod([d22],2,t)", 288);
    refused("MPowermod([d22],t,7)", 116);
    refused("Altpower([d22],t)", 116);
    refused("[d22]^t", 116);
    refused("[d23]^2", 172);
    refused("[s23]^2", 172);
    refused("[d22]^[d22]", 2);
    refused("[d22]/0", 22);
    refused("[s22]/0", 22);
    check_arrays_unchanged();
}

TEST_F(array_expressions, more_than_twenty_work_arrays_are_error_88) {
    std::string deep, close;
    for (int i = 0; i < 19; i++) {
        deep += "[d22]+(";
        close += ")";
    }
    refused(deep + "[d22]+[d22]" + close, 88);
    refused(deep + "1/[d22]" + close, 89);
    check_arrays_unchanged();
}

/* ---- powers ---- */

TEST_F(array_expressions, powers_are_products) {
    for (const operand &a : operands) {
        if (!a.value.matrix || a.value.rows != a.value.cols) continue;
        model power = model::of(a.value.rows, a.value.rows, a.value.sparse);
        for (int64_t i = 0; i < power.rows; i++) power.cell(i, i) = 1;
        for (int e = 0; e <= 6; e++) {
            const std::string n = std::to_string(e);
            check(a.text + "^" + n, power);
            if (!a.value.sparse) check("Altpower(" + a.text + "," + n + ")", power);
            check("MPowermod(" + a.text + "," + n + ")", power);
            model reduced = power;
            for (fraction &f : reduced.at) f = combine('|', f, 5);
            check("MPowermod(" + a.text + "," + n + ",5)", reduced);
            power = product(power, a.value);
        }
    }
    store_model("z", model::of(2, 2, false));
    check("MPowermod([z],3,7)", model::of(2, 2, false));
    check_arrays_unchanged();
}

TEST_F(array_expressions, polynomials_at_matrices_are_sums_of_powers) {
    const model &d = operands[6].value, &s = operands[20].value;
    ASSERT_EQ(operands[20].text, "[s22]");
    for (const model *m : {&d, &s}) {
        const std::string text = m == &d ? "[d22]" : "[s22]";
        model one = model::of(2, 2, m->sparse), four = product(product(*m, *m), product(*m, *m));
        one.cell(0, 0) = one.cell(1, 1) = 1;
        model expected = model::of(2, 2, m->sparse);
        for (std::size_t i = 0; i < 4; i++) expected.at[i] = four.at[i] * 3 + m->at[i] * -2 + one.at[i] * 7;
        check("(3*t^4 - 2*t + 7)#" + text, expected);
        check("t#" + text, *m);
        check("(u^4)#" + text, four);
        check("5#" + text, value_of_operation('*', one, model::scalar(5)));
    }
    refused("t#[d23]", 241);
    refused("(1/t)#[d22]", 186);
}

TEST_F(array_expressions, polynomials_with_negative_exponents_are_taken_at_no_matrix) {
    for (const int32_t last : {-1, -3}) {
        quoly_handle p;
        base_quoly(1, p.slot());
        p->num->expo = last; /* x^-1, x^-3 as a Laurent polynomial holds them */
        EXPECT_TRUE(unwinds([&] {
            matrix_value m;
            evaluate("[d22]", m);
            quoly_at_matrix(p.get(), m);
        }));
        EXPECT_NE(last_text.find(message_text(198)), std::string::npos) << last_text;
        p->num->expo = 1;
    }
    EXPECT_EQ(first_available, 1);
    check_arrays_unchanged();
}

} // namespace
