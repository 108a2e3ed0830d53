/* The table fields with 2^8 and 2^16 elements. x generates the multiplicative group of both, so that a product is a sum
   of logarithms. The tables belong to one field at a time and are filled at its first product. */
#include "numbers/modular.h"

namespace tolvek {

constexpr int32_t largest_field = 65536;
static int32_t field_size; /* that the tables belong to; 0: none yet */
static uint16_t log_of[largest_field];
static uint16_t power_of_x[2 * largest_field]; /* of exponents up to a sum of two logarithms */

static void fill_tables() {
    const int32_t polynomial = modulus == 256 ? 0x11d : 0x1100b;
    const int32_t order = modulus - 1;
    int32_t element = 1;
    for (int32_t i = 0; i < 2 * order; i++) {
        power_of_x[i] = static_cast<uint16_t>(element);
        if (i < order) log_of[element] = static_cast<uint16_t>(i);
        element <<= 1;
        if (element & modulus) element ^= polynomial;
    }
    field_size = modulus;
}

int32_t field_product(int32_t a, int32_t b) {
    if (a == 0 || b == 0) return 0;
    if (field_size != modulus) fill_tables();
    return power_of_x[log_of[a] + log_of[b]];
}

int32_t field_inverse(int32_t x) {
    if (field_size != modulus) fill_tables();
    return power_of_x[modulus - 1 - log_of[x]];
}

} // namespace tolvek
