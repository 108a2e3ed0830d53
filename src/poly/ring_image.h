/* Temporary images modulo n: numbers get residues beside their chains, and what vanishes is unlinked, not freed. Each
   change of a link or a field is noted on masterfix, newest first; undoing the notes in that order leaves the operand as it
   was, bit by bit. Nothing is allocated where nothing vanishes.

   The ring in force is the modular one. An operand in image form may be read and copied; it must not be consumed. Whoever
   makes images holds an image_stretch (quoly/ring_image.h), which sees to it that they are undone. */
#pragma once

#include "poly/model.h"

namespace tolvek {

extern fixnode *masterfix; /* the images now in force */

/* *p in image form; false, and null in *p, where it vanished. In a table field the warnings of change_num come, of negative
   numbers where the flag says so. Passes safe points, between which the notes are complete. */
bool poly_change_to_mod(polynode **p, bool warn_negative);

/* Undoes the notes of the list, frees what the images own, and gives the notes back. Never throws. */
void restore_from_mod(fixnode **list);

/* Notes for steps of an image that are taken elsewhere: *link := value, *flag := value, and the kinds of a quoly. */
void overwrite_link(polynode **link, polynode *value);
void overwrite_flag(int32_t *flag, int32_t value);
void note_fix(fix_kind kind, void *place, void *saved);

/* Exchanges images and operands without undoing the notes: all on masterfix are left on *parked, from which the second
   routine takes them back. The same nodes and numbers stand at the same places afterwards. Never throw. */
void park_images(fixnode **parked);
void resume_images(fixnode **parked);

/* The residues of all numbers of a polynomial that have a chain, once more. Never throws. */
void refresh_residues(polynode *p);
void refresh_residue(number *x);

} // namespace tolvek
