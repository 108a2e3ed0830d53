#include "numbers/modular.h"

#include "numbers/residue_vectors.h"
#include "support/fresh_system.h"
#include "support/rand_numbers.h"

#include <numeric>
#include <vector>

using namespace tolvek;

static constexpr int32_t largest_modulus = 2147483644;

/* Where the ways to reduce change, and the ends of every range. */
static const int32_t telling_moduli[] = {
    2,       3,       4,          7,          256,        48871,      65521,          65534,
    65535,   65536,   2097152,    2642244,    2642245,    2642246,    2642247,        16777259,
    1 << 28, 1 << 30, 1073741827, 1610612741, 2147483629, 2147483643, largest_modulus};

struct residues : numbers_test {
    void SetUp() override {
        numbers_test::SetUp();
        lintmode = modularmode = 1;
    }
    /* 0, 1, the middle and the end of the range more often than not. */
    int32_t residue() {
        const int32_t m = modulus, ends[] = {0, 1, m / 2, m - 1, m - 2 < 0 ? 0 : m - 2};
        return rnd.one_in(2) ? ends[rnd.below(5)] % m : rnd.below(m);
    }
};

static int32_t product(int64_t a, int64_t b) { return static_cast<int32_t>(a * b % modulus); }

/* ---- the modulus ---- */

TEST_F(residues, the_companions_follow_the_modulus) {
    modulus = 2147483629;
    EXPECT_EQ(half_modulus, 1073741814);
    EXPECT_EQ(two28_mod, 1 << 28);
    EXPECT_FALSE(smallmodulus);
    modulus = 48871;
    EXPECT_EQ(half_modulus, 24435);
    EXPECT_EQ(two28_mod, 35924);
    EXPECT_TRUE(smallmodulus);
    EXPECT_EQ(modmult(48870, 48870), 1);
    set_modulus(-1);
    EXPECT_EQ(modulus, -1);
    EXPECT_EQ(half_modulus, 0);
    EXPECT_FALSE(smallmodulus);
}

TEST_F(residues, products_fit_32_bits_below_65535) {
    modulus = 65534;
    EXPECT_TRUE(smallmodulus);
    modulus = 65535;
    EXPECT_FALSE(smallmodulus);
}

TEST_F(residues, a_ring_guard_brings_the_modulus_back_with_its_companions) {
    modulus = 101;
    {
        ring_guard guard;
        modulus = 2147483629;
        EXPECT_EQ(modmult(2147483628, 2147483628), 1);
    }
    EXPECT_EQ(modulus, 101);
    EXPECT_EQ(half_modulus, 50);
    EXPECT_TRUE(smallmodulus);
    EXPECT_EQ(modmult(100, 99), 2);
}

TEST_F(residues, a_ring_is_a_field_when_its_modulus_is_prime) {
    for (auto [m, prime] : {std::pair{2, 1}, {3, 1}, {4, 0}, {91, 0}, {97, 1}, {2147483629, 1}, {largest_modulus, 0}}) {
        modulus = m;
        EXPECT_EQ(mod_is_prime(), prime) << m;
        EXPECT_EQ(mod_is_prime(), prime) << m;
    }
    modulus = -1;
    EXPECT_EQ(mod_is_prime(), 0);
    modulus = 256;
    EXPECT_EQ(mod_is_prime(), 0);
    finf = 1;
    EXPECT_EQ(mod_is_prime(), 1);
}

/* ---- products, sums ---- */

TEST_F(residues, the_product_of_the_largest_residues_is_exact) {
    modulus = largest_modulus;
    EXPECT_EQ(modmult(largest_modulus - 1, largest_modulus - 1), 1);
    EXPECT_EQ(modmult(largest_modulus - 1, largest_modulus - 2), 2);
    EXPECT_EQ(modmult(2147483643, 1073741822), 1073741822); /* -1 times half the modulus */
    EXPECT_EQ(modmult(1 << 30, 1 << 30), 4);                /* 2^31 is 4, so that 2^60 is 2^29 * 4 = 2^31 */
}

TEST_F(residues, products_are_those_of_a_division) {
    for (int32_t m : telling_moduli) {
        modulus = m;
        for (int i = times(4000); i > 0; i--) {
            int32_t a = residue(), b = residue();
            ASSERT_EQ(modmult(a, b), product(a, b)) << a << " " << b << " mod " << m;
            ASSERT_EQ(nmodmult(a, b), product(a, b)) << a << " " << b << " mod " << m;
        }
    }
}

