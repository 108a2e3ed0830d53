/* The cache of GCDs: what is found in it, what empties it, and that nothing stays open behind an error. */
#include "gcd/gcd.h"
#include "gcd/gcd_work.h"
#include "poly/mult.h"
#include "support/fresh_system.h"
#include "support/rand_poly.h"
#include "top/guards.h"
#include "top/heap.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

/* Two products with a common factor of their own. */
struct stash_operands {
    poly_handle u, v, f;

    stash_operands() {
        poly_handle a(poly_of("x^2*y + 2*x*y^2 + y^2 - 5")), b(poly_of("x^2 - 3*x*y + y^3 + 7"));
        *f.slot() = poly_of("x^2*y^2 + x*y^2 - y + 11");
        poly_mult(a.get(), f.get(), u.slot(), nullptr);
        poly_mult(b.get(), f.get(), v.slot(), nullptr);
    }
};

struct gcd_cache_test : poly_test {
    const kept_value<int> cutoff{gcd_stash_cutoff, 10}, small_cutoff{small_gcd_stash_cut, 4}, look{lookupgcd};
    const kept_value<uint64_t> memory{initial_memory, uint64_t{1} << 28};

    void TearDown() override {
        free_gcd_stash(stash_drop::everything);
        EXPECT_EQ(gcdmass, 0);
        EXPECT_EQ(polygcd_stack_depth, 0);
        poly_test::TearDown();
    }
    /* The GCD, and whether the cache gave it. */
    bool is_found(poly_handle &u, poly_handle &v, poly_handle &g) {
        const long found = gcd_answers(42);
        Lpolygcd(u.slot(), v.slot(), g.slot(), 1, polynames);
        EXPECT_EQ(polygcd_stack_depth, 0);
        return gcd_answers(42) > found;
    }
};

} // namespace

TEST_F(gcd_cache_test, a_pair_is_found_again_up_to_signs_and_order) {
    stash_operands p;
    poly_handle g, minus_u;
    poly_makeneg(p.u.get(), minus_u.slot());
    gcd_caching caching;
    EXPECT_FALSE(is_found(p.u, p.v, g));
    EXPECT_GT(gcdmass, 0);
    EXPECT_TRUE(is_found(p.u, p.v, g));
    EXPECT_TRUE(is_found(p.v, p.u, g));
    EXPECT_TRUE(is_found(minus_u, p.v, g));
    EXPECT_TRUE(poly_equal(g.get(), p.f.get())) << text_of(g.get());
}

TEST_F(gcd_cache_test, nothing_is_kept_outside_a_stretch) {
    stash_operands p;
    poly_handle g;
    EXPECT_FALSE(is_found(p.u, p.v, g));
    EXPECT_EQ(gcdmass, 0);
    {
        gcd_caching outer;
        {
            gcd_caching inner;
            is_found(p.u, p.v, g);
        }
        EXPECT_TRUE(is_found(p.u, p.v, g));
    }
    EXPECT_EQ(gcdmass, 0);
}

TEST_F(gcd_cache_test, the_same_lists_one_level_down_have_entries_of_their_own) {
    stash_operands p;
    poly_handle g;
    gcd_caching caching;
    is_found(p.u, p.v, g);
    add_pad(p.u.slot(), 1);
    add_pad(p.v.slot(), 1);
    EXPECT_FALSE(is_found(p.u, p.v, g));
    add_pad(p.f.slot(), 1);
    EXPECT_TRUE(poly_equal(g.get(), p.f.get())) << text_of(g.get());
}

TEST_F(gcd_cache_test, degrees_alone_are_neither_kept_nor_found) {
    stash_operands p;
    poly_handle g;
    gcd_caching caching;
    polygcd(p.u.get(), p.v.get(), g.slot(), 1, 1, 1, polynames, 1, 1, 1);
    EXPECT_EQ(g->expo, 2);
    EXPECT_EQ(gcdmass, 0);
}

