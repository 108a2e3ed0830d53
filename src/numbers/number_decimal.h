/* Numbers as text: conversion of chains to decimal form and back, and their display with line management.

   A decimal-form number has radix 10^8, 8 figures a node; its digits carry the sign. */
#pragma once

#include "numbers/number.h"
#include "top/text_io.h"

namespace tolvek {

extern int disp_size;        /* groups of 8 figures in the decimal form of a rational; 0: none */
extern int dispcutoff;       /* right margin of the display, in columns */
extern int uglyprint;        /* compact style that reads back */
extern char continuation;    /* the character that continues a line: back-quote, or a blank under uglyprint */
extern int alt_form_display; /* residues above half_modulus are shown as negative */

void make_base_10(const number *x, number *dst); /* chain, of modest length */
/* The same by divide and conquer over the first len nodes from head to tail. */
void verybig_base_10(const numnode *head, const numnode *tail, int len, number *dst);

/* 2^(28(i+1)) in decimal form, 0 <= i <= 129; computed when first asked for. */
const number *two_28_entry(int i);

/* x := the value of `count` decimal figures ('0' to '9'), as a non-negative chain, whatever the ring. */
void number_from_figures(const char *figures, std::size_t count, number *x);

/* Writes a chain. `column` counts the characters of the line and grows. is_decimal: x is in decimal form already.
   pad: leading zeros up to disp_size groups. right_justify: the first group is padded with blanks.
   blank_after_minus: the sign is written "- ". want_continuation: a broken line ends in the continuation mark. */
void showint(text_out *out, const number *x, int first_bare, int pad, int is_decimal, int right_justify,
             int blank_after_minus, int want_continuation, int *column);

/* Writes a number in the form in force. */
void display(text_out *out, int want_continuation, int right_justify, const number *x, int *column,
             int blank_after_minus);

} // namespace tolvek
