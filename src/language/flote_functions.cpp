#include "language/flote_functions.h"

#include "top/text_io.h"

#include <cmath>

namespace tolvek {

struct flote_function {
    const char *name;
    long double (*compute)(long double);
};

static const flote_function flote_functions[] = {
    {"sqrt", std::sqrt}, {"sin", std::sin},   {"cos", std::cos}, {"ln", std::log},
    {"e", std::exp},     {"atan", std::atan}, {"tan", std::tan}, {"asin", std::asin},
};

long double apply_flote_function(const token_record &function, long double x) {
    for (const flote_function &row : flote_functions)
        if (token_equals(function, row.name)) return row.compute(x);
    sayf("Warning. function %s is not defined.\n", function.text);
    return x;
}

} // namespace tolvek
