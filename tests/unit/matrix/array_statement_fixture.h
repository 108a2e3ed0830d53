/* The system with the contents of arrays as text, for tests of array statements. */
#pragma once

#include "display/show_quoly.h"
#include "matrix/matrix_value.h"
#include "matrix/sparse.h"
#include "support/fresh_system.h"
#include "support/reports.h"
#include "top/driver.h"

#include <string>

namespace tolvek {

struct array_statements : fresh_exact_system {
    void TearDown() override {
        EXPECT_EQ(first_available, 1);
        EXPECT_EQ(borrowed_matrices, 0);
        EXPECT_EQ(cells_held, 0);
        run("@[*]; &J\n-t\n");
        forget_arrays();
        EXPECT_EQ(sparse_frames_in_use(), 0);
        fresh_exact_system::TearDown();
    }

    std::string value_text(const quolynode *q) {
        int column = 0;
        return text_of([&] { quoly_display(Output, q, &column, {.want_continuation = 1}); });
    }
    /* "2x3 1 4 2 5 3 6": an array with its cells column by column; "*" for one without a value; "sparse" behind the shape. */
    std::string content(array_record *a) {
        if (!a) return "none";
        std::string text = std::to_string(a->rows) + "x" + std::to_string(a->cols());
        if (a->sparse_head) text += " sparse";
        for (int64_t i = 0; i < a->size; i++) {
            const quolynode *q;
            if (a->sparse_head)
                q = spar_retrieve(a->sparse_head, static_cast<int32_t>(i % a->rows) + 1,
                                  static_cast<int32_t>(i / a->rows) + 1);
            else
                q = element(a, i);
            text += " " + (q ? value_text(q) : "*");
        }
        return text;
    }
    static array_record *find(const char *array_name) {
        token_record t;
        set_token(t, array_name);
        return find_array(t);
    }
    std::string content(const char *array_name) { return content(find(array_name)); }
    std::string system_array() { return content(&syst); }
    int64_t entries(const char *array_name) {
        array_record *a = find(array_name);
        return sparse_count(a->sparse_head, a->rows);
    }
};

} // namespace tolvek
