#include "top/ring.h"

namespace tolvek {

int flotemode = 0;
int lintmode = 0;
int modularmode = 0;
int integerflag = 0;
int finf = 0;
int f256 = 0, f2t16 = 0;
int32_t modulus = -1;
int32_t half_modulus = 0;
int32_t was_modulus = -1;
int was_in_rat = 1;
int mod_is_changed = 0;
int laurent = 0;
int field_depth = 0;
int try_rat = 0, rat_yes = 0;

ring_state user_ring{};

ring_state current_ring() {
    return {flotemode, lintmode, modularmode, integerflag, finf, f256, f2t16, modulus, half_modulus};
}

void set_ring(const ring_state &r) {
    flotemode = r.flotemode;
    lintmode = r.lintmode;
    modularmode = r.modularmode;
    integerflag = r.integerflag;
    finf = r.finf;
    f256 = r.f256;
    f2t16 = r.f2t16;
    modulus = r.modulus;
    half_modulus = r.half_modulus;
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
