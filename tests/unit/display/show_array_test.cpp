#include "display/show_array.h"

#include "by_hand.h"
#include "matrix/sparse.h"
#include "top/driver.h"
#include "top/startup.h"

using namespace tolvek;

namespace {

struct show_array : fresh_exact_system {
    void SetUp() override {
        fresh_exact_system::SetUp();
        run("[x] := [[1,2,30][4,50,6]]; Array y[2]; Array s[3,4] Sparse");
        run("[s] := [[1, [2, 5], [3, 7]] [3, [4, 2]]]");
    }
    void TearDown() override {
        forget_arrays();
        uglyprint = 0;
        std::strcpy(prompt, ">");
        promptsize = 1;
        addresser = 1;
        fresh_exact_system::TearDown();
    }
    static array_region whole(const char *array_name) {
        token_record t;
        set_token(t, array_name);
        array_region region;
        whole_array(array_seek(t), region);
        return region;
    }
    std::string shown(const array_region &region, const array_picture &picture) {
        return text_of([&] { arrdisplay(Output, region, picture); });
    }
    std::string shown(const char *array_name, const array_picture &picture) {
        return shown(whole(array_name), picture);
    }
    /* A region of the array, as [x[r1~r2,c1~c2]] names it. */
    static array_region part(const char *array_name, int64_t r, int32_t rows, int64_t c, int64_t cols) {
        array_region region = whole(array_name);
        region.sub = true;
        region.first = c * region.stride + r;
        region.rows = rows;
        region.cols = cols;
        return region;
    }
};

std::string blanks(std::size_t n) { return std::string(n, ' '); }

/* ---- by rows, on the screen ---- */

TEST_F(show_array, rows_on_lines_of_their_own) {
    EXPECT_EQ(shown("x", {.on_screen = true}), "1,2,30,\n4,50,6");
    EXPECT_EQ(shown("x", {.on_screen = true, .width = 5}), "1,   2,   30,\n4,   50,  6");
    EXPECT_EQ(shown(part("x", 0, 2, 1, 2), {.on_screen = true}), "2,30,\n50,6");
}

TEST_F(show_array, a_frame_has_the_prompt_the_name_and_marks_that_continue_the_line) {
    EXPECT_EQ(shown("x", {.on_screen = true, .framed = true, .width = 5}),
              ">[x] := [[  1,   2,   30, `\n" + blanks(11) + " 4,   50,  6   ]]\n");
    EXPECT_EQ(shown(part("x", 1, 1, 0, 3), {.on_screen = true, .framed = true}), ">[x] := [[ 4,50,6  ]]\n");
}

TEST_F(show_array, a_frame_at_a_deeper_level_has_its_number) {
    levelcount = 2;
    EXPECT_EQ(shown("x", {.on_screen = true, .framed = true}),
              "2>[x] := [[ 1,2,30, `\n" + blanks(12) + "4,50,6   ]]\n");
    levelcount = 1;
}

TEST_F(show_array, a_prompt_without_text_takes_no_column) {
    std::strcpy(prompt, "\r");
    promptsize = 0;
    EXPECT_EQ(shown("x", {.on_screen = true, .framed = true}),
              "\r[x] := [[ 1,2,30, `\n" + blanks(10) + "4,50,6   ]]\n");
}

TEST_F(show_array, the_compact_style_brackets_each_row) {
    uglyprint = 1;
    EXPECT_EQ(shown("x", {.on_screen = true, .framed = true}),
              ">[x] := [[ 1,2,30], [\n" + blanks(11) + "4,50,6   ]]\n");
}

TEST_F(show_array, elements_without_a_value_are_stars) {
    EXPECT_EQ(shown("y", {.on_screen = true, .framed = true}), ">[y] := [[  *, `\n" + blanks(11) + " *    ]]\n");
    run("Array z[2,2]; z[1,2] := 7");
    EXPECT_EQ(shown("z", {.on_screen = true, .width = 5}), " *,  7,\n *,   * ");
}

TEST_F(show_array, numbers_as_characters) {
    run("[t] := 'abc'");
    EXPECT_EQ(shown("t", {.on_screen = true, .as_character = true}), "abc");
    EXPECT_EQ(shown("t", {.on_screen = true, .framed = true, .as_character = true}), ">[t] := [[ abc ]]\n");
    run("t[2] := 1/2");
    EXPECT_TRUE(unwinds([&] { arrdisplay(Output, whole("t"), {.on_screen = true, .as_character = true}); }));
    EXPECT_NE(last_text.find(message_text(121)), std::string::npos);
}

/* ---- by rows, in a file ---- */

TEST_F(show_array, a_file_gets_an_assignment_for_each_element_with_a_value) {
    EXPECT_EQ(shown(part("x", 0, 2, 1, 2), {.first_col = 2}),
              " x[ 1, 2] := 2; \n x[ 1, 3] := 30; \n x[ 2, 2] := 50; \n x[ 2, 3] := 6; \n");
    run("y[2] := 0");
    EXPECT_EQ(shown("y", {}), " y[ 2] := 0; \n");
    EXPECT_EQ(shown(part("s", 0, 2, 0, 4), {}), " s[ 1, 2] := 5; \n s[ 1, 3] := 7; \n");
}

/* ---- item by item ---- */

TEST_F(show_array, items_on_the_screen_go_down_the_columns) {
    EXPECT_EQ(shown(part("x", 0, 2, 0, 2), {.on_screen = true, .item_by_item = true}), "1\n4\n \n2\n50\n \n");
    EXPECT_EQ(shown("y", {.on_screen = true, .item_by_item = true, .framed = true}),
              " y[ 1] := not defined.\n y[ 2] := not defined.\n \n");
    EXPECT_EQ(shown(part("x", 0, 1, 0, 2), {.on_screen = true, .item_by_item = true, .framed = true}),
              " x[ 1, 1] := 1\n x[ 1, 2] := 2\n");
}

TEST_F(show_array, items_in_a_file_are_a_literal) {
    const std::string indent = blanks(10);
    EXPECT_EQ(shown("x", {.item_by_item = true, .framed = true}), "[x] := [( 1,\n" + indent + "4,\n \n" + indent +
                                                                      "2,\n" + indent + "50,\n \n" + indent + "30,\n" +
                                                                      indent + "6 \n" + indent + ")];\n");
    EXPECT_EQ(shown("y", {.item_by_item = true, .framed = true}),
              "[y] := [( 0,\n" + indent + "0 \n" + indent + ")];\n");
    run("[r] := [(1/2, 3)]");
    EXPECT_EQ(shown("r", {.item_by_item = true, .framed = true}),
              "[r] := [( 1 / 2,\n" + indent + "3 \n" + indent + ")];\n");
}

/* ---- literals of small values ---- */

TEST_F(show_array, small_values_are_a_literal_by_rows) {
    EXPECT_EQ(text_of([] { arrdis(Output, whole("x"), 6); }),
              "[x] := [[  1,    2,    30, \n" + blanks(10) + " 4,    50,   6   ]];\n");
    EXPECT_EQ(text_of([] { arrdis(Output, whole("y"), 6); }), "[y] := [[ 0, 0    ]];\n");
    run("[c] := [[7][-8]]");
    EXPECT_EQ(text_of([] { arrdis(Output, whole("c"), 6); }), "[c] := [[  7,  -8  ]];\n");
}

TEST_F(show_array, numbers_of_ten_digits_and_more_are_not_small) {
    auto small = [](const char *array_name) { return all_small(whole(array_name).array); };
    EXPECT_TRUE(small("x"));
    EXPECT_TRUE(small("y"));
    run("x[1] := 2^(28*9)-1");
    EXPECT_TRUE(small("x"));
    run("x[1] := 2^(28*9)");
    EXPECT_FALSE(small("x"));
    run("x[1] := (2^(28*4)-1)/2^(28*4)");
    EXPECT_TRUE(small("x"));
    run("x[1] := (2^(28*5)-1)/2^(28*5)");
    EXPECT_FALSE(small("x"));
    run("&J\nu\nx[1] := u");
    EXPECT_FALSE(small("x"));
    run("x[1] := 0\n&J\n-u\n");
}

/* ---- sparse arrays ---- */

TEST_F(show_array, a_sparse_array_row_by_row) {
    EXPECT_EQ(text_of([] { sparse_display(Output, whole("s").array, true); }),
              ">[s] := [ [1, [2, 5], [3, 7] ] ` \n" + blanks(10) + "[3, [4, 2] ] ] \n \n");
    EXPECT_EQ(text_of([] { sparse_display(Output, whole("s").array, false); }),
              "[s] := [ [1, [2, 5], [3, 7] ] \n" + blanks(9) + "[3, [4, 2] ] ]; \n \n");
    run("[s] := []");
    EXPECT_EQ(text_of([] { sparse_display(Output, whole("s").array, false); }), "[s] := [  ]; \n \n");
}

TEST_F(show_array, a_sparse_array_item_by_item) {
    const std::string items = "s[1, 2] := 5;\ns[1, 3] := 7;\ns[3, 4] := 2;\n \n";
    EXPECT_EQ(text_of([] { better_sparse_display(Output, whole("s").array); }), items);
    EXPECT_EQ(shown("s", {}), items);
    addresser = 0;
    EXPECT_EQ(shown("s", {}), "s[0, 1] := 5;\ns[0, 2] := 7;\ns[2, 3] := 2;\n \n");
}

TEST_F(show_array, the_form_of_a_sparse_array_depends_on_what_is_asked_for) {
    const std::string rows = ">[s] := [ [1, [2, 5], [3, 7] ] ` \n" + blanks(10) + "[3, [4, 2] ] ] \n \n";
    EXPECT_EQ(shown("s", {.on_screen = true, .item_by_item = true}), rows);
    EXPECT_EQ(shown("s", {.on_screen = true}), "0,5,7,0,\n0,0,0,0,\n0,0,0,2");
    EXPECT_EQ(shown(part("s", 1, 2, 2, 2), {.on_screen = true}), "0,0,\n0,2");
}

TEST_F(show_array, a_sparse_row_wraps_at_column_151_whatever_the_margin_is) {
    run("Array w[1,20] Sparse; [w] := 1");
    /* 10 and 3 columns in front of the entries, which count 9 each: 148 behind the 15th, 157 behind the 16th */
    std::string text = ">[w] := [ [1";
    for (int c = 1; c <= 16; c++) text += ", [" + std::to_string(c) + ", 1]";
    text += " ` \n" + blanks(13);
    for (int c = 17; c <= 20; c++) text += ", [" + std::to_string(c) + ", 1]";
    text += " ] ] \n \n";
    dispcutoff = 40;
    EXPECT_EQ(text_of([] { sparse_display(Output, whole("w").array, true); }), text);
    dispcutoff = 76;
}

/* ---- the system array ---- */

TEST_F(show_array, the_system_array_has_aligned_columns) {
    EXPECT_EQ(run("[x]"), "   1,  2,  30,\n   4,  50, 6\n\n        0\n\n");
    EXPECT_EQ(run("[x[1,1]]"), "   1\n\n        0\n\n");
    EXPECT_EQ(run("[x]:"), "\n");
    run("&E");
    EXPECT_EQ(run("[x]"), "   1,  2,  30,\n   4,  50, 6\n        0\n") << "without extra lines";
    run("&E");
}

TEST_F(show_array, residues_and_fractions_are_aligned_too) {
    run("&(p = 7)\n[r] := [[1,5][6,3]]");
    EXPECT_EQ(run("[r]"), "   1,  -2,\n   -1, 3\n\n0\n\n");
    run("&p\n[f] := [[1/2,1][3,4]]");
    EXPECT_EQ(run("[f]"), "   1 / 2, 1,\n   3,     4\n\n        0\n\n");
}

TEST_F(show_array, long_elements_stand_one_blank_apart) {
    run("[x] := [(2^120, 1)]");
    EXPECT_EQ(run("[x]"), "   1329227995784915872903807060280344576, 1\n\n        0\n\n");
}

TEST_F(show_array, a_sparse_system_array_has_no_name) {
    EXPECT_EQ(run("[s]"), "[[1, [2, 5], [3, 7] ] ` \n [3, [4, 2] ] ] \n \n\n        0\n\n");
}

struct show_flote_array : fresh_system {
    void TearDown() override {
        forget_arrays();
        fresh_system::TearDown();
    }
};

TEST_F(show_flote_array, floats_are_aligned) {
    run("[x] := [[0.5,2][-3.25,1e+20]]");
    EXPECT_EQ(run("[x]"), "   0.5,   2,\n   -3.25, 1e+20\n\n0\n\n");
}

/* ---- reading back ---- */

TEST_F(show_array, what_goes_to_a_file_reads_back) {
    run("[f] := [[1/3, -7, 12345678901234567890][0, 2^130, -1/2^70]]; [c] := [[5][-6][7]]");
    for (const char *array_name : {"x", "f", "c"}) {
        const std::string as_rows = text_of([&] { arrdis(Output, whole(array_name), 8); }),
                          as_items = shown(array_name, {.item_by_item = true, .framed = true}),
                          single = shown(array_name, {});
        for (const std::string &text : {as_rows, as_items, single}) {
            run("[" + std::string(array_name) + "] := -3");
            write_file("tolvekstart.txt", "100\n" + text);
            text_of([] { load_startup(data_directory()); });
            EXPECT_EQ(shown(array_name, {.item_by_item = true, .framed = true}), as_items) << text;
        }
    }
}

} // namespace
