#include "support/safe_points.h"

#include "top/interrupts.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tolvek {

namespace {

struct stopped {};
long passed, stop_at;

/* What is looked at at each safe point. */
const std::vector<const polynode *> *watched;
std::vector<uint64_t> watched_as;

bool watched_are_whole() {
    for (std::size_t i = 0; watched && i < watched->size(); i++)
        if (fingerprint((*watched)[i]) != watched_as[i]) return false;
    return true;
}

} // namespace

long safe_points_of(const std::function<void()> &routine) {
    leave_at(0, routine);
    return passed;
}

bool leave_at(long k, const std::function<void()> &routine) {
    passed = 0;
    stop_at = k;
    watch_safe_points([] {
        EXPECT_TRUE(watched_are_whole()) << "safe point " << passed + 1;
        if (++passed == stop_at) throw stopped{};
    });
    bool left = false;
    try {
        routine();
    } catch (const stopped &) {
        left = true;
    }
    watch_safe_points(nullptr);
    return left;
}

long interrupt_at(long k, const std::function<void()> &routine) {
    passed = 0;
    stop_at = k;
    watch_safe_points([] {
        if (++passed == stop_at) note_interrupt();
    });
    routine();
    watch_safe_points(nullptr);
    return passed;
}

void leave_everywhere(const std::string &what, polynode **p, const std::function<void()> &routine) {
    poly_handle before;
    poly_assign(*p, before.slot());
    routine(); /* tables that stay are made */
    poly_assign(before.get(), p);
    const long all = safe_points_of(routine);
    poly_assign(before.get(), p);
    const records_in_use found = count_records_in_use();
    EXPECT_GT(all, 0) << what;
    for (long k = 1; k <= all; k += std::max(1L, all / 40)) {
        EXPECT_TRUE(leave_at(k, routine)) << what;
        EXPECT_EQ(count_records_in_use(), found) << what << ", safe point " << k;
        ASSERT_TRUE(*p ? poly_equal(*p, before.get()) : !before) << what << ", safe point " << k;
    }
}

static uint64_t mix(uint64_t h, uint64_t v) { return (h ^ v) * 1099511628211u; }

static uint64_t fingerprint_from(const polynode *p, uint64_t h) {
    for (; p; p = p->next) {
        h = mix(h, reinterpret_cast<uintptr_t>(p));
        h = mix(h, static_cast<uint64_t>(p->expo) << 1 | static_cast<uint64_t>(p->is_number));
        if (!p->is_number) {
            h = fingerprint_from(p->poly, h);
            continue;
        }
        h = mix(h, reinterpret_cast<uintptr_t>(p->num));
        if (lintmode) {
            h = mix(h, static_cast<uint64_t>(p->num->lint_val));
            continue;
        }
        h = mix(h, static_cast<uint64_t>(p->num->num_len));
        for (const numnode *d = p->num->num_head; d; d = d->next) {
            h = mix(h, reinterpret_cast<uintptr_t>(d));
            h = mix(h, static_cast<uint64_t>(d->digit));
        }
    }
    return h;
}

uint64_t fingerprint(const polynode *p) { return fingerprint_from(p, 14695981039346656037u); }

bool leave_at_random(test_random &rnd, const std::vector<const polynode *> &stored,
                     const std::function<void()> &routine) {
    const long all = safe_points_of(routine);
    if (all == 0) return false;
    watched = &stored;
    watched_as.clear();
    for (const polynode *p : stored) watched_as.push_back(fingerprint(p));
    /* work between safe points is counted over routines, so that a second run may pass one less */
    leave_at(1 + rnd.below(static_cast<int>(all)), routine);
    EXPECT_TRUE(watched_are_whole());
    watched = nullptr;
    return true;
}

} // namespace tolvek
