/* Random flat numbers for the tests of the flat_ modules, their text for Python, and cut-offs lowered for a test. */
#pragma once

#include "numbers/flat_basic.h"
#include "support/rand_numbers.h"
#include "top/heap.h"
#include "top/interrupts.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace tolvek {

using limbs = std::vector<limb>;

/* n limbs in runs of zeros, of ones, of small and of random limbs; the top limb is not 0. */
inline limbs rand_limbs(test_random &rnd, size_t n) {
    limbs a(n);
    int kind = 0, left = 0;
    for (limb &w : a) {
        if (left-- == 0) {
            kind = rnd.below(4);
            left = rnd.below(rnd.one_in(3) ? static_cast<int>(n) : 4);
        }
        w = kind == 0 ? 0 : kind == 1 ? ~limb{0} : kind == 2 ? limb(rnd.below(3)) : rnd();
    }
    if (!a.back()) a.back() = rnd.one_in(2) ? 1 : limb{1} << 63;
    return a;
}

/* Mostly short ones, up to n limbs. */
inline limbs rand_limbs_up_to(test_random &rnd, int n) {
    return rand_limbs(rnd, 1 + size_t(rnd.below(rnd.one_in(3) ? n : std::min(n, 12))));
}

inline limbs normal(limbs a) {
    a.resize(flat_length(a.data(), a.size()));
    return a;
}

/* Hexadecimal as Python's hex() writes it. */
inline std::string hex_text(const limbs &a) {
    const limbs b = normal(a);
    if (b.empty()) return "0x0";
    char word[20];
    std::snprintf(word, sizeof word, "0x%llx", static_cast<unsigned long long>(b.back()));
    std::string text = word;
    for (size_t i = b.size() - 1; i-- > 0;) {
        std::snprintf(word, sizeof word, "%016llx", static_cast<unsigned long long>(b[i]));
        text += word;
    }
    return text;
}

/* A variable back at its value at the end of the test. */
template <class T> struct lowered {
    T &variable, found;
    lowered(T &v, T value) : variable(v), found(v) { v = value; }
    ~lowered() { variable = found; }
};

struct flat_test : ::testing::Test {
    test_random rnd;
    python_check python;
    void TearDown() override { python.run(); }
};

/* Counts the blocks of the heap that are out, and safe points, for its life; the safe point number `stop` throws. */
struct stopped {};
struct heap_and_safe_points {
    static inline long blocks = 0, passed = 0, stop = 0;
    heap_hooks found = heap;

    heap_and_safe_points() {
        blocks = passed = stop = 0;
        heap.request = [](size_t n) {
            blocks++;
            return std::malloc(n);
        };
        heap.release = [](void *p) {
            blocks--;
            std::free(p);
        };
        watch_safe_points([] {
            if (++passed == stop) throw stopped{};
        });
    }
    ~heap_and_safe_points() {
        watch_safe_points(nullptr);
        heap = found;
    }
};

/* Runs f once for each safe point that it passes, stopped there: no block of the heap may be left out. */
template <class F> void stop_at_each_safe_point(F f, long most = 200) {
    f(); /* tables that stay are made */
    heap_and_safe_points watch;
    f();
    const long all = watch.passed;
    EXPECT_GT(all, 0);
    EXPECT_EQ(watch.blocks, 0);
    for (long k = 1; k <= all && k <= most; k++) {
        watch.passed = 0;
        watch.stop = k;
        EXPECT_THROW(f(), stopped);
        EXPECT_EQ(watch.blocks, 0) << "stopped at safe point " << k;
    }
}

} // namespace tolvek
