#include "poly/ring_image.h"
#include "numbers/modular.h"
#include "poly/ring_change.h"
#include "top/interrupts.h"
#include "top/stack_limit.h"

#include <utility>

namespace tolvek {

fixnode *masterfix = nullptr;

/* ---- notes ---- */

void note_fix(fix_kind kind, void *place, void *saved) {
    fixnode *f = newfix();
    *f = {place, saved, kind, false, 0, masterfix};
    masterfix = f;
}

void overwrite_link(polynode **link, polynode *value) {
    note_fix(fix_kind::overwritten, link, *link);
    *link = value;
}

void overwrite_flag(int32_t *flag, int32_t value) {
    note_fix(fix_kind::overwritten, flag, nullptr);
    masterfix->is_flag = true;
    masterfix->saved_flag = *flag;
    *flag = value;
}

/* ---- exchange: one step forth or back ---- */

static void exchange_overwritten(fixnode *f) {
    if (f->is_flag) {
        std::swap(*static_cast<int32_t *>(f->place), f->saved_flag);
        return;
    }
    polynode **link = static_cast<polynode **>(f->place), *was = *link;
    *link = static_cast<polynode *>(f->saved);
    f->saved = was;
}

/* The parts of a quoly come back by the notes of its links. */
static void take_number_away(quolynode *q) {
    q->is_num = 0;
    q->num = q->den = nullptr;
}

static void undo_step(fixnode *f) {
    quolynode *q = static_cast<quolynode *>(f->place);
    switch (f->kind) {
    case fix_kind::overwritten: return exchange_overwritten(f);
    case fix_kind::shrunk:
        take_number_away(q);
        q->num = static_cast<polynode *>(f->saved);
        return;
    case fix_kind::new_number: return take_number_away(q);
    case fix_kind::computed: return; /* the links hold the parts */
    }
}

static void become_number(quolynode *q, number *x) {
    q->is_num = 1;
    q->numb = x;
    q->den = nullptr;
}

static void redo_step(fixnode *f) {
    quolynode *q = static_cast<quolynode *>(f->place);
    switch (f->kind) {
    case fix_kind::overwritten: return exchange_overwritten(f);
    case fix_kind::shrunk: return become_number(q, static_cast<polynode *>(f->saved)->num);
    case fix_kind::new_number: return become_number(q, static_cast<number *>(f->saved));
    case fix_kind::computed: return;
    }
}

/* What the image owns goes. */
static void free_step(fixnode *f) {
    quolynode *q = static_cast<quolynode *>(f->place);
    if (f->kind == fix_kind::new_number) {
        number *x = static_cast<number *>(f->saved);
        if (x) free_imag(&x);
    } else if (f->kind == fix_kind::computed) {
        free_poly(&q->num);
        free_poly(&q->den);
    }
}

void restore_from_mod(fixnode **list) {
    while (fixnode *f = *list) {
        *list = f->next;
        free_step(f);
        undo_step(f);
        push_fix(f);
    }
}

template <class Step> static void move_notes(fixnode **from, fixnode **to, Step step) {
    while (fixnode *f = *from) {
        *from = f->next;
        step(f);
        f->next = *to;
        *to = f;
    }
}

void park_images(fixnode **parked) { move_notes(&masterfix, parked, undo_step); }
void resume_images(fixnode **parked) { move_notes(parked, &masterfix, redo_step); }

/* ---- images ---- */

namespace {

/* Finds residues, and passes a safe point now and then. */
class imager {
  public:
    explicit imager(bool tell_negative) : warn_negative(tell_negative), n(ring_divisor()) {}

    /* The list at a link whose terms have been changed: what vanished is out of it. */
    void change_terms(polynode **link);

  private:
    /* False for 0. */
    bool set_residue(number *x) {
        pace.step();
        if (x->num_len == 1 && !finf) [[likely]] {
            const int32_t d = x->num_tail->digit;
            const uint32_t r = n.remainder(static_cast<uint32_t>(d < 0 ? -d : d));
            x->lint_val = static_cast<int32_t>(d < 0 && r ? static_cast<uint32_t>(n.n) - r : r);
        } else {
            x->lint_val = residue_of(x, warn_negative);
        }
        return x->lint_val != 0;
    }

    bool warn_negative;
    word_divisor n;
    paced_safe_points pace;
};

} // namespace

/* A run of terms that vanish shares one note, that of the link in front of it. Lone number terms, which are the most,
   are looked at without a call. */
void imager::change_terms(polynode **link) {
    polynode **noted = nullptr;
    auto lead_to = [&](polynode *value) {
        if (link != noted) overwrite_link(link, value);
        *link = value;
        noted = link;
    };
    while (polynode *t = *link) {
        polynode *below = t->is_number ? t : t->poly;
        if (below->is_number && (below == t || !below->next)) {
            if (set_residue(below->num))
                link = &t->next;
            else
                lead_to(t->next);
            continue;
        }
        change_terms(&t->poly);
        if (!t->poly) {
            lead_to(t->next);
        } else if (t->expo == 0 && is_constant(t->poly)) { /* takes the place of its wrapper */
            polynode *constant = t->poly;
            lead_to(constant);
            link = &constant->next;
            if (t->next) lead_to(t->next);
        } else {
            link = &t->next;
        }
    }
}

bool poly_change_to_mod(polynode **p, bool warn_negative) {
    check_stack();
    imager(warn_negative).change_terms(p);
    return *p != nullptr;
}

void refresh_residue(number *x) {
    if (x->num_len > 0) x->lint_val = residue_of(x, false);
}

void refresh_residues(polynode *p) {
    for (; p; p = p->next) {
        if (p->is_number)
            refresh_residue(p->num);
        else
            refresh_residues(p->poly);
    }
}

} // namespace tolvek
