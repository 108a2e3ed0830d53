/* Operands in brackets: named arrays, and literals that are read entry by entry. Comprehensions: array_comprehension.cpp. */
#include "matrix/array_literals.h"

#include "language/stored.h"
#include "matrix/array_expressions.h"
#include "matrix/elements.h"
#include "matrix/literal_work.h"
#include "matrix/slots.h"
#include "numbers/random.h"
#include "poly/variables.h"
#include "top/interrupts.h"

namespace tolvek {

/* ---- lists of values ---- */

void value_list::add(quoly_handle &value) {
    if (count() >= most_cells) array_error(71, token);
    values.push(nullptr); /* may fail: the value is still its owner's */
    values[values.size() - 1] = value.release();
}

void value_list::move_by_rows(int64_t rows, matrix_value &result) {
    const int64_t cols = count() / rows;
    result.make_dense(rows, cols);
    for (int64_t i = 0; i < count(); i++) {
        quolynode *&from = values[static_cast<std::size_t>(i)];
        result.cell(i % cols * rows + i / cols) = from;
        from = nullptr;
    }
}

/* ---- named arrays ---- */

void fetch_region(const array_region &region, matrix_value &result) {
    array_record *a = existing(region);
    if (!region.sub) {
        fetch_array(a, result, &region.tok);
        return;
    }
    if (a->sparse_head) array_error(244, region.tok);
    result.make_borrowed(region.rows, region.cols);
    int64_t to = 0;
    for (int64_t c = 0; c < region.cols; c++)
        for (int64_t r = 0; r < region.rows; r++) {
            quolynode *&cell = element(a, region.index(r, c));
            if (!cell) {
                quoly_set(0, &cell);
                warn_uninitialized_in(region.tok);
            }
            result.cell(to++) = cell;
        }
    if (a == &syst) result.own();
}

void read_subarray(stream *input, name **cursor, array_record *a, matrix_value &result) {
    array_region region;
    whole_array(a, region);
    if (a->sparse_head) array_error(244, a->tok);
    subarray(input, cursor, region);
    fetch_region(region, result);
}

static void named_operand(stream *input, name **cursor, matrix_value &result) {
    token_record array_name = token;
    scanner(input, token, cursor);
    array_record *a = array_seek(array_name);
    if (token_is(token, "["))
        read_subarray(input, cursor, a, result);
    else
        fetch_array(a, result);
}

static void slot_operand(stream *input, name **cursor, matrix_value &result) {
    array_region region;
    array_record *a = get_arr_arr(input, cursor);
    if (!a) array_error(220, arr_arrsign);
    whole_array(a, region);
    region.tok = arr_arrsign;
    if (token_is(token, "[")) {
        if (a->sparse_head) array_error(244, region.tok);
        subarray(input, cursor, region);
    }
    fetch_region(region, result);
}

/* ---- [n] ---- */

/* A sparse matrix, since it is 0 off the diagonal. The shape of the target does not count: [x] := [3] has no left operand. */
static void scalar_matrix(stream *input, name **cursor, matrix_value &result) {
    quoly_handle value;
    old_expre(input, value.slot(), cursor);
    if (shape_at_hand.rows == 0 || shape_at_hand.of_target) array_error(45, token);
    const auto rows = static_cast<int32_t>(shape_at_hand.rows);
    sparse_frame *head;
    spar_identi(&head, rows, value.get());
    result.make_sparse(head, rows, rows);
}

/* ---- rows ---- */

static void read_entry(stream *input, name **cursor, value_list &list) {
    held_value earlier;
    quoly_handle value;
    old_expre(input, value.slot(), cursor);
    list.add(value);
}

/* (a, b, c) */
static void one_row(stream *input, name **cursor, matrix_value &result) {
    value_list list;
    do {
        safe_point();
        scanner(input, token, cursor);
        read_entry(input, cursor, list);
        if (!token_is(token, ",") && !token_is(token, ")")) array_error(70, token);
    } while (token_is(token, ","));
    scanner(input, token, cursor);
    list.move_by_rows(1, result);
}

/* Rows of which the first one gives the number of columns. They end at "]", and at the end of a line behind a comma. */
struct row_reader {
    stream *input;
    name **cursor;
    value_list list;
    int64_t cols = 0;

