/* A value below 10^(16 u 2^k) is cut in two by division by 10^(16 u 2^(k-1)), until single divisions by 10^16 do, and
   the way back is the same with products. u is chosen such that the first cut is in the middle. The powers are found
   by squaring and kept without their zero limbs at the low end, which take a third of them. */
#include "numbers/flat_radix.h"

#include "numbers/flat_divide.h"
#include "numbers/flat_mult.h"
#include "top/heap.h"
#include "top/interrupts.h"

namespace tolvek {

size_t flat_radix_cut = 30;

namespace {

constexpr limb pair_radix = 10000000000000000; /* 10^16: two groups */
constexpr int figures_per_pair = 2 * figures_per_group;
constexpr uint32_t group_radix = 100000000;
constexpr int most_levels = 60;

/* radix^(unit 2^k) = limbs * 2^(64 zeros). */
struct decimal_power {
    const limb *limbs;
    size_t n, zeros;
};

/* The powers of 10^16 for conversions of `pairs` pairs: levels 0 .. levels - 1. */
struct decimal_powers {
    size_t unit;    /* pairs of one leaf */
    int levels = 0; /* the whole is below radix^(unit 2^levels) */
    decimal_power power[most_levels];
    buffer<limb> room[most_levels];

    explicit decimal_powers(size_t pairs) : unit(pairs) {
        const size_t leaf = flat_radix_cut; /* a pair is a little less than a limb */
        while (unit > leaf) {
            unit = (unit + 1) / 2;
            levels++;
        }
        for (int k = 0; k < levels; k++) make(k);
    }

    size_t pairs_at(int level) const { return unit << level; }

