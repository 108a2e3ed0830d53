#include "poly/disk_store.h"

#include "support/rand_poly.h"

#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace tolvek {

namespace {

/* A file that is written and read from its beginning, gone at the end. */
struct scratch_file {
    FILE *file = std::tmpfile();
    ~scratch_file() { std::fclose(file); }
    int fd() const { return fileno(file); }
    std::string text() const {
        std::string all(static_cast<std::size_t>(lseek(fd(), 0, SEEK_END)), '\0');
        EXPECT_EQ(pread(fd(), all.data(), all.size(), 0), static_cast<ssize_t>(all.size()));
        return all;
    }
    void hold(const std::string &text) const {
        EXPECT_EQ(write(fd(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
        lseek(fd(), 0, SEEK_SET);
    }
};

struct disk_store : poly_test {
    std::string stored(const polynode *p) {
        scratch_file file;
        text_out store(file.fd());
        tolvekstore = &store;
        put_poly_disk(p);
        tolvekstore = nullptr;
        flush(&store);
        return file.text();
    }
    std::string read_back(const std::string &text) {
        scratch_file file;
        file.hold(text);
        text_in store(file.fd());
        poly_handle p;
        get_poly_disk(&store, p.slot());
        return p ? text_of(p.get()) : "null";
    }
};

std::string raw(std::initializer_list<int32_t> words) {
    std::string bytes;
    for (int32_t w : words) bytes.append(reinterpret_cast<const char *>(&w), sizeof w);
    return bytes;
}

} // namespace

TEST_F(disk_store, zero_is_its_number_term_and_the_end_mark) {
    poly_handle p(poly_of("0"));
    EXPECT_EQ(stored(p.get()), "-2147483648"
                               "1"
                               "0"
                               "2147483647");
    EXPECT_EQ(stored(nullptr), "2147483647");
}

TEST_F(disk_store, a_term_is_its_exponent_and_its_coefficient) {
    poly_handle p(poly_of("-x^3 + 5"));
    EXPECT_EQ(stored(p.get()), "3"
                               "-2147483648"
                               "1"
                               "-1"
                               "2147483647"
                               "-2147483648"
                               "1"
                               "5"
                               "2147483647");
}

TEST_F(disk_store, a_residue_stands_behind_a_0) {
    test_ring ring("7");
    poly_handle p(poly_of("4"));
    EXPECT_EQ(stored(p.get()), "-2147483648"
                               "0"
                               "4"
                               "2147483647");
}

TEST_F(disk_store, a_store_that_is_not_open_takes_nothing) {
    put_poly_disk(poly_1);
    EXPECT_EQ(tolvekstore, nullptr);
}

TEST_F(disk_store, the_reader_takes_tags_in_figures_and_numbers_as_raw_words) {
    EXPECT_EQ(read_back("3 -2147483648" + raw({2, 1, 5}) + "2147483647 -2147483648" + raw({1, -9}) + "2147483647"),
              "268435461*x^3 - 9");
    EXPECT_EQ(read_back("2147483647"), "null");
    test_ring ring("7");
    EXPECT_EQ(read_back("-2147483648" + raw({0, 6}) + "2147483647"), "6");
}

TEST_F(disk_store, a_store_that_ends_too_early_gives_what_it_held) {
    EXPECT_EQ(read_back(""), "null");
    EXPECT_EQ(read_back("-2147483648" + raw({3, 1})), "1");
    EXPECT_EQ(read_back("-2147483648" + raw({1, 4})), "4");
}

} // namespace tolvek
