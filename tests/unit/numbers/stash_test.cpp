#include "numbers/stash.h"

#include "support/famine.h"
#include "support/fresh_system.h"
#include "support/rand_numbers.h"
#include "top/heap.h"
#include "top/text_io.h"
#include "top/tolvek.h"

#include <cstring>
#include <set>

using namespace tolvek;

/* What a piece of code writes on standard output. */
template <class code> static std::string written_by(code run) {
    static std::string text;
    text.clear();
    flush(&standard_output);
    const io_hooks found = io;
    io.write_some = [](int, const char *from, std::size_t count) {
        text.append(from, count);
        return static_cast<ssize_t>(count);
    };
    run();
    flush(&standard_output);
    io = found;
    return text;
}

TEST(stash, slug_sizes_round_up_to_a_multiple_of_16) {
    for (auto [asked, given] : {std::pair{0u, 16u}, {1u, 16u}, {16u, 16u}, {17u, 32u}, {24u, 32u}, {48u, 48u}}) {
        stash_record *s = open_stash(asked, "sizes");
        EXPECT_EQ(s->slug_size, given);
        endof_stash(s);
    }
}

TEST(stash, a_new_stash_is_behind_the_primal_one_and_holds_nothing) {
    stash_record *s = open_stash(16, "new one");
    EXPECT_EQ(primal_stash.next_stash, s);
    EXPECT_EQ(s->prev_stash, &primal_stash);
    EXPECT_EQ(s->next_stash->prev_stash, s);
    EXPECT_EQ(s->free_list, nullptr);
    EXPECT_EQ(s->num_blocks + s->num_slugs + s->slugs_used, 0u);
    stash_record *after = s->next_stash;
    endof_stash(s);
    EXPECT_EQ(primal_stash.next_stash, after);
    EXPECT_EQ(after->prev_stash, &primal_stash);
}

TEST(stash, slugs_are_aligned_distinct_and_handed_out_downward) {
    stash_record *s = open_stash(32, "slugs");
    const uint32_t a_block = 0x80000 / 32;
    std::set<char *> seen;
    char *before = nullptr;
    for (uint32_t i = 0; i < a_block; i++) {
        char *slug = static_cast<char *>(get_slug(s));
        EXPECT_EQ(reinterpret_cast<uintptr_t>(slug) % 16, 0u);
        if (before) {
            EXPECT_EQ(before - slug, 32);
        }
        std::memset(slug, 0xff, 32);
        seen.insert(slug);
        before = slug;
    }
    EXPECT_EQ(seen.size(), a_block);
    EXPECT_EQ(s->num_blocks, 1u);
    EXPECT_EQ(s->num_slugs, a_block);
    EXPECT_EQ(s->slugs_used, a_block);
    EXPECT_FALSE(has_slug(s));
    get_slug(s);
    EXPECT_EQ(s->num_blocks, 2u);
    EXPECT_EQ(s->num_slugs, 2 * a_block);
    endof_stash(s);
}

TEST(stash, a_freed_slug_is_the_next_one_handed_out) {
    stash_record *s = open_stash(16, "reuse");
    void *first = get_slug(s), *second = get_slug(s);
    free_slug(s, first);
    EXPECT_EQ(s->slugs_used, 1u);
    EXPECT_EQ(get_slug(s), first);
    free_slug(s, first);
    free_slug(s, second);
    EXPECT_EQ(s->slugs_used, 0u);
    endof_stash(s);
}

TEST(stash, a_null_stash_gives_null) {
    EXPECT_EQ(get_slug(nullptr), nullptr);
    EXPECT_EQ(get_block(nullptr), 0u);
    EXPECT_EQ(written_by([] { print_stash_stats(nullptr); }), "");
}

static int requests;
static void *counted_request(std::size_t bytes) {
    requests++;
    return std::malloc(bytes);
}

TEST(stash, the_blocks_of_an_ended_stash_serve_the_others) {
    stash_record *s = open_stash(64, "ends");
    get_slug(s);
    endof_stash(s);
    stash_record *other = open_stash(16, "takes over");
    const heap_hooks found = heap;
    requests = 0;
    heap.request = counted_request;
    get_slug(other);
    heap = found;
    EXPECT_EQ(requests, 0);
    endof_stash(other);
}

TEST(stash, get_block_carves_without_handing_out) {
    stash_record *s = open_stash(48, "blocks");
    EXPECT_EQ(get_block(s), 0x80000u / 48);
    EXPECT_EQ(get_block(s), 0x80000u / 48);
    EXPECT_EQ(s->num_blocks, 2u);
    EXPECT_EQ(s->slugs_used, 0u);
    std::set<void *> slugs; /* of both blocks */
    for (uint32_t i = 0; i < s->num_slugs; i++) slugs.insert(get_slug(s));
    EXPECT_EQ(slugs.size(), s->num_slugs);
    EXPECT_EQ(s->num_blocks, 2u);
    endof_stash(s);
}