    void end_row() {
        if (!cols) cols = list.count();
    }
    /* Behind a comma: the first token of the next entry. */
    void read_past_comma() {
        int line_end;
        spec_scanner(input, token, cursor, &line_end);
        if (line_end) end_row();
    }
    /* Behind an entry. False: that was the last one. */
    bool next() {
        if (token_is(token, ",")) {
            read_past_comma();
            return true;
        }
        if (!token_is(token, "]")) array_error(70, token);
        end_row();
        scanner(input, token, cursor);
        if (token_is(token, ",")) {
            scanner(input, token, cursor);
            if (!token_is(token, "[")) array_error(70, token);
        }
        if (!token_is(token, "[")) return false;
        scanner(input, token, cursor);
        return true;
    }
    void read(matrix_value &result) {
        do {
            safe_point();
            read_entry(input, cursor, list);
        } while (next());
        finish(result);
    }
    /* The same when an entry is in the list already. */
    void read_on(matrix_value &result) {
        if (next())
            read(result);
        else
            finish(result);
    }
    void finish(matrix_value &result) {
        if (list.count() % cols != 0) array_error(173, token);
        list.move_by_rows(list.count() / cols, result);
    }
};

/* The first entry, when it may be the number of a row: read in the ring in force, but a row outside the modular one. */
static void rows_for_sparse_array(stream *input, name **cursor, row_reader &rows, matrix_value &result) {
    name_list first;
    obtain_part(input, cursor, ",]", first);
    const bool several = token_is(token, ",");
    if (several) rows.read_past_comma();
    const token_record behind = token;
    name *stored = first.first();
    token = stored->tok;
    if (several && token_is(behind, "[")) {
        const int32_t row = sparse_row_number(input, &stored);
        token = behind;
        read_sparse_entries(input, cursor, row, result);
        return;
    }
    read_entry(input, &stored, rows.list);
    if (!is_end_of_list(token)) array_error(70, token);
    token = behind;
    if (several)
        rows.read(result);
    else
        rows.read_on(result);
}

static void rows_of_entries(stream *input, name **cursor, matrix_value &result) {
    scanner(input, token, cursor);
    row_reader rows{input, cursor, {}, 0};
    if (want_sparse && shape_at_hand.rows > 0)
        rows_for_sparse_array(input, cursor, rows, result);
    else
        rows.read(result);
}

/* ---- text ---- */

/* Each character counts, blanks too; a line that ends inside is warned of. */
static void text_operand(stream *input, name **cursor, matrix_value &result) {
    value_list list;
    for (;;) {
        int line_end;
        dumbscanner(input, token, cursor, &line_end);
        if (is_end_of_list(token) || (line_end && token_is(token, ";"))) array_error(109, token);
        if (line_end) say(" Warning. End of line encountered inside a literal.\n");
        if (token_is(token, "'")) break;
        quoly_handle code;
        quoly_set(first_char(token), code.slot());
        list.add(code);
    }
    if (!list.count()) array_error(110, token);
    scanner(input, token, cursor);
    list.move_by_rows(1, result);
}

/* ---- random numbers ---- */

static void random_sparse(int seed_flag, int32_t rows, int64_t cols, matrix_value &result) {
    sparse_handle fresh(rows);
    row_walk walk(fresh.get());
    for (int32_t r = 0; r < rows; r++, walk.next()) {
        row_builder row(&*walk);
        for (int64_t c = 1; c <= cols; c++) {
            if (c % 1024 == 0) safe_point();
            quoly_handle value;
            randomize(seed_flag, value.slot());
            row.add(static_cast<int32_t>(c), value);
        }
    }
    result.make_sparse(fresh.release(), rows, cols);
}

static void random_matrix(stream *input, name **cursor, matrix_value &result) {
    const int seed_flag = token_is(token, "RRand");
    const known_shape shape = shape_at_hand;
    if (shape.rows == 0) array_error(142, token);
    scanner(input, token, cursor);
    if (want_sparse) {
        random_sparse(seed_flag, static_cast<int32_t>(shape.rows), shape.cols, result);
        return;
    }
    matrix_value fresh;
    fresh.make_dense(shape.rows, shape.cols);
    for (int64_t i = 0; i < fresh.size; i++) {
        if (i % 1024 == 0) safe_point();
        randomize(seed_flag, &fresh.cell(i));
    }
    result.take(fresh);
}

/* ---- the brackets ---- */

static void empty_sparse(matrix_value &result) {
    if (!want_sparse || shape_at_hand.rows == 0) array_error(40, token);
    const auto rows = static_cast<int32_t>(shape_at_hand.rows);
    sparse_frame *head;
    sparse_init(&head, rows);
    result.make_sparse(head, rows, shape_at_hand.cols);
}

/* "<" alone is the system array, with a loop behind it a comprehension. */
static void angle_operand(stream *input, name **cursor, matrix_value &result) {
    scanner(input, token, cursor);
    if (token_is(token, "[")) array_error(83, token);
    if (!token_is(token, "]")) {
        read_comprehension(input, cursor, result);
        return;
    }
    if (syst_is_empty()) array_error(175, token);
    fetch_array(&syst, result);
}

static bool is_polynomial_name(const token_record &t) {
    int level;
    return polynames && is_poly_name(t.text, &level);
}

/* The first token behind "[" decides. A variable of polynomials is no array. */
static void operand_in_brackets(stream *input, name **cursor, matrix_value &result) {
    const int c = first_char(token);
    if (is_digit(c) || c == '-' || c == '.' || is_polynomial_name(token))
        scalar_matrix(input, cursor, result);
    else if (is_lower_letter(c))
        named_operand(input, cursor, result);
    else if (c == '%')
        slot_operand(input, cursor, result);
    else if (c == '(')
        one_row(input, cursor, result);
    else if (c == '[')
        rows_of_entries(input, cursor, result);
    else if (c == '<')
        angle_operand(input, cursor, result);
    else if (token_is(token, "Rand") || token_is(token, "RRand"))
        random_matrix(input, cursor, result);
    else if (c == ']')
        empty_sparse(result);
    else
        array_error(is_upper_letter(c) ? 42 : 40, token);
}

void read_array_literal(stream *input, name **cursor, matrix_value &result) {
    result.clear();
    if (token_is(token, "'")) {
        text_operand(input, cursor, result);
        return;
    }
    scanner(input, token, cursor);
    operand_in_brackets(input, cursor, result);
    require("]", 24, input, cursor);
}

} // namespace tolvek
