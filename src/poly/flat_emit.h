/* A canonical polynomial built term by term in descending order, so that a product is poured out as it is computed.

   For every live level there is one list under construction; a node's list is finished, and so becomes a coefficient in
   the list above, when its last term has come. Everything that hangs here goes back if the frame is left early: at any
   moment the lists are whole, and a record on its way hangs in `number_in_work` or `node_in_work`. */
#pragma once

#include "poly/flat_poured.h"

namespace tolvek {

class poly_emitter {
  public:
    explicit poly_emitter(const flat_shape &s) : shape(s) {
        for (int l = 0; l < s.count; l++) list[l] = {nullptr, nullptr};
    }
    ~poly_emitter();
    poly_emitter(const poly_emitter &) = delete;
    poly_emitter &operator=(const poly_emitter &) = delete;

    /* The exponent under which what follows at live level l + 1 will hang. */
    void open(int l, int32_t expo) { open_expo[l] = expo; }

    /* The list of live level l + 1, if not empty, becomes a term of level l. */
    void finish(int l) {
        polynode *child = list[l + 1].head;
        if (!child) return;
        hang(l, open_expo[l], child);
        list[l + 1].head = nullptr;
    }

    /* The number of the next term of the last live level, of num_len 0, to be given its value before add_term. */
    number *next_number() {
        number_in_work = newimag();
        return number_in_work;
    }
    /* The term x^expo times next_number, which is not 0. */
    void add_term(int32_t expo) {
        polynode *c = newpoly();
        c->expo = 0;
        c->is_number = 1;
        c->next = nullptr;
        c->num = number_in_work;
        number_in_work = nullptr;
        if (expo == 0) return append(shape.count - 1, c);
        node_in_work = c;
        polynode *t = newpoly();
        t->expo = expo;
        t->is_number = 0;
        t->next = nullptr;
        t->poly = c;
        node_in_work = nullptr;
        append(shape.count - 1, t);
    }

    /* The finished polynomial replaces *p. */
    void release_to(polynode **p);

  private:
    struct open_list {
        polynode *head, *last; /* last is meaningless while head is null */
    };

    void append(int l, polynode *t) {
        if (list[l].head)
            list[l].last->next = t;
        else
            list[l].head = t;
        list[l].last = t;
    }
    void hang(int l, int32_t expo, polynode *child) {
        if (is_constant(child)) {
            if (expo == 0) return append(l, child);
        } else {
            child = wrapped(child, shape.level[l + 1].depth - shape.level[l].depth - 1);
        }
        polynode *t = newpoly(); /* until it is linked the child still hangs in its list */
        t->expo = expo;
        t->is_number = 0;
        t->next = nullptr;
        t->poly = child;
        append(l, t);
    }
    polynode *wrapped(polynode *child, int times);

    const flat_shape &shape;
    number *number_in_work = nullptr;
    polynode *node_in_work = nullptr;
    open_list list[most_variables];
    int32_t open_expo[most_variables];
};

/* Pours the box of cells that begins at `base` out as the list of live level l, from `high` down to `low`, which lie in
   it: put(cell) says whether it gave next_number a value. */
template <class source>
void pour_box(const flat_shape &shape, poly_emitter &out, int l, uint32_t base, uint32_t low, uint32_t high,
              source &&put) {
    if (l == shape.count - 1) {
        for (uint32_t i = high - low + 1; i-- > 0;)
            if (put(low + i)) out.add_term(shape.exponent(l, low + i - base));
        return;
    }
    const uint32_t stride = shape.level[l].stride;
    for (uint32_t e = (high - base) / stride + 1; e-- > (low - base) / stride;) {
        const uint32_t sub = base + e * stride, top = sub + (stride - 1);
        out.open(l, shape.exponent(l, e));
        pour_box(shape, out, l + 1, sub, low > sub ? low : sub, high < top ? high : top, put);
        out.finish(l);
    }
}

/* Terms that come in descending order of keys make up the list of live level l; their exponents above l are alike. */
class key_order {
  public:
    key_order(const flat_shape &s, poly_emitter &o, int l) : shape(s), out(o), from(l), last(s.count - 1) {}

    /* The term of the key, with next_number. */
    void add_term(uint64_t key) {
        int highest = from; /* level whose exponent is new */
        if (begun) {
            highest = shape.level_of_bit[63 - __builtin_clzll(before ^ key)];
            for (int k = last - 1; k >= highest; k--) out.finish(k);
        }
        for (int k = highest; k < last; k++) out.open(k, shape.exponent(k, shape.field(k, key)));
        out.add_term(shape.exponent(last, shape.field(last, key)));
        before = key;
        begun = true;
    }
    void end() {
        for (int k = last - 1; begun && k >= from; k--) out.finish(k);
    }

  private:
    const flat_shape &shape;
    poly_emitter &out;
    const int from, last;
    uint64_t before = 0;
    bool begun = false;
};

/* x, of num_len 0, := the chain of m with the given sign. */
inline void put_chain(unsigned __int128 m, int32_t sign, number *x) {
    numnode *head = newdigit();
    head->digit = sign * static_cast<int32_t>(static_cast<uint32_t>(m) & digit_mask);
    head->next = nullptr;
    x->num_head = x->num_tail = head;
    x->num_len = 1;
    while (m >>= digit_bits) {
        numnode *d = newdigit();
        d->digit = sign * static_cast<int32_t>(static_cast<uint32_t>(m) & digit_mask);
        d->next = x->num_head;
        x->num_head = d;
        x->num_len++;
    }
}
/* The same for n limbs. */
void put_chain(const uint64_t *limbs, int n, int32_t sign, number *x);

} // namespace tolvek
