/* The ground ring in force. Every arithmetic routine branches on these flags, in the order flotemode,
   lintmode, integerflag, general.

     flotemode  lintmode  modularmode   ring
     on         on        off           80-bit extended floats
     off        on        off           32-bit integers (a stretch inside routines only)
     off        on        on            integers modulo `modulus`; finf: a table field of characteristic 2
     off        off       off           exact integers and rationals: the chain form

   A routine that leaves the ring for a stretch holds a ring_guard; nothing turns flags off and on by hand. */
#pragma once

#include <cstdint>

namespace tolvek {

extern int flotemode;
extern int lintmode;
extern int modularmode;
extern int integerflag;     /* statements run on the fast path of floats; inside Minpoly: one-digit values */
extern int finf;            /* the modular ring is a finite field held in tables: f256 or f2t16 says which */
extern int f256, f2t16;
extern int32_t was_modulus; /* above 0: a level was opened out of an internal modular stretch with this modulus */
extern int was_in_rat;      /* the modular arithmetic in force was entered internally */
extern int mod_is_changed;  /* nesting count of modular_pause */
extern int laurent;         /* negative exponents are allowed */
extern int field_depth;     /* from this level on variables are field variables; 0: none */
extern int try_rat, rat_yes; /* the fastest probabilistic test for exact division; what it found */

/* The modulus, 2 to 2147483644, or -1 outside modular mode: read as an integer. set_modulus, which an assignment
   calls, is the one place where it changes, and keeps the values that are computed from it. */
void set_modulus(int32_t n);
class ring_modulus {
  public:
    operator int32_t() const { return value; }
    ring_modulus &operator=(int32_t n) {
        set_modulus(n);
        return *this;
    }
    ring_modulus() = default;
    ring_modulus(const ring_modulus &) = delete;
    ring_modulus &operator=(const ring_modulus &) = delete;

  private:
    friend void set_modulus(int32_t n);
    int32_t value = -1;
};
extern ring_modulus modulus;

/* Computed from the modulus; 0 while there is none. */
extern int32_t half_modulus;     /* modulus / 2: residues above it are the negative ones of the symmetric reading */
extern int smallmodulus;         /* the modulus is below 65535: products of residues fit 32 bits */
extern int32_t two28_mod;        /* 2^28, the radix of chains, as a residue */
extern uint64_t modulus_inverse; /* 2^64 / modulus, rounded up */
int mod_is_prime();              /* the ring is a field: the modulus is prime, or finf is on; found when first asked */

/* Which ring the prompt computes in: the one difference between the two programs. */
enum class home_ring { flote, exact };

/* Everything that says which ring is in force, as one value. */
struct ring_state {
    int flotemode, lintmode, modularmode, integerflag, finf, f256, f2t16;
    int32_t modulus;
};
ring_state current_ring();
void set_ring(const ring_state &r);

/* Puts the ring back as found, on every way out. */
struct ring_guard {
    ring_guard() : found(current_ring()) {}
    ~ring_guard() { set_ring(found); }
    ring_guard(const ring_guard &) = delete;
    ring_guard &operator=(const ring_guard &) = delete;

  private:
    ring_state found;
};

/* Arithmetic in the chain form for the life of the guard: flotemode, lintmode and modularmode off. */
struct chain_form : ring_guard {
    chain_form() { flotemode = lintmode = modularmode = 0; }
};

/* Suspends the reduction modulo n while an exponent, an index or a setting is read (lintmode stays as it is):
   the bracket check_modular / restore_modular. */
struct modular_pause {
    modular_pause() : found(modularmode), count(mod_is_changed) {
        if (found) mod_is_changed++;
        modularmode = 0;
    }
    ~modular_pause() {
        modularmode = found;
        mod_is_changed = count;
    }
    modular_pause(const modular_pause &) = delete;
    modular_pause &operator=(const modular_pause &) = delete;

  private:
    int found, count;
};

/* Are values computed as machine integers that the ring modulo n is to hold? */
inline bool ring_is_paused() { return mod_is_changed > 0 && !modularmode; }

/* The ring that the user has chosen, which only a change of ring writes. Errors return to it. */
extern ring_state user_ring;

/* Sets user_ring and the ring in force to the home ring of the program. */
void enter_home_ring(home_ring home);
/* Sets the ring in force to what the prompt computes in: floats, or user_ring with the exact home ring. */
void return_to_user_ring();

} // namespace tolvek
