/* Memory that runs out, for tests of what happens then. */
#pragma once

#include "numbers/free_lists.h"
#include "numbers/stash.h"
#include "top/heap.h"
#include "top/tolvek.h"

namespace tolvek {

/* Takes the spare blocks out of play, so that the next block must come from the heap. */
struct no_spare_blocks {
    stash_record *eater = open_stash(0x80000, "eater");
    no_spare_blocks() {
        const heap_hooks found = heap;
        heap.request = [](std::size_t) -> void * { return nullptr; };
        while (get_block(eater)) {
        }
        heap = found;
    }
    ~no_spare_blocks() { endof_stash(eater); }
};

/* For its life there are only so many digits to be had, and a request to the heap unwinds at once, as a panic stop
   does after the report that such tests do without. */
struct digit_famine {
    explicit digit_famine(int digits) {
        while (numhead || has_slug(numstash)) {
            numnode *d = newdigit();
            d->next = hoard;
            hoard = d;
        }
        for (; digits > 0; digits--) give_one_back();
        heap.request = [](std::size_t) -> void * { throw unwind{unwind::to_top}; };
    }
    ~digit_famine() {
        heap = heap_found;
        while (hoard) give_one_back();
    }
    digit_famine(const digit_famine &) = delete;
    digit_famine &operator=(const digit_famine &) = delete;

    int left() const { /* digits on the list now */
        int count = 0;
        numnode *taken = nullptr;
        for (; numhead; count++) {
            numnode *d = newdigit();
            d->next = taken;
            taken = d;
        }
        while (taken) {
            numnode *next = taken->next;
            push_digit(taken);
            taken = next;
        }
        return count;
    }

  private:
    void give_one_back() {
        numnode *next = hoard->next;
        push_digit(hoard);
        hoard = next;
    }
    no_spare_blocks none;
    numnode *hoard = nullptr;
    heap_hooks heap_found = heap;
};

} // namespace tolvek
