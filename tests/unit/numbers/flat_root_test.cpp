#include "flat_random.h"

#include "numbers/flat_divide.h"
#include "numbers/flat_mult.h"
#include "numbers/flat_root.h"

using namespace tolvek;

using flat_root_test = flat_test;

namespace {

limbs root_of(const limbs &a) {
    limbs s((a.size() + 1) / 2, 0x5555);
    flat_root(s.data(), a.data(), a.size());
    return normal(s);
}

/* s^2 has the root s, s^2 - 1 has s - 1, and s^2 + 2 s has s again. */
void expect_roots_around_the_square_of(const limbs &s) {
    limbs square(2 * s.size()), below(s), a;
    flat_square(square.data(), s.data(), s.size());
    EXPECT_EQ(root_of(normal(square)), s);
    flat_sub_limb(below.data(), s.data(), s.size(), 1);
    a = square;
    flat_sub_limb(a.data(), a.data(), a.size(), 1);
    if (!normal(a).empty()) {
        EXPECT_EQ(root_of(normal(a)), normal(below));
    }
    a = square;
    a.push_back(flat_add_product(a.data(), s.data(), s.size(), 2));
    if (a.back()) {
        const limb carry = a.back();
        a.back() = 0;
        flat_add_limb(a.data() + s.size(), a.data() + s.size(), s.size(), carry);
    }
    EXPECT_EQ(root_of(normal(a)), s);
}

} // namespace

TEST_F(flat_root_test, roots_around_squares) {
    for (int i = 0; i < times(300); i++) expect_roots_around_the_square_of(rand_limbs_up_to(rnd, 90));
    for (size_t n = 1; n < 40; n++) expect_roots_around_the_square_of(limbs(n, ~limb{0}));
}

TEST_F(flat_root_test, roots_around_squares_with_division_by_blocks) {
    lowered<size_t> cut(flat_divide_cut, 4);
    for (int i = 0; i < times(100); i++) expect_roots_around_the_square_of(rand_limbs_up_to(rnd, 90));
}

TEST_F(flat_root_test, agrees_with_python) {
    for (int i = 0; i < times(200); i++) {
        const limbs a = rand_limbs_up_to(rnd, 200);
        python.expect("hex(math.isqrt(" + hex_text(a) + "))", hex_text(root_of(a)));
    }
    for (limb w : {1, 2, 3, 4, 5, 8, 9, 15, 16})
        python.expect("hex(math.isqrt(" + std::to_string(w) + "))", hex_text(root_of({w})));
}

TEST_F(flat_root_test, stopped_at_any_safe_point_it_gives_its_memory_back) {
    const limbs a = rand_limbs(rnd, 3000);
    stop_at_each_safe_point([&] { root_of(a); }, 60);
}
