/* The memory budget, and what lies idle on the free lists. */
#include "numbers/storage_report.h"

#include "language/stored.h"
#include "numbers/free_lists.h"
#include "numbers/stash.h"
#include "poly/variables.h"
#include "quoly/quoly.h"
#include "support/fresh_system.h"
#include "top/driver.h"
#include "top/start_tables.h"

#include <vector>

namespace tolvek {

namespace {

/* Lists of the test's own in place of the free lists. */
struct storage_report : fresh_system {
    void SetUp() override {
        fresh_system::SetUp();
        found = {numhead, imhead, polygarb, quolygarb, colm_garb, name_garb, var_garb, pt_garb, formhead, condhead};
        set({});
    }
    void TearDown() override {
        set(found);
        fresh_system::TearDown();
    }

    struct heads {
        numnode *digits = nullptr;
        number *numbers = nullptr;
        polynode *polynodes = nullptr;
        quolynode *quolynodes = nullptr;
        colm *columns = nullptr;
        name *names = nullptr;
        variable *variables = nullptr;
        pt *poly_variables = nullptr;
        form *forms = nullptr;
        cond *conds = nullptr;
    };
    static void set(const heads &h) {
        numhead = h.digits;
        imhead = h.numbers;
        polygarb = h.polynodes;
        quolygarb = h.quolynodes;
        colm_garb = h.columns;
        name_garb = h.names;
        var_garb = h.variables;
        pt_garb = h.poly_variables;
        formhead = h.forms;
        condhead = h.conds;
    }

    /* A list of n records. */
    template <auto link, class T> static T *chain(std::vector<T> &records, std::size_t n) {
        records.assign(n, T{});
        for (std::size_t i = 0; i + 1 < n; i++) records[i].*link = &records[i + 1];
        return n ? records.data() : nullptr;
    }
    void digits(std::size_t n) { numhead = chain<&numnode::next>(digit_records, n); }
    void numbers(std::size_t n) { imhead = chain<&number::num_link>(number_records, n); }
    void polynodes(std::size_t n) { polygarb = chain<&polynode::next>(polynode_records, n); }
    void quolynodes(std::size_t n) { quolygarb = chain<&quolynode::link>(quolynode_records, n); }
    void names(std::size_t n) { name_garb = chain<&name::next>(name_records, n); }
    void variables(std::size_t n) { var_garb = chain<&variable::next>(variable_records, n); }
    void columns(std::size_t n) { colm_garb = chain<&colm::next>(column_records, n); }
    void poly_variables(std::size_t n) { pt_garb = chain<&pt::pt_next>(pt_records, n); }

    void forms(std::size_t n) { formhead = chain<&form::next>(form_records, n); }
    void conds(std::size_t n) { condhead = chain<&cond::free_link>(cond_records, n); }

