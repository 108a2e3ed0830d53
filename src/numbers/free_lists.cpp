#include "numbers/free_lists.h"

#include "numbers/stash.h"

namespace tolvek {

numnode *numhead;
number *imhead;
polynode *polygarb;
quolynode *quolygarb;
colm *colm_garb;
name *name_garb;
variable *var_garb;
fixnode *fixgarb;

constexpr int preloaded_nodes = 5001;

/* ---- records that no stash has: a batch at a time ---- */

/* Puts `count` fresh records on the list; they count as made. */
template <auto link, class T> static void batch_to_list(T *&head, long &made, int count) {
    static_assert(sizeof(T) % 4 == 0);
    T *record = static_cast<T *>(get_small(static_cast<uint32_t>(count) * sizeof(T) / 4));
    for (int i = count; i-- > 0;) push_record<link>(head, record + i);
    made += count;
}

constexpr int records_a_batch = 64;
static long numbers_made, names_made, variables_made, fixes_made, heap_polynodes_made;

number *more_numbers() {
    batch_to_list<&number::num_link>(imhead, numbers_made, records_a_batch);
    return pop_record<&number::num_link>(imhead);
}

name *more_names() {
    batch_to_list<&name::next>(name_garb, names_made, records_a_batch);
    return pop_record<&name::next>(name_garb);
}

fixnode *more_fixes() {
    batch_to_list<&fixnode::next>(fixgarb, fixes_made, records_a_batch);
    return pop_record<&fixnode::next>(fixgarb);
}

variable *newvariable() {
    if (!var_garb) batch_to_list<&variable::next>(var_garb, variables_made, records_a_batch);
    variable *v = pop_record<&variable::next>(var_garb);
    *v = {};
    v->home_index = -1;
    return v;
}

/* ---- records from the stashes ---- */

numnode *more_digits() { return static_cast<numnode *>(get_slug(numstash)); }
polynode *more_polynodes() { return static_cast<polynode *>(get_slug(polystash)); }
quolynode *more_quolynodes() { return static_cast<quolynode *>(get_slug(quolystash)); }
colm *more_colms() { return static_cast<colm *>(get_slug(colmstash)); }

void freename(name *list) {
    while (list) {
        name *next = list->next;
        push_record<&name::next>(name_garb, list);
        list = next;
    }
}

void preload_free_lists() {
    for (int i = 0; i < preloaded_nodes; i++) push_digit(more_digits());
    batch_to_list<&polynode::next>(polygarb, heap_polynodes_made, preloaded_nodes);
}

/* ---- counting ---- */

/* Reads the links of poisoned records. */
#if TOLVEK_POISONING
__attribute__((no_sanitize("address")))
#endif
static long
list_length(const void *head, std::size_t link_at) {
    long count = 0;
    for (const char *record = static_cast<const char *>(head); record; count++)
        record = *reinterpret_cast<char *const *>(record + link_at);
    return count;
}

static long used(const stash_record *s) { return s ? static_cast<long>(s->slugs_used) : 0; }

static records_in_use abandoned; /* nobody's */

void abandon_free_lists() {
    abandoned.digits += list_length(numhead, offsetof(numnode, next));
    abandoned.numbers += list_length(imhead, offsetof(number, num_link));
    abandoned.polynodes += list_length(polygarb, offsetof(polynode, next));
    abandoned.quolynodes += list_length(quolygarb, offsetof(quolynode, link));
    numhead = nullptr;
    imhead = nullptr;
    polygarb = nullptr;
    quolygarb = nullptr;
}

records_in_use count_records_in_use() {
    records_in_use now;
    now.digits = used(numstash) - list_length(numhead, offsetof(numnode, next));
    now.numbers = numbers_made - list_length(imhead, offsetof(number, num_link));
    now.polynodes = used(polystash) + heap_polynodes_made - list_length(polygarb, offsetof(polynode, next));
    now.quolynodes = used(quolystash) - list_length(quolygarb, offsetof(quolynode, link));
    now.colms = used(colmstash) - list_length(colm_garb, offsetof(colm, next));
    now.names = names_made - list_length(name_garb, offsetof(name, next));
    now.variables = variables_made - list_length(var_garb, offsetof(variable, next));
    now.fixes = fixes_made - list_length(fixgarb, offsetof(fixnode, next));
    now.digits -= abandoned.digits;
    now.numbers -= abandoned.numbers;
    now.polynodes -= abandoned.polynodes;
    now.quolynodes -= abandoned.quolynodes;
    return now;
}

} // namespace tolvek
