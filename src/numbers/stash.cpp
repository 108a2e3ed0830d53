#include "numbers/stash.h"

#include "numbers/poison.h"
#include "top/heap.h"
#include "top/text_io.h"
#include "top/tolvek.h"

namespace tolvek {

/* A block is a header and 0x80000 bytes of slugs behind it. Its first word links the blocks of a stash, or the
   spare blocks. */
struct block_header {
    block_header *link;
    uint64_t unused;
};

constexpr uint32_t slug_alignment = 16;
constexpr uint32_t block_bytes = 0x80000;
constexpr std::size_t block_size = sizeof(block_header) + block_bytes;
static_assert(sizeof(block_header) == slug_alignment);

constexpr uint32_t rounded_up(uint32_t bytes) { return (bytes + slug_alignment - 1) / slug_alignment * slug_alignment; }

stash_record primal_stash = {
    nullptr, nullptr, &primal_stash, &primal_stash, "storage allocator", rounded_up(sizeof(stash_record)), 0,
    0,       0,       nullptr,       nullptr};

stash_record *polystash, *quolystash, *numstash, *imagstash, *colmstash;

static block_header *extra_blocks; /* blocks that no stash owns now */

static char *slug_area(block_header *block) { return reinterpret_cast<char *>(block + 1); }

static void add_spare_block(void *memory) {
    block_header *block = static_cast<block_header *>(memory);
    block->link = extra_blocks;
    extra_blocks = block;
}

int more_mem() {
    void *memory = heap.request(block_size);
    if (!memory) return 0;
    add_spare_block(memory);
    return 1;
}

/* The slugs of the newest block that were never handed out go to the free list. */
static void free_uncut(stash_record *s) {
    for (; s->uncut < s->uncut_end; s->uncut += s->slug_size) {
        unpoison(s->uncut, s->slug_size);
        *reinterpret_cast<void **>(s->uncut) = s->free_list;
        s->free_list = s->uncut;
        poison(s->uncut, s->slug_size);
    }
}

/* The first spare block goes to s. Its slugs are cut off one by one, from the top. The first block of a stash may well
   be all it ever needs, and gets its pages as they are used. */
static uint32_t carve_spare_block(stash_record *s) {
    free_uncut(s);
    block_header *block = extra_blocks;
    extra_blocks = block->link;
    if (s->block_list) heap_fill_pages(block, block_size);
    block->link = static_cast<block_header *>(s->block_list);
    s->block_list = block;

    const uint32_t count = block_bytes / s->slug_size;
    s->uncut = slug_area(block);
    s->uncut_end = s->uncut + std::size_t{count} * s->slug_size;
    s->num_blocks++;
    s->num_slugs += count;
    poison(slug_area(block), block_bytes);
    return count;
}

uint32_t get_block(stash_record *s) {
    if (!s || s->slug_size > block_bytes) return 0;
    if (!extra_blocks && !more_mem()) return 0;
    return carve_spare_block(s);
}

/* A block from the heap, which may refuse. False: a slug is larger than a block. */
static bool insist_on_block(stash_record *s) {
    sayf("out of memory while trying to accesss stash %s\n", s->stash_name);
    stash_stats();
    if (s->slug_size > block_bytes) return false;
    add_spare_block(heap_request(block_size));
    carve_spare_block(s);
    return true;
}

void *get_slug(stash_record *s) {
    if (!s) return nullptr;
    if (!has_slug(s) && !get_block(s) && !insist_on_block(s)) return nullptr;
    s->slugs_used++;
    void *slug = s->free_list;
    if (!slug) {
        slug = s->uncut_end -= s->slug_size;
        unpoison(slug, s->slug_size);
        return slug;
    }
    unpoison(slug, s->slug_size);
    s->free_list = *static_cast<void **>(slug);
    return slug;
}

void free_slug(stash_record *s, void *slug) {
    *static_cast<void **>(slug) = s->free_list;
    s->free_list = slug;
    s->slugs_used--;
    poison(slug, s->slug_size);
}

stash_record *open_stash(uint32_t slug_size, const char *stash_name) {
    stash_record *s = static_cast<stash_record *>(get_slug(&primal_stash));
    if (!s) return nullptr;
    *s = {};
    s->prev_stash = &primal_stash;
    s->next_stash = primal_stash.next_stash;
    s->stash_name = stash_name;
    s->slug_size = rounded_up(slug_size ? slug_size : 1);
    s->next_stash->prev_stash = s;
    primal_stash.next_stash = s;
    return s;
}

void endof_stash(stash_record *s) {
    if (!s) return;
    while (s->block_list) {
        block_header *block = static_cast<block_header *>(s->block_list);
        s->block_list = block->link;
        unpoison(slug_area(block), block_bytes);
        add_spare_block(block);
    }
    s->prev_stash->next_stash = s->next_stash;
    s->next_stash->prev_stash = s->prev_stash;
    free_slug(&primal_stash, s);
}

void open_value_stashes() {
    if (numstash) return;
    polystash = open_stash(sizeof(polynode), "stash of polynodes");
    quolystash = open_stash(sizeof(quolynode), "stash of quolynodes");
    numstash = open_stash(sizeof(numnode), "stash of numnodes");
    imagstash = open_stash(sizeof(number), "stash of numbers");
    colmstash = open_stash(sizeof(colm), "stash of colms");
}

/* What is left of the area that get_small takes from. Areas hang on a list only so that a leak checker sees them. */
static block_header *small_areas;
static char *small_next;
static std::size_t small_left;

void *get_small(uint32_t words) {
    std::size_t bytes = (std::size_t{words} * 4 + slug_alignment - 1) / slug_alignment * slug_alignment;
    if (bytes > small_left) {
        const std::size_t area = bytes > block_bytes ? bytes : block_bytes;
        block_header *fresh = static_cast<block_header *>(heap_request(sizeof(block_header) + area));
        if (small_areas && area == block_bytes) heap_fill_pages(fresh, block_size);
        fresh->link = small_areas;
        small_areas = fresh;
        small_next = slug_area(fresh);
        small_left = area;
    }
    void *result = small_next;
    small_next += bytes;
    small_left -= bytes;
    return result;
}

void print_stash_stats(stash_record *s) {
    if (!s) return;
    sayf("%s: \t%li, \t%li, \t%li, \t%d\n", s->stash_name, static_cast<long>(s->num_blocks),
         static_cast<long>(s->num_slugs), static_cast<long>(s->slugs_used), static_cast<int>(s->slug_size));
}

void stash_stats() {
    say("STASH NAME: number of blocks, number of slugs, slugs_used, slug_size\n");
    flush(&standard_output);
}

} // namespace tolvek
