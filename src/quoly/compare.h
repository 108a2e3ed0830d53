/* Comparison of values. */
#pragma once

#include "quoly/quoly.h"

namespace tolvek {

int quoly_equal(const quolynode *a, const quolynode *b);   /* any values */
int quoly_negtive(const quolynode *a, const quolynode *b); /* a = -b */
int quoly_is_one(const quolynode *q);

/* A plain number, or outside lintmode a rational. */
bool is_comparable(const quolynode *q);
/* -1, 0 or 1 for a below, equal to or above b; both are comparable. Residues compare by their representatives. */
int compare_quolys(const quolynode *a, const quolynode *b);

} // namespace tolvek