TEST_F(gcd_cache_test, entries_of_another_ring_go) {
    stash_operands p;
    poly_handle g;
    gcd_caching caching;
    is_found(p.u, p.v, g);
    {
        test_ring ring("101");
        gcd_caching inner;
        EXPECT_EQ(gcdmass, 0);
    }
    EXPECT_FALSE(is_found(p.u, p.v, g));
}

TEST_F(gcd_cache_test, modulo_a_prime_entries_outlive_the_stretch_until_the_modulus_changes) {
    const kept_value<int> no_images(chinhensel, 0);
    {
        test_ring ring("101");
        stash_operands p;
        poly_handle g;
        {
            gcd_caching caching;
            is_found(p.u, p.v, g);
        }
        EXPECT_GT(gcdmass, 0);
        gcd_caching caching;
        EXPECT_TRUE(is_found(p.u, p.v, g));
    }
    test_ring ring("103");
    gcd_caching caching;
    EXPECT_EQ(gcdmass, 0);
}

TEST_F(gcd_cache_test, gcds_in_one_variable_are_kept_by_their_degrees) {
    test_ring ring("101");
    poly_handle u(poly_of("x^5 + 3*x^4 + 2*x + 6")), v(poly_of("x^4 + 3*x^3 + 5*x + 15")), g;
    gcd_caching caching;
    Lpolygcd(u.slot(), v.slot(), g.slot(), 1, polynames);
    EXPECT_EQ(text_of(g.get()), "x + 3");
    const int64_t mass = gcdmass;
    EXPECT_GT(mass, 0);
    Lpolygcd(v.slot(), u.slot(), g.slot(), 1, polynames);
    EXPECT_EQ(text_of(g.get()), "x + 3");
    EXPECT_EQ(gcdmass, mass);
    poly_handle low(poly_of("x + 3"));
    Lpolygcd(u.slot(), low.slot(), g.slot(), 1, polynames); /* degree 1: sooner computed than found */
    EXPECT_EQ(gcdmass, mass);
}

TEST_F(gcd_cache_test, more_than_half_of_the_memory_is_purged_to_the_newest_entries) {
    gcd_caching caching;
    const kept_value<uint64_t> little(initial_memory, uint64_t{20000});
    for (int i = 0; i < 200; i++) {
        stash_operands p;
        poly_handle g, shifted;
        poly_mult(p.u.get(), poly_handle(poly_of("x + " + std::to_string(i + 1))).get(), shifted.slot(), nullptr);
        is_found(shifted, p.v, g);
        EXPECT_TRUE(poly_equal(g.get(), p.f.get()));
        EXPECT_LE(gcdmass, 15000);
    }
    EXPECT_GT(gcdmass, 0);
}

static int points_left;

TEST_F(gcd_cache_test, an_unwinding_closes_what_was_open) {
    stash_operands p;
    int thrown = 0;
    for (int n = 1; n < 400; n += 3) {
        poly_handle g;
        points_left = n;
        watch_safe_points([] {
            if (--points_left == 0) throw unwind{unwind::to_top};
        });
        try {
            gcd_caching caching;
            Lpolygcd(p.u.slot(), p.v.slot(), g.slot(), 1, polynames);
        } catch (const unwind &) {
            thrown++;
        }
        watch_safe_points(nullptr);
        ASSERT_EQ(polygcd_stack_depth, 0);
        ASSERT_EQ(lookupgcd, 0);
        ASSERT_EQ(gcdmass, 0);
    }
    EXPECT_GT(thrown, 10);
}

/* ---- in the system ---- */

namespace {
struct cache_at_the_prompt : fresh_exact_system {
    void SetUp() override {
        forget_poly_variables();
        fresh_exact_system::SetUp();
        noisy = extra_line = 0;
        gcd_stash_cutoff = 10;
        run("&(J = x)\n&(J = y)\na := (x^2*y + 2x*y^2 + y^2 - 5)*(x^2*y^2 + x*y^2 - y + 11); "
            "b := (x^2 - 3x*y + y^3 + 7)*(x^2*y^2 + x*y^2 - y + 11)");
    }
    void TearDown() override {
        gcd_stash_cutoff = 200;
        fresh_exact_system::TearDown();
        forget_poly_variables();
    }
};
} // namespace

