/* Elimination with the pivot in a row of the fewest entries, and there in a column of the fewest (a plain form of the rule
   of H. Markowitz, 1957). When what remains has filled up, it goes on as a dense matrix. */
#include "matrix/sparse_words.h"

#include "matrix/elimination_work.h"
#include "matrix/word_matrix.h"
#include "top/interrupts.h"

namespace tolvek {

namespace {

constexpr std::size_t index_of(int i) { return static_cast<std::size_t>(i); }

/* The rows with an entry in each column, as lists; a row that has lost its entry, or is done, stays. */
class column_lists {
  public:
    explicit column_lists(const sparse_words &m) : first(index_of(m.n())), count(index_of(m.n())) {
        for (int &f : first) f = -1;
        for (int &c : count) c = 0;
        for (int i = 0; i < m.n(); i++) {
            const sparse_words::row &r = m.rows[index_of(i)];
            for (int k = 0; k < r.count; k++) add(m.pool[r.start + index_of(k)].column, i);
        }
    }
    void add(int column, int row) {
        nodes.push({row, first[index_of(column)]});
        first[index_of(column)] = static_cast<int>(nodes.size()) - 1;
        count[index_of(column)]++;
    }
    void lose(int column) { count[index_of(column)]--; }
    int entries(int column) const { return count[index_of(column)]; }
    template <class Visit> void each_row(int column, Visit visit) const {
        for (int at = first[index_of(column)]; at >= 0;) {
            const node found = nodes[index_of(at)]; /* visits add nodes */
            at = found.next;
            visit(found.row);
        }
    }

  private:
    struct node {
        int row, next;
    };
    buffer<node> nodes;
    buffer<int> first, count;
};

class word_elimination {
  public:
    word_elimination(const uni_field &field, sparse_words &matrix)
        : f(field), m(matrix), columns(matrix), column_of(index_of(m.n())), live(m.pool.size()) {
        for (int i = 0; i < m.n(); i++) active.push(i);
        for (int &c : column_of) c = -1;
    }
    uint32_t determinant() {
        uint32_t det = 1;
        while (!active.empty() && !has_filled_up()) {
            const int at = best_row();
            if (row(active[index_of(at)]).count == 0) return 0;
            det = f.product(det, eliminate_by(at));
            safe_point();
        }
        det = f.product(det, rest());
        return make_identity(column_of) ? f.negative(det) : det;
    }

  private:
    sparse_words::row &row(int i) { return m.rows[index_of(i)]; }
    const word_entry *find(int i, int column);
    bool has_filled_up() const;
    int best_row();
    int best_column(int i);
    uint32_t eliminate_by(int at);
    void subtract(int i, uint32_t factor, int top, int column);
    void make_room(std::size_t more);
    uint32_t rest();

