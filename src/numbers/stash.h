/* The slab allocator under the free lists: fixed-size slugs carved out of blocks of 0x80000 bytes. Blocks come from
   the heap (top/heap.h) and never go back to it; a stash that ends leaves its blocks to the others. */
#pragma once

#include <cstddef>
#include <cstdint>

namespace tolvek {

struct stash_record {
    void *free_list;          /* first free slug; its first word points to the next one */
    void *block_list;         /* the blocks of this stash, through each block's first word */
    stash_record *prev_stash; /* ring of all stashes, primal_stash among them */
    stash_record *next_stash;
    const char *stash_name;
    uint32_t slug_size; /* bytes, rounded up to a multiple of 16 */
    uint32_t num_blocks;
    uint32_t num_slugs;  /* slugs of all its blocks */
    uint32_t slugs_used; /* slugs handed out and not given back through free_slug */
    char *uncut;         /* from here to uncut_end: slugs of the newest block that were never handed out */
    char *uncut_end;
};

extern stash_record primal_stash; /* the stash of the stash_records themselves */

/* The five stashes of values, opened by open_value_stashes in this order. */
extern stash_record *polystash, *quolystash, *numstash, *imagstash, *colmstash;
void open_value_stashes();

stash_record *open_stash(uint32_t slug_size, const char *stash_name); /* null: no memory */
void endof_stash(stash_record *s); /* its blocks become spare blocks, its record is given back */

inline bool has_slug(const stash_record *s) {
    return s->free_list || s->uncut < s->uncut_end;
} /* without a block more */
void *get_slug(stash_record *s); /* null for a null stash */
void free_slug(stash_record *s, void *slug);
uint32_t get_block(stash_record *s); /* carves one more block; the number of its slugs, 0 without memory */
int more_mem();                      /* adds one spare block; 1, or 0 when the heap refuses */
void *get_small(uint32_t words);     /* `words` times 4 bytes that are never given back */

void print_stash_stats(stash_record *s);
void stash_stats();

} // namespace tolvek