TEST_F(cache_at_the_prompt, the_report_tells_its_mass_and_a_new_variable_empties_it) {
    run("&C+\ng := GCD(a, b)");
    const int64_t mass = gcdmass;
    EXPECT_GT(mass, 0);
    EXPECT_NE(run("&g").find("GCD stashing level is 1, so it's on. table mass: " + std::to_string(mass)),
              std::string::npos);
    run("&(J > z)");
    EXPECT_EQ(gcdmass, 0);
    run("g := GCD(a, b)");
    EXPECT_GT(gcdmass, 0);
    run("&(J = -z)");
    EXPECT_EQ(gcdmass, 0);
    run("&C-");
}

TEST_F(cache_at_the_prompt, errors_and_changes_of_ring_empty_it) {
    run("&C+\ng := GCD(a, b)");
    EXPECT_GT(gcdmass, 0);
    run("1/0");
    EXPECT_EQ(gcdmass, 0);
    EXPECT_EQ(lookupgcd, 1);
    run("g := GCD(a, b)");
    EXPECT_GT(gcdmass, 0);
    run("&(p = 101)");
    EXPECT_EQ(gcdmass, 0);
    run("&p\n&C-");
    EXPECT_EQ(lookupgcd, 0);
}

TEST_F(cache_at_the_prompt, a_heap_that_refuses_empties_it_and_the_request_is_tried_again) {
    run("&C+\ng := GCD(a, b)");
    EXPECT_GT(gcdmass, 0);
    static int refusals;
    refusals = 1;
    const heap_hooks found = heap;
    heap.request = [](std::size_t bytes) -> void * { return refusals-- > 0 ? nullptr : std::malloc(bytes); };
    void *block = nullptr;
    const std::string text = text_of([&] { block = heap_request(100); });
    heap = found;
    EXPECT_NE(block, nullptr);
    heap_release(block);
    EXPECT_EQ(text, "\n*** Warning.  You are low on heap space.  Will try freeing the gcd stash.\n");
    EXPECT_EQ(gcdmass, 0);
    run("&C-");
}

TEST_F(cache_at_the_prompt, a_wrong_count_of_open_gcds_is_told_and_mended) {
    const kept_value<int> small_cutoff(small_gcd_stash_cut, 4);
    run("&C+");
    polygcd_stack_depth = -5;
    EXPECT_NE(run("g := GCD(a, b)").find("*** Tolvek error. negative polygcd_stack_depth 1\n"), std::string::npos);
    EXPECT_EQ(polygcd_stack_depth, 0);
    run("&(p = 101)\nu := x^5 + 3x^4 + 2x + 6; v := x^4 + 3x^3 + 5x + 15");
    polygcd_stack_depth = -5;
    EXPECT_NE(run("g := GCD(u, v)").find("*** Tolvek error. negative polygcd_stack_depth 2\n"), std::string::npos);
    EXPECT_EQ(polygcd_stack_depth, 0);
    run("&p\n&C-");
}

/* ---- in determinants ---- */

