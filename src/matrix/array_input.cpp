/* ?[x], ?x[i,j]: elements that are asked for at the terminal, one after the other. */
#include "matrix/array_expressions.h"
#include "matrix/array_literals.h"
#include "matrix/array_statements.h"
#include "matrix/array_store.h"
#include "matrix/elements.h"
#include "top/driver.h"
#include "top/guards.h"
#include "top/loop.h"
#include "top/parse.h"

namespace tolvek {

/* Asks for one element of an ordinary array. False: the answer is "@", and the element stays as it is. The array may go, or
   turn sparse, while the answer is evaluated. */
static bool arrinsert(array_record *a, int64_t index, bool two_coords) {
    do_prompts();
    const auto row = static_cast<long>(index % a->rows), col = static_cast<long>(index / a->rows);
    if (a->cols() > 1 && two_coords)
        sayf("%s[%ld,%ld] := ", a->tok.text, row + addresser, col + addresser);
    else
        sayf("%s[%ld] := ", a->tok.text, static_cast<long>(index) + addresser);
    scanner(&Input, token, &zilch);
    if (token_is(token, "@")) return false;
    quoly_handle answer;
    old_expre(&Input, answer.slot(), &zilch);
    if (!ends_statement(token)) array_error(129, token);
    if (a->sparse_head) array_error(242, a->tok);
    store_element(&element(a, index), answer.release());
    return true;
}

/* What the questions at the terminal change of the reading, for their time. */
struct question_time {
    held_cells held;
    token_record behind = token;
    int left = leftover;
    kept_value<int> terminal{tt_flag, 1};
    ~question_time() {
        token = behind;
        leftover = left;
    }
};

void ask_for_element(stream *input, name **cursor, token_record &array_name) {
    coordinates c = evalcoords(input, cursor, "]", ",", false);
    scanner(input, token, cursor);
    array_record *a = array_seek(array_name);
    const int64_t index = element_index(a, c);
    if (a->sparse_head) array_error(242, array_name);
    question_time time;
    arrinsert(a, index, c.two);
}

static void ask_for_region(const array_region &region) {
    if (existing(region)->sparse_head) array_error(242, region.tok);
    question_time time;
    for (int64_t r = 0; r < region.rows; r++)
        for (int64_t c = 0; c < region.cols; c++)
            if (!arrinsert(region.array, region.index(r, c), true)) return;
}

/* x := 'text' with the quote as the token. */
static void store_text(stream *input, name **cursor, array_region &region) {
    matrix_value text;
    read_array_literal(input, cursor, text);
    store_matrix(region, text);
}

/* Behind ?[x] := : the same name once more, and the quote. */
static void read_name_again(stream *input, name **cursor, const array_region &region) {
    array_region again;
    scanner(input, token, cursor);
    if (!token_is(token, "=")) array_error(334, token);
    scanner(input, token, cursor);
    if (!token_is(token, "[")) array_error(334, token);
    left_side(input, cursor, again, false);
    if (!same_text(again.tok, region.tok) || again.sub || !token_is(token, "'")) array_error(334, token);
}

/* The name behind ?[ , with "[" as the token. A subscript on an array that does not exist is error 28. */
static void read_asked_array(stream *input, name **cursor, array_region &region) {
    left_side(input, cursor, region, false, 28);
    if (region.sub && region.array->sparse_head) array_error(242, region.tok);
}

void whole_arrinsert(stream *input, name **cursor) {
    array_region region;
    read_asked_array(input, cursor, region);
    if (token_is(token, ":")) read_name_again(input, cursor, region);
    if (token_is(token, "'"))
        store_text(input, cursor, region);
    else if (ends_statement(token))
        ask_for_region(region);
    else
        array_error(107, token);
}

} // namespace tolvek
