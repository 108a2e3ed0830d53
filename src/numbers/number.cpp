/* Numbers set, copied, freed and negated; the constants; the rules of the chain form. */
#include "numbers/number_work.h"

#include "numbers/int_power.h"
#include "numbers/number_decimal.h"

namespace tolvek {

/* ---- setting ---- */

void set_from_128_bits(unsigned __int128 v, int32_t sign, number *x) {
    growing_chain digits;
    do {
        digits.prepend(sign * static_cast<int32_t>(static_cast<uint64_t>(v) & digit_mask));
        v >>= digit_bits;
    } while (v);
    digits.give_to(x);
}

void set_chain(int64_t v, number *x) {
    if (v > -digit_radix && v < digit_radix)
        set_one_digit(static_cast<int32_t>(v), x);
    else
        set_from_128_bits(v < 0 ? -static_cast<uint64_t>(v) : static_cast<uint64_t>(v), v < 0 ? -1 : 1, x);
}

void setvalue(int32_t v, number *x) {
    if (flotemode)
        x->flote_val = v;
    else if (lintmode)
        x->lint_val = v;
    else
        set_chain(v, x);
}

void special_set(int32_t v, number *x) { set_one_digit(v, x); }

void set_int64(int64_t v, number *x) {
    if (flotemode)
        x->flote_val = static_cast<long double>(v);
    else if (lintmode)
        x->lint_val = static_cast<int32_t>(v);
    else
        set_chain(v, x);
}

/* ---- copying ---- */

/* dst := the first len nodes of the chain, each times factor. The old chain of dst goes last, so that the source
   may be dst's own. */
static void copy_chain(const numnode *chain, int len, int32_t factor, number *dst) {
    if (len == 1) {
        set_one_digit(factor * chain->digit, dst);
        return;
    }
    growing_chain copy;
    for (; len > 0; len--, chain = chain->next) copy.append(factor * chain->digit);
    copy.give_to(dst);
}

static void copy_signed(const number *src, int32_t factor, number *dst) {
    if (src->num_len > 0) {
        copy_chain(src->num_head, src->num_len, factor, dst);
    } else {
        drop_chain(dst);
        dst->num_head = dst->num_tail = nullptr;
    }
}

void fast_assign(const numnode *chain, int len, number *dst) { copy_chain(chain, len, 1, dst); }
void fast_num_assign(const numnode *chain, int len, number *dst) { copy_chain(chain, len, 1, dst); }

void faster_num_assign(const numnode *chain, int len, number **out) {
    *out = nullptr;
    if (chain->digit == 0) return;
    growing_chain copy;
    for (; len > 0; len--, chain = chain->next) copy.append(chain->digit);
    number *x = newimag();
    copy.give_to(x);
    *out = x;
}

void num_assign(const number *src, number *dst) {
    if (flotemode) dst->flote_val = src->flote_val;
    if (lintmode) dst->lint_val = src->lint_val;
    if (!flotemode && !lintmode) copy_signed(src, 1, dst);
}

void spec_num_assign(const number *src, number *dst) { copy_signed(src, 1, dst); }

/* ---- freeing ---- */

void free_num(number *x) {
    if (x->num_len > 0 && !lintmode) push_digits(x->num_head, x->num_tail);
}

void special_free(number *x) { drop_chain(x); }

void free_imag(number **p) {
    free_num(*p);
    push_imag(*p);
    *p = nullptr;
}

/* ---- sign ---- */

static int32_t negated_small(int32_t v) {
    if (!modularmode) return static_cast<int32_t>(-static_cast<uint32_t>(v));
    if (finf || v == 0) return v;
    return modulus - v;
}

void makeneg(const number *src, number *dst) {
    if (flotemode)
        dst->flote_val = -src->flote_val;
    else if (lintmode || modularmode)
        dst->lint_val = negated_small(src->lint_val);
    else
        copy_signed(src, -1, dst);
}

void in_place_neg(number *x) {
    if (flotemode) {
        x->flote_val = -x->flote_val;
    } else if (lintmode || modularmode) {
        x->lint_val = negated_small(x->lint_val);
    } else if (x->num_len > 0) {
        for (numnode *d = x->num_head; d; d = d->next) d->digit = -d->digit;
    }
}

void abs_val_num(const number *src, number *dst) {
    copy_signed(src, src->num_len > 0 && src->num_head->digit < 0 ? -1 : 1, dst);
}

/* ---- the rules ---- */

int chain_rule_broken(const number *x, int32_t radix) {
    enum { length = 1, tail, head, range, sign };
    if (x->num_len < 1 || !x->num_head) return length;
    const numnode *last = nullptr;
    int64_t count = 0;
    bool positive = false, negative = false, in_range = true;
    for (const numnode *d = x->num_head; d && count <= x->num_len; d = d->next) {
        if (d->digit <= -radix || d->digit >= radix) in_range = false;
        if (d->digit > 0) positive = true;
        if (d->digit < 0) negative = true;
        last = d;
        count++;
    }
    if (count != x->num_len) return length;
    if (x->num_tail != last) return tail;
    if (count > 1 && x->num_head->digit == 0) return head;
    if (!in_range) return range;
    return positive && negative ? sign : 0;
}

/* ---- constants ---- */

number number_0, number_1, number_2, number_m1, number_10, num_2_14, rand_denom_n, tens_base, two_tensbase;
number disp_cons;

const int32_t ones[32] = {0x0,      0x1,       0x3,       0x7,       0xf,       0x1f,       0x3f,       0x7f,
                          0xff,     0x1ff,     0x3ff,     0x7ff,     0xfff,     0x1fff,     0x3fff,     0x7fff,
                          0xffff,   0x1ffff,   0x3ffff,   0x7ffff,   0xfffff,   0x1fffff,   0x3fffff,   0x7fffff,
                          0xffffff, 0x1ffffff, 0x3ffffff, 0x7ffffff, 0xfffffff, 0x1fffffff, 0x3fffffff, 0x7fffffff};

static void set_all_forms(int64_t v, number *x) {
    set_chain(v, x);
    x->lint_val = static_cast<int32_t>(v);
    x->flote_val = static_cast<long double>(v);
}

void set_number_constants() {
    set_all_forms(0, &number_0);
    set_all_forms(1, &number_1);
    set_all_forms(2, &number_2);
    set_all_forms(-1, &number_m1);
    set_all_forms(10, &number_10);
    set_all_forms(1 << 14, &num_2_14);
    set_all_forms(1, &rand_denom_n);
    set_all_forms(decimal_radix, &tens_base);
    set_all_forms(int64_t{decimal_radix} * decimal_radix, &two_tensbase);
    make_disp_cons();
}

void make_disp_cons() {
    chain_form chains;
    set_one_digit(decimal_radix, &disp_cons);
    number_power(&disp_cons, disp_size > 0 ? static_cast<uint32_t>(disp_size) : 0);
}

} // namespace tolvek
