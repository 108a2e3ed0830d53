#include "numbers/chinese.h"

#include "numbers/int_mult.h"
#include "numbers/modular.h"
#include "numbers/primes.h"
#include "support/fresh_system.h"
#include "support/rand_numbers.h"
#include "top/start_tables.h"

#include <vector>

using namespace tolvek;

struct reassembly : numbers_test {
    number_handle x, y;

    static std::vector<int32_t> residues_of(const number *v, const std::vector<int32_t> &moduli) {
        std::vector<int32_t> residues;
        for (int32_t m : moduli) residues.push_back(static_cast<int32_t>(chain_modulo(v, static_cast<uint32_t>(m))));
        return residues;
    }
    static void reassemble(const std::vector<int32_t> &residues, const std::vector<int32_t> &moduli, int symmetric,
                           number *v) {
        number_from_residues(residues.data(), moduli.data(), static_cast<int>(moduli.size()), symmetric, v);
    }
    static std::vector<int32_t> primes_from(int32_t p, int count) {
        std::vector<int32_t> primes;
        for (; count > 0; count--) primes.push_back(p = nextprime(p));
        return primes;
    }
};

TEST_F(reassembly, gives_back_what_was_reduced) {
    /* 31 primes of 31 bits hold 34 digits of 28 bits, with a sign 33; 31 of 16 bits 17. */
    for (auto [first, digits] : {std::pair{2147481001, 33}, {42357, 16}, {1, 4}}) {
        const std::vector<int32_t> primes = primes_from(first, 31);
        for (int i = times(200); i > 0; i--) {
            rand_number(rnd, digits, &x);
            std::vector<int32_t> residues = residues_of(&x, primes);
            reassemble(residues, primes, 1, &y);
            expect_whole(&y);
            ASSERT_EQ(hex_of(&y), hex_of(&x));
            rand_number(rnd, digits, &x, signs::not_negative);
            residues = residues_of(&x, primes);
            reassemble(residues, primes, 0, &y);
            expect_whole(&y);
            ASSERT_EQ(hex_of(&y), hex_of(&x));
        }
    }
}

TEST_F(reassembly, in_any_order_of_moduli_that_need_not_be_prime) {
    std::vector<int32_t> moduli{2147483644, 3, 25, 49, 2147483629, 121, 2}; /* 2147483644 is 2^2 (2^29 - 1) */
    moduli.back() = 13;
    for (int i = times(100); i > 0; i--) {
        std::shuffle(moduli.begin(), moduli.end(), rnd);
        rand_number(rnd, 2, &x);
        reassemble(residues_of(&x, moduli), moduli, 1, &y);
        ASSERT_EQ(hex_of(&y), hex_of(&x));
    }
}

TEST_F(reassembly, the_symmetric_range_is_open_below_and_closed_above) {
    const std::vector<int32_t> moduli{4, 3}; /* -6 < x <= 6 */
    for (int32_t v = 0; v < 12; v++) {
        reassemble({v % 4, v % 3}, moduli, 0, &x);
        EXPECT_TRUE(is_longint(&x, v)) << v;
        reassemble({v % 4, v % 3}, moduli, 1, &x);
        EXPECT_TRUE(is_longint(&x, v > 6 ? v - 12 : v)) << v;
    }
}

TEST_F(reassembly, from_one_residue_or_none) {
    reassemble({5}, {7}, 0, &x);
    EXPECT_TRUE(is_longint(&x, 5));
    reassemble({5}, {7}, 1, &x);
    EXPECT_TRUE(is_longint(&x, -2));
    reassemble({}, {}, 0, &x);
    EXPECT_TRUE(is_longint(&x, 0));
    reassemble({}, {}, 1, &x);
    EXPECT_TRUE(is_longint(&x, 0));
}

TEST_F(reassembly, the_digits_of_the_mixed_radix) {
    const int32_t moduli[] = {3, 5, 7}, residues[] = {2, 3, 2}; /* 23 = 2 + 3 (2 + 5 * 1) */
    int32_t digits[3];
    mixed_radix_digits(residues, moduli, 3, digits);
    EXPECT_EQ(digits[0], 2);
    EXPECT_EQ(digits[1], 2);
    EXPECT_EQ(digits[2], 1);
    number_from_mixed_radix(digits, moduli, 3, &x, &y);
    EXPECT_TRUE(is_longint(&x, 23));
    EXPECT_TRUE(is_longint(&y, 105));
    number_from_mixed_radix(digits, moduli, 3, &x, nullptr);
    EXPECT_TRUE(is_longint(&x, 23));
}