TEST_F(residues, products_are_those_of_a_division_for_any_modulus) {
    for (int i = times(40000); i > 0; i--) {
        modulus = 2 + rnd.below(rnd.one_in(2) ? largest_modulus - 1 : 4000000);
        int32_t a = residue(), b = residue();
        ASSERT_EQ(modmult(a, b), product(a, b)) << a << " " << b << " mod " << modulus;
    }
}

TEST_F(residues, of_small_moduli_have_every_product) {
    for (int32_t m = 2; m <= 64; m++) {
        modulus = m;
        for (int32_t a = 0; a < m; a++)
            for (int32_t b = 0; b < m; b++) ASSERT_EQ(modmult(a, b), a * b % m);
    }
}

TEST_F(residues, every_word_is_reduced) {
    for (int32_t m : telling_moduli) {
        const word_divisor divisor(static_cast<uint32_t>(m));
        const uint64_t n = static_cast<uint64_t>(m), top = UINT64_MAX;
        for (uint64_t v : {uint64_t{0}, n - 1, n, n + 1, n * n - 1, n * n, top, top - 1, top / n * n, top / n * n - 1})
            EXPECT_EQ(divisor.remainder(v), v % n) << v << " mod " << n;
        for (int i = times(2000); i > 0; i--) {
            uint64_t v = rnd() >> rnd.below(64);
            ASSERT_EQ(divisor.remainder(v), v % n) << v << " mod " << n;
            v -= v % n; /* multiples, and what lies just below */
            ASSERT_EQ(divisor.remainder(v), 0u) << v << " mod " << n;
            ASSERT_EQ(divisor.remainder(v - 1), (v - 1) % n) << v << " mod " << n;
        }
    }
    EXPECT_EQ(word_divisor(1u << 31).remainder(UINT64_MAX), (1u << 31) - 1);
}

TEST_F(residues, of_integers_of_either_sign) {
    for (int32_t m : telling_moduli) {
        modulus = m;
        for (int64_t v :
             {int64_t{0}, int64_t{1}, int64_t{m} - 1, int64_t{m}, int64_t{m} + 1, int64_t{m} * m, INT64_MAX}) {
            EXPECT_EQ(residue_of_integer(v), v % m) << v << " mod " << m;
            EXPECT_EQ(residue_of_integer(-v), v % m ? m - v % m : 0) << -v << " mod " << m;
        }
    }
    finf = f256 = 1; /* -v is v there */
    modulus = 256;
    EXPECT_EQ(residue_of_integer(259), 3);
    EXPECT_EQ(residue_of_integer(-259), 3);
    EXPECT_EQ(residue_of_integer(INT64_MIN), 0);
    f256 = 0;
}

TEST_F(residues, sums_and_differences) {
    for (int32_t m : telling_moduli) {
        modulus = m;
        for (int i = times(200); i > 0; i--) {
            int32_t a = residue(), b = residue();
            EXPECT_EQ(mod_add(a, b, m), (int64_t{a} + b) % m);
            EXPECT_EQ(mod_sub(a, b, m), (int64_t{a} - b + m) % m);
            EXPECT_EQ(mod_add(mod_sub(a, b, m), b, m), a);
        }
    }
}

TEST_F(residues, word_products_and_sums_do_not_depend_on_the_ring) {
    modulus = 5;
    EXPECT_EQ(mod_mult(65521, 65535, 48871), int64_t{65521} * 65535 % 48871);
    EXPECT_EQ(mod_mult(3, 4, 13), 12);
    EXPECT_EQ(spec_mod_add(INT32_MAX, INT32_MAX, 7), (2 * int64_t{INT32_MAX}) % 7);
    EXPECT_EQ(spec_mod_add(2, 3, 7), 5);
    EXPECT_EQ(spec_modmult(3, 3), 1); /* modulo 4 */
    finf = 1;
    EXPECT_EQ(spec_mod_add(3, 3, 5), 1);
    finf = 0;
    modulus = 2;
    EXPECT_EQ(spec_modmult(1, 1), 0);
    modulus = largest_modulus;
    EXPECT_EQ(spec_modmult(largest_modulus - 2, largest_modulus - 2), 1);
}

TEST_F(residues, of_chains_are_those_that_python_finds) {
    number_handle x;
    for (int32_t m : telling_moduli)
        for (int i = times(8); i > 0; i--) {
            rand_number(rnd, 40, &x);
            python.expect(hex_of(&x) + "%" + std::to_string(m),
                          std::to_string(chain_modulo(&x, static_cast<uint32_t>(m))));
        }
    special_set(0, &x);
    EXPECT_EQ(chain_modulo(&x, 7), 0u);
    special_set(-7, &x);
    EXPECT_EQ(chain_modulo(&x, 7), 0u);
    EXPECT_EQ(chain_modulo(&x, 1u << 31), (1u << 31) - 7);
}

