/* Square roots in prime fields: the method of A. Tonelli (1891) and D. Shanks (1973), and the single power that does
   when the modulus is 3 modulo 4. The last step squares the root, so that 0 is returned and never a wrong root, for a
   composite modulus too. */
#include "numbers/modular.h"

namespace tolvek {

int32_t sqrt_mod = -1; /* the modulus that the constants below belong to */

static int32_t odd_part; /* modulus - 1 is 2^twos times this */
static int twos;
static int32_t root_of_one; /* a non-residue to the power odd_part: its order is 2^twos */

static int32_t power_of(int32_t x, int32_t e) {
    int32_t y;
    mod_number_power(x, static_cast<uint32_t>(e), &y);
    return y;
}

/* The first of 2, 3, ... whose power (modulus - 1) / 2 is -1; 0 when there is none, in a ring that is no field. */
static int32_t non_residue() {
    const int32_t half = (modulus - 1) / 2;
    for (int32_t g = 2; g < modulus && g < 1000; g++)
        if (power_of(g, half) == modulus - 1) return g;
    return 0;
}

static void build_constants() {
    odd_part = modulus - 1;
    for (twos = 0; odd_part % 2 == 0; twos++) odd_part /= 2;
    root_of_one = power_of(non_residue(), odd_part);
    sqrt_mod = modulus;
}

/* Throughout r^2 = t x, and t is a power of c^2; t loses a factor of its order in each turn. */
static int32_t tonelli_shanks(int32_t x) {
    if (sqrt_mod != modulus) build_constants();
    int32_t r = power_of(x, (odd_part - 1) / 2);
    int32_t t = modmult(modmult(r, r), x);
    r = modmult(r, x);
    int32_t c = root_of_one;
    for (int i = twos - 2; i >= 0; i--) {
        int32_t test = t;
        for (int k = 0; k < i; k++) test = modmult(test, test);
        int32_t square = modmult(c, c);
        if (test != 1) {
            r = modmult(r, c);
            t = modmult(t, square);
        }
        c = square;
    }
    return r;
}

int32_t modular_sqrt(int32_t x) {
    if (finf) return power_of(x, modulus / 2);
    if (x == 0 || modulus == 2) return x;
    int32_t r = modulus % 4 == 3 ? power_of(x, modulus / 4 + 1) : tonelli_shanks(x);
    if (modmult(r, r) != x) return 0;
    return r <= half_modulus ? r : modulus - r;
}

} // namespace tolvek
