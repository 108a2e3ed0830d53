#include "poly/divide_flat.h"

namespace tolvek {

int64_t flat_division_cut = INT64_MAX;

flat_division divide_flat(const polynode *, const polynode *, polynode **) { return flat_division::not_taken; }

} // namespace tolvek
