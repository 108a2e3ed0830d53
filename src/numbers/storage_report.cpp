#include "numbers/storage_report.h"

#include "language/stored.h"
#include "numbers/free_lists.h"
#include "numbers/poison.h"
#include "numbers/stash.h"
#include "poly/variables.h"
#include "top/driver.h"
#include "top/start_tables.h"

#include <cstddef>
#include <initializer_list>

namespace tolvek {

/* ---- the budget ---- */

uint64_t memavail() {
    uint64_t budget = find_total_available_memory(), used = 0;
    for (const stash_record *s : {polystash, quolystash, numstash, imagstash, colmstash}) {
        if (s) used += uint64_t{s->slug_size} * s->slugs_used;
        if (used >= budget) return 0;
    }
    return budget - used;
}

/* ---- lengths of free lists ---- */

constexpr int64_t no_cap = INT64_MAX;

/* The records behind head, at most `cap`. Reads the links of poisoned records. */
#if TOLVEK_POISONING
__attribute__((no_sanitize("address")))
#endif
static int64_t
list_length(const void *head, std::size_t link_at, int64_t cap) {
    int64_t count = 0;
    for (const char *record = static_cast<const char *>(head); record && count < cap; count++)
        record = *reinterpret_cast<char *const *>(record + link_at);
    return count;
}

static int64_t digits(int64_t cap) { return list_length(numhead, offsetof(numnode, next), cap); }
static int64_t numbers(int64_t cap) { return list_length(imhead, offsetof(number, num_link), cap); }
static int64_t polynodes(int64_t cap) { return list_length(polygarb, offsetof(polynode, next), cap); }
static int64_t quolynodes(int64_t cap) { return list_length(quolygarb, offsetof(quolynode, link), cap); }
static int64_t variables(int64_t cap) { return list_length(var_garb, offsetof(variable, next), cap); }
static int64_t names(int64_t cap) { return list_length(name_garb, offsetof(name, next), cap); }
static int64_t fixes(int64_t cap) { return list_length(fixgarb, offsetof(fixnode, next), cap); }
static int64_t columns(int64_t cap) { return list_length(colm_garb, offsetof(colm, next), cap); }
static int64_t forms(int64_t cap) { return list_length(formhead, offsetof(form, next), cap); }
static int64_t conds(int64_t cap) { return list_length(condhead, offsetof(cond, free_link), cap); }
static int64_t poly_variables(int64_t cap) { return list_length(pt_garb, offsetof(pt, pt_next), cap); }

struct garbage_caps {
    int64_t digits, numbers, polynodes, quolynodes;
};

static int64_t capped_garbsize(const garbage_caps &cap) {
    return numnodesize * digits(cap.digits) + numbersize * numbers(cap.numbers) +
           polynodesize * polynodes(cap.polynodes) + quolysize * quolynodes(cap.quolynodes);
}

int64_t fast_garbsize() { return capped_garbsize({60001, 100000, 100000, 30001}); }
int64_t med_garbsize() { return capped_garbsize({1000001, 1000000, 1000000, 100001}); }
int64_t big_garbsize() { return capped_garbsize({1000001, 6000001, 10000001, 0}); }
int64_t garbsize() { return capped_garbsize({no_cap, no_cap, no_cap, no_cap}); }

/* ---- the report ---- */

struct garbage_line {
    const char *name;
    int64_t (*length)(int64_t cap);
    int64_t bytes; /* of one record */
    bool tells_bytes;
    bool always; /* also for an empty list */
};

static const garbage_line garbage_lines[] = {
    {"num", digits, numnodesize, true, true},           {"im", numbers, numbersize, true, true},
    {"var", variables, sizeof(variable), false, false}, {"name", names, sizeof(name), false, false},
    {"fix", fixes, sizeof(fixnode), false, false},      {"poly", polynodes, polynodesize, true, true},      {"quoly", quolynodes, quolysize, true, true},
    {"colm", columns, sizeof(colm), false, false},      {"poly pointer", poly_variables, sizeof(pt), false, false},
    {"form node", forms, sizeof(form), false, false},   {"cond expr", conds, sizeof(cond), false, false},
};

/* The letter behind a count belongs to the report. */
static void say_total(const char *name, int64_t bytes) { sayf("%s: %lui\n", name, static_cast<unsigned long>(bytes)); }

static int64_t report_list(const garbage_line &line) {
    int64_t count = line.length(no_cap);
    if (count == 0 && !line.always) return 0;
    sayf("%s count: %lui", line.name, static_cast<unsigned long>(count));
    if (line.tells_bytes) sayf(", %li", static_cast<long>(line.bytes));
    say("\n");
    return count * line.bytes;
}

void garbage() {
    int64_t total = 0;
    for (const garbage_line &line : garbage_lines) total += report_list(line);
    say_total("total garbage", total);
    say_total("system data size", size_data_strucs);
    say_total("total size", total + size_data_strucs);
    flush(&standard_output);
}

} // namespace tolvek
