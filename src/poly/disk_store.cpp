#include "poly/disk_store.h"
#include "poly/model_work.h"
#include "top/stack_limit.h"

#include <algorithm>
#include <cstring>

namespace tolvek {

text_out *tolvekstore = nullptr;

/* ---- writing ---- */

static void put_word(int32_t v) { put_format(tolvekstore, "%i", v); }

static void put_number(const number *x) {
    put_word(negzero);
    if (lintmode) {
        put_word(0);
        put_word(x->lint_val);
        return;
    }
    put_word(x->num_len);
    const numnode *d = x->num_head;
    for (int i = 0; i < x->num_len; i++, d = d->next) put_word(d->digit);
}

void put_poly_disk(const polynode *p) {
    if (!tolvekstore) return;
    for (; p; p = p->next) {
        if (p->is_number) {
            put_number(p->num);
        } else {
            put_word(p->expo);
            put_poly_disk(p->poly);
        }
    }
    put_word(end_of_terms);
}

/* ---- reading ---- */

static bool is_figure(int c) { return c >= '0' && c <= '9'; }

/* A tag in figures behind white space; the end mark where there is none, or one that is no 32-bit word. */
static int32_t get_tag(stream store) {
    while (peek_char(store) == ' ' || peek_char(store) == '\n') take_char(store);
    bool minus = peek_char(store) == '-';
    if (minus) take_char(store);
    if (!is_figure(peek_char(store))) return end_of_terms;
    int64_t v = 0;
    while (is_figure(peek_char(store))) v = std::min<int64_t>(v * 10 + (take_char(store) - '0'), int64_t{1} << 40);
    if (minus) v = -v;
    return v < INT32_MIN || v > INT32_MAX ? end_of_terms : static_cast<int32_t>(v);
}

/* Four bytes as they stand in memory; 0 where the store ends. */
static int32_t get_raw_word(stream store) {
    char bytes[4];
    for (char &c : bytes) {
        if (input_ended(store)) return 0;
        c = static_cast<char>(take_char(store));
    }
    int32_t v;
    std::memcpy(&v, bytes, sizeof v);
    return v;
}

static void get_digits(stream store, number *x) {
    int count = get_raw_word(store);
    numnode *head = newdigit(), *last = head;
    *head = {get_raw_word(store), nullptr};
    int read = 1;
    for (; read < count && !input_ended(store); read++) {
        last->next = newdigit();
        last = last->next;
        *last = {get_raw_word(store), nullptr};
    }
    x->num_head = head;
    x->num_tail = last;
    x->num_len = read;
}

static polynode *get_number_term(stream store) {
    polynode *t = new_number_term();
    if (lintmode) {
        get_raw_word(store);
        t->num->lint_val = get_raw_word(store);
    } else {
        get_digits(store, t->num);
    }
    return t;
}

void get_poly_disk(stream store, polynode **where) {
    check_stack();
    growing_list terms;
    for (int32_t tag; (tag = get_tag(store)) != end_of_terms;) {
        if (tag == negzero) {
            terms.append(get_number_term(store));
            continue;
        }
        polynode *t = new_term();
        terms.append(t);
        t->expo = tag;
        get_poly_disk(store, &t->poly);
    }
    poly_handle(terms.release()).release_to(where);
}

} // namespace tolvek