TEST_F(reassembly, does_not_depend_on_the_ring_in_force) {
    lintmode = modularmode = 1;
    modulus = 2;
    reassemble({2, 3, 2}, {3, 5, 7}, 1, &x);
    EXPECT_TRUE(is_longint(&x, 23));
    EXPECT_EQ(modulus, 2);
}

/* The tables of the start serve the same purpose step by step: v := v + ((r - v) / (product so far) mod p) * product. */
TEST_F(fresh_exact_system, reassembly_by_the_tables_of_primes_and_products) {
    test_random rnd;
    number_handle x, v, step;
    rand_number(rnd, 300, &x, signs::not_negative);
    set_int64(static_cast<int64_t>(chain_modulo(&x, static_cast<uint32_t>(prime[5]->lint_val))), &v);
    std::vector<int32_t> primes{prime[5]->lint_val}, residues{static_cast<int32_t>(chain_modulo(&x, primes[0]))};
    for (int i = 6; i < prime_count; i++) {
        const uint32_t p = static_cast<uint32_t>(prime[i]->lint_val);
        const int32_t r = static_cast<int32_t>(chain_modulo(&x, p));
        primes.push_back(prime[i]->lint_val);
        residues.push_back(r);
        ring_guard guard;
        set_ring({0, 1, 1, 0, 0, 0, 0, prime[i]->lint_val});
        const int32_t missing = mod_sub(r, static_cast<int32_t>(chain_modulo(&v, p)), modulus);
        const int32_t digit = modmult(missing, invs_prod(i - 6));
        chain_form chains;
        set_int64(digit, &step);
        fast_mult(num_prod(i - 6), &step, &step);
        fastsum(&v, &step);
    }
    EXPECT_EQ(hex_of(&v), hex_of(&x));
    number_from_residues(residues.data(), primes.data(), static_cast<int>(primes.size()), 0, &v);
    EXPECT_EQ(hex_of(&v), hex_of(&x));
}

/* ---- inverses of products ---- */

struct word_list {
    numnode *head = nullptr;
    explicit word_list(std::initializer_list<int32_t> words) {
        for (int32_t w : words) {
            numnode *d = newdigit();
            d->digit = w;
            d->next = head;
            head = d;
        }
    }
    ~word_list() {
        while (numnode *d = head) {
            head = d->next;
            push_digit(d);
        }
    }
};

TEST_F(reassembly, the_inverse_of_a_product) {
    modularmode = lintmode = 1;
    modulus = 101;
    word_list list{2, 3, 5, 48871}; /* 48871 is 88 modulo 101 */
    EXPECT_EQ(inverse_prod(list.head) * (2 * 3 * 5 * 88 % 101) % 101, 1);
    EXPECT_EQ(inverse_prod(nullptr), 1);
    word_list points{1, 2, 10};
    EXPECT_EQ(multi_inverse_prod(points.head, 5) * (4 * 3 * 96 % 101) % 101, 1);
    EXPECT_EQ(multi_inverse_prod(nullptr, 5), 1);
    finf = 1;
    modulus = 256;
    EXPECT_EQ(modmult(multi_inverse_prod(points.head, 5), modmult(modmult(4, 7), 15)), 1); /* 5 exclusive-or 1, 2, 10 */
}

TEST_F(fresh_exact_system, a_product_without_inverse_is_error_85) {
    auto says = [this](const std::string &text) { return last_text.find(text) != std::string::npos; };
    set_ring({0, 1, 1, 0, 0, 0, 0, 15});
    word_list list{4, 20};
    EXPECT_TRUE(unwinds([&] { inverse_prod(list.head); }));
    EXPECT_TRUE(says("bad2: 5\n") && says(message_text(85))) << last_text;
    set_ring({0, 1, 1, 0, 0, 0, 0, 7});
    word_list points{1, 2, 6};
    EXPECT_TRUE(unwinds([&] { multi_inverse_prod(points.head, 2); }));
    EXPECT_TRUE(says("bad2: 0\n") && says(message_text(85))) << last_text;
    set_ring(user_ring);
    const int32_t moduli[] = {6, 9}, residues[] = {1, 1};
    number_handle x;
    EXPECT_TRUE(unwinds([&] { number_from_residues(residues, moduli, 2, 0, &x); }));
    EXPECT_TRUE(says(message_text(85)) && !says("bad2")) << last_text;
}
