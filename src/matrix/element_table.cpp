/* The element table, and the deletion of arrays with all that waits until nobody can hold it.

   Gaps that deleted arrays leave in the table are closed in one pass: cells move down, and each array's first and last
   cell by the sizes of the gaps below it. */
#include "language/execution.h"
#include "language/expressions.h"
#include "matrix/array_work.h"
#include "matrix/slots.h"
#include "matrix/sparse.h"
#include "top/driver.h"

#include <algorithm>

namespace tolvek {

quolynode **arp[cell_blocks];
int32_t endarr = -1;
int32_t numblocks = -1;
int borrowed_matrices = 0;
int cells_held = 0;

array_record syst{{"<", hash_unknown}, 0, -1, 0, 0, nullptr, false, nullptr, nullptr, 0, nullptr};
quolynode **syst_cells = nullptr;

struct cell_range {
    int32_t first, last;
};
static buffer<cell_range> gaps;
static sparse_frame *waiting_matrices = nullptr; /* through waiting_next */
static buffer<colm *> waiting_entries;
static array_record *waiting_arrays = nullptr;
static quolynode *waiting_values = nullptr; /* through `link` */

/* ---- what is dropped ---- */

/* A loop over a row, or a frame of a running function, may stand on an entry. */
bool entries_are_held() { return values_are_held() || statcount > 0; }

void drop_value(quolynode *q) {
    if (!q) return;
    if (values_are_held()) {
        q->link = waiting_values;
        waiting_values = q;
    } else {
        free_quoly(&q);
    }
}

void store_element(quolynode **cell, quolynode *value) {
    quolynode *old = *cell;
    *cell = value;
    drop_value(old);
}

void prepare_drop() {
    if (!entries_are_held()) return;
    waiting_entries.push(nullptr);
    waiting_entries.pop();
}

void drop_entry(colm *c) {
    if (!entries_are_held()) {
        free_quoly(&c->value);
        push_colm(c);
        return;
    }
    waiting_entries.push(c);
}

void drop_rows(sparse_frame *head, int32_t rows) {
    if (!head) return;
    if (!entries_are_held()) return free_sparse(&head, rows);
    head->waiting_rows = rows;
    head->waiting_next = waiting_matrices;
    waiting_matrices = head;
}

/* ---- rows that are borrowed ---- */

static buffer<const sparse_frame *> lent_rows;

void lend_rows(sparse_frame *head) { lent_rows.push(head); }

void take_rows_back(const sparse_frame *head) {
    std::size_t i = lent_rows.size();
    while (i > 0 && lent_rows[i - 1] != head) i--;
    if (i == 0) return;
    for (; i < lent_rows.size(); i++) lent_rows[i - 1] = lent_rows[i];
    lent_rows.pop();
}

/* What borrows keeps the old rows; the array and its parameters, which share them, get the copy. */
void own_rows(array_record *a) {
    sparse_frame *shared = a->sparse_head, *own;
    if (std::find(lent_rows.begin(), lent_rows.end(), shared) == lent_rows.end()) return;
    copy_sparse(shared, &own, a->rows, false);
    for (array_record *chain : arr_store)
        for (array_record *other = chain; other; other = other->next)
            if (other->sparse_head == shared) other->sparse_head = own;
    a->sparse_head = own;
    drop_rows(shared, a->rows);
}

/* ---- the system array ---- */

void make_syst_cells() {
    if (!syst_cells) syst_cells = static_cast<quolynode **>(heap_request_cleared(most_cells * sizeof(quolynode *)));
}

void clear_syst() {
    for (int32_t i = 0; i <= syst.last; i++) {
        quolynode *old = syst_cells[i];
        syst_cells[i] = nullptr;
        drop_value(old);
    }
    sparse_frame *rows = syst.sparse_head;
    syst.sparse_head = nullptr;
    drop_rows(rows, syst.rows);
    syst.last = -1;
    syst.size = 0;
    syst.rows = 0;
}

/* ---- room ---- */

void leave_gap(int32_t first, int32_t last) { gaps.push({first, last}); }

static void free_cells(int32_t first, int32_t last) {
    for (int32_t i = first; i <= last; i++) free_quoly(&table_cell(i));
}

/* Moves the cells above the gaps down. */
static void move_cells() {
    int32_t to = gaps[0].first;
    for (std::size_t g = 0; g < gaps.size(); g++) {
        int32_t end = g + 1 < gaps.size() ? gaps[g + 1].first : endarr + 1;
        for (int32_t from = gaps[g].last + 1; from < end; from++, to++) table_cell(to) = table_cell(from);
    }
    for (int32_t i = to; i <= endarr; i++) table_cell(i) = nullptr;
    endarr = to - 1;
}

/* Cells below `first` that go. `below` holds the sizes of the gaps up to each one. */
static int32_t shift_of(int32_t first, const buffer<int32_t> &below) {
    const cell_range *behind = std::upper_bound(gaps.begin(), gaps.end(), first,
                                                [](int32_t cell, const cell_range &gap) { return cell < gap.first; });
    return behind == gaps.begin() ? 0 : below[static_cast<std::size_t>(behind - gaps.begin() - 1)];
}

static void close_gaps() {
    if (gaps.empty()) return;
    std::sort(gaps.begin(), gaps.end(), [](const cell_range &a, const cell_range &b) { return a.first < b.first; });
    buffer<int32_t> below;
    int32_t sum = 0;
    for (const cell_range &gap : gaps) free_cells(gap.first, gap.last); /* a slot may have been stored into since */
    for (const cell_range &gap : gaps) below.push(sum += gap.last - gap.first + 1);
    for (array_record *chain : arr_store)
        for (array_record *a = chain; a; a = a->next)
            if (!a->sparse_head && a->last >= 0) {
                int32_t shift = shift_of(a->first, below);
                a->first -= shift;
                a->last -= shift;
            }
    move_cells();
    gaps.clear();
}

/* Gives the cells and records of the deleted ordinary arrays back. */
static void free_waiting_ordinary() {
    for (array_record **link = &waiting_arrays; *link;) {
        array_record *a = *link;
        if (a->sparse_head) {
            link = &a->next;
            continue;
        }
        *link = a->next;
        if (!a->aliased && a->last >= 0) {
            free_cells(a->first, a->last);
            leave_gap(a->first, a->last);
        }
        push_array(a);
    }
}

static bool fits(int32_t count) { return int64_t{endarr} + count < table_cells; }

static bool has_parameter(const array_record *target) {
    for (array_record *chain : arr_store)
        for (array_record *a = chain; a; a = a->next)
            if (a->aliased == target) return true;
    return false;
}

/* Arrays that no name reaches, as newer ones of their names stand before them. */
static void remove_hidden_arrays() {
    for (array_record *&chain : arr_store)
        for (array_record **link = &chain; *link;) {
            array_record *a = *link, *newer = chain;
            while (newer != a && !same_text(newer->tok, a->tok)) newer = newer->next;
            if (newer == a || a->sparse_head || a->is_parameter() || has_parameter(a) || is_in_slot(a)) {
                link = &a->next;
                continue;
            }
            *link = a->next;
            a->next = waiting_arrays;
            waiting_arrays = a;
        }
}

/* Nobody holds a slot of the table, the record of an array, or a value that waits. */
static bool cells_may_move() { return !values_are_held() && cells_held == 0; }

bool is_shared(const array_record *a) { return a->is_parameter() || has_parameter(a); }

void drop_cells(array_record *a) {
    leave_gap(a->first, a->last);
    for (int32_t i = a->first; i <= a->last; i++) store_element(&table_cell(i), nullptr);
    a->first = 0;
    a->last = -1;
}

/* The cheap ways first; hidden arrays go last, as @[x] could still uncover them. */
bool make_room(int32_t count) {
    if (!fits(count) && cells_may_move()) {
        free_waiting_ordinary();
        close_gaps();
    }
    if (!fits(count) && cells_may_move()) {
        remove_hidden_arrays();
        free_waiting_ordinary();
        close_gaps();
    }
    if (!fits(count)) return false;
    for (; (numblocks + 1) * cells_of_block <= endarr + count; numblocks++)
        arp[numblocks + 1] = static_cast<quolynode **>(heap_request_cleared(cells_of_block * sizeof(quolynode *)));
    return true;
}

/* ---- deletion ---- */

/* Off its chain and out of its slots; its cells or rows wait with it. */
static void retire(array_record *a) {
    unlink_array(a);
    clear_slots_of(a);
    a->next = waiting_arrays;
    waiting_arrays = a;
}

void end_parameter_array(array_record *a) {
    array_record *target = a->aliased;
    if (target && a->sparse_head != a->linked_head && a->sparse_head != target->sparse_head) {
        if (target->sparse_head != a->linked_head) drop_rows(target->sparse_head, target->rows);
        target->sparse_head = a->sparse_head;
        target->rows = a->rows;
        target->size = a->size;
    }
    if (values_are_held() || !target) return retire(a);
    unlink_array(a);
    clear_slots_of(a);
    push_array(a);
}

static bool at_the_prompt() { return levelcount == 1 && statcount == 0; }

static void cancel_aborted(int n, const token_record &name) {
    error(n, name);
    say(" Cancel aborted.\n");
    abandon_statement();
}

/* A parameter whose array has gone stands for an empty sparse one until it is deleted. */
static void leave_empty(array_record *parameter) {
    parameter->first = 0;
    parameter->last = -1;
    parameter->aliased = nullptr;
    sparse_init(&parameter->sparse_head, parameter->rows);
}

/* Parameters that stand for the deleted array. */
static void report_parameters_of(const array_record *deleted) {
    array_record *found = nullptr;
    for (array_record *chain : arr_store)
        for (array_record *a = chain; a; a = a->next) {
            if (a->birth != -deleted->birth) continue;
            found = a;
            leave_empty(a);
            if (!at_the_prompt()) continue;
            sayf(" Warning. Encountered array parameter named %s,\n", a->tok.text);
            sayf(" which is an alias of %s.  Delete it immediately.\n", deleted->tok.text);
        }
    if (found && !at_the_prompt()) cancel_aborted(139, found->tok);
}

static void remove_record(array_record *a) {
    if (a->is_parameter()) {
        if (!at_the_prompt()) cancel_aborted(138, a->tok);
        say(" Warning.  About to delete an array parameter.\n");
        retire(a);
        return;
    }
    retire(a);
    report_parameters_of(a);
}

void removearray(token_record &name, bool quiet) {
    array_record *a = find_array(name);
    if (a)
        remove_record(a);
    else if (!quiet)
        array_error(28, name);
}

void remove_all_arrays() {
    for (array_record *&chain : arr_store)
        while (chain) remove_record(chain);
}

void remove_arrays_of_name(token_record &name, bool newest_too) {
    array_record *kept = array_seek(name);
    for (array_record *a = kept->next, *next; a; a = next) {
        next = a->next;
        if (same_text(a->tok, name)) remove_record(a);
    }
    if (newest_too) remove_record(kept);
}

/* ---- ordinary arrays turn sparse ---- */

/* The entries of row r, which share the values of the cells until these give them up. */
static void share_row(const array_record *a, int32_t r, colm **head) {
    row_builder row(head);
    const int32_t cols = a->cols();
    for (int32_t c = 0; c < cols; c++) {
        quolynode *value = table_cell(a->first + c * a->rows + r);
        if (!value || quoly_is_zero(value)) continue;
        colm *entry = newcolm();
        entry->column = c + 1;
        entry->value = value;
        row.add_node(entry);
    }
}

/* Nothing changes before the rows are complete. The parameters of the array turn sparse with it; only then is the error
   raised, so that all is whole. */
void fill_sparse(array_record *a) {
    shared_rows shared(a->rows);
    row_walk walk(shared.get());
    for (int32_t r = 0; r < a->rows; r++, walk.next()) share_row(a, r, &*walk);
    leave_gap(a->first, a->last);
    for (int32_t i = a->first; i <= a->last; i++) {
        quolynode *&cell = table_cell(i);
        if (cell && quoly_is_zero(cell)) drop_value(cell);
        cell = nullptr;
    }
    sparse_frame *frames = shared.release();
    a->sparse_head = frames;
    a->first = 0;
    a->last = -1;
    array_record *parameter = nullptr;
    for (array_record *chain : arr_store)
        for (array_record *p = chain; p; p = p->next)
            if (p->birth == -a->birth) {
                p->sparse_head = frames;
                p->first = 0;
                p->last = -1;
                parameter = p;
            }
    if (!parameter) return;
    warning(342, parameter->tok.text);
    array_error(342, parameter->tok);
}

/* ---- the end of the outermost statement ---- */

void release_pending_arrays() {
    while (quolynode *q = waiting_values) {
        waiting_values = q->link;
        free_quoly(&q);
    }
    for (colm *c : waiting_entries) {
        free_quoly(&c->value);
        push_colm(c);
    }
    waiting_entries.clear();
    while (sparse_frame *head = waiting_matrices) {
        waiting_matrices = head->waiting_next;
        free_sparse(&head, head->waiting_rows);
    }
    free_waiting_ordinary();
    while (array_record *a = waiting_arrays) {
        waiting_arrays = a->next;
        if (!a->aliased) free_sparse(&a->sparse_head, a->rows);
        push_array(a);
    }
    close_gaps();
}

void forget_arrays() {
    clear_syst();
    for (array_record *&chain : arr_store)
        while (chain) retire(chain);
    release_pending_arrays();
}

} // namespace tolvek
