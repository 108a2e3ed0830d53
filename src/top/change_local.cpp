#include "top/change_local.h"
#include "language/names.h"
#include "language/scanner.h"
#include "matrix/slots.h"
#include "numbers/number_decimal.h"
#include "top/driver.h"
#include "top/text_io.h"

#include <cstdlib>
#include <cstring>

namespace tolvek {

namespace {

/* The list as it is read. The last token is ";". */
struct name_reader {
    const name *at;

    bool is(const char *text) const { return std::strcmp(at->tok.text, text) == 0; }
    bool is_name() const { return is_lower_letter(first_char(at->tok)); }
    void read_on() {
        if (at->next) at = at->next;
    }
    bool take(const char *text) {
        if (!is(text)) return false;
        read_on();
        return true;
    }
};

} // namespace

constexpr int no_error = 0;

/* ---- one item: each step gives the number of its error ---- */

static int change_scalar(name_reader &list, value_change &change, bool for_good) {
    token_record t = list.at->tok;
    variable *v = find_variable(t);
    if (!v) return 19;
    if (is_array_param(v->value)) return 358;
    if (for_good && !change.change_scalar(&v->value)) return 236;
    list.read_on();
    return no_error;
}

/* [n] behind "%". */
static int find_slot(name_reader &list, array_record **a) {
    if (!list.take("%") || !list.take("[") || !is_digit(first_char(list.at->tok))) return 358;
    const long place = std::strtol(list.at->tok.text, nullptr, 10) - addresser;
    *a = place >= 0 && place < slot_count ? slot_array(static_cast<int32_t>(place)) : nullptr;
    if (!*a) return 220;
    list.read_on();
    return list.take("]") ? no_error : 24;
}

static int find_named_array(name_reader &list, array_record **a) {
    if (list.is("%")) return find_slot(list, a);
    if (!list.is("<") && !list.is_name()) return 358;
    token_record t = list.at->tok;
    *a = list.is("<") ? &syst : find_array(t);
    if (!*a) return 28;
    list.read_on();
    return no_error;
}

static int change_array(name_reader &list, value_change &change, bool for_good) {
    array_record *a = nullptr;
    list.read_on();
    const name *array_name = list.at;
    if (const int n = find_named_array(list, &a)) return n;
    if (!list.is("]")) return 24;
    const bool changed = !for_good || (a == &syst ? change.change_system_array() : change.change_array(a));
    if (!changed) {
        list.at = array_name;
        return 236;
    }
    list.read_on();
    return no_error;
}

static int do_one_name(name_reader &list, value_change &change) {
    const bool for_good = !list.take("*");
    if (!for_good && list.take("*")) return no_error;
    if (list.is("[")) return change_array(list, change, for_good);
    return list.is_name() ? change_scalar(list, change, for_good) : 358;
}

/* ---- the list ---- */

static int do_names(name_reader &list, value_change &change) {
    if (list.is(";")) return no_error;
    for (;;) {
        if (const int n = do_one_name(list, change)) return n;
        if (list.is(";")) return no_error;
        if (!list.take(",")) return 358;
    }
}

static void tell_failure(int n, const token_record &symbol) {
    sayf(" *** Inappropriate symbol: %s\n", symbol.text);
    out_err_mess(n);
    say(" Change of ground ring will continue. Some data may not be changed.\n");
    flush(&standard_output);
}

void change_local(const name *names, value_change &change, bool quiet) {
    name_reader list{names};
    const bool names_nothing = list.is(";");
    const int n = do_names(list, change);
    if (n && !quiet) tell_failure(n, list.at->tok);
    if (!names_nothing) change.change_system_array();
    change.keep_the_rest();
    if (!quiet) change.tell_what_has_no_image();
}

} // namespace tolvek