/* ---- inverses ---- */

TEST_F(residues, every_unit_and_nothing_else_has_an_inverse) {
    for (int32_t m = 2; m <= 300; m++) {
        modulus = m;
        for (int32_t x = 0; x < m; x++) {
            int32_t y = -5;
            ASSERT_EQ(find_inverse(x, &y), std::gcd(x, m) == 1) << x << " mod " << m;
            if (y == -5) continue;
            EXPECT_TRUE(y > 0 && y < m);
            EXPECT_EQ(x * y % m, 1) << x << " mod " << m;
        }
    }
}

TEST_F(residues, the_inverses_of_1_and_of_minus_1_are_themselves) {
    for (int32_t m : telling_moduli) {
        modulus = m;
        int32_t y = 0;
        mod_inverse(1, &y);
        EXPECT_EQ(y, 1);
        mod_inverse(m - 1, &y);
        EXPECT_EQ(y, m - 1);
        EXPECT_EQ(imod_inverse(m - 1), m - 1);
    }
}

TEST_F(residues, the_ways_to_an_inverse_agree) {
    for (int32_t p : {3, 101, 65521, 2642257, 2147483629}) {
        modulus = p;
        for (int i = times(300); i > 0; i--) {
            int32_t x = 1 + rnd.below(p - 1), y = 0, in_place = x;
            mod_inverse(x, &y);
            EXPECT_EQ(modmult(x, y), 1) << x << " mod " << p;
            EXPECT_EQ(mod_inverse(x), y);
            EXPECT_EQ(imod_inverse(x), y);
            verse(&in_place);
            EXPECT_EQ(in_place, y);
            emod_inverse(x, &in_place);
            EXPECT_EQ(in_place, y);
        }
    }
}

struct residues_without_inverse : fresh_exact_system {
    void set_ring_modulo(int32_t m) { set_ring({0, 1, 1, 0, 0, 0, 0, m}); }
};

TEST_F(residues_without_inverse, are_error_85) {
    for (auto [x, m] : {std::pair{2, 4}, {0, 7}, {3, 9}, {2, 2147483644}, {14, 91}, {0, 2}}) {
        int32_t y = x;
        for (int way = 0; way < 4; way++) {
            set_ring_modulo(m);
            EXPECT_TRUE(unwinds([&, residue = x] {
                if (way == 0) mod_inverse(residue, &y);
                if (way == 1) emod_inverse(residue, &y);
                if (way == 2) verse(&y);
                if (way == 3) imod_inverse(residue);
            })) << x
                << " mod " << m;
            EXPECT_NE(last_text.find(message_text(85)), std::string::npos) << last_text;
            EXPECT_EQ(last_text.find("bad2: " + std::to_string(x) + "\n"), way == 3 ? 0 : std::string::npos);
            EXPECT_EQ(y, x);
        }
    }
}

/* ---- powers ---- */

static int32_t plain_power(int32_t x, uint32_t e) {
    int32_t y = 1 % modulus;
    for (; e > 0; e--) y = product(y, x);
    return y;
}

static int32_t power(int32_t x, uint32_t e) {
    int32_t y = -1;
    mod_number_power(x, e, &y);
    return y;
}

TEST_F(residues, small_powers_are_those_of_a_plain_loop) {
    for (int32_t m : {2, 3, 4, 15, 16, 17, 91, 65521, largest_modulus}) {
        modulus = m;
        for (int i = 0; i < 40; i++) {
            int32_t x = m <= 40 ? i % m : residue();
            for (uint32_t e = 0; e <= 40; e++)
                ASSERT_EQ(power(x, e), plain_power(x, e)) << x << "^" << e << " mod " << m;
        }
    }
}

TEST_F(residues, powers_of_0_are_0_but_for_the_exponent_0) {
    modulus = 17;
    EXPECT_EQ(power(0, 16), 0);
    EXPECT_EQ(power(0, 32), 0);
    EXPECT_EQ(power(0, 0), 1);
    EXPECT_EQ(power(5, 0), 1);
}

TEST_F(residues, an_exponent_is_reduced_in_a_field_alone) {
    modulus = 15;
    EXPECT_EQ(power(2, 16), 1);
    EXPECT_EQ(power(2, 14), 4); /* modulo 14 the exponent would be 0 */
    EXPECT_EQ(power(2, 28), 1);
    modulus = 561; /* a Carmichael number */
    EXPECT_EQ(power(2, 560), 1);
    EXPECT_EQ(power(3, 560), 375); /* Python: pow(3, 560, 561) */
    modulus = 17;
    EXPECT_EQ(power(3, 16), 1);
    EXPECT_EQ(power(3, 4000000000u), 1);
    EXPECT_EQ(power(3, 4000000007u), power(3, 7));
}

