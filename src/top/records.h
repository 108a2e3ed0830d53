/* The plain records of the system's values and stored programs, shared by every folder.

   Records stay plain: they have no constructor and no owner of their own. What a routine holds of them for a
   time sits in a handle (numbers/handles.h, quoly/quoly.h). Each record names the free list it comes from. */
#pragma once

#include <cstdint>

namespace tolvek {

/* One digit cell of a chain, most significant first. The radix is 2^28, or 10^8 in a decimal-form number.
   Every digit carries the sign of the whole number. Free list: numhead. */
struct numnode {
    int32_t digit;
    numnode *next; /* next less significant digit; null at the tail */
};

/* One number in three forms side by side. Which one is valid follows from the ring flags (ring.h):
   flote_val while flotemode is on, lint_val while lintmode is on, the chain while both are off.
   A record without a chain has num_len 0, and must have it before its first use. Free list: imhead. */
struct number {
    numnode *num_head;     /* most significant digit; never 0 unless the number is 0 */
    numnode *num_tail;     /* least significant digit: lets a chain be freed by one splice */
    long double flote_val; /* 80-bit extended float */
    number *num_link;      /* link of imhead, and of lists of numbers */
    int32_t lint_val;      /* a residue 0 .. modulus - 1 in a modular ring */
    int32_t num_len;       /* nodes in the chain; 0 or less: no chain is held */
};

/* One term of a polynomial. Free list: polygarb. */
struct polynode {
    int32_t expo;      /* exponent of this level's variable; 0 for a number term */
    int32_t is_number; /* 1: the coefficient is `num`; 0: it is the polynomial `poly` of the next variable */
    polynode *next;    /* next term, of lower exponent */
    union {
        number *num;
        polynode *poly;
    };
};

/* One polynomial variable. Free list: pt_garb. */
struct pt {
    char pt_name[12];
    int32_t pt_hash;       /* -1: none computed */
    int32_t pt_level;      /* place in polynames, from 1; renumbered whenever the list changes */
    int32_t pt_cutoff;     /* the cut-off of Karatsuba products under a relation on this variable */
    int32_t pt_mod_degree; /* degree of the relation on this variable */
    int32_t pt_aux;        /* -1 at first */
    uint32_t pt_mod_flags;
    polynode *pt_mod_poly, *pt_mod_poly2, *pt_mod_poly3, *pt_mod_poly4; /* the relation, owned by the record */
    int32_t pt_num_count;                                               /* length of pt_nums */
    number *pt_nums;                                                    /* linked by num_link, owned by the record */
    pt *pt_next; /* the next variable in level order; also the free list's link */
};

/* The one general scalar value: a plain number, a polynomial, a rational number, or a quotient of
   polynomials, always reduced. Free list: quolygarb. */
struct quolynode {
    quolynode *link;    /* the free list's link */
    int32_t is_num;     /* 1: the value is the number `numb`; 0: it is num, or num / den */
    int32_t is_rat;     /* 1: num and den are both constants, outside lintmode */
    int32_t array_mark; /* 1, in a plain number only: the value stands for an array parameter */
    int32_t stamp;      /* of an original: its ring, as the modulus, -1 for the rationals */
    union {
        number *numb;
        polynode *num;
    };
    polynode *den;       /* null: no denominator; meaningless in a plain number */
    quolynode *original; /* a stored value that stands for one of another ring (top/ring_values.h): that one, owned;
                            null otherwise. Copies have none, and whoever changes a value in place drops it */
};

/* What to do to undo one step of a temporary image modulo n. Free list: fixgarb. */
enum class fix_kind {
    overwritten = 0, /* a link, or a flag, stood where `place` points to: `saved` is what it was */
    shrunk = 1,      /* the quoly at `place` became the plain number of the lone number term `saved` */
    new_number = 2,  /* the quoly at `place` became the number `saved`, which is its own */
    computed = 3,    /* the quoly at `place` got parts of its own */
};
struct fixnode {
    void *place;
    void *saved;
    fix_kind kind;
    bool is_flag; /* what was overwritten is an int32_t, kept in saved_flag */
    int32_t saved_flag;
    fixnode *next; /* the change before; also the free list's link */
};

/* One entry of a row of a sparse array; rows ascend strictly by column. Free list: colm_garb. */
struct colm {
    int32_t column; /* counts from 1, whatever the index origin is */
    quolynode *value;
    colm *next;
};

constexpr int token_bytes = 12;          /* text of a token, its NUL included */
constexpr uint16_t hash_unknown = 65535; /* hash_slot of a token that has not been hashed */

constexpr int16_t builtin_unknown = -2; /* the table has not been asked */

struct token_record {
    char text[token_bytes];
    uint16_t hash_slot; /* modulo 151 for scalars and arrays, 71 for functions; hash_unknown until computed */
    int16_t builtin = builtin_unknown; /* an upper-case name of a stored list: its code as a built-in function, or -1 */
};

struct reference;

/* One token of a stored list. Free list: name_garb. */
struct name {
    token_record tok;
    bool blank_after; /* a blank followed in the source: kept for listings */
    name *next;
    reference *bound = nullptr; /* what the token refers to, once compiled (language/compile.h); null otherwise */
    bool long_path = false;     /* what begins here is nothing for the short path (language/short_path.h) */
    bool plain = false;         /* the sum that begins here changes nothing that is stored ... */
    bool plain_known = false;   /* ... once this is set (language/expressions.cpp) */
};

struct array_record;

/* A scalar variable, chained in sca_store by hash. Free list: var_garb. */
struct variable {
    token_record tok;
    variable *next;
    variable *next_of_call; /* a parameter: the next one of the same call */
    bool by_reference;      /* a parameter whose value goes back to the caller's variable, or array, `home` */
    token_record home;
    int64_t home_index;  /* the element of that array; -1: home is a variable */
    array_record *array; /* a parameter that stands for an array: the record of that; null otherwise */
    quolynode *value;
};

} // namespace tolvek
