#include "numbers/modular.h"

namespace tolvek {

/* Extended Euclid: u * x is congruent to a modulo `modulus` throughout. */
int32_t mod_inverse(int32_t x) {
    int64_t a = x, b = modulus, u = 1, v = 0;
    while (b != 0) {
        int64_t q = a / b, r = a - q * b, w = u - q * v;
        a = b;
        b = r;
        u = v;
        v = w;
    }
    if (a == 1) return static_cast<int32_t>(u < 0 ? u + modulus : u);
    error(85, blank);
    return 1;
}

} // namespace tolvek