TEST_F(residues, long_powers_are_those_that_python_finds) {
    for (int32_t m : telling_moduli) {
        modulus = m;
        for (int i = times(5); i > 0; i--) {
            int32_t x = residue();
            uint32_t e = static_cast<uint32_t>(rnd());
            python.expect("pow(" + std::to_string(x) + "," + std::to_string(e) + "," + std::to_string(m) + ")",
                          std::to_string(power(x, e)));
        }
    }
}

/* ---- square roots ---- */

static std::vector<int32_t> primes_below(int32_t n) {
    std::vector<int32_t> primes;
    for (int32_t p = 2; p < n; p++) {
        bool prime = true;
        for (int32_t q : primes) prime = prime && p % q;
        if (prime) primes.push_back(p);
    }
    return primes;
}

TEST_F(residues, the_root_of_every_residue_of_small_fields) {
    for (int32_t p : primes_below(500)) {
        modulus = p;
        std::vector<int32_t> root(static_cast<std::size_t>(p)); /* the smaller one, 0 where there is none */
        for (int32_t r = p - 1; r > 0; r--) {
            int32_t &least = root[static_cast<std::size_t>(r * r % p)];
            least = std::min(r, p - r);
        }
        for (int32_t x = 0; x < p; x++)
            ASSERT_EQ(modular_sqrt(x), root[static_cast<std::size_t>(x)]) << x << " mod " << p;
    }
}

TEST_F(residues, the_root_of_4_modulo_13_is_2) {
    modulus = 13;
    EXPECT_EQ(modular_sqrt(4), 2);
    EXPECT_EQ(sqrt_mod, 13);
    EXPECT_EQ(modular_sqrt(3), 4); /* with what was kept */
    modulus = 17;
    EXPECT_EQ(modular_sqrt(2), 6);
    EXPECT_EQ(sqrt_mod, 17);
    modulus = 13;
    EXPECT_EQ(modular_sqrt(10), 6);
    EXPECT_EQ(modular_sqrt(2), 0);
}

TEST_F(residues, roots_in_large_fields) {
    /* Primes, the last with 2^26 and 2^25 in p - 1. Python: all are primes by trial division. */
    for (int32_t p : {2147483629, 2147483587, 2147483579, 2147483549, 1000000009, 2013265921, 469762049, 167772161}) {
        modulus = p;
        for (int i = times(200); i > 0; i--) {
            int32_t r = 1 + rnd.below(p - 1), x = product(r, r);
            ASSERT_EQ(modular_sqrt(x), std::min(r, p - r)) << x << " mod " << p;
            int32_t any = rnd.below(p), root = modular_sqrt(any);
            if (root)
                ASSERT_EQ(product(root, root), any);
            else
                ASSERT_NE(power(any, static_cast<uint32_t>((p - 1) / 2)), 1) << any << " mod " << p;
        }
    }
}

TEST_F(residues, a_root_in_a_ring_that_is_no_field_is_never_wrong) {
    for (int32_t m : {4, 6, 8, 9, 15, 21, 25, 33, 65, 91, 561, 1105, 65535}) {
        modulus = m;
        for (int32_t x = 0; x < m && x < 2000; x++) {
            int32_t r = modular_sqrt(x);
            if (r) {
                EXPECT_EQ(product(r, r), x) << x << " mod " << m;
            }
        }
    }
}

/* ---- table fields ---- */

/* By shifts, modulo the polynomial of the field. */
static int32_t carry_less_product(int32_t a, int32_t b, int32_t polynomial) {
    int32_t sum = 0;
    for (; b; b >>= 1) {
        if (b & 1) sum ^= a;
        a <<= 1;
        if (a & modulus) a ^= polynomial;
    }
    return sum;
}