/* ---- a heap that refuses blocks opens a command level, at which the user may go on ---- */

struct stash_refusals : fresh_system {
    static int left;
    static void *request(std::size_t bytes) { return bytes > 0x80000 && left-- > 0 ? nullptr : std::malloc(bytes); }
    void *slug = nullptr;
    std::string text;
    bool unwound = false;

    /* Takes a slug while the heap refuses `count` blocks; "&_p" is typed at the level. */
    void take_slug(stash_record *s, int count) {
        no_spare_blocks none;
        const heap_hooks found = heap;
        heap.request = request;
        left = count;
        set_input("&_p\n");
        unwound = unwinds([&] { slug = get_slug(s); });
        heap = found;
        leave_all_levels();
    }
};
int stash_refusals::left;

TEST_F(stash_refusals, a_heap_that_refuses_twice_is_asked_a_third_time) {
    stash_record *s = open_stash(16, "patient");
    take_slug(s, 2);
    EXPECT_FALSE(unwound);
    EXPECT_NE(slug, nullptr);
    EXPECT_EQ(last_text.substr(0, last_text.find("STASH")), "out of memory while trying to accesss stash patient\n");
    EXPECT_NE(last_text.find("STASH NAME: number of blocks, number of slugs, slugs_used, slug_size\n"),
              std::string::npos);
    EXPECT_NE(last_text.find("out of heap space"), std::string::npos);
    endof_stash(s);
}

TEST_F(stash_refusals, a_heap_that_refuses_for_good_is_a_panic_stop_and_harms_nothing) {
    stash_record *s = open_stash(16, "unlucky");
    take_slug(s, 1000);
    EXPECT_TRUE(unwound);
    EXPECT_EQ(slug, nullptr);
    EXPECT_EQ(s->slugs_used, 0u);
    EXPECT_NE(get_slug(s), nullptr);
    endof_stash(s);
}

TEST_F(stash_refusals, blocks_that_are_only_hoped_for_are_no_failure) {
    stash_record *s = open_stash(16, "hopeful");
    {
        no_spare_blocks none;
        const heap_hooks found = heap;
        heap.request = request;
        left = 2;
        EXPECT_EQ(more_mem(), 0);
        EXPECT_EQ(get_block(s), 0u);
        heap = found;
    }
    endof_stash(s);
}

TEST(stash, more_mem_adds_a_block_for_the_next_stash) {
    stash_record *s = open_stash(16, "next"); /* its own record may take a block */
    EXPECT_EQ(more_mem(), 1);
    const heap_hooks found = heap;
    requests = 0;
    heap.request = counted_request;
    get_slug(s);
    heap = found;
    EXPECT_EQ(requests, 0);
    endof_stash(s);
}

TEST(stash, small_pieces_are_disjoint_and_aligned) {
    char *before = nullptr;
    for (int i = 0; i < 3000; i++) {
        char *piece = static_cast<char *>(get_small(100));
        EXPECT_EQ(reinterpret_cast<uintptr_t>(piece) % 16, 0u);
        std::memset(piece, i, 400);
        if (before && piece > before) {
            EXPECT_GE(piece - before, 400);
        }
        before = piece;
    }
    char *large = static_cast<char *>(get_small(0x20001));
    std::memset(large, 1, 4 * 0x20001);
}

TEST(stash, statistics_are_one_line_a_stash) {
    stash_record *s = open_stash(20, "stash of tests");
    get_slug(s);
    EXPECT_EQ(written_by([&] { print_stash_stats(s); }), "stash of tests: \t1, \t16384, \t1, \t32\n");
    EXPECT_EQ(written_by([] { stash_stats(); }),
              "STASH NAME: number of blocks, number of slugs, slugs_used, slug_size\n");
    endof_stash(s);
}

TEST(stash, the_value_stashes_have_their_names) {
    open_value_stashes();
    EXPECT_STREQ(polystash->stash_name, "stash of polynodes");
    EXPECT_STREQ(quolystash->stash_name, "stash of quolynodes");
    EXPECT_STREQ(numstash->stash_name, "stash of numnodes");
    EXPECT_STREQ(imagstash->stash_name, "stash of numbers");
    EXPECT_STREQ(colmstash->stash_name, "stash of colms");
    EXPECT_STREQ(primal_stash.stash_name, "storage allocator");
    stash_record *before = numstash;
    open_value_stashes();
    EXPECT_EQ(numstash, before);
}
