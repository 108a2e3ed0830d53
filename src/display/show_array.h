/* The display of arrays: by rows, element by element, as a literal, and the forms of sparse arrays.

   Text for a file reads back as statements; text for the screen is for a person. An element without a value is shown as
   such on the screen. No routine here changes an array; what stays of a row is shown to its end if a command level
   changes it meanwhile. */
#pragma once

#include "matrix/array_names.h"
#include "top/text_io.h"

namespace tolvek {

struct array_picture {
    bool on_screen = false;    /* otherwise text for a file */
    bool item_by_item = false; /* an element a line, down the columns; otherwise by rows */
    bool framed = false;       /* with the name, in the brackets of a literal */
    bool as_character = false; /* each number as the byte that it stands for; error 121 for other values */
    int width = 0;             /* columns that an element is filled up to, its comma included */
    int gap = 0;               /* blanks between elements at least */
    int64_t first_row = 1;     /* labels of the first row and column */
    int64_t first_col = 1;
};

/* Shows a rectangle, under the name of the region. A whole sparse array is shown by sparse_display when it is shown item
   by item on the screen, and by better_sparse_display when it goes to a file by rows. */
void arrdisplay(text_out *out, const array_region &region, const array_picture &picture);

/* A whole ordinary array as the assignment of a literal, for a file: one line for each row, or one line for all of a
   single column. Elements without a value become 0. */
void arrdis(text_out *out, const array_region &region, int width);
/* Has an ordinary array nothing but small numbers, so that arrdis suits it? */
bool all_small(const array_record *a);

/* A sparse array as an assignment of its entries, row by row; the system array alone, without an assignment. */
void sparse_display(text_out *out, const array_record *a, bool on_screen);
/* A sparse array as an assignment for each entry, for a file. */
void better_sparse_display(text_out *out, const array_record *a);

/* The system array behind a statement: by rows, the columns aligned if the elements are short. */
void show_system_array(text_out *out);

} // namespace tolvek
