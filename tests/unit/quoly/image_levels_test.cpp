/* Interrupts and errors inside stretches of modular arithmetic: levels find whole values, and what was interrupted goes on
   with the same residues at the same places. */
#include "language/names.h"
#include "numbers/modular.h"
#include "poly/mult.h"
#include "quoly/ring_image.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

const char opened[] = "\n*** New command level.\n"
                      "\n*** You have interrupted at a delicate time. Tolvek had switched\n"
                      "    internally to arithmetic mod p. It has switched back for your \n"
                      "    convenience during this interrupt. Do not do any significant \n"
                      "    polynomial computations.  To abort, enter &@ followed by  &(p=_i:) .\n\n";

/* Values in x and y, some of which lose terms, denominators or all modulo the primes below. */
struct image_levels : fresh_exact_system {
    static constexpr int count = 5;
    quolynode *values[count] = {};
    std::string texts[count];
    test_random rnd;

    void SetUp() override {
        fresh_exact_system::SetUp();
        run("&(J = x)\n&(J = y)\na := (7*x + 97*y^2 + 1)^8\nb := (97*x^3 + 14)*(7*y^2 + 3)^3 + 679*x\nc := 1/2 + x/3\n"
            "d := (x^2 + 97*x + 3)/(y^3 + 7*x)\ne := 679*x + 679");
        for (int i = 0; i < count; i++) {
            token_record t{{static_cast<char>('a' + i)}, hash_unknown};
            values[i] = find_variable(t)->value;
            texts[i] = text_of_value(i);
        }
    }
    std::string text_of_value(int i) const { return tolvek::text_of(values[i]); }

    /* Something that depends on every residue of every value. */
    uint64_t residues_of_products() {
        uint64_t sum = 0;
        image_stretch work(2);
        for (int32_t p : {2, 7, 97, 2147483629}) {
            work.change_prime(p);
            for (quolynode *&q : values) {
                if (!work.image(&q)) continue;
                quoly_handle square;
                quoly_mult(q, q, square.slot());
                for (char c : tolvek::text_of(square.get())) sum = sum * 31 + static_cast<unsigned char>(c);
            }
            safe_point();
        }
        return sum;
    }
    void expect_whole_values(const std::string &where) {
        for (int i = 0; i < count; i++) EXPECT_EQ(text_of_value(i), texts[i]) << where;
        EXPECT_EQ(masterfix, nullptr) << where;
        EXPECT_FALSE(lintmode || modularmode) << where;
    }
};

long passed, stop_at;

void watch_for(long k) {
    passed = 0;
    stop_at = k;
    watch_safe_points([] {
        if (++passed == stop_at) note_interrupt();
    });
}

} // namespace

TEST_F(image_levels, a_thousand_interrupts_at_random_safe_points_change_nothing) {
    watch_for(-1);
    const uint64_t expected = residues_of_products();
    const long all = passed;
    ASSERT_GT(all, 100);
    before_read = [this] { expect_whole_values("at the level"); };
    for (int i = 0; i < times(1000); i++) {
        const long k = 1 + rnd.below(static_cast<int32_t>(all));
        watch_for(k);
        set_input("&_p\n");
        uint64_t found = 0;
        const std::string text = text_of([&] { found = residues_of_products(); });
        watch_safe_points(nullptr);
        ASSERT_EQ(found, expected) << "safe point " << k;
        ASSERT_EQ(text, opened + std::string("2>*** Resuming earlier command level\n")) << "safe point " << k;
        expect_whole_values("behind the level");
    }
}

TEST_F(image_levels, a_level_may_make_images_of_the_same_values) {
    watch_for(-1);
    const uint64_t expected = residues_of_products();
    const long all = passed;
    for (long k = 1; k <= all; k += 1 + all / 50) {
        watch_for(k);
        set_input("&_p\n");
        before_read = [this, expected] {
            watch_safe_points(nullptr);
            EXPECT_EQ(residues_of_products(), expected);
        };
        uint64_t found = 0;
        text_of([&] { found = residues_of_products(); });
        EXPECT_EQ(found, expected) << "safe point " << k;
    }
    before_read = nullptr;
    expect_whole_values("at the end");
}

TEST_F(image_levels, a_level_computes_with_the_values_and_may_replace_them) {
    const std::string value = value_of("a*b + d");
    image_stretch *outer = nullptr;
    set_input("a*b + d\nf := a\n&_p\n");
    const std::string text = text_of([&] {
        image_stretch work(7);
        outer = &work;
        for (quolynode *&q : values) work.image(&q);
        const std::string residues = text_of_value(0);
        error(-1, blank);
        EXPECT_TRUE(lintmode && modularmode && modulus == 7);
        EXPECT_EQ(text_of_value(0), residues);
    });
    EXPECT_NE(outer, nullptr);
    EXPECT_NE(text.find(value), std::string::npos);
    expect_whole_values("behind the level");
    EXPECT_EQ(value_of("f - a"), "0");
}

TEST_F(image_levels, a_panic_stop_at_the_level_leaves_whole_values) {
    watch_for(-1);
    residues_of_products();
    const long all = passed;
    for (long k = 1; k <= all; k += 1 + all / 50) {
        watch_for(k);
        set_input("&@\n");
        EXPECT_TRUE(unwinds([&] { residues_of_products(); })) << k;
        watch_safe_points(nullptr);
        EXPECT_NE(last_text.find("*** Panic stop.\n"), std::string::npos);
        EXPECT_EQ(last_text.find("You are now in modular arithmetic"), std::string::npos);
        expect_whole_values("behind the panic stop");
    }
    EXPECT_EQ(value_of("c"), "( 2x + 3 ) / 6");
}

TEST_F(image_levels, an_error_inside_a_stretch_leaves_whole_values) {
    EXPECT_TRUE(unwinds([&] {
        image_stretch work(4);
        for (quolynode *&q : values) work.image(&q); /* 6 has no inverse modulo 4 */
    }));
    EXPECT_NE(last_text.find("no inverse"), std::string::npos);
    expect_whole_values("behind the error");
}

TEST_F(image_levels, records_balance) {
    residues_of_products();
    const records_in_use found = count_records_in_use();
    residues_of_products();
    EXPECT_EQ(count_records_in_use(), found);
    set_input("&@\n");
    watch_for(passed / 2 + 1);
    unwinds([&] { residues_of_products(); });
    watch_safe_points(nullptr);
    EXPECT_EQ(count_records_in_use(), found);
}

} // namespace tolvek
