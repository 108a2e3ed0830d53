#include "top/ring.h"

#include "numbers/primes.h"

namespace tolvek {

int flotemode = 0;
int lintmode = 0;
int modularmode = 0;
int integerflag = 0;
int finf = 0;
int f256 = 0, f2t16 = 0;
constinit ring_modulus modulus;
int32_t half_modulus = 0;
int smallmodulus = 0;
int32_t two28_mod = 0;
uint64_t modulus_inverse = 0;
int32_t was_modulus = -1;
int was_in_rat = 1;
int mod_is_changed = 0;
int laurent = 0;
int field_depth = 0;
int try_rat = 0, rat_yes = 0;

ring_state user_ring{};

void set_modulus(int32_t n) {
    modulus.value = n;
    half_modulus = n > 0 ? n / 2 : 0;
    smallmodulus = n > 0 && n < 65535;
    two28_mod = n > 0 ? 0x10000000 % n : 0;
    modulus_inverse = n > 0 ? UINT64_MAX / static_cast<uint64_t>(n) + 1 : 0;
}

int mod_is_prime() {
    static int32_t tested = -1;
    static int outcome = 0;
    if (finf) return 1;
    if (modulus != tested) {
        outcome = is_prime(modulus);
        tested = modulus;
    }
    return outcome;
}

ring_state current_ring() {
    return {flotemode, lintmode, modularmode, integerflag, finf, f256, f2t16, modulus};
}

void set_ring(const ring_state &r) {
    flotemode = r.flotemode;
    lintmode = r.lintmode;
    modularmode = r.modularmode;
    integerflag = r.integerflag;
    finf = r.finf;
    f256 = r.f256;
    f2t16 = r.f2t16;
    if (modulus != r.modulus) modulus = r.modulus;
}

void enter_home_ring(home_ring home) {
    user_ring = ring_state{};
    user_ring.modulus = -1;
    if (home == home_ring::flote) user_ring.flotemode = user_ring.lintmode = 1;
    return_to_user_ring();
}

void return_to_user_ring() {
    set_ring(user_ring);
    mod_is_changed = 0;
    try_rat = rat_yes = 0;
}

} // namespace tolvek
