#include "quoly/ring_image.h"
#include "numbers/handles.h"
#include "poly/ring_change.h"
#include "quoly/normal.h"
#include "top/interrupts.h"
#include "top/settings.h"

#include <cassert>
#include <utility>

namespace tolvek {

/* ---- one value ---- */

static void give_number(quolynode *q, number *x) {
    q->is_num = 1;
    q->numb = x;
    q->den = nullptr;
}

/* The parts, whose links are noted, go for a number of its own. */
static number *become_new_number(quolynode *q) {
    note_fix(fix_kind::new_number, q, nullptr);
    number *x = newimag();
    masterfix->saved = x;
    give_number(q, x);
    return x;
}

static void vanish(quolynode *q) {
    if (q->den) overwrite_link(&q->den, nullptr);
    become_new_number(q)->lint_val = 0;
}

static void shrink(quolynode *q) {
    note_fix(fix_kind::shrunk, q, q->num);
    give_number(q, q->num->num);
}

/* num / den in normal form, out of copies: the image has parts of its own. */
static void compute_fraction(quolynode *q) {
    poly_handle num, den;
    quoly_handle value;
    poly_assign(q->num, num.slot());
    poly_assign(q->den, den.slot());
    fraction_to_value(num, den, value.slot());
    overwrite_link(&q->num, nullptr);
    overwrite_link(&q->den, nullptr);
    if (value->is_num) {
        become_new_number(q)->lint_val = value->numb->lint_val;
    } else {
        note_fix(fix_kind::computed, q, nullptr);
        q->num = std::exchange(value->num, nullptr);
        q->den = std::exchange(value->den, nullptr);
    }
}

bool quoly_change_to_mod(quolynode **value) {
    quolynode *q = *value;
    if (q->is_num) {
        change_num(q->numb, false, false);
        return true;
    }
    if (q->is_rat) overwrite_flag(&q->is_rat, 0);
    if (!poly_change_to_mod(&q->num, false)) {
        vanish(q);
    } else if (!q->den) {
        if (is_constant(q->num)) shrink(q);
    } else {
        if (!poly_change_to_mod(&q->den, false)) return false;
        compute_fraction(q);
    }
    return true;
}

/* ---- stretches ---- */

static image_stretch *in_force = nullptr;

constexpr int stash_out_of_reach = -1000;

static void enter_modulo(int32_t n) {
    ring_state r{};
    r.lintmode = r.modularmode = 1;
    r.modulus = n;
    set_ring(r);
}

image_stretch::image_stretch(int32_t n) : gcd_stashing(lookupgcd, stash_out_of_reach) {
    assert(!flotemode && !lintmode && !in_force && !masterfix);
    enter_modulo(n);
    in_force = this;
}

image_stretch::~image_stretch() {
    restore();
    in_force = nullptr;
}

bool image_stretch::image(polynode **p) {
    operands.push({p, nullptr});
    return poly_change_to_mod(p, false);
}

bool image_stretch::image(quolynode **q) {
    operands.push({nullptr, *q});
    return quoly_change_to_mod(q);
}

void image_stretch::restore() {
    restore_from_mod(&masterfix);
    operands.clear();
}

void image_stretch::change_prime(int32_t n) {
    restore();
    modulus = n;
}

/* Parts that an image computed have no chains and are passed over. */
void image_stretch::refresh() {
    for (const operand &o : operands) {
        if (o.poly) {
            refresh_residues(*o.poly);
        } else if (o.quoly->is_num) {
            refresh_residue(o.quoly->numb);
        } else {
            refresh_residues(o.quoly->num);
            refresh_residues(o.quoly->den);
        }
    }
}

/* ---- levels inside stretches ---- */

images_set_aside::images_set_aside() : stretch(std::exchange(in_force, nullptr)) { park_images(&parked); }

images_set_aside::~images_set_aside() {
    resume_images(&parked);
    in_force = stretch;
    if (stretch) stretch->refresh();
}

} // namespace tolvek