namespace {

/* Two matrices of fractions whose elements have the same lists, in x and y and one level down in y and t; and what the rule
   for three rows makes of them, with no cache. */
struct cache_in_determinants : fresh_exact_system {
    void SetUp() override {
        forget_poly_variables();
        fresh_exact_system::SetUp();
        extra_line = 0;
        run("&(J = x)\n&(J = y)\n&(J = t)\nArray a[3,3]\nArray b[3,3]");
    }
    void TearDown() override {
        run("&C-");
        fresh_exact_system::TearDown();
        EXPECT_EQ(polygcd_stack_depth, 0);
        free_gcd_stash(stash_drop::everything);
        forget_poly_variables();
    }
    void fill() {
        for (const std::string &v : {std::string("axy"), std::string("byt")}) {
            const std::string a{v[0]}, x{v[1]}, y{v[2]};
            run("for i = 1 to 3 do for j = 1 to 3 do " + a + "[i,j] := (" + x + "^2*" + y + "*i + j*" + x + "*" + y +
                "^2 + i - 7*j*" + x + ")/(" + x + "^2*i + " + y + "^2*j + " + x + "*" + y + " + i*j + 1) od od");
            const auto e = [&](int i, int j) { return a + "[" + std::to_string(i) + "," + std::to_string(j) + "]"; };
            const auto minor = [&](int j, int k) {
                return "(" + e(2, j) + "*" + e(3, k) + " - " + e(2, k) + "*" + e(3, j) + ")";
            };
            run("d" + a + " := " + e(1, 1) + "*" + minor(2, 3) + " - " + e(1, 2) + "*" + minor(1, 3) + " + " + e(1, 3) +
                "*" + minor(1, 2));
        }
    }
    /* The cache has been used, and is shut again. */
    std::string determinants(const std::string &wanted) {
        const std::string text = value_of(wanted);
        EXPECT_EQ(polygcd_stack_depth, 0);
        EXPECT_EQ(lookupgcd, 0);
        return text;
    }
};

} // namespace

TEST_F(cache_in_determinants, of_both_levels_the_determinants_are_right_in_one_statement_and_in_two) {
    for (const char *change : {"", "&(p = 10007)"}) {
        run(change);
        fill();
        EXPECT_EQ(determinants("Equal(Det[a], da) + 2*Equal(Det[b], db)"), "3");
        EXPECT_EQ(determinants("Equal(Det[a], da)"), "1");
        const int64_t mass = gcdmass; /* modulo a prime entries stay for the next statement */
        EXPECT_EQ(mass > 0, modularmode != 0);
        EXPECT_EQ(determinants("Equal(Det[b], db)"), "1");
        const long found = gcd_answers(42);
        EXPECT_EQ(determinants("Equal(Det[a], da)"), "1");
        EXPECT_EQ(gcd_answers(42) > found, modularmode != 0);
        run("&C+"); /* over the integers too */
        EXPECT_EQ(value_of("Equal(Det[a], da)") + value_of("Equal(Det[b], db)") + value_of("Equal(Det[a], da)"), "111");
        EXPECT_GT(gcdmass, 0);
        run("&C-");
    }
}

TEST_F(cache_in_determinants, an_error_inside_leaves_nothing_open) {
    run("&(p = 6)\nfor i = 1 to 3 do for j = 1 to 3 do a[i,j] := (2x*i + 2j*y + 2i*j)/(x + y*j + i) od od\n"
        "a[1,1] := 2x/(x + 1)");
    const std::string found = run("Det[a]");
    EXPECT_NE(found.find(message_text(85)), std::string::npos);
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(run("Det[a]"), found);
        EXPECT_EQ(polygcd_stack_depth, 0);
        EXPECT_EQ(lookupgcd, 0);
    }
    EXPECT_EQ(value_of("1 + 1"), "2");
    run("&(p = 10007)");
    fill();
    EXPECT_EQ(determinants("Equal(Det[a], da)"), "1");
}

TEST_F(cache_in_determinants, an_interrupt_inside_leaves_nothing_open_and_what_it_has_left_is_right) {
    for (const char *change : {"", "&(p = 10007)"}) {
        run(change);
        fill();
        int stopped = 0;
        for (int n = 0; n < 4000; n += 1 + n / 6) {
            points_left = n;
            watch_safe_points([] {
                if (points_left-- == 0) note_interrupt();
            });
            const std::string text = run("c := Det[a]\n&@");
            watch_safe_points(nullptr);
            stopped += text.find("New command level") != std::string::npos;
            ASSERT_EQ(polygcd_stack_depth, 0) << n;
            ASSERT_EQ(lookupgcd, 0) << n;
        }
        EXPECT_GT(stopped, 15);
        EXPECT_EQ(determinants("Equal(Det[a], da) + 2*Equal(Det[b], db)"), "3");
    }
}

} // namespace tolvek
