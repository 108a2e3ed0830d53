#include "language/builtin_table.h"

#include <cstring>

namespace tolvek {

builtin_row builtin[builtin_rows];
int numbuiltins = -1;

int find_built_in(int low, int high, const char *name) {
    while (low <= high) {
        int middle = (low + high) / 2;
        int order = std::strcmp(name, builtin[middle].name);
        if (order == 0) return middle;
        if (order < 0)
            high = middle - 1;
        else
            low = middle + 1;
    }
    return -1;
}

} // namespace tolvek