    heads found;
    std::vector<numnode> digit_records;
    std::vector<number> number_records;
    std::vector<polynode> polynode_records;
    std::vector<quolynode> quolynode_records;
    std::vector<name> name_records;
    std::vector<variable> variable_records;
    std::vector<colm> column_records;
    std::vector<pt> pt_records;
    std::vector<form> form_records;
    std::vector<cond> cond_records;
};

} // namespace

/* ---- the budget ---- */

TEST_F(storage_report, the_budget_is_4_gib_while_no_figure_is_set) {
    totalavailablememory = 0;
    uint64_t used = 0;
    for (const stash_record *s : {polystash, quolystash, numstash, imagstash, colmstash})
        used += uint64_t{s->slug_size} * s->slugs_used;
    EXPECT_EQ(memavail(), (uint64_t{1} << 32) - used);
}

TEST_F(storage_report, slugs_in_use_are_taken_off_the_budget) {
    uint64_t before = memavail();
    digits(0);
    std::vector<numnode *> taken;
    for (int i = 0; i < 100; i++) taken.push_back(newdigit());
    EXPECT_EQ(before - memavail(), 100u * numstash->slug_size);
    for (numnode *d : taken) push_digit(d);
    EXPECT_EQ(before - memavail(), 100u * numstash->slug_size); /* the free list stands in front of the stash */
    for (int i = 0; i < 100; i++) free_slug(numstash, newdigit());
    EXPECT_EQ(numhead, nullptr);
    EXPECT_EQ(memavail(), before);
}

TEST_F(storage_report, a_budget_that_is_spent_is_0) {
    totalavailablememory = 16;
    EXPECT_EQ(memavail(), 0u);
    totalavailablememory = uint64_t{numstash->slug_size} * numstash->slugs_used;
    EXPECT_EQ(memavail(), 0u);
}

TEST_F(storage_report, a_budget_beyond_32_bits_is_counted_whole) {
    totalavailablememory = uint64_t{1} << 40;
    uint64_t at_1_tib = memavail();
    totalavailablememory = uint64_t{1} << 32;
    EXPECT_EQ(at_1_tib - memavail(), (uint64_t{1} << 40) - (uint64_t{1} << 32));
}

/* ---- idle bytes ---- */

TEST_F(storage_report, nothing_is_idle_on_empty_lists) {
    EXPECT_EQ(fast_garbsize(), 0);
    EXPECT_EQ(med_garbsize(), 0);
    EXPECT_EQ(big_garbsize(), 0);
    EXPECT_EQ(garbsize(), 0);
}

TEST_F(storage_report, each_record_counts_with_its_bytes) {
    digits(1);
    EXPECT_EQ(garbsize(), 8);
    numbers(1);
    EXPECT_EQ(garbsize(), 8 + 48);
    polynodes(1);
    EXPECT_EQ(garbsize(), 8 + 48 + 16);
    quolynodes(1);
    EXPECT_EQ(garbsize(), 8 + 48 + 16 + 20);
    EXPECT_EQ(fast_garbsize(), 92);
    EXPECT_EQ(med_garbsize(), 92);
    EXPECT_EQ(big_garbsize(), 72); /* without the quolynodes */
}

TEST_F(storage_report, quolynodes_from_30001_on_count_as_600020_bytes_in_the_fast_walk) {
    quolynodes(30000);
    EXPECT_EQ(fast_garbsize(), 600000);
    quolynodes(30001);
    EXPECT_EQ(fast_garbsize(), 600020);
    quolynodes(40000);
    EXPECT_EQ(fast_garbsize(), 600020);
    EXPECT_EQ(med_garbsize(), 800000);
    EXPECT_EQ(garbsize(), 800000);
}

/* A list that ends in itself is longer than any cap. */
TEST_F(storage_report, the_walks_end_at_their_caps) {
    numnode digit{0, &digit};
    numhead = &digit;
    EXPECT_EQ(fast_garbsize(), 60001 * 8);
    EXPECT_EQ(med_garbsize(), 1000001 * 8);
    EXPECT_EQ(big_garbsize(), 1000001 * 8);
    numhead = nullptr;

    number x{};
    x.num_link = &x;
    imhead = &x;
    EXPECT_EQ(fast_garbsize(), 100000 * 48);
    EXPECT_EQ(med_garbsize(), 1000000 * 48);
    EXPECT_EQ(big_garbsize(), 288000048);
    imhead = nullptr;

    polynode p{};
    p.next = &p;
    polygarb = &p;
    EXPECT_EQ(fast_garbsize(), 100000 * 16);
    EXPECT_EQ(med_garbsize(), 1000000 * 16);
    EXPECT_EQ(big_garbsize(), 160000016);
    polygarb = nullptr;

    quolynode q{};
    q.link = &q;
    quolygarb = &q;
    EXPECT_EQ(fast_garbsize(), 600020);
    EXPECT_EQ(med_garbsize(), 2000020);
    EXPECT_EQ(big_garbsize(), 0);
}

/* ---- the report ---- */

static std::string totals(long garbage_bytes) {
    return "total garbage: " + std::to_string(garbage_bytes) +
           "i\nsystem data size: " + std::to_string(size_data_strucs) +
           "i\ntotal size: " + std::to_string(garbage_bytes + size_data_strucs) + "i\n";
}

TEST_F(storage_report, four_lists_are_told_even_when_they_are_empty) {
    EXPECT_EQ(text_of(garbage),
              "num count: 0i, 8\nim count: 0i, 48\npoly count: 0i, 16\nquoly count: 0i, 20\n" + totals(0));
}

TEST_F(storage_report, the_other_lists_are_told_when_they_hold_something) {
    digits(3);
    numbers(2);
    polynodes(1);
    quolynodes(4);
    variables(5);
    names(6);
    columns(7);
    poly_variables(8);
    forms(9);
    conds(10);
    long others = 5 * sizeof(variable) + 6 * sizeof(name) + 7 * sizeof(colm) + 8 * sizeof(pt) + 9 * sizeof(form) +
                  10 * sizeof(cond);
    EXPECT_EQ(text_of(garbage), "num count: 3i, 8\nim count: 2i, 48\nvar count: 5i\nname count: 6i\n"
                                "poly count: 1i, 16\nquoly count: 4i, 20\ncolm count: 7i\npoly pointer count: 8i\n"
                                "form node count: 9i\ncond expr count: 10i\n" +
                                    totals(3 * 8 + 2 * 48 + 1 * 16 + 4 * 20 + others));
}

} // namespace tolvek