    const uni_field &f;
    sparse_words &m;
    column_lists columns;
    buffer<int> active, column_of;
    std::size_t live;     /* entries of active rows */
    std::size_t room = 0; /* of the pool, as far as this class has asked for it */
};

const word_entry *word_elimination::find(int i, int column) {
    const word_entry *from = m.pool.data() + row(i).start, *to = from + row(i).count;
    while (from < to) {
        const word_entry *middle = from + (to - from) / 2;
        if (middle->column == column) return middle;
        if (middle->column < column)
            from = middle + 1;
        else
            to = middle;
    }
    return nullptr;
}

/* Measured: rows as lists cost some four times as much an entry. */
bool word_elimination::has_filled_up() const { return 4 * live > active.size() * active.size(); }

int word_elimination::best_row() {
    std::size_t best = 0;
    for (std::size_t i = 1; i < active.size(); i++)
        if (row(active[i]).count < row(active[best]).count) best = i;
    return static_cast<int>(best);
}

int word_elimination::best_column(int i) {
    const word_entry *entry = m.pool.data() + row(i).start;
    int best = entry->column;
    for (int k = 1; k < row(i).count; k++)
        if (columns.entries(entry[k].column) < columns.entries(best)) best = entry[k].column;
    return best;
}

/* The pool gets room for more entries, so that it stays where it is while they come; when most of it has become useless, the
   live rows are moved together. */
void word_elimination::make_room(std::size_t more) {
    if (m.pool.size() + more > 4 * (live + more) + 1024) {
        buffer<word_entry> packed;
        room = 2 * (live + more);
        packed.reserve(room);
        for (const int i : active) {
            const std::size_t start = packed.size();
            for (int k = 0; k < row(i).count; k++) packed.push(m.pool[row(i).start + index_of(k)]);
            row(i).start = start;
        }
        m.pool = static_cast<buffer<word_entry> &&>(packed);
    }
    if (m.pool.size() + more > room) {
        room = 2 * (m.pool.size() + more);
        m.pool.reserve(room);
    }
}

/* Row i := itself less factor times row `top`, in a new place, without the pivot's column. */
void word_elimination::subtract(int i, uint32_t factor, int top, int column) {
    make_room(index_of(row(i).count) + index_of(row(top).count));
    const std::size_t start = m.pool.size();
    const word_entry *a = m.pool.data() + row(i).start, *const a_end = a + row(i).count;
    const word_entry *b = m.pool.data() + row(top).start, *const b_end = b + row(top).count;
    const uint32_t minus = f.negative(factor);
    while (a < a_end || b < b_end) {
        if (b == b_end || (a < a_end && a->column < b->column)) {
            m.pool.push(*a++);
        } else if (a == a_end || b->column < a->column) {
            columns.add(b->column, i);
            m.pool.push({b->column, f.product(b->value, minus)});
            b++;
        } else {
            const uint32_t value = f.sum(a->value, f.product(b->value, minus));
            if (a->column == column || value == 0)
                columns.lose(a->column);
            else
                m.pool.push({a->column, value});
            a++;
            b++;
        }
    }
    const auto count = static_cast<int32_t>(m.pool.size() - start);
    live += index_of(count);
    live -= index_of(row(i).count);
    row(i) = {start, count};
}

/* One step, with the row at this place of `active`: the pivot. */
uint32_t word_elimination::eliminate_by(int at) {
    const int top = active[index_of(at)], column = best_column(top);
    const uint32_t pivot = find(top, column)->value, inverse = f.inverse(pivot);
    columns.each_row(column, [&](int i) {
        if (i == top || row(i).count <= 0) return;
        const word_entry *entry = find(i, column);
        if (entry) subtract(i, f.product(entry->value, inverse), top, column);
    });
    for (int k = 0; k < row(top).count; k++) columns.lose(m.pool[row(top).start + index_of(k)].column);
    live -= index_of(row(top).count);
    row(top).count = -1;
    column_of[index_of(top)] = column;
    active[index_of(at)] = active.back();
    active.pop();
    return pivot;
}

/* The determinant of what remains, as a dense matrix; its rows and columns are paired as they come. */
uint32_t word_elimination::rest() {
    const int n = static_cast<int>(active.size());
    buffer<int> place(index_of(m.n()));
    for (int &p : place) p = 0;
    for (const int column : column_of)
        if (column >= 0) place[index_of(column)] = -1;
    int next = 0;
    for (int column = 0; column < m.n(); column++) {
        if (place[index_of(column)] < 0) continue;
        place[index_of(column)] = next;
        column_of[index_of(active[index_of(next)])] = column;
        next++;
    }
    word_matrix square(n, n);
    for (int r = 0; r < n; r++) {
        for (int c = 0; c < n; c++) square[r][c] = 0;
        const sparse_words::row &from = row(active[index_of(r)]);
        for (int k = 0; k < from.count; k++) {
            const word_entry &entry = m.pool[from.start + index_of(k)];
            square[r][place[index_of(entry.column)]] = entry.value;
        }
    }
    return word_determinant(f, &square);
}

} // namespace

uint32_t sparse_word_determinant(const uni_field &f, sparse_words *m) { return word_elimination(f, *m).determinant(); }

} // namespace tolvek