TEST_F(residues, the_field_of_256_elements) {
    finf = f256 = 1;
    modulus = 256;
    for (int32_t a = 0; a < 256; a++) {
        for (int32_t b = 0; b < 256; b++) {
            ASSERT_EQ(modmult(a, b), carry_less_product(a, b, 0x11d));
            ASSERT_EQ(mod_add(a, b, 256), a ^ b);
            ASSERT_EQ(mod_sub(a, b, 256), a ^ b);
        }
        EXPECT_EQ(modmult(modular_sqrt(a), modular_sqrt(a)), a);
        if (a) {
            EXPECT_EQ(modmult(a, mod_inverse(a)), 1);
        }
        if (a) {
            EXPECT_EQ(power(a, 255), 1);
        }
        EXPECT_EQ(power(a, 256), a);
        EXPECT_EQ(power(a, 3), modmult(a, modmult(a, a)));
    }
    int32_t y = 3;
    EXPECT_FALSE(find_inverse(0, &y));
    EXPECT_EQ(y, 3);
    f256 = 0;
}

TEST_F(residues, the_field_of_65536_elements) {
    finf = f2t16 = 1;
    modulus = 65536;
    for (int i = times(20000); i > 0; i--) {
        int32_t a = residue(), b = residue();
        ASSERT_EQ(modmult(a, b), carry_less_product(a, b, 0x1100b)) << a << " " << b;
        if (a) {
            ASSERT_EQ(modmult(a, mod_inverse(a)), 1) << a;
        }
        ASSERT_EQ(power(modular_sqrt(a), 2), a);
    }
    modulus = 256; /* the tables follow */
    EXPECT_EQ(modmult(128, 2), 0x1d);
    modulus = 65536;
    EXPECT_EQ(modmult(128, 2), 256);
    EXPECT_EQ(modmult(32768, 2), 0x100b);
    f2t16 = 0;
}

TEST_F(residues, the_table_fields_are_fields) {
    finf = f256 = 1;
    modulus = 256;
    for (int32_t a = 0; a < 256; a++)
        for (int32_t b = 0; b < 256; b++) {
            const int32_t ab = modmult(a, b);
            ASSERT_EQ(ab, modmult(b, a));
            ASSERT_EQ(modmult(mod_add(a, b, 256), b), mod_add(ab, modmult(b, b), 256));
            for (int32_t c = 0; c < 256; c++) {
                ASSERT_EQ(modmult(ab, c), modmult(a, modmult(b, c)));
                ASSERT_EQ(modmult(a, mod_add(b, c, 256)), mod_add(ab, modmult(a, c), 256));
            }
        }
    f256 = 0;
    f2t16 = 1;
    modulus = 65536;
    for (int i = times(20000); i > 0; i--) {
        const int32_t a = residue(), b = residue(), c = residue();
        ASSERT_EQ(modmult(a, b), modmult(b, a));
        ASSERT_EQ(modmult(modmult(a, b), c), modmult(a, modmult(b, c))) << a << " " << b << " " << c;
        ASSERT_EQ(modmult(a, b ^ c), modmult(a, b) ^ modmult(a, c)) << a << " " << b << " " << c;
        ASSERT_EQ(modmult(a, 1), a);
    }
    for (int32_t a = 1; a < 65536; a++) ASSERT_EQ(modmult(a, mod_inverse(a)), 1) << a;
    f2t16 = 0;
}

/* ---- sums of products ---- */

static int32_t plain_sum_of_products(const std::vector<int32_t> &a, const std::vector<int32_t> &b) {
    int32_t sum = 0;
    for (std::size_t i = 0; i < a.size(); i++) sum = mod_add(sum, modmult(a[i], b[i]), modulus);
    return sum;
}

TEST_F(residues, sums_of_products_are_those_of_a_plain_loop) {
    for (int32_t m : telling_moduli) {
        modulus = m;
        for (int n = 0; n < 40; n++) {
            std::vector<int32_t> a(static_cast<std::size_t>(n)), b(a);
            for (int32_t &x : a) x = residue();
            for (int32_t &x : b) x = residue();
            ASSERT_EQ(sum_of_products(a.data(), b.data(), a.size()), plain_sum_of_products(a, b)) << n << " mod " << m;
        }
    }
    finf = 1;
    modulus = 256;
    std::vector<int32_t> a(100), b(100);
    for (int32_t &x : a) x = residue();
    for (int32_t &x : b) x = residue();
    EXPECT_EQ(sum_of_products(a.data(), b.data(), 100), plain_sum_of_products(a, b));
}

TEST_F(residues, sums_of_the_largest_products_do_not_overflow) {
    constexpr std::size_t n = (1 << 22) + 5;
    modulus = largest_modulus;
    std::vector<int32_t> minus_1(n, largest_modulus - 1);
    EXPECT_EQ(sum_of_products(minus_1.data(), minus_1.data(), n), static_cast<int32_t>(n)); /* each product is 1 */
    EXPECT_EQ(sum_of_products(minus_1.data() + 1, minus_1.data() + 3, 1001), 1001);
}
