/* Operations on values that are left at each of their safe points. */
#pragma once

#include "quoly/quoly.h"
#include "support/rand_poly.h"
#include "top/interrupts.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace tolvek {

inline quolynode *copy_of(const quoly_handle &q) {
    quolynode *copy = nullptr;
    quoly_assign(q.get(), &copy);
    return copy;
}

/* Two kept operands, copies of both that may be consumed, and a place for the result. */
struct operation_at_work {
    const quoly_handle &a, &b;
    quoly_handle x, y, r;
};
using value_operation = void (*)(operation_at_work &);

inline const value_operation sums_and_products[] = {
    [](operation_at_work &w) { quoly_sub(w.a.get(), w.b.get(), w.r.slot()); },
    [](operation_at_work &w) { quoly_mult(w.a.get(), w.b.get(), w.r.slot()); },
    [](operation_at_work &w) { better_quoly_sub(w.x.release(), w.b.get(), w.r.slot()); },
    [](operation_at_work &w) { best_quoly_sub(w.x.slot(), w.y.release()); },
    [](operation_at_work &w) { fast_quoly_mult(w.x.slot(), w.b.get()); },
};
inline const value_operation quotients[] = {
    [](operation_at_work &w) { fast_quoly_quot(w.x.slot(), w.b.get(), 0); },
    [](operation_at_work &w) { quoly_mod_or_div(w.a.get(), w.b.get(), w.r.slot(), '|'); },
};

inline long points_before_leaving;

/* Leaves each operation at its safe points, at more and more distant ones, until it is through: no record is lost, and kept
   operands are whole. */
template <class operations>
void leave_operations(const quoly_handle &a, const quoly_handle &b, const operations &list) {
    const std::string text_a = text_of(a.get()), text_b = text_of(b.get());
    const records_in_use found = count_records_in_use();
    for (const value_operation &operation : list) {
        bool finished = false;
        for (long n = 0; !finished; n += 1 + n / 20) {
            ASSERT_LT(n, 1000000);
            {
                operation_at_work w{a, b, {}, {}, {}};
                *w.x.slot() = copy_of(a);
                *w.y.slot() = copy_of(b);
                points_before_leaving = n;
                watch_safe_points([] {
                    if (points_before_leaving-- == 0) throw 1;
                });
                try {
                    operation(w);
                    finished = true;
                } catch (int) {
                }
                watch_safe_points(nullptr);
            }
            ASSERT_EQ(count_records_in_use(), found) << "operation " << &operation - &list[0] << " left at " << n;
            ASSERT_EQ(text_of(a.get()), text_a);
            ASSERT_EQ(text_of(b.get()), text_b);
        }
    }
}

} // namespace tolvek