  private:
    void make(int k) {
        if (k == 0) {
            room[0].resize(unit);
            limb *const p = room[0].data();
            p[0] = 1;
            size_t n = 1;
            for (size_t i = 0; i < unit; i++) {
                const limb carry = flat_mult_limb(p, p, n, pair_radix);
                if (carry) p[n++] = carry;
            }
            store(0, n, 0);
        } else {
            const decimal_power &root = power[k - 1];
            room[k].resize(2 * root.n);
            flat_square(room[k].data(), root.limbs, root.n);
            store(k, flat_length(room[k].data(), 2 * root.n), 2 * root.zeros);
        }
    }
    void store(int k, size_t n, size_t zeros) {
        size_t more = 0;
        while (room[k][more] == 0) more++;
        power[k] = {room[k].data() + more, n - more, zeros + more};
    }
};

/* ---- to groups ---- */

/* Writes exactly 2 * pairs groups of a, which is destroyed. */
void leaf_to_groups(uint32_t *groups, limb *a, size_t n, size_t pairs) {
    static const limb_divisor radix(pair_radix);
    for (size_t i = 0; i < pairs; i++) {
        n = flat_length(a, n);
        const limb pair = flat_divide_limb(a, a, n, radix);
        groups[2 * i] = static_cast<uint32_t>(pair % group_radix);
        groups[2 * i + 1] = static_cast<uint32_t>(pair / group_radix);
    }
}

void clear_groups(uint32_t *groups, size_t count) { std::memset(groups, 0, count * sizeof(uint32_t)); }

/* Writes the 2 * pairs_at(level) groups of a, which is destroyed. */
void part_to_groups(uint32_t *groups, limb *a, size_t n, int level, const decimal_powers &powers) {
    n = flat_length(a, n);
    if (level == 0) {
        leaf_to_groups(groups, a, n, powers.unit);
        return;
    }
    safe_point();
    const size_t half = 2 * powers.pairs_at(level - 1);
    const decimal_power &p = powers.power[level - 1];
    if (n < p.n + p.zeros) {
        part_to_groups(groups, a, n, level - 1, powers);
        clear_groups(groups + half, half);
        return;
    }
    buffer<limb> quotient(n - p.zeros - p.n + 1);
    flat_divide(quotient.data(), a + p.zeros, a + p.zeros, n - p.zeros, p.limbs, p.n);
    part_to_groups(groups, a, p.n + p.zeros, level - 1, powers);
    part_to_groups(groups + half, quotient.data(), quotient.size(), level - 1, powers);
}

/* Pairs of figures in n limbs: 10^16 has more than 53.15 bits. */
size_t pairs_of_limbs(size_t n) { return n * 6400 / 5315 + 1; }

/* ---- from figures ---- */

limb read_figures(const char *figures, size_t count) {
    limb value = 0;
    for (size_t i = 0; i < count; i++) value = value * 10 + static_cast<limb>(figures[i] - '0');
    return value;
}

/* The limbs of dst := the value; `count` at least 1. */
size_t leaf_from_figures(limb *dst, const char *figures, size_t count) {
    size_t first = count % figures_per_pair, n = 0;
    if (first == 0) first = figures_per_pair;
    dst[0] = read_figures(figures, first);
    if (dst[0]) n = 1;
    for (size_t i = first; i < count; i += figures_per_pair) {
        limb carry = flat_mult_limb(dst, dst, n, pair_radix);
        if (carry) dst[n++] = carry;
        carry = flat_add_limb(dst, dst, n, read_figures(figures + i, figures_per_pair));
        if (carry) dst[n++] = carry;
    }
    return n;
}

/* The same at a level, for at most pairs_at(level) pairs of figures. */
size_t part_from_figures(limb *dst, const char *figures, size_t count, int level, const decimal_powers &powers) {
    if (level == 0) return leaf_from_figures(dst, figures, count);
    safe_point();
    const size_t half = powers.pairs_at(level - 1) * figures_per_pair;
    if (count <= half) return part_from_figures(dst, figures, count, level - 1, powers);
    const decimal_power &p = powers.power[level - 1];
    buffer<limb> high(flat_figures_room(count - half)), low(flat_figures_room(half));
    const size_t n_high = part_from_figures(high.data(), figures, count - half, level - 1, powers);
    const size_t n_low = part_from_figures(low.data(), figures + (count - half), half, level - 1, powers);
    if (n_high == 0) {
        flat_copy(dst, low.data(), n_low);
        return n_low;
    }
    buffer<limb> product(n_high + p.n);
    flat_mult(product.data(), high.data(), n_high, p.limbs, p.n);
    const size_t n = flat_length(product.data(), n_high + p.n);
    flat_clear(dst, p.zeros);
    flat_copy(dst + p.zeros, product.data(), n);
    const limb carry = flat_add(dst, dst, n + p.zeros, low.data(), n_low);
    if (!carry) return n + p.zeros;
    dst[n + p.zeros] = carry;
    return n + p.zeros + 1;
}

} // namespace

size_t flat_to_groups(uint32_t *groups, const limb *a, size_t n) {
    n = flat_length(a, n);
    const size_t pairs = pairs_of_limbs(n);
    buffer<limb> work(n + 1);
    flat_copy(work.data(), a, n);
    buffer<uint32_t> whole;
    if (n <= flat_radix_cut) {
        whole.resize(2 * pairs);
        leaf_to_groups(whole.data(), work.data(), n, pairs);
    } else {
        const decimal_powers powers(pairs);
        whole.resize(2 * powers.pairs_at(powers.levels));
        part_to_groups(whole.data(), work.data(), n, powers.levels, powers);
    }
    size_t count = whole.size();
    while (count > 1 && whole[count - 1] == 0) count--;
    std::memcpy(groups, whole.data(), count * sizeof(uint32_t));
    return count;
}

size_t flat_from_figures(limb *dst, const char *figures, size_t count) {
    if (count == 0) return 0;
    const size_t pairs = (count + figures_per_pair - 1) / figures_per_pair;
    if (pairs <= flat_radix_cut) return leaf_from_figures(dst, figures, count);
    const decimal_powers powers(pairs);
    return part_from_figures(dst, figures, count, powers.levels, powers);
}

} // namespace tolvek
