#include "flat_random.h"

#include "numbers/flat_radix.h"

using namespace tolvek;

using flat_radix = flat_test;

namespace {

std::string figures_of(const limbs &a) {
    std::vector<uint32_t> groups(flat_groups_room(a.size()));
    const size_t n = flat_to_groups(groups.data(), a.data(), a.size());
    char text[12];
    std::snprintf(text, sizeof text, "%u", groups[n - 1]);
    std::string all = text;
    for (size_t i = n - 1; i-- > 0;) {
        std::snprintf(text, sizeof text, "%08u", groups[i]);
        all += text;
    }
    return all;
}

limbs value_of(const std::string &figures) {
    limbs a(flat_figures_room(figures.size()), 0x5555);
    a.resize(flat_from_figures(a.data(), figures.data(), figures.size()));
    return a;
}

std::string rand_figures(test_random &rnd, int most) {
    std::string text(size_t(1 + rnd.below(most)), '0');
    int left = 0, kind = 0;
    for (char &c : text) {
        if (left-- == 0) {
            kind = rnd.below(3);
            left = rnd.below(rnd.one_in(3) ? most : 20);
        }
        c = kind == 0 ? '0' : kind == 1 ? '9' : char('0' + rnd.below(10));
    }
    return text;
}

std::string without_zeros(const std::string &figures) {
    const size_t first = figures.find_first_not_of('0');
    return first == std::string::npos ? "0" : figures.substr(first);
}

} // namespace

TEST_F(flat_radix, zero_has_one_group_and_no_limbs) {
    EXPECT_EQ(figures_of(limbs{0}), "0");
    EXPECT_EQ(figures_of(limbs{}), "0");
    EXPECT_TRUE(value_of("0").empty());
    EXPECT_TRUE(value_of(std::string(1000, '0')).empty());
    EXPECT_TRUE(value_of("").empty());
}

TEST_F(flat_radix, figures_agree_with_python) {
    for (int i = 0; i < times(100); i++) {
        lowered<size_t> cut(flat_radix_cut, rnd.one_in(2) ? flat_radix_cut : size_t(1 + rnd.below(10)));
        const limbs a = rand_limbs_up_to(rnd, 300);
        python.expect(hex_text(a), figures_of(a));
        const std::string figures = rand_figures(rnd, 3000);
        python.expect("hex(int('" + figures + "'))", hex_text(value_of(figures)));
    }
}

TEST_F(flat_radix, round_trips_at_the_least_cut) {
    lowered<size_t> cut(flat_radix_cut, 1);
    for (int i = 0; i < times(150); i++) {
        const std::string figures = rand_figures(rnd, 5000);
        EXPECT_EQ(figures_of(value_of(figures)), without_zeros(figures));
    }
}

TEST_F(flat_radix, powers_of_ten_and_their_neighbours) {
    for (size_t cut : {size_t{1}, flat_radix_cut}) {
        lowered<size_t> low(flat_radix_cut, cut);
        for (size_t n : {1, 7, 8, 9, 15, 16, 17, 31, 32, 33, 100, 480, 481, 1000, 3000}) {
            const std::string nines(n, '9');
            std::string power(n + 1, '0');
            power.front() = '1';
            std::string above = power;
            above.back() = '1';
            EXPECT_EQ(figures_of(value_of(nines)), nines);
            EXPECT_EQ(figures_of(value_of(power)), power);
            EXPECT_EQ(figures_of(value_of(above)), above);
        }
    }
}

TEST_F(flat_radix, both_sides_of_the_cut) {
    for (size_t n : {flat_radix_cut - 1, flat_radix_cut, flat_radix_cut + 1, 2 * flat_radix_cut + 1}) {
        const limbs a(n, ~limb{0});
        const std::string figures = figures_of(a);
        python.expect("2**" + std::to_string(64 * n) + "-1", figures);
        EXPECT_EQ(value_of(figures), a);
    }
}

TEST_F(flat_radix, stopped_at_any_safe_point_it_gives_its_memory_back) {
    lowered<size_t> cut(flat_radix_cut, 10);
    const limbs a = rand_limbs(rnd, 400);
    const std::string figures = figures_of(a);
    stop_at_each_safe_point([&] {
        uint32_t groups[1100];
        flat_to_groups(groups, a.data(), a.size());
    });
    stop_at_each_safe_point([&] { value_of(figures); });
}
